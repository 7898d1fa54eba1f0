// The statement loop: one turn for each line of text, one within it for each statement of the line. The order
// of statements rests on one number, `stmt_phase`, and the classes and limits of statements/kinds.def: each
// statement moves its unit up to its class, and is refused beyond its limit. Nested units keep no phase of
// their own: behind the END of an inner one the phase is ph_start, where only the next inner one or the END
// of the outer one may come.
#include "statements/loop.h"

#include "declarations/derived_types.h"
#include "declarations/names_in_error.h"
#include "declarations/symbols.h"
#include "declarations/units.h"
#include "driver/driver.h"
#include "driver/options.h"
#include "il/entries.h"
#include "source/files.h"
#include "source/token_helpers.h"
#include "statements/constructs.h"
#include "statements/handlers.h"
#include "statements/misspelt.h"

#include <cstring>

namespace zf90 {

statement_phase stmt_phase;
bool in_type_def;
bool first_stmt_on_line;
symbol *curr_label_symbol;

namespace {

// What is open within the outermost unit.
struct unit_progress {
    bool header_seen;          // a header or an implied main program has begun the unit
    int contains_depth;        // hosts of which CONTAINS has been seen, and not yet the END
    bool in_module_procedures; // the last statement of an INTERFACE block was MODULE PROCEDURE; the block is
                               // not counted in interface_depth then
    bool type_head_open;       // in a derived-type definition, before the first component
    bool component_lost;       // a line of the definition was no statement
    bool interface_refused;    // the INTERFACE of a block in BLOCK DATA
    bool head_reported;        // a statement in the head of the INTERFACE block was out of order
    bool in_lost_body;         // behind the head of a contained procedure that could not be read
    bool lost_body_nests;      // that one has procedures of its own
};

unit_progress unit;

constexpr int class_of_headers = 1;

bool is_header(statement_kind kind) { return statement_orders[kind].order_class == class_of_headers; }

// The END of a program unit, as against END INTERFACE.
bool is_unit_end(statement_kind kind) {
    return statement_orders[kind].order_class == ph_end && kind != stmtk_end_interface;
}

bool in_interface_block() { return interface_depth > 0 || unit.in_module_procedures; }

// The level of scopes that belongs to a program unit: the current one, or the one around a type definition.
std::int32_t unit_level() {
    const bool own_routine = curr_scope_depth < 1 || unit_kind_of(curr_scope_depth) != uk_none;
    return own_routine ? curr_scope_depth : curr_scope_depth - 1;
}

bool refuse(error_code code) {
    error_at(code, stmt_pos);
    return false;
}

bool out_of_order() { return refuse(msg_statement_out_of_order_ignored); }

// ---- the label

// What may stand behind a label: a blank, or the first letter of the statement right away.
bool may_follow_label(char c) {
    switch (c) {
    case '\0':
    case ' ':
    case '\t':
    case ';':
    case '!':
    case '&': return true;
    default: return char_fold(c) >= 'A' && char_fold(c) <= 'Z';
    }
}

// The name is null for a statement without a label.
name_locator read_label() {
    if (fixed_form_input && first_stmt_on_line) {
        return stmt_label;
    }
    skip_to_token();
    if (*line_cursor < '0' || *line_cursor > '9') {
        return {};
    }
    // Digits that are none are left for the classification to report.
    char *const start = line_cursor;
    const bool is_label =
        next_token(lex_peek | lex_label_digits) == tok_label && may_follow_label(*line_cursor);
    line_cursor = start;
    if (!is_label) {
        return {};
    }
    next_token(lex_label_digits);
    return curr_name;
}

bool is_zero_label(const name_locator &label) {
    return label.atom->length == 1 && label.atom->spelling[0] == '0';
}

// Looks the label up. False, after error 306, if it is the label of another statement already. A label of
// zeros has had its message.
bool find_label(const name_locator &label) {
    symbol *const s = lookup_label(label);
    if (s && (s->aux2 & lf_defined) != 0) {
        if (!is_zero_label(label)) {
            error_at(msg_label_has_already_been_defined, label.position);
            note_symbol_use(use_referenced, s, label.position);
        }
        return false;
    }
    curr_label_symbol = s;
    return true;
}

label_kind label_kind_of_statement() {
    switch (curr_stmt_kind) {
    case stmtk_else:
    case stmtk_else_if: return lk_else_or_elseif;
    case stmtk_end:
    case stmtk_end_program: return lk_executable;
    case stmtk_end_function:
    case stmtk_end_subroutine: return interface_depth > 0 ? lk_specification : lk_executable;
    case stmtk_format: return lk_format;
    case stmtk_bad: return lk_unknown;
    default: return is_executable_kind(curr_stmt_kind) ? lk_executable : lk_specification;
    }
}

void define_statement_label(const name_locator &label) {
    const label_kind kind = label_kind_of_statement();
    if (kind == lk_unknown) {
        reach_state = reachable; // control may come here, whatever was meant
    }
    curr_label_symbol = define_label(label, kind, stmt_pos);
    if (curr_label_symbol && kind == lk_executable && curr_stmt_kind != stmtk_end_if) {
        label_as_statement(curr_label_symbol);
    }
}

// ---- the order of statements

void leave_type() {
    finish_unclosed_type();
    unit.type_head_open = false;
    in_type_def = false;
}

// At the first executable statement of a unit, its CONTAINS or its END.
void end_specification_part() {
    if (in_type_def) {
        error_at(msg_missing_end_type_statement, stmt_pos);
        leave_type();
    }
    end_of_specification();
    spec_part_over = true;
}

// An END in the head of an INTERFACE block, where END INTERFACE is missing: it closes the block along with
// the unit that holds it. Statements ahead of it that were no bodies have shown the same mistake.
void close_interface_block() {
    if (!unit.head_reported) {
        out_of_order();
    }
    if (unit.in_module_procedures) {
        unit.in_module_procedures = false;
    } else {
        --interface_depth;
    }
}

// ---- the body of a contained procedure of which the head could not be read

// The name of the procedure, the last one in front of its list, if it has one. False if the statement, a bad
// one or a type declaration, does not look like the head of a procedure.
bool find_lost_name(name_locator &name) {
    const saved_place place;
    line_cursor = stmt_start;
    int words = 0;
    while (next_token(0) == tok_name) {
        name = curr_name;
        ++words;
        if (words == 1 && curr_stmt_kind == stmtk_type_declaration && *line_cursor == '(') {
            next_token(lex_peek);
            skip_balanced();
        }
    }
    if (curr_stmt_kind == stmtk_type_declaration) {
        return curr_token == tok_lparen && words > 2; // the type, a word for FUNCTION, and the name
    }
    return curr_token == tok_lparen || (curr_token == tok_eos && words > 1);
}

// What follows, up to the END, is passed over, and so are the references to the procedure.
void enter_lost_body() {
    name_locator name{};
    if (unit.contains_depth == 0 || in_interface_block() || !find_lost_name(name)) {
        return;
    }
    unit.in_lost_body = true;
    unit.lost_body_nests = false;
    curr_name = name;
    if (!lookup_at_depth(curr_scope_depth)) {
        make_quiet(new_symbol(sk_undetermined, name, curr_scope_depth));
    }
}

program_unit_kind unit_of_end(statement_kind kind) {
    switch (kind) {
    case stmtk_end_program: return uk_program;
    case stmtk_end_subroutine: return uk_subroutine;
    case stmtk_end_function: return uk_function;
    case stmtk_end_block_data: return uk_block_data;
    default: return uk_module;
    }
}

// Whether the END that is read is not that of the lost body but that of the unit around it.
bool ends_unit_around() {
    switch (curr_stmt_kind) {
    case stmtk_end_function:
    case stmtk_end_subroutine: break;
    default: return true;
    }
    if (unit_kind_of(unit_level()) != unit_of_end(curr_stmt_kind)) {
        return false;
    }
    const saved_place place;
    line_cursor = stmt_resume;
    return next_token(0) == tok_name && curr_routine()->source_corresp.name == curr_name.atom;
}

// In the lost body: whether the statement is passed over.
bool belongs_to_lost_body() {
    switch (statement_orders[curr_stmt_kind].order_class) {
    case class_of_headers:
        unit.in_lost_body = unit.lost_body_nests; // otherwise its END is missing, or there was no procedure
        return false;
    case ph_end:
        if (curr_stmt_kind == stmtk_end_interface) {
            return true;
        }
        unit.in_lost_body = false;
        return !ends_unit_around();
    case ph_contains: unit.lost_body_nests = true; return true;
    default: unit.lost_body_nests = unit.lost_body_nests || curr_stmt_kind == stmtk_interface; return true;
    }
}

// From ph_start, once the outermost unit has begun. True if the phase then is the statement's.
bool enter_from_start() {
    if (unit.in_lost_body && belongs_to_lost_body()) {
        return false;
    }
    switch (statement_orders[curr_stmt_kind].order_class) {
    case 0: return true;
    case class_of_headers: stmt_phase = ph_header; return true;
    case ph_end: break;
    default:
        unit.head_reported = in_interface_block();
        if (curr_stmt_kind == stmtk_type_declaration) {
            enter_lost_body();
        }
        return out_of_order();
    }
    stmt_phase = ph_end;
    if (curr_stmt_kind == stmtk_end_interface) {
        return true;
    }
    if (in_interface_block()) {
        close_interface_block();
        if (in_interface_block() || unit.contains_depth > 0) {
            stmt_phase = ph_start;
        }
    } else {
        --unit.contains_depth;
    }
    return true;
}

// Moves the phase up to the statement's class.
bool climb() {
    const int order_class = statement_orders[curr_stmt_kind].order_class;
    for (;;) {
        switch (stmt_phase) {
        case ph_start:
            if (order_class == 0) {
                if (curr_stmt_kind == stmtk_bad && !unit.in_lost_body) {
                    enter_lost_body();
                }
                return true;
            }
            if (unit.header_seen) {
                return enter_from_start();
            }
            stmt_phase = ph_header;
            break;
        case ph_header:
            if (order_class < ph_use) {
                return true;
            }
            if (!unit.header_seen) {
                implied_program(stmt_pos);
                unit.header_seen = true;
            }
            stmt_phase = ph_use;
            break;
        case ph_use:
            if (order_class <= ph_use) {
                return true;
            }
            stmt_phase = ph_implicit;
            break;
        case ph_implicit:
            if (order_class < ph_specification) {
                return true;
            }
            stmt_phase = ph_specification;
            break;
        case ph_specification:
            if (order_class < ph_execution) {
                return true;
            }
            end_specification_part();
            stmt_phase = ph_execution;
            break;
        case ph_execution:
            if (order_class < ph_contains) {
                return true;
            }
            stmt_phase = ph_contains;
            break;
        case ph_contains:
            if (order_class < ph_end) {
                return true;
            }
            stmt_phase = in_interface_block() || unit.contains_depth > 0 ? ph_start : ph_end;
            return true;
        case ph_end: // the outermost unit has been closed, on this line
            return order_class == 0 ? true : out_of_order();
        }
    }
}

// What may stand in a derived-type definition. A line that is no statement has nothing to answer for here.
bool is_allowed_in_type() {
    switch (curr_stmt_kind) {
    case stmtk_end_type:
    case stmtk_private:
    case stmtk_sequence:
    case stmtk_type_declaration:
    case stmtk_include:
    case stmtk_bad: return true;
    default: return false;
    }
}

void open_interface() {
    ++interface_depth;
    unit.in_module_procedures = false;
    unit.head_reported = false;
    stmt_phase = ph_start;
}

bool check_order() {
    if (unit.interface_refused && curr_stmt_kind == stmtk_subprogram) { // a body
        unit.interface_refused = false;
        curr_row().current_interface = nullptr;
        open_interface();
    }
    if (unit.in_lost_body && stmt_phase == ph_start && curr_stmt_kind == stmtk_end_interface) {
        return false;
    }
    if (stmt_phase > statement_orders[curr_stmt_kind].order_limit ||
        (curr_stmt_kind == stmtk_end_interface && !in_interface_block())) {
        return out_of_order();
    }
    if (!climb()) {
        return false;
    }
    if (!in_type_def || is_allowed_in_type()) {
        return true;
    }
    refuse(msg_statement_not_allowed_in_type_definition);
    if (curr_stmt_kind != stmtk_type_definition && curr_stmt_kind != stmtk_interface) {
        return false;
    }
    leave_type(); // END TYPE is missing
    return true;
}

// ---- what each kind of unit may hold

// What else a unit must not hold besides what its kind forbids to all.
bool check_executable(program_unit_kind u) {
    switch (u) {
    case uk_subroutine:
    case uk_function:
        return interface_depth > 0 ? refuse(msg_statement_not_allowed_in_interface_bodies) : true;
    case uk_block_data: return refuse(msg_statement_not_allowed_in_block_data_subprograms);
    case uk_module: return refuse(msg_statement_not_allowed_in_module_subprograms);
    default: return true;
    }
}

// CONTAINS and ENTRY: not in an interface body, nor in an internal procedure.
bool check_not_nested(program_unit_kind u) {
    if (u != uk_subroutine && u != uk_function) {
        return true;
    }
    if (interface_depth > 0) {
        return refuse(msg_statement_not_allowed_in_interface_bodies);
    }
    if (unit_level() > 1 && unit_kind_of(unit_level() - 1) != uk_module) {
        return refuse(msg_statement_not_allowed_in_internal_subprograms);
    }
    return true;
}

bool check_not_block_data(program_unit_kind u) {
    return u == uk_block_data ? refuse(msg_statement_not_allowed_in_block_data_subprograms) : true;
}

bool check_not_program(program_unit_kind u) {
    return u == uk_program ? refuse(msg_statement_not_allowed_in_program_subprograms) : true;
}

// BLOCK DATA, MODULE and PROGRAM begin an outermost unit and nothing else.
bool check_outermost_header() {
    if (unit.header_seen) {
        stmt_phase = ph_start; // no unit has begun
        return out_of_order();
    }
    unit.header_seen = true;
    return true;
}

// The bodies of an INTERFACE block come before its MODULE PROCEDURE statements. One behind them is reported,
// and read as the body that it is.
void check_subprogram() {
    unit.header_seen = true;
    if (unit.in_module_procedures) {
        out_of_order();
        unit.in_module_procedures = false;
        ++interface_depth;
    }
}

// One in an internal procedure or BLOCK DATA is reported, and its procedures are read as what they are.
bool check_contains(program_unit_kind u) {
    const bool good = check_not_block_data(u) && check_not_nested(u);
    if (good || interface_depth == 0) {
        ++unit.contains_depth;
        stmt_phase = ph_start;
    }
    return good;
}

bool check_entry(program_unit_kind u) {
    if (!check_not_program(u) || !check_not_nested(u)) {
        return false;
    }
    return u == uk_block_data || u == uk_module ? check_executable(u) : true;
}

bool check_format(program_unit_kind u, bool has_label) {
    if (!check_not_block_data(u)) {
        return false;
    }
    if (!has_label) {
        source_pos position = stmt_pos;
        if (first_stmt_on_line) {
            position.column = 1;
        }
        error_at(msg_expected_label, position);
        return false;
    }
    return check_executable(u);
}

// An INTERFACE in BLOCK DATA is refused; its bodies, if it has any, are read as what they are.
bool check_interface(program_unit_kind u) {
    if (!check_not_block_data(u)) {
        unit.interface_refused = true;
        return false;
    }
    open_interface();
    return true;
}

void end_interface() {
    if (unit.in_module_procedures) {
        unit.in_module_procedures = false;
    } else {
        --interface_depth;
    }
    stmt_phase = ph_specification;
    spec_part_over = false;
}

bool check_module_procedure() {
    if (!in_interface_block() || !curr_row().current_interface) {
        return out_of_order();
    }
    if (!unit.in_module_procedures) {
        --interface_depth;
        unit.in_module_procedures = true;
    }
    return true;
}

bool check_access_statement(program_unit_kind u) {
    if (u != uk_module) {
        return refuse(msg_access_specifier_or_statement_may_appear_only_in_scoping);
    }
    // PUBLIC doesn't come as far as this in a type definition.
    return in_type_def && !unit.type_head_open ? out_of_order() : true;
}

bool check_end_type() {
    if (unit.type_head_open && !unit.component_lost) {
        error_at(msg_expected_component_definition_statement, stmt_pos);
    }
    unit.type_head_open = false;
    in_type_def = false;
    return true;
}

bool check_kind(bool has_label) {
    const program_unit_kind u = unit_kind_of(unit_level());
    switch (curr_stmt_kind) {
    case stmtk_allocatable:
    case stmtk_external:
    case stmtk_namelist: return check_not_block_data(u);
    case stmtk_block_data:
    case stmtk_module:
    case stmtk_program: return check_outermost_header();
    case stmtk_subprogram: check_subprogram(); return true;
    case stmtk_contains: return check_contains(u);
    case stmtk_data: return u == uk_subroutine || u == uk_function ? check_executable(u) : true;
    case stmtk_end_interface: end_interface(); return true;
    case stmtk_end_type: return check_end_type();
    case stmtk_entry: return check_entry(u);
    case stmtk_format: return check_format(u, has_label);
    case stmtk_interface: return check_interface(u);
    case stmtk_private:
    case stmtk_public: return check_access_statement(u);
    case stmtk_module_procedure: return check_module_procedure();
    case stmtk_return: return check_not_program(u) && check_executable(u);
    case stmtk_sequence: return in_type_def && unit.type_head_open ? true : out_of_order();
    case stmtk_stmt_function: return check_executable(u);
    case stmtk_type_declaration: unit.type_head_open = false; return true;
    case stmtk_type_definition:
        in_type_def = true;
        unit.type_head_open = true;
        unit.component_lost = false;
        return true;
    default: return is_executable_kind(curr_stmt_kind) ? check_executable(u) : true;
    }
}

// ---- one statement

// Whether the statement is good. `label` is null where it has none of its own. A refused statement is passed
// over like a bad one; its label is defined all the same, so that references to it are no further faults.
bool check_and_dispatch(const name_locator &label, bool has_label, bool misspelt) {
    const bool begins_unit = is_header(curr_stmt_kind);
    if (!check_order() || !check_kind(has_label)) {
        curr_stmt_kind = stmtk_bad;
        if (label.atom && !begins_unit) {
            define_statement_label(label);
        }
        return false;
    }
    if (label.atom && !begins_unit) {
        define_statement_label(label);
    }
    if (curr_stmt_kind == stmtk_format && !label.atom) {
        return false; // its label is that of another statement
    }
    if (curr_stmt_kind == stmtk_do || curr_stmt_kind == stmtk_do_while) {
        add_loop_label();
    }
    const bool good = misspelt ? run_misspelt() : dispatch_statement();
    if (label.atom && begins_unit) {
        define_statement_label(label); // it belongs to the unit that has begun
    }
    return good;
}

// Passes over what the statement has left. Only where all was well until then it is worth a message.
void finish_text(bool good) {
    if (curr_token != tok_eos) {
        if (good && !lines_run_together) {
            error_at(msg_extra_text_after_expected_end_of_statement, curr_token_pos);
        }
        skip_to_eos();
    }
}

// Whether a statement that could not be classified stands where a construct may.
bool may_be_misspelt() {
    if (stmt_phase < ph_header || stmt_phase > ph_execution || in_type_def || interface_depth > 0) {
        return false;
    }
    switch (curr_unit_kind) {
    case uk_program:
    case uk_subroutine:
    case uk_function: return true;
    default: return false;
    }
}

// The same for the statements that begin or end a unit or a part of one: whether they may stand here.
bool may_stand_here(statement_kind kind) {
    if (unit.in_lost_body || (construct_depth >= 0 && top_construct().kind != cons_routine)) {
        return false;
    }
    const bool in_body = stmt_phase >= ph_header && stmt_phase <= ph_execution && !in_type_def;
    const bool between_bodies = stmt_phase == ph_start && unit.header_seen;
    const program_unit_kind u = unit_kind_of(unit_level());
    switch (kind) {
    case stmtk_subprogram: return stmt_phase == ph_start;
    case stmtk_module:
    case stmtk_program:
    case stmtk_block_data: return stmt_phase == ph_start && !unit.header_seen;
    case stmtk_contains: return in_body && u != uk_block_data && interface_depth == 0;
    case stmtk_interface:
    case stmtk_namelist:
    case stmtk_type_definition: return in_body && stmt_phase <= ph_specification && u != uk_block_data;
    case stmtk_module_procedure:
    case stmtk_end_interface: return between_bodies && in_interface_block();
    case stmtk_end_type: return in_type_def;
    case stmtk_end: return in_body || (between_bodies && !in_interface_block());
    default: return (in_body || (between_bodies && !in_interface_block())) && u == unit_of_end(kind);
    }
}

// Where a declaration can't stand, it may be the head of a function.
bool is_misspelt_function() {
    const auto may_begin = [](statement_kind kind) { return kind == stmtk_subprogram; };
    if (stmt_phase != ph_start || !unit.header_seen || unit.in_lost_body ||
        !classify_misspelt_unit(may_begin)) {
        return false;
    }
    out_of_order();
    return true;
}

// Whether the statement is a misspelt one of which the kind could be guessed. It has been reported then.
bool guess_statement() {
    switch (curr_stmt_kind) {
    case stmtk_type_declaration: return is_misspelt_function();
    case stmtk_bad: break;
    default: return false;
    }
    return classify_misspelt_unit(may_stand_here) ||
           (may_be_misspelt() &&
            classify_misspelt(stmt_phase == ph_execution ? misspelt_any : misspelt_heads));
}

void process_statement() {
    curr_label_symbol = nullptr;
    lines_run_together = false;
    name_locator label = read_label();
    const bool has_label = label.atom;
    classify_statement();
    const bool misspelt = guess_statement();
    curr_token = tok_none;
    error_pos = stmt_pos;
    if (has_label && curr_stmt_kind == stmtk_include) {
        error_at(msg_include_line_must_not_be_supplied_with_statement, label.position);
        label.atom = nullptr;
    }
    if (unit.in_lost_body && stmt_phase == ph_start && !is_header(curr_stmt_kind)) {
        label.atom = nullptr; // it is none of the unit around
    }
    if (label.atom && !is_header(curr_stmt_kind) && !find_label(label)) {
        label.atom = nullptr;
        reach_state = reachable;
    }
    const bool good = check_and_dispatch(label, has_label, misspelt);
    if (!good && in_type_def) {
        doubt_open_type();
    }
    finish_text(good);
    if (curr_label_symbol && !is_unit_end(curr_stmt_kind)) {
        if (curr_stmt_kind == stmtk_end_if) {
            label_as_statement(curr_label_symbol); // it stands behind the construct
        }
        check_do_termination(curr_label_symbol);
    }
    if (curr_stmt_kind == stmtk_end && token_text[0] == ';') {
        if (good) {
            error_at(msg_extra_text_after_expected_end_of_statement, curr_token_pos);
        }
        skip_line();
    }
    if (stmt_phase == ph_end && unit.contains_depth > 0) {
        stmt_phase = ph_start;
    }
}

// The source has ended within a unit, unless nothing has begun one since the last.
void process_end_of_source() {
    end_of_input = true;
    if (unit.header_seen) {
        error_at(msg_unexpected_end_of_file, position_of_cursor(line_cursor));
        close_all_units();
    }
}

} // namespace

void process_program_unit() {
    in_type_def = false;
    interface_depth = 0;
    spec_part_over = false;
    stmt_phase = ph_start;
    unit = {};
    for (;;) {
        first_stmt_on_line = true;
        do {
            process_statement();
            first_stmt_on_line = false;
        } while (*line_cursor != '\0');
        if (stmt_phase == ph_end) {
            return;
        }
        if (!next_statement()) {
            process_end_of_source();
            return;
        }
    }
}

bool skip_to_eos() {
    while (next_token(lex_peek) != tok_eos) {
    }
    return true;
}

void skip_line() {
    do {
        skip_to_eos();
    } while (token_text[0] != '\0');
}

bool stmt_bad() {
    unit.component_lost = true; // most likely
    if (is_bad_declaration) {
        declare_statement_in_error();
    } else {
        give_up_misspelt_declaration();
        if (in_type_def) {
            doubt_open_type();
        }
    }
    return skip_to_eos();
}

bool stmt_include() {
    if (!first_stmt_on_line) {
        error_at(msg_include_may_not_appear_on_line_with_other, stmt_pos);
        return false;
    }
    const include_name name = find_include_name(line_cursor);
    if (!name.begin) {
        error_at(msg_expected_character_constant, position_of_cursor(line_cursor));
        return false;
    }
    // The quote that encloses the name stands for itself where it is doubled.
    char *const text = il_copy_string(name.begin, static_cast<std::size_t>(name.end - name.begin));
    char *to = text;
    for (const char *from = name.begin; from != name.end; from += *from == *name.end ? 2 : 1) {
        *to++ = *from;
    }
    *to = '\0';
    error_pos = position_of_cursor(name.begin - 1);
    if (*name.rest == '!') {
        warn_bang(position_of_cursor(name.rest));
    }
    // The end of the line is not read as a token, since that would fetch the line behind it.
    line_cursor = name.rest + std::strlen(name.rest);
    curr_token = tok_eos;
    curr_token_pos = position_of_cursor(line_cursor);
    token_text[0] = '\0';
    token_length = 0;
    open_source_file(text, include_search_list);
    return true;
}

} // namespace zf90
