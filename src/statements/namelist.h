// NAMELIST groups: their use as a format and their check at the end of the unit. The statement that declares
// them has its handler beside these.
#pragma once

#include "il/records.h"

namespace zf90 {

// Reads the name of a group as the format of an input or output statement; at the name. Steps past it. Unless
// `quiet`, the description gets the group, or a format in error.
void parse_namelist_spec(input_output_description *description, bool quiet);

// Checks the members of a group, once, when the unit is complete. False if something was in error, which has
// been reported.
bool check_namelist(namelist_group *group, object *routine);

} // namespace zf90
