// The FORMAT statement. It is checked and, token by token, written down again without blanks and in upper
// case but for its texts: that is the constant of the label, and what a program has at run time.
#include "constants/arithmetic.h"
#include "il/constants.h"
#include "il/types.h"
#include "source/token_helpers.h"
#include "statements/handlers.h"
#include "statements/loop.h"

#include <algorithm>
#include <cstring>

namespace zf90 {

namespace {

// ---- the text

char format_buffer[stmt_buffer_size]; // the tokens are no longer than their statement
char *format_end;
bool format_failed; // something was reported: the text is of no use
bool token_failed;  // the tokenizer has found fault with the current token
bool end_unknown;   // what has been reported took the rest of the statement with it

// Reads a token and writes it down. Letters come in upper case.
void format_token() {
    const std::uint32_t errors_before = error_count;
    next_token(lex_format);
    token_failed = error_count != errors_before;
    format_failed = format_failed || token_failed;
    if (!format_failed && curr_token != tok_eos) {
        format_end = std::copy_n(token_text, token_length, format_end);
    }
}

// Reports what is wrong with the syntax and goes on behind it.
void format_syntax_error(error_code code, source_pos position) {
    const bool at_end = curr_token == tok_eos;
    error_pos = position;
    syntax_error(code);
    format_failed = true;
    end_unknown = end_unknown || (curr_token == tok_eos && !at_end);
}

void format_error(error_code code, source_pos position) {
    error_at(code, position);
    format_failed = true;
}

bool at_letter(char letter) { return curr_token == tok_letter && token_text[0] == letter; }

// ---- numbers

std::int32_t last_number;
bool number_invalid; // it has been reported, and there is no value
bool number_signed;
source_pos number_pos; // of its digits
source_pos sign_pos;   // of its first character

// Whether a number is here, with or without a sign. Steps past it.
bool format_number() {
    const bool is_negative = curr_token == tok_minus;
    number_signed = is_negative || curr_token == tok_plus;
    number_invalid = false;
    sign_pos = curr_token_pos;
    if (number_signed) {
        format_token();
        if (curr_token != tok_integer) {
            format_error(msg_sign_is_not_allowed, sign_pos);
            number_invalid = true;
            return true;
        }
    }
    if (curr_token != tok_integer) {
        return false;
    }
    number_pos = curr_token_pos;
    if (has_value(curr_constant)) {
        last_number = is_negative ? -curr_constant.integer : curr_constant.integer;
    } else {
        number_invalid = true;
    }
    format_token();
    return true;
}

void refuse_number(error_code code, source_pos position) {
    format_error(code, position);
    number_invalid = true;
}

// That the number is a count: without a sign, and not zero.
void check_count() {
    if (number_invalid) {
        return;
    }
    if (number_signed) {
        refuse_number(msg_sign_is_not_allowed, sign_pos);
    } else if (last_number == 0) {
        refuse_number(msg_value_must_be_greater_than_zero, number_pos);
    }
}

bool format_count() {
    const bool found = format_number();
    if (found) {
        check_count();
    }
    return found;
}

bool format_decimals() {
    const bool found = format_number();
    if (found && number_signed && !number_invalid) {
        refuse_number(msg_sign_is_not_allowed, sign_pos);
    }
    return found;
}

// ---- descriptors

// One item of the list, while it is read.
struct format_item {
    bool no_scale;  // no scale factor may stand before it
    bool no_repeat; // no repeat count may stand before it
    bool scaled;
    bool scale_missing; // a P without its number, which has been reported
    bool repeated;
    error_code code; // what is wrong with the descriptor
    source_pos code_pos;
    source_pos scale_pos;
    source_pos repeat_pos;
};

// Notes what is missing at the current token. False, for the caller to return.
bool fail_item(format_item &item, error_code code) {
    item.code = code;
    item.code_pos = curr_token_pos;
    return false;
}

// w or w.d. False if it is incomplete.
bool edit_width(bool require_dot, format_item &item) {
    if (!format_count()) {
        return fail_item(item, msg_expected_integer_constant);
    }
    const std::int32_t width = last_number;
    const bool has_width = !number_invalid;
    const source_pos width_pos = number_pos;
    if (curr_token != tok_period) {
        return require_dot ? fail_item(item, msg_expected_period) : true;
    }
    format_token();
    if (!format_decimals()) {
        return fail_item(item, msg_expected_integer_constant);
    }
    if (has_width && !number_invalid && width < last_number) {
        warning_at(msg_value_exceeds_field_width, width_pos);
    }
    return true;
}

// A count that must be there.
void required_count(format_item &item) {
    if (!format_count()) {
        fail_item(item, msg_expected_integer_constant);
    }
}

// w.d and an optional Ee.
void edit_exponent(format_item &item) {
    if (edit_width(true, item) && at_letter('E')) {
        format_token();
        required_count(item);
    }
}

void edit_b(format_item &item) {
    item.no_scale = true;
    if (at_letter('N') || at_letter('Z')) {
        item.no_repeat = true;
        format_token();
    } else {
        edit_width(false, item);
    }
}

void edit_e(format_item &item) {
    if (at_letter('N') || at_letter('S')) {
        format_token();
    } else if (curr_token == tok_letter) {
        fail_item(item, msg_invalid_format_edit_descriptor);
        return;
    }
    edit_exponent(item);
}

void edit_s(format_item &item) {
    item.no_scale = item.no_repeat = true;
    if (at_letter('P') || at_letter('S')) {
        format_token();
    } else if (curr_token == tok_letter) {
        fail_item(item, msg_invalid_format_edit_descriptor);
    }
}

void edit_t(format_item &item) {
    item.no_scale = item.no_repeat = true;
    if (at_letter('L') || at_letter('R')) {
        format_token();
    } else if (curr_token == tok_letter) {
        item.no_repeat = false;
        fail_item(item, msg_invalid_format_edit_descriptor);
        return;
    }
    required_count(item);
}

void parse_letter(format_item &item) {
    const source_pos position = curr_token_pos;
    const char letter = token_text[0];
    format_token();
    switch (letter) {
    case 'A':
        item.no_scale = true;
        format_count();
        break;
    case 'B': edit_b(item); break;
    case 'D':
    case 'F': edit_width(true, item); break;
    case 'E': edit_e(item); break;
    case 'G': edit_exponent(item); break;
    case 'I':
    case 'O':
    case 'Z':
        item.no_scale = true;
        edit_width(false, item);
        break;
    case 'L':
        item.no_scale = true;
        required_count(item);
        break;
    case 'S': edit_s(item); break;
    case 'T': edit_t(item); break;
    case 'X':
        item.no_scale = true;
        if (!item.repeated) { // the count of X stands before it
            item.code = msg_missing_integer_constant;
            item.code_pos = position;
        }
        break;
    default:
        item.code = msg_invalid_format_edit_descriptor;
        item.code_pos = position;
        break;
    }
}

// ---- the list

bool at_colon() { return curr_token == tok_colon || curr_token == tok_double_colon; }

// What stands before a descriptor: a scale factor, a repeat count, or both in this order.
void parse_counts(format_item &item) {
    item.scale_pos = item.repeat_pos = curr_token_pos;
    if (format_number()) {
        if (!at_letter('P')) {
            check_count();
            item.repeated = true;
            return;
        }
    } else if (at_letter('P')) {
        format_error(msg_missing_integer_constant, curr_token_pos);
        item.scale_missing = true;
    } else {
        return;
    }
    item.scaled = true;
    format_token();
    item.repeat_pos = curr_token_pos;
    item.repeated = format_count();
}

// What is no descriptor: right only behind a scale factor that stands alone.
void parse_nothing(format_item &item) {
    if (item.repeated) {
        if (!number_invalid) {
            item.code = msg_expected_format_edit_descriptor;
            item.code_pos = item.repeat_pos;
        }
    } else if (!item.scale_missing && (!item.scaled || curr_token != tok_comma)) {
        fail_item(item, msg_expected_format_edit_descriptor);
    }
}

void parse_text(format_item &item) {
    item.no_scale = item.no_repeat = true;
    if (token_failed) {
        end_unknown = true;
        skip_to_eos(); // where the text was to end is not clear
        return;
    }
    if (curr_token == tok_hollerith) {
        warning(msg_hollerith_constants_are_obsolescent);
    }
    format_token();
}

void parse_descriptor(format_item &item) {
    switch (curr_token) {
    case tok_letter: parse_letter(item); break;
    case tok_hollerith:
    case tok_character: parse_text(item); break;
    case tok_slash: item.no_scale = true; break; // it is taken as what separates items
    case tok_colon:
    case tok_double_colon: item.no_scale = item.no_repeat = true; break;
    default: parse_nothing(item); break;
    }
}

void report_item(const format_item &item) {
    if (item.scaled && item.no_scale) {
        format_error(msg_scale_factor_is_not_allowed, item.scale_pos);
    }
    if (item.repeated && item.no_repeat) {
        format_error(msg_repeat_count_is_not_allowed, item.repeat_pos);
    }
    if (item.code != error_code{}) {
        format_syntax_error(item.code, item.code_pos);
    }
}

bool at_separator() {
    return curr_token == tok_comma || curr_token == tok_rparen || curr_token == tok_slash || at_colon() ||
           curr_token == tok_eos;
}

// Behind an item: goes on to the next one, closing groups. False at the end of the outermost list.
bool next_item(int &open_groups) {
    for (;;) {
        if (!at_separator()) {
            format_syntax_error(msg_expected_comma, curr_token_pos);
        }
        if (curr_token == tok_slash || at_colon()) {
            format_token();
        }
        if (curr_token == tok_eos || (curr_token == tok_rparen && open_groups == 0)) {
            return false;
        }
        if (curr_token != tok_rparen) {
            break;
        }
        --open_groups;
        format_token();
    }
    if (curr_token == tok_comma) {
        format_token();
    }
    return true;
}

// Items up to the ")" that closes the list. Groups are lists within: all there is to know of the lists around
// an item is their number.
void parse_format_list() {
    const stop_at stops{tok_comma, tok_rparen, tok_slash, tok_colon};
    int open_groups = 0;
    for (;;) {
        format_item item{};
        parse_counts(item);
        if (curr_token == tok_lparen) {
            item.no_scale = true;
            report_item(item);
            ++open_groups;
            format_token();
            continue;
        }
        parse_descriptor(item);
        report_item(item);
        if (!next_item(open_groups)) {
            return;
        }
    }
}

constant *format_constant(source_pos position) {
    if (format_failed) {
        constant *error_constant = new_constant();
        error_constant->source_pos = position;
        return error_constant;
    }
    const auto length = static_cast<std::int32_t>(format_end - format_buffer);
    fold_value value = new_fold_value(ck_value);
    value.source_pos = position;
    value.type = default_character(length);
    std::memcpy(new_fold_text(value, length), format_buffer, static_cast<std::size_t>(length));
    return store_fold_value(value);
}

} // namespace

bool stmt_format() {
    format_end = format_buffer;
    format_failed = end_unknown = false;
    format_token();
    const source_pos position = curr_token_pos;
    if (curr_token == tok_lparen) {
        format_token();
        if (curr_token != tok_rparen) {
            parse_format_list();
        }
        if (!end_unknown && !accept_token(tok_rparen, msg_expected_rparen, 0)) {
            format_failed = true;
        }
    } else {
        syntax_error(msg_expected_lparen);
        format_failed = true;
    }
    if (curr_label_symbol) {
        entity_as<label>(curr_label_symbol)->format_constant = hash_constant(format_constant(position));
    }
    return !format_failed;
}

} // namespace zf90
