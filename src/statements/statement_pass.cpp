// The checks of statements by kind. Blocks are loops, and what is nested goes by deep_call.
#include "statements/statement_pass.h"

#include "constants/folding.h"
#include "declarations/symbols.h"
#include "driver/deep_call.h"
#include "driver/diagnostics.h"
#include "expressions/check.h"
#include "expressions/operators.h"
#include "expressions/predicates.h"
#include "expressions/shapes.h"
#include "expressions/uses.h"
#include "il/types.h"
#include "statements/allocate.h"
#include "statements/case_ranges.h"
#include "statements/io_check.h"

namespace zf90 {

namespace {

// ---- expressions

bool check_expressions(const statement *s, object *routine) {
    const std::uint32_t flags = routine && routine->storage_class == sc_stmt_func ? ecf_stmt_func : 0u;
    bool good = true;
    for (expr_node *e = s->expr; e; e = e->next) {
        good &= check_expression(e, flags, routine);
    }
    return good;
}

void mark_value_read(const statement *s) { s->expr->intent_in = true; }

bool is_error(const expr_node *e) { return e->type->type_code == tk_error; }

bool has_type(const expr_node *e, type_code code) { return e->type->type_code == code; }

void mark_labels(const label_list_entry *list) {
    for (; list; list = list->next) {
        list->label->source_corresp.referenced = true;
    }
}

bool check_nested(statement *s, object *routine) { return !s || check_statement(s, routine); }

// ---- IF, WHILE, jumps

bool check_condition(const statement *s, bool good) {
    if (good && !is_error(s->expr) && !has_type(s->expr, tk_logical)) {
        error_at(msg_expression_must_have_logical_type, s->source_pos);
        good = false;
    }
    mark_value_read(s);
    return good;
}

bool check_arithmetic_if(statement *s, bool good) {
    warning_at(msg_obsolescent_statement, s->source_pos);
    if (good && !is_error(s->expr)) {
        if (has_type(s->expr, tk_integer)) {
            s->kind = stmk_iarith_if;
        } else if (has_type(s->expr, tk_float)) {
            s->kind = stmk_farith_if;
        } else {
            error_at(msg_expression_must_be_of_type_integer_or_real, s->expr->source_pos);
            good = false;
        }
    }
    mark_labels(s->label_list);
    return good;
}

bool check_computed_goto(const statement *s, bool good) {
    mark_value_read(s);
    if (good && !is_error(s->expr) && !has_type(s->expr, tk_integer)) {
        error_at(msg_expression_must_be_of_type_integer, s->expr->source_pos);
        good = false;
    }
    mark_labels(s->label_list);
    return good;
}

bool check_assigned_goto(const statement *s, bool good) {
    warning_at(msg_obsolescent_statement, s->source_pos);
    if (good && !is_error(s->expr)) {
        if (!check_definable(s->expr)) {
            good = false;
        } else if (s->expr->node_kind != enk_object) {
            error_at(msg_expected_identifier, s->expr->source_pos);
            good = false;
        } else if (s->expr->type != default_integer()) {
            error_at(msg_expression_must_be_variable_of_type_default_integer, s->expr->source_pos);
            good = false;
        }
    }
    mark_labels(s->label_list);
    return good;
}

bool check_stop(const statement *s) {
    if (s->kind == stmk_pause) {
        warning_at(msg_obsolescent_statement, s->source_pos);
    }
    constant *const text = s->stop_pause_string;
    if (!text) {
        return true;
    }
    if (!check_initializer(text)) {
        return false;
    }
    if (text->type->type_code != tk_fcharacter || text->type->kind != default_character_kind) {
        error_at(msg_constant_must_be_of_type_default_character, text->source_pos);
        return false;
    }
    return true;
}

// ---- CALL, assignments

bool is_pointer(const expr_node *e) {
    switch (e->node_kind) {
    case enk_object: return e->object->is_pointer;
    case enk_field: return e->field_var->is_pointer;
    default: return false;
    }
}

bool is_pointer_assignment(const expr_node *e) {
    return e->node_kind == enk_operation && e->op_kind == eok_passign;
}

// The node is not checked as other operations are: what stands on its sides are no values.
bool check_pointer_assignment(expr_node *node, object *routine) {
    begin_check(node);
    expr_node *const pointer = node->operands;
    expr_node *const target = pointer->next;
    bool good = check_expression(pointer, ecf_designator, routine);
    good &= check_expression(target, 0, routine);
    if (!good || is_error(pointer)) {
        return false;
    }
    if (!is_pointer(pointer)) {
        error_at(msg_must_be_pointer, pointer->source_pos);
        return false;
    }
    if (!check_definable(pointer) || !pointer_assign_check(pointer->type, target)) {
        return false;
    }
    pointer->intent_out = true;
    node->type = pointer->type;
    return true;
}

bool check_expression_statement(const statement *s, object *routine) {
    expr_node *const e = s->expr;
    if (is_pointer_assignment(e)) {
        return check_pointer_assignment(e, routine);
    }
    bool good = check_expressions(s, routine);
    if (e->node_kind == enk_operation && e->operands->intent_out) {
        e->operands->intent_in = false; // of ASSIGN
    }
    // What CALL names may have turned out to be an array or a type as well as a function.
    const bool is_called = e->node_kind != enk_operation && e->node_kind != enk_error;
    if (good && is_called && !has_type(e, tk_void) && !is_error(e)) {
        error_at(msg_identifier_is_not_subroutine_name, e->source_pos);
        good = false;
    }
    return good;
}

// ---- DO

bool is_loop_type(const type *t) {
    return t->type_code == tk_integer ||
           (t->type_code == tk_float && (t->kind == default_real_kind || t->kind == double_precision_kind));
}

// One of the values of a loop header, converted to the type of the variable.
bool check_loop_value(expr_node *&value, const expr_node *variable, bool variable_good, std::uint32_t flags,
                      object *routine) {
    if (!check_expression(value, flags, routine)) {
        return false;
    }
    value->intent_in = true;
    const type *const t = value->type;
    if (t->type_code == tk_error) {
        return true;
    }
    if (!is_loop_type(t)) {
        error_at(msg_bad_type_for_implied_do_construct, value->source_pos);
        return false;
    }
    if (t->type_code == tk_float) {
        warning_at(msg_use_of_loop_control_expressions_of_type_real, value->source_pos);
    }
    if (variable_good && is_loop_type(variable->type)) {
        convert_expr(value, variable->type);
    }
    return true;
}

bool check_loop_variable(expr_node *variable, std::uint32_t flags, object *routine) {
    if (!check_expression(variable, flags | ecf_designator, routine) || !check_definable(variable)) {
        return false;
    }
    if (variable->node_kind != enk_object) {
        error_at(msg_expected_identifier, variable->source_pos);
        return false;
    }
    variable->intent_out = true;
    return true;
}

bool settle_loop_kind(statement *s) {
    expr_node *const variable = s->do_loop->variable;
    const type *const t = variable->type;
    if (t->type_code == tk_integer) {
        s->kind = stmk_ido;
        return true;
    }
    if (t->type_code == tk_error) {
        return true;
    }
    if (!is_loop_type(t)) {
        error_at(msg_do_variable_must_be_of_type_integer_default, variable->source_pos);
        return false;
    }
    s->kind = stmk_fdo;
    warning_at(msg_use_of_do_variables_of_type_real_is_obsolescent, variable->source_pos);
    return true;
}

bool check_loop(statement *s, object *routine) {
    if (!s->do_loop || !check_do_control(s->do_loop, 0, routine)) {
        return check_nested(s->loop_statement, routine) && !s->do_loop;
    }
    bool good = settle_loop_kind(s);
    const expr_node *const variable = s->do_loop->variable;
    symbol *const name = variable->object->symbol_link;
    const bool is_active = name && (name->var_flags & vf_do_variable);
    if (is_active) {
        error_at(msg_variable_is_same_as_do_variable_of_enclosing, variable->source_pos);
        name->var_flags &= ~std::uint32_t{vf_do_variable}; // that it is modified is no other mistake
        good = false;
    }
    finish_uses();
    if (name) {
        name->var_flags |= vf_do_variable;
    }
    good &= check_nested(s->loop_statement, routine);
    if (name && !is_active) {
        finish_uses();
        name->var_flags &= ~std::uint32_t{vf_do_variable};
    }
    return good;
}

// ---- SELECT CASE

bool check_select(const statement *s, bool good, object *routine) {
    if (good && !is_error(s->expr) && !has_type(s->expr, tk_integer) && !has_type(s->expr, tk_fcharacter) &&
        !has_type(s->expr, tk_logical)) {
        error_at(msg_expression_must_have_integer_character_or_logical_type, s->expr->source_pos);
        good = false;
    }
    mark_value_read(s);
    good &= check_nested(s->body_statement, routine);
    return good && (is_error(s->expr) || check_case_ranges(s));
}

bool check_case(const statement *s, object *routine) {
    bool good = true;
    for (const case_range *r = s->case_range_list; r; r = r->next) {
        good &= !r->low || check_initializer(r->low);
        good &= !r->high || check_initializer(r->high);
    }
    return check_nested(s->case_statements, routine) && good;
}

// ---- WHERE

bool is_intrinsic_assignment(operation_kind op) {
    switch (op) {
    case eok_lassign:
    case eok_iassign:
    case eok_fassign:
    case eok_xassign:
    case eok_cassign:
    case eok_sassign: return true;
    default: return false;
    }
}

// An assignment under a mask. `mask` becomes the shape for the ones that follow.
bool check_masked_statement(const statement *s, type *&mask) {
    if (s->kind == stmk_label) { // of the statement behind it
        return true;
    }
    if (s->kind != stmk_expr || s->expr->node_kind != enk_operation ||
        !is_intrinsic_assignment(s->expr->op_kind)) {
        if (s->kind != stmk_expr || s->expr->node_kind != enk_error) {
            error_at(msg_intrinsic_array_assignments_are_allowed_only, s->source_pos);
        }
        return false;
    }
    type *const left = s->expr->operands->type;
    if (!is_array(left) || !shapes_conform(left, mask)) {
        error_at(msg_mask_and_variable_must_be_array_of_same, s->source_pos);
        return false;
    }
    if (!is_explicit_constant_shape(mask) && is_explicit_constant_shape(left)) {
        mask = left;
    }
    return true;
}

bool check_masked_part(const statement *part, type *&mask) {
    bool good = true;
    if (part && part->kind == stmk_block) {
        for (const statement *s = part->statements; s; s = s->next) {
            good &= check_masked_statement(s, mask);
        }
    } else if (part) {
        good = check_masked_statement(part, mask);
    }
    return good;
}

bool check_where(const statement *s, bool good, object *routine) {
    mark_value_read(s);
    bool parts_good = check_nested(s->where_assignment, routine);
    parts_good &= check_nested(s->elsewhere_assignment, routine);
    if (!good || is_error(s->expr)) {
        return false;
    }
    type *mask = s->expr->type;
    if (!is_array(mask) || mask->array.element_type->type_code != tk_logical) {
        error_at(msg_must_be_logical_array_expression, s->expr->source_pos);
        return false;
    }
    good = check_masked_part(s->where_assignment, mask);
    good &= check_masked_part(s->elsewhere_assignment, mask);
    return good && parts_good;
}

// ---- all kinds

bool check_block(const statement *block, object *routine) {
    bool good = true;
    for (statement *s = block->statements; s; s = s->next) {
        good &= check_statement(s, routine);
    }
    return good;
}

bool check_construct(statement *s, object *routine) {
    switch (s->kind) {
    case stmk_block: return check_block(s, routine);
    case stmk_ido:
    case stmk_fdo: return check_loop(s, routine);
    case stmk_case: return check_case(s, routine);
    default: break;
    }
    bool good = check_expressions(s, routine);
    switch (s->kind) {
    case stmk_if:
        good = check_condition(s, good);
        good &= check_nested(s->then_statement, routine);
        return check_nested(s->else_statement, routine) && good;
    case stmk_while: good = check_condition(s, good); return check_nested(s->body_statement, routine) && good;
    case stmk_select: return check_select(s, good, routine);
    case stmk_where: return check_where(s, good, routine);
    default: return good;
    }
}

void mark_loop_label(const statement *jump) {
    const statement *const target = jump->constr_label;
    if (target && target->kind == stmk_label && target->label) {
        (jump->kind == stmk_exit ? target->label->second_flag : target->label->used_in_assign) = true;
    }
}

bool check_simple_statement(statement *s, object *routine) {
    if (s->kind == stmk_expr) {
        return check_expression_statement(s, routine);
    }
    const bool good = check_expressions(s, routine);
    switch (s->kind) {
    case stmk_goto: s->label->source_corresp.referenced = true; return good;
    case stmk_iarith_if:
    case stmk_farith_if: return check_arithmetic_if(s, good);
    case stmk_computed_goto: return check_computed_goto(s, good);
    case stmk_assigned_goto: return check_assigned_goto(s, good);
    case stmk_alt_return:
        warning_at(msg_obsolescent_statement, s->source_pos);
        mark_value_read(s);
        return good;
    case stmk_stop:
    case stmk_pause: return check_stop(s) && good;
    case stmk_exit:
    case stmk_cycle: mark_loop_label(s); return good;
    case stmk_alloc: return check_allocate(s, routine);
    case stmk_dealloc: return check_deallocate(s, routine);
    case stmk_nullify: return good && check_nullify(s);
    default: return good;
    }
}

} // namespace

bool check_do_control(do_loop *control, std::uint32_t flags, object *routine) {
    flags &= ~std::uint32_t{ecf_designator};
    const bool variable_good = check_loop_variable(control->variable, flags, routine);
    bool good = variable_good;
    for (expr_node **value : {&control->initial_value, &control->final_value, &control->increment}) {
        if (*value) {
            good &= check_loop_value(*value, control->variable, variable_good, flags, routine);
        }
    }
    return good;
}

bool check_statement(statement *s, object *routine) {
    if (!begin_check(s)) {
        return true;
    }
    finish_uses();
    switch (s->kind) {
    case stmk_if:
    case stmk_while:
    case stmk_block:
    case stmk_ido:
    case stmk_fdo:
    case stmk_select:
    case stmk_case:
    case stmk_where: return deep_call([s, routine] { return check_construct(s, routine); });
    default:
        return is_io_statement(s->kind) ? check_io_statement(s, routine) : check_simple_statement(s, routine);
    }
}

} // namespace zf90
