// The functions of characters.
#include "il/constants.h"
#include "intrinsics/handler_helpers.h"

namespace zf90 {

namespace {

bool refuse_operands(expr_node *node) {
    return refuse(node, msg_operands_are_incompatible, node->operands->source_pos);
}

// A character type like that of the argument whose length is known at run time only, by an expression.
type *character_of_length(const expr_node *e, expr_node *length) {
    type *const t = new_type(tk_fcharacter);
    t->kind = element_of(e)->kind;
    t->is_character = element_of(e)->is_character;
    set_expression_bound(t->character.length, length);
    return t;
}

} // namespace

bool handle_search(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_operand_context(node, flags, routine)) {
        return false;
    }
    const expr_node *const set = argument(node, 1);
    type *const texts = common_type(node->operands->type, set->type);
    if (!texts) {
        return refuse_operands(node);
    }
    type *result = combine_shapes(texts, default_integer(), default_integer());
    expr_node **const back = argument_slot(node, 2);
    if (!is_absent(*back)) {
        convert_expr(*back, shaped_like(*back, default_logical()));
        result = combine_shapes(result, (*back)->type, default_integer());
    }
    return result ? finish_intrinsic(node, result) : refuse_operands(node);
}

bool handle_len_trim(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_operand_context(node, flags, routine)) {
        return false;
    }
    node->operands->any_type_argument = true;
    return finish_intrinsic(node, shaped_like(node->operands, default_integer()));
}

bool handle_adjust(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_operand_context(node, flags, routine)) {
        return false;
    }
    node->operands->any_type_argument = true;
    return finish_intrinsic(node, node->operands->type);
}

bool handle_repeat(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_operand_context(node, flags, routine)) {
        return false;
    }
    expr_node *const text = node->operands;
    expr_node *const length = new_intrinsic_node(intr_len, default_integer(), new_ref(text));
    length->next = new_ref(argument(node, 1));
    expr_node *const product = new_operation(eok_imultiply, default_integer(), length);
    product->source_pos = node->source_pos; // it may overflow
    return finish_intrinsic(node, character_of_length(text, product));
}

bool handle_trim(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_operand_context(node, flags, routine)) {
        return false;
    }
    expr_node *const text = node->operands;
    expr_node *const length = new_intrinsic_node(intr_len_trim, default_integer(), new_ref(text));
    return finish_intrinsic(node, character_of_length(text, length));
}

bool handle_achar(expr_node *node, std::uint32_t flags, object *routine) {
    return check_operand_context(node, flags, routine) &&
           finish_intrinsic(node, shaped_like(node->operands, default_character(1)));
}

bool handle_character_code(expr_node *node, std::uint32_t flags, object *routine) {
    return check_operand_context(node, flags, routine) &&
           finish_intrinsic(node, shaped_like(node->operands, default_integer()));
}

bool handle_lexical(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_operand_context(node, flags, routine) || !refuse_if_restricted(node, flags)) {
        return false;
    }
    expr_node *const left = argument(node, 0);
    expr_node *const right = argument(node, 1);
    type *const result = combine_shapes(left->type, right->type, default_logical());
    if (!result) {
        return refuse_operands(node);
    }
    left->any_type_argument = true;
    right->any_type_argument = true;
    return finish_intrinsic(node, result);
}

} // namespace zf90
