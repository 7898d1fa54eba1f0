// NAMELIST groups: their declaration, their use as a format of input and output, and their check at the end
// of the unit.
#pragma once

#include "il/records.h"
#include "source/lines.h"

namespace zf90 {

// Turns a name into that of a group, or reports that it is something else already. Null is a name that is not
// known yet. Returns the symbol, which is of the kind sk_namelist unless that was reported.
symbol *declare_namelist(symbol *s, const name_locator &name);

// Whether the current token is the name of a group.
bool at_namelist_group();

// Reads the name of a group as the format of an input or output statement, and steps past it. Unless `quiet`,
// the description gets the group, or a format in error. False after an error, which has been reported.
bool parse_namelist_spec(input_output_description *description, bool quiet);

// Checks the members of a group, once, when the unit is complete. False if something was in error, which has
// been reported.
bool check_namelist(namelist_group *group, object *routine);

} // namespace zf90
