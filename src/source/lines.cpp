// The line reader: physical lines, their classification in both source forms, and their assembly into the
// statement buffer.
#include "source/lines.h"

#include "declarations/symbols.h"
#include "driver/driver.h"
#include "driver/options.h"
#include "il/arena.h"
#include "output/listing.h"
#include "source/files.h"

#include <algorithm>
#include <cstring>

namespace zf90 {

char line_buffer[max_line_length + 1];
char stmt_buffer[stmt_buffer_size];
line_segment line_segments[max_statement_lines];
int segment_count;
line_classification line_kind;
char *line_text_start;
char *line_end;
bool file_ended;
char *stmt_write_pos;
bool stmt_overflowed;
bool at_source_end;
name_locator stmt_label;
char label_text[max_label_digits + 1];
source_pos label_pos;
char *line_cursor;
bool lines_run_together;

namespace {

// Each of these warnings is given once in a compilation.
bool warned_short_line;
bool warned_tab;
bool warned_bang;
bool warned_hash_line;

bool is_blank(char c) { return c == ' ' || c == '\t'; }
bool is_digit(char c) { return c >= '0' && c <= '9'; }

char *skip_blanks(char *p) {
    while (is_blank(*p)) {
        ++p;
    }
    return p;
}

std::uint16_t column_in_line(const char *pointer) {
    return pointer ? static_cast<std::uint16_t>(pointer - line_buffer + 1) : std::uint16_t{0};
}

char *column_start(int column) { return line_buffer + column - 1; }

// Copies the next physical line. False at the end of the file.
bool fetch_line() {
    check_interrupt();
    std::string_view input = file_ended ? std::string_view() : unread_input();
    if (input.empty()) {
        return false;
    }
    ++line_seq;
    ++curr_source->last_seq;
    std::size_t length = 0; // of the line as written
    bool complete = false;
    while (!complete && !input.empty()) {
        const void *newline = std::memchr(input.data(), '\n', input.size());
        complete = newline != nullptr;
        const std::size_t piece =
            complete ? static_cast<std::size_t>(static_cast<const char *>(newline) - input.data())
                     : input.size();
        if (length < max_line_length) {
            std::memcpy(line_buffer + length, input.data(), std::min(piece, max_line_length - length));
        }
        length += piece;
        consume_input(piece + (complete ? 1 : 0));
        if (!complete) {
            input = unread_input();
        }
    }
    line_end = line_buffer + std::min<std::size_t>(length, max_line_length);
    *line_end = '\0';
    if (length > max_line_length) {
        error_at_line(msg_source_line_is_too_long, line_end);
    }
    if (!complete) {
        file_ended = true;
        warning_at_line(msg_last_line_of_file_ends_without_newline, line_end);
    }
    return true;
}

// NUL ends the text of a line everywhere behind the reader, so one in the middle of a line, which would hide
// what follows, gives way to a blank. The first such place, or null.
const char *blank_out_nul_bytes() {
    char *nul =
        static_cast<char *>(std::memchr(line_buffer, '\0', static_cast<std::size_t>(line_end - line_buffer)));
    if (nul) {
        std::replace(nul, line_end, '\0', ' ');
    }
    return nul;
}

// The cursor behind "#line " or "# " in a preprocessor line; null if the line is none.
char *find_line_directive() {
    if (line_buffer[0] != '#') {
        return nullptr;
    }
    char *p = skip_blanks(line_buffer + 1);
    if (std::strncmp(p, "line", 4) == 0 && is_blank(p[4])) {
        return skip_blanks(p + 4);
    }
    return is_digit(*p) ? p : nullptr;
}

line_classification classify_free_form(char *first) {
    line_text_start = first;
    if (!*first || *first == '!') {
        return line_none;
    }
    return *first == '&' ? line_continuation : line_initial;
}

// What the label field of a fixed-form line holds.
struct label_field {
    char *stop;        // where the scan ended: behind the field, at the end of the line or at a tab
    char *first;       // the first character that is no blank, or null
    char *first_other; // the first that is no digit either, or null
};

label_field scan_label_field(int start_column) {
    label_field field{column_start(start_column), nullptr, nullptr};
    char *stored = label_text;
    for (; field.stop <= column_start(max_label_digits); ++field.stop) {
        const char c = *field.stop;
        if (!c || c == '\t') {
            break;
        }
        if (c == ' ') {
            continue;
        }
        if (!field.first) {
            field.first = field.stop;
        }
        if (!field.first_other && !is_digit(c)) {
            field.first_other = field.stop;
        }
        if (c != '0' || stored != label_text) {
            *stored++ = c;
        }
    }
    *stored = '\0';
    return field;
}

void take_label(const label_field &field) {
    label_pos = null_pos;
    if (!field.first) {
        return;
    }
    if (field.first_other) {
        error_at_line(msg_invalid_character_in_statement_label, field.first_other);
        label_text[0] = '\0';
    } else if (!label_text[0]) {
        error_at_line(msg_label_must_have_at_least_one_nonzero_digit, field.first);
    } else {
        label_pos = {line_seq, column_in_line(field.first)};
    }
}

line_classification classify_fixed_form(char *first) {
    if (!*first || first > column_start(fixed_form_last_column)) {
        return line_none;
    }
    if (*first == '!' && first != column_start(6)) {
        warn_bang({line_seq, column_in_line(first)});
        return line_none;
    }
    const char c1 = line_buffer[0];
    if (c1 == 'C' || c1 == 'c' || c1 == '*') {
        return line_none;
    }
    int label_start = 1;
    if (c1 == 'D' || c1 == 'd') {
        if (strict_f77_mode) {
            warning_at_line(msg_debugging_lines_beginning_with_d_are_not_standard, line_buffer);
        }
        if (!debug_lines_enabled) {
            return line_none;
        }
        label_start = 2;
    }

    const label_field field = scan_label_field(label_start);
    line_classification result = line_initial;
    if (*field.stop == '\t') {
        const char next = field.stop[1];
        if (is_digit(next) && next != '0') {
            result = line_continuation;
            line_text_start = field.stop + 2;
        } else {
            line_text_start = field.stop + 1;
        }
    } else {
        line_text_start = std::min(column_start(7), line_end);
        const char mark = line_end >= column_start(7) ? *column_start(6) : ' ';
        if (mark != ' ' && mark != '0') {
            result = line_continuation;
        } else if (first > line_text_start) {
            line_text_start = first;
        }
    }
    if (result == line_initial) {
        take_label(field);
    } else if (field.first) {
        warning_at_line(msg_label_field_of_continuation_line_is_nonblank, field.first);
    }
    return result;
}

// The end of a line's statement text: the "!" of a comment, or the NUL. A literal that began on a line before
// is not known here.
const char *find_comment(const char *text) {
    char quote = '\0';
    for (; *text && (quote || *text != '!'); ++text) {
        if (quote) {
            quote = *text == quote ? '\0' : quote;
        } else if (*text == '\'' || *text == '"') {
            quote = *text;
        }
    }
    return text;
}

// Whether a free-form line whose text is not kept announces another line.
bool announces_continuation(const char *text) {
    const char *end = find_comment(text);
    while (end > text && is_blank(end[-1])) {
        --end;
    }
    return end > text && end[-1] == '&';
}

// Whether a character of the pending line is part of its statement.
bool is_statement_text(const char *pointer) {
    return pointer >= line_text_start && pointer < find_comment(line_text_start) &&
           (!fixed_form_input || pointer <= column_start(fixed_form_last_column));
}

// Whether the pending line goes on with the statement that is being read. In free form the "&" of the line
// before announces it, whatever it begins with.
bool pending_line_continues() {
    return line_kind == line_continuation || (!fixed_form_input && line_kind == line_initial);
}

// The statement takes no more lines, so what it lacks at its end is not told: the rest of its lines are
// passed over. In free form, a line that does not begin with "&" belongs to it only if the line before
// announces it.
void drop_rest_of_statement() {
    stmt_overflowed = true;
    lines_run_together = true;
    bool announced = true;
    while (line_kind == line_continuation || (announced && pending_line_continues())) {
        announced = announces_continuation(line_text_start);
        line_kind = line_none;
        read_source_line();
    }
}

} // namespace

void line_reader_init() {
    line_kind = line_none;
    line_text_start = line_end = line_buffer;
    file_ended = false;
    segment_count = 0;
    stmt_write_pos = line_cursor = stmt_buffer;
    stmt_buffer[0] = '\0';
    stmt_overflowed = false;
    at_source_end = false;
    stmt_label = {};
    label_text[0] = '\0';
    label_pos = null_pos;
    warned_short_line = warned_tab = warned_bang = warned_hash_line = false;
}

void warning_at_line(error_code code, const char *pointer) {
    warning_at(code, {line_seq, column_in_line(pointer)});
}

void error_at_line(error_code code, const char *pointer) {
    error_at(code, {line_seq, column_in_line(pointer)});
}

void warning_at_cursor(error_code code, const char *pointer) {
    error_pos = position_of_cursor(pointer);
    warning(code);
}

void error_at_cursor(error_code code, const char *pointer) {
    error_pos = position_of_cursor(pointer);
    error(code);
}

void warn_tab(source_pos position) {
    if (strict_f77_mode && !warned_tab) {
        warned_tab = true;
        warning_at(msg_tab_character_is_not_standard_fortran_77, position);
    }
}

void warn_bang(source_pos position) {
    if (strict_f77_mode && !warned_bang) {
        warned_bang = true;
        warning_at(msg_exclamation_to_indicate_comments_is_not_standard_fortran, position);
    }
}

void read_source_line() {
    while (line_kind == line_none) {
        if (!fetch_line()) {
            file_ended = true;
            line_kind = line_end_of_file;
            return;
        }
        if (strict_f77_mode && fixed_form_input && !warned_short_line &&
            line_end < column_start(fixed_form_last_column + 1)) {
            warned_short_line = true;
            warning_at_line(msg_lines_less_than_72_columns_long_are_not_standard, nullptr);
        }
        const char *const nul = blank_out_nul_bytes();
        if (const char *directive = find_line_directive()) {
            note_line_directive(directive);
        } else {
            char *first = line_buffer;
            for (; is_blank(*first); ++first) {
                if (*first == '\t' && first <= column_start(fixed_form_last_column)) {
                    warn_tab({line_seq, column_in_line(first)});
                }
            }
            line_kind = fixed_form_input ? classify_fixed_form(first) : classify_free_form(first);
        }
        if (nul && line_kind != line_none && is_statement_text(nul)) {
            error_at_line(msg_unrecognized_token, nul);
        }
        list_source_line(line_kind == line_none ? 'S' : 'N', line_buffer,
                         static_cast<std::size_t>(line_end - line_buffer));
    }
}

void append_line_to_statement() {
    if (stmt_overflowed) {
        line_kind = line_none;
        return;
    }
    if (segment_count == max_statement_lines) {
        error_at_line(msg_too_many_lines_in_statement, nullptr);
        drop_rest_of_statement();
        return;
    }
    if (fixed_form_input && line_end > column_start(fixed_form_last_column + 1)) {
        line_end = column_start(fixed_form_last_column + 1);
        *line_end = '\0';
    }
    const auto size = static_cast<std::size_t>(line_end - line_buffer) + 1;
    const auto room = static_cast<std::size_t>(stmt_buffer + stmt_buffer_size - stmt_write_pos);
    if (size > room) {
        error_at_line(msg_statement_is_too_large, line_buffer + room);
        drop_rest_of_statement();
        return;
    }
    std::memcpy(stmt_write_pos, line_buffer, size);
    line_segment &segment = line_segments[segment_count++];
    segment.seq = line_seq;
    segment.base = stmt_write_pos;
    segment.text = stmt_write_pos + std::min(line_text_start - line_buffer, line_end - line_buffer);
    stmt_write_pos += size;
    line_cursor = segment.text;
    line_kind = line_none;
}

bool next_statement() {
    if (at_source_end) {
        return false;
    }
    stmt_write_pos = stmt_buffer;
    segment_count = 0;
    stmt_overflowed = false;
    stmt_label = {};
    for (;;) {
        read_source_line();
        switch (line_kind) {
        case line_initial:
            append_line_to_statement();
            if (fixed_form_input && label_text[0]) {
                stmt_label.position = label_pos;
                intern_name(label_text, std::strlen(label_text), stmt_label.atom);
            }
            return true;
        case line_end_of_file:
            pop_source_file();
            line_kind = line_none;
            if (!curr_source) {
                stmt_buffer[0] = '\0';
                line_cursor = stmt_buffer;
                at_source_end = true;
                ++line_seq;
                return false;
            }
            break;
        default:
            error_at_line(msg_expected_initial_line_of_statement, nullptr);
            line_kind = line_none;
            break;
        }
    }
}

bool next_segment() {
    for (int i = 0; i < segment_count; ++i) {
        if (line_segments[i].base > line_cursor) {
            line_cursor = line_segments[i].text;
            return true;
        }
    }
    if (stmt_overflowed || at_source_end) {
        return false;
    }
    read_source_line();
    if (!pending_line_continues()) {
        return false;
    }
    append_line_to_statement();
    return !stmt_overflowed;
}

// Whether the line behind that of the cursor begins with an "&".
static bool marked_line_follows() {
    for (int i = 0; i < segment_count; ++i) {
        if (line_segments[i].base > line_cursor) {
            return *line_segments[i].text == '&';
        }
    }
    if (stmt_overflowed || at_source_end) {
        return false;
    }
    read_source_line();
    return line_kind == line_continuation;
}

// Past the "&" that begins a line, and past lines that hold nothing else, which are reported.
static void skip_leading_ampersand() {
    for (;;) {
        char *const mark = line_cursor;
        line_cursor = skip_blanks(line_cursor + 1);
        if (*line_cursor && *line_cursor != '!') {
            return;
        }
        if (!lex_peeking) {
            error_at_cursor(msg_line_may_not_consist_of_single_ampersand, mark);
            lines_run_together = true;
        }
        if (!marked_line_follows() || !next_segment()) {
            return;
        }
    }
}

bool free_form_continuation(bool between_tokens) {
    char *const mark = line_cursor;
    const bool has_next = next_segment();
    char *const next_text = line_cursor;
    const bool continues = between_tokens || (has_next && *next_text == '&');
    line_cursor = mark;
    if (!continues) {
        return false;
    }
    line_cursor = skip_blanks(line_cursor + 1);
    if (lex_peeking) {
        // The tokens are read again.
    } else if (*line_cursor == '!') {
        warn_bang(position_of_cursor(line_cursor));
    } else if (*line_cursor) {
        error_at_cursor(msg_invalid_text_following_continuation_character_ampersand, line_cursor);
        lines_run_together = true;
    }
    if (has_next) {
        line_cursor = next_text;
        if (*line_cursor == '&') {
            skip_leading_ampersand();
        }
    } else {
        // A statement that took no more lines has had its message.
        if (!lex_peeking && !stmt_overflowed) {
            error_at_cursor(msg_expected_continuation_line_following_this_line, mark);
        }
        line_cursor += std::strlen(line_cursor);
    }
    return true;
}

void skip_comment() {
    if (!lex_peeking) {
        warn_bang(position_of_cursor(line_cursor));
    }
    if (!fixed_form_input || !next_segment()) {
        line_cursor += std::strlen(line_cursor);
    }
}

void note_line_directive(const char *cursor) {
    if (strict_f77_mode && !warned_hash_line) {
        warned_hash_line = true;
        warning_at_line(msg_line_directive_is_not_standard_fortran_77, line_buffer);
    }
    if (!is_digit(*cursor)) {
        error_at_line(msg_expected_line_number, cursor);
        return;
    }
    const char *const digits = cursor;
    std::uint64_t number = 0;
    for (; is_digit(*cursor); ++cursor) {
        number =
            std::min<std::uint64_t>(number * 10 + static_cast<std::uint64_t>(*cursor - '0'), UINT64_MAX / 20);
    }
    if (number == 0 || number > UINT32_MAX) {
        error_at_line(msg_invalid_line_number, digits);
        return;
    }
    while (is_blank(*cursor)) {
        ++cursor;
    }
    const char *name = curr_source->file_name;
    if (*cursor) {
        if (*cursor != '"') {
            error_at_line(msg_expected_file_name, cursor);
            return;
        }
        const char *const closing = std::strchr(cursor + 1, '"');
        if (!closing) {
            error_at_line(msg_missing_closing_quote, cursor);
            return;
        }
        name = il_copy_string(cursor + 1, static_cast<std::size_t>(closing - cursor - 1));
    }
    enter_line_record(static_cast<std::uint32_t>(number), name);
}

source_pos position_of_cursor(const char *pointer) {
    if (at_source_end || segment_count == 0) {
        return {line_seq, 0};
    }
    int i = segment_count - 1;
    while (i > 0 && line_segments[i].base > pointer) {
        --i;
    }
    return {line_segments[i].seq, static_cast<std::uint16_t>(pointer - line_segments[i].base + 1)};
}

} // namespace zf90
