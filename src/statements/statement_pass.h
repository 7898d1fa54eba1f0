// The pass over the statements of all units when these have been read: expressions are resolved, and what
// depends on types is checked and settled.
#pragma once

#include "il/records.h"

namespace zf90 {

// Checks a statement and those within, once. `routine` is the unit that it belongs to. False if something was
// in error, which has been reported.
bool check_statement(statement *s, object *routine);

// Checks the header of a DO loop or of an implied DO and converts its control expressions; `flags` are those
// of check_expression. False after an error.
bool check_do_control(do_loop *control, std::uint32_t flags, object *routine);

} // namespace zf90
