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

// The procedure that MODULE PROCEDURE has hidden, in the scope of that depth, behind a generic of the same
// name; or null.
symbol *hidden_module_procedure(const atom *name, std::int32_t depth);

// Joins a routine with the current scope: as the unit's own, or as an ENTRY if the scope has a routine, with
// an `entry_description` that is returned. Null for the unit's own.
entry_description *new_unit_routine(object *routine);

// The procedure's name in the scope around the current one. `s` is its symbol there, or null. An error is
// reported at the name and nulls its atom; the symbol returned, never null, is then on no list. An ENTRY has
// its description in `entry` afterwards.
symbol *declare_subroutine(symbol *s, name_locator &name, bool is_entry, entry_description *&entry);
symbol *declare_function(symbol *s, name_locator &name, type *result_type, bool is_entry,
                         entry_description *&entry);

// A list of dummy arguments being read.
struct dummy_list {
    entry_description *entry;           // null: the list of the unit itself
    object_list_member *last;           // its tail
    object_list_member *next_alternate; // the next "*" to share with earlier lists
};

dummy_list begin_dummy_list(entry_description *entry);

// A dummy argument. `s` is the meaning of its name in the current scope, or null; a null atom stands for a
// name that could not be read. An error nulls the atom.
void declare_dummy(dummy_list &list, symbol *s, name_locator &name);

// A "*" of the list. The nth ones of several lists are one object.
void declare_alternate_return(dummy_list &list, source_pos position);

void end_dummy_list(dummy_list &list);

// The result of the unit, or of an entry. `s` is the meaning of the name in the current scope, or null.
void declare_result(symbol *s, name_locator &name, entry_description *entry);

// Where several results lie in one storage: raises its size and alignment to those of the result, whose type
// may have been settled just now. Does nothing to other objects.
void raise_result_storage(object *result);

} // namespace zf90
