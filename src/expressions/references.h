// What the parts of the check of expressions share: the checks of designators, which the main one calls.
// Others use expressions/check.h.
#pragma once

#include "driver/diagnostics.h"
#include "expressions/check.h"

namespace zf90 {

// Reports an error at a node; false.
bool fail_at(error_code code, const expr_node *node);

// The meaning of a name in an expression, with the final kind that it has from now on; null if it has none.
symbol *settle_symbol(symbol *s);

// Checks each element of a list, whose values are only read. False if any is in error.
bool check_list(expr_node *list, std::uint32_t flags, object *routine);

// The parts of designators: the check of one node of the kind and of what is below it, and its type. False
// after an error.
bool check_object_reference(expr_node *node, std::uint32_t flags, object *routine);
bool check_field_reference(expr_node *node, std::uint32_t flags, object *routine);
bool check_subscripts(expr_node *node, std::uint32_t flags, object *routine);
bool check_substring(expr_node *node, std::uint32_t flags, object *routine);
bool check_triplet(expr_node *node, std::uint32_t flags, object *routine);

} // namespace zf90
