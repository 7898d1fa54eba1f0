// The functions that combine, rearrange or reduce the elements of arrays.
#include "constants/folding.h"
#include "expressions/predicates.h"
#include "expressions/shapes.h"
#include "il/constants.h"
#include "intrinsics/handler_helpers.h"

#include <limits>

namespace zf90 {

namespace {

constexpr unsigned highest_rank = 7;

bool refuse_at(expr_node *node, error_code message, const expr_node *blamed) {
    return refuse(node, message, blamed->source_pos);
}

unsigned rank_of(const expr_node *e) { return is_array_valued(e) ? e->type->array.rank : 0; }

void set_extent(type *t, unsigned dimension, expr_node *extent) {
    bound *const bounds = t->array.bound->bounds;
    set_constant_bound(bounds[dimension - 1], 1);
    set_expression_bound(bounds[t->array.rank + dimension - 1], extent);
}

// An array type whose shape depends on a dimension that only the run knows.
type *new_unknown_shape(type *element, unsigned rank, shape_kind kind, expr_node *args) {
    type *const t = new_type(tk_farray);
    t->array.element_type = element;
    t->array.rank = static_cast<std::uint8_t>(rank);
    t->array.shape_kind = kind;
    t->array.args = args;
    return t;
}

struct dimension_bounds {
    const bound *lower;
    const bound *upper;
};

// The bounds of a dimension (from 1) of an array expression. False if they are not constant.
bool constant_bounds(const expr_node *e, unsigned dimension, dimension_bounds &bounds) {
    const bound_info_entry *table = bounds_of_type(e->type);
    if (!table) {
        type *const t = new_type(tk_farray);
        copy_type(e->type, t);
        section_bounds(t);
        table = bounds_of_type(t);
    }
    if (!table) {
        return false;
    }
    bounds = {&table->bounds[dimension - 1], &table->bounds[rank_of(e) + dimension - 1]};
    return bounds.lower->kind == bound_constant && bounds.upper->kind == bound_constant;
}

// Whether two dimensions have the same extent, as far as that is known.
bool extents_agree(const expr_node *a, unsigned dimension, const expr_node *b, unsigned other) {
    dimension_bounds p;
    dimension_bounds q;
    return !constant_bounds(a, dimension, p) || !constant_bounds(b, other, q) ||
           constant_extent(*p.lower, *p.upper) == constant_extent(*q.lower, *q.upper);
}

// The type of `array` without the dimension DIM, of which `dimension` is the number, 0 if it is not known.
type *reduce_type(expr_node *array, expr_node *dim, unsigned dimension, type *element) {
    const unsigned rank = rank_of(array);
    if (is_absent(dim) || rank == 1) {
        return element;
    }
    if (dimension == 0) {
        expr_node *const args = new_ref(array);
        args->next = new_ref(dim);
        return new_unknown_shape(element, rank - 1, delete_dimension, args);
    }
    type *const t = new_array_type(element, rank - 1);
    unsigned to = 0;
    for (unsigned from = 1; from <= rank; ++from) {
        if (from != dimension) {
            set_extent(t, ++to, expr_extent(array, from));
        }
    }
    return t;
}

// Whether a shift or a boundary fits an array: a scalar, or of rank one less.
bool require_rank_below(expr_node *node, const expr_node *e, const expr_node *array) {
    const unsigned rank = rank_of(array);
    if (rank == 1) {
        return !is_array_valued(e) || refuse_at(node, msg_must_be_scalar_expression, e);
    }
    return !is_array_valued(e) || rank_of(e) == rank - 1 ||
           refuse_at(node, msg_rank_must_be_equal_to_rank_of_first, e);
}

bool refuse_operands(expr_node *node, const expr_node *blamed) {
    return refuse_at(node, msg_operands_are_incompatible, blamed);
}

expr_node *new_integer_operation(operation_kind op, expr_node *left, expr_node *right) {
    left->next = right;
    return new_operation(op, default_integer(), left);
}

expr_node *new_integer_node(std::int32_t value) {
    return new_integer_constant_node(value, default_integer());
}

// The size of an element in bytes as an expression: a number, or from the length of a character.
expr_node *element_size(expr_node *e) {
    type *const element = element_of(e);
    complete_type(element);
    if (element->type_code == tk_fcharacter && char_length_of_type(element).kind != bound_constant) {
        return new_intrinsic_node(intr_len, default_integer(), new_ref(e));
    }
    return new_integer_node(static_cast<std::int32_t>(element->size));
}

// The elements of MOLD that a source fills whose number of bytes is known, but too large for the integers of
// the program. Null for another source, or if the result is too large as well.
expr_node *extent_of_large_transfer(const expr_node *source, const expr_node *mold) {
    constexpr std::uint64_t largest = std::numeric_limits<std::int32_t>::max();
    type *const element = element_of(mold);
    complete_type(source->type);
    complete_type(element);
    const std::uint64_t rounded = std::uint64_t{source->type->size} + element->size - 1;
    if (element->size == 0 || rounded <= largest || rounded / element->size > largest) {
        return nullptr;
    }
    return new_integer_node(static_cast<std::int32_t>(rounded / element->size));
}

// How many elements of MOLD the bytes of SOURCE fill.
expr_node *transfer_extent(expr_node *source, expr_node *mold) {
    if (expr_node *const extent = extent_of_large_transfer(source, mold)) {
        return extent;
    }
    expr_node *bytes = element_size(source);
    if (is_array_valued(source)) {
        bytes = new_integer_operation(eok_imultiply, expr_extent(source, 0), bytes);
    }
    expr_node *const rounding = new_integer_operation(eok_isubtract, element_size(mold), new_integer_node(1));
    return new_integer_operation(eok_idivide, new_integer_operation(eok_iadd, bytes, rounding),
                                 element_size(mold));
}

} // namespace

// ---- reductions

bool handle_reduction(expr_node *node, std::uint32_t flags, object *routine) {
    expr_node *const array = argument(node, 0);
    expr_node *const dim = argument(node, 1);
    unsigned dimension;
    if (!check_operand_context(node, flags, routine) || !refuse_if_restricted(node, flags) ||
        !require_array(node, array) || !refuse_optional_dummy(node, dim) ||
        !check_dim_argument(node, dim, rank_of(array), msg_subscript_out_of_range, dimension)) {
        return false;
    }
    const expr_node *const mask = argument(node, 2);
    if (!require_conformance(node, mask, array, mask)) {
        return false;
    }
    const bool is_count = handler_index(node->routine) == intr_count;
    type *const element = is_count ? default_integer() : element_of(array);
    return finish_intrinsic(node, reduce_type(array, dim, dimension, element));
}

bool handle_location(expr_node *node, std::uint32_t flags, object *routine) {
    expr_node *const array = argument(node, 0);
    const expr_node *const mask = argument(node, 1);
    return check_operand_context(node, flags, routine) && refuse_if_restricted(node, flags) &&
           require_array(node, array) && require_conformance(node, mask, array, mask) &&
           finish_intrinsic(node,
                            new_vector_type(default_integer(), static_cast<std::int32_t>(rank_of(array))));
}

bool handle_dot_product(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_operand_context(node, flags, routine) || !refuse_if_restricted(node, flags)) {
        return false;
    }
    type *const common = convert_operands(node->operands);
    return common ? finish_intrinsic(node, element_type_of(common)) : refuse_operands(node, node->operands);
}

