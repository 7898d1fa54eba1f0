// What is settled when a unit ends: the final kind of each name, the reports of names that are never used,
// and the prototypes. The statements of the unit are checked later, when all units have been read.
#pragma once

#include "il/records.h"

namespace zf90 {

struct scope_row;

// Brings a symbol to its final kind, with its implicit type where it has none, and reports what is missing.
void finish_symbol(symbol *s);

// Finishes all symbols of a row, in the order of their making, and reports those that are never used.
void finish_row(const scope_row &row);

} // namespace zf90
