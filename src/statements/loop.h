// The loop over the statements of a program unit: their labels, their order, what each kind of unit may hold,
// and the recovery after a bad statement. The driver calls it for each outermost unit; internal and module
// procedures, interface bodies and derived types are handled within that one call.
#pragma once

#include "declarations/scopes.h"
#include "statements/classify.h"

namespace zf90 {

// How far the current unit has come. Only the statement loop changes it.
enum statement_phase : std::uint8_t {
    ph_start = 0,         // before a first statement, in the head of an INTERFACE block, after CONTAINS
    ph_header = 1,        // the unit's own first statement has been seen
    ph_use = 2,           // USE
    ph_implicit = 4,      // IMPLICIT and PARAMETER
    ph_specification = 5, // declarations
    ph_execution = 6,     // executable statements
    ph_contains = 7,      // behind CONTAINS
    ph_end = 8            // the END of a unit has been seen
};

extern statement_phase stmt_phase;
extern bool in_type_def;          // within a derived-type definition
extern bool first_stmt_on_line;   // the current statement is the first of its line
extern symbol *curr_label_symbol; // of the current statement's label, or null

// Reads the statements of one outermost program unit, the first of which next_statement has put into
// `stmt_buffer`, up to its END or the end of the source; then `end_of_input` is set.
void process_program_unit();

// Peeks to the end of the statement; to the end of its line. skip_to_eos returns true, as a handler.
bool skip_to_eos();
void skip_line();

} // namespace zf90