bool handle_matmul(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_operand_context(node, flags, routine) || !refuse_if_restricted(node, flags)) {
        return false;
    }
    expr_node *const a = argument(node, 0);
    expr_node *const b = argument(node, 1);
    type *const element = common_type(element_of(a), element_of(b));
    if (!element || !extents_agree(a, rank_of(a), b, 1)) {
        return refuse_operands(node, a);
    }
    if (rank_of(a) == 1) {
        return finish_intrinsic(node, new_vector_type(element, expr_extent(b, 2)));
    }
    if (rank_of(b) == 1) {
        return finish_intrinsic(node, new_vector_type(element, expr_extent(a, 1)));
    }
    type *const t = new_array_type(element, 2);
    set_extent(t, 1, expr_extent(a, 1));
    set_extent(t, 2, expr_extent(b, 2));
    return finish_intrinsic(node, t);
}

// ---- rearrangements

bool handle_reshape(expr_node *node, std::uint32_t flags, object *routine) {
    expr_node *const source = argument(node, 0);
    expr_node *const shape = argument(node, 1);
    expr_node *const pad = argument(node, 2);
    expr_node *const order = argument(node, 3);
    if (!check_operand_context(node, flags, routine) || !require_array(node, source)) {
        return false;
    }
    dimension_bounds bounds;
    if (!constant_bounds(shape, 1, bounds)) {
        return refuse_at(node, msg_non_constant_bound_array_or_non_constant_length, shape);
    }
    const std::uint64_t rank = constant_extent(*bounds.lower, *bounds.upper);
    if (rank < 1) {
        error_at(msg_must_be_positive, shape->source_pos, "array size");
        mark_error_node(node);
        return false;
    }
    if (rank > highest_rank) {
        return refuse_at(node, msg_argument_size_must_be_less_or_equal_to_seven, shape);
    }
    type *const element = element_of(source);
    if (is_absent(pad)) {
        pad->type = new_array_type(element, 1);
        set_constant_bound(pad->type->array.bound->bounds[0], 1);
        set_constant_bound(pad->type->array.bound->bounds[1], 0);
    } else {
        if (!require_array(node, pad)) {
            return false;
        }
        if (!same_element_type(element_of(pad), element)) {
            return refuse_operands(node, pad);
        }
        pad->any_type_argument = true;
    }
    if (is_absent(order)) {
        order->type = default_integer();
    } else if (!require_conformance(node, order, shape, order)) {
        return false;
    }
    source->any_type_argument = true;
    type *const t = new_array_type(element, static_cast<unsigned>(rank));
    for (unsigned i = 0; i < rank; ++i) {
        expr_node *const extent = new_expr_node(enk_subscript);
        extent->array_expr = new_ref(shape);
        extent->ind_list = new_integer_node(bounds.lower->value + static_cast<std::int32_t>(i));
        set_extent(t, i + 1, extent);
    }
    return finish_intrinsic(node, t);
}

