// The raw listing of -L: a machine-readable trace of the lines read and the diagnostics given, in the order
// of the events. Each call costs one test when there is no listing. Diagnostics write their own lines.
#pragma once

#include <cstddef>

namespace zf90 {

// The reader has changed file: ' ' the primary source or a #line directive, '1' an INCLUDE file is entered,
// '2' it is left. The line number is that of the line that comes next, within its file.
void list_file_line(char mark);

// A physical line as read: 'S' for a comment, 'N' for statement text.
void list_source_line(char letter, const char *text, std::size_t length);

} // namespace zf90
