// INTERFACE blocks: generic names, operators and the assignment, and the procedures gathered under them.
#include "declarations/interfaces.h"

#include "declarations/routines.h"
#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "il/entries.h"
#include "il/types.h"
#include "source/token_helpers.h"
#include "statements/handlers.h"
#include "statements/loop.h"

#include <unordered_map>
#include <unordered_set>

namespace zf90 {

namespace {

// ---- members

// What is on the list of an interface, so that no list is searched for each new member.
struct interface_members {
    object_list_member *last;
    std::unordered_set<const object *> routines;
};

std::unordered_map<const interface *, interface_members> members_of_interfaces;

// The members, with those that have joined the list elsewhere.
interface_members &members_of(const interface *generic) {
    interface_members &members = members_of_interfaces[generic];
    if (!generic->routine_prototype_list) {
        members = {};
    }
    object_list_member *m = members.last ? members.last->next : generic->routine_prototype_list;
    for (; m; m = m->next) {
        members.last = m;
        members.routines.insert(m->object);
    }
    return members;
}

// ---- generic specifications

// Makes a symbol generic, and puts the interface on the list of its scope.
symbol *make_generic(symbol *s, name_locator &name, std::int32_t depth) {
    s = declare_interface(s, name);
    add_interface(scope_stack[depth], entity_as<interface>(s));
    return s;
}

// OPERATOR(op) or ASSIGNMENT(=), from the "(" on.
symbol *read_operator_spec(bool is_assignment, name_locator &name, std::int32_t depth) {
    const stop_at stop{tok_rparen};
    // "(/" and "/)" are no brackets here.
    constexpr std::uint32_t operator_mode = lex_lone_lparen | lex_lone_slash_rparen;
    next_token(operator_mode);
    name = {nullptr, curr_token_pos};
    const bool is_operator = curr_token == tok_defined_op ||
                             (curr_token >= first_operator_token && curr_token <= last_operator_token);
    if (is_assignment ? curr_token == tok_assign : is_operator) {
        name = curr_name;
        next_token(operator_mode);
    } else {
        error_pos = curr_token_pos;
        syntax_error(is_assignment ? msg_expected_equals : msg_expected_intrinsic_or_user_defined_operator);
    }
    symbol *s = nullptr;
    if (name.atom) {
        curr_name = name;
        s = lookup_at_depth(depth);
    }
    if (!s) {
        s = make_generic(new_symbol(sk_undetermined, name, depth), name, depth);
    }
    accept_closing(tok_rparen, msg_expected_rparen, 0);
    return s;
}

symbol *read_generic_name(name_locator &name, std::int32_t depth) {
    next_token(0);
    name = {nullptr, curr_token_pos};
    if (curr_token == tok_eos) {
        return nullptr;
    }
    if (!expect_token(tok_name, msg_expected_identifier)) {
        return new_symbol(sk_undetermined, name, depth);
    }
    name = curr_name;
    symbol *s = lookup_at_depth(depth);
    if (!s) {
        s = new_symbol(sk_undetermined, name, depth);
    }
    next_token(0);
    return s;
}

// ---- module procedures

bool is_module_procedure(const object *o) {
    return o->storage_class == sc_mod_proc ||
           (o->assoc.routine && o->assoc.routine->storage_class == sc_module);
}

symbol *new_module_procedure(symbol *s) {
    set_symbol_kind(s, sk_module_procedure);
    s->entity = new_routine_object(s, unknown_type());
    return s;
}

// A name of which the current scope, which is no module, knows nothing: the procedure of a module around it,
// or one that this module is still to define.
symbol *host_module_procedure(const name_locator &name) {
    symbol *const s = lookup_resolved(name.atom->first_symbol, curr_scope_depth);
    if (s && s->scope_depth > 0) {
        const bool is_procedure = s->kind == sk_module_procedure ||
                                  ((s->kind == sk_internal_subroutine || s->kind == sk_internal_function) &&
                                   is_module_procedure(entity_as<object>(s)));
        return is_procedure ? s : nullptr;
    }
    return unit_kind_of(1) == uk_module ? new_module_procedure(new_symbol(sk_undetermined, name, 1))
                                        : nullptr;
}

// The meaning of a name as a module procedure; null if it has another one.
symbol *find_module_procedure(symbol *s, const name_locator &name) {
    switch (s->kind) {
    case sk_internal_subroutine:
    case sk_internal_function: return is_module_procedure(entity_as<object>(s)) ? s : nullptr;
    case sk_undetermined: {
        const type_code code = entity_as<type>(s)->type_code;
        return code == tk_unknown || code == tk_error ? new_module_procedure(s) : nullptr;
    }
    case sk_module_procedure: return s;
    case sk_interface: {
        // The generic hides a procedure of its own name.
        if (symbol *hidden = hidden_module_procedure(s->name, curr_scope_depth)) {
            return hidden;
        }
        const auto *generic = entity_as<interface>(s);
        if (generic != curr_row().last_interface && generic != curr_row().current_interface) {
            return nullptr;
        }
        s = new_module_procedure(new_further_symbol(sk_undetermined, name, curr_scope_depth));
        s->flags &= ~std::uint32_t{sf_visible};
        return s;
    }
    case sk_host_candidate: s->flags |= marks_from_within(s); return new_module_procedure(s);
    default: return nullptr;
    }
}

// A name of a MODULE PROCEDURE statement. Error 19 nulls the atom; the symbol is on no list then.
symbol *declare_module_procedure(symbol *s, name_locator &name) {
    if (!s && name.atom && unit_kind_of(curr_scope_depth) != uk_module) {
        s = host_module_procedure(name);
    }
    if (!s) {
        return new_module_procedure(new_symbol(sk_undetermined, name, curr_scope_depth));
    }
    symbol *procedure = find_module_procedure(s, name);
    if (!procedure) {
        error_at(msg_declaration_conflicts_with_previous_specifications, name.position);
        name.atom = nullptr;
        procedure = new_module_procedure(new_symbol(sk_undetermined, name, curr_scope_depth));
    }
    return procedure;
}

bool read_module_procedure() {
    if (!expect_token(tok_name, msg_expected_identifier)) {
        return false;
    }
    name_locator name = curr_name;
    symbol *s = declare_module_procedure(lookup_for_declaration(), name);
    if (name.atom) {
        add_to_interface(entity_as<object>(s), curr_scope_depth);
        note_use(use_referenced, s, name.position);
    }
    next_token(0);
    return true;
}

} // namespace

void add_to_interface(object *routine, std::int32_t depth) {
    routine->source_corresp.referenced = true;
    interface *generic = scope_stack[depth].current_interface;
    if (!generic) {
        return;
    }
    interface_members &members = members_of(generic);
    if (!members.routines.insert(routine).second) {
        return;
    }
    object_list_member *member = new_object_list_member();
    member->object = routine;
    (members.last ? members.last->next : generic->routine_prototype_list) = member;
    members.last = member;
}

symbol *read_generic_spec(name_locator &name, std::int32_t depth) {
    char *const start = line_cursor;
    bool is_assignment = true;
    bool is_operator = false;
    switch (next_token(lex_keyword)) {
    case tok_kw_assign: is_operator = next_token(lex_keyword) == tok_kw_ment; break;
    case tok_kw_assignment: is_operator = true; break;
    case tok_kw_operator:
        is_operator = true;
        is_assignment = false;
        break;
    default: break;
    }
    if (is_operator && next_token(lex_lone_lparen) == tok_lparen) {
        return read_operator_spec(is_assignment, name, depth);
    }
    line_cursor = start; // a name, whatever its spelling
    return read_generic_name(name, depth);
}

interface *inherited_interface(const symbol *s) {
    if (s->name == error_atom) {
        return nullptr;
    }
    const symbol *outer = lookup_resolved(s->next_same_name, -1);
    if (!outer) {
        return nullptr;
    }
    switch (outer->kind) {
    case sk_interface:
    case sk_intrinsic_function:
    case sk_intrinsic_subroutine: return entity_as<interface>(outer);
    default: return nullptr;
    }
}

symbol *declare_interface(symbol *s, name_locator &name) {
    if (s && ((s->kind != sk_undetermined && s->kind != sk_host_candidate) || (s->flags & sf_typed))) {
        error_at(msg_identifier_has_been_already_specified_as_not_interface, name.position);
        name.atom = nullptr;
        s = nullptr;
    }
    if (!s) {
        s = new_symbol(sk_undetermined, name, curr_scope_depth);
    }
    if (s->kind == sk_host_candidate) {
        s->flags |= marks_from_within(s);
    }
    set_symbol_kind(s, sk_interface);
    interface *generic = new_interface();
    tie_to_symbol(generic, s);
    generic->inherited = inherited_interface(s);
    s->entity = generic;
    return s;
}

bool stmt_interface() {
    name_locator name;
    symbol *s = read_generic_spec(name, curr_scope_depth);
    curr_row().current_interface = nullptr;
    if (!s) {
        return true;
    }
    const bool update = s->kind == sk_undetermined;
    if (s->kind != sk_interface) {
        s = make_generic(s, name, curr_scope_depth);
    }
    curr_row().current_interface = entity_as<interface>(s);
    note_declaration(s, name.position, update);
    return name.atom != nullptr;
}

// What follows the words is of no account.
bool stmt_end_interface() { return skip_to_eos(); }

bool stmt_module_procedure() {
    const stop_at stop{tok_comma};
    bool good = true;
    next_token(0);
    do {
        good = read_module_procedure() && good;
    } while (accept_optional(tok_comma, 0));
    return good;
}

} // namespace zf90
