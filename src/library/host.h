// The library's own form of what the shared files ask of a compiler's driver.
#pragma once

#include <csetjmp>
#include <cstddef>
#include <cstdio>

namespace zf90 {

// Where a fault of the file that is being read comes back to; else a fault ends the process.
extern std::jmp_buf file_fault_exit;
extern bool file_fault_returns;
extern const char *file_fault_text;

// A stream into memory as open_memstream opens it. Where there is not enough memory the process ends, after
// the stream has been closed with the check of what it left.
std::FILE *open_memory_stream(char *&text, std::size_t &size);
void check_memory_stream_text(const char *text);

} // namespace zf90
