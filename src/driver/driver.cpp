// The main flow. One process compiles one source file; there is one way out, fe_exit.
#include "driver/driver.h"

#include "declarations/scopes.h"
#include "driver/diagnostics.h"
#include "driver/options.h"
#include "il/constants.h"
#include "il/entries.h"
#include "intrinsics/seed_table.h"
#include "output/il_writer.h"
#include "source/files.h"
#include "source/lines.h"
#include "source/tokens.h"
#include "statements/constructs.h"
#include "statements/loop.h"

#include <charconv>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <unistd.h>

namespace zf90 {

const char *primary_source_name;
const char *il_file_name;
std::FILE *il_file;
std::FILE *raw_listing_file;
std::FILE *xref_file;
il_header il_root;
bool end_of_input;
bool main_program_seen;

namespace {

void (*exit_callback)(int code);

constexpr int process_status[] = {0, 0, 0, 2, 4, 4};
constexpr std::size_t max_path_piece = 255;

// The lines of the summary, put together without the C library so that a signal handler may do it too.
class summary_text {
public:
    explicit summary_text(int code) {
        if (error_count + catastrophe_count != 0) {
            if (error_count != 0) {
                append_count(error_count, " error");
            }
            if (error_count != 0 && catastrophe_count != 0) {
                append(" and ");
            }
            if (catastrophe_count != 0) {
                append_count(catastrophe_count, " catastrophic error");
            }
            const std::string_view name = primary_source_name ? primary_source_name : "";
            if (!name.empty() && name != "-") {
                append(" detected in the compilation of \"");
                append(name);
                append("\".\n");
            } else {
                append(" detected in this compilation.\n");
            }
        }
        if (code == completion_stopped || code == completion_command_line) {
            append("Compilation terminated.\n");
        } else if (code == completion_internal) {
            append("Compilation aborted.\n");
        }
    }
    std::string_view view() const { return {text_, size_}; }

private:
    void append(std::string_view piece) { size_ += piece.copy(text_ + size_, sizeof text_ - size_); }
    void append_count(std::uint32_t count, std::string_view noun) {
        char digits[10];
        append({digits, std::to_chars(digits, digits + sizeof digits, count).ptr});
        append(noun);
        append(count == 1 ? "" : "s");
    }

    char text_[8192];
    std::size_t size_ = 0;
};

void write_at_once(std::string_view text) {
    while (!text.empty()) {
        const ssize_t n = ::write(STDERR_FILENO, text.data(), text.size());
        if (n <= 0) {
            return;
        }
        text.remove_prefix(static_cast<std::size_t>(n));
    }
}

// An interrupt may come while the C library's streams are in use, so it ends the process without them.
extern "C" void interrupted(int) {
    write_at_once("\n");
    if (exit_callback == print_summary) {
        write_at_once(summary_text(completion_stopped).view());
    }
    std::_Exit(process_status[completion_stopped]);
}

// What a program unit starts with, whatever the one before it left behind.
void begin_unit_state() {
    curr_token_pos = error_pos = stmt_pos = null_pos;
    begin_construct_state();
    scope_stack[0].implicit_none = false;
    set_standard_implicit_types(scope_stack[0]);
    implicit_letter_set = 0;
}

// Closes a stream whose writes were not looked at on the way.
void close_output(std::FILE *&stream, const char *what) {
    if (!stream) {
        return;
    }
    std::FILE *const closing = stream;
    stream = nullptr;
    const bool flushed = std::fflush(closing) == 0;
    const bool clean = std::ferror(closing) == 0;
    const bool closed = std::fclose(closing) == 0;
    if (!flushed || !clean || !closed) {
        catastrophe(msg_error_while_writing_file, what);
    }
}

const char *time_of_compilation() {
    const std::time_t now = std::time(nullptr);
    const char *text = std::ctime(&now);
    return text ? il_copy_string(text, std::strcspn(text, "\n")) : "Thu Jan  1 00:00:00 1970";
}

// The base name of the source without its last extension, ".cil" instead.
const char *default_il_file_name() {
    const char *separator = last_path_separator(primary_source_name);
    const std::string_view base = separator ? separator + 1 : primary_source_name;
    const std::string_view stem = base.substr(0, base.rfind('.')).substr(0, max_path_piece);
    static constexpr std::string_view suffix = ".cil";
    char *name = static_cast<char *>(sys_alloc(stem.size() + suffix.size() + 1));
    stem.copy(name, stem.size());
    suffix.copy(name + stem.size(), suffix.size());
    name[stem.size() + suffix.size()] = '\0';
    return name;
}

} // namespace

void set_exit_callback(void (*callback)(int code)) { exit_callback = callback; }

void print_summary(int code) {
    const summary_text summary(code);
    std::fwrite(summary.view().data(), 1, summary.view().size(), diagnostic_stream());
}

void fe_exit(int code) {
    if (exit_callback) {
        exit_callback(code);
    }
    if (code >= completion_internal) {
        std::fflush(nullptr);
        std::abort();
    }
    std::exit(process_status[code]);
}

void open_il_file() {
    if (!il_file_name) {
        if (std::strcmp(primary_source_name, "-") == 0) {
            command_line_error("IL file name must be specified if input is %s", "-");
        }
        il_file_name = default_il_file_name();
    }
    const opened_file file = open_checked_output(il_file_name, true, false);
    if (file.outcome == open_outcome::bad_name) {
        command_line_error("invalid IL output file %s", il_file_name);
    }
    if (file.outcome == open_outcome::open_failed) {
        command_line_error("cannot open IL output file %s", il_file_name);
    }
    il_file = file.stream;
}

void fe_init() {
    error_pos = null_pos;
    remark_count = warning_count = error_count = catastrophe_count = 0;
    il_init();
    init_seed_tables();
    lexer_init();
    main_program_seen = false;
    il_root = {};
    il_root.primary_scope = push_scope(sr_global);
    il_root.compiler_version = compiler_version_text;
    il_root.time_of_compilation = time_of_compilation();
    il_root.case_sensitive_identifiers = case_sensitive_names;
    il_root.source_language = sl_Fortran;
    if (!no_il_output) {
        open_il_file();
    }
    open_source_file(il_copy_string(primary_source_name, std::strlen(primary_source_name)),
                     include_search_list);
}

void finish_listing_outputs() {
    close_output(raw_listing_file, "raw listing");
    close_output(xref_file, "cross-reference");
}

void compile(int argc, char **argv) {
    std::signal(SIGINT, interrupted);
    std::signal(SIGTERM, interrupted);
    std::signal(SIGPIPE, SIG_IGN); // a reader that has gone away is a failed write like any other
    std::setvbuf(diagnostic_stream(), nullptr, _IOLBF, BUFSIZ);
    region_init();
    parse_command_line(argc, argv);
    fe_init();
    while (!end_of_input) {
        if (!next_statement()) {
            end_of_input = true;
            break;
        }
        begin_unit_state();
        process_program_unit();
    }
    finish_listing_outputs();
    if (error_count == 0) {
        merge_constants(&il_root);
        write_il_file(il_root);
    }
    const int code = error_count != 0     ? completion_errors
                     : warning_count != 0 ? completion_warnings
                                          : completion_clean;
    free_region(il_region);
    fe_exit(code);
}

} // namespace zf90
