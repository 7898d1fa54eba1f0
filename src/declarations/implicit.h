// The types of names: the letter table of the IMPLICIT statements, and the routines that give a symbol its
// type, declared or from the table. A type from the table is provisional (`sf_type_implicit`) until a
// declaration confirms it or the specification part ends.
#pragma once

#include "il/records.h"
#include "source/position.h"

namespace zf90 {

// The type that a symbol holds, by its kind: the type of its object, or the `entity` of a name whose class is
// not known yet; null for other kinds.
type *type_of_symbol(const symbol *s);

bool is_character_symbol(const symbol *s);

// Gives an untyped symbol its implicit type, or reports that it has none that it may have: at `position`, or
// at the symbol's declaration if that is null. The symbol has a type afterwards, in the worst case the error
// type.
void apply_implicit(symbol *s, source_pos position);

// Declares the type of a symbol. False if it has one already that is another; `override` then replaces it.
// Only a conflict with an implicit type is reported, at `error_pos`: that a type was declared twice is for
// check_attributes to say.
bool set_type(symbol *s, type *declared, bool override_type);

// The same for the return type of a function, and for the result variable with it.
bool set_routine_type(symbol *s, type *declared, bool override_type);

// The same for a dummy procedure.
bool set_dummy_proc_type(symbol *s, type *declared);

} // namespace zf90
