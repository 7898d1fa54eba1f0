// Names of which the declaration is in error.
#include "declarations/names_in_error.h"

#include "declarations/declarations.h"
#include "declarations/implicit.h"
#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "il/types.h"
#include "source/tokens.h"
#include "statements/classify.h"
#include "statements/loop.h"

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

bool is_typed(const symbol *s) { return (s->flags & (sf_typed | sf_type_implicit)) == sf_typed; }

// Whether the current scope still takes declarations.
bool may_declare() { return in_type_def || (curr_scope_depth > 0 && !curr_row().spec_done); }

void declare_current_name() {
    name_locator name = curr_name;
    symbol *s = lookup_at_depth(curr_scope_depth);
    if (s && (is_typed(s) || s->kind == sk_host_link || s->from_module)) {
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

// Moves to the next comma that stands in no parentheses, or to the end of the statement.
void skip_entity() {
    for (int depth = 0; curr_token != tok_eos && (curr_token != tok_comma || depth > 0);
         next_token(lex_peek)) {
        if (curr_token == tok_lparen || curr_token == tok_array_open) {
            ++depth;
        } else if (curr_token == tok_rparen || curr_token == tok_array_close) {
            --depth;
        }
    }
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
    if (!may_declare()) {
        return;
    }
    for (;;) {
        if (read_peeked_name()) {
            declare_current_name();
        }
        skip_entity();
        if (curr_token == tok_eos) {
            return;
        }
        next_token(lex_peek);
    }
}

void declare_statement_in_error() {
    if (may_declare() && (find_double_colon() || find_first_entity())) {
        declare_rest_in_error();
    }
}

} // namespace zf90
