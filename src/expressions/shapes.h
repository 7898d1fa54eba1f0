// The shapes of array-valued expressions: how many elements an array constructor, a section or any other
// expression has, as a number or, where only the run can tell, as an expression. Also the rule for the
// targets of pointers, which compares shapes.
#pragma once

#include "il/records.h"

namespace zf90 {

// The check of an array constructor whose values have been checked: gives it its type, of rank 1. False after
// an error, which has been reported.
bool check_array_constructor(expr_node *node, object *routine);

// The number of elements of a constructor, or of an implied DO in one. False after an error.
bool constructor_extent(expr_node *node, object *routine, bound &extent);

// An expression for the extent of a dimension (from 1) of an array expression, of the whole array for 0; the
// length of a character expression.
expr_node *expr_extent(expr_node *expr, unsigned dimension);

// How many elements lie between two bounds, which are left as they are.
expr_node *extent_between(const bound &lower, const bound &upper, source_pos position);

// A bound that is a number or an expression, for use in another place.
expr_node *value_of(const bound &b, source_pos position);

// Makes the table of bounds of a type whose shape is that of a section or of another expression.
void section_bounds(type *t);

// The same for the type of a folded value, whose shape is constant.
void make_constant_bounds(type *t);

// The length of the elements of an expression of type character, as an expression.
expr_node *text_length(expr_node *expr);

// An operation on default integers at a position. The operands must be on no list.
expr_node *make_integer_operation(operation_kind op, expr_node *left, expr_node *right, source_pos position);

// Replaces references to an object in a tree, in which only what changes is copied. True if something
// changed.
bool replace_object(expr_node *&slot, const object *o, expr_node *replacement);

// Whether a pointer of that type can be associated with the target; errors 361, 291 and 30 at the target.
bool pointer_assign_check(type *pointer_type, expr_node *target);

} // namespace zf90
