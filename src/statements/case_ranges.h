// The values of SELECT CASE: their types, and that no two ranges of a construct overlap.
#pragma once

#include "il/records.h"

namespace zf90 {

// Checks the ranges of all CASE statements in the body of a SELECT CASE whose selector is good. False after
// an error, which has been reported.
bool check_case_ranges(const statement *select);

} // namespace zf90
