// ALLOCATE, DEALLOCATE and NULLIFY in the statement pass. Each returns false after an error.
#pragma once

#include "il/records.h"

namespace zf90 {

// Takes the shapes of the items from their expressions, and checks items and bounds.
bool check_allocate(statement *s, object *routine);

bool check_deallocate(statement *s, object *routine);

// The expressions of the statement have been checked, and are good.
bool check_nullify(statement *s);

} // namespace zf90
