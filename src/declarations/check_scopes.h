// The checks of objects and scopes: each object once, at the first reference to it or with its scope, and
// each outermost unit with all that it contains when all units have been read.
#pragma once

#include "il/records.h"

namespace zf90 {

// Checks and completes an object, once. False if something is in error, which has been reported.
bool check_object(object *o);

// Checks the entities and the statements of a scope and of the scopes within.
bool check_scope(scope *s);

// All of the compilation: the outermost scope.
bool check_compilation();

} // namespace zf90
