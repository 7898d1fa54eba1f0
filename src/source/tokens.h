// The tokenizer. `next_token` reads the next token of the statement from `line_cursor`; the bits of its mode
// say what the grammar accepts at that place, since no word is reserved and blanks mean nothing in fixed
// form. There is no queue of tokens: a caller rewinds by putting `line_cursor` back and reads again, perhaps
// in another mode. Errors are reported here and still give a token, so that no statement ends in the
// tokenizer.
#pragma once

#include "source/lines.h"

namespace zf90 {

struct fold_value; // constants/arithmetic.h

// Token codes. The codes of words and operators are also the `token_code` of their atoms.
enum token_kind : std::uint8_t {
    tok_name = 0,    // `curr_name`
    tok_name_eq = 1, // a name and "=" (lex_keyword_arg)
    tok_integer = 2, // literals: the value is in `curr_constant`
    tok_real = 3,
    tok_character = 4,
    tok_logical = 5,
    tok_hollerith = 6,   // `token_text` has the count, the H and the characters; no constant
    tok_boz = 7,         // value in `curr_constant`
    tok_label = 8,       // the digits of a label, or a construct name with a colon behind it: `curr_name`
    tok_letter = 9,      // one letter, in upper case (lex_letter)
    tok_defined_op = 10, // a dotted word that is no known operator: `curr_name`, its dots included
    tok_lparen = 11,
    tok_rparen = 12,
    tok_array_open = 13,  // "(/"
    tok_array_close = 14, // "/)"
    tok_colon = 15,
    tok_double_colon = 16,
    tok_comma = 17,
    tok_period = 18,
    tok_percent = 19,
    tok_arrow = 20, // "=>"
    // End of statement: `token_text` begins with ";" if another one follows on the line, else it is empty.
    tok_eos = 21,
#define OPERATOR(code, spelling, name) tok_##name = code,
#define KEYWORD(code, word, name) tok_kw_##name = code,
#define KEYWORD_PIECE(code, word, name) tok_kw_##name = code,
#define SPECIFIER(code, word, name) tok_spec_##name = code,
#include "source/keywords.def"
    tok_none = 184, // no token: a bad character, an unterminated literal while peeking, between statements
    token_count
};

inline constexpr token_kind first_operator_token = tok_power;
inline constexpr token_kind last_operator_token = tok_assign;

// Whether the name of a generic set with this token code is that of an operator or of the assignment.
inline bool is_operator_code(int code) {
    return code == tok_defined_op || (code >= first_operator_token && code <= last_operator_token);
}

// Mode bits, in any combination. 0 is the plain mode inside expressions.
enum lex_mode : std::uint32_t {
    lex_peek = 0x1,    // no diagnostics, no atoms, no conversion of literals; else the same, lines included
    lex_keyword = 0x2, // a word may be a keyword
    lex_label = 0x4,   // a digit string is a label
    lex_lone_slash = 0x8,       // "/" is always tok_slash
    lex_lone_star = 0x10,       // "*" is always tok_star
    lex_letter = 0x20,          // a letter is tok_letter, whatever follows
    lex_lone_period = 0x40,     // "." is always tok_period
    lex_plain_digits = 0x80,    // a digit string takes no period and no exponent; no number begins with "."
    lex_no_hollerith = 0x100,   // an H ends the digits before it
    lex_specifier = 0x200,      // a word with "=" may be a specifier
    lex_no_kind_string = 0x400, // name_'...' is no literal
    lex_construct_name = 0x800, // a name with ":" behind it is tok_label; the colon stays unread
    lex_lone_lparen = 0x1000,   // "(" is always tok_lparen
    lex_lone_slash_rparen = 0x2000, // "/)" is tok_slash and tok_rparen
    lex_keyword_arg = 0x4000,       // a name with "=" is tok_name_eq
    lex_no_kind_suffix = 0x8000,    // "_" ends a number
    lex_signed = 0x10000,           // "-" before a number is part of the literal: where an operand begins
};

// Combinations with a name.
inline constexpr std::uint32_t lex_label_digits = lex_label | lex_plain_digits | lex_no_hollerith; // 388
inline constexpr std::uint32_t lex_format = lex_no_kind_suffix | lex_lone_slash_rparen | lex_lone_lparen |
                                            lex_plain_digits | lex_lone_period | lex_letter |
                                            lex_lone_slash; // FORMAT descriptors
static_assert(lex_label_digits == 388 && lex_format == 45288);

// ---- the current token; only the tokenizer writes these, but for a caller's restoring of what it saved

extern char *token_start;         // where its text begins in stmt_buffer
extern token_kind curr_token;     // the statement loop stores tok_none between statements
extern source_pos curr_token_pos; // every read also copies it to `error_pos`

// The text of the token without the blanks, line ends and comments within it, NUL-terminated: names in upper
// case (outside of peek mode, and unless -U), literals as written but for a capital exponent letter. It lasts
// until the next read.
extern char token_text[stmt_buffer_size + 1];
extern int token_length;

// The last name, label or operator read outside of peek mode. While peeking only the position changes. An
// operator has the atom of its sign, whether written "<" or ".LT.".
extern name_locator curr_name;

// The value of the last literal read outside of peek mode, in the form of folding: of kind ck_error after a
// literal that had an error reported. It becomes an entry of the IL with store_fold_value.
extern fold_value curr_constant;

// Once at the start of a compilation, after the command line is known and the atom table is seeded: the
// tables of characters, the reader's and the tokenizer's state.
void lexer_init();

// Reads a token in a mode of the bits above, and stores it in `curr_token`.
token_kind next_token(std::uint32_t mode);

// Puts the cursor back to the start of the current token.
void lex_rewind_token();

// Moves the cursor over blanks, comments and line ends to the first character of the next token.
void skip_to_token();

// Which of up to three tokens comes first at depth 0 in the rest of the statement: 1, 2 or 3, or 0 for none
// before its end or an unmatched ")". tok_none stands for "no more". Peeks, and does not restore the cursor.
int lookahead_find(token_kind t1, token_kind t2 = tok_none, token_kind t3 = tok_none);

// Whether the token comes at depth 0 in the rest of the statement, or behind its next token. Restores
// everything but `token_text`, which it empties.
bool lookahead_find_at_depth(token_kind token, bool skip_first);

// From a current "(": peeks up to the parenthesis that matches it, which becomes the current token,
// or to the end of the statement. From any other token: to the next name outside of parentheses.
void skip_balanced();

// The name of a token as an enumerator, for tests and dumps.
const char *token_name(unsigned token);

} // namespace zf90
