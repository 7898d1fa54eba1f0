// Turns argv into the option state. Letters are scanned as POSIX getopt does; each option acts when it is
// met, so a later failure leaves the output files of earlier options created.
#include "driver/options.h"

#include "driver/diagnostics.h"
#include "driver/driver.h"
#include "il/arena.h"

#include <cstdlib>
#include <cstring>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace zf90 {

bool strict_f77_mode;
bool debug_lines_enabled;
bool fixed_form_input;
bool retain_constant_exprs;
bool case_sensitive_names;
bool no_implicit_typing;
bool no_il_output;
int diagnostic_threshold = severity_warning;
std::uint32_t error_limit = 100;
search_list include_search_list;
search_list module_search_list;

int opt_index = 1;
const char *opt_cursor;
const char *opt_arg;

namespace {

constexpr const char *option_letters = "AaFDUlnuvVwRrsI:i:f:e:L:M:X:S:o:d:Y:";
constexpr int option_failure = '?';
constexpr int end_of_options = -1;

// The word that will become the source name, found before any option acts: an output file that an option
// opens must never be the source, and the source stands last on the line.
const char *coming_source_name;

void start_option_scan() {
    opt_index = 1;
    opt_cursor = nullptr;
    opt_arg = nullptr;
}

const char *find_source_word(int argc, char **argv) {
    start_option_scan();
    for (int letter; (letter = scan_option(argc, argv, option_letters)) != end_of_options;) {
        if (letter == option_failure) {
            ++opt_cursor; // the scan proper will report it
        }
    }
    const char *word = opt_index < argc ? argv[opt_index] : nullptr;
    start_option_scan();
    return word;
}

search_dir *new_search_dir(const char *name, search_dir *next) {
    return new (sys_alloc(sizeof(search_dir))) search_dir{name, next};
}

void append_dir(search_list &list, const char *name) {
    search_dir *node = new_search_dir(name, nullptr);
    (list.last ? list.last->next : list.first) = node;
    list.last = node;
}

bool is_regular_file(const struct stat &s) { return S_ISREG(s.st_mode); }

// Whether the two names lead to one regular file, by whatever paths. Standard input goes by its device.
bool same_file(const char *name, const char *source) {
    struct stat a;
    struct stat b;
    const bool from_stdin = std::strcmp(source, "-") == 0;
    return ::stat(name, &a) == 0 && ::stat(from_stdin ? "/dev/stdin" : source, &b) == 0 &&
           is_regular_file(a) && a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

bool is_source(const char *name, const char *source) {
    return source && (std::strcmp(name, source) == 0 || same_file(name, source));
}

// An output file must not be the source, nor end in exactly ".a" or ".f".
bool refused_as_output(const char *name) {
    if (is_source(name, primary_source_name) || is_source(name, coming_source_name)) {
        return true;
    }
    const char *separator = last_path_separator(name);
    const char *extension = std::strrchr(separator ? separator + 1 : name, '.');
    return extension && (std::strcmp(extension, ".a") == 0 || std::strcmp(extension, ".f") == 0);
}

bool ends_in_separator(std::string_view dir) {
    return !dir.empty() && (dir.back() == '/' || dir.back() == '\\');
}

const char *join_path(std::string_view dir, std::string_view separator, std::string_view name,
                      std::string_view suffix, char *buffer, std::size_t buffer_size) {
    const std::size_t size = dir.size() + separator.size() + name.size() + suffix.size() + 1;
    char *path = size <= buffer_size ? buffer : static_cast<char *>(sys_alloc(size));
    char *p = path;
    for (std::string_view piece : {dir, separator, name, suffix}) {
        p += piece.copy(p, piece.size());
    }
    *p = '\0';
    return path;
}

// The stream of an output option.
std::FILE *open_listing(const char *name, const char *rejected, const char *failed) {
    const opened_file file = open_checked_output(name, false, false);
    if (file.outcome == open_outcome::bad_name) {
        command_line_error(rejected, name);
    }
    if (file.outcome == open_outcome::open_failed) {
        command_line_error(failed, name);
    }
    return file.stream;
}

[[noreturn]] void invalid_option(int argc, char **argv) {
    command_line_error("invalid option: %s", argv[opt_index < argc ? opt_index : argc - 1]);
}

} // namespace

int scan_option(int argc, char **argv, const char *option_string) {
    if (opt_cursor && !*opt_cursor) {
        ++opt_index;
        opt_cursor = nullptr;
    }
    if (!opt_cursor) {
        if (opt_index >= argc || argv[opt_index][0] != '-' || !argv[opt_index][1]) {
            return end_of_options;
        }
        if (argv[opt_index][1] == '-') {
            ++opt_index;
            return end_of_options;
        }
        opt_cursor = argv[opt_index] + 1;
    }
    const char letter = *opt_cursor;
    const char *known = letter == ':' ? nullptr : std::strchr(option_string, letter);
    if (!known) {
        return option_failure;
    }
    if (known[1] != ':') {
        ++opt_cursor;
        opt_arg = nullptr;
        return letter;
    }
    if (opt_cursor[1]) {
        opt_arg = opt_cursor + 1;
    } else if (opt_index + 1 < argc) {
        opt_arg = argv[++opt_index];
    } else {
        return option_failure;
    }
    opt_cursor = nullptr;
    ++opt_index;
    return letter;
}

std::uint32_t parse_number(const char *text) {
    constexpr std::uint32_t limit = 2147483647;
    std::uint32_t value = 0;
    for (const char *p = text; *p; ++p) {
        const auto digit = static_cast<std::uint32_t>(*p - '0');
        if (*p < '0' || *p > '9' || value > (limit - digit) / 10) {
            command_line_error("invalid number: %s", text);
        }
        value = value * 10 + digit;
    }
    return value;
}

void add_include_dir(const char *name) { append_dir(include_search_list, name); }

void prepend_include_dir(const char *name) {
    search_list &list = include_search_list;
    list.first = new_search_dir(name, list.first);
    if (!list.last) {
        list.last = list.first;
    }
}

void add_module_dir(const char *name) { append_dir(module_search_list, name); }

void add_default_include_dir() {
    const char *dir = std::getenv("USR_INCLUDE");
    add_include_dir(dir ? dir : "/usr/include/f90");
}

const char *last_path_separator(const char *path) {
    if (std::strcmp(path, "-") == 0) {
        return nullptr;
    }
    const char *last = nullptr;
    for (const char *p = path; *p; ++p) {
        if (*p == '/' || *p == '\\') {
            last = p;
        }
    }
    if (!last && path[0] && path[1] == ':') {
        last = path + 1;
    }
    return last;
}

char *dir_part(const char *path) {
    const char *separator = last_path_separator(path);
    const std::size_t length = separator ? static_cast<std::size_t>(separator + 1 - path) : 0;
    char *copy = static_cast<char *>(sys_alloc(length + 1));
    std::memcpy(copy, path, length);
    copy[length] = '\0';
    return copy;
}

const char *make_path(const char *dir, const char *name, const char *suffix, char *buffer,
                      std::size_t buffer_size) {
    if (!*dir && !*suffix) {
        return name;
    }
    const bool complete = !*dir || ends_in_separator(dir);
    return join_path(dir,
                     complete                    ? ""
                     : joins_with_backslash(dir) ? "\\"
                                                 : "/",
                     name, suffix, buffer, buffer_size);
}

bool joins_with_backslash(const char *dir) {
    return *dir && !ends_in_separator(dir) && !std::strchr(dir, '/');
}

const char *make_slash_path(const char *dir, const char *name, const char *suffix, char *buffer,
                            std::size_t buffer_size) {
    return join_path(dir, "/", name, suffix, buffer, buffer_size);
}

opened_file open_checked_input(const char *name, bool binary) {
    if (!*name) {
        return {nullptr, open_outcome::bad_name};
    }
    // Before it is opened: the opening of a pipe may never end.
    struct stat s;
    if (::stat(name, &s) != 0) {
        return {nullptr, open_outcome::open_failed};
    }
    if (!is_regular_file(s)) {
        return {nullptr, open_outcome::not_regular};
    }
    std::FILE *stream = std::fopen(name, binary ? "rb" : "r");
    return {stream, stream ? open_outcome::ok : open_outcome::open_failed};
}

std::FILE *reopen_input(const char *name) { return std::fopen(name, "r"); }

opened_file open_checked_output(const char *name, bool binary, bool update) {
    if (refused_as_output(name)) {
        return {nullptr, open_outcome::bad_name};
    }
    std::FILE *stream = std::fopen(name, update ? (binary ? "w+b" : "w+") : (binary ? "wb" : "w"));
    return {stream, stream ? open_outcome::ok : open_outcome::open_failed};
}

opened_file redirect_diagnostics(const char *name) {
    const opened_file trial = open_checked_output(name, false, false);
    if (trial.outcome != open_outcome::ok) {
        return trial;
    }
    // Unlike freopen, dup2 leaves the stream as it is when it fails, so that this can be told.
    std::fflush(diagnostic_stream());
    const int descriptor = fileno(trial.stream);
    const bool done = descriptor == fileno(diagnostic_stream()) || // which was closed
                      dup2(descriptor, fileno(diagnostic_stream())) >= 0;
    if (done && descriptor != fileno(diagnostic_stream())) {
        std::fclose(trial.stream);
    }
    return {trial.stream, done ? open_outcome::ok : open_outcome::open_failed};
}

void parse_command_line(int argc, char **argv) {
    error_pos = {0, 1};
    include_search_list = {};
    module_search_list = {};
    const char *il_name = nullptr;
    coming_source_name = find_source_word(argc, argv);

    for (int letter; (letter = scan_option(argc, argv, option_letters)) != end_of_options;) {
        switch (letter) {
        case 'A': strict_f77_mode = true; break;
        case 'D': debug_lines_enabled = true; break;
        case 'F': fixed_form_input = true; break;
        case 'I':
            if (*opt_arg == '-') {
                command_line_error("missing include file directory name");
            }
            add_include_dir(opt_arg);
            break;
        case 'L':
            raw_listing_file = open_listing(opt_arg, "invalid raw-listing output file %s",
                                            "cannot open raw-listing output file %s");
            break;
        case 'M':
            if (*opt_arg == '-') {
                command_line_error("missing module file directory name");
            }
            add_module_dir(opt_arg);
            break;
        case 'R': retain_constant_exprs = true; break;
        case 'S': {
            const opened_file file = redirect_diagnostics(opt_arg);
            if (file.outcome == open_outcome::bad_name) {
                command_line_error("invalid error output file %s", opt_arg);
            }
            if (file.outcome == open_outcome::open_failed) {
                command_line_error("cannot open error output file %s", opt_arg);
            }
            break;
        }
        case 'U': case_sensitive_names = true; break;
        case 'V': set_exit_callback(print_summary); break;
        case 'X':
            xref_file = open_listing(opt_arg, "invalid cross-reference output file %s",
                                     "cannot open cross-reference output file %s");
            break;
        case 'e':
            error_limit = parse_number(opt_arg);
            if (error_limit == 0) {
                command_line_error("invalid error limit: %s", opt_arg);
            }
            break;
        case 'n': no_il_output = true; break;
        case 'o': il_name = opt_arg; break;
        case 'r': diagnostic_threshold = severity_remark; break;
        case 'u': no_implicit_typing = true; break;
        case 'v':
            std::fprintf(diagnostic_stream(), "Zenko Works Ltd Fortran Front End, version %s\n",
                         compiler_version_text);
            std::fprintf(diagnostic_stream(), "Copyright Zenko Works Ltd. All rights reserved.\n\n");
            break;
        case 'w': diagnostic_threshold = severity_error; break;
        case 'd':
            // Its argument is named, not the word behind it.
            --opt_index;
            invalid_option(argc, argv);
        default: invalid_option(argc, argv);
        }
    }

    if (strict_f77_mode && diagnostic_threshold > severity_warning) {
        diagnostic_threshold = severity_warning;
    }
    if (strict_f77_mode && !fixed_form_input) {
        warning(msg_free_form_input_is_not_standard_fortran_77);
    }
    add_default_include_dir();
    if (opt_index >= argc) {
        command_line_error("missing source file name");
    }
    primary_source_name = argv[opt_index++];
    prepend_include_dir(dir_part(primary_source_name));
    if (opt_index < argc) {
        command_line_error("too many arguments on command line");
    }
    if (!no_il_output) {
        il_file_name = il_name;
    } else if (il_name) {
        command_line_error("-o was specified, but no output file is needed");
    }
}

} // namespace zf90
