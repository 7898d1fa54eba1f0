// Routines as the front end represents them: an `object` of a `tk_routine` type, the scope of its body, its
// dummy arguments and its result, and the entry points that share the scope. The statements that declare
// procedures (declarations/units.h) work with these, and so does what declares prototypes.
#pragma once

#include "declarations/symbols.h"

namespace zf90 {

// A routine's object for a symbol, of a fresh `tk_routine` type with that return type. Class and depth follow
// from the symbol's kind and the current scope. The symbol's `entity` is left to the caller.
object *new_routine_object(symbol *s, type *return_type);

// The variant of a routine's type. The object must be a routine.
routine_variant &routine_of(const object *o);

// Joins a routine with the current scope: as the unit's own, or as an ENTRY if the scope has a routine, with
// an `entry_description` that is returned. Null for the unit's own.
entry_description *new_unit_routine(object *routine);

// The procedure's name in the scope around the current one. `s` is its symbol there, or null. Errors are
// reported at the name and null its atom; the symbol returned, never null, is then on no list. For an ENTRY,
// `*entry` is the description that was made.
symbol *declare_subroutine(symbol *s, name_locator &name, bool is_entry, entry_description **entry);
symbol *declare_function(symbol *s, name_locator &name, type *result_type, bool is_entry,
                         entry_description **entry);

// A dummy argument of the unit, or of an entry. `s` is the meaning of the name in the current scope, or null.
void declare_dummy(symbol *s, name_locator &name, entry_description *entry);

// The nth "*" of a list of dummy arguments, counted from 1; equal ones of several lists are one object.
void declare_alternate_return(unsigned n, source_pos position, entry_description *entry);

// The result of the unit, or of an entry. `s` is the meaning of the name in the current scope, or null.
void declare_result(symbol *s, name_locator &name, entry_description *entry);

// Where several results lie in one storage: raises its size and alignment to those of the result, whose type
// may have been settled just now. Does nothing to other objects.
void raise_result_storage(object *result);

} // namespace zf90
