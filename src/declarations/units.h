// Program units: the statements that open and close them (PROGRAM, MODULE, BLOCK DATA, FUNCTION, SUBROUTINE,
// ENTRY, CONTAINS, the END forms) and the main program that is implied. The handlers themselves are declared
// with all others in statements/handlers.h; the statement loop calls the rest of this header.
#pragma once

#include "declarations/scopes.h"

namespace zf90 {

// While the type of a function's prefix or of IMPLICIT is read: TYPE(name) may name a type that the unit
// defines later.
extern bool in_prefix_type;

// Opens a unit: its row, its body (a module has none) and its state. The state of the unit around it is kept
// and comes back with end_program_unit.
void begin_program_unit(program_unit_kind kind);

// Opens a procedure of which the word SUBROUTINE or FUNCTION was misspelt, or what stands before it, which
// has been reported. Its name follows at the cursor.
void begin_misspelt_procedure(program_unit_kind kind, bool has_prefix);

// Opens the main program of a source that has no PROGRAM statement.
void implied_program(source_pos position);

// The end of the specification part: storage is laid out. Does nothing the second time. Called with the first
// executable statement, CONTAINS or the END, whichever comes first.
void end_of_specification();

// Closes the unit on top: its specification part and its body where they are still open, its symbols, its
// prototype, its external names, its row. It serves statement functions too. `curr_unit_kind` is left to the
// caller.
void end_program_unit();

// At an unexpected end of the source: closes everything that is open, innermost first.
void close_all_units();

} // namespace zf90
