// The handlers of the jumps: GO TO in its forms, ASSIGN, arithmetic IF, RETURN, STOP, PAUSE, and CONTINUE.
// They read their statement and build its part of the tree; expressions stay as they were parsed until the
// statements of the unit are checked.
#include "statements/control.h"

#include "constants/arithmetic.h"
#include "declarations/scopes.h"
#include "declarations/variables.h"
#include "expressions/parser.h"
#include "il/entries.h"
#include "il/types.h"
#include "source/token_helpers.h"
#include "statements/classify.h"
#include "statements/constructs.h"
#include "statements/handlers.h"
#include "statements/loop.h"

#include <cstring>

namespace zf90 {

bool parse_condition(expr_node *&condition, bool &failed) {
    condition = nullptr;
    failed = true;
    if (accept_opening(lex_signed)) {
        const stop_at stops{tok_rparen, tok_comma};
        failed = !parse_expression(condition);
    }
    if (!condition) {
        condition = new_error_node();
        return false;
    }
    error_pos = curr_token_pos;
    if (curr_token == tok_rparen) {
        return true;
    }
    if (!failed) {
        report_syntax_error(msg_expected_rparen); // unless the tokenizer has spoken
        condition = new_error_node();             // who knows what was meant
    }
    failed = true;
    return false;
}

bool parse_parenthesized(expr_node *&condition, std::uint32_t mode) {
    bool failed;
    if (!parse_condition(condition, failed)) {
        return false;
    }
    next_token(mode);
    return !failed;
}

namespace {

// ---- labels

// With a part of the list missing, nobody knows whether these were meant.
void excuse_labels(const label_list_entry *list) {
    for (; list; list = list->next) {
        excuse_label(list->label->symbol_link);
    }
}

// Reads a list of labels in parentheses, and the token behind it. With `once`, a label that is repeated is
// entered once. False if something was reported.
bool parse_label_list(label_list_entry *&list, bool once) {
    list = nullptr;
    if (!accept_opening(lex_label)) {
        return false;
    }
    bool good = true;
    {
        const stop_at stops{tok_rparen, tok_comma};
        for (label_list_entry **end = &list;;) {
            const bool is_bracket = curr_token == tok_lparen;
            symbol *s = read_label_reference(label_use_branch);
            if (is_bracket) {
                return false; // what it encloses was meant as the list
            }
            good = good && s;
            if (s && !(once && (s->aux2 & lf_listed) != 0)) {
                s->aux2 |= lf_listed;
                *end = new_label_list_entry();
                (*end)->label = entity_as<label>(s);
                end = &(*end)->next;
            }
            if (curr_token != tok_comma) {
                break;
            }
            next_token(lex_label);
        }
    }
    for (label_list_entry *entry = list; entry; entry = entry->next) {
        entry->label->symbol_link->aux2 &= ~std::uint32_t{lf_listed};
    }
    if (!good && curr_token != tok_rparen) {
        return false;
    }
    return accept_token(tok_rparen, msg_expected_rparen, lex_signed) && good;
}

// What a name in an expression stands for, now that the declarations of this unit and its hosts are complete.
symbol *settled_reference() {
    symbol *s = lookup_reference();
    if (s->kind == sk_host_candidate) {
        if (symbol *meaning = resolve_candidate(s)) {
            s = meaning;
        }
    }
    while (s->kind == sk_host_link) {
        s = entity_as<symbol>(s);
    }
    return s;
}

type *type_of_data_name(const symbol *s) {
    switch (s->kind) {
    case sk_variable:
    case sk_dummy: return entity_as<object>(s)->type;
    case sk_undetermined:
    case sk_data_name:
    case sk_host_candidate: return s->entity ? entity_as<type>(s) : unknown_type();
    default: return nullptr;
    }
}

// The variable of ASSIGN and of an assigned GO TO, a scalar of type default integer. Null if it is none,
// which has been reported. Steps past it.
expr_node *parse_label_variable() {
    if (!expect_token(tok_name, msg_expected_identifier)) {
        return nullptr;
    }
    name_locator name = curr_name;
    symbol *s = settled_reference();
    note_use(use_referenced, s, name.position);
    next_token(0);
    const type *t = type_of_data_name(s);
    if (t && t->type_code == tk_unknown) {
        if (const type *implicit = implicit_type_of(s)) {
            t = implicit;
        }
    }
    const bool is_constant = s->kind == sk_variable && entity_as<object>(s)->is_constant;
    if (!t || is_constant ||
        (t != default_integer() && t->type_code != tk_unknown && t->type_code != tk_error)) {
        error_at(msg_expression_must_be_variable_of_type_default_integer, name.position);
        return nullptr;
    }
    object *variable = entity_as<object>(make_variable(s, name));
    if (variable->type->type_code == tk_error) {
        return nullptr;
    }
    expr_node *node = new_expr_node(enk_object);
    node->source_pos = name.position;
    node->object = variable;
    node->type = variable->type;
    return node;
}

} // namespace

// ---- jumps

bool stmt_goto() {
    check_reachable();
    next_token(lex_label);
    symbol *target = read_label_reference(label_use_branch);
    if (!target) {
        return false;
    }
    add_statement(stmk_goto)->label = entity_as<label>(target);
    return true;
}

bool stmt_computed_goto() {
    check_reachable();
    next_token(0);
    label_list_entry *list;
    if (!parse_label_list(list, false)) {
        return false;
    }
    accept_optional(tok_comma, lex_signed);
    expr_node *selector;
    const bool good = parse_expression(selector);
    statement *s = add_statement(stmk_computed_goto);
    s->expr = selector;
    s->label_list = list;
    return good;
}

bool stmt_assigned_goto() {
    check_reachable();
    next_token(0);
    expr_node *variable = parse_label_variable();
    label_list_entry *list = nullptr;
    if (!variable && curr_token == tok_lparen) {
        return skip_to_eos(); // it may be a subscript
    }
    if (curr_token != tok_eos) {
        accept_optional(tok_comma, 0);
        if (!parse_label_list(list, true)) {
            return false;
        }
    }
    if (!variable) {
        return true; // the statement is dropped without failing
    }
    for (label_list_entry *entry = list; entry; entry = entry->next) {
        entry->label->used_in_assign = true;
    }
    statement *s = add_statement(stmk_assigned_goto);
    s->expr = variable;
    s->label_list = list;
    return true;
}

bool stmt_assign() {
    check_reachable();
    if (next_token(lex_label) != tok_label) {
        syntax_error(msg_expected_label);
        return false;
    }
    const source_pos label_position = curr_token_pos;
    symbol *target = refer_to_label(curr_name, label_use_assign);
    entity_as<label>(target)->used_in_assign = true;
    if (next_token(lex_keyword) != tok_kw_to) {
        syntax_error(msg_expected_to);
        return false;
    }
    next_token(0);
    expr_node *variable = parse_label_variable();
    if (!variable) {
        return true;
    }
    variable->intent_out = true;
    expr_node *value = new_expr_node(enk_stmt_label_value);
    value->source_pos = label_position;
    value->type = stmt_label_type();
    value->stmt_label_value = entity_as<label>(target);
    variable->next = value;
    expr_node *assignment = new_operation(eok_iassign, default_integer(), variable);
    assignment->source_pos = variable->source_pos;
    add_statement(stmk_expr)->expr = assignment;
    return true;
}

bool stmt_arithmetic_if() {
    check_reachable();
    next_token(0);
    expr_node *condition;
    bool failed;
    if (!parse_condition(condition, failed)) {
        return false;
    }
    next_token(lex_label);
    label_list_entry *list = nullptr;
    label_list_entry **end = &list;
    for (int i = 0; i < 3; ++i) {
        if (i > 0) {
            if (curr_token != tok_comma) {
                syntax_error(msg_expected_comma);
                excuse_labels(list);
                return false;
            }
            next_token(lex_label);
        }
        symbol *target = read_label_reference(label_use_branch);
        if (!target) {
            return false;
        }
        *end = new_label_list_entry();
        (*end)->label = entity_as<label>(target);
        end = &(*end)->next;
    }
    statement *s = add_statement(stmk_iarith_if); // or stmk_farith_if, when the condition is checked
    s->expr = condition;
    s->label_list = list;
    return !failed;
}

bool stmt_continue() {
    check_reachable();
    next_token(0);
    return true;
}

bool stmt_return() {
    check_reachable();
    if (curr_unit_kind != uk_subroutine && curr_unit_kind != uk_function) {
        error_at(msg_return_is_only_allowed_in_subroutine_or_function, stmt_pos);
        return false;
    }
    if (next_token(lex_signed) == tok_eos) {
        add_statement(stmk_return);
        return true;
    }
    if (curr_unit_kind == uk_function) {
        error(msg_alternate_return_is_only_allowed_in_subroutine);
        return false;
    }
    statement *s = add_statement(stmk_alt_return);
    return parse_expression(s->expr);
}

// ---- STOP and PAUSE

namespace {

constexpr int max_stop_digits = 5;

// The digits of a code as they were written, as a text.
constant *text_of_digits() {
    fold_value value = new_fold_value(ck_value);
    value.source_pos = curr_token_pos;
    value.type = default_character(token_length);
    std::memcpy(new_fold_text(value, token_length), token_text, static_cast<std::size_t>(token_length));
    return store_fold_value(value);
}

// The value of the named constant that is the current token, null if it is none.
constant *named_stop_code() {
    symbol *s = lookup_resolved(curr_name.atom->first_symbol, curr_scope_depth);
    if (!s || s->kind != sk_variable || !entity_as<object>(s)->is_constant) {
        return nullptr;
    }
    note_use(use_referenced, s, curr_name.position);
    return entity_as<object>(s)->variant.initializer;
}

// Reads the optional code behind STOP or PAUSE: false if it is none.
bool parse_stop_code(constant *&code) {
    code = nullptr;
    skip_to_token();
    // Read as an ordinary number, 12E3 or 1.5 would be a real and 99999999999 too large.
    bool digits = *line_cursor >= '0' && *line_cursor <= '9';
    const std::uint32_t errors_before = error_count;
    next_token(digits ? lex_no_kind_suffix | lex_no_hollerith | lex_plain_digits | lex_peek
                      : lex_no_kind_suffix);
    if (digits && *line_cursor == '_') { // they are the kind of a text
        digits = false;
        lex_rewind_token();
        next_token(0);
    }
    switch (curr_token) {
    case tok_eos: return true;
    case tok_integer:
        if (!digits) {
            break;
        }
        if (token_length > max_stop_digits) {
            warning(msg_more_than_5_digits_in_stop_or_pause);
        }
        code = text_of_digits();
        break;
    case tok_character:
        if (has_value(curr_constant) && curr_constant.type->kind != default_character_kind) {
            error(msg_constant_must_be_of_type_default_character);
        }
        code = store_fold_value(curr_constant);
        break;
    case tok_name: code = named_stop_code(); break;
    default: break;
    }
    if (!code && error_count != errors_before) { // the tokenizer has spoken
        return !skip_to_eos();
    }
    if (!code) {
        syntax_error(msg_expected_string_of_digits_or_character_constant);
        return false;
    }
    next_token(0);
    return true;
}

bool stop_or_pause(il_statement_kind kind) {
    check_reachable();
    constant *code;
    if (!parse_stop_code(code)) {
        return false;
    }
    add_statement(kind)->stop_pause_string = code;
    return true;
}

} // namespace

bool stmt_stop() { return stop_or_pause(stmk_stop); }
bool stmt_pause() { return stop_or_pause(stmk_pause); }

} // namespace zf90
