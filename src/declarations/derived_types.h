// Derived-type definitions: TYPE, SEQUENCE, END TYPE and the components between them. The handlers are
// declared with all others in statements/handlers.h.
#pragma once

#include "il/records.h"

namespace zf90 {

// Closes the type whose definition is open, as END TYPE does. The statement loop calls it where END TYPE is
// missing.
void finish_open_type();

} // namespace zf90
