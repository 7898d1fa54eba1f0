// Whether records that have been read make sense as far as whoever follows them relies on it.
#pragma once

#include "il/records.h"

namespace zf90 {

// The first fault that is found: the record that has it. No text: none.
struct record_fault {
    const char *text;
    const il_entry *entry;
    entry_kind kind;
};

// Checks all records of the file that was read last, and the symbols of a module.
record_fault check_records(const symbol *first_symbol);

} // namespace zf90
