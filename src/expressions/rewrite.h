// Trees with other leaves, for the lengths and shapes that depend on arguments or on the variable of a loop.
#pragma once

#include "il/records.h"

#include <functional>

namespace zf90 {

// What takes the place of a node that names an object or a dummy argument; null: the node stays. It must be
// on no list.
using leaf_rewriter = std::function<expr_node *(const expr_node *leaf)>;

// Rewrites a list of trees that have been checked, in which only what changes is copied. The copies count as
// checked. True if something changed.
bool rewrite_tree(expr_node *&slot, const leaf_rewriter &leaf);

// A copy that counts as checked, like the node that it is made from.
expr_node *copy_checked_node(const expr_node *node);

// A reference to a checked node in the place of another node, whose position and keyword it takes.
expr_node *checked_ref(expr_node *target, const expr_node *place);

} // namespace zf90
