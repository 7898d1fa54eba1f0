// The tokens of a source as text, one a line: what the tool print_tokens prints and the *.tokens files of
// this folder expect.
//
//     LINE:COLUMN NAME TEXT = VALUE TYPE
//
// TEXT is that of the token, in upper case where the tokenizer folds it; VALUE and TYPE are those of a
// literal
// ("error" after a message). A name, label or operator whose atom is not the text is followed by "-> ATOM".
#pragma once

#include "constants/arithmetic.h"
#include "il/types.h"
#include "source/tokens.h"

#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

namespace zf90 {

// Mode bits from their names without "lex_", separated by commas, or from a number. All ones for an unknown
// name.
inline std::uint32_t parse_lex_mode(std::string_view text) {
    static constexpr std::string_view names[] = {
        "peek",           "keyword",        "label",        "lone_slash",        "lone_star",
        "letter",         "lone_period",    "plain_digits", "no_hollerith",      "specifier",
        "no_kind_string", "construct_name", "lone_lparen",  "lone_slash_rparen", "keyword_arg",
        "no_kind_suffix", "signed"};
    std::uint32_t mode = 0;
    while (!text.empty()) {
        const std::string_view word = text.substr(0, text.find(','));
        text.remove_prefix(std::min(text.size(), word.size() + 1));
        std::uint32_t bit = 1;
        std::size_t i = 0;
        while (i < std::size(names) && names[i] != word) {
            bit <<= 1;
            ++i;
        }
        if (i < std::size(names)) {
            mode |= bit;
        } else if (word.find_first_not_of("0123456789") == word.npos) {
            mode |= static_cast<std::uint32_t>(std::strtoul(std::string(word).c_str(), nullptr, 10));
        } else {
            return ~std::uint32_t{0};
        }
    }
    return mode;
}

inline std::string literal_value_text() {
    const fold_value &v = curr_constant;
    if (!has_value(v)) {
        return "error";
    }
    const std::uint32_t kind = v.type->kind;
    const auto with_kind = [kind](const std::string &value, const char *type_class) {
        return value + " " + type_class + std::to_string(kind);
    };
    char buffer[40];
    switch (v.type->type_code) {
    case tk_integer: return with_kind(std::to_string(v.integer), "int");
    case tk_logical: return with_kind(std::to_string(v.integer), "log");
    case tk_float: std::snprintf(buffer, sizeof buffer, "%.17g", v.real); return with_kind(buffer, "real");
    case tk_fcharacter: {
        const auto length = static_cast<std::size_t>(constant_length(v.type));
        return "<" + std::string(reinterpret_cast<const char *>(fold_text(v)), length) + "> char(" +
               std::to_string(length) + ")";
    }
    default: return "bad type";
    }
}

// The current token, just read in the mode.
inline std::string token_line(std::uint32_t mode) {
    std::string line = std::to_string(curr_token_pos.seq) + ":" + std::to_string(curr_token_pos.column) +
                       " " + token_name(curr_token);
    if (token_length > 0) {
        line += " ";
        line += token_text;
    }
    if (mode & lex_peek) {
        return line;
    }
    switch (curr_token) {
    case tok_integer:
    case tok_real:
    case tok_character:
    case tok_logical:
    case tok_boz: return line + " = " + literal_value_text();
    case tok_name:
    case tok_name_eq:
    case tok_label:
    case tok_defined_op: break;
    default:
        if (curr_token < first_operator_token || curr_token > last_operator_token) {
            return line;
        }
    }
    const std::string_view spelling = curr_name.atom ? curr_name.atom->spelling : "(none)";
    if (spelling != token_text || curr_name.position != curr_token_pos) {
        line += " -> ";
        line += spelling;
    }
    return line;
}

// The tokens of the open source, each line by itself: the n-th of a statement in the n-th mode, those beyond
// in the last one. A statement behind a ";" begins with the first mode again.
inline std::string list_tokens(std::span<const std::uint32_t> modes) {
    std::string listing;
    while (next_statement()) {
        do {
            for (std::size_t i = 0;; ++i) {
                const std::uint32_t mode = modes[std::min(i, modes.size() - 1)];
                next_token(mode);
                listing += token_line(mode) + "\n";
                if (curr_token == tok_eos) {
                    break;
                }
            }
        } while (token_length > 0);
    }
    return listing;
}

} // namespace zf90
