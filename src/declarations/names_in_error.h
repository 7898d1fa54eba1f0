// Names of which the declaration is in error: they are declared all the same, as data of the error type, so
// that no use of them is reported again.
#pragma once

#include "il/records.h"

namespace zf90 {

// The type of a declared name can't be known, which has been reported: it is the error type from now on, and
// the name counts as used. A later declaration of its type is welcome.
void give_up_type(symbol *s);

// Declares the names of a list, from the current token to the end of the statement. A name that has a type
// keeps it.
void declare_rest_in_error();

// The same for the type declaration that begins at `stmt_start`, of which a part can't be read: its entities
// stand behind "::", or where a name follows an operand.
void declare_statement_in_error();

// The same for what is left of a list that gives names an attribute: with the attribute unknown, a name that
// has a type loses it. Leaves the current token as it is.
void give_up_rest();

// The same for all names of the statement that begins at `stmt_start`, of which the brackets don't fit.
void give_up_statement();

// The same for a statement that is none, if its first word is like one that begins a declaration, or it has
// none in front of the names behind "::".
void give_up_misspelt_declaration();

} // namespace zf90
