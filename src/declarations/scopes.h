// The stack of scopes: the global scope, the program unit being read, and what is open within it. A row holds
// the symbols of its scope, the tails of the lists of its IL `scope`, and the implicit rules. The statements
// that open and close program units work on it; declarations append to its lists.
#pragma once

#include "il/records.h"

namespace zf90 {

enum scope_row_kind : std::uint8_t {
    sr_global = 0,
    sr_unit = 1,
    sr_stmt_function = 2,
    sr_use = 3,
    sr_derived_type = 6
};

enum program_unit_kind : std::uint8_t {
    uk_none = 0,
    uk_program = 1,
    uk_subroutine = 2,
    uk_function = 3,
    uk_block_data = 4,
    uk_module = 5
};

// What the statements of a unit leave behind for its end. (declarations/units.h opens and closes units)
struct unit_state {
    struct equiv_group *equiv_groups; // the EQUIVALENCE lists, in order (declarations/storage.h)
    struct equiv_group *last_equiv_group;
    struct common_info *common_list; // the COMMON blocks, in order of first mention
    struct common_info *last_common;
    object_list_member *alternate_returns; // the objects of "*" dummy arguments, in order
    object_list_member *last_alternate_return;
    struct prefix_type
        *prefix;         // of a function's type, to be resolved yet (declarations/type_spec.h); or null
    bool spec_part_over; // an executable statement or CONTAINS has been met
    bool has_automatic;  // the unit has automatic objects
    bool global_save;    // SAVE without a list
    bool any_save;       // some SAVE statement
};

struct scope_row {
    scope_row_kind row_kind;
    symbol *first_symbol; // through `next_in_scope`, in the order of their making
    symbol *last_symbol;
    scope *il_scope; // null for sr_use
    // The tails of the lists of `il_scope`, which are in the order of declaration; null for an empty list.
    object_list_member *last_parameter;
    type *last_type;
    object *last_object;
    label *last_label;
    entry_description *last_entry;
    namelist_group *last_namelist;
    interface *last_interface;
    interface *current_interface; // the INTERFACE block open in this row, or null
    bool implicit_none;
    type *implicit_types[26]; // of the letters from A; null: no implicit type
    bool access_stated : 1;   // PUBLIC or PRIVATE without a list has appeared
    bool names_public : 1;    // new symbols are public by default
    bool spec_done : 1;       // end_of_specification has run
    // Of sr_unit, for its end:
    unit_state outer_unit;     // the state of the unit around it
    int outer_interface_depth; // the INTERFACE blocks that it stands in: above 0 it is an interface body
};

// Row 0 is global, row 1 an outermost program unit, deeper rows internal and module procedures, interface
// bodies, derived types, statement functions. Pointers to rows last until the next push.
extern scope_row *scope_stack;
extern std::int32_t curr_scope_depth; // index of the top row, -1 before the first push

inline scope_row &curr_row() { return scope_stack[curr_scope_depth]; }

// Whether the unit on top is an interface body.
inline bool is_interface_body() { return curr_row().outer_interface_depth > 0; }

// How many INTERFACE blocks are open. (statements/loop and the INTERFACE statements)
extern int interface_depth;

// ---- the unit being read

extern program_unit_kind curr_unit_kind;
extern std::uint32_t implicit_letter_set; // bit n: the letter n has been in an IMPLICIT statement of the unit
extern unit_state curr_unit;

// Its members under the short names that declarations use.
inline bool &spec_part_over = curr_unit.spec_part_over;
inline bool &has_automatic = curr_unit.has_automatic;
inline bool &global_save = curr_unit.global_save;
inline bool &any_save = curr_unit.any_save;

// Empties the stack. Called once, with the seeding of the atom table.
void scopes_init();

// Opens a row; returns its IL scope, null for sr_use. The row takes over the implicit rules of the row below,
// those of the global row within an interface block.
scope *push_scope(scope_row_kind kind);

// Closes the top row: takes its symbols off their chains, and leaves global names and common blocks behind.
void pop_scope();

// How names of a scope get a type without a declaration. Scopes with the same rules share them.
struct scope_rules {
    bool implicit_none;
    type *implicit_types[26];
};

// What a reopened scope has put out of the way.
struct closed_state {
    scope_row row; // that had the scope's depth
    std::int32_t depth;
    std::int32_t scope_depth;
    unit_state unit;
    program_unit_kind unit_kind;
    int interfaces;
};

// Makes the row of a scope's depth look as it did while the scope was open, with its lists to append to and
// its rules for names, and puts it on top. The rows of the scopes around it must be in place. Its symbols
// stay off their chains. The scope must have been closed. close_reopened_scope undoes it.
void reopen_scope(scope *s, closed_state &outer);
void close_reopened_scope(const closed_state &outer);

// Whether a scope is on the stack.
bool is_open_scope(const scope *s);

// Whether SAVE without a list stands in the unit of a row.
bool saves_all_at(std::int32_t depth);

// The default rules: I to N default integer, the other letters default real.
void set_standard_implicit_types(scope_row &row);

// The kind of the unit whose routine a row belongs to; uk_none below row 1, above the top, or without a
// routine.
program_unit_kind unit_kind_of(std::int32_t depth);

// The routine of the unit that a row belongs to; null below row 1.
object *routine_at(std::int32_t depth);

// The routine of the unit, null at depth 0.
inline object *curr_routine() { return routine_at(curr_scope_depth); }

// Appends to the lists of the scope of a row.
void add_parameter(scope_row &row, object_list_member *member);
void add_type(scope_row &row, type *t);
void add_object(scope_row &row, object *o);
void remove_global_object(object *o); // from the global scope's list

// The storage of the COMMON block of that name in the global scope, null if there is none. Blank COMMON has a
// null name.
object *find_common_storage(const atom *name);
void add_label(scope_row &row, label *l);
void add_entry(scope_row &row, entry_description *entry);
void add_namelist_group(scope_row &row, namelist_group *group);
void add_interface(scope_row &row, interface *i);

} // namespace zf90
