// The handlers of loops: the heads of DO and DO WHILE, END DO, EXIT and CYCLE. How loops end at labels the
// construct stack knows (statements/constructs.h).
#include "expressions/parser.h"
#include "il/entries.h"
#include "source/token_helpers.h"
#include "statements/constructs.h"
#include "statements/handlers.h"
#include "statements/loop.h"

#include <algorithm>

namespace zf90 {

namespace {

// Begins the loop of the DO on the statement `kind`, under the label that stands ahead of it.
statement *begin_loop(il_statement_kind kind, construct_kind construct) {
    check_reachable();
    statement *top = curr_statement;
    statement *s = add_statement(kind);
    push_construct(construct, s);
    top_construct().top_label_stmt = top;
    return s;
}

// Reads the optional label and comma behind DO, and gives it to the loop on top. False if it is in error.
bool read_do_label() {
    switch (next_token(lex_label_digits)) {
    case tok_comma: next_token(0); return true;
    case tok_eos:
    case tok_name: return true;
    default: break;
    }
    const stop_at stops{tok_comma, tok_name};
    construct_entry &entry = top_construct();
    symbol *s = nullptr;
    bool good = curr_token == tok_label;
    if (!good) {
        s = read_label_reference(label_use_do);
    } else {
        s = lookup_label(curr_name);
        if (s && (s->aux2 & lf_defined) != 0) {
            good = false;
            const label_kind kind = entity_as<label>(s)->kind;
            error_at(kind == lk_format || kind == lk_specification
                         ? msg_label_must_be_executable_statement_label
                         : msg_label_has_already_been_defined,
                     curr_token_pos);
            note_use(use_referenced, s, curr_token_pos);
        } else {
            s = refer_to_label(curr_name, label_use_do);
        }
        next_token(0);
    }
    if (s) {
        set_end_label(s);
    }
    entry.label_reported = !good || (s && (s->aux2 & lf_reported) != 0);
    accept_optional(tok_comma, 0);
    return good;
}

bool is_literal_zero(const expr_node *e) {
    if (e->node_kind != enk_constant || e->constant->repr_kind != ck_value) {
        return false;
    }
    const type *t = e->constant->type;
    const unsigned char *bytes = e->constant->value.bytes;
    return (t->type_code == tk_integer || t->type_code == tk_float) &&
           std::all_of(bytes, bytes + t->size, [](unsigned char byte) { return byte == 0; });
}

// Parses an expression that `next` must follow, which is skipped. False if something was reported.
bool parse_part(expr_node *&part, token_kind next, error_code missing) {
    const bool good = parse_expression(part);
    if (!good && curr_token != next) {
        return false;
    }
    return accept_token(next, missing, lex_signed) && good;
}

// The control variable and its values. What can't be read is left as error nodes.
bool parse_do_control(do_loop *control) {
    const stop_at stops{tok_comma};
    {
        const stop_at stop_at_equals{tok_assign};
        if (!parse_part(control->variable, tok_assign, msg_expected_equals)) {
            if (control->variable && control->variable->node_kind != enk_object) {
                control->variable = nullptr; // what stands there was not meant as a variable
            }
            return false;
        }
    }
    if (!parse_part(control->initial_value, tok_comma, msg_expected_comma) ||
        !parse_expression(control->final_value)) {
        return false;
    }
    if (curr_token == tok_eos) {
        return true;
    }
    if (!accept_token(tok_comma, msg_expected_comma, lex_signed) || !parse_expression(control->increment)) {
        return false;
    }
    if (is_literal_zero(control->increment)) {
        error(msg_increment_of_do_is_not_allowed_to_be_zero);
    }
    return true;
}

} // namespace

bool stmt_do() {
    statement *s = begin_loop(stmk_ido, cons_do); // or stmk_fdo, when the variable is checked
    const bool label_good = read_do_label();
    if (curr_token == tok_eos) {
        return label_good;
    }
    s->do_loop = new_do_loop();
    const bool good = parse_do_control(s->do_loop);
    for (expr_node **part : {&s->do_loop->variable, &s->do_loop->initial_value, &s->do_loop->final_value}) {
        if (!*part) {
            *part = new_error_node();
        }
    }
    if (!good) {
        top_construct().label_reported = true; // what was meant as the label is not clear
    }
    return good && label_good;
}

bool stmt_do_while() {
    statement *s = begin_loop(stmk_while, cons_do_while);
    const bool label_good = read_do_label();
    next_token(0); // over WHILE
    bool good = accept_opening(lex_signed);
    if (good) {
        const stop_at stops{tok_rparen};
        good = parse_expression(s->expr);
        if (good || curr_token == tok_rparen) {
            good = curr_token == tok_rparen && good;
            good = accept_token(tok_rparen, msg_expected_rparen, 0) && good;
        }
    }
    if (!good) {
        s->expr = new_error_node();
    }
    return good && label_good;
}

bool stmt_end_do() {
    next_token(0);
    const construct_name name = parse_construct_name();
    bool reported = name.reported;
    int loop = -1;
    if (name.atom && !reported) {
        loop = loop_of_name(name);
        if (loop < 0) {
            reported = true;
            error_at(msg_end_do_construct_name_does_not_match_label, stmt_pos);
        }
    }
    if (loop < 0 && curr_label_symbol) {
        loop = loop_of_label(curr_label_symbol);
    }
    if (loop < 0) {
        loop = innermost_loop();
    }
    if (loop < 0) {
        if (!reported) {
            error_at(msg_end_do_is_only_allowed_inside_do_or_do, stmt_pos);
        }
        doubt_innermost_end();
        return true;
    }
    if (!name.atom && is_named(construct_stack[loop])) {
        reported = true;
        error_at(msg_end_do_construct_name_does_not_match_label, stmt_pos);
    }
    close_do_to(loop, reported);
    return true;
}

namespace {

// EXIT and CYCLE.
bool leave_or_cycle(il_statement_kind kind, error_code no_loop) {
    check_reachable();
    next_token(0);
    const construct_name name = parse_construct_name();
    const int loop = name.atom && !name.reported ? loop_of_name(name) : innermost_loop();
    if (loop < 0) {
        if (!name.reported) {
            error_at(no_loop, stmt_pos);
        }
        return false;
    }
    construct_entry &entry = construct_stack[loop];
    if (kind == stmk_exit) {
        entry.reach_at_end = reachable;
    }
    if (name.reported) {
        return false;
    }
    add_statement(kind)->constr_label = entry.top_label_stmt;
    return true;
}

} // namespace

bool stmt_exit() { return leave_or_cycle(stmk_exit, msg_exit_statement_without_do_construct); }
bool stmt_cycle() { return leave_or_cycle(stmk_cycle, msg_cycle_statement_without_do_construct); }

} // namespace zf90
