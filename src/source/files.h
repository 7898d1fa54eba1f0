// The stack of open source files, the tree of `source_file` records, and the mapping of a position back to
// its file and line. The line reader (source/lines.h) pushes and pops files; diagnostics ask for positions.
#pragma once

#include "driver/options.h"
#include "il/records.h"

#include <cstdio>

namespace zf90 {

struct source_entry {
    std::FILE *stream; // null while the entry is parked
    const char *file_name;
    const char *full_name; // the opened path
    const char *dir_name;  // its directory part, interned
    std::uint32_t last_seq; // number, within the file, of the last line read
    long saved_offset;     // stream offset while parked
    source_file *curr_record; // what the next line belongs to
    source_file *file_record; // the file as opened; the records of #line directives hang under it
};

extern std::uint32_t line_seq; // physical lines read so far, in all files
extern source_entry *source_stack;
extern int source_depth; // index of the top, -1 when empty
extern source_entry *curr_source; // the top, or null

void source_files_init();

// Pushes a file and makes it current; files below the first are sought along `list`. Failures are catastrophic,
// at the current position.
void open_source_file(const char *name, const search_list &list);

// At the end of the current file: back to the file that included it, if any.
void pop_source_file();

// Makes the record for a #line directive of the current file and turns to it. `name` is in long-lived memory.
void enter_line_record(std::uint32_t line_number, const char *name);

// The record that holds line `seq`, or null; its line number within that file; whether `seq` is the end of the
// source; and how deep the record lies in the tree, 1 for the primary file.
source_file *find_position(const il_header &root, std::uint32_t seq, std::uint32_t &line, bool &at_end,
                           int &depth);

struct position_description {
    const char *name;      // "" if there is no such line
    const char *full_name; // "" if there is no such line
    std::uint32_t line;
    bool at_end;
};

position_description describe_position(const il_header &root, std::uint32_t seq);

} // namespace zf90
