// Files of intermediate language for programs that read them: a back end, a tool. What the file holds becomes
// the records of il/records.h, to be followed by their links or with the walker of il/entries.h. Failures
// come back to the caller; only running out of memory ends the process, with status 4.
//
//     const zf90::loaded_il file = zf90::load_il_file("name.cil");
//     if (file.failure.text) { ... }
//     for (zf90::object *unit = file.header->primary_scope->objects; unit; unit = unit->next) { ... }
#pragma once

#include "il/records.h"

#include <cstdint>

namespace zf90 {

// What is wrong with a file. No text: nothing. Line 0: the file as a whole.
struct il_failure {
    const char *text;
    std::uint64_t line;
};

struct loaded_il {
    il_header *header;      // null if the file could not be read
    bool is_module;         // a .mod file: no primary scope, but the module as the header's `main_routine`
    symbol *public_symbols; // of a module, along `next_in_scope`
    il_failure failure;
};

// Reads a .cil or .mod file. The records of a file without a failure are sound: links that must lead
// somewhere do, lists and trees end, values fit their types. One file at a time: loading another one
// invalidates nothing of the records, which are never freed, but check_il_file and line_of are about the last
// one.
loaded_il load_il_file(const char *path);

// Whether the writer would write the records as they stand in the file, byte for byte: each is reached by the
// walk, in its order. Numbers the entries anew.
il_failure check_il_file(const loaded_il &file);

// Prints all entries to `dump_stream` (output/il_dump.h), as HTML if `dump_html` is set.
void dump_il_file(const loaded_il &file);

// The line of the file that holds the record of an entry.
std::uint64_t line_of(const il_entry *entry, entry_kind kind);

// Puts what a module makes public on the lists of a scope of its own, and the module on that of a global
// scope, as they are in a .cil file, for printers of units. From then on check_il_file has nothing to go by.
void add_scope_of_module(loaded_il &file);

} // namespace zf90
