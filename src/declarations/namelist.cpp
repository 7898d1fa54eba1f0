// NAMELIST groups. A group keeps its members as expressions in the order of the statements that name them.
#include "declarations/namelist.h"

#include "declarations/declarations.h"
#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "expressions/check.h"
#include "expressions/predicates.h"
#include "il/entries.h"
#include "il/types.h"
#include "source/token_helpers.h"
#include "statements/handlers.h"

namespace zf90 {

namespace {

namelist_group *new_group(symbol *s) {
    namelist_group *group = new_namelist_group();
    s->entity = group;
    s->aux = nullptr; // the last member
    s->aux2 = 0;
    tie_to_symbol(group, s);
    group->original_name = s->name;
    add_namelist_group(scope_stack[s->scope_depth], group);
    return group;
}

void append_member(symbol *group, expr_node *member) {
    auto *last = static_cast<expr_node *>(group->aux);
    (last ? last->next : entity_as<namelist_group>(group)->member_list) = member;
    group->aux = member;
}

// ---- the statement

// Reads the name between slashes; from the name on. Null if it can be no group, which has been reported, or
// if there is no name; then `has_name` is false.
symbol *read_group_name(bool &has_name) {
    has_name = curr_token == tok_name;
    if (!has_name) {
        error_pos = curr_token_pos;
        report_syntax_error(msg_expected_identifier);
        return nullptr;
    }
    attribute_set set{};
    set[attr_namelist] = true;
    name_locator name = curr_name;
    symbol *s = lookup_for_declaration();
    if (check_attributes(s, set, name.position)) {
        s = apply_attributes(s, set, name);
    }
    next_token(lex_lone_slash);
    return s && s->kind == sk_namelist ? s : nullptr;
}

// Reads a member; at its name. The group is null if it was in error.
void read_member(symbol *group) {
    name_locator name = curr_name;
    symbol *s = lookup_resolved(name.atom->first_symbol, curr_scope_depth);
    if (s && s->scope_depth <= 0 &&
        (s->kind == sk_intrinsic_function || s->kind == sk_intrinsic_subroutine)) {
        s = nullptr; // this scope does not use the procedure of that name
    }
    s = make_variable(s, name);
    if (s->name != error_atom) {
        note_declaration(s, name.position, false);
        s->var_flags |= vf_in_namelist;
        if (group) {
            expr_node *member = new_expr_node(enk_object);
            member->source_pos = name.position;
            member->object = entity_as<object>(s);
            member->type = member->object->type;
            append_member(group, member);
        }
    }
    next_token(lex_lone_slash);
}

// Reads the members of a group, up to the "/" of the next one or the end of the list. False after an error
// that ends the statement.
bool read_members(symbol *group) {
    for (;;) {
        if (curr_token == tok_slash) {
            return true;
        }
        if (curr_token != tok_name) {
            error_pos = curr_token_pos;
            report_syntax_error(msg_expected_identifier);
            return false;
        }
        read_member(group);
        if (!accept_optional(tok_comma, lex_lone_slash)) {
            return true;
        }
    }
}

// Once: no member is added behind the first use.
void mark_members(symbol *group) {
    if ((group->aux2 & nf_used) != 0) {
        return;
    }
    group->aux2 |= nf_used;
    for (const expr_node *m = entity_as<namelist_group>(group)->member_list; m; m = m->next) {
        m->object->source_corresp.referenced = true;
        if (m->object->symbol_link) {
            m->object->symbol_link->flags |= sf_referenced;
        }
    }
}

// ---- the check

// Whether the storage of a member has a size that is known.
bool has_constant_size(const object *o) {
    const type *element = element_type_of(o->type);
    return has_known_bounds(o) && !(element->type_code == tk_derived_type && element->contains_ptrs);
}

bool is_public_object(const object *o) {
    return o->is_public || (o->symbol_link && (o->symbol_link->flags & sf_public) != 0);
}

bool refuse_member(const expr_node *member, error_code code) {
    error_at(code, member->source_pos);
    return false;
}

bool check_member(expr_node *member, bool in_public_group, object *routine) {
    object *o = member->object;
    if (!check_expression(member, ecf_designator, routine)) {
        return false;
    }
    if (o->is_constant) {
        return refuse_member(member, msg_expected_variable);
    }
    member->intent_in = member->intent_out = true;
    o->source_corresp.referenced = true;
    const type *t = element_type_of(o->type);
    if (t->type_code == tk_error) {
        return false;
    }
    if (!has_constant_size(o)) {
        return refuse_member(member, msg_non_constant_size_variable_is_not_allowed);
    }
    if (in_public_group && (!is_public_object(o) || (t->type_code == tk_derived_type && !t->is_public))) {
        return refuse_member(member, msg_public_namelist_should_not_include_private_items);
    }
    return true;
}

} // namespace

symbol *declare_namelist(symbol *s, const name_locator &name) {
    if (!s) {
        s = new_symbol(sk_namelist, name, curr_scope_depth);
        new_group(s);
        return s;
    }
    if (s->kind == sk_namelist) {
        return s;
    }
    if (s->kind != sk_undetermined || has_explicit_type(s) || is_array(entity_as<type>(s))) {
        error_at(msg_invalid_namelist_name, name.position);
        return s;
    }
    set_symbol_kind(s, sk_namelist);
    new_group(s);
    return s;
}

bool stmt_namelist() {
    if (next_token(lex_lone_slash) != tok_slash) {
        error_pos = curr_token_pos;
        if (curr_token == tok_name && !lookup_current()) {
            declare_namelist(nullptr, curr_name); // it was meant as a group
        }
        syntax_error(msg_expected_slash);
        return false;
    }
    const stop_at stops{tok_slash, tok_comma};
    while (curr_token == tok_slash) {
        next_token(lex_lone_slash);
        bool has_name = false;
        symbol *group = read_group_name(has_name);
        if (!has_name || !accept_token(tok_slash, msg_expected_slash, lex_lone_slash) ||
            !read_members(group)) {
            return false;
        }
    }
    return true;
}

bool at_namelist_group() {
    if (curr_token != tok_name || !find_kind(curr_name.atom, sk_namelist)) {
        return false;
    }
    const symbol *s = lookup_resolved(curr_name.atom->first_symbol, curr_scope_depth);
    return s && s->kind == sk_namelist;
}

bool parse_namelist_spec(input_output_description *description, bool quiet) {
    if (!quiet) {
        description->format_kind = iof_error;
    }
    if (curr_token != tok_name) {
        error_pos = curr_token_pos;
        syntax_error(msg_expected_identifier);
        return false;
    }
    symbol *s = lookup_resolved(curr_name.atom->first_symbol, curr_scope_depth);
    const bool is_group = s && s->kind == sk_namelist;
    if (!is_group) {
        error(msg_invalid_namelist_name);
        if (!s) {
            s = declare_namelist(nullptr, curr_name);
        }
    }
    note_use(use_referenced, s, curr_name.position);
    if (s->kind == sk_namelist) {
        auto *group = entity_as<namelist_group>(s);
        if (!quiet) {
            description->format_kind = iof_namelist_directed;
            description->format.namelist_group = group;
        }
        mark_members(s);
    }
    next_token(0);
    return is_group;
}

bool check_namelist(namelist_group *group, object *routine) {
    if (!begin_check(group)) {
        return true;
    }
    if (group->symbol_link && (group->symbol_link->flags & sf_public) != 0) {
        group->source_corresp.referenced = true;
    }
    bool good = true;
    for (expr_node *member = group->member_list; member; member = member->next) {
        good = check_member(member, group->is_public, routine) && good;
    }
    return good;
}

} // namespace zf90
