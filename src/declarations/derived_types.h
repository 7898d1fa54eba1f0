// Derived-type definitions: TYPE, SEQUENCE, END TYPE and the components between them. The handlers are
// declared with all others in statements/handlers.h.
#pragma once

#include "declarations/symbols.h"

namespace zf90 {

// The type that TYPE(name) means, as the `entity` of the symbol returned. `s` is the meaning of the name, or
// null: within a definition or a prefix the type may be defined later. Anything else but a type is reported.
symbol *use_derived_type(symbol *s, name_locator &name);

// Closes the type whose definition is open, as END TYPE does. The statement loop calls it where END TYPE is
// missing.
void finish_open_type();

} // namespace zf90
