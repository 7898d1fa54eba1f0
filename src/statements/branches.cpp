// The handlers of the constructs that choose: IF, WHERE and SELECT CASE, with the single statements that an
// IF or a WHERE governs, and the names of constructs. Conditions, masks, selectors and case values stay as
// they were parsed until the statements of the unit are checked.
#include "constants/arithmetic.h"
#include "expressions/check.h"
#include "expressions/parser.h"
#include "il/constants.h"
#include "il/entries.h"
#include "source/token_helpers.h"
#include "statements/classify.h"
#include "statements/constructs.h"
#include "statements/control.h"
#include "statements/handlers.h"
#include "statements/loop.h"
#include "statements/misspelt.h"

namespace zf90 {

namespace {

// Runs a statement that follows in the text of another one, and gives the kind and the position of the outer
// statement back afterwards.
struct outer_statement {
    statement_kind kind = curr_stmt_kind;
    source_pos position = stmt_pos;
    ~outer_statement() {
        curr_stmt_kind = kind;
        stmt_pos = position;
    }
};

void classify_inner_statement() {
    classify_statement();
    curr_token = tok_none;
    error_pos = stmt_pos;
}

bool run_dependent(construct_kind kind, statement *s) {
    push_construct(kind, s);
    const bool good = dispatch_statement();
    pop_construct();
    return good;
}

// Kinds that begin or end a block, or that hold a statement of their own.
bool can_depend_on_if(statement_kind kind) {
    switch (kind) {
    case stmtk_case:
    case stmtk_construct_name:
    case stmtk_do:
    case stmtk_do_while:
    case stmtk_else:
    case stmtk_else_if:
    case stmtk_elsewhere:
    case stmtk_end_do:
    case stmtk_end_if:
    case stmtk_end_select:
    case stmtk_end_where:
    case stmtk_if:
    case stmtk_if_then:
    case stmtk_select_case:
    case stmtk_where_construct: return false;
    default: return is_executable_kind(kind); // not INCLUDE and the forms of END
    }
}

bool can_depend_on_where(statement_kind kind) { return kind == stmtk_assignment; }

// A statement that governs one other on its line.
struct governing_statement {
    il_statement_kind kind;
    construct_kind construct;
    bool (*can_depend)(statement_kind kind);
    error_code refusal;
};

// For an IF or a WHERE that has been reported: opens the construct that it may have been meant to begin.
void open_if_meant(const governing_statement &governing, bool is_meant) {
    if (is_meant && construct_depth >= 0) {
        push_refused_construct(governing.kind == stmk_if ? cons_block_if : cons_where, governing.kind);
    }
}

// Reads the condition in parentheses and the statement behind it.
bool read_dependent_statement(const governing_statement &governing) {
    check_reachable();
    next_token(0);
    expr_node *condition;
    bool failed;
    if (!parse_condition(condition, failed)) {
        open_if_meant(governing,
                      governing.kind == stmk_if ? lines_run_together || ends_with_then() : !sets_something());
        return false;
    }
    char *const rest = line_cursor;
    statement *s = add_statement(governing.kind);
    s->expr = condition;
    const outer_statement outer;
    classify_inner_statement();
    if (curr_stmt_kind == stmtk_bad) {
        // What follows the condition may be a THEN, or may have been meant as one: its ELSE and END IF come.
        const bool begins =
            next_token(lex_peek) == tok_eos ||
            (governing.kind == stmk_if ? ends_with_then() || is_like_then(rest) : !sets_something());
        line_cursor = rest;
        next_token(lex_peek);
        if (skip_to_closing(tok_rparen)) {
            mark_error_node(condition); // it goes on there
        } else {
            give_up_condition(s); // it may have been meant for an arithmetic IF
        }
        open_if_meant(governing, begins);
        return false;
    }
    if (!governing.can_depend(curr_stmt_kind)) {
        error_at(governing.refusal, stmt_pos);
        return false;
    }
    return run_dependent(governing.construct, s) && !failed;
}

// A label on a statement that ends a construct stands behind it.
void note_label_behind_construct() {
    if (curr_label_symbol) {
        note_label_position(curr_label_symbol, true, stmt_pos);
    }
}

} // namespace

// ---- IF

bool stmt_if() {
    return read_dependent_statement(
        {stmk_if, cons_logical_if, can_depend_on_if, msg_invalid_dependent_statement_of_logical_if_ignored});
}

bool stmt_if_then() {
    check_reachable();
    next_token(0);
    expr_node *condition;
    const bool good = parse_parenthesized(condition, lex_keyword);
    statement *s = add_statement(stmk_if);
    s->expr = condition;
    if (curr_token == tok_kw_then) {
        next_token(0);
    }
    push_construct(cons_block_if, s); // also without a good condition: its END IF will come
    return good;
}

bool stmt_else_if() {
    const bool found = close_construct(cons_block_if, {});
    if (found) {
        construct_entry &entry = top_construct();
        note_branch_end(entry);
        if (entry.second_branch && !entry.else_in_doubt) {
            error_at(msg_else_has_already_appeared_for_corresponding_block_if, stmt_pos);
        }
        entry.second_branch = true;
        begin_branch(entry);
    }
    next_token(0);
    expr_node *condition;
    bool good = parse_parenthesized(condition, lex_keyword);
    if (good) {
        good = expect_token(tok_kw_then, msg_expected_then);
    }
    if (curr_token == tok_kw_then) {
        next_token(0);
    }
    if (!found) {
        return good;
    }
    statement *s = add_statement(stmk_if);
    s->expr = condition;
    if (good) {
        if (const construct_name name = parse_construct_name(); name.atom) {
            close_construct(cons_block_if, name);
        }
    }
    // A chain of ELSE IF is a nest of statements, but one construct with one END IF.
    construct_entry &entry = top_construct();
    entry.statement = s;
    entry.tail = nullptr;
    entry.second_branch = false;
    return good;
}

bool stmt_else() {
    next_token(0);
    const construct_name name = parse_construct_name();
    if (close_construct(cons_block_if, name)) {
        construct_entry &entry = top_construct();
        note_branch_end(entry);
        if (entry.second_branch && !entry.else_in_doubt) {
            error_at(msg_else_has_already_appeared_for_corresponding_block_if, stmt_pos);
        }
        entry.second_branch = true;
        entry.else_in_doubt = name.reported || curr_token != tok_eos;
        begin_branch(entry);
    }
    return !name.reported;
}

bool stmt_end_if() {
    next_token(0);
    const construct_name name = parse_construct_name();
    if (close_construct(cons_block_if, name)) {
        pop_construct();
    }
    note_label_behind_construct();
    return true;
}

// ---- WHERE

bool stmt_where_stmt() {
    return read_dependent_statement({stmk_where, cons_where_stmt, can_depend_on_where,
                                     msg_invalid_dependent_statement_of_where_statement_ignored});
}

bool stmt_where_construct() {
    check_reachable();
    next_token(0);
    expr_node *mask;
    const bool good = parse_parenthesized(mask, 0);
    statement *s = add_statement(stmk_where);
    s->expr = mask;
    push_construct(cons_where, s);
    return good;
}

// A WHERE has no name; one that was refused at its head is passed over where it is repeated.
static void skip_name_of_where() {
    const int where = nearest_construct(cons_where);
    if (next_token(0) == tok_name && where >= 0 && construct_stack[where].refused_name == curr_name.atom) {
        next_token(0);
    }
}

bool stmt_elsewhere() {
    skip_name_of_where();
    if (close_construct(cons_where, {})) {
        construct_entry &entry = top_construct();
        note_branch_end(entry);
        if (entry.second_branch) {
            error_at(msg_elsewhere_has_already_appeared_for_corresponding_block_where, stmt_pos);
        }
        entry.second_branch = true;
        begin_branch(entry);
    }
    return true;
}

bool stmt_end_where() {
    skip_name_of_where();
    if (close_construct(cons_where, {})) {
        pop_construct();
    }
    note_label_behind_construct();
    return true;
}

// ---- SELECT CASE

namespace {

// A case value as a constant: a literal's value, or an expression that is yet to be folded.
constant *case_value(expr_node *value) {
    constant *c = new_constant();
    if (value->node_kind == enk_constant && value->constant->repr_kind == ck_value) {
        fold_value copy = new_fold_value(ck_value);
        read_constant(value->constant, copy);
        c = store_fold_value(copy);
    } else if (value->node_kind != enk_error) {
        init_constant(c, ck_expression);
        c->value.expr = value;
    }
    c->source_pos = value->source_pos;
    return c;
}

bool parse_case_value(constant *&c) {
    expr_node *value;
    const bool good = parse_expression(value);
    c = case_value(value);
    return good;
}

// One of `e`, `e:`, `:e`, `e:e`.
bool parse_case_range(case_range *range) {
    const stop_at stops{tok_colon};
    if (curr_token == tok_colon) {
        range->range_kind = crk_ge;
        next_token(lex_signed);
        return parse_case_value(range->high);
    }
    range->range_kind = crk_eq;
    bool good = parse_case_value(range->low);
    if (curr_token == tok_colon) {
        range->range_kind = crk_le;
        next_token(lex_signed);
        if (curr_token != tok_comma && curr_token != tok_rparen) {
            range->range_kind = crk_gl;
            good = parse_case_value(range->high) && good;
        }
    }
    return good;
}

// With something behind it that does not belong there, who knows what was meant.
void give_up_range(case_range &range) {
    for (constant *c : {range.low, range.high}) {
        if (c) {
            init_constant(c, ck_error);
        }
    }
}

// The ranges of a CASE in parentheses, and the token behind them.
bool parse_case_ranges(case_range *&list) {
    list = nullptr;
    if (!accept_opening(lex_signed)) {
        return false;
    }
    bool good = true;
    const stop_at stops{tok_rparen, tok_comma};
    case_range *last;
    for (case_range **end = &list;;) {
        *end = last = new_case_range();
        good = parse_case_range(last) && good;
        end = &last->next;
        if (curr_token != tok_comma) {
            break;
        }
        next_token(lex_signed);
    }
    if (!good && curr_token != tok_rparen) {
        return false;
    }
    if (curr_token != tok_rparen) {
        give_up_range(*last);
    }
    return accept_token(tok_rparen, msg_expected_rparen, 0) && good;
}

} // namespace

bool stmt_select_case() {
    check_reachable();
    next_token(0);
    expr_node *selector;
    const bool good = parse_parenthesized(selector, 0);
    statement *s = add_statement(stmk_select);
    s->expr = selector;
    push_construct(cons_select, s);
    return good;
}

bool stmt_case() {
    const bool found = close_construct(cons_select, {});
    if (found) {
        construct_entry &entry = top_construct();
        if (entry.tail) { // there is a CASE before
            note_branch_end(entry);
            begin_branch(entry);
        }
    }
    bool good = true;
    case_range *list = nullptr;
    if (next_token(lex_keyword) == tok_kw_default) {
        next_token(0);
        if (found) {
            construct_entry &entry = top_construct();
            if (entry.second_branch) {
                error_at(msg_no_more_than_one_selector_may_be_default, stmt_pos);
            }
            entry.second_branch = true;
        }
    } else {
        good = parse_case_ranges(list);
    }
    if (!found) {
        return good;
    }
    statement *s = add_statement(stmk_case);
    s->case_range_list = list;
    if (good) {
        if (const construct_name name = parse_construct_name(); name.atom) {
            close_construct(cons_select, name);
        }
    }
    push_construct(cons_case, s);
    return good;
}

bool stmt_end_select() {
    next_token(0);
    const construct_name name = parse_construct_name();
    if (close_construct(cons_select, name)) {
        pop_construct();
    }
    return true;
}

// ---- names of constructs

bool stmt_construct_name() {
    check_reachable();
    if (next_token(lex_construct_name) != tok_label) {
        error_at(msg_expected_construct_name, stmt_pos);
        return false;
    }
    const name_locator name = curr_name;
    next_token(0); // the colon
    symbol *taken = lookup_current();
    if (taken && taken->kind == sk_host_candidate &&
        (taken->flags & (sf_referenced | sf_used_as_bound)) == 0) {
        taken = nullptr; // only a scope within this one uses the name, and it is not this name
    }
    const bool is_assignment = *line_cursor == '='; // as others write it: that will be told
    if (taken && !is_assignment) {
        error_at(msg_label_has_already_been_defined, name.position);
        note_symbol_use(use_referenced, taken, name.position);
    }
    classify_inner_statement();
    bool misspelt = false;
    switch (curr_stmt_kind) {
    case stmtk_do:
    case stmtk_do_while:
    case stmtk_if_then:
    case stmtk_select_case: break;
    case stmtk_bad:
        misspelt = classify_misspelt(misspelt_heads);
        if (!misspelt) {
            return false;
        }
        break;
    case stmtk_if: // without its THEN
        error_at(msg_construct_name_can_be_given_to_do_select, stmt_pos);
        if (sets_something()) {
            return false;
        }
        curr_stmt_kind = stmtk_if_then;
        misspelt = true;
        break;
    default: error_at(msg_construct_name_can_be_given_to_do_select, stmt_pos); return false;
    }
    symbol *label = nullptr;
    if (taken || curr_stmt_kind == stmtk_where_construct) {
        add_loop_label();
    } else {
        label = define_label(name, lk_control, name.position);
        label_as_statement(label);
    }
    const int depth = construct_depth;
    const bool good = misspelt ? run_misspelt() : dispatch_statement();
    if (construct_depth > depth) {
        set_construct_name(name.atom, label);
    }
    return good;
}

} // namespace zf90
