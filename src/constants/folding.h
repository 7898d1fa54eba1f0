// The value of a checked expression.
#pragma once

#include "constants/arithmetic.h"

namespace zf90 {

// Folds a checked tree. `value` has no value if the tree is no constant or is in error. With `must_fold` what
// is no constant is an error, at the innermost node that does not fold. A tree is never changed, but that a
// node in error may become an `enk_error`, and that the type of a folded array gets a shape of constants and
// that of a substring its length. False if the tree is in error, which has been reported, now or earlier.
bool fold_expression(expr_node *node, fold_value &value, bool must_fold);

// What is known of a node goes on to hold for a copy that takes its place, operands and all.
void keep_fold_memo(expr_node *copy, const expr_node *original);

// Gives the initial value of a named constant, which is held as a tree until somebody needs it, its folded
// form; does nothing the second time. False if it is in error; that has been reported.
bool check_initializer(constant *value);

// Cuts or lengthens a text, or the texts of an array, to the length of the type, if that is constant.
void fit_text_length(fold_value &value, type *t);

void folding_init(); // forgets what is known of the constants of an earlier compilation

} // namespace zf90
