// The command line: option flags, output streams, the two search lists of directories, and the rules by which
// input and output files are opened.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace zf90 {

// Option state, set by parse_command_line and fixed then, with the one exception named.
extern bool strict_f77_mode;       // -A
extern bool debug_lines_enabled;   // -D
extern bool fixed_form_input;      // -F
extern bool retain_constant_exprs; // -R
extern bool case_sensitive_names;  // -U; lookup_keyword clears it for its duration
extern bool no_implicit_typing;    // -u
extern bool no_il_output;          // -n
extern int diagnostic_threshold;   // -r 1, default 2, -w 3
extern std::uint32_t error_limit;  // -e

struct search_dir {
    const char *name;
    search_dir *next;
};

struct search_list {
    search_dir *first;
    search_dir *last;
};

extern search_list include_search_list;
extern search_list module_search_list;

// Turns the command line into the state above. Every failure is a command-line error, which ends the process.
void parse_command_line(int argc, char **argv);

// The next option letter, '?' for a failure, -1 at the end of the options. `opt_arg` is the argument.
int scan_option(int argc, char **argv, const char *option_string);
extern int opt_index;
extern const char *opt_cursor;
extern const char *opt_arg;

// A non-negative decimal number up to 2147483647; anything else is a command-line error. Empty text is 0.
std::uint32_t parse_number(const char *text);

void add_include_dir(const char *name);
void prepend_include_dir(const char *name);
void add_module_dir(const char *name);
void add_default_include_dir(); // USR_INCLUDE, else /usr/include/f90

// The last "/" or "\" of a path, or the colon of "x:name"; null if there is none.
const char *last_path_separator(const char *path);

// A fresh copy of the directory part with its separator; empty if there is none.
char *dir_part(const char *path);

// `dir`, a separator where one is missing, `name`, `suffix`: in `buffer` if it fits there with its NUL, else
// in fresh memory. The separator is "/" if `dir` contains one anywhere, else "\". `name` itself if `dir` and
// `suffix` are empty.
const char *make_path(const char *dir, const char *name, const char *suffix, char *buffer,
                      std::size_t buffer_size);

// As make_path, joined with "/" whatever `dir` holds: the second try for a directory given without a slash.
const char *make_slash_path(const char *dir, const char *name, const char *suffix, char *buffer,
                            std::size_t buffer_size);

// Whether make_path and make_slash_path differ for this directory.
bool joins_with_backslash(const char *dir);

enum class open_outcome : std::uint8_t { ok, open_failed, not_regular, bad_name };

struct opened_file {
    std::FILE *stream; // null unless ok
    open_outcome outcome;
};

opened_file open_checked_input(const char *name, bool binary);
std::FILE *reopen_input(const char *name);
opened_file open_checked_output(const char *name, bool binary, bool update);
opened_file redirect_diagnostics(const char *name); // the stream is the diagnostic stream

} // namespace zf90
