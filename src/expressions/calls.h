// References to procedures: which specific one a generic name means, which actual argument belongs to which
// dummy, whether they fit, and the type of the result. User procedures, defined operators and assignment, and
// the intrinsic procedures and operators all go this way.
#pragma once

#include "il/records.h"

namespace zf90 {

// The check of an `enk_call` and of an `enk_generic_call`, from the arguments to the type of the result.
// False if it is in error, which has been reported; the caller marks the node.
bool check_call(expr_node *node, std::uint32_t flags, object *routine);
bool check_generic_call(expr_node *node, std::uint32_t flags, object *routine);

enum binding : std::uint8_t {
    binding_done = 0,
    binding_misfit = 1,  // an actual argument does not fit
    binding_too_few = 2, // actual arguments
    binding_too_many = 3,
    binding_keyword_missing = 4, // or unknown
    binding_surplus_keywords = 5,
    binding_reported = 6 // everything has its place, but an argument is in error
};

enum class binding_mode : std::uint8_t {
    trial_by_rank, // asks whether the arguments fit, an array only to a dummy array of its rank
    trial,         // asks whether they fit, arrays of other ranks by sequence association too
    call           // binds them
};

// Matches a list of actual arguments with the dummies of a routine type. A trial only answers the question;
// for a call the list is put in the order of the dummies, with keywords, and an `enk_empty` for each one that
// is absent. `bad_actual` is the argument that does not fit or is too much. `routine` is the program unit
// around the call, or null.
binding bind_arguments(type *routine_type, expr_node *&actuals, expr_node *&bad_actual, binding_mode mode,
                       object *routine);

bool match_one_argument(const expr_node *actual, const param_type *param, binding_mode mode);

// The checks between a bound actual argument and its dummy, which is null for an implicit interface. False
// after an error, which has been reported.
bool check_argument_association(bool is_subroutine, bool is_elemental, expr_node *actual,
                                const param_type *param);

// Whether the name of an entity may be an actual argument; error 40.
bool check_passable(const object *o, source_pos position);

// The `enk_empty` node of an optional argument that is absent from a call in `routine`.
expr_node *make_absent_argument(const param_type *param, const object *routine);

// The result type of a call, with what depends on the dummies rewritten for these actuals.
type *instantiate_result_type(type *t, object *specific, expr_node *actuals, object *routine);

// Rewrites the dummies of `specific` in a tree, in which only what changes is copied: to `enk_param` nodes if
// `actuals` is null, else to references to the actuals. True if something changed.
bool substitute_dummies(expr_node *&slot, object *specific, expr_node *actuals);

// Makes the interface of a routine, whose types have been checked, independent of the objects in its scope:
// the lengths and bounds in the types of its dummy arguments and of its result name the dummies of the
// interface.
void complete_interface(object *routine);

// The one object of an external procedure in the whole compilation, if `o` is another one of its name.
object *global_entity(object *o);

// Marks what an internal procedure uses of its host.
void note_host_reference(object *o, object *routine);
void note_host_type(type *t, object *routine); // of a value that names no object

} // namespace zf90