bool handle_spread(expr_node *node, std::uint32_t flags, object *routine) {
    expr_node *const source = argument(node, 0);
    expr_node *const dim = argument(node, 1);
    expr_node *const copies = argument(node, 2);
    if (!check_operand_context(node, flags, routine) || !refuse_if_restricted(node, flags)) {
        return false;
    }
    const unsigned rank = rank_of(source) + 1;
    if (rank > highest_rank) {
        return refuse_at(node, msg_maximum_rank_may_be_six, source);
    }
    fold_value folded;
    if (!fold_expression(dim, folded, false) || folded.repr_kind != ck_value) {
        expr_node *const args = new_ref(source);
        args->next = new_ref(dim);
        args->next->next = new_ref(copies);
        return finish_intrinsic(node, new_unknown_shape(element_of(source), rank, add_dimension, args));
    }
    const std::int32_t dimension = folded.integer;
    if (dimension < 1 || dimension > static_cast<std::int32_t>(rank)) {
        return refuse_at(node, msg_subscript_out_of_range, dim);
    }
    type *const t = new_array_type(element_of(source), rank);
    unsigned from = 0;
    for (unsigned to = 1; to <= rank; ++to) {
        const bool is_new = to == static_cast<unsigned>(dimension);
        set_extent(t, to, is_new ? new_ref(copies) : expr_extent(source, ++from));
    }
    return finish_intrinsic(node, t);
}

bool handle_cshift(expr_node *node, std::uint32_t flags, object *routine) {
    expr_node *const array = argument(node, 0);
    unsigned dimension;
    return check_operand_context(node, flags, routine) && refuse_if_restricted(node, flags) &&
           require_array(node, array) && require_rank_below(node, argument(node, 1), array) &&
           check_dim_argument(node, argument(node, 2), rank_of(array), msg_subscript_out_of_range,
                              dimension) &&
           finish_intrinsic(node, array->type);
}

