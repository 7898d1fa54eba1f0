// What an operator means once its operands are known: the operation, the type of its result, and the
// conversions around its operands. Reached through the handlers of the intrinsic operators, as a reference
// `a + b` is a call of the generic procedure "+".
#pragma once

#include "il/records.h"

namespace zf90 {

// The type that the operands of an operation have in common, array-shaped if one of them is an array; null if
// they are incompatible.
type *common_type(type *left, type *right);

// The element type in the shape of the operands; null if the shapes do not conform.
type *combine_shapes(type *left, type *right, type *element);

// The element type in the shape of a type, which is the element type itself unless that type is an array.
type *with_element(type *shape, type *element);

// Gives a node the keyword, or the specifier, of one whose place it takes.
void copy_keyword(const expr_node *from, expr_node *to);

// A copy of a type that is to be checked and completed by itself.
type *unchecked_copy(const type *t);

// Converts a list of two operands to their common type, which is returned; null if there is none.
type *convert_operands(expr_node *&operands);

// Converts an expression in place.
void convert_expr(expr_node *&slot, type *t);

// Converts the source of an assignment to the destination's type. False after error 385.
bool assign_conversion(type *destination, expr_node *&source);

// What the context of a reference demands of its operands; error 36, 111, 571 or 600, and an error node. The
// first test of every operator and of most intrinsic procedures.
bool check_operand_context(expr_node *node, std::uint32_t flags, object *routine);

// The handlers of the intrinsic operators, which rewrite a bound call to an `enk_operation`. False after an
// error, with an error node.
bool handle_assignment(expr_node *node, std::uint32_t flags, object *routine);
bool handle_add(expr_node *node, std::uint32_t flags, object *routine);
bool handle_subtract(expr_node *node, std::uint32_t flags, object *routine);
bool handle_multiply(expr_node *node, std::uint32_t flags, object *routine);
bool handle_divide(expr_node *node, std::uint32_t flags, object *routine);
bool handle_power(expr_node *node, std::uint32_t flags, object *routine);
bool handle_concat(expr_node *node, std::uint32_t flags, object *routine);
bool handle_eq(expr_node *node, std::uint32_t flags, object *routine);
bool handle_ne(expr_node *node, std::uint32_t flags, object *routine);
bool handle_gt(expr_node *node, std::uint32_t flags, object *routine);
bool handle_ge(expr_node *node, std::uint32_t flags, object *routine);
bool handle_lt(expr_node *node, std::uint32_t flags, object *routine);
bool handle_le(expr_node *node, std::uint32_t flags, object *routine);
bool handle_not(expr_node *node, std::uint32_t flags, object *routine);
bool handle_and(expr_node *node, std::uint32_t flags, object *routine);
bool handle_or(expr_node *node, std::uint32_t flags, object *routine);
bool handle_eqv(expr_node *node, std::uint32_t flags, object *routine);
bool handle_neqv(expr_node *node, std::uint32_t flags, object *routine);

} // namespace zf90
