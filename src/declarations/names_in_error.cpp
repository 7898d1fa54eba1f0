// Names of which the declaration is in error.
#include "declarations/names_in_error.h"

#include "declarations/declarations.h"
#include "declarations/implicit.h"
#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "il/types.h"
#include "source/token_helpers.h"
#include "source/tokens.h"
#include "statements/classify.h"
#include "statements/loop.h"
#include "statements/misspelt.h"

#include <string_view>

namespace zf90 {

void give_up_type(symbol *s) {
    switch (s->kind) {
    case sk_variable:
    case sk_dummy: entity_as<object>(s)->type = error_type(); break;
    case sk_undetermined:
    case sk_data_name:
    case sk_external_pending: s->entity = error_type(); break;
    default: break;
    }
    s->flags = (s->flags & ~std::uint32_t{sf_type_implicit}) | sf_typed | sf_inferred | sf_referenced;
    if (s->kind == sk_variable) {
        set_type(s, error_type(), true); // that of its function too, if it is a result
    }
}

namespace {

// Whether the current scope still takes declarations.
bool may_declare() { return in_type_def || (curr_scope_depth > 0 && !curr_row().spec_done); }

// Declares `curr_name`. `force`: even if it has a type.
void declare_current_name(bool force) {
    name_locator name = curr_name;
    symbol *s = lookup_at_depth(curr_scope_depth);
    if (s && (s->kind == sk_host_link || s->from_module)) {
        return;
    }
    if (s && (s->flags & sf_typed)) {
        if (force || !has_explicit_type(s)) {
            give_up_type(s);
        }
        return;
    }
    attribute_set set{};
    set[attr_typed] = true;
    set[attr_variable] = set[attr_component] = in_type_def;
    entity_type = error_type();
    entity_init = nullptr;
    give_up_type(apply_attributes(s, set, name));
}

// Whether the current token, which has been peeked at, is a name; it is read as one then.
bool read_peeked_name() {
    if (curr_token != tok_name) {
        return false;
    }
    lex_rewind_token();
    return next_token(0) == tok_name;
}

// Gives up the names from the current token on, which has been peeked at: those of a list, and those that a
// value follows. `all`: the brackets don't fit, so that a list may go on within them. `force`: names that
// have a type too.
void give_up_names(bool all, bool force) {
    int depth = 0;
    bool in_value = false;
    while (curr_token != tok_eos) {
        if (read_peeked_name()) {
            const name_locator name = curr_name;
            next_token(lex_peek);
            if (!in_value && (depth == 0 || all || curr_token == tok_assign)) {
                const name_locator following = curr_name;
                curr_name = name;
                declare_current_name(force);
                curr_name = following;
            }
            continue;
        }
        switch (curr_token) {
        case tok_lparen:
        case tok_array_open: ++depth; break;
        case tok_rparen:
        case tok_array_close: --depth; break;
        case tok_assign: in_value = true; break;
        case tok_comma: in_value = false; break;
        default: break;
        }
        next_token(lex_peek);
    }
}

// The words that begin a declaration. A name of which a type declaration is misspelt has no type yet.
struct declaration_word {
    std::string_view text;
    bool is_type;
};

constexpr declaration_word declaration_words[] = {
    {"ALLOCATABLE", false}, {"CHARACTER", true},       {"COMMON", false},    {"COMPLEX", true},
    {"DIMENSION", false},   {"DOUBLE", true},          {"EXTERNAL", false},  {"EQUIVALENCE", false},
    {"INTEGER", true},      {"INTENT", false},         {"INTRINSIC", false}, {"LOGICAL", true},
    {"NAMELIST", false},    {"OPTIONAL", false},       {"PARAMETER", false}, {"POINTER", false},
    {"REAL", true},         {"DOUBLEPRECISION", true}, {"TARGET", false},    {"TYPE", true},
};

// The word that the statement's first one was meant for, null if it is like none. Moves behind the first
// word.
const declaration_word *meant_word() {
    char word[longest_word];
    std::size_t length = 0;
    line_cursor = stmt_start;
    for (char c; c = char_fold(*line_cursor), c >= 'A' && c <= 'Z'; ++line_cursor) {
        if (length == longest_word) {
            return nullptr;
        }
        word[length++] = c;
    }
    for (const declaration_word &w : declaration_words) {
        if (length > 2 && word_distance({word, length}, w.text) <= 2) {
            return &w;
        }
    }
    return nullptr;
}

// Moves behind the "::" of the statement. False, with the end of the statement current, if there is none.
bool find_double_colon() {
    line_cursor = stmt_start;
    while (next_token(lex_peek) != tok_eos) {
        if (curr_token == tok_double_colon) {
            next_token(lex_peek);
            return true;
        }
    }
    return false;
}

bool ends_operand(token_kind token, token_kind before) {
    switch (token) {
    case tok_integer:
    case tok_name:
    case tok_rparen: return true;
    case tok_star: return before == tok_lparen || before == tok_assign; // an assumed length
    default: return false;
    }
}

// Moves to the first name, behind the type word, that follows an operand.
bool find_first_entity() {
    line_cursor = stmt_start;
    token_kind before = tok_none;
    token_kind last = tok_none;
    next_token(lex_peek);
    while (next_token(lex_peek | lex_lone_star) != tok_eos) {
        if (curr_token == tok_name && ends_operand(last, before)) {
            return true;
        }
        before = last;
        last = curr_token;
    }
    return false;
}

} // namespace

void declare_rest_in_error() {
    if (may_declare()) {
        give_up_names(false, false);
    }
}

void give_up_rest() {
    if (may_declare() && curr_token != tok_eos) {
        const saved_place place;
        lex_rewind_token();
        next_token(lex_peek);
        give_up_names(false, true);
    }
}

void give_up_statement() {
    if (may_declare()) {
        line_cursor = stmt_start;
        next_token(lex_peek);
        next_token(lex_peek);
        give_up_names(true, true);
    }
}

void give_up_misspelt_declaration() {
    if (!may_declare()) {
        return;
    }
    const bool has_word = char_fold(*stmt_start) >= 'A' && char_fold(*stmt_start) <= 'Z';
    const declaration_word *word = has_word ? meant_word() : nullptr;
    if (has_word && !word) {
        return;
    }
    char *const rest = line_cursor;
    if (!find_double_colon()) {
        if (!word) {
            return;
        }
        line_cursor = rest;
        next_token(lex_peek);
    }
    give_up_names(false, word && !word->is_type);
}

void declare_statement_in_error() {
    if (may_declare() && (find_double_colon() || find_first_entity())) {
        give_up_names(true, false);
    }
}

} // namespace zf90
