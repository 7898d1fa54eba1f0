// Prints every entry of the intermediate language with all its fields by name, one to a line.
#pragma once

#include "il/records.h"

#include <cstdio>

namespace zf90 {

extern std::FILE *dump_stream; // where the text goes; whoever prints sets it
extern bool dump_html;         // with links between the entries, in a <PRE> element

void dump_il(il_header *header);

// Prints one entry, which must have its number; `size` is that of a bound_info_entry, else 0.
void dump_entry(il_entry *entry, entry_kind kind, std::uint32_t size);

} // namespace zf90
