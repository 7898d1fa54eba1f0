// The value of a checked expression.
#pragma once

#include "constants/arithmetic.h"

namespace zf90 {

// Folds a checked tree. `value` has no value if the tree is no constant, or is in error; with `must_fold`
// that is an error, and the node becomes an `enk_error`. False if something was in error and reported.
bool fold_expression(expr_node *node, fold_value &value, bool must_fold);

// Gives the initial value of a named constant, which is held as a tree until somebody needs it, its folded
// form; does nothing the second time. False if it is in error; that has been reported.
bool check_initializer(constant *value);

} // namespace zf90
