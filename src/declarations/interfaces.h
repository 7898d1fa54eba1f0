// Interface blocks and what they gather under a name.
#pragma once

#include "il/records.h"

namespace zf90 {

// Adds a procedure to the INTERFACE block that is open in the row of that depth, unless it is a member
// already, and marks it as referenced. A block without a name gathers nothing.
void add_to_interface(object *routine, std::int32_t depth);

} // namespace zf90
