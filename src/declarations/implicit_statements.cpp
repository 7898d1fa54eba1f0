// The IMPLICIT statements: what they say goes into the letter table of the current scope.
#include "declarations/implicit.h"
#include "declarations/scopes.h"
#include "declarations/type_spec.h"
#include "declarations/units.h"
#include "driver/diagnostics.h"
#include "driver/options.h"
#include "il/entries.h"
#include "il/types.h"
#include "source/token_helpers.h"
#include "source/tokens.h"
#include "statements/handlers.h"

#include <string_view>

namespace zf90 {

bool stmt_implicit_none() {
    scope_row &row = curr_row();
    if (row.implicit_none) {
        warning_at(msg_implicit_none_statement_has_already_appeared, stmt_pos);
    }
    row.implicit_none = true;
    for (type *&t : row.implicit_types) {
        t = nullptr;
    }
    next_token(0);
    return true;
}

namespace {

constexpr std::uint32_t letter_list_mode = lex_letter;

// Whether a selector, and not the letter list, stands behind a type keyword. Reads nothing.
bool has_selector() {
    char *const saved_cursor = line_cursor;
    const token_kind saved_token = curr_token;
    const source_pos saved_position = curr_token_pos;
    bool found = false;
    switch (next_token(lex_peek)) {
    case tok_star: found = true; break;
    case tok_lparen:
        skip_balanced();
        found = curr_token == tok_rparen && next_token(lex_peek) == tok_lparen;
        break;
    default: break;
    }
    line_cursor = saved_cursor;
    curr_token = saved_token;
    curr_token_pos = error_pos = saved_position;
    return found;
}

// The specifier of a type keyword that may be followed by the letter list at once.
bool read_implicit_selector(bool (*read_type)(std::uint32_t), type *default_spec) {
    if (has_selector()) {
        return read_type(0);
    }
    curr_type_spec = default_spec;
    next_token(0);
    return true;
}

bool read_double_precision() {
    curr_type_spec = double_precision();
    next_token(0);
    return true;
}

// The type specifier of an IMPLICIT specification, at its first keyword; reads on to the "(" of the letters.
bool read_implicit_type() {
    switch (curr_token) {
    case tok_kw_character: return read_implicit_selector(read_type_character, default_character(1));
    case tok_kw_complex: return read_implicit_selector(read_type_complex, default_complex());
    case tok_kw_integer: return read_implicit_selector(read_type_integer, default_integer());
    case tok_kw_logical: return read_implicit_selector(read_type_logical, default_logical());
    case tok_kw_real: return read_implicit_selector(read_type_real, default_real());
    case tok_kw_type: {
        in_prefix_type = true;
        const bool good = read_type_derived(0);
        in_prefix_type = false;
        return good;
    }
    case tok_kw_in:
        if (next_token(lex_keyword) == tok_kw_teger) {
            return read_implicit_selector(read_type_integer, default_integer());
        }
        break;
    case tok_kw_do:
        if (next_token(lex_keyword) == tok_kw_uble && next_token(lex_keyword) == tok_kw_precision) {
            return read_double_precision();
        }
        break;
    case tok_kw_double:
        if (next_token(lex_keyword) == tok_kw_precision) {
            return read_double_precision();
        }
        break;
    case tok_kw_doubleprecision: return read_double_precision();
    default: break;
    }
    error_pos = curr_token_pos;
    syntax_error(msg_expected_type_keyword);
    return false;
}

bool is_in_error(const type *t) { return t && t->type_code == tk_error; }

void set_letter(int letter, source_pos position) {
    const char spelling[] = {static_cast<char>('A' + letter)};
    const std::uint32_t bit = 1u << letter;
    type *&entry = curr_row().implicit_types[letter];
    if (!(implicit_letter_set & bit)) {
        implicit_letter_set |= bit;
        entry = curr_type_spec;
    } else if (is_in_error(entry) || is_in_error(curr_type_spec)) {
        return; // what is meant is not certain
    } else if (entry != curr_type_spec) {
        error_at(msg_type_has_already_been_associated_with, position, std::string_view(spelling, 1));
    } else {
        warning_at(msg_type_has_already_been_associated_with, position, std::string_view(spelling, 1));
    }
}

// A letter, or a range of letters.
bool read_letters() {
    if (!expect_token(tok_letter, msg_expected_letter)) {
        return false;
    }
    const source_pos position = curr_token_pos;
    const int first = token_text[0] - 'A';
    int last = first;
    if (next_token(letter_list_mode) == tok_minus) {
        next_token(letter_list_mode);
        if (!expect_token(tok_letter, msg_expected_letter)) {
            return false;
        }
        last = token_text[0] - 'A';
        const char spelling[] = {static_cast<char>('A' + first)};
        if (last < first) {
            error(msg_letter_must_follow_in_alphabetic_order, std::string_view(spelling, 1));
            last = first;
        } else if (last == first) {
            warning(msg_letter_must_follow_in_alphabetic_order, std::string_view(spelling, 1));
        }
        next_token(letter_list_mode);
    }
    for (int letter = first; letter <= last; ++letter) {
        set_letter(letter, position);
    }
    return true;
}

// One specification, from its type keyword on. Clears `good` after an error. False if what follows is
// unknown.
bool read_implicit_spec(bool &good) {
    bool has_type;
    {
        const stop_at stop({tok_lparen});
        has_type = read_implicit_type();
    }
    if (!has_type) {
        good = false;
        curr_type_spec = error_type(); // the letters are typed, so that there is no word about their names
        if (curr_token != tok_lparen) {
            return false;
        }
    }
    if (!accept_token(tok_lparen, msg_expected_lparen, letter_list_mode)) {
        good = false;
        return false;
    }
    {
        const stop_at stop({tok_comma, tok_rparen});
        do {
            good = read_letters() && good;
        } while (accept_optional(tok_comma, letter_list_mode));
    }
    const bool closed = accept_token(tok_rparen, msg_expected_rparen, 0);
    good = good && closed;
    return closed;
}

} // namespace

bool stmt_implicit() {
    if (curr_row().implicit_none) {
        error_at(msg_implicit_none_in_effect_implicit_typing_not_permitted, stmt_pos);
    } else if (no_implicit_typing) {
        warning_at(msg_implicit_none_in_effect_implicit_typing_not_permitted, stmt_pos);
    }
    bool good = true;
    bool goes_on;
    do {
        next_token(lex_keyword);
        goes_on = read_implicit_spec(good);
    } while (goes_on && curr_token == tok_comma);
    return good;
}

} // namespace zf90
