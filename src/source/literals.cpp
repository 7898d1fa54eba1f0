// Literals: the states of the tokenizer that scan them, and the conversion of their text.
#include "source/literals.h"

#include "constants/folding.h"
#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "driver/options.h"
#include "il/arena.h"
#include "il/types.h"
#include "source/stepping.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

namespace zf90 {

fold_value curr_constant;

namespace {

// Marks into `token_text`, of the literal being scanned.
struct literal_marks {
    char *num_begin;  // its first digit or its period
    char *num_end;    // behind its digits, exponent included
    char *exponent;   // the letter, or null
    char *kind_begin; // the first character of the kind, or null
    char *kind_end;   // behind its last one
    bool kind_is_number;
    char *string_begin; // the opening quote
};

literal_marks marks;

void set_error_constant() {
    clear_fold_value(curr_constant);
    curr_constant.source_pos = curr_token_pos;
}

// A fault in the literal's form, at the character where it shows, or one in its value, at the literal.
token_kind bad_form(token_kind token, error_code code) {
    if (!lex_peeking) {
        error_at(code, position_of_cursor(line_cursor));
        set_error_constant();
    }
    return token;
}

void bad_value(error_code code) {
    error_at(code, curr_token_pos);
    set_error_constant();
}

token_kind unterminated(token_kind token, error_code code) {
    if (lex_peeking) {
        return tok_none;
    }
    if (stmt_overflowed) {
        set_error_constant(); // its end may be on a line that was not taken
    } else {
        bad_value(code);
    }
    return token;
}

void set_value(struct type *type) {
    clear_fold_value(curr_constant);
    curr_constant.source_pos = curr_token_pos;
    curr_constant.type = type;
    curr_constant.repr_kind = ck_value;
}

// ---- kinds

// What the kind's name means; null if nothing.
symbol *meaning_of_kind() {
    const atom *const name =
        find_atom(marks.kind_begin, static_cast<std::size_t>(marks.kind_end - marks.kind_begin));
    return name ? lookup_resolved(name->first_symbol, curr_scope_depth) : nullptr;
}

// Whether something is wrong with the kind's name itself, which has been reported.
bool is_reported(const symbol *s) {
    if (!s || (s->flags & sf_typed) == 0) {
        return false;
    }
    return is_quiet(s) || (s->kind == sk_variable && entity_as<object>(s)->type->type_code == tk_error);
}

// A kind's name that nothing has declared: one message about it is enough.
void note_unknown_kind(symbol *s) {
    if (!s && curr_scope_depth > 0) {
        name_locator name{nullptr, curr_token_pos};
        intern_name(marks.kind_begin, static_cast<std::size_t>(marks.kind_end - marks.kind_begin), name.atom);
        make_quiet(new_symbol(sk_undetermined, name, curr_scope_depth));
    } else if (s && s->kind == sk_undetermined && (s->flags & sf_inferred)) {
        make_quiet(s);
    }
}

// The value of the constant that the kind's name stands for; false if it stands for none.
bool named_kind(const symbol *s, std::int32_t &value) {
    if (!s || s->kind != sk_variable || !s->entity) {
        return false;
    }
    const object *const o = entity_as<object>(s);
    constant *const initial = o->variant.initializer;
    if (!o->is_constant || !o->type || o->type->type_code != tk_integer || !initial ||
        !check_initializer(initial) || initial->type->type_code != tk_integer) {
        return false;
    }
    fold_value known = new_fold_value(ck_error);
    read_constant(initial, known);
    value = known.integer;
    return has_value(known);
}

// The kind number that the literal states. False, with the message given, if it states none that could be
// one.
bool literal_kind(std::int32_t &number) {
    if (!marks.kind_is_number) {
        symbol *const s = meaning_of_kind();
        if (is_reported(s)) {
            set_error_constant();
            return false;
        }
        if (!named_kind(s, number)) {
            bad_value(msg_kind_name_is_not_constant);
            note_unknown_kind(s);
            return false;
        }
        if (number < 0) {
            bad_value(msg_negative_type_kind_parameter_value);
            return false;
        }
        return true;
    }
    if (*marks.kind_begin == '-') {
        bad_value(msg_negative_type_kind_parameter_value);
        return false;
    }
    std::int64_t value = 0;
    for (const char *p = marks.kind_begin; p < marks.kind_end; ++p) {
        value = value * 10 + (*p - '0');
        if (value > INT32_MAX) {
            bad_value(msg_kind_constant_is_too_large);
            return false;
        }
    }
    number = static_cast<std::int32_t>(value);
    return true;
}

// The type of a literal whose class has these two functions. Null, with the message given, for a bad kind.
template <class DefaultType, class TypeOfKind>
type *literal_type(DefaultType default_type, TypeOfKind type_of_kind_number) {
    if (!marks.kind_begin) {
        return default_type();
    }
    std::int32_t number = 0;
    if (!literal_kind(number)) {
        return nullptr;
    }
    bool failed = false;
    type *const result = type_of_kind_number(number, failed);
    if (failed) {
        bad_value(msg_kind_value_does_not_specify_representation_method);
        return nullptr;
    }
    return result;
}

// ---- conversions

void convert_integer() {
    type *const t = literal_type(default_integer, integer_type_for_kind_number);
    if (!t) {
        return;
    }
    bool too_large = false;
    std::uint32_t value = 0;
    for (const char *p = marks.num_begin; p < marks.num_end && !too_large; ++p) {
        const std::uint64_t next = std::uint64_t{value} * 10 + static_cast<std::uint64_t>(*p - '0');
        too_large = next > UINT32_MAX;
        value = static_cast<std::uint32_t>(next);
    }
    // The most negative value of a kind is a literal with its sign.
    const bool negative = token_text[0] == '-';
    const std::uint32_t limit = (negative ? 0x80000000u : 0x7fffffffu) >> (8 * (4 - t->size));
    if (too_large || value > limit) {
        bad_value(msg_integer_constant_is_too_large);
        return;
    }
    set_value(t);
    curr_constant.integer = static_cast<std::int32_t>(negative ? 0u - value : value);
}

void convert_real() {
    const bool is_double = marks.exponent && *marks.exponent == 'D';
    if (is_double && marks.kind_begin) {
        bad_value(msg_exponent_letter_is_not_e_while_type_kind);
        return;
    }
    type *const t = literal_type(is_double ? double_precision : default_real, real_type_for_kind_number);
    if (!t) {
        return;
    }
    // The text is digits with a period and an exponent: nothing else that strtod knows can come up.
    const char saved_end = *marks.num_end;
    *marks.num_end = '\0';
    if (is_double) {
        *marks.exponent = 'E';
    }
    const double value = std::strtod(marks.num_begin, nullptr);
    if (is_double) {
        *marks.exponent = 'D';
    }
    *marks.num_end = saved_end;
    if (std::isinf(value)) {
        bad_value(msg_floating_constant_is_out_of_range);
        return;
    }
    set_value(t);
    curr_constant.real = token_text[0] == '-' ? -value : value;
}

void convert_logical() {
    type *const t = literal_type(default_logical, logical_type_for_kind_number);
    if (!t) {
        return;
    }
    set_value(t);
    curr_constant.integer = char_fold(token_text[1]) == 'T' ? 1 : 0;
}

void convert_string() {
    const char delimiter = *marks.string_begin;
    const char *const begin = marks.string_begin + 1;
    const char *const end = text_end - 1;
    const auto delimiters = static_cast<std::int32_t>(std::count(begin, end, delimiter));
    const std::int32_t length = static_cast<std::int32_t>(end - begin) - delimiters / 2;
    type *const t = literal_type([length] { return default_character(length); },
                                 [length](std::int32_t kind_number, bool &failed) {
                                     return character_type_for_kind_number(kind_number, length, failed);
                                 });
    if (!t) {
        return;
    }
    set_value(t);
    unsigned char *out = new_fold_text(curr_constant, length);
    for (const char *p = begin; p < end; ++p) {
        *out++ = static_cast<unsigned char>(*p);
        if (*p == delimiter) {
            ++p; // the second of a pair
        }
    }
}

// The bits that a digit of each base takes, by the letter of the constant.
struct boz_base {
    std::uint32_t digit_bits;
    error_code bad_digit;
};

boz_base base_of(char letter) {
    switch (char_fold(letter)) {
    case 'B': return {1, msg_invalid_binary_digit};
    case 'O': return {3, msg_invalid_octal_digit};
    default: return {4, msg_invalid_hexadecimal_digit};
    }
}

// The value of a hexadecimal digit, 16 for any other character.
std::uint32_t digit_value(char c) {
    const char folded = char_fold(c);
    if (folded >= '0' && folded <= '9') {
        return static_cast<std::uint32_t>(folded - '0');
    }
    return folded >= 'A' && folded <= 'F' ? static_cast<std::uint32_t>(folded - 'A' + 10) : 16;
}

// Leading zeros count against the size.
void convert_boz() {
    const boz_base base = base_of(token_text[0]);
    type *const t = integer_type(integer_kind_count - 1);
    const char *const begin = token_text + 2;
    const char *const end = text_end - 1;
    if (begin == end) {
        bad_value(msg_hex_oct_bin_constant_has_no_digits);
        return;
    }
    std::uint32_t bits = 0;
    std::uint32_t value = 0;
    for (const char *p = begin; p < end; ++p) {
        bits += base.digit_bits;
        if (bits > 8 * t->size) {
            bad_value(msg_boz_constant_is_too_large);
            return;
        }
        const std::uint32_t digit = digit_value(*p);
        if (digit >= 1u << base.digit_bits) {
            bad_value(base.bad_digit);
            return;
        }
        value = value << base.digit_bits | digit;
    }
    set_value(t);
    curr_constant.integer = static_cast<std::int32_t>(value);
}

// ---- the parts of numbers

bool take_digits() {
    if (class_of(*line_cursor) != cc_digit) {
        return false;
    }
    do {
        take_character();
    } while (class_of(*line_cursor) == cc_digit);
    return true;
}

// Takes an underscore and the name or number behind it. False, at the character in their place, without one.
bool take_kind() {
    take_character();
    marks.kind_begin = text_end;
    if (take_digits()) {
        marks.kind_is_number = true;
    } else if (is_letter(class_of(*line_cursor))) {
        take_word();
    } else {
        return false;
    }
    marks.kind_end = text_end;
    return true;
}

token_kind finish_integer() {
    if (!lex_peeking) {
        convert_integer();
    }
    return tok_integer;
}

// Behind the digits of a real.
token_kind finish_real(std::uint32_t mode) {
    marks.num_end = text_end;
    if (class_of(*line_cursor) == cc_underscore && !(mode & lex_no_kind_suffix) && !take_kind()) {
        return bad_form(tok_real, msg_invalid_real_constant);
    }
    if (!lex_peeking) {
        convert_real();
    }
    return tok_real;
}

// At the exponent letter.
token_kind scan_exponent(std::uint32_t mode) {
    marks.exponent = text_end;
    put_in_text(char_fold(*line_cursor));
    step_in_token();
    if (class_of(*line_cursor) == cc_plus || class_of(*line_cursor) == cc_minus) {
        take_character();
    }
    if (!take_digits()) {
        return bad_form(tok_real, msg_invalid_real_constant);
    }
    return finish_real(mode);
}

// Behind the period.
token_kind scan_fraction_digits(std::uint32_t mode) {
    take_digits();
    return class_of(*line_cursor) == cc_de ? scan_exponent(mode) : finish_real(mode);
}

// Takes the text up to the delimiter or the end.
void take_string_text(char delimiter) {
    while (*line_cursor && *line_cursor != delimiter) {
        char *from = line_cursor;
        char *to = text_end;
        do {
            *to++ = *from++;
        } while (*from && *from != delimiter && *from != '&');
        line_cursor = from;
        text_end = to;
        if (*from != delimiter) {
            attend_in_string();
        }
    }
}

// At the opening quote. A quote that comes twice is one character; the second may stand apart in fixed form.
token_kind scan_quoted() {
    const char delimiter = *line_cursor;
    marks.string_begin = text_end;
    do {
        put_in_text(delimiter);
        step_in_string();
        take_string_text(delimiter);
        if (!*line_cursor) {
            return unterminated(tok_character, msg_missing_closing_quote);
        }
        take_character();
    } while (*line_cursor == delimiter);
    if (!lex_peeking) {
        convert_string();
    }
    return tok_character;
}

// Behind the digits of an integer, at an underscore. Digits and a name look alike before a quote.
token_kind scan_integer_kind() {
    char *const digits_end = text_end;
    if (take_kind()) {
        return finish_integer();
    }
    if (is_string_quote(class_of(*line_cursor))) {
        marks.kind_is_number = true;
        marks.kind_begin = token_text;
        marks.kind_end = digits_end;
        return scan_quoted();
    }
    return bad_form(tok_integer, msg_invalid_integer_constant);
}

// Of the period behind digits: not if an operator as in 1.EQ.2 or 1.AND.2 begins with it.
bool is_decimal_point() {
    const peeking_scope peeking;
    char *const period = line_cursor;
    step_in_token();
    bool result = true;
    if (class_of(*line_cursor) == cc_de) {
        step_in_token();
        const char_class_code next = class_of(*line_cursor);
        result = next == cc_digit || next == cc_plus || next == cc_minus;
    } else {
        result = !is_letter(class_of(*line_cursor));
    }
    line_cursor = period;
    return result;
}

// A label has five digits and no leading zeros.
token_kind finish_label() {
    const auto length = text_end - token_text;
    if (length > max_label_digits) {
        if (!lex_peeking) {
            error_at(msg_label_has_too_many_digits, curr_token_pos);
        }
        text_end = std::copy(text_end - max_label_digits, text_end, token_text);
    } else {
        char *first = std::find_if(token_text, text_end, [](char c) { return c != '0'; });
        if (first == text_end) {
            if (!lex_peeking) {
                error_at(msg_label_must_have_at_least_one_nonzero_digit, curr_token_pos);
            }
            --first;
        }
        text_end = std::copy(first, text_end, token_text);
    }
    curr_name.position = curr_token_pos;
    if (!lex_peeking) {
        intern_name(token_text, static_cast<std::size_t>(text_end - token_text), curr_name.atom);
    }
    return tok_label;
}

// At the H behind the count. The text is taken as it stands, and has no value but the one in `token_text`.
token_kind scan_hollerith() {
    int count = 0;
    for (const char *p = marks.num_begin; p < text_end && count < stmt_buffer_size; ++p) {
        count = std::min(count * 10 + (*p - '0'), stmt_buffer_size);
    }
    put_in_text(*line_cursor);
    step_in_string();
    if (count == 0) {
        return bad_form(tok_hollerith, msg_invalid_hollerith_constant);
    }
    for (;;) {
        if (!*line_cursor) {
            bad_form(tok_hollerith, msg_invalid_hollerith_constant);
            return lex_peeking ? tok_none : tok_hollerith;
        }
        put_in_text(*line_cursor);
        if (--count == 0) {
            step_in_token();
            return tok_hollerith;
        }
        step_in_string();
    }
}

} // namespace

void literals_init() {
    marks = {};
    curr_constant = new_fold_value(ck_error);
    clear_fold_value(curr_constant);
}

token_kind scan_digits(std::uint32_t mode) {
    marks = {};
    marks.num_begin = text_end;
    take_digits();
    // A label ends where its digits do, whatever letter follows: DO 10 D1 = 1, 5.
    const bool digits_only = (mode & (lex_plain_digits | lex_label)) != 0;
    switch (class_of(*line_cursor)) {
    case cc_de:
        if (!digits_only) {
            return scan_exponent(mode);
        }
        break;
    case cc_h:
        if (!(mode & (lex_no_hollerith | lex_label))) {
            return scan_hollerith();
        }
        break;
    case cc_underscore:
        if (!(mode & (lex_label | lex_no_kind_suffix))) {
            marks.num_end = text_end;
            return scan_integer_kind();
        }
        break;
    case cc_period:
        if (!(mode & lex_plain_digits) && is_decimal_point()) {
            take_character();
            return scan_fraction_digits(mode);
        }
        break;
    default: break;
    }
    // An H where no Hollerith constant is wanted ends the number without a word.
    const char_class_code next = class_of(*line_cursor);
    if (is_letter(next) && next != cc_h && !lex_peeking && !fixed_form_input && !(mode & lex_letter)) {
        warning_at(msg_expected_blank_as_separator, position_of_cursor(line_cursor));
    }
    if (mode & lex_label) {
        return finish_label();
    }
    marks.num_end = text_end;
    return finish_integer();
}

token_kind scan_fraction(std::uint32_t mode) {
    marks = {};
    marks.num_begin = text_end - 1;
    return scan_fraction_digits(mode);
}

token_kind scan_string() {
    marks = {};
    return scan_quoted();
}

token_kind scan_string_of_kind(char *kind_end) {
    marks = {};
    marks.kind_begin = token_text;
    marks.kind_end = kind_end;
    return scan_quoted();
}

token_kind scan_boz() {
    const char delimiter = *line_cursor;
    marks = {};
    do {
        take_character();
    } while (*line_cursor && *line_cursor != delimiter);
    if (!*line_cursor) {
        return unterminated(tok_boz, msg_missing_closing_quote_on_hex_oct_bin_constant);
    }
    take_character();
    if (!lex_peeking) {
        convert_boz();
    }
    return tok_boz;
}

token_kind scan_logical() {
    marks = {};
    if (class_of(*line_cursor) == cc_underscore && !take_kind()) {
        return bad_form(tok_logical, msg_invalid_logical_constant);
    }
    if (!lex_peeking) {
        convert_logical();
    }
    return tok_logical;
}

} // namespace zf90
