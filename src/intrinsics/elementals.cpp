// The elemental functions of numbers and bits.
#include "il/constants.h"
#include "intrinsics/handler_helpers.h"

namespace zf90 {

namespace {

bool is_integer(const expr_node *e) { return element_of(e)->type_code == tk_integer; }

// Error 111 unless the argument is an integer, or the context is no restricted one.
bool require_integer_if_restricted(expr_node *node, std::uint32_t flags, const expr_node *e) {
    return is_integer(e) || refuse_if_restricted(node, flags);
}

// Error 285 at the first argument.
bool refuse_shapes(expr_node *node) {
    return refuse(node, msg_operands_are_incompatible, node->operands->source_pos);
}

// Gives each argument that is present, from `first` on, the shape of `shape`, of its own element type. A list
// may be long, so it is walked once.
void convert_shapes(expr_node *node, type *shape) {
    for (expr_node **slot = &node->operands; *slot; slot = &(*slot)->next) {
        if (!is_absent(*slot)) {
            type *const element = element_of(*slot);
            convert_expr(*slot, combine_shapes(shape, element, element));
        }
    }
}

// The element type in the common shape of the first two arguments, which are converted to it. Null, after
// error 285, if there is none.
type *shape_pair(expr_node *node, type *element) {
    type *const result = combine_shapes(argument(node, 0)->type, argument(node, 1)->type, element);
    if (!result) {
        refuse_shapes(node);
        return nullptr;
    }
    convert_shapes(node, result);
    return result;
}

type *real_of_complex(const type *t) { return real_type(t->kind); }

} // namespace

bool handle_plain(expr_node *node, std::uint32_t flags, object *routine) {
    return check_operand_context(node, flags, routine) && refuse_if_restricted(node, flags) &&
           finish_intrinsic(node, node->operands->type);
}

bool handle_plain_two(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_operand_context(node, flags, routine) || !refuse_if_restricted(node, flags)) {
        return false;
    }
    type *const result = shape_pair(node, element_of(node->operands));
    return result && finish_intrinsic(node, result);
}

bool handle_to_integer(expr_node *node, std::uint32_t flags, object *routine) {
    return check_operand_context(node, flags, routine) && refuse_if_restricted(node, flags) &&
           finish_intrinsic(node, shaped_like(node->operands, default_integer()));
}

bool handle_abs(expr_node *node, std::uint32_t flags, object *routine) {
    expr_node *const a = node->operands;
    if (!check_operand_context(node, flags, routine) || !require_integer_if_restricted(node, flags, a)) {
        return false;
    }
    type *const element = element_of(a);
    if (element->type_code == tk_complex) {
        return finish_intrinsic(node, shaped_like(a, real_of_complex(element)));
    }
    return finish_intrinsic(node, a->type);
}

bool handle_aimag(expr_node *node, std::uint32_t flags, object *routine) {
    expr_node *const z = node->operands;
    return check_operand_context(node, flags, routine) && refuse_if_restricted(node, flags) &&
           finish_intrinsic(node, shaped_like(z, real_of_complex(element_of(z))));
}

bool handle_remainder(expr_node *node, std::uint32_t flags, object *routine) {
    const expr_node *const a = argument(node, 0);
    const expr_node *const b = argument(node, 1);
    if (!check_operand_context(node, flags, routine) || !require_integer_if_restricted(node, flags, a) ||
        !require_integer_if_restricted(node, flags, b)) {
        return false;
    }
    type *const result = combine_shapes(a->type, b->type, element_of(a));
    return result ? finish_intrinsic(node, result) : refuse_shapes(node);
}

bool handle_dprod(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_operand_context(node, flags, routine) || !refuse_if_restricted(node, flags)) {
        return false;
    }
    type *const result = combine_shapes(argument(node, 0)->type, argument(node, 1)->type, double_precision());
    return result ? finish_intrinsic(node, result) : refuse_shapes(node);
}

bool handle_extremum(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_operand_context(node, flags, routine)) {
        return false;
    }
    expr_node *const first = node->operands;
    type *shape = first->type;
    unsigned count = 0;
    for (const expr_node *e = first; e; e = e->next, ++count) {
        if (!require_integer_if_restricted(node, flags, e)) {
            return false;
        }
        shape = combine_shapes(shape, e->type, element_of(e));
        if (!shape) {
            return refuse_shapes(node);
        }
    }
    // A specific name has a result type of its own, a generic one that of its arguments.
    type *element = element_type_of(node->routine->type->routine.return_type);
    if (element->kind == ANY_KIND) {
        element = element_of(first);
    }
    if (count > 2) {
        convert_shapes(node, shape);
    }
    return finish_intrinsic(node, combine_shapes(shape, element, element));
}

bool handle_merge(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_operand_context(node, flags, routine)) {
        return false;
    }
    expr_node *const source = argument(node, 0);
    const type_code code = element_of(source)->type_code;
    if (code != tk_integer && code != tk_fcharacter && !refuse_if_restricted(node, flags)) {
        return false;
    }
    const expr_node *const other = argument(node, 1);
    const expr_node *const mask = argument(node, 2);
    if (!same_element_type(element_of(source), element_of(other))) {
        return refuse_shapes(node);
    }
    type *result = combine_shapes(source->type, other->type, element_of(source));
    if (result) {
        result = combine_shapes(result, mask->type, element_of(source));
    }
    return result ? finish_intrinsic(node, result) : refuse_shapes(node);
}

// ---- bits

bool handle_bit_pair(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_operand_context(node, flags, routine)) {
        return false;
    }
    type *const result = convert_operands(node->operands);
    return result ? finish_intrinsic(node, result) : refuse_shapes(node);
}

bool handle_bit_shift(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_operand_context(node, flags, routine)) {
        return false;
    }
    type *const result = shape_pair(node, element_of(node->operands));
    return result && finish_intrinsic(node, result);
}

bool handle_btest(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_operand_context(node, flags, routine)) {
        return false;
    }
    type *const result = shape_pair(node, default_logical());
    return result && finish_intrinsic(node, result);
}

bool handle_bit_field(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_operand_context(node, flags, routine)) {
        return false;
    }
    type *const element = element_of(node->operands);
    type *result = node->operands->type;
    for (const expr_node *e = node->operands->next; e && result; e = e->next) {
        if (!is_absent(e)) {
            result = combine_shapes(result, e->type, element);
        }
    }
    return result ? finish_intrinsic(node, result) : refuse_shapes(node);
}

bool handle_bit_not(expr_node *node, std::uint32_t flags, object *routine) {
    return check_operand_context(node, flags, routine) && finish_intrinsic(node, node->operands->type);
}

} // namespace zf90
