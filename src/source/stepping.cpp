// The three ways in which the cursor moves, and the table that keeps them short.
#include "source/stepping.h"

#include "driver/options.h"

#include <cstring>

namespace zf90 {

std::array<std::uint8_t, 256> char_attention;
char *text_end = token_text;

namespace {

bool lower_case_watch; // no lower-case letter has been seen yet where there should be none

void set_attention(const char *characters, std::uint8_t value) {
    for (; *characters; ++characters) {
        char_attention[static_cast<unsigned char>(*characters)] = value;
    }
}

constexpr const char *lower_case_letters = "abcdefghijklmnopqrstuvwxyz";

bool is_lower_case(char c) { return c >= 'a' && c <= 'z'; }

// The warning comes once and while peeking too; then the letters lose their attention and cost nothing.
void note_lower_case() {
    if (lower_case_watch) {
        lower_case_watch = false;
        set_attention(lower_case_letters, 0);
        warning_at(msg_lower_case_letters_are_not_standard_fortran_77, position_of_cursor(line_cursor));
    }
}

void note_tab() {
    if (!lex_peeking) {
        warn_tab(position_of_cursor(line_cursor));
    }
}

// At a blank or tab: past it and the blanks behind it.
void skip_blanks() {
    do {
        ++line_cursor;
    } while (*line_cursor == ' ');
}

} // namespace

void stepping_init() {
    char_attention.fill(0);
    char_attention[0] = 1;
    set_attention("\t! ", 1);
    if (!fixed_form_input) {
        set_attention("&", 1);
    }
    lower_case_watch = strict_f77_mode;
    if (lower_case_watch) {
        set_attention(lower_case_letters, 1);
    }
}

void skip_between_tokens() {
    for (;;) {
        switch (*line_cursor) {
        case '\t': note_tab(); [[fallthrough]];
        case ' ': skip_blanks(); break;
        case '!': skip_comment(); break;
        case '\0':
            if (!fixed_form_input || !next_segment()) {
                return;
            }
            break;
        case '&':
            if (fixed_form_input || !free_form_continuation(true)) {
                return;
            }
            break;
        default:
            if (is_lower_case(*line_cursor)) {
                note_lower_case();
            }
            return;
        }
    }
}

void attend_in_token() {
    for (;;) {
        switch (*line_cursor) {
        case ' ':
        case '\t':
            if (!fixed_form_input) {
                return;
            }
            skip_blanks();
            break;
        case '!': skip_comment(); break;
        case '\0':
            if (!fixed_form_input || !next_segment()) {
                return;
            }
            break;
        case '&':
            if (fixed_form_input || !free_form_continuation(false)) {
                return;
            }
            // A blank behind the "&" that begins the new line separates tokens like any other: back to it.
            if (line_cursor[-1] == ' ' || line_cursor[-1] == '\t') {
                --line_cursor;
                return;
            }
            break;
        default:
            if (is_lower_case(*line_cursor)) {
                note_lower_case();
            }
            return;
        }
    }
}

void attend_in_string() {
    if (fixed_form_input) {
        while (*line_cursor == '\0' && next_segment()) {
        }
        return;
    }
    // An "&" with nothing behind it continues the literal; any other one is a character of it.
    while (*line_cursor == '&') {
        char *const mark = line_cursor;
        char *end = mark + 1;
        while (*end == ' ' || *end == '\t') {
            ++end;
        }
        if (*end != '\0') {
            return;
        }
        if (!next_segment()) {
            if (!lex_peeking && !stmt_overflowed) {
                error_at(msg_expected_continuation_line_following_this_line, position_of_cursor(mark));
            }
            line_cursor = end;
            return;
        }
        if (*line_cursor != '&') {
            if (!lex_peeking) {
                error_at(msg_continuation_line_in_character_context_must_begin_with_ampersand,
                         position_of_cursor(line_cursor));
            }
            return;
        }
        ++line_cursor;
    }
}

char following_character() {
    const peeking_scope peeking;
    char *const here = line_cursor;
    step_in_token();
    const char next = *line_cursor;
    line_cursor = here;
    return next;
}

} // namespace zf90
