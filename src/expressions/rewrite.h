// Trees with other leaves, for the lengths and shapes that depend on arguments or on the variable of a loop.
#pragma once

#include "il/records.h"

#include <functional>

namespace zf90 {

// What takes the place of a node that names an object or a dummy argument, or of a reference to an intrinsic
// function; null: the node stays, with its parts rewritten. It must be on no list.
using leaf_rewriter = std::function<expr_node *(const expr_node *leaf)>;

// Rewrites a list of trees that have been checked, in which only what changes is copied. The copies are to be
// checked again, for now they may have a value. True if something changed.
bool rewrite_tree(expr_node *&slot, const leaf_rewriter &leaf);

// Whether a tree, without what follows it on its list, names an object of which the test holds.
bool names_object(expr_node *tree, const std::function<bool(const object *o)> &test);

// A copy that is on no list and is to be checked again.
expr_node *copy_unchecked_node(const expr_node *node);

// A reference that stands where a node stood, with its position and keyword.
expr_node *ref_in_place_of(const expr_node *place, expr_node *target);

} // namespace zf90
