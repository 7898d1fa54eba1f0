// What is settled when a unit ends: the final kind of each name, the reports of names that are never used,
// and the prototypes. The statements of the unit are checked later, when all units have been read.
#pragma once

#include "il/records.h"

namespace zf90 {

// Brings a symbol to its final kind, with its implicit type where it has none, and reports what is missing.
void finish_symbol(symbol *s);

// Whether SAVE without a list reaches an object.
bool can_be_saved(const object *o);

// Finishes all symbols of a row, in the order of their making, and reports those that are never used.
void finish_row(std::int32_t depth);

} // namespace zf90
