// Reading the values of DATA statements.
#include "declarations/data_values.h"

#include "constants/folding.h"
#include "declarations/implicit.h"
#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "expressions/check.h"
#include "expressions/parser.h"
#include "il/constants.h"
#include "il/entries.h"
#include "source/token_helpers.h"
#include "statements/loop.h"

#include <algorithm>

namespace zf90 {

namespace {

// A "/" always ends the list, and a number may have its sign.
constexpr std::uint32_t value_mode = lex_signed | lex_lone_slash;

void set_error_value(data_value &v, source_pos position) {
    v = {};
    clear_fold_value(v.value);
    v.value.source_pos = position;
}

// What the current name stands for: a named constant or a derived type. Null for anything else.
symbol *meaning_of_name() {
    symbol *s = lookup_resolved(curr_name.atom->first_symbol, curr_scope_depth);
    if (!s || s->name == error_atom) {
        return nullptr;
    }
    const bool is_constant = s->kind == sk_variable && entity_as<object>(s)->is_constant;
    return is_constant || s->kind == sk_derived_type ? s : nullptr;
}

void fold_tree(expr_node *tree, std::uint32_t flags, data_value &v) {
    const source_pos position = v.value.source_pos;
    if (!check_expression(tree, flags, curr_routine()) || !fold_expression(tree, v.value, false)) {
        clear_fold_value(v.value);
    }
    v.value.source_pos = position;
}

// The value of the named constant that is the current token, and the next token.
void read_named_constant(symbol *s, data_value &v) {
    set_error_value(v, curr_token_pos);
    note_use(use_referenced, s, curr_token_pos);
    expr_node *tree = new_expr_node(enk_object);
    tree->object = entity_as<object>(s);
    fold_tree(tree, 0, v);
    next_token(lex_lone_slash);
}

void read_structure(symbol *s, data_value &v) {
    const source_pos position = curr_token_pos;
    set_error_value(v, position);
    note_use(use_referenced, s, position);
    next_token(0);
    expr_node *tree = parse_actual_list(s, position);
    if (tree->node_kind != enk_error) {
        fold_tree(tree, ECF_INIT, v);
    }
}

// Whether the current name has been declared in error.
bool is_name_in_error() {
    const symbol *s = lookup_resolved(curr_name.atom->first_symbol, curr_scope_depth);
    const type *t = s ? type_of_symbol(s) : nullptr;
    return t && t->type_code == tk_error;
}

// Behind a name: whether it begins the next set, since the "/" in front of that is missing.
bool begins_next_set() {
    if (curr_token != tok_slash) {
        return curr_token == tok_percent;
    }
    const saved_place place;
    switch (next_token(lex_peek)) {
    case tok_eos:
    case tok_comma:
    case tok_name: return false;
    default: return true;
    }
}

// A name that stands for no value.
void read_bad_name(data_value &v) {
    set_error_value(v, curr_token_pos);
    if (!is_name_in_error()) {
        error_at(msg_expression_must_have_constant_value, curr_token_pos);
    }
    next_token(lex_lone_slash);
    if (curr_token == tok_lparen) {
        skip_balanced();
        next_token(lex_lone_slash);
    }
    if (begins_next_set()) {
        skip_to_eos();
    }
}

void read_complex(data_value &v) {
    set_error_value(v, curr_token_pos);
    if (const constant *c = parse_complex_constant()) {
        read_constant(c, v.value);
    }
}

// A literal that is the current token.
void read_literal(data_value &v) {
    v.value = curr_constant;
    v.value.source_pos = curr_token_pos;
    v.is_boz = curr_token == tok_boz;
    next_token(lex_lone_slash);
}

void negate(fold_value &value) {
    value.integer = static_cast<std::int32_t>(0u - static_cast<std::uint32_t>(value.integer));
    value.real = -value.real;
}

// A constant, from its first token. False if there is none, which has been reported.
bool read_unsigned_value(data_value &v, bool &takes_sign) {
    takes_sign = false;
    v = {};
    switch (curr_token) {
    case tok_name:
        if (symbol *s = meaning_of_name(); !s) {
            read_bad_name(v);
            takes_sign = true; // one message is enough
        } else if (s->kind == sk_derived_type) {
            read_structure(s, v);
        } else {
            read_named_constant(s, v);
        }
        return true;
    case tok_integer:
    case tok_real:
        takes_sign = true;
        read_literal(v);
        return true;
    case tok_logical:
    case tok_character:
    case tok_boz: read_literal(v); return true;
    case tok_lparen: read_complex(v); return true;
    default: expect_token(tok_none, msg_expected_constant); return false;
    }
}

// A constant with an optional sign.
bool read_value(data_value &v) {
    const source_pos position = curr_token_pos;
    const bool has_sign = curr_token == tok_plus || curr_token == tok_minus;
    const bool is_negative = curr_token == tok_minus;
    if (has_sign) {
        next_token(lex_lone_slash);
    }
    bool takes_sign = false;
    if (!read_unsigned_value(v, takes_sign)) {
        return false;
    }
    if (has_sign && !takes_sign) {
        error_at(msg_constant_must_have_arithmetic_type, position);
        clear_fold_value(v.value);
    } else if (is_negative) {
        negate(v.value);
    }
    return true;
}

// A repeat count, if a "*" follows, or a value already.
bool may_be_count(symbol *&named) {
    if (curr_token == tok_integer) {
        return !has_value(curr_constant) || curr_constant.integer > 0; // one that is too large may have a "*"
    }
    named = curr_token == tok_name ? meaning_of_name() : nullptr;
    return named && named->kind == sk_variable;
}

// The count that a value ahead of "*" stands for. False if it can't be one, which is reported.
bool count_of(const data_value &v, std::uint32_t &count) {
    if (!has_value(v.value)) {
        return false;
    }
    if (v.value.repr_kind != ck_value || v.value.type->type_code != tk_integer) {
        error_at(msg_repeat_count_must_have_integer_type, v.value.source_pos);
        return false;
    }
    if (v.value.integer < 0) {
        error_at(msg_repeat_count_must_not_be_negative, v.value.source_pos);
        return false;
    }
    count = static_cast<std::uint32_t>(v.value.integer);
    return true;
}

// An optional repeat count and a constant. False after an error that leaves the number of values open.
bool next_data_value(std::uint32_t &count, data_value &v) {
    count = 1;
    symbol *named = nullptr;
    if (!may_be_count(named)) {
        const bool good = read_value(v);
        if (!good || curr_token != tok_star || has_value(v.value)) {
            return good;
        }
        next_token(value_mode); // a count that could not be read
        read_value(v);
        return false;
    }
    if (named) {
        read_named_constant(named, v);
    } else {
        v = {};
        read_literal(v);
    }
    if (curr_token != tok_star) {
        return true;
    }
    const bool good = count_of(v, count);
    next_token(value_mode);
    return read_value(v) && good;
}

void read_next(data_value_queue &queue) {
    if (!next_data_value(queue.remaining, queue.current) || !has_value(queue.current.value)) {
        queue.at_end = true;
        queue.remaining = 0;
    }
}

} // namespace

void note_reported_value(data_value_queue &queue) { queue.current.is_reported = true; }

namespace {

bool at_list_end() { return curr_token == tok_slash || curr_token == tok_eos; }

} // namespace

void start_data_values(data_value_queue &queue) {
    queue = {};
    read_next(queue);
}

std::uint32_t take_data_values(data_value_queue &queue, data_value &value, std::uint32_t max) {
    while (queue.remaining == 0 && !queue.at_end) {
        if (curr_token == tok_slash) {
            return 0;
        }
        const std::uint32_t errors_before = error_count;
        if (curr_token == tok_eos || !accept_token(tok_comma, msg_expected_comma, value_mode) ||
            error_count != errors_before) {
            queue.at_end = true;
            return 0;
        }
        read_next(queue);
    }
    const std::uint32_t count = std::min(max, queue.remaining);
    value = queue.current;
    queue.remaining -= count;
    return count;
}

void drop_data_values(data_value_queue &queue) {
    std::uint32_t count;
    while (!at_list_end()) {
        if (curr_token == tok_comma) {
            next_token(value_mode);
            if (!next_data_value(count, queue.current)) {
                queue.at_end = true;
            }
        } else {
            const stop_at stop({tok_comma});
            if (!queue.at_end) {
                expect_token(tok_comma, msg_expected_comma);
                queue.at_end = true;
            } else {
                recover_tokens();
            }
        }
    }
}

} // namespace zf90
