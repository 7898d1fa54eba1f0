// The handlers of the control statements: IF in its forms, SELECT CASE, WHERE, the jumps, STOP, RETURN, and
// the names of constructs. They read their statement and build its part of the tree; conditions, selectors
// and case values stay as they were parsed until the statements of the unit are checked.
#include "constants/arithmetic.h"
#include "declarations/scopes.h"
#include "expressions/parser.h"
#include "il/constants.h"
#include "il/entries.h"
#include "il/types.h"
#include "source/token_helpers.h"
#include "statements/classify.h"
#include "statements/constructs.h"
#include "statements/handlers.h"
#include "statements/loop.h"

#include <cstring>

namespace zf90 {

namespace {

// ---- conditions

// Reads "(" and an expression, which is an error node if it could not be read. True if ")" is the current
// token then, also behind an expression in error; everything else has been reported.
bool parse_condition(expr_node *&condition, bool &failed) {
    condition = nullptr;
    failed = true;
    if (accept_token(tok_lparen, msg_expected_lparen, lex_signed)) {
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
        failed = true;
        error(msg_expected_rparen);
    }
    return false;
}

// The same with the ")", and the token behind it read in the mode. True if all was good.
bool parse_parenthesized(expr_node *&condition, std::uint32_t mode) {
    bool failed;
    if (!parse_condition(condition, failed)) {
        return false;
    }
    next_token(mode);
    return !failed;
}

// ---- labels

// Reads a list of labels in parentheses, and the token behind it. With `once`, a label that is repeated is
// entered once. False if something was reported.
bool parse_label_list(label_list_entry *&list, bool once) {
    list = nullptr;
    if (!accept_token(tok_lparen, msg_expected_lparen, lex_label)) {
        return false;
    }
    bool good = true;
    {
        const stop_at stops{tok_rparen, tok_comma};
        for (label_list_entry **end = &list;;) {
            symbol *s = read_label_reference(label_use_branch);
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
    const source_pos position = curr_token_pos;
    symbol *s = settled_reference();
    note_use(use_referenced, s, position);
    next_token(0);
    const type *t = type_of_data_name(s);
    if (t && t->type_code == tk_unknown) {
        if (const type *implicit = implicit_type_of(s)) {
            t = implicit;
        }
    }
    const bool is_constant = s->kind == sk_variable && entity_as<object>(s)->is_constant;
    if (t && t->type_code == tk_error) {
        return nullptr;
    }
    if (!t || is_constant || (t->type_code != tk_unknown && t != default_integer())) {
        error_at(msg_expression_must_be_variable_of_type_default_integer, position);
        return nullptr;
    }
    expr_node *node;
    if (s->kind == sk_variable) {
        node = new_expr_node(enk_object);
        node->object = entity_as<object>(s);
        node->type = node->object->type;
    } else {
        node = new_expr_node(enk_symbol); // it has no object yet
        node->symbol = s;
    }
    node->source_pos = position;
    return node;
}

// ---- statements within statements

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

// A label on a statement that ends a construct stands behind it.
void note_label_behind_construct() {
    if (curr_label_symbol) {
        note_label_position(curr_label_symbol, true, stmt_pos);
    }
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

// ---- IF

bool stmt_if() {
    check_reachable();
    next_token(0);
    expr_node *condition;
    bool failed;
    if (!parse_condition(condition, failed)) {
        return false;
    }
    statement *s = add_statement(stmk_if);
    s->expr = condition;
    const outer_statement outer;
    classify_inner_statement();
    if (curr_stmt_kind == stmtk_bad) {
        return false;
    }
    if (!can_depend_on_if(curr_stmt_kind)) {
        error_at(msg_invalid_dependent_statement_of_logical_if_ignored, stmt_pos);
        return false;
    }
    return run_dependent(cons_logical_if, s) && !failed;
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
        if (entry.second_branch) {
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
        if (entry.second_branch) {
            error_at(msg_else_has_already_appeared_for_corresponding_block_if, stmt_pos);
        }
        entry.second_branch = true;
        begin_branch(entry);
    }
    return true;
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
    check_reachable();
    next_token(0);
    expr_node *mask;
    bool failed;
    if (!parse_condition(mask, failed)) {
        return false;
    }
    statement *s = add_statement(stmk_where);
    s->expr = mask;
    const outer_statement outer;
    classify_inner_statement();
    if (curr_stmt_kind == stmtk_bad) {
        return false;
    }
    if (curr_stmt_kind != stmtk_assignment) {
        error_at(msg_invalid_dependent_statement_of_where_statement_ignored, stmt_pos);
        return false;
    }
    return run_dependent(cons_where_stmt, s) && !failed;
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

bool stmt_elsewhere() {
    next_token(0);
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
    next_token(0);
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

// The ranges of a CASE in parentheses, and the token behind them.
bool parse_case_ranges(case_range *&list) {
    list = nullptr;
    if (!accept_token(tok_lparen, msg_expected_lparen, lex_signed)) {
        return false;
    }
    bool good = true;
    const stop_at stops{tok_rparen, tok_comma};
    for (case_range **end = &list;;) {
        *end = new_case_range();
        good = parse_case_range(*end) && good;
        end = &(*end)->next;
        if (curr_token != tok_comma) {
            break;
        }
        next_token(lex_signed);
    }
    if (!good && curr_token != tok_rparen) {
        return false;
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
        } else {
            place_branch_label();
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

// ---- END DO

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
        return true;
    }
    if (!name.atom && is_named(construct_stack[loop])) {
        reported = true;
        error_at(msg_end_do_construct_name_does_not_match_label, stmt_pos);
    }
    close_do_to(loop, reported);
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
    if (taken) {
        error_at(msg_label_has_already_been_defined, name.position);
        note_symbol_use(use_referenced, taken, name.position);
    }
    classify_inner_statement();
    switch (curr_stmt_kind) {
    case stmtk_do:
    case stmtk_do_while:
    case stmtk_if_then:
    case stmtk_select_case: break;
    case stmtk_bad: return false;
    default: error_at(msg_construct_name_can_be_given_to_do_select, stmt_pos); return false;
    }
    symbol *label = nullptr;
    if (taken) {
        add_loop_label();
    } else {
        label = define_label(name, lk_control, name.position);
        label_as_statement(label);
    }
    const int depth = construct_depth;
    const bool good = dispatch_statement();
    if (construct_depth > depth) {
        set_construct_name(name.atom, label);
    }
    return good;
}

} // namespace zf90
