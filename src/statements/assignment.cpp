// Assignments and CALL as they are read. Nothing is known about types yet: an assignment is a reference to
// the generic of "=", and a call that of a name with a list. The statement pass resolves both.
#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "driver/diagnostics.h"
#include "expressions/check.h"
#include "expressions/parser.h"
#include "il/entries.h"
#include "source/token_helpers.h"
#include "statements/constructs.h"
#include "statements/handlers.h"
#include "statements/misspelt.h"

namespace zf90 {

namespace {

// The generic that the current "=" stands for in this scope.
interface *assignment_interface() {
    const symbol *s = lookup_resolved(curr_name.atom->first_symbol, curr_scope_depth);
    return entity_as<interface>(s);
}

// What stands on both sides of "=" or "=>".
struct assignment_sides {
    expr_node *left;
    expr_node *right;
    interface *generic; // of "="
    bool left_good;
    bool right_good;
};

assignment_sides read_sides(token_kind separator, error_code missing, std::uint32_t mode) {
    assignment_sides sides{};
    next_token(0);
    {
        const stop_at stop{separator};
        sides.left_good = parse_expression(sides.left) && curr_token == separator;
        if (sides.left_good && separator == tok_assign) {
            sides.generic = assignment_interface();
        }
        sides.left_good = accept_token(separator, missing, mode) && sides.left_good;
    }
    sides.right_good = parse_expression(sides.right);
    return sides;
}

// For `DOI = 1, 5` where words must stand apart: opens the loop that it was meant for.
void open_loop_meant() {
    if (construct_depth >= 0 && !holds_one_statement(top_construct().kind)) {
        add_loop_label();
        push_refused_construct(cons_do, stmk_ido);
    }
}

} // namespace

bool stmt_assignment() {
    check_reachable();
    statement *s = add_statement(stmk_expr);
    const assignment_sides sides = read_sides(tok_assign, msg_expected_equals, lex_signed);
    if (sides.left_good && sides.right_good && curr_token != tok_eos) {
        // The right side is not all that was meant: what it has is looked at, but not what becomes of it.
        s->expr = new_error_node();
        if (curr_token == tok_comma && begins_like_loop()) {
            open_loop_meant();
        } else {
            s->expr->next = sides.left;
            sides.left->next = sides.right;
            excuse_last_name(sides.right);
        }
    } else if (sides.left_good) {
        sides.left->next = sides.right;
        s->expr = new_expr_node(enk_generic_call);
        s->expr->source_pos = sides.left->source_pos;
        s->expr->generic = sides.generic;
        s->expr->operands = sides.left;
    } else {
        s->expr = new_error_node();
    }
    return sides.left_good && sides.right_good;
}

// The result is the other way about than that of an assignment, on purpose: the statement loop takes a good
// pointer assignment for one that has failed, and text behind it is passed over in silence.
bool stmt_pointer_assignment() {
    check_reachable();
    statement *s = add_statement(stmk_expr);
    const assignment_sides sides = read_sides(tok_arrow, msg_expected_arrow, 0);
    if (sides.left_good) {
        sides.left->next = sides.right;
        s->expr = new_operation(eok_passign, sides.left->type, sides.left);
        s->expr->source_pos = sides.left->source_pos;
    } else {
        s->expr = new_error_node();
    }
    return sides.left_good && !sides.right_good;
}

bool stmt_call() {
    check_reachable();
    next_token(0);
    if (!expect_token(tok_name, msg_expected_identifier)) {
        return false;
    }
    const source_pos position = curr_token_pos;
    symbol *callee = lookup_reference();
    next_token(0);
    statement *s = add_statement(stmk_expr);
    if (curr_token == tok_eos) {
        s->expr = new_expr_node(callee->name == error_atom ? enk_error : enk_symbol_call);
        if (s->expr->node_kind == enk_symbol_call) {
            s->expr->symbol = callee;
        }
    } else {
        s->expr = parse_actual_list(callee, position);
    }
    s->expr->source_pos = position;
    if (s->expr->node_kind != enk_error) {
        callee->flags |= sf_called | sf_called_as_subroutine;
    }
    return s->expr->node_kind != enk_error;
}

} // namespace zf90
