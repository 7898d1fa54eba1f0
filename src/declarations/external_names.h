// External names, which are global to the source file: procedures, BLOCK DATA, the main program, modules,
// COMMON blocks. The record of one is a symbol at depth 0 that look-ups don't see (`global_symbol`); each
// later occurrence is compared with it and merged into it, so that one `object` stands for the procedure.
#pragma once

#include "declarations/symbols.h"

namespace zf90 {

// Compares a symbol with the record of its name, which it may become, and merges the two. Returns the record;
// null after an error, when the name has no record any more.
symbol *enter_external(symbol *s);

// Under `case_sensitive_names`, for a name that becomes external: error 256 if another external name differs
// from it by case only. Does nothing otherwise.
void check_folded_name(const name_locator &name);

// Whether there is, or was in an earlier unit, a COMMON block of this name.
bool common_block_exists(const atom *name);

} // namespace zf90
