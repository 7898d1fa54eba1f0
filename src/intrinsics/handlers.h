// The checks of references to intrinsic procedures that their forms in the table cannot express. A handler
// runs when a form has been chosen and its arguments are bound, and rewrites the `enk_call` node, mostly to
// an `enk_intrinsic` of the exact result type.
#pragma once

#include "il/records.h"
#include "intrinsics/intrinsic_codes.h"

namespace zf90 {

// Runs the handler of an intrinsic. False after an error, which has been reported; the node is an error node.
bool run_intrinsic_handler(intrinsic_code code, expr_node *node, std::uint32_t flags, object *routine);

// Whether an intrinsic is an inquiry, whose first argument is not evaluated.
bool is_inquiry(intrinsic_code code);

// What a restricted expression may name: error 111 at the node that it may not. `routine` is the one whose
// dummy arguments may appear; null: anything may.
bool restricted_walk(expr_node *expr, object *routine);

// What the right side of a statement function may hold: errors 571 and 600.
bool stmt_func_walk(expr_node *expr);

} // namespace zf90
