// The main flow. One process compiles one source file; there is one way out, fe_exit.
#include "driver/driver.h"

#include "constants/folding.h"
#include "declarations/check_scopes.h"
#include "declarations/scopes.h"
#include "driver/diagnostics.h"
#include "driver/options.h"
#include "il/constants.h"
#include "il/entries.h"
#include "intrinsics/seed_table.h"
#include "modules/module_files.h"
#include "output/il_writer.h"
#include "source/files.h"
#include "source/lines.h"
#include "source/tokens.h"
#include "statements/constructs.h"
#include "statements/loop.h"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <string_view>

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

// An interrupt is carried out where the next line is read, with check_interrupt: the streams of the C library
// may be in use when it comes.
volatile std::sig_atomic_t interrupt_requested;

extern "C" void request_interrupt(int) { interrupt_requested = 1; }

void install_signal_handlers() {
    struct sigaction action = {};
    action.sa_handler = request_interrupt; // without SA_RESTART: a read that waits for input ends
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
    std::signal(SIGPIPE, SIG_IGN); // a reader that has gone away is a failed write like any other
    std::signal(SIGXFSZ, SIG_IGN); // and so is the limit on the size of files
}

const char *plural_suffix(std::uint32_t count) { return count == 1 ? "" : "s"; }

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

void check_interrupt() {
    if (interrupt_requested) {
        std::fputc('\n', diagnostic_stream());
        fe_exit(completion_stopped);
    }
}

void print_summary(int code) {
    std::FILE *const out = diagnostic_stream();
    if (error_count + catastrophe_count != 0) {
        if (error_count != 0) {
            std::fprintf(out, "%lu error%s", static_cast<unsigned long>(error_count),
                         plural_suffix(error_count));
        }
        if (error_count != 0 && catastrophe_count != 0) {
            std::fputs(" and ", out);
        }
        if (catastrophe_count != 0) {
            std::fprintf(out, "%lu catastrophic error%s", static_cast<unsigned long>(catastrophe_count),
                         plural_suffix(catastrophe_count));
        }
        const std::string_view name = primary_source_name ? primary_source_name : "";
        if (!name.empty() && name != "-") {
            std::fprintf(out, " detected in the compilation of \"%s\".\n", primary_source_name);
        } else {
            std::fputs(" detected in this compilation.\n", out);
        }
    }
    if (code == completion_stopped || code == completion_command_line) {
        std::fputs("Compilation terminated.\n", out);
    } else if (code == completion_internal) {
        std::fputs("Compilation aborted.\n", out);
    }
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
    curr_token_pos = error_pos = null_pos;
    remark_count = warning_count = error_count = catastrophe_count = 0;
    il_init();
    folding_init();
    init_seed_tables();
    modules_init();
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
    install_signal_handlers();
    write_messages_by_lines();
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
    check_compilation();
    finish_listing_outputs();
    if (error_count == 0 && (il_file || has_module_files(il_root))) {
        merge_constants(&il_root);
        write_module_files(il_root);
        write_il_file(il_root);
    }
    const int code = error_count != 0     ? completion_errors
                     : warning_count != 0 ? completion_warnings
                                          : completion_clean;
    free_region(il_region);
    fe_exit(code);
}

} // namespace zf90
