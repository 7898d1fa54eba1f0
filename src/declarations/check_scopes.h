// The checks of objects and scopes. The declarations of an outermost unit are checked at its END, with all
// that it contains; an object earlier, if an expression needs it. The statements are checked when all units
// have been read, unit by unit, and those of internal procedures before their host's.
#pragma once

#include "il/records.h"

namespace zf90 {

// Checks and completes an object, once: its type and its initial value; of a procedure whose scope is closed,
// the declarations within. False if something is in error, which has been reported.
bool check_object(object *o);

// Checks the declarations of a scope and of the scopes within, once.
bool check_declarations(scope *s);

// Checks the entities and the statements of a closed scope and of the scopes within, once.
bool check_scope(scope *s);

// All of the compilation: the statements of every unit.
bool check_compilation();

// Lays the objects of a scope out one behind the other, as the components of a derived type are.
void lay_out_frame(const scope *s);

} // namespace zf90
