// The rules that the specific procedures of a generic name, an operator or the assignment obey together: what
// arguments an operator's functions have, that no two specifics are alike, and that a public generic shows no
// private type. Checked when the scope that holds the generic is.
#pragma once

#include "il/records.h"

namespace zf90 {

// Whether the result or an argument of a procedure is of a derived type that is not public.
bool depends_on_private_type(const object *routine);

// Checks the members of a generic, each of which must have passed the check of its object before: what is not
// `check_member(object)` takes no part. The members of a public generic become public. False if something was
// reported.
bool check_generic_set(interface *generic, bool (*check_member)(object *routine));

} // namespace zf90
