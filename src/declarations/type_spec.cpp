// Readers of type specifiers.
#include "declarations/type_spec.h"

#include "constants/folding.h"
#include "declarations/derived_types.h"
#include "declarations/names_in_error.h"
#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "declarations/units.h"
#include "expressions/check.h"
#include "expressions/parser.h"
#include "il/arena.h"
#include "il/types.h"
#include "source/token_helpers.h"
#include "statements/loop.h"

#include <algorithm>

namespace zf90 {

type *curr_type_spec;
bool char_star_form;

namespace {

constexpr std::uint32_t selector_mode = lex_specifier | lex_signed;

// ---- kinds

// Whether nothing but its use tells of a name.
bool is_undeclared(const symbol *s) {
    return (s->kind == sk_undetermined || s->kind == sk_variable) && !s->from_module && !has_explicit_type(s);
}

// A name that was to be a keyword.
void give_up_misspelt_keyword(const name_locator &name) {
    curr_name = name;
    symbol *const s = lookup_current();
    if (!s) {
        return;
    }
    claim_candidate(s);
    if (is_undeclared(s)) {
        give_up_type(s);
    }
}

// The value of a kind selector that has been read. False if it has none, which has been reported.
bool fold_kind(expr_node *selector, std::int32_t &kind) {
    symbol *const name = selector->node_kind == enk_symbol ? selector->symbol : nullptr;
    if (!check_expression(selector, ECF_SPEC, curr_routine())) {
        if (name && name->scope_depth == curr_scope_depth && is_undeclared(name)) {
            give_up_type(name); // literals may have that kind
        }
        return false;
    }
    if (selector->type->type_code == tk_error) {
        return false;
    }
    if (selector->type->type_code != tk_integer) {
        error_at(msg_expression_must_be_of_type_integer, selector->source_pos);
        return false;
    }
    fold_value value;
    if (!fold_expression(selector, value, true) || !has_value(value)) {
        return false;
    }
    kind = value.integer;
    return true;
}

// Reads a numeric kind selector behind its "(".
bool read_kind_selector(expr_node *&selector) {
    const stop_at stops{tok_rparen};
    next_token(selector_mode);
    const source_pos position = curr_token_pos;
    if (!parse_actual_item(selector)) {
        return false;
    }
    if (selector->is_specifier && selector->selector != iosk_fe_kind) {
        error_at(msg_invalid_specifier, position);
        return false;
    }
    return curr_token == tok_rparen; // what else ends it is reported by what comes next
}

type *report_missing_kind(bool missing, type *t, source_pos position) {
    if (missing) {
        error_at(msg_kind_value_does_not_specify_representation_method, position);
    }
    return t;
}

// The type of a class and a kind selector. `closing` is behind the selector.
type *numeric_type_of(type_code code, expr_node *selector, source_pos closing) {
    std::int32_t kind = 0;
    if (!fold_kind(selector, kind)) {
        return error_type();
    }
    bool missing = false;
    type *t = nullptr;
    switch (code) {
    case tk_float: t = real_type_for_kind_number(kind, missing); break;
    case tk_complex: t = complex_type_for_kind_number(kind, missing); break;
    case tk_logical: t = logical_type_for_kind_number(kind, missing); break;
    default: t = integer_type_for_kind_number(kind, missing); break;
    }
    return report_missing_kind(missing, t, closing);
}

bool read_numeric_type(std::uint32_t mode, type *default_type) {
    char_star_form = false;
    curr_type_spec = default_type;
    if (next_token(mode) != tok_lparen) {
        return true;
    }
    expr_node *selector = nullptr;
    curr_type_spec = read_kind_selector(selector)
                         ? numeric_type_of(default_type->type_code, selector, curr_token_pos)
                         : error_type();
    return accept_closing(tok_rparen, msg_expected_rparen, mode);
}

// ---- CHARACTER

// A length as it was read.
struct char_length {
    bool assumed = false;
    expr_node *expression = nullptr; // null: not given
};

// Reads an expression of which the names count as used in a bound.
bool parse_length(expr_node *&length) {
    const bool outer = used_in_bound;
    used_in_bound = true;
    const bool ok = parse_expression(length);
    used_in_bound = outer;
    return ok;
}

// The character type of a kind and a length. The error type if the length is in error, or, with `missing`
// set, if there is no such kind.
// Whether a length is a name that a later statement may still make a dummy argument (ENTRY) or a member of a
// COMMON block: what it may be is known when the unit ends, and the check of the type asks then.
bool is_open_name(const expr_node *length) {
    if (length->node_kind != enk_symbol || spec_part_over) {
        return false;
    }
    const symbol *const s = length->symbol;
    if (s->scope_depth != curr_scope_depth) {
        return false;
    }
    if (s->kind == sk_variable) {
        const object *const o = entity_as<object>(s);
        return !o->is_constant && !o->is_parameter && (s->var_flags & vf_in_common) == 0;
    }
    return s->kind == sk_undetermined || s->kind == sk_host_candidate;
}

type *character_of_length(int kind_index, expr_node *length) {
    type *const t = new_type(tk_fcharacter);
    t->kind = static_cast<std::uint32_t>(kind_index);
    t->is_character = t->kind == default_character_kind;
    set_expression_bound(t->character.length, length);
    complete_type(t);
    return t;
}

type *character_type_of(std::int32_t kind, const char_length &length, bool &missing) {
    if (length.assumed) {
        return assumed_character_type_for_kind_number(kind, missing);
    }
    std::int32_t constant = 1;
    if (length.expression) {
        if (is_open_name(length.expression) && character_kind_index(kind) >= 0) {
            return character_of_length(character_kind_index(kind), length.expression);
        }
        fold_value value;
        if (!check_expression(length.expression, ECF_SPEC, curr_routine())) {
            return error_type();
        }
        fold_expression(length.expression, value, false);
        if (!has_value(value)) {
            const int index = character_kind_index(kind);
            if (index < 0 || length.expression->type->type_code == tk_error) {
                missing = index < 0;
                return error_type();
            }
            return character_of_length(index, length.expression);
        }
        constant = std::max(value.integer, 0);
    }
    return character_type_for_kind_number(kind, constant, missing);
}

std::int32_t default_kind_number() { return character_kinds[default_character_kind].kind_number; }

// The two selectors of CHARACTER, in either order, with or without keywords.
struct character_selectors {
    char_length length;
    expr_node *kind = nullptr;
    bool length_keyword = false;
    bool failed = false;

