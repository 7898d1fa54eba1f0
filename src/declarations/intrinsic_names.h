// Names that turn out to be, or are declared, those of intrinsic procedures.
#pragma once

#include "declarations/symbols.h"

namespace zf90 {

// Makes a name that of the intrinsic procedure with its spelling. `s` is its symbol, or null. Error 95 if
// there is no such procedure, 578 if a type was declared that none of its forms has.
symbol *declare_intrinsic(symbol *s, name_locator &name);

// Whether an intrinsic function may be declared to be of a type: a reference to one of its forms can be of
// it.
bool may_have_type(const symbol *s, type *declared);

} // namespace zf90
