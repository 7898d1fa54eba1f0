// The cross-reference of -X: one line for each declaration, modification and reference of a name, written as
// the compilation goes on. declarations/symbols.h has the calls that note uses; they come here.
#pragma once

#include "declarations/symbols.h"

namespace zf90 {

// Writes the line "NUMBER NAME LETTER FILE LINE COLUMN" if there is a cross-reference file, and the name and
// the position are real. The number is the same for all lines about one symbol.
void xref_write(use_kind use, symbol *s, source_pos position);

} // namespace zf90
