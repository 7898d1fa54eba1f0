// Asking for tokens, and recovery.
#include "source/token_helpers.h"

namespace zf90 {

std::array<std::uint16_t, token_count> stop_set;

static source_pos last_reported; // where the last syntax error was

void token_helpers_init() {
    stop_set.fill(0);
    last_reported = null_pos;
}

stop_at::stop_at(std::initializer_list<token_kind> tokens) {
    for (token_kind token : tokens) {
        tokens_[count_++] = token;
        ++stop_set[token];
    }
}

stop_at::~stop_at() {
    for (std::size_t i = 0; i < count_; ++i) {
        --stop_set[tokens_[i]];
    }
}

namespace {

// The mode in which the tokens that somebody waits for can be met.
std::uint32_t recovery_mode() {
    struct needed_mode {
        token_kind token;
        std::uint32_t mode;
    };
    static constexpr needed_mode needs[] = {
        {tok_integer, lex_plain_digits | lex_no_hollerith},
        {tok_label, lex_label},
        {tok_letter, lex_letter},
        {tok_period, lex_plain_digits},
        {tok_slash, lex_lone_slash},
        {tok_star, lex_lone_star},
    };
    std::uint32_t mode = 0;
    for (const needed_mode &need : needs) {
        if (stop_set[need.token] != 0) {
            mode |= need.mode;
        }
    }
    return mode;
}

} // namespace

saved_place::saved_place()
    : cursor_(line_cursor), token_start_(token_start), token_(curr_token), token_pos_(curr_token_pos),
      name_pos_(curr_name.position), error_pos_(error_pos) {}

saved_place::~saved_place() {
    if (!stays_) {
        line_cursor = cursor_;
        token_start = token_start_;
        curr_token = token_;
        curr_token_pos = token_pos_;
        curr_name.position = name_pos_;
        error_pos = error_pos_;
    }
}

char *past_blanks(char *p) {
    while (*p == ' ' || *p == '\t') {
        ++p;
    }
    return p;
}

void recover_tokens() {
    const std::uint32_t mode = recovery_mode();
    bool skipped = false;
    while (stop_set[curr_token] == 0 && curr_token != tok_eos) {
        if (curr_token == tok_lparen) {
            skip_balanced();
            if (curr_token == tok_eos) {
                break;
            }
        }
        next_token(mode | lex_peek);
        skipped = true;
    }
    if (skipped && curr_token != tok_eos) {
        // Peeking leaves out the value of the token.
        lex_rewind_token();
        next_token(mode);
    }
}

void report_syntax_error(error_code code) {
    if (curr_token != tok_none && !lines_run_together && error_pos != last_reported) {
        error(code);
        last_reported = error_pos;
    }
}

void syntax_error(error_code code) {
    report_syntax_error(code);
    recover_tokens();
}

bool skip_to_closing(token_kind token) {
    saved_place here;
    for (int depth = 0;; next_token(lex_peek)) {
        if (depth == 0 && curr_token == token) {
            lex_rewind_token();
            next_token(0);
            here.stay();
            return true;
        }
        if (curr_token == tok_lparen || curr_token == tok_array_open) {
            ++depth;
        } else if (curr_token == tok_eos ||
                   ((curr_token == tok_rparen || curr_token == tok_array_close) && depth-- == 0)) {
            return false;
        }
    }
}

bool expect_token(token_kind token, error_code code) {
    if (curr_token == token) {
        return true;
    }
    const stop_at stop({token});
    error_pos = curr_token_pos;
    syntax_error(code);
    return curr_token == token;
}

bool accept_token(token_kind token, error_code code, std::uint32_t mode) {
    if (!expect_token(token, code)) {
        return false;
    }
    next_token(mode);
    return true;
}

bool accept_opening(std::uint32_t mode) {
    if (curr_token != tok_lparen) {
        error_pos = curr_token_pos;
        report_syntax_error(msg_expected_lparen);
        return false;
    }
    next_token(mode);
    return true;
}

bool accept_closing(token_kind token, error_code code, std::uint32_t mode) {
    if (curr_token != token) {
        error_pos = curr_token_pos;
        report_syntax_error(code);
        if (!skip_to_closing(token)) {
            recover_tokens();
            return false;
        }
    }
    next_token(mode);
    return true;
}

bool accept_unless_end(token_kind token, error_code code, std::uint32_t mode) {
    return curr_token != tok_eos && accept_token(token, code, mode);
}

bool accept_optional(token_kind token, std::uint32_t mode) {
    if (curr_token != token) {
        error_pos = curr_token_pos;
        return false;
    }
    next_token(mode);
    return true;
}

} // namespace zf90
