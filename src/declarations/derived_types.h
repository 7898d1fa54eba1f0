// Derived-type definitions: TYPE, SEQUENCE, END TYPE and the components between them. The handlers are
// declared with all others in statements/handlers.h.
#pragma once

#include "declarations/symbols.h"

namespace zf90 {

// The type that TYPE(name) means, as the `entity` of the symbol returned. `s` is the meaning of the name, or
// null: within a definition or a prefix the type may be defined later. Anything else but a type is reported.
symbol *use_derived_type(symbol *s, name_locator &name);

// A statement in the definition that is open is in error: components may be missing.
void doubt_open_type();

// Closes the type whose definition is open, where END TYPE is missing.
void finish_unclosed_type();

// For a type, or an array of it, that was named before it was defined: the type that is meant, of the unit or
// of its host. Error 465 if there is none by now. Other types are returned as they are.
type *resolve_forward_type(type *t);

// The component of that name of a type whose definition is complete; null if there is none.
object *find_component(const type *t, const struct atom *name);

// When the unit ends: a type and its components take their accessibility from their names. The components of
// a type that is not public are not public either.
void settle_type_access(const symbol *s);

// When the specification part ends: settles the types of the implicit rules and of the function's result that
// were named before they were defined.
void fix_forward_types();

} // namespace zf90