    bool has_length() const { return length.assumed || length.expression; }

    void read_length() {
        const bool is_keyword = curr_token == tok_name && line_cursor[-1] == '='; // one that there is not
        const name_locator name = curr_name;
        read_length_value();
        if (is_keyword) {
            const name_locator following = curr_name;
            give_up_misspelt_keyword(name);
            curr_name = following;
        }
    }

    void read_length_value() {
        expr_node *expression = nullptr;
        char_length read;
        if (curr_token == tok_star) {
            read.assumed = true;
            next_token(0);
        } else if (parse_length(expression)) {
            expression->is_specifier = true;
            expression->selector = iosk_fe_len;
            read.expression = expression;
        } else {
            failed = true;
        }
        if (!has_length()) {
            length = read;
        }
    }

    void read_kind() {
        expr_node *expression = nullptr;
        if (!parse_expression(expression)) {
            failed = true;
        }
        expression->is_specifier = true;
        expression->selector = iosk_fe_kind;
        if (!kind) {
            kind = expression;
        }
    }

    void refuse(error_code code) {
        error_at(code, curr_token_pos);
        failed = true;
    }

    // At an item that is neither KIND= nor LEN=.
    void skip_other_specifier() {
        if (curr_token >= tok_spec_access && curr_token <= tok_spec_unit) {
            refuse(msg_invalid_specifier);
            next_token(lex_signed);
        }
    }

