// The functions that convert to another type or kind.
#include "constants/folding.h"
#include "intrinsics/handler_helpers.h"

namespace zf90 {

namespace {

// The value of a KIND= argument. False after an error.
bool kind_argument(expr_node *e, object *routine, std::int32_t &value) {
    if (!check_expression(e, ECF_INIT, routine)) {
        return false;
    }
    if (e->type->type_code != tk_integer) {
        error_at(msg_expression_must_be_of_type_integer, e->source_pos);
        return false;
    }
    fold_value folded;
    if (!fold_expression(e, folded, true) || folded.repr_kind != ck_value) {
        return false;
    }
    value = folded.integer;
    return true;
}

// The type of a result: of the kind that KIND= states if it is present, else `default_type`. Null after an
// error.
type *result_element(expr_node *node, expr_node *kind, object *routine, type *default_type,
                     type *(*type_for_kind_number)(std::int32_t, bool &)) {
    if (is_absent(kind)) {
        return default_type;
    }
    std::int32_t kind_number;
    if (!kind_argument(kind, routine, kind_number)) {
        mark_error_node(node);
        return nullptr;
    }
    bool failed = false;
    type *const t = type_for_kind_number(kind_number, failed);
    if (failed) {
        refuse(node, msg_kind_value_does_not_specify_representation_method, kind->source_pos);
        return nullptr;
    }
    return t;
}

type *character_of_length_1(std::int32_t kind_number, bool &failed) {
    return character_type_for_kind_number(kind_number, 1, failed);
}

// The context of a conversion: in a restricted expression it takes integers only.
bool check_conversion_context(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_operand_context(node, flags, routine)) {
        return false;
    }
    return element_of(node->operands)->type_code == tk_integer || refuse_if_restricted(node, flags);
}

} // namespace

bool handle_int(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_conversion_context(node, flags, routine)) {
        return false;
    }
    type *const element =
        result_element(node, argument(node, 1), routine, default_integer(), integer_type_for_kind_number);
    return element && finish_conversion(node, shaped_like(node->operands, element));
}

bool handle_real(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_conversion_context(node, flags, routine)) {
        return false;
    }
    const type *const from = element_of(node->operands);
    type *const standard = from->type_code == tk_complex ? real_type(from->kind) : default_real();
    type *const element =
        result_element(node, argument(node, 1), routine, standard, real_type_for_kind_number);
    return element && finish_conversion(node, shaped_like(node->operands, element));
}

bool handle_dble(expr_node *node, std::uint32_t flags, object *routine) {
    return check_conversion_context(node, flags, routine) &&
           finish_conversion(node, shaped_like(node->operands, double_precision()));
}

bool handle_cmplx(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_conversion_context(node, flags, routine)) {
        return false;
    }
    const bool of_complex = element_of(node->operands)->type_code == tk_complex;
    expr_node *const y = of_complex ? nullptr : argument(node, 1);
    type *const element = result_element(node, argument(node, of_complex ? 1 : 2), routine, default_complex(),
                                         complex_type_for_kind_number);
    if (!element) {
        return false;
    }
    if (is_absent(y)) {
        return finish_conversion(node, shaped_like(node->operands, element));
    }
    if (element_of(y)->type_code != tk_integer && !refuse_if_restricted(node, flags)) {
        return false;
    }
    type *const parts = combine_shapes(node->operands->type, y->type, real_type(element->kind));
    if (!parts) {
        return refuse(node, msg_operands_are_incompatible, y->source_pos);
    }
    convert_expr(*argument_slot(node, 0), parts);
    convert_expr(*argument_slot(node, 1), parts);
    return finish_intrinsic(node, combine_shapes(parts, element, element));
}

bool handle_logical(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_conversion_context(node, flags, routine)) {
        return false;
    }
    type *const element =
        result_element(node, argument(node, 1), routine, default_logical(), logical_type_for_kind_number);
    return element && finish_conversion(node, shaped_like(node->operands, element));
}

bool handle_rounding(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_conversion_context(node, flags, routine)) {
        return false;
    }
    type *const element = result_element(node, argument(node, 1), routine, element_of(node->operands),
                                         real_type_for_kind_number);
    return element && finish_intrinsic(node, shaped_like(node->operands, element));
}

bool handle_nint(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_conversion_context(node, flags, routine)) {
        return false;
    }
    type *const element =
        result_element(node, argument(node, 1), routine, default_integer(), integer_type_for_kind_number);
    return element && finish_intrinsic(node, shaped_like(node->operands, element));
}

bool handle_char(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_conversion_context(node, flags, routine)) {
        return false;
    }
    type *const element =
        result_element(node, argument(node, 1), routine, default_character(1), character_of_length_1);
    return element && finish_intrinsic(node, shaped_like(node->operands, element));
}

} // namespace zf90
