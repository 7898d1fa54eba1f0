// The extents of array-valued expressions, as constants where they are known and as expressions where only
// the run can tell.
#include "expressions/shapes.h"

#include "constants/folding.h"
#include "driver/deep_call.h"
#include "expressions/operators.h"
#include "expressions/predicates.h"
#include "expressions/references.h"
#include "expressions/rewrite.h"
#include "il/constants.h"
#include "il/entries.h"
#include "il/types.h"
#include "intrinsics/seed_table.h"

#include <algorithm>
#include <limits>

namespace zf90 {

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

} // namespace

expr_node *value_of(const bound &b, source_pos position) {
    return b.kind == bound_constant ? integer_node(b.value, position) : ref_at(b.expr, position);
}

namespace {

// A reference to an intrinsic function with a default integer result. An absent second argument is null.
expr_node *make_intrinsic(intrinsic_code code, expr_node *first, expr_node *second, source_pos position) {
    expr_node *node = new_intrinsic_node(code, default_integer(), first);
    node->source_pos = position;
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

bool is_variable(const expr_node *e) {
    return e->node_kind == enk_object || e->node_kind == enk_field || e->node_kind == enk_param;
}

unsigned rank_of(const type *t) { return is_array(t) ? t->array.rank : 0; }

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

// ---- the extents of expressions

namespace {

// An extent is a number or an expression, as an upper bound is.
expr_node *expression_of(const bound &extent, source_pos position) {
    return extent.kind == bound_constant ? integer_node(extent.value, position) : extent.expr;
}

bound extent_of(expr_node *e) {
    bound extent{};
    if (is_constant_integer(e)) {
        set_constant_bound(extent, integer_value_of(e->constant));
    } else {
        set_expression_bound(extent, e);
    }
    return extent;
}

// Sums and products of extents. Of numbers they are a number, the largest there is if it gets too large.
bound combine_extents(operation_kind op, const bound &a, const bound &b, source_pos position) {
    bound result{};
    if (a.kind == bound_constant && b.kind == bound_constant) {
        const std::int64_t exact =
            op == eok_iadd ? std::int64_t{a.value} + b.value : std::int64_t{a.value} * b.value;
        const std::int64_t largest = std::numeric_limits<std::int32_t>::max();
        set_constant_bound(result, static_cast<std::int32_t>(std::min(exact, largest)));
    } else {
        expr_node *left = expression_of(a, position);
        set_expression_bound(result, make_integer_operation(op, left, expression_of(b, position), position));
    }
    return result;
}

// The expression that gives another one its shape.
expr_node *source_of_shape(expr_node *expr) {
    expr_node *e = without_refs(expr);
    while (is_array(e->type) && e->type->array.shape_kind == same_shape) {
        expr_node *source = without_refs(e->type->array.args);
        if (source == e || rank_of(source->type) != e->type->array.rank) {
            break;
        }
        e = source;
    }
    return e;
}

expr_node *size_of(expr_node *e, unsigned dimension) {
    const source_pos position = e->source_pos;
    expr_node *number = dimension ? integer_node(static_cast<std::int32_t>(dimension), position) : nullptr;
    return make_intrinsic(intr_size, ref_at(e, position), number, position);
}

// How many steps lead from `first` to `last`: (last - first + step) / step, and without a step
// last - first + 1. Never below zero.
expr_node *count_steps(expr_node *first, expr_node *last, expr_node *step, source_pos position) {
    expr_node *count = last;
    if (step) {
        count = make_integer_operation(eok_isubtract, last, first, position);
        count = make_integer_operation(eok_iadd, count, value_of(step, position), position);
        count = make_integer_operation(eok_idivide, count, value_of(step, position), position);
    } else if (!is_constant_one(first)) {
        count = make_integer_operation(eok_isubtract, last, first, position);
        count = make_integer_operation(eok_iadd, count, integer_node(1, position), position);
    }
    return not_below_zero(count, position);
}

} // namespace

expr_node *extent_between(const bound &lower, const bound &upper, source_pos position) {
    return count_steps(value_of(lower, position), value_of(upper, position), nullptr, position);
}

namespace {

// A bound of a dimension of the whole of which a section is taken, as a number or by asking.
expr_node *bound_of_whole(expr_node *whole, unsigned dimension, bool upper) {
    const source_pos position = whole->source_pos;
    const bound_info_entry *table = bounds_of_type(whole->type);
    const unsigned rank = rank_of(whole->type);
    if (table && table->bounds[upper ? rank + dimension - 1 : dimension - 1].kind == bound_constant) {
        return integer_node(table->bounds[upper ? rank + dimension - 1 : dimension - 1].value, position);
    }
    if (upper && !is_variable(without_refs(whole))) {
        return expr_extent(whole, dimension); // the lower bound is 1
    }
    return make_intrinsic(upper ? intr_ubound : intr_lbound, ref_at(whole, position),
                          integer_node(static_cast<std::int32_t>(dimension), position), position);
}

// The extent of what a triplet selects from a dimension of the whole.
expr_node *triplet_extent(expr_node *triplet, expr_node *whole, unsigned dimension) {
    const source_pos position = triplet->source_pos;
    expr_node *const first =
        triplet->first ? value_of(triplet->first, position) : bound_of_whole(whole, dimension, false);
    expr_node *const last =
        triplet->second ? value_of(triplet->second, position) : bound_of_whole(whole, dimension, true);
    expr_node *const step = triplet->stride && !is_constant_one(triplet->stride) ? triplet->stride : nullptr;
    return count_steps(first, last, step, position);
}

// The extent of a dimension of a section, which is that of its subscript.
expr_node *section_extent(expr_node *section, unsigned dimension) {
    unsigned of_whole = 1;
    for (expr_node *e = section->ind_list; e; e = e->next, ++of_whole) {
        expr_node *subscript = without_refs(e);
        if (!is_array(subscript->type) || --dimension != 0) {
            continue;
        }
        return subscript->node_kind == enk_triplet ? triplet_extent(subscript, section->array_expr, of_whole)
                                                   : expr_extent(subscript, 0);
    }
    return size_of(section, dimension);
}

// An extent that has been worked out, as a number if it has a value.
bound folded_extent(bound extent) {
    if (extent.kind == bound_expression && check_expression(extent.expr, ECF_SPEC, nullptr)) {
        fold_value value;
        if (fold_expression(extent.expr, value, false) && has_value(value)) {
            set_constant_bound(extent, value.integer);
        }
    }
    return extent;
}

// The extent of a dimension by the bounds of the type; null if they do not tell.
expr_node *extent_from_bounds(const expr_node *e, unsigned dimension) {
    const bound_info_entry *table = bounds_of_type(e->type);
    if (!table) {
        return nullptr;
    }
    const bound &lower = table->bounds[dimension - 1];
    const bound &upper = table->bounds[rank_of(e->type) + dimension - 1];
    const source_pos position = e->source_pos;
    if (lower.kind == bound_constant && upper.kind == bound_constant) {
        return integer_node(static_cast<std::int32_t>(constant_extent(lower, upper)), position);
    }
    const auto is_known = [](const bound &b) {
        return b.kind == bound_constant || b.kind == bound_expression;
    };
    if (is_variable(e) || !is_known(lower) || !is_known(upper)) {
        return nullptr;
    }
    if (e->node_kind == enk_call) {
        return count_steps(value_of(lower, position), value_of(upper, position), nullptr, position);
    }
    // Shapes that were worked out here have 1 as their lower bounds, and are never below zero.
    return value_of(upper, position);
}

// The extent of one dimension, of which an expression that is no variable is asked as a last resort.
expr_node *dimension_extent(expr_node *expr, unsigned dimension) {
    expr_node *e = source_of_shape(expr);
    if (e->node_kind == enk_section) {
        return section_extent(e, dimension);
    }
    expr_node *extent = extent_from_bounds(e, dimension);
    return extent ? extent : size_of(e, dimension);
}

// The number of all elements, of a shape that depends on a dimension which only the run knows.
expr_node *size_of_unknown_shape(expr_node *e) {
    expr_node *array = e->type->array.args;
    expr_node *dimension = array->next;
    const source_pos position = e->source_pos;
    if (e->type->array.shape_kind == add_dimension) {
        return make_integer_operation(eok_imultiply, expr_extent(array, 0),
                                      not_below_zero(value_of(dimension->next, position), position),
                                      position);
    }
    if (rank_of(array->type) != 2) {
        return size_of(e, 0);
    }
    // Of two dimensions the other one is left.
    expr_node *other = make_integer_operation(eok_isubtract, integer_node(3, position),
                                              value_of(dimension, position), position);
    return make_intrinsic(intr_size, ref_at(array, position), other, position);
}

expr_node *whole_extent(expr_node *expr) {
    expr_node *e = source_of_shape(expr);
    if (e->type->array.shape_kind > same_shape) {
        return size_of_unknown_shape(e);
    }
    if (is_variable(e) && !is_explicit_constant_shape(e->type)) {
        return size_of(e, 0);
    }
    bound product = extent_of(dimension_extent(e, 1));
    for (unsigned d = 2; d <= rank_of(e->type); ++d) {
        product = combine_extents(eok_imultiply, product, extent_of(dimension_extent(e, d)), e->source_pos);
    }
    return expression_of(product, e->source_pos);
}

} // namespace

expr_node *expr_extent(expr_node *expr, unsigned dimension) {
    if (!is_array(expr->type)) {
        return expr->type->type_code == tk_fcharacter ? text_length(expr) : integer_node(1, expr->source_pos);
    }
    return deep_call([&] { return dimension ? dimension_extent(expr, dimension) : whole_extent(expr); });
}

// ---- the variable of a loop

bool replace_object(expr_node *&slot, const object *o, expr_node *replacement) {
    return rewrite_tree(slot, [=](const expr_node *leaf) -> expr_node * {
        if (leaf->node_kind != enk_object || leaf->object != o) {
            return nullptr;
        }
        expr_node *copy = copy_unchecked_node(replacement);
        copy->source_pos = leaf->source_pos;
        copy_keyword(leaf, copy);
        copy->intent_in = leaf->intent_in;
        copy->is_optional = leaf->is_optional;
        return copy;
    });
}

// ---- tables of bounds

void section_bounds(type *t) {
    if (t->array.shape_kind != same_shape) {
        return;
    }
    expr_node *source = without_refs(t->array.args);
    bound_info_entry *table = new_bound_info_entry(t->array.rank);
    for (unsigned d = 1; d <= t->array.rank; ++d) {
        set_constant_bound(table->bounds[d - 1], 1);
        expr_node *extent =
            source->node_kind == enk_section ? section_extent(source, d) : expr_extent(source, d);
        table->bounds[t->array.rank + d - 1] = folded_extent(extent_of(extent));
    }
    t->array.shape_kind = explicit_shape;
    t->array.bound = table;
}

void make_constant_bounds(type *t) { section_bounds(t); }

// ---- array constructors

namespace {

struct constructor_check {
    object *routine;
    type *element; // of the first value; null before it
};

bool is_open_text(const type *t) {
    return t->type_code == tk_fcharacter && char_length_of_type(t).kind != bound_constant;
}

// Values are not converted to one another's type: all must have the same.
bool check_element_type(constructor_check &c, const expr_node *value) {
    type *t = element_type_of(value->type);
    if (t->type_code == tk_error) {
        return false;
    }
    if (!is_value_type(t)) {
        return fail_at(msg_expected_expression, value);
    }
    if (!c.element) {
        c.element = t;
        return true;
    }
    const bool texts_fit = c.element->type_code == tk_fcharacter && t->type_code == tk_fcharacter &&
                           c.element->kind == t->kind && (is_open_text(c.element) || is_open_text(t));
    return c.element == t || texts_fit || types_equal(c.element, t) ||
           fail_at(msg_type_of_expression_must_be_same_as_of_previous, value);
}

bound value_extent(expr_node *value) {
    bound extent{};
    set_constant_bound(extent, 1);
    if (!is_array(value->type)) {
        return extent;
    }
    const unsigned rank = value->type->array.rank;
    extent = extent_of(expr_extent(value, rank == 1 ? 0 : 1));
    for (unsigned d = 2; d <= rank; ++d) {
        extent = combine_extents(eok_imultiply, extent, extent_of(expr_extent(value, d)), value->source_pos);
    }
    return extent;
}

bool sum_extents(constructor_check &c, expr_node *list, bound &sum);

// The variable of a sum is one of its own, which takes the place of the variable of the constructor.
expr_node *new_sum_variable(const expr_node *variable, expr_node *sum) {
    const object *model = variable->object;
    object *o = new_object();
    o->source_corresp = model->source_corresp;
    o->storage_class = sc_implied_do_var;
    o->type = model->type;
    o->assoc.implied_do = sum;
    expr_node *node = new_expr_node(enk_object);
    node->source_pos = variable->source_pos;
    node->object = o;
    node->type = model->type;
    return node;
}

// The sum of the extents that a body has in the turns of its loop.
expr_node *make_sum(const expr_node *loop, expr_node *body) {
    const do_loop *control = loop->do_info;
    expr_node *sum = new_expr_node(enk_isum);
    sum->source_pos = loop->source_pos;
    sum->type = default_integer();
    sum->has_a_scope = true;
    sum->do_info->initial_value = control->initial_value;
    sum->do_info->final_value = control->final_value;
    sum->do_info->increment = control->increment;
    sum->do_info->final_value_excluded = control->final_value_excluded;
    const expr_node *variable = control->variable;
    expr_node *own = new_sum_variable(variable, sum);
    sum->do_info->variable = own;
    replace_object(body, variable->object, own);
    for (expr_node **part :
         {&sum->do_info->initial_value, &sum->do_info->final_value, &sum->do_info->increment}) {
        if (*part) {
            replace_object(*part, variable->object, own);
        }
    }
    sum->expr_list = body;
    return sum;
}

expr_node *trip_count(const expr_node *loop) {
    const do_loop *control = loop->do_info;
    const source_pos position = loop->source_pos;
    expr_node *step =
        control->increment && !is_constant_one(control->increment) ? control->increment : nullptr;
    return count_steps(value_of(control->initial_value, position), value_of(control->final_value, position),
                       step, position);
}

// The length of the elements may be said in terms of the variable of the loop, which has no value outside of
// it. All elements have one length, so that of the first turn will do.
void release_length(constructor_check &c, const expr_node *loop) {
    if (c.element->type_code != tk_fcharacter || c.element->character.length.kind != bound_expression) {
        return;
    }
    const do_loop *control = loop->do_info;
    expr_node *length = c.element->character.length.expr;
    expr_node *first = value_of(control->initial_value, loop->source_pos);
    if (replace_object(length, control->variable->object, first)) {
        type *t = new_type(tk_fcharacter);
        t->kind = c.element->kind;
        t->is_character = c.element->is_character;
        set_expression_bound(t->character.length, length);
        c.element = t;
    }
}

// An increment of zero is reported here, as no extent could be worked out with it.
bool has_good_increment(const do_loop *control) {
    fold_value step;
    if (!control->increment || !fold_expression(control->increment, step, false) || !has_value(step) ||
        step.type->type_code != tk_integer || step.integer != 0) {
        return true;
    }
    return fail_at(msg_increment_of_do_is_not_allowed_to_be_zero, control->increment);
}

bool implied_do_extent(constructor_check &c, expr_node *loop, bound &extent) {
    bound body{};
    if (!sum_extents(c, loop->expr_list, body)) {
        return false;
    }
    const expr_node *variable = loop->do_info->variable;
    if (variable->node_kind != enk_object || !has_good_increment(loop->do_info)) {
        return false;
    }
    release_length(c, loop);
    body = folded_extent(body);
    if (body.kind == bound_expression) {
        set_expression_bound(extent, make_sum(loop, body.expr));
        return true;
    }
    extent = folded_extent(extent_of(trip_count(loop)));
    if (body.value != 1) {
        extent = combine_extents(eok_imultiply, extent, body, loop->source_pos);
    }
    return true;
}

bool sum_extents(constructor_check &c, expr_node *list, bound &sum) {
    for (expr_node *value = list; value; value = value->next) {
        bound extent{};
        if (value->node_kind == enk_implied_do) {
            if (!deep_call([&] { return implied_do_extent(c, value, extent); })) {
                return false;
            }
        } else {
            if (!check_element_type(c, value)) {
                return false;
            }
            extent = value_extent(value);
        }
        sum = value == list ? extent : combine_extents(eok_iadd, sum, extent, value->source_pos);
    }
    return list != nullptr;
}

} // namespace

bool constructor_extent(expr_node *node, object *routine, bound &extent) {
    constructor_check c{routine, nullptr};
    if (!sum_extents(c, node->constructor, extent)) {
        return false;
    }
    node->type = new_array_type(c.element, 1);
    node->type->source_corresp.decl_position = node->source_pos;
    set_constant_bound(node->type->array.bound->bounds[0], 1);
    node->type->array.bound->bounds[1] = extent;
    return true;
}

bool check_array_constructor(expr_node *node, object *routine) {
    bound extent{};
    return constructor_extent(node, routine, extent);
}

// ---- the targets of pointers

namespace {

bool may_be_target(const expr_node *target) {
    for (const expr_node *e = target;;) {
        switch (e->node_kind) {
        case enk_call: return e->routine->is_pointer;
        case enk_object: return e->object->is_target || e->object->is_pointer;
        case enk_field:
            if (e->field_var->is_pointer) {
                return true;
            }
            e = e->base_expr;
            break;
        case enk_ref: e = e->reference; break;
        case enk_subscript:
        case enk_substring:
        case enk_section: e = e->array_expr; break;
        default: return false;
        }
    }
}

bool has_target_type(const type *pointer, const type *target) {
    if (pointer == target || types_equal(pointer, target)) {
        return true;
    }
    if (pointer->type_code != tk_fcharacter || target->type_code != tk_fcharacter ||
        pointer->kind != target->kind) {
        return false;
    }
    const bound &a = char_length_of_type(pointer);
    const bound &b = char_length_of_type(target);
    return a.kind != bound_constant || b.kind != bound_constant || a.value == b.value;
}

bool refuse_target(const expr_node *target, const char *what) {
    error_at(msg_target_must_be_of_same_as_pointer, target->source_pos, what);
    return false;
}

} // namespace

bool pointer_assign_check(type *pointer_type, expr_node *target) {
    if (target->type->type_code == tk_error || pointer_type->type_code == tk_error) {
        return false;
    }
    if (!may_be_target(target)) {
        return fail_at(msg_must_be_pointer_or_target_attribute_or_be_parent, target);
    }
    if (rank_of(pointer_type) != rank_of(target->type)) {
        return refuse_target(target, "rank");
    }
    if (!has_target_type(element_type_of(pointer_type), element_type_of(target->type))) {
        return refuse_target(target, "type and type parameters");
    }
    return !section_has_vector_subscript(target) ||
           fail_at(msg_array_section_with_vector_subscript_is_not_allowed, target);
}

} // namespace zf90
