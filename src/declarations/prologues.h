// What must be computed when a procedure is entered: the shapes and lengths of its dummy arguments.
#pragma once

#include "il/records.h"

namespace zf90 {

// Puts the statements that set shapes and lengths ahead of the body of a unit, and behind its ENTRY
// statements.
void add_prologues(scope *s);

} // namespace zf90
