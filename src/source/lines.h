// Physical lines into statements. Lines are read and classified one at a time; a statement starts with one
// line in `stmt_buffer`, and the tokenizer asks for the next one only when it reaches the end of the text, so
// that at most one line is pending. All positions in the buffer map back to lines through `line_segments`.
#pragma once

#include "driver/diagnostics.h"
#include "il/records.h"

namespace zf90 {

inline constexpr int max_line_length = 132;
inline constexpr int fixed_form_last_column = 72;
inline constexpr int max_statement_lines = 40;
inline constexpr int stmt_buffer_size = 5320;
inline constexpr int max_label_digits = 5;

enum line_classification : std::uint8_t { line_none, line_initial, line_continuation, line_end_of_file };

struct line_segment {
    std::uint32_t seq; // of the physical line
    char *base;        // its column 1 in stmt_buffer
    char *text;        // the first character of statement text
};

// A name with its position: `curr_name`, `stmt_label` and the locators of new symbols.
struct name_locator {
    struct atom *atom; // null: no name
    source_pos position;
};

extern char line_buffer[max_line_length + 1];
extern char stmt_buffer[stmt_buffer_size];
extern line_segment line_segments[max_statement_lines];
extern int segment_count;
extern line_classification line_kind; // of the pending line
extern char *line_text_start;         // first statement character of the pending line
extern char *line_end;                // its NUL
extern bool file_ended;               // of the current file
extern char *stmt_write_pos;
extern bool stmt_overflowed; // add no more lines to the statement
extern bool at_source_end;
extern name_locator stmt_label; // fixed-form label of the statement
extern char label_text[max_label_digits + 1];
extern source_pos label_pos;

// The next unread character of stmt_buffer: saving and restoring it is the whole of the rewind mechanism.
extern char *line_cursor;

// Set while the tokenizer peeks: no diagnostics of its own, no atoms, no conversions. (source/tokens)
extern bool lex_peeking;

void line_reader_init();

// Fetches and classifies the next line that is no comment; does nothing while one is pending.
void read_source_line();

// Starts the next statement. False at the end of all input.
bool next_statement();

// Moves the pending line into the statement, and the cursor to its text.
void append_line_to_statement();

// Moves the cursor to the text of the statement's next line, read or already loaded. False if there is none.
bool next_segment();

// With the cursor at an "&" of free form: whether it marks a continuation; if so the cursor moves past it, to
// the text of the next line.
bool free_form_continuation(bool between_tokens);

// Set when text behind such an "&" has been reported, when a line that holds nothing else has been, and when
// the statement takes no more lines: what is wrong from there on is no other mistake. The statement loop
// clears it.
extern bool lines_run_together;

// With the cursor at a "!": past the comment.
void skip_comment();

void note_line_directive(const char *cursor);

source_pos position_of_cursor(const char *pointer);

void warning_at_line(error_code code, const char *pointer);
void error_at_line(error_code code, const char *pointer);
void warning_at_cursor(error_code code, const char *pointer);
void error_at_cursor(error_code code, const char *pointer);

// The one-shot warnings of strict FORTRAN 77 that the tokenizer shares.
void warn_tab(source_pos position);
void warn_bang(source_pos position);

} // namespace zf90
