// What the readers of statements share: asking for a token, and recovering after one that is missing. A
// reader that can go on at a token raises its count in `stop_set` for as long as it can; recovery skips to
// the first token that somebody waits for.
#pragma once

#include "source/tokens.h"

#include <array>
#include <initializer_list>

namespace zf90 {

// How many readers can go on at each token. The end of the statement always stops.
extern std::array<std::uint16_t, token_count> stop_set;

// Once at the start of a compilation. (lexer_init)
void token_helpers_init();

// Raises the counts of some tokens for the duration of a block.
class stop_at {
public:
    stop_at(std::initializer_list<token_kind> tokens);
    ~stop_at();
    stop_at(const stop_at &) = delete;
    stop_at &operator=(const stop_at &) = delete;

private:
    std::array<token_kind, 4> tokens_;
    std::size_t count_ = 0;
};

// Whether the current token is this one. If not, the error is reported at it and tokens are skipped; true if
// that ended at the token asked for.
bool expect_token(token_kind token, error_code code);

// The same, and reads the next token in the mode on success.
bool accept_token(token_kind token, error_code code, std::uint32_t mode);

// accept_token for a "(" that begins a part of the statement: another one later on is none of its own, so
// nothing is looked for.
bool accept_opening(std::uint32_t mode);

// accept_token, but false in silence at the end of the statement.
bool accept_unless_end(token_kind token, error_code code, std::uint32_t mode);

// If the current token is this one, reads the next in the mode. Otherwise `error_pos` is its position.
bool accept_optional(token_kind token, std::uint32_t mode);

// Reports an error at `error_pos`, unless the tokenizer has found fault with the token. A second error at one
// place is a consequence of the first, and is not reported.
void report_syntax_error(error_code code);

// The same, and recovers.
void syntax_error(error_code code);

// The place in the statement: goes back to it at the end of a block, unless told to stay. The text of the
// current token is not kept.
class saved_place {
public:
    saved_place();
    ~saved_place();
    saved_place(const saved_place &) = delete;
    saved_place &operator=(const saved_place &) = delete;
    void stay() { stays_ = true; }

private:
    char *cursor_;
    char *token_start_;
    token_kind token_;
    source_pos token_pos_;
    source_pos name_pos_;
    source_pos error_pos_;
    bool stays_ = false;
};

// Skips to a token of `stop_set`, past parentheses as a whole. What is skipped is not reported on.
void recover_tokens();

// accept_token for what closes a parenthesis: if it is missing, goes on behind the one that fits, if there is
// one.
bool accept_closing(token_kind token, error_code code, std::uint32_t mode);

// Past the blanks and tabs of a line.
char *past_blanks(char *p);

// Skips to the first `token` that closes nothing opened from the current token on. False, with nothing
// skipped, if there is none.
bool skip_to_closing(token_kind token);

} // namespace zf90