    void read_first() {
        if (curr_token == tok_spec_kind) {
            next_token(lex_signed);
            read_kind();
            return;
        }
        if (curr_token == tok_spec_len) {
            length_keyword = true;
            next_token(lex_signed);
        }
        skip_other_specifier();
        read_length();
    }

    void read_second() {
        if (curr_token == tok_spec_kind) {
            if (kind) {
                refuse(msg_specifier_is_repeated);
            }
            next_token(lex_signed);
            read_kind();
        } else if (curr_token == tok_spec_len) {
            if (has_length()) {
                refuse(msg_specifier_is_repeated);
            }
            next_token(lex_signed);
            read_length();
        } else {
            skip_other_specifier();
            if (kind && !failed) {
                refuse(msg_specifier_is_repeated);
            } else if (length_keyword && !failed) {
                refuse(msg_keyword_must_not_be_omitted_from_actual_argument);
            }
            read_kind();
        }
    }

    // From the "(" to the ")".
    bool read() {
        const stop_at stops{tok_comma, tok_rparen};
        next_token(selector_mode);
        read_first();
        if (accept_optional(tok_comma, selector_mode)) {
            read_second();
        }
        return !failed && curr_token == tok_rparen;
    }
};

// The character type of the selectors that are given. `closing` is behind them.
type *selected_character_type(expr_node *kind, const char_length &length, source_pos closing) {
    std::int32_t kind_number = default_kind_number();
    if (kind && !fold_kind(kind, kind_number)) {
        return error_type();
    }
    bool missing = false;
    type *t = character_type_of(kind_number, length, missing);
    return report_missing_kind(missing, t, closing);
}

// The length in parentheses behind "*"; at the "(". The character type needs no length to be assumed.
bool read_star_length(bool may_be_assumed, char_length &length) {
    const stop_at stops{tok_rparen};
    next_token(lex_signed);
    if (curr_token == tok_star && may_be_assumed) {
        length.assumed = true;
        next_token(0);
        return true;
    }
    return parse_length(length.expression);
}

// ---- the prefix of a function

// From the token in front of the "(" of selectors on, passes over them. Whether they name something.
bool selectors_have_names() {
    bool found = false;
    if (next_token(lex_peek | lex_lone_star) == tok_star) {
        next_token(lex_peek | lex_lone_lparen);
    }
    if (curr_token != tok_lparen) {
        return false;
    }
    for (int depth = 1; depth > 0;) {
        switch (next_token(lex_peek | lex_specifier)) {
        case tok_lparen:
        case tok_array_open: ++depth; break;
        case tok_rparen:
        case tok_array_close: --depth; break;
        case tok_eos: return false;
        case tok_name: found = true; break;
        default: break;
        }
    }
    return found;
}

type_code class_of_word() {
    switch (curr_token) {
    case tok_kw_character: return tk_fcharacter;
    case tok_kw_complex: return tk_complex;
    case tok_kw_logical: return tk_logical;
    case tok_kw_real: return tk_float;
    default: return tk_integer;
    }
}

} // namespace

prefix_type *skip_named_selectors(std::uint32_t mode) {
    const type_code code = class_of_word();
    char *const start = line_cursor;
    {
        saved_place place;
        if (!selectors_have_names()) {
            return nullptr;
        }
        place.stay();
    }
    auto *prefix = il_new<prefix_type>();
    prefix->start = start;
    prefix->provisional = new_type(code);
    complete_type(prefix->provisional);
    curr_type_spec = prefix->provisional;
    next_token(mode);
    return prefix;
}

void read_skipped_selectors(prefix_type &prefix) {
    const saved_place place;
    line_cursor = prefix.start;
    char_length length;
    bool good = false;
    if (prefix.provisional->type_code != tk_fcharacter) {
        next_token(0);
        good = read_kind_selector(prefix.kind);
    } else if (next_token(lex_lone_star) == tok_star) {
        next_token(lex_lone_lparen);
        good = read_star_length(true, length);
    } else {
        character_selectors selectors;
        good = selectors.read();
        prefix.kind = selectors.kind;
        length = selectors.length;
    }
    prefix.length = length.expression;
    prefix.assumed_length = length.assumed;
    prefix.closing = curr_token_pos;
    const bool closed = accept_closing(tok_rparen, msg_expected_rparen, 0);
    prefix.failed = !good || !closed;
}

type *resolve_prefix_type(prefix_type &prefix) {
    if (prefix.failed) {
        return error_type();
    }
    const type_code code = prefix.provisional->type_code;
    if (code != tk_fcharacter) {
        return numeric_type_of(code, prefix.kind, prefix.closing);
    }
    const char_length length{.assumed = prefix.assumed_length, .expression = prefix.length};
    return selected_character_type(prefix.kind, length, prefix.closing);
}

bool read_type_integer(std::uint32_t mode) { return read_numeric_type(mode, default_integer()); }

bool read_type_real(std::uint32_t mode) { return read_numeric_type(mode, default_real()); }

bool read_type_complex(std::uint32_t mode) { return read_numeric_type(mode, default_complex()); }

bool read_type_logical(std::uint32_t mode) { return read_numeric_type(mode, default_logical()); }

bool read_type_character(std::uint32_t mode) {
    char_star_form = false;
    curr_type_spec = default_character(1);
    next_token(mode | lex_lone_star);
    if (curr_token == tok_star) {
        char_star_form = true;
        curr_type_spec = read_char_length(default_character(1), mode);
        if (curr_type_spec->type_code == tk_error) {
            curr_type_spec = default_character(1);
        }
        return true;
    }
    if (curr_token != tok_lparen) {
        return true;
    }
    character_selectors selectors;
    curr_type_spec = selectors.read()
                         ? selected_character_type(selectors.kind, selectors.length, curr_token_pos)
                         : error_type();
    return accept_closing(tok_rparen, msg_expected_rparen, mode);
}

type *read_char_length(type *base, std::uint32_t mode) {
    bool missing = false;
    next_token(lex_plain_digits | lex_no_hollerith | lex_lone_lparen);
    if (curr_token == tok_integer) {
        type *t = error_type();
        if (has_value(curr_constant)) {
            t = default_character(std::max(curr_constant.integer, 0));
        }
        next_token(mode);
        return t;
    }
    if (curr_token != tok_lparen) {
        if (curr_token == tok_name) {
            report_syntax_error(msg_expected_constant);
            next_token(mode);
        } else {
            report_syntax_error(msg_expected_length_specification);
        }
        return error_type();
    }
    char_length length;
    const bool ok = read_star_length(base->type_code == tk_fcharacter, length);
    type *t = error_type();
    if (ok && curr_token == tok_rparen) {
        t = character_type_of(character_kinds[base->kind].kind_number, length, missing);
    }
    const stop_at stops{tok_name, tok_comma, tok_lparen};
    return accept_closing(tok_rparen, msg_expected_rparen, mode) ? t : error_type();
}

bool read_type_derived(std::uint32_t mode) {
    char_star_form = false;
    curr_type_spec = error_type();
    next_token(0);
    if (!expect_token(tok_lparen, msg_expected_lparen)) {
        return false;
    }
    if (next_token(0) != tok_name) {
        report_syntax_error(msg_expected_identifier);
        return accept_closing(tok_rparen, msg_expected_rparen, mode);
    }
    name_locator name = curr_name;
    symbol *s;
    if (in_type_def || in_prefix_type) {
        // The unit itself, or the one around the definition, may define the type later.
        s = lookup_at_depth(in_type_def ? curr_scope_depth - 1 : curr_scope_depth);
        while (s && s->kind == sk_host_link) {
            s = entity_as<symbol>(s);
        }
    } else {
        s = lookup_resolved(name.atom ? name.atom->first_symbol : nullptr, curr_scope_depth);
    }
    curr_type_spec = entity_as<type>(use_derived_type(s, name));
    next_token(0);
    return accept_closing(tok_rparen, msg_expected_rparen, mode);
}

} // namespace zf90
