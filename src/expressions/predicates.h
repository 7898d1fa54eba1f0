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

// The bounds of an array type, through the expression that a `same_shape` refers to; null if it has none.
// They are for the rank of the type.
bound_info_entry *bounds_of_type(const type *t);

// The type that has these bounds as its own, which is `t` itself or the type of what the expression names.
const type *type_with_bounds_of(const type *t);

// The length of a character type, through the expression of a `bound_same_as`.
const bound &char_length_of_type(const type *t);

// Lays out the components of a derived type, or the objects of a frame, in order: gives each its offset, and
// the type its size and alignment.
void field_layout(type *t);

} // namespace zf90
