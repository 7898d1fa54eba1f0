// Statement functions: a routine with a scope of its own, whose body is the assignment of the right side to
// the result.
#include "declarations/check_scopes.h"
#include "declarations/implicit.h"
#include "declarations/routines.h"
#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "declarations/units.h"
#include "driver/diagnostics.h"
#include "expressions/parser.h"
#include "il/entries.h"
#include "il/types.h"
#include "source/token_helpers.h"
#include "statements/handlers.h"

namespace zf90 {

namespace {

// Makes a name of the unit a statement function, and its routine that of the current scope.
object *declare_stmt_function(symbol *s, name_locator name) {
    const std::int32_t outer = curr_scope_depth - 1;
    if (s && s->kind != sk_undetermined) {
        error_at(msg_declaration_conflicts_with_previous_specifications, name.position);
        name.atom = nullptr;
        s = nullptr;
    }
    if (!s) {
        s = new_symbol(sk_undetermined, name, outer);
    }
    apply_implicit(s, name.position);
    type *const return_type = entity_as<type>(s);
    set_symbol_kind(s, sk_stmt_function);
    object *function = new_routine_object(s, return_type);
    function->storage_class = sc_stmt_func;
    function->source_corresp.scope_depth = static_cast<std::uint8_t>(outer);
    function->assoc.routine = routine_at(outer);
    s->entity = function;
    s->decl_position = name.position;
    function->source_corresp.decl_position = name.position;
    if (s->name != error_atom) {
        add_object(scope_stack[outer], function);
    }
    new_unit_routine(function);
    note_declaration(s, name.position, true);
    return function;
}

// Whether the name of a dummy argument can stand for data in the unit.
bool is_data(const symbol *s) {
    switch (s->kind) {
    case sk_variable:
    case sk_implied_do_var:
    case sk_undetermined:
    case sk_data_name:
    case sk_dummy: return true;
    default: return false;
    }
}

// The type that a dummy argument's name has in the unit, where it becomes data if it means nothing yet. The
// error type, after error 19, if it is something else there.
type *dummy_type(const name_locator &name) {
    const std::int32_t outer = curr_scope_depth - 1;
    symbol *s = lookup_resolved(name.atom->first_symbol, curr_scope_depth);
    if (!s || s->scope_depth < 0) { // intrinsic procedures don't stand in the way
        s = new_symbol(sk_data_name, name, outer);
    }
    if (!is_data(s)) {
        error_at(msg_declaration_conflicts_with_previous_specifications, name.position);
        return error_type();
    }
    if (s->kind == sk_implied_do_var) {
        return entity_as<type>(s);
    }
    apply_implicit(s, name.position);
    return element_type_of(type_of_symbol(s));
}

// A dummy argument; a null atom stands for a name that could not be read.
void declare_stmt_dummy(name_locator name) {
    type *t = error_type();
    if (name.atom) {
        if (lookup_current()) {
            error_at(msg_variable_already_specified_in_dummy_argument_list, name.position);
            name.atom = nullptr;
        } else {
            t = dummy_type(name);
        }
    }
    symbol *s = new_further_symbol(sk_variable, name, curr_scope_depth);
    object *dummy = new_object();
    tie_to_symbol(dummy, s);
    dummy->type = t;
    dummy->storage_class = sc_local;
    dummy->is_parameter = true;
    dummy->assoc.routine = curr_routine();
    s->entity = dummy;
    s->flags |= sf_typed;
    if (name.atom) {
        add_object(curr_row(), dummy);
        note_declaration(s, name.position, false);
    }
    object_list_member *member = new_object_list_member();
    member->object = dummy;
    add_parameter(curr_row(), member);
}

bool read_stmt_dummies() {
    bool good = true;
    if (!accept_token(tok_lparen, msg_expected_lparen, 0)) {
        return false;
    }
    if (curr_token != tok_rparen) {
        const stop_at stops{tok_comma, tok_rparen, tok_assign};
        do {
            name_locator name{nullptr, curr_token_pos};
            const bool has_name = expect_token(tok_name, msg_expected_identifier);
            if (has_name) {
                name = curr_name;
            }
            declare_stmt_dummy(name);
            if (has_name) {
                next_token(0);
            }
            good &= has_name;
        } while (accept_optional(tok_comma, 0));
    }
    const stop_at stop{tok_assign};
    return accept_token(tok_rparen, msg_expected_rparen, 0) && good;
}

operation_kind assignment_of(const type *t) {
    switch (t->type_code) {
    case tk_logical: return eok_lassign;
    case tk_float: return eok_fassign;
    case tk_complex: return eok_xassign;
    case tk_fcharacter: return eok_cassign;
    case tk_derived_type: return eok_sassign;
    default: return eok_iassign;
    }
}

object *make_result(object *function) {
    object *result = new_object();
    result->source_corresp.decl_position = function->source_corresp.decl_position;
    result->source_corresp.scope_depth = static_cast<std::uint8_t>(curr_scope_depth);
    result->is_result = true;
    result->storage_class = sc_local;
    result->type = routine_of(function).return_type;
    result->assoc.routine = function;
    result->variant.result_var_function = function;
    curr_row().il_scope->function_result_var = result;
    return result;
}

// The body: the value is assigned to the result, and the function returns. Null is a value in error.
void make_body(object *result, expr_node *value) {
    statement *assignment = new_statement(stmk_expr);
    if (value && result->type->type_code != tk_error) {
        expr_node *target = new_expr_node(enk_object);
        target->object = result;
        target->type = result->type;
        target->source_pos = value->source_pos;
        target->next = value;
        assignment->expr = new_operation(assignment_of(result->type), result->type, target);
        assignment->expr->source_pos = value->source_pos;
    } else {
        assignment->expr = new_error_node();
    }
    statement *body = new_statement(stmk_block);
    body->statements = assignment;
    assignment->next = body->last_statement = new_statement(stmk_return);
    curr_row().il_scope->assoc_block = body;
}

} // namespace

bool stmt_stmt_function() {
    const program_unit_kind outer_kind = curr_unit_kind;
    next_token(0);
    symbol *s = lookup_for_declaration();
    const name_locator name = curr_name;
    push_scope(sr_stmt_function);
    curr_unit_kind = uk_function;
    object *function = declare_stmt_function(s, name);
    next_token(0);
    bool good = read_stmt_dummies();
    routine_of(function).has_param_info = true;
    good = accept_token(tok_assign, msg_expected_equals, lex_signed) && good;
    object *result = make_result(function);
    expr_node *value = nullptr;
    if (good && !parse_expression(value)) {
        value = nullptr;
        good = false;
    }
    make_body(result, value);
    end_program_unit();
    curr_unit_kind = outer_kind;
    check_object(function);
    return good;
}

} // namespace zf90