bool handle_eoshift(expr_node *node, std::uint32_t flags, object *routine) {
    expr_node *const array = argument(node, 0);
    expr_node *const boundary = argument(node, 2);
    unsigned dimension;
    if (!check_operand_context(node, flags, routine) || !refuse_if_restricted(node, flags) ||
        !require_array(node, array) || !require_rank_below(node, argument(node, 1), array)) {
        return false;
    }
    type *const element = element_of(array);
    if (is_absent(boundary)) {
        if (element->type_code == tk_derived_type) {
            return refuse(node, msg_expected_obligatory_argument, node->source_pos);
        }
        boundary->type = element;
    } else if (!same_element_type(element_of(boundary), element)) {
        return refuse_operands(node, boundary);
    } else if (!require_rank_below(node, boundary, array)) {
        return false;
    }
    return check_dim_argument(node, argument(node, 3), rank_of(array), msg_subscript_out_of_range,
                              dimension) &&
           finish_intrinsic(node, array->type);
}

bool handle_transpose(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_operand_context(node, flags, routine) || !refuse_if_restricted(node, flags)) {
        return false;
    }
    expr_node *const matrix = node->operands;
    type *const t = new_array_type(element_of(matrix), 2);
    if (is_explicit_constant_shape(matrix->type)) {
        const bound *const from = matrix->type->array.bound->bounds;
        bound *const to = t->array.bound->bounds;
        to[0] = from[1];
        to[1] = from[0];
        to[2] = from[3];
        to[3] = from[2];
    } else {
        set_extent(t, 1, expr_extent(matrix, 2));
        set_extent(t, 2, expr_extent(matrix, 1));
    }
    return finish_intrinsic(node, t);
}

bool handle_pack(expr_node *node, std::uint32_t flags, object *routine) {
    expr_node *const array = argument(node, 0);
    expr_node *const mask = argument(node, 1);
    expr_node *const vector = argument(node, 2);
    if (!check_operand_context(node, flags, routine) || !refuse_if_restricted(node, flags) ||
        !require_array(node, array) || !require_conformance(node, mask, array, mask)) {
        return false;
    }
    type *const element = element_of(array);
    if (!is_absent(vector)) {
        if (!same_element_type(element_of(vector), element)) {
            return refuse_operands(node, vector);
        }
        return finish_intrinsic(node, new_vector_type(element, expr_extent(vector, 0)));
    }
    vector->type = new_vector_type(element, 0);
    expr_node *selected = new_ref(mask);
    if (!is_array_valued(mask)) {
        convert_expr(selected, shaped_like(array, mask->type));
    }
    expr_node *const no_dim = new_expr_node(enk_empty);
    no_dim->type = default_integer();
    selected->next = no_dim;
    return finish_intrinsic(
        node, new_vector_type(element, new_intrinsic_node(intr_count, default_integer(), selected)));
}

bool handle_unpack(expr_node *node, std::uint32_t flags, object *routine) {
    expr_node *const vector = argument(node, 0);
    expr_node *const mask = argument(node, 1);
    expr_node *const field = argument(node, 2);
    if (!check_operand_context(node, flags, routine) || !refuse_if_restricted(node, flags) ||
        !require_array(node, mask)) {
        return false;
    }
    if (!same_element_type(element_of(field), element_of(vector))) {
        return refuse_operands(node, field);
    }
    return require_conformance(node, field, mask, field) &&
           finish_intrinsic(node, shaped_like(mask, element_of(vector)));
}

bool handle_transfer(expr_node *node, std::uint32_t flags, object *routine) {
    expr_node *const source = argument(node, 0);
    expr_node *const mold = argument(node, 1);
    expr_node *const size = argument(node, 2);
    if (!check_operand_context(node, flags, routine)) {
        return false;
    }
    if (!is_absent(size)) {
        return refuse_optional_dummy(node, size) &&
               finish_intrinsic(node, new_vector_type(element_of(mold), new_ref(size)));
    }
    if (!is_array_valued(mold)) {
        return finish_intrinsic(node, mold->type);
    }
    return finish_intrinsic(node, new_vector_type(element_of(mold), transfer_extent(source, mold)));
}

} // namespace zf90
