// Interface blocks and what they gather under a name. The handlers of the statements are declared with all
// others in statements/handlers.h.
#pragma once

#include "il/records.h"
#include "source/lines.h"

namespace zf90 {

// Reads a name, OPERATOR(op) or ASSIGNMENT(=) from the cursor on, and the token behind it. The symbol that it
// has in the scope of that depth: an operator and the assignment are made generic there, a name may be
// undetermined as yet. Null at the end of the statement. `name` is what was read: a null atom stands for what
// could not be, which has been reported, and the symbol is on no list then.
symbol *read_generic_spec(name_locator &name, std::int32_t depth);

// Makes a name generic in the scope of its symbol; null is a name not yet known, of the current scope. Error
// 92 if it cannot be: the atom is null then, and the symbol on no list.
symbol *declare_interface(symbol *s, name_locator &name);

// The generic meaning that a name, operator or the assignment has outside of the scope of its new symbol:
// what is declared adds to it. Null if there is none.
interface *inherited_interface(const symbol *s);

// Adds a procedure to the INTERFACE block that is open in the row of that depth, unless it is a member
// already, and marks it as referenced. A block without a name gathers nothing.
void add_to_interface(object *routine, std::int32_t depth);

} // namespace zf90
