// The attributes that names may have, which of them may be combined, and the one routine that applies the
// rules. A statement collects the attributes that it states in an `attribute_set`, checks them against what
// the name has already, and records them (declarations/declarations.h).
#pragma once

#include "il/records.h"

#include <array>
#include <bitset>

namespace zf90 {

enum attribute : std::uint8_t {
#define ATTRIBUTE(number, name, word, repeat, conflicts, requires) attr_##name = number,
#include "declarations/attributes.def"
#undef ATTRIBUTE
    attribute_count
};

// One flag for each attribute.
using attribute_set = std::bitset<attribute_count>;

// How an attribute stands to another one. On the diagonal, `conflict` says that it may not be stated twice.
enum attribute_relation : std::uint8_t { no_relation, conflict, requires_named, requires_unnamed };

extern const std::array<std::array<attribute_relation, attribute_count>, attribute_count> attr_matrix;
extern const std::array<const char *, attribute_count> attr_names;

// Merges into a copy of the set what the symbol has already, and checks the whole; messages go to `position`.
// True if there was no conflict. An attribute that conflicts is taken out of `set`. What an attribute
// requires is asked for only when the specification part is over. A null symbol is a name not yet declared.
bool check_attributes(symbol *s, attribute_set &set, source_pos position);

// Whether a name keeps its shape after a check that failed: not if that has been taken out, or if it wants
// more of the name than it may have.
bool keeps_shape(const attribute_set &set, const type *array);

// The attribute of an array's shape.
attribute shape_attribute(enum shape_kind kind);

// Whether a length other than a number has not been reported as in error.
bool has_open_length(const type *text);

} // namespace zf90
