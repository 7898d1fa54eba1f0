// The open executable constructs of the units being read, and the place of each new statement in the tree:
// the branch of an IF, the body of a loop, the list of a CASE. Also whether control can reach the next
// statement, and how labelled loops end. The handlers of executable statements work through this file; the
// beginning and the end of a unit's body push and pop its bottom entry.
#pragma once

#include "statements/labels.h"

namespace zf90 {

enum construct_kind : std::uint8_t {
    cons_routine,    // the bottom entry of a unit: its stmk_block
    cons_do,         // DO
    cons_do_while,   // DO WHILE
    cons_logical_if, // the one statement of a logical IF
    cons_block_if,   // IF ... THEN
    cons_where_stmt, // the one statement of a WHERE statement
    cons_where,      // WHERE construct
    cons_select,     // SELECT CASE
    cons_case        // one CASE block, on top of cons_select
};

inline bool holds_one_statement(construct_kind kind) {
    return kind == cons_logical_if || kind == cons_where_stmt;
}

enum reachability : std::uint8_t {
    reachable = 0,
    not_reachable = 1,
    not_reachable_reported = 2 // not reachable, and the warning has been given
};

struct construct_entry {
    construct_kind kind;
    bool second_branch;  // ELSE or ELSEWHERE seen; of a SELECT: DEFAULT seen
    bool label_reported; // the terminal label of a DO was already reported in error
    bool end_in_doubt;   // what was reported may include its END: that it is missing is no other mistake
    bool else_in_doubt;  // the same of an ELSE, which may have been meant as something else
    reachability reach_at_start;
    // 1; 0 once the end of some branch can be reached, or an EXIT leaves the loop.
    reachability reach_at_end;
    reachability reach_outside;       // cons_routine: `reach_state` of the unit around it
    struct statement *statement;      // of the construct
    struct statement *tail;           // the last statement in the current slot, null if not known
    source_pos start_pos;             // of the first statement
    std::uint32_t construct_number;   // within the outermost unit; each branch begun gets a new one
    std::uint32_t first_number;       // that of the first branch
    symbol *end_label;                // the terminal label of a DO, or null
    int outer_with_label;             // the next entry outwards with the same `end_label`, -1 if none
    int loop;                         // the innermost loop at this place, which may be this one; -1 if none
    struct statement *top_label_stmt; // the stmk_label with the construct's name, or of the loop; or null
    const struct atom *refused_name;  // a construct name that was already taken; that has been reported
};

// ---- the stack. Pointers to entries last until the next push.

extern construct_entry *construct_stack;
extern int construct_depth;      // index of the top, -1 if empty
extern bool constructs_in_doubt; // a refused statement of the unit has been taken for the head of one
extern reachability reach_state;
extern statement *curr_statement; // the latest stmk_label made for the current statement

inline construct_entry &top_construct() { return construct_stack[construct_depth]; }

// Empties the stack and restarts the numbering of constructs: before each outermost unit.
void begin_construct_state();

// Opens a construct at `stmt_pos`. The bottom entry of a unit sets `reach_state` to reachable.
void push_construct(construct_kind kind, statement *s);

// Opens one whose head was refused: what is known of it is its kind. A guess, so its END need not come.
void push_refused_construct(construct_kind kind, il_statement_kind statement_kind);

// An END that was refused may be that of the innermost construct.
void doubt_innermost_end();

// Closes the top one, and settles `reach_state` for what follows it. Closing the bottom entry of a unit
// gives back the state of the unit around it.
void pop_construct();

// At a unit's END: reports the constructs that were never ended, from the inside out, and pops them. The
// bottom entry stays.
void close_open_constructs();

// ---- statements

// Makes a statement at `stmt_pos` and puts it at the end of the top entry's current slot. In a unit without a
// body it stands on no list.
statement *add_statement(il_statement_kind kind);

// What governs the statement may have been meant for something else: it is checked, but what its type should
// be is not told.
void give_up_condition(statement *s);

// Warning 152 for the first statement of a dead stretch. Called first by every executable handler.
void check_reachable();

// Puts the stmk_label of a label into the statement list, and notes it in the label and in `curr_statement`.
statement *label_as_statement(symbol *label);

// The stmk_label at the top of a loop without a name, for `curr_statement`. Tests reachability first, for the
// DO that follows. The statement loop calls it ahead of the handlers of DO and DO WHILE.
statement *add_loop_label();

// ---- branches

void note_branch_end(construct_entry &entry); // before an ELSE and the like
void begin_branch(construct_entry &entry);    // at ELSE, ELSE IF, ELSEWHERE and CASE

// ---- names of constructs

// The optional name behind a closing or middle statement's words.
struct construct_name {
    const struct atom *atom = nullptr; // null: no name was written
    symbol *label = nullptr;
    bool reported = false; // it is the name of no construct, which has been reported
};

// Reads it if the current token is a name. Error 463 for a name that is no construct's.
construct_name parse_construct_name();

// Whether the construct has been given this name.
bool has_construct_name(const construct_entry &entry, const construct_name &name);
bool is_named(const construct_entry &entry);

// For the closing and middle statements of a construct: makes the nearest one of that kind the top, error 322
// if others were open within it. False with error 425, and nothing changed, if there is none. The name is
// compared (errors 58 and 209, which don't matter for the result).
bool close_construct(construct_kind kind, const construct_name &name);

// ---- labelled loops

// Open loops as indexes into the stack, -1 if there is none: the innermost one, the one of that name, the
// innermost one that ends at this label.
int innermost_loop();
int loop_of_name(const construct_name &name);
int loop_of_label(const symbol *label);

// Gives the DO on top its terminal label; the construct on top its name, whose label is null if the name was
// refused.
void set_end_label(symbol *label);
void set_construct_name(const struct atom *name, symbol *label);

// The nearest open construct of a kind in the current unit, -1 if there is none.
int nearest_construct(construct_kind kind);

// The open construct of that number, -1 if there is none.
int construct_of_number(std::uint32_t number);

// After each labelled statement other than END DO: closes the loops that end there.
void check_do_termination(symbol *label);

// Closes the loop and all that is open within it: errors 322, and 187 unless the statement has its label or
// `quiet` is set.
void close_do_to(int entry, bool quiet);

} // namespace zf90
