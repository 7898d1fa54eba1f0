// Names that must denote data.
#pragma once

#include "declarations/attributes.h"
#include "declarations/symbols.h"

namespace zf90 {

// Turns a name into a variable and returns its symbol, never null: an sk_variable, or a symbol of error_atom
// after an error. `s` is the meaning of the name, or null.
symbol *make_variable(symbol *s, name_locator &name);

// The variable of this unit that a statement names in order to give it storage or a value (EQUIVALENCE,
// DATA). What came from a module is refused by the rules for the attribute. Null after an error.
symbol *declare_variable(attribute given, name_locator &name);

} // namespace zf90
