// The COMMON statement, and the names of COMMON blocks, which are a name space of their own.
#include "declarations/declarations.h"
#include "declarations/external_names.h"
#include "declarations/scopes.h"
#include "declarations/storage.h"
#include "il/entries.h"
#include "il/types.h"
#include "source/token_helpers.h"
#include "statements/handlers.h"

namespace zf90 {

namespace {

// Whether a name means something in this unit that is global to the compilation.
bool names_program_unit(const atom *name) {
    for (const symbol *s = name->first_symbol; s; s = s->next_same_name) {
        if (!(s->flags & sf_visible)) {
            continue;
        }
        switch (s->kind) {
        case sk_program:
        case sk_block_data:
        case sk_module:
        case sk_subroutine:
        case sk_function:
        case sk_external_unused: return true;
        default: break;
        }
    }
    return false;
}

// The symbol of a block that some unit has mentioned, or null. The one of an open unit comes first.
symbol *known_block(const atom *name) { return find_kind(name, sk_common_block); }

bool belongs_to_open_unit(const symbol *s) { return (s->flags & sf_visible) || s->scope_depth != 0; }

// Drops the name of a new block if it is that of something else.
void check_block_name(name_locator &name) {
    if (names_program_unit(name.atom)) {
        error_at(msg_declaration_conflicts_with_previous_specifications, name.position);
        name.atom = nullptr;
    } else if (global_symbol(name.atom)) {
        error_at(msg_inconsistent_use_of_previously_specified_external_name, name.position);
        name.atom = nullptr;
    } else {
        check_folded_name(name);
    }
}

object *new_block_storage(symbol *s) {
    object *o = new_object();
    tie_to_symbol(o, s);
    o->source_corresp.referenced = false;
    o->source_corresp.scope_depth = 0;
    o->storage_class = sc_common;
    o->type = new_type(tk_association);
    if (s->name != error_atom) {
        add_object(scope_stack[0], o);
    }
    return o;
}

// Makes a symbol of this unit for a block. `storage` is null for a block that no unit has mentioned yet.
symbol *new_block(const name_locator &name, object *storage) {
    symbol *s = new_symbol(sk_common_block, name, curr_scope_depth);
    auto *block = il_new<common_info>();
    tie_to_symbol(block, s);
    block->storage = storage ? storage : new_block_storage(s);
    s->entity = block;
    return s;
}

object *storage_of_block(const atom *name) {
    return find_common_storage(name == blank_common_atom ? nullptr : name);
}

symbol *find_or_make_block(name_locator &name) {
    symbol *s = known_block(name.atom);
    if (!s) {
        if (name.atom != blank_common_atom) {
            check_block_name(name);
        }
        // A module that has been used may have brought the block along.
        return new_block(name, name.atom ? storage_of_block(name.atom) : nullptr);
    }
    if (!belongs_to_open_unit(s)) {
        move_to_scope(s, curr_scope_depth);
        s->decl_position = name.position;
        s->flags &= ~std::uint32_t{sf_saved};
    } else if (s->scope_depth != curr_scope_depth && entity_as<common_info>(s)->in_unit) {
        // The unit around an interface body is still collecting members.
        return new_block(name, entity_as<common_info>(s)->storage);
    }
    return s;
}

symbol *block_of_unit(name_locator &name) {
    symbol *s = find_or_make_block(name);
    auto *block = entity_as<common_info>(s);
    if (!block->in_unit) {
        block->in_unit = true;
        block->source_corresp.decl_position = name.position;
        block->next_in_unit = nullptr;
        (curr_unit.last_common ? curr_unit.last_common->next_in_unit : curr_unit.common_list) = block;
        curr_unit.last_common = block;
    }
    return s;
}

bool at_block_name() { return curr_token == tok_slash || curr_token == tok_concat; }

// From the first slash on. Null after an error.
common_info *read_block_name() {
    const source_pos position = curr_token_pos;
    if (accept_optional(tok_concat, lex_lone_slash)) {
        return entity_as<common_info>(blank_common_symbol(position));
    }
    if (next_token(lex_lone_slash) == tok_slash) {
        next_token(lex_lone_slash);
        return entity_as<common_info>(blank_common_symbol(position));
    }
    common_info *block = nullptr;
    if (expect_token(tok_name, msg_expected_identifier)) {
        name_locator name = curr_name;
        symbol *s = common_symbol(name);
        note_declaration(s, curr_token_pos, false);
        block = entity_as<common_info>(s);
        next_token(lex_lone_slash);
    }
    if (curr_token != tok_slash) {
        error_pos = curr_token_pos;
        report_syntax_error(msg_expected_slash);
        return nullptr; // what stands here may be the first member
    }
    next_token(lex_lone_slash);
    return block;
}

// A member, which is left out of the storage if the block or the member itself is in error.
bool read_member(common_info *block) {
    const source_pos position = curr_token_pos;
    attribute_set set{};
    set[attr_variable] = set[attr_common] = true;
    entity_type = unknown_type();
    const symbol *s = read_array_entity(set, false, true, lex_lone_slash);
    if (!s || s->kind != sk_variable || s->name == error_atom) {
        return false;
    }
    if (!block) {
        return true; // its name has been reported
    }
    auto *member = il_new<common_member>();
    member->object = entity_as<object>(s);
    member->position = position;
    (block->last_member ? block->last_member->next : block->members) = member;
    block->last_member = member;
    return true;
}

} // namespace

symbol *common_symbol(name_locator &name) { return block_of_unit(name); }

symbol *blank_common_symbol(source_pos position) {
    name_locator name{blank_common_atom, position};
    return block_of_unit(name);
}

bool stmt_common() {
    const stop_at stops{tok_slash, tok_comma};
    next_token(lex_lone_slash);
    common_info *block =
        at_block_name() ? read_block_name() : entity_as<common_info>(blank_common_symbol(curr_token_pos));
    bool good = block != nullptr;
    for (;;) {
        good = read_member(block) && good;
        const bool more = accept_optional(tok_comma, lex_lone_slash);
        if (at_block_name()) {
            block = read_block_name();
            good = good && block;
        } else if (!more) {
            return good;
        }
    }
}

} // namespace zf90
