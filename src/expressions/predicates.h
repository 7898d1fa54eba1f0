// What "the same type" means: pure questions about types and shapes, on which nearly every check of the front
// end rests. Nothing here reports.
#pragma once

#include "il/records.h"

namespace zf90 {

// The same type in the sense of the language: kinds, constant lengths, shapes, interfaces; derived types that
// are one declaration, or sequence types with the same components.
bool types_equal(const type *a, const type *b);

// Ranks agree, and extents where both are constant. Rank 0 stands for any rank; an assumed size conforms to
// nothing whose bounds are known.
bool shapes_conform(const type *a, const type *b);

// Two routine types have the same parameters: keywords, types, OPTIONAL and INTENT.
bool param_lists_equal(const type *a, const type *b);

// Whether a value of the actual's type may be passed to a dummy whose type may hold wildcards. Equal types
// have been accepted before.
bool type_matches_dummy(const type *actual, const type *dummy);

// Whether a value of the source's type can be assigned to the destination.
bool assignment_compatible(const type *destination, const type *source);

bool is_assumed_size(const type *t);            // an array whose last upper bound is assumed
bool has_nonconstant_bound(const type *t);      // an explicit shape with an expression in it
bool is_explicit_constant_shape(const type *t); // an explicit shape of constants
bool is_zero_sized(const type *t);              // a character of length 0, or an array without elements

// The bounds of an array type, through the expression that a `same_shape` refers to; null if it has none.
// They are for the rank of the type.
bound_info_entry *bounds_of_type(const type *t);

// The type that has these bounds as its own, which is `t` itself or the type of what the expression names.
const type *type_with_bounds_of(const type *t);

// The length of a character type, through the expression of a `bound_same_as`.
const bound &char_length_of_type(const type *t);

// The bytes that an object takes in its frame, type or storage, and its alignment: those of its type, or
// those of a reference to it and of the descriptor of its shape.
struct room {
    std::uint32_t size;
    std::uint8_t alignment;
};
room object_size(const object *o);

// Whether all bounds and the length of an object are numbers.
bool has_known_bounds(const object *o);

// Lays out the components of a derived type, or the objects of a frame, in order: gives each its offset, and
// the type its size and alignment.
void field_layout(type *t);

} // namespace zf90
