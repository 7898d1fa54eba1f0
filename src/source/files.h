// The stack of open source files, the tree of `source_file` records, and the mapping of a position back to
// its file and line. The line reader (source/lines.h) pushes and pops files; diagnostics ask for positions.
#pragma once

#include "driver/options.h"
#include "il/records.h"

#include <cstdio>
#include <string_view>

namespace zf90 {

struct source_entry {
    std::FILE *stream; // null while the entry is parked
    const char *file_name;
    const char *full_name;      // the opened path
    const char *dir_name;       // its directory part, interned
    std::uint32_t last_seq;     // number, within the file, of the last line read
    long saved_offset;          // offset of the next unread byte while parked
    struct input_buffer *input; // the unread bytes of the stream; null while parked
    source_file *curr_record;   // what the next line belongs to
    source_file *file_record;   // the file as opened; the records of #line directives hang under it
};

extern std::uint32_t line_seq; // physical lines read so far, in all files
extern source_entry *source_stack;
extern int source_depth;          // index of the top, -1 when empty
extern source_entry *curr_source; // the top, or null

void source_files_init();

// Pushes a file and makes it current; files below the first are sought along `list`. Failures are
// catastrophic, at the current position.
void open_source_file(const char *name, const search_list &list);

// The unread bytes of the current file that are at hand, read on when there are none; empty at the end of
// file.
std::string_view unread_input();
void consume_input(std::size_t count);

// At the end of the current file: back to the file that included it, if any.
void pop_source_file();

// Makes the record for a #line directive of the current file and turns to it. `name` is in long-lived memory.
void enter_line_record(std::uint32_t line_number, const char *name);

// ---- positions
// The map from sequence numbers to files and lines: one segment for each stretch of lines that were read from
// one record without a break. Looking a position up is a binary search, however many files were included.

struct position_segment {
    std::uint32_t first_seq;
    std::uint32_t line; // of first_seq, within the record's file
    source_file *record;
    int depth; // 1 for the primary file
};

struct found_position {
    source_file *record; // null if there is no such line
    std::uint32_t line;
    bool at_end; // behind the last line of the source
    int depth;
};

found_position find_position(std::uint32_t seq); // seq 0: no record, line 0

struct position_description {
    const char *name;      // "" if there is no such line
    const char *full_name; // "" if there is no such line
    std::uint32_t line;
    bool at_end;
};

// What a diagnostic needs: the file and line of `seq`.
position_description describe_position(std::uint32_t seq);

} // namespace zf90
