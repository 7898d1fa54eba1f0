// The extents of array-valued expressions, as constants where they are known and as expressions where only
// the run can tell.
#include "expressions/shapes.h"

#include "expressions/check.h"
#include "expressions/predicates.h"
#include "il/constants.h"
#include "il/entries.h"
#include "il/types.h"
#include "intrinsics/seed_table.h"

namespace zf90 {

type *array_type_with_element(const type *t, type *element) {
    type *copy = new_type(tk_farray);
    copy->array = t->array;
    copy->array.element_type = element;
    copy->source_corresp.decl_position = t->source_corresp.decl_position;
    return copy;
}

// ---- making nodes

namespace {

expr_node *integer_node(std::int32_t value, source_pos position) {
    expr_node *node = new_integer_constant_node(value, default_integer());
    node->source_pos = position;
    return node;
}

bool is_constant_integer(const expr_node *e) {
    return e->node_kind == enk_constant && e->type->type_code == tk_integer;
}

bool is_constant_one(const expr_node *e) {
    return is_constant_integer(e) && integer_value_of(e->constant) == 1;
}

expr_node *ref_at(expr_node *target, source_pos position) {
    expr_node *node = new_ref(target);
    node->source_pos = position;
    return node;
}

// A part of a tree of the user for use in another place: a constant is copied.
expr_node *value_of(expr_node *e, source_pos position) {
    return is_constant_integer(e) ? integer_node(integer_value_of(e->constant), position)
                                  : ref_at(e, position);
}

expr_node *value_of(const bound &b, source_pos position) {
    return b.kind == bound_constant ? integer_node(b.value, position) : ref_at(b.expr, position);
}

// A reference to an intrinsic function with a default integer result. An absent second argument is null.
expr_node *make_intrinsic(intrinsic_code code, expr_node *first, expr_node *second, source_pos position) {
    expr_node *node = new_expr_node(enk_intrinsic);
    node->source_pos = position;
    node->type = default_integer();
    node->intrinsic = code;
    node->operands = first;
    const object *form = seed_interface(code)->routine_prototype_list->object;
    const param_type *p = form->type->routine.param_type_list;
    if (!second && p->next) {
        second = new_expr_node(enk_empty);
        second->source_pos = position;
        second->type = default_integer();
    }
    first->next = second;
    for (expr_node *e = first; e && p; e = e->next, p = p->next) {
        e->keyword = p->source_corresp.name;
        e->intent_in = true;
        e->is_optional = p->is_optional;
    }
    return node;
}

// MAX0(e, 0), which a constant is reduced to.
expr_node *not_below_zero(expr_node *e, source_pos position) {
    if (is_constant_integer(e)) {
        const std::int32_t value = integer_value_of(e->constant);
        return value < 0 ? integer_node(0, position) : e;
    }
    return make_intrinsic(intr_max0, e, integer_node(0, position), position);
}

expr_node *skip_refs(expr_node *e) {
    while (e->node_kind == enk_ref) {
        e = e->reference;
    }
    return e;
}

bool is_variable(const expr_node *e) {
    return e->node_kind == enk_object || e->node_kind == enk_field || e->node_kind == enk_param;
}

} // namespace

expr_node *make_integer_operation(operation_kind op, expr_node *left, expr_node *right, source_pos position) {
    expr_node *node = new_operation(op, default_integer(), left);
    node->source_pos = position;
    left->next = right;
    return node;
}

expr_node *text_length(expr_node *expr) {
    const source_pos position = expr->source_pos;
    const bound &length = char_length_of_type(element_type_of(expr->type));
    if (length.kind == bound_constant || length.kind == bound_expression) {
        return value_of(length, position);
    }
    return make_intrinsic(intr_len, ref_at(expr, position), nullptr, position);
}

} // namespace zf90
