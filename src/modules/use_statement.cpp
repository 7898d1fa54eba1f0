// The USE statement: its rename and ONLY lists, and the meeting of a module's names with those of the scope.
#include "declarations/external_names.h"
#include "declarations/interfaces.h"
#include "declarations/names_in_error.h"
#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "driver/diagnostics.h"
#include "driver/options.h"
#include "il/entries.h"
#include "il/types.h"
#include "modules/copies.h"
#include "modules/module_files.h"
#include "source/token_helpers.h"
#include "statements/handlers.h"

namespace zf90 {

namespace {

// The statement's module. `index` holds its names once a single one has been asked for.
struct used_module {
    const symbol *module;
    name_locator name;
    std::int32_t level; // the row of the using scope
};

const char *name_of(const used_module &m) { return m.name.atom->spelling; }

// ---- a module's symbol gives its meaning to a local one

// The generic meaning that an imported generic adds to: that of its name outside of the scope, or under a new
// name, if that has none, the intrinsic of its name in the module.
interface *extended_interface(const interface *generic, const symbol *local) {
    interface *const outer = inherited_interface(local);
    const atom *name = generic->source_corresp.name;
    if (outer || !name || name == local->name) {
        return outer;
    }
    for (symbol_kind kind : {sk_intrinsic_function, sk_intrinsic_subroutine}) {
        if (const symbol *intrinsic = find_kind(name, kind)) {
            return entity_as<interface>(intrinsic);
        }
    }
    return nullptr;
}

named_entry *copy_of_entity(const symbol *module_symbol, symbol *local, std::int32_t level) {
    switch (module_symbol->kind) {
    case sk_derived_type: {
        type *existing = local->kind == sk_forward_type ? entity_as<type>(local) : nullptr;
        return use_type(entity_as<type>(module_symbol), existing, level);
    }
    case sk_variable: return use_variable(entity_as<object>(module_symbol), level);
    case sk_subroutine:
    case sk_function:
    case sk_internal_subroutine:
    case sk_internal_function: return use_routine(entity_as<object>(module_symbol), level);
    case sk_interface: {
        interface *copy = use_interface(entity_as<interface>(module_symbol), level);
        copy->inherited = extended_interface(copy, local);
        return copy;
    }
    default: {
        namelist_group *copy = use_namelist(entity_as<namelist_group>(module_symbol), level);
        copy->source_corresp.name = local->name;
        return copy;
    }
    }
}

void copy_use_entity(const symbol *module_symbol, symbol *local, std::int32_t level) {
    local->flags |= (module_symbol->flags & (sf_typed | sf_saved)) | sf_public;
    const symbol_kind kind = module_symbol->kind;
    if (kind >= sk_specific_function && kind <= sk_intrinsic_subroutine) {
        local->entity = module_symbol->entity;
        return;
    }
    named_entry *copy = copy_of_entity(module_symbol, local, level);
    copy->symbol_link = local;
    local->entity = copy;
    if (kind >= sk_subroutine && kind <= sk_internal_function) {
        local->aux2 |= module_symbol->aux2 & pf_body_seen;
    }
    if (kind == sk_subroutine || kind == sk_function) {
        if (copy->source_corresp.name == local->name) {
            enter_external(local);
        }
        local->aux2 |= pf_entered; // a new name is no external one, and the copier has entered the other
    }
}

void import_into(symbol *local, symbol *module_symbol, const used_module &m) {
    local->from_module = module_symbol;
    note_import(module_symbol, m.level);
    local->flags |= sf_referenced;
    copy_use_entity(module_symbol, local, m.level);
}

// The scope has a name with another meaning, from elsewhere.
void meet(symbol *local, symbol *module_symbol, const used_module &m) {
    if (is_quiet(local)) {
        return;
    }
    if (!local->from_module) {
        if (!(local->flags & sf_clash_reported)) {
            local->flags |= sf_clash_reported;
            error_at(msg_name_clash_between_dummy_argument_and_symbol_from_use, local->decl_position,
                     local->name->spelling, name_of(m));
        }
    } else if (local->from_module != module_symbol && !stands_for(local, module_symbol, m.level)) {
        mark_ambiguous(local, m.name.atom);
    }
}

// Whether a name that the scope has used, but not declared, is still free for an import.
bool is_open(const symbol *local) {
    return (local->kind == sk_undetermined && !is_quiet(local)) || local->kind == sk_host_candidate;
}

// An operator that could not be found has some procedure that nothing is known of: so nothing more is said
// about its uses.
void add_unknown_procedure(symbol *local, std::int32_t level) {
    object *unknown = new_object();
    tie_to_symbol(unknown, local);
    unknown->type = new_routine_type(unknown, error_type());
    add_member(entity_as<interface>(local), unknown, level);
}

void use_symbol(symbol *local, const name_locator &local_name, symbol *module_symbol, const used_module &m) {
    if (!module_symbol) {
        error_at(msg_cannot_find_symbol_in_module, local_name.position, name_of(m));
        if (!local) {
            local = new_symbol(sk_undetermined, local_name, m.level);
        }
        if (is_open(local)) {
            make_quiet(local);
        } else if (local->kind == sk_interface) {
            add_unknown_procedure(local, m.level);
        }
        return;
    }
    if (!local) {
        local = new_symbol(module_symbol->kind, local_name, m.level);
        import_into(local, module_symbol, m);
    } else if (is_open(local)) {
        if (local->kind == sk_host_candidate) {
            local->flags |= marks_from_within(local);
        }
        set_symbol_kind(local, module_symbol->kind);
        import_into(local, module_symbol, m);
    } else if (local->kind == sk_forward_type && module_symbol->kind == sk_derived_type) {
        import_into(local, module_symbol, m);
        il_entry *t = local->entity;
        set_symbol_kind(local, sk_derived_type);
        local->entity = t;
    } else if (local->kind == sk_interface && module_symbol->kind == sk_interface) {
        extend_interface(entity_as<interface>(local), entity_as<interface>(module_symbol), m.level);
    } else {
        meet(local, module_symbol, m);
    }
}

// ---- the lists

// The meaning that a name of the statement has in the using scope, or null.
symbol *local_symbol(const atom *name, std::int32_t level) {
    symbol *s = name->first_symbol;
    while (s && (!(s->flags & sf_visible) || s->kind == sk_common_block || s->scope_depth > level)) {
        s = s->next_same_name;
    }
    return s && s->scope_depth == level ? s : nullptr;
}

// If no name stands here, the item is given up.
bool name_is_here() {
    if (curr_token == tok_name) {
        return true;
    }
    error_pos = curr_token_pos;
    syntax_error(msg_expected_identifier);
    return false;
}

// "name => name" of the list without ONLY.
void read_rename(const used_module &m) {
    if (!name_is_here()) {
        return;
    }
    const name_locator name = curr_name;
    symbol *local = local_symbol(name.atom, m.level);
    next_token(0);
    if (!accept_token(tok_arrow, msg_expected_arrow, 0) || !name_is_here()) {
        if (!local) {
            make_quiet(new_symbol(sk_undetermined, name, m.level)); // what it was to stand for is not known
        }
        return;
    }
    symbol *module_symbol = find_in_module(m.module, curr_name.atom);
    use_symbol(local, name, module_symbol, m);
    if (module_symbol) {
        note_import(module_symbol, m.level); // also if the new name has the meaning already
    }
    next_token(0);
}

// What follows the last item is not there, or it lacks a comma.
void end_rename_list() {
    if (curr_token == tok_name) {
        error_pos = curr_token_pos;
        report_syntax_error(msg_expected_comma);
        lex_rewind_token();
        next_token(lex_peek);
        declare_rest_in_error();
    } else if (curr_token != tok_eos) {
        expect_token(tok_comma, msg_expected_comma);
    }
}

void read_rename_list(const used_module &m) {
    {
        const stop_at stops{tok_comma};
        while (curr_token == tok_comma) {
            next_token(0);
            read_rename(m);
        }
    }
    end_rename_list();
}

// A name of the ONLY list. If the module lacks it, which is reported, the item may have been meant for
// something else: what follows it is no fault of its own.
void use_name(symbol *local, const name_locator &name, const atom *name_in_module, const used_module &m) {
    symbol *module_symbol = find_in_module(m.module, name_in_module);
    use_symbol(local, name, module_symbol, m);
    if (!module_symbol) {
        recover_tokens();
    }
}

// A name, an operator or the assignment of the ONLY list, or "name => name".
void read_only_item(const used_module &m) {
    name_locator name;
    symbol *local;
    {
        const stop_at stop{tok_arrow};
        local = read_generic_spec(name, m.level);
    }
    if (!local) {
        syntax_error(msg_expected_identifier);
        return;
    }
    if (local->name == error_atom) {
        recover_tokens();
        return;
    }
    local->flags |= sf_public;
    if (is_operator_code(local->name->token_code) || curr_token != tok_arrow) {
        use_name(local, name, name.atom, m);
        return;
    }
    next_token(0);
    if (name_is_here()) {
        const atom *name_in_module = curr_name.atom;
        next_token(0);
        use_name(local, name, name_in_module, m);
    } else if (is_open(local)) {
        make_quiet(local);
    }
}

// Whether the list goes on: behind a comma, or where one is missing, which is reported.
bool list_goes_on() {
    if (curr_token == tok_name) {
        error_pos = curr_token_pos;
        report_syntax_error(msg_expected_comma);
        lex_rewind_token();
        return true;
    }
    return curr_token != tok_eos && expect_token(tok_comma, msg_expected_comma);
}

bool is_at_end() {
    const saved_place place;
    return next_token(lex_peek) == tok_eos;
}

void read_only_list(const used_module &m) {
    if (is_at_end()) {
        next_token(0);
        return;
    }
    const stop_at stop{tok_comma};
    do {
        read_only_item(m);
    } while (list_goes_on());
}

// ONLY and its colon, behind the comma.
bool read_only() {
    saved_place place;
    if (next_token(lex_keyword) != tok_kw_only || next_token(0) != tok_colon) {
        return false;
    }
    place.stay();
    return true;
}

void import_the_rest(const used_module &m) {
    for (auto *s = static_cast<symbol *>(m.module->aux); s; s = s->next_in_scope) {
        if (!is_imported(s, m.level)) { // what has been renamed is not known by its own name
            use_symbol(local_symbol(s->name, m.level), {s->name, m.name.position}, s, m);
        }
    }
}

// What stands for ONLY, as its colon or its list follows: it is reported as the new name that would be there
// otherwise.
bool read_misspelt_only() {
    saved_place place;
    error_code message = msg_expected_identifier;
    next_token(fixed_form_input ? lex_peek : lex_keyword | lex_peek);
    const bool is_only = curr_token == tok_kw_only;
    if (is_only || curr_token == tok_name) {
        message = msg_expected_arrow;
        next_token(lex_peek);
    }
    if (curr_token != tok_colon && (!is_only || curr_token == tok_arrow || curr_token == tok_eos)) {
        return false;
    }
    place.stay();
    error_pos = curr_token_pos;
    report_syntax_error(message);
    if (curr_token == tok_name) { // the first of the list
        lex_rewind_token();
    }
    return true;
}

bool use_statement() {
    if (next_token(0) != tok_name) {
        report_syntax_error(msg_expected_identifier);
        return false;
    }
    used_module m{nullptr, curr_name, curr_scope_depth};
    symbol *known = global_symbol(m.name.atom);
    next_token(0);
    m.module = load_module(known, m.name);
    if (curr_token == tok_comma) {
        if (read_only() || read_misspelt_only()) {
            read_only_list(m);
            return true;
        }
        read_rename_list(m);
    }
    import_the_rest(m);
    return true;
}

} // namespace

bool stmt_use() { return use_statement(); }

} // namespace zf90
