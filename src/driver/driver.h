// The main flow of a compilation: initialisation, the loop over program units, the end checks, the outputs,
// and the one way out of the process.
#pragma once

#include "il/records.h"

#include <cstdio>

namespace zf90 {

// Completion codes: what fe_exit is called with.
enum completion_code : std::uint8_t {
    completion_clean = 0,
    completion_warnings = 2,
    completion_errors = 3,
    completion_stopped = 4,
    completion_command_line = 5,
    completion_internal = 6
};

inline constexpr const char *compiler_version_text = "2.4.1";

extern const char *primary_source_name; // "-" is standard input
extern const char *il_file_name;        // or null
extern std::FILE *il_file;              // null under -n
extern std::FILE *raw_listing_file;     // -L
extern std::FILE *xref_file;            // -X
extern il_header il_root;
extern bool end_of_input;
extern bool main_program_seen;

// Compiles one source file; leaves through fe_exit.
[[noreturn]] void compile(int argc, char **argv);

void fe_init();

// Calls the exit callback, if any, and leaves the process: status 0 for codes 0 to 2, 2 for 3, 4 for 4 and 5;
// from 6 on the process aborts.
[[noreturn]] void fe_exit(int code);

// Ends the run, with status 4, if an interrupt has come.
void check_interrupt();

void set_exit_callback(void (*callback)(int code));
void print_summary(int code); // the callback of -V

void open_il_file();
void finish_listing_outputs();

} // namespace zf90
