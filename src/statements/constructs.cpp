// The stack of open constructs, and what is decided by it.
#include "statements/constructs.h"

#include "declarations/scopes.h"
#include "il/arena.h"
#include "il/constants.h"
#include "il/entries.h"
#include "source/tokens.h"
#include "statements/classify.h"
#include "statements/loop.h"

#include <cassert>

namespace zf90 {

construct_entry *construct_stack;
int construct_depth = -1;
bool constructs_in_doubt;
reachability reach_state;
statement *curr_statement;

namespace {

constexpr int first_stack_size = 30;

int construct_stack_size;
std::uint32_t next_construct_number = 1;

bool is_loop(construct_kind kind) { return kind == cons_do || kind == cons_do_while; }

// Where the next statement of a construct goes.
statement **slot_of(const construct_entry &entry) {
    statement *s = entry.statement;
    switch (s->kind) {
    case stmk_if: return entry.second_branch ? &s->else_statement : &s->then_statement;
    case stmk_where: return entry.second_branch ? &s->elsewhere_assignment : &s->where_assignment;
    case stmk_while:
    case stmk_select: return &s->body_statement;
    case stmk_ido:
    case stmk_fdo: return &s->loop_statement;
    case stmk_case: return &s->case_statements;
    default: assert(s->kind == stmk_block); return &s->statements;
    }
}

bool ends_reachability(il_statement_kind kind) {
    switch (kind) {
    case stmk_goto:
    case stmk_return:
    case stmk_iarith_if:
    case stmk_farith_if:
    case stmk_assigned_goto:
    case stmk_alt_return:
    case stmk_stop:
    case stmk_exit:
    case stmk_cycle: return true;
    default: return false; // a computed GO TO and PAUSE may fall through
    }
}

int loop_around(int loop) { return loop > 0 ? construct_stack[loop - 1].loop : -1; }

// Whether a loop is left by a jump only: a DO without control, or a DO WHILE of a constant true.
bool is_endless(const construct_entry &entry) {
    if (entry.kind == cons_do) {
        return !entry.statement->do_loop;
    }
    if (entry.kind != cons_do_while) {
        return false;
    }
    const expr_node *condition = entry.statement->expr;
    return condition && condition->node_kind == enk_constant && condition->constant->repr_kind == ck_value &&
           condition->constant->type->type_code == tk_logical && integer_value_of(condition->constant) != 0;
}

// Whether control can pass a construct without entering any of its branches.
bool can_be_passed(const construct_entry &entry) {
    switch (entry.kind) {
    case cons_do:
    case cons_do_while: return !is_endless(entry);
    case cons_logical_if: return true;
    case cons_block_if: return !entry.statement->else_statement;
    case cons_select: return !entry.second_branch;
    default: return false;
    }
}

statement *place_label(label *l) {
    statement *s = add_statement(stmk_label);
    s->label = l;
    if (l->kind == lk_executable || l->kind == lk_else_or_elseif || l->kind == lk_control) {
        l->exec_stmt = s;
    }
    curr_statement = s;
    return s;
}

bool name_was_refused(const struct atom *name) {
    for (int i = construct_depth; i >= 0 && construct_stack[i].kind != cons_routine; --i) {
        if (construct_stack[i].refused_name == name) {
            return true;
        }
    }
    return false;
}

bool is_end(statement_kind kind) {
    return kind == stmtk_end_if || kind == stmtk_end_select || kind == stmtk_end_where;
}

// The construct is ended: the END may be that of the next one of its kind.
void pass_doubt_on(int ended) {
    const construct_entry &entry = construct_stack[ended];
    if (!entry.end_in_doubt) {
        return;
    }
    for (int i = ended - 1; i >= 0 && construct_stack[i].kind != cons_routine; --i) {
        construct_entry &outer = construct_stack[i];
        if (outer.kind == entry.kind || (is_loop(outer.kind) && is_loop(entry.kind))) {
            outer.end_in_doubt = true;
            break;
        }
    }
}

// A WHERE that is not ended as it should be: which statements it was to hold is not known.
void give_up_mask(const construct_entry &entry) {
    if (entry.kind == cons_where) {
        give_up_condition(entry.statement);
    }
}

bool ends_here(const construct_entry &entry) {
    return entry.end_label && entry.end_label == curr_label_symbol;
}

} // namespace

void begin_construct_state() {
    construct_depth = -1;
    next_construct_number = 1;
    constructs_in_doubt = false;
    reach_state = reachable;
    curr_statement = nullptr;
}

void push_construct(construct_kind kind, statement *s) {
    const reachability outside = reach_state;
    if (kind == cons_routine) {
        reach_state = reachable;
    }
    if (construct_depth + 1 == construct_stack_size) {
        const int size = construct_stack_size == 0 ? first_stack_size : 2 * construct_stack_size;
        construct_stack = static_cast<construct_entry *>(sys_realloc(
            construct_stack, sizeof(construct_entry) * static_cast<unsigned>(construct_stack_size),
            sizeof(construct_entry) * static_cast<unsigned>(size)));
        construct_stack_size = size;
    }
    int loop = -1;
    if (is_loop(kind)) {
        loop = construct_depth + 1;
    } else if (kind != cons_routine && construct_depth >= 0) {
        loop = top_construct().loop;
    }
    ++construct_depth;
    construct_stack[construct_depth] = {.kind = kind,
                                        .second_branch = false,
                                        .label_reported = false,
                                        .end_in_doubt = false,
                                        .else_in_doubt = false,
                                        .reach_at_start = reach_state,
                                        .reach_at_end = not_reachable,
                                        .reach_outside = outside,
                                        .statement = s,
                                        .tail = nullptr,
                                        .start_pos = stmt_pos,
                                        .construct_number = next_construct_number,
                                        .first_number = next_construct_number,
                                        .end_label = nullptr,
                                        .outer_with_label = -1,
                                        .loop = loop,
                                        .top_label_stmt = nullptr,
                                        .refused_name = nullptr};
    ++next_construct_number;
    if (is_loop(kind)) {
        reach_state = reachable;
    }
}

void push_refused_construct(construct_kind kind, il_statement_kind statement_kind) {
    check_reachable();
    statement *top = curr_statement;
    statement *s = add_statement(statement_kind);
    if (kind == cons_do) {
        s->do_loop = new_do_loop();
        for (expr_node **part :
             {&s->do_loop->variable, &s->do_loop->initial_value, &s->do_loop->final_value}) {
            *part = new_error_node();
        }
    } else {
        s->expr = new_error_node();
    }
    push_construct(kind, s);
    top_construct().end_in_doubt = true;
    constructs_in_doubt = true;
    if (is_loop(kind)) {
        top_construct().top_label_stmt = top;
    }
}

void doubt_innermost_end() {
    for (int i = construct_depth; i >= 0 && construct_stack[i].kind != cons_routine; --i) {
        construct_stack[i].end_in_doubt = true;
        if (construct_stack[i].kind != cons_case) { // it ends with its SELECT
            break;
        }
    }
}

void note_branch_end(construct_entry &entry) {
    if (reach_state == reachable) {
        entry.reach_at_end = reachable;
    }
}

void begin_branch(construct_entry &entry) {
    reach_state = entry.reach_at_start;
    entry.construct_number = next_construct_number++;
    // The label of an ELSE stands first in the branch; those of CASE and ELSEWHERE are in the list already.
    if (curr_label_symbol && entity_as<label>(curr_label_symbol)->kind == lk_else_or_elseif) {
        note_label_position(curr_label_symbol, true, stmt_pos);
        label_as_statement(curr_label_symbol);
    }
}

void pop_construct() {
    construct_entry &entry = top_construct();
    // The end of a loop's body leads back to its top.
    if (!is_loop(entry.kind)) {
        note_branch_end(entry);
    }
    if (entry.reach_at_end == reachable || (entry.reach_at_start == reachable && can_be_passed(entry))) {
        reach_state = reachable;
    } else if (entry.reach_at_start == not_reachable_reported) {
        reach_state = not_reachable_reported;
    } else {
        reach_state = not_reachable;
    }
    if (entry.statement->kind == stmk_block && entry.tail) {
        entry.statement->last_statement = entry.tail;
    }
    if (entry.kind == cons_routine) {
        reach_state = entry.reach_outside;
    }
    --construct_depth;
}

void close_open_constructs() {
    while (construct_depth >= 0 && top_construct().kind != cons_routine) {
        const construct_entry &entry = top_construct();
        if (entry.end_in_doubt) {
            excuse_label(entry.end_label);
        } else if (!entry.label_reported && entry.kind != cons_case) {
            error_at(entry.kind == cons_block_if ? msg_block_if_statement_was_never_terminated
                                                 : msg_do_statement_was_never_terminated,
                     entry.start_pos);
            excuse_label(entry.end_label);
        }
        // Nothing is known of where the loop ends, so what its body does to the variable is not judged.
        if (entry.kind == cons_do) {
            entry.statement->do_loop = nullptr;
        }
        give_up_mask(entry);
        pop_construct();
    }
}

void give_up_condition(statement *s) {
    expr_node *const condition = s->expr;
    s->expr = new_error_node();
    s->expr->next = condition;
}

statement *add_statement(il_statement_kind kind) {
    if (kind == stmk_label || kind == stmk_fentry) {
        reach_state = reachable;
    }
    statement *s = new_statement(kind);
    if (construct_depth < 0) {
        return s;
    }
    construct_entry &entry = top_construct();
    statement **slot = slot_of(entry);
    if (!*slot) {
        *slot = s;
    } else if (entry.statement->kind == stmk_block) {
        if (!entry.tail) {
            for (entry.tail = *slot; entry.tail->next;) {
                entry.tail = entry.tail->next;
            }
        }
        entry.tail->next = s;
    } else {
        // A slot holds one statement; a second one makes it a block.
        statement *block = *slot;
        if (block->kind != stmk_block) {
            block = new_statement(stmk_block);
            block->statements = *slot;
            block->last_statement = *slot;
            *slot = block;
        }
        block->last_statement->next = s;
        block->last_statement = s;
    }
    entry.tail = s;
    if (ends_reachability(kind) && reach_state == reachable) {
        reach_state = not_reachable; // a dead stretch goes on behind a jump within it
    }
    return s;
}

void check_reachable() {
    if (reach_state == not_reachable) {
        warning_at(msg_statement_is_unreachable, stmt_pos);
        reach_state = not_reachable_reported;
    }
}

statement *label_as_statement(symbol *label) { return place_label(entity_as<struct label>(label)); }

statement *add_loop_label() {
    check_reachable();
    return place_label(new_loop_label());
}

construct_name parse_construct_name() {
    construct_name name;
    if (curr_token != tok_name) {
        return name;
    }
    name.atom = curr_name.atom;
    symbol *s = lookup_current();
    if (s && s->kind == sk_label) {
        name.label = s;
        note_use(use_referenced, s, curr_name.position);
    } else if (!name_was_refused(name.atom)) {
        error_at(msg_undefined_construct_name, curr_name.position);
        name.reported = true;
    }
    next_token(name.reported ? lex_peek : 0u); // the rest is passed over then
    return name;
}

bool is_named(const construct_entry &entry) {
    return entry.refused_name ||
           (entry.top_label_stmt && entry.top_label_stmt->label->source_corresp.name != nullptr);
}

bool has_construct_name(const construct_entry &entry, const construct_name &name) {
    if (entry.refused_name && entry.refused_name == name.atom) {
        return true;
    }
    return name.label && entry.top_label_stmt && entry.top_label_stmt->label == entity_as<label>(name.label);
}

bool close_construct(construct_kind kind, const construct_name &name) {
    const int found = nearest_construct(kind);
    if (found < 0) {
        error_at(msg_this_statement_is_not_allowed_inside_current_executable, stmt_pos);
        if (is_end(curr_stmt_kind)) {
            doubt_innermost_end();
        }
        return false;
    }
    bool reported = false;
    while (construct_depth > found) {
        const bool expected =
            top_construct().end_in_doubt || (kind == cons_select && top_construct().kind == cons_case);
        if (!expected && !reported) {
            reported = true;
            error_at(msg_executable_constructs_are_incorrectly_nested, stmt_pos);
        }
        give_up_mask(top_construct());
        pop_construct();
    }
    if (is_end(curr_stmt_kind)) {
        pass_doubt_on(found);
    }
    if (name.reported) {
        return true;
    }
    const construct_entry &entry = top_construct();
    if (name.atom) {
        if (!has_construct_name(entry, name)) {
            error_at(msg_name_does_not_match_construct_name_in_construct, curr_token_pos);
        }
    } else if (kind != cons_where && curr_stmt_kind != stmtk_case && curr_stmt_kind != stmtk_else &&
               curr_stmt_kind != stmtk_else_if && is_named(entry)) {
        error_at(msg_expected_construct_name, curr_token_pos);
    }
    return true;
}

int nearest_construct(construct_kind kind) {
    for (int i = construct_depth; i >= 0 && construct_stack[i].kind != cons_routine; --i) {
        if (construct_stack[i].kind == kind) {
            return i;
        }
    }
    return -1;
}

int construct_of_number(std::uint32_t number) {
    int low = 0;
    int high = construct_depth;
    while (low <= high) {
        const int middle = low + (high - low) / 2;
        const std::uint32_t there = construct_stack[middle].construct_number;
        if (there == number) {
            return middle;
        }
        if (there < number) {
            low = middle + 1;
        } else {
            high = middle - 1;
        }
    }
    return -1;
}

int innermost_loop() { return construct_depth < 0 ? -1 : top_construct().loop; }

int loop_of_name(const construct_name &name) {
    if (name.label) {
        // The name of an open loop knows the loop's number, which does not change.
        const int i = construct_of_number(name.label->branch_construct);
        if (i >= 0 && is_loop(construct_stack[i].kind) && has_construct_name(construct_stack[i], name)) {
            return i;
        }
    }
    // A name that was refused leads to its loop all the same.
    for (int i = innermost_loop(); i >= 0; i = loop_around(i)) {
        if (has_construct_name(construct_stack[i], name)) {
            return i;
        }
    }
    return -1;
}

int loop_of_label(const symbol *label) {
    if ((label->aux2 & lf_ends_loop) == 0) {
        return -1;
    }
    for (int i = innermost_loop(); i >= 0; i = loop_around(i)) {
        if (construct_stack[i].end_label == label) {
            return i;
        }
    }
    return -1;
}

void set_end_label(symbol *label) {
    construct_entry &entry = top_construct();
    assert(entry.kind == cons_do || entry.kind == cons_do_while);
    entry.outer_with_label = loop_of_label(label);
    entry.end_label = label;
    label->aux2 |= lf_ends_loop;
}

void set_construct_name(const struct atom *name, symbol *label) {
    construct_entry &entry = top_construct();
    if (label) {
        entry.top_label_stmt = curr_statement;
        label->branch_construct = entry.construct_number;
    } else {
        entry.refused_name = name;
    }
}

void check_do_termination(symbol *label) {
    if (curr_stmt_kind == stmtk_end_do) {
        return;
    }
    const int inner = loop_of_label(label);
    if (inner < 0) {
        return;
    }
    int outermost = inner;
    while (construct_stack[outermost].outer_with_label >= 0) {
        outermost = construct_stack[outermost].outer_with_label;
    }
    switch (curr_stmt_kind) {
    case stmtk_continue:
        if (outermost != inner) {
            warning_at(msg_use_of_nonblock_do_construct_is_obsolescent, stmt_pos);
        }
        break;
    case stmtk_cycle:
    case stmtk_end:
    case stmtk_end_function:
    case stmtk_end_program:
    case stmtk_end_subroutine:
    case stmtk_exit:
    case stmtk_goto:
    case stmtk_assigned_goto:
    case stmtk_arithmetic_if:
    case stmtk_return:
    case stmtk_stop: error_at(msg_invalid_terminal_statement_of_do_loop, stmt_pos); break;
    default:
        // A label that can't end a loop was reported when it was defined.
        if (entity_as<struct label>(label)->kind == lk_executable) {
            warning_at(msg_use_of_nonblock_do_construct_is_obsolescent, stmt_pos);
        }
        break;
    }
    close_do_to(outermost, false);
}

void close_do_to(int entry, bool quiet) {
    bool reported = false;
    while (construct_depth > entry) {
        const construct_entry &inner = top_construct();
        if (!ends_here(inner) && !inner.end_in_doubt && !reported) {
            reported = true;
            error_at(msg_executable_constructs_are_incorrectly_nested, stmt_pos);
        }
        if (!ends_here(inner)) {
            excuse_label(inner.end_label);
        }
        give_up_mask(inner);
        pop_construct();
    }
    const construct_entry &loop = construct_stack[entry];
    if (loop.end_label && !ends_here(loop)) {
        if (!quiet && !loop.label_reported) {
            error_at(msg_end_do_label_does_not_match_label_on, stmt_pos);
        }
        excuse_label(loop.end_label);
    }
    pass_doubt_on(entry);
    pop_construct();
}

} // namespace zf90
