// The check of input and output statements by the statement pass, when names and types are known: the class
// of the unit, the types of the specifiers, the items.
#pragma once

#include "il/records.h"

namespace zf90 {

// Checks the description of a statement of the kinds stmk_open to stmk_rewind and all expressions of it. The
// list of items on `expr` is checked here too, each item for what its statement does with it: the pass leaves
// it alone. False if something was in error, which has been reported.
//
// A data transfer with an item that calls a function of the program is divided, since the function may do
// input or output itself: the statement becomes the first of several, which follow it, or a block of them if
// nothing stands behind it in its list.
bool check_io_statement(statement *s, object *routine);

} // namespace zf90
