// The library's own form of what the shared files ask of a compiler's driver.
#pragma once

#include <csetjmp>

namespace zf90 {

// Where a fault of the file that is being read comes back to; else a fault ends the process.
extern std::jmp_buf file_fault_exit;
extern bool file_fault_returns;
extern const char *file_fault_text;

} // namespace zf90
