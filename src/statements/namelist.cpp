// NAMELIST groups.
#include "statements/namelist.h"

namespace zf90 {

bool check_namelist(namelist_group *, object *) { return true; }

} // namespace zf90
