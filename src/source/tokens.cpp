// The state machine of next_token for words, operators and punctuation; what looks ahead in a statement; and
// the state of the current token.
#include "source/tokens.h"

#include "declarations/symbols.h"
#include "driver/options.h"
#include "source/files.h"
#include "source/keywords.h"
#include "source/literals.h"
#include "source/stepping.h"
#include "source/token_helpers.h"

#include <algorithm>
#include <array>

namespace zf90 {

bool lex_peeking;
char *token_start;
token_kind curr_token;
source_pos curr_token_pos;
char token_text[stmt_buffer_size + 1];
int token_length;
name_locator curr_name;

namespace {

// The spelling by which an operator token is known, whichever way it was written, and its atom.
constexpr const char *operator_spellings[] = {
#define OPERATOR(code, spelling, name) spelling,
#include "source/keywords.def"
};
constexpr std::size_t operator_count = std::size(operator_spellings);
static_assert(operator_count == last_operator_token - first_operator_token + 1);

atom *operator_atoms[operator_count];

token_kind operator_token(token_kind token) {
    curr_name.position = curr_token_pos;
    if (!lex_peeking) {
        curr_name.atom = operator_atoms[token - first_operator_token];
    }
    return token;
}

// Makes the token's text the current name.
token_kind name_token(token_kind token) {
    curr_name.position = curr_token_pos;
    if (!lex_peeking) {
        if (!case_sensitive_names) {
            std::transform(token_text, text_end, token_text, char_fold);
        }
        intern_name(token_text, static_cast<std::size_t>(text_end - token_text), curr_name.atom);
    }
    return token;
}

token_kind lookup_text() {
    return lookup_keyword(token_text, static_cast<std::size_t>(text_end - token_text));
}

token_kind take_as(token_kind token) {
    take_character();
    return token;
}

// Takes the current character as the second of a sign.
token_kind take_as_operator(token_kind token) {
    take_character();
    return operator_token(token);
}

token_kind bad_token() {
    if (!lex_peeking) {
        error_at(msg_unrecognized_token, curr_token_pos);
    }
    return tok_none;
}

// A mark that decides what a word is may stand behind blanks and an "&" in free form: moves the cursor there
// if it does, and leaves it where it is otherwise.
void find_mark_behind_word() {
    if (*line_cursor != ' ' && *line_cursor != '\t' && *line_cursor != '&') {
        return;
    }
    char *const end_of_word = line_cursor;
    bool found;
    {
        const peeking_scope peeking;
        skip_between_tokens();
        found = *line_cursor == '=' || *line_cursor == ':';
    }
    line_cursor = end_of_word;
    if (found) {
        skip_between_tokens(); // again, to report what there is to report
    }
}

// At an "=" that is a token of its own.
bool at_lone_equals() {
    if (*line_cursor != '=') {
        return false;
    }
    const char next = following_character();
    return next != '=' && next != '>';
}

token_kind end_word(std::uint32_t mode) {
    if (mode & (lex_specifier | lex_keyword_arg | lex_construct_name)) {
        find_mark_behind_word();
        if ((mode & lex_construct_name) && *line_cursor == ':') {
            return name_token(tok_label);
        }
        if ((mode & (lex_specifier | lex_keyword_arg)) && at_lone_equals()) {
            if (mode & lex_specifier) {
                take_character();
                if (const token_kind specifier = lookup_text(); specifier != tok_name) {
                    return specifier;
                }
                --text_end; // no specifier: a name, and the "=" is gone
            } else {
                step_in_token();
                return name_token(tok_name_eq);
            }
        }
    }
    if ((mode & lex_keyword) && !fixed_form_input) {
        if (const token_kind keyword = lookup_text(); keyword != tok_name) {
            return keyword;
        }
    }
    return name_token(tok_name);
}

token_kind scan_word(std::uint32_t mode) {
    const char_class_code first = class_of(*line_cursor);
    if (mode & lex_letter) {
        put_in_text(char_fold(*line_cursor));
        step_in_token();
        return tok_letter;
    }
    if ((mode & lex_keyword) && fixed_form_input) {
        if (const token_kind keyword = fixed_keyword(); keyword != tok_name) {
            return keyword;
        }
    }
    take_character();
    if (first == cc_boz && is_string_quote(class_of(*line_cursor))) {
        return scan_boz();
    }
    take_word();
    if (text_end[-1] == '_' && is_string_quote(class_of(*line_cursor)) && !(mode & lex_no_kind_string)) {
        return scan_string_of_kind(text_end - 1);
    }
    return end_word(mode);
}

// Behind the first ";". The text begins with it only if something follows.
token_kind scan_semicolons() {
    take_character();
    while (class_of(*line_cursor) == cc_semicolon || class_of(*line_cursor) == cc_blank) {
        step_in_token();
    }
    if (class_of(*line_cursor) == cc_end) {
        text_end = token_text;
    }
    return tok_eos;
}

// A dotted word must not be torn: ". FOO." is no operator, and gets a message of its own.
bool letter_behind_blanks() {
    const char *p = line_cursor;
    while (*p == ' ' || *p == '\t') {
        ++p;
    }
    return p != line_cursor && is_letter(class_of(*p));
}

token_kind scan_dotted(std::uint32_t mode) {
    take_character();
    const char_class_code next = class_of(*line_cursor);
    if (next == cc_digit && !(mode & (lex_lone_period | lex_plain_digits))) {
        return scan_fraction(mode);
    }
    if (!is_letter(next) || (mode & lex_lone_period)) {
        return !(mode & lex_lone_period) && letter_behind_blanks() ? bad_token() : tok_period;
    }
    take_word();
    if (class_of(*line_cursor) != cc_period) {
        return bad_token();
    }
    take_character();
    const token_kind token = lookup_text();
    if (token == tok_logical) {
        return scan_logical();
    }
    return token == tok_defined_op ? name_token(token) : operator_token(token);
}

// Behind a "-" that a number may follow, on the same line in free form.
token_kind scan_signed(std::uint32_t mode) {
    while (class_of(*line_cursor) == cc_blank) {
        step_in_token();
    }
    if (class_of(*line_cursor) == cc_digit) {
        return scan_digits(mode);
    }
    if (class_of(*line_cursor) == cc_period && !(mode & lex_plain_digits) &&
        class_of(following_character()) == cc_digit) {
        take_character();
        return scan_fraction(mode);
    }
    return operator_token(tok_minus);
}

token_kind scan_slash(std::uint32_t mode) {
    take_character();
    if (!(mode & lex_lone_slash)) {
        switch (class_of(*line_cursor)) {
        case cc_rparen:
            if (!(mode & lex_lone_slash_rparen)) {
                return take_as(tok_array_close);
            }
            break;
        case cc_slash: return take_as_operator(tok_concat);
        case cc_equals: return take_as_operator(tok_ne);
        default: break;
        }
    }
    return operator_token(tok_slash);
}

token_kind scan_token(std::uint32_t mode) {
    switch (class_of(*line_cursor)) {
    case cc_end: return tok_eos;
    case cc_letter:
    case cc_de:
    case cc_boz:
    case cc_h: return scan_word(mode);
    case cc_digit: return scan_digits(mode);
    case cc_comma: return take_as(tok_comma);
    case cc_period: return scan_dotted(mode);
    case cc_colon: take_character(); return *line_cursor == ':' ? take_as(tok_double_colon) : tok_colon;
    case cc_semicolon: return scan_semicolons();
    case cc_percent: return take_as(tok_percent);
    case cc_apostrophe:
    case cc_quote: return scan_string();
    case cc_lparen:
        take_character();
        return *line_cursor == '/' && !(mode & lex_lone_lparen) ? take_as(tok_array_open) : tok_lparen;
    case cc_rparen: return take_as(tok_rparen);
    case cc_plus: return take_as_operator(tok_plus);
    case cc_minus: take_character(); return mode & lex_signed ? scan_signed(mode) : operator_token(tok_minus);
    case cc_star:
        take_character();
        return *line_cursor == '*' && !(mode & lex_lone_star) ? take_as_operator(tok_power)
                                                              : operator_token(tok_star);
    case cc_slash: return scan_slash(mode);
    case cc_less:
        take_character();
        return *line_cursor == '=' ? take_as_operator(tok_le) : operator_token(tok_lt);
    case cc_equals:
        take_character();
        if (*line_cursor == '>') {
            return take_as(tok_arrow);
        }
        return *line_cursor == '=' ? take_as_operator(tok_eq) : operator_token(tok_assign);
    case cc_greater:
        take_character();
        return *line_cursor == '=' ? take_as_operator(tok_ge) : operator_token(tok_gt);
    case cc_underscore:
    case cc_blank:
    case cc_other: take_character(); return bad_token();
    }
    return tok_none;
}

// ---- looking ahead

// The character that a token is for the quick search of lookahead_find; NUL if it has none.
char quick_character(token_kind token) {
    switch (token) {
    case tok_assign: return '=';
    case tok_comma: return ',';
    case tok_colon: return ':';
    case tok_rparen: return ')';
    default: return '\0';
    }
}

constexpr int search_undecided = -1;

// The search by characters. It knows no literals: undecided at a character that may begin one.
int search_characters(const char *targets) {
    int depth = 0;
    for (;;) {
        if (needs_attention(*line_cursor)) {
            skip_between_tokens();
        }
        const char c = *line_cursor;
        switch (c) {
        case '\0':
        case ';': return 0;
        case '\'':
        case '"':
        case 'h':
        case 'H': return search_undecided;
        default: break;
        }
        step_in_token();
        switch (c) {
        case '(': ++depth; continue;
        case '/':
        case '<':
        case '>':
            // Of "/=", "<=" and ">=" the "=" is no token.
            if (*line_cursor == '=') {
                step_in_token();
            }
            continue;
        case '=':
            if (*line_cursor == '=' || *line_cursor == '>') {
                step_in_token();
                continue;
            }
            break;
        case ':':
            if (*line_cursor == ':') {
                step_in_token();
                continue;
            }
            break;
        case ',':
        case ')': break;
        default: continue;
        }
        if (depth == 0) {
            for (int i = 0; targets[i]; ++i) {
                if (c == targets[i]) {
                    return i + 1;
                }
            }
        }
        if (c == ')' && depth-- == 0) {
            return 0;
        }
    }
}

int search_tokens(const token_kind (&targets)[3]) {
    int depth = 0;
    for (;;) {
        const token_kind token = next_token(lex_peek);
        if (token == tok_eos) {
            return 0;
        }
        if (depth == 0 && token != tok_none) {
            for (int i = 0; i < 3; ++i) {
                if (token == targets[i]) {
                    return i + 1;
                }
            }
        }
        if (token == tok_lparen || token == tok_array_open) {
            ++depth;
        } else if (token == tok_rparen || token == tok_array_close) {
            if (depth-- == 0) {
                return 0;
            }
        }
    }
}

// That of the cursor, at once for a statement of one line.
source_pos position_of_token() {
    if (segment_count == 1) {
        const line_segment &line = line_segments[0];
        return {line.seq, static_cast<std::uint16_t>(line_cursor - line.base + 1)};
    }
    return position_of_cursor(line_cursor);
}

constexpr const char *token_names[] = {
    "name",         "name_eq", "integer",    "real",    "character", "logical",    "hollerith",   "boz",
    "label",        "letter",  "defined_op", "lparen",  "rparen",    "array_open", "array_close", "colon",
    "double_colon", "comma",   "period",     "percent", "arrow",     "eos",
#define OPERATOR(code, spelling, name) #name,
#include "source/keywords.def"
#define KEYWORD(code, word, name) "kw_" #name,
#define KEYWORD_PIECE(code, word, name) "kw_" #name,
#define SPECIFIER(code, word, name) "spec_" #name,
#include "source/keywords.def"
    "none",
};
static_assert(std::size(token_names) == token_count);

} // namespace

void lexer_init() {
    line_reader_init();
    source_files_init();
    stepping_init();
    literals_init();
    token_helpers_init();
    lex_peeking = false;
    token_start = line_cursor;
    curr_token = tok_none;
    curr_token_pos = null_pos;
    text_end = token_text;
    token_text[0] = '\0';
    token_length = 0;
    curr_name = {};
    for (std::size_t i = 0; i < operator_count; ++i) {
        intern_name(operator_spellings[i], operator_atoms[i]);
    }
}

token_kind next_token(std::uint32_t mode) {
    const bool was_peeking = lex_peeking;
    lex_peeking = (mode & lex_peek) != 0;
    while (*line_cursor == ' ') {
        ++line_cursor;
    }
    if (needs_attention(*line_cursor)) {
        skip_between_tokens();
    }
    token_start = line_cursor;
    curr_token_pos = position_of_token();
    text_end = token_text;
    curr_token = scan_token(mode);
    *text_end = '\0';
    token_length = static_cast<int>(text_end - token_text);
    error_pos = curr_token_pos;
    lex_peeking = was_peeking;
    return curr_token;
}

void lex_rewind_token() { line_cursor = token_start; }

void skip_to_token() { skip_between_tokens(); }

int lookahead_find(token_kind t1, token_kind t2, token_kind t3) {
    const token_kind tokens[] = {t1, t2, t3};
    char targets[4] = {};
    bool quick = true;
    for (int i = 0; i < 3 && tokens[i] != tok_none; ++i) {
        targets[i] = quick_character(tokens[i]);
        quick = quick && targets[i];
    }
    if (quick) {
        const peeking_scope peeking;
        char *const start = line_cursor;
        const int found = search_characters(targets);
        if (found != search_undecided) {
            return found;
        }
        line_cursor = start;
    }
    return search_tokens(tokens);
}

bool lookahead_find_at_depth(token_kind token, bool skip_first) {
    char *const saved_cursor = line_cursor;
    char *const saved_start = token_start;
    const token_kind saved_token = curr_token;
    const source_pos saved_token_pos = curr_token_pos;
    const source_pos saved_error_pos = error_pos;
    const source_pos saved_name_pos = curr_name.position;
    if (skip_first) {
        next_token(lex_peek);
    }
    const bool found = lookahead_find(token) != 0;
    line_cursor = saved_cursor;
    token_start = saved_start;
    curr_token = saved_token;
    curr_token_pos = saved_token_pos;
    error_pos = saved_error_pos;
    curr_name.position = saved_name_pos;
    text_end = token_text;
    token_text[0] = '\0';
    token_length = 0;
    return found;
}

void skip_balanced() {
    const bool to_name = curr_token != tok_lparen && curr_token != tok_array_open;
    int depth = to_name ? 0 : 1;
    for (;;) {
        switch (next_token(lex_peek)) {
        case tok_eos: return;
        case tok_lparen:
        case tok_array_open: ++depth; break;
        case tok_rparen:
        case tok_array_close:
            depth = std::max(depth - 1, 0);
            if (depth == 0 && !to_name) {
                return;
            }
            break;
        case tok_name:
            if (depth == 0 && to_name) {
                return;
            }
            break;
        default: break;
        }
    }
}

const char *token_name(unsigned token) { return token < token_count ? token_names[token] : "?"; }

} // namespace zf90
