// How `line_cursor` moves over the characters of a statement. The three steps differ in what they pass over
// unseen: blanks, line ends and comments between tokens and, in fixed form, also within them; only line ends
// in character literals. Private to the tokenizer (tokens, literals, keywords).
#pragma once

#include "source/tokens.h"

#include <array>

namespace zf90 {

enum char_class_code : std::uint8_t {
    cc_end,    // NUL: the end of the text of a line
    cc_letter, // other letters than those of the next three
    cc_de,
    cc_boz,
    cc_h,
    cc_underscore,
    cc_digit,
    cc_comma,
    cc_period,
    cc_colon,
    cc_semicolon,
    cc_percent,
    cc_apostrophe,
    cc_quote,
    cc_lparen,
    cc_rparen,
    cc_plus,
    cc_minus,
    cc_star,
    cc_slash,
    cc_less,
    cc_equals,
    cc_greater,
    cc_blank, // blank and tab
    cc_other  // whatever has no meaning, and all bytes above 127
};

consteval std::array<char_class_code, 256> make_char_classes() {
    std::array<char_class_code, 256> table{};
    table.fill(cc_other);
    table[0] = cc_end;
    const auto put = [&table](const char *characters, char_class_code code) {
        for (; *characters; ++characters) {
            table[static_cast<unsigned char>(*characters)] = code;
        }
    };
    put("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz", cc_letter);
    put("DEde", cc_de);
    put("BOZboz", cc_boz);
    put("Hh", cc_h);
    put("_", cc_underscore);
    put("0123456789", cc_digit);
    put(",", cc_comma);
    put(".", cc_period);
    put(":", cc_colon);
    put(";", cc_semicolon);
    put("%", cc_percent);
    put("'", cc_apostrophe);
    put("\"", cc_quote);
    put("(", cc_lparen);
    put(")", cc_rparen);
    put("+", cc_plus);
    put("-", cc_minus);
    put("*", cc_star);
    put("/", cc_slash);
    put("<", cc_less);
    put("=", cc_equals);
    put(">", cc_greater);
    put(" \t", cc_blank);
    return table;
}

inline constexpr std::array<char_class_code, 256> char_class = make_char_classes();

inline char_class_code class_of(char c) { return char_class[static_cast<unsigned char>(c)]; }
inline bool is_letter(char_class_code c) { return c >= cc_letter && c <= cc_h; }
inline bool is_word_part(char_class_code c) { return c >= cc_letter && c <= cc_digit; }
inline bool is_string_quote(char_class_code c) { return c == cc_apostrophe || c == cc_quote; }

// Nonzero for the characters at which a step must do more than advance. It depends on the source form, and
// holds the lower-case letters until the warning about them has been given. (stepping.cpp)
extern std::array<std::uint8_t, 256> char_attention;

inline bool needs_attention(char c) { return char_attention[static_cast<unsigned char>(c)] != 0; }

// Sets the table up for the source form and the language level.
void stepping_init();

// From any character to the first of the next token, or to the end of the statement.
void skip_between_tokens();

// What is done on arrival at a character with attention within a token: steps on over what is no part of it.
void attend_in_token();

// What is done on arrival at a line's end or an "&" within a character or Hollerith literal.
void attend_in_string();

// To the next character of a token that is no string; a character that ends the token is left for the next
// one.
inline void step_in_token() {
    ++line_cursor;
    if (needs_attention(*line_cursor)) {
        attend_in_token();
    }
}

// To the next character of a literal's text.
inline void step_in_string() {
    ++line_cursor;
    if (*line_cursor == '\0' || *line_cursor == '&') {
        attend_in_string();
    }
}

// Peeks for its lifetime.
struct peeking_scope {
    bool saved = lex_peeking;
    peeking_scope() { lex_peeking = true; }
    ~peeking_scope() { lex_peeking = saved; }
    peeking_scope(const peeking_scope &) = delete;
    peeking_scope &operator=(const peeking_scope &) = delete;
};

// The character that a step within a token would lead to.
char following_character();

// ---- the text of the token being read

extern char *text_end; // the next free place in token_text

inline void put_in_text(char c) { *text_end++ = c; }

// Takes the current character into the token and steps on.
inline void take_character() {
    put_in_text(*line_cursor);
    step_in_token();
}

// Takes characters into the token as long as they are letters, digits and underscores. This is where most of
// the text of a program passes, so it keeps its pointers at hand.
inline void take_word() {
    for (;;) {
        char *from = line_cursor;
        char *to = text_end;
        while (is_word_part(class_of(*from)) && !needs_attention(*from)) {
            *to++ = *from++;
        }
        line_cursor = from;
        text_end = to;
        if (!needs_attention(*from)) {
            return;
        }
        attend_in_token();
        if (!is_word_part(class_of(*line_cursor))) {
            return;
        }
        take_character();
    }
}

} // namespace zf90
