// Messages: one numbered table of texts (driver/messages.def), a severity chosen by the caller, a position
// and text arguments. Everybody reports through these functions; driver/diagnostics.cpp owns the counters.
#pragma once

#include "source/position.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string_view>

namespace zf90 {

enum error_code : std::uint16_t {
#define MESSAGE(number, name, text) msg_##name = number,
#include "driver/messages.def"
#undef MESSAGE
    message_count
};

enum severity : std::uint8_t {
    severity_none,
    severity_remark,
    severity_warning,
    severity_error,
    severity_catastrophe,
    severity_command_line,
    severity_internal
};

// Counted only when reported.
extern std::uint32_t remark_count, warning_count, error_count, catastrophe_count;

// The position that diagnostics without one of their own use; the tokenizer sets it.
extern source_pos error_pos;

// Where diagnostics and summaries go: standard error, which -S may have redirected.
inline std::FILE *diagnostic_stream() { return stderr; }

// Each message is written when it is complete.
void write_messages_by_lines();

// The text of a message; that of "unknown error" for a number out of range.
const char *message_text(unsigned code);

// The common worker. Each "%s" of `text` takes the next argument, empty text when there are no more.
// Severities 4 to 6 don't return, nor does the report that reaches the error limit.
void report(std::string_view text, source_pos position, severity level,
            std::span<const std::string_view> arguments);

template <class... Args>
void report_message(severity level, error_code code, source_pos position, const Args &...args) {
    const std::string_view list[] = {std::string_view(args)..., std::string_view()};
    report(message_text(code), position, level, std::span(list, sizeof...(args)));
}

template <class... Args> void remark_at(error_code code, source_pos position, const Args &...args) {
    report_message(severity_remark, code, position, args...);
}
template <class... Args> void remark(error_code code, const Args &...args) {
    report_message(severity_remark, code, error_pos, args...);
}
template <class... Args> void warning_at(error_code code, source_pos position, const Args &...args) {
    report_message(severity_warning, code, position, args...);
}
template <class... Args> void warning(error_code code, const Args &...args) {
    report_message(severity_warning, code, error_pos, args...);
}
template <class... Args> void error_at(error_code code, source_pos position, const Args &...args) {
    report_message(severity_error, code, position, args...);
}
template <class... Args> void error(error_code code, const Args &...args) {
    report_message(severity_error, code, error_pos, args...);
}
template <class... Args>
[[noreturn]] void catastrophe_at(error_code code, source_pos position, const Args &...args) {
    report_message(severity_catastrophe, code, position, args...);
    std::abort();
}
template <class... Args> [[noreturn]] void catastrophe(error_code code, const Args &...args) {
    catastrophe_at(code, error_pos, args...);
}

// A command-line error: a text of its own, no position, and the end of the run.
[[noreturn]] void command_line_error(std::string_view text, std::string_view argument = {});

} // namespace zf90
