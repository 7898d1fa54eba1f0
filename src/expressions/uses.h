// The uses of names in expressions. Whether a name is read or given a value shows only when the statement
// around it has been checked, so the uses of a statement wait for its end; then each one marks its entity and
// has its line in the cross-reference.
#pragma once

#include "declarations/symbols.h"

namespace zf90 {

// Notes that a node has turned out to name a symbol: a use that reads it, so far.
void note_name(symbol *s, const expr_node *node);

// The variable that a checked designator leads to is given a value.
void note_definition(const expr_node *designator);

// The naming of the variable that a checked designator leads to is no use of it.
void forget_use(const expr_node *designator);

// Ends the statement: what has been noted since the last call is marked and written. Warning 3 for an active
// DO variable that is given a value.
void finish_uses();

} // namespace zf90
