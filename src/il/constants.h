// Constants: compile-time values in the target's bytes, aggregates of them, and the table through which equal
// constants become one at the end of a compilation.
#pragma once

#include "il/records.h"

#include <cstdint>

namespace zf90 {

// Makes a constant of the unknown type at `error_pos`, with the empty variant of its kind.
void init_constant(constant *c, constant_kind kind);

// Only stores the kind and resets the variant: null references, stride 1, count 1.
void set_constant_repr(constant *c, constant_kind kind);

// A constant in the error state: `ck_error`, the error type.
constant *new_constant();

// A fresh `ck_value` at `error_pos` of a type of the class; the value is cut to the kind's size.
constant *make_integer_constant(std::int32_t value, type *type);
constant *make_real_constant(double value, type *type);
constant *make_logical_constant(std::int32_t value, type *type);

// The host value of a `ck_value` or `ck_expression` of type integer or logical.
std::int32_t integer_value_of(const constant *c);

// Fresh nodes that hold such constants, with `intent_in`.
expr_node *new_integer_constant_node(std::int32_t value, type *type);
expr_node *new_real_constant_node(double value, type *type);
expr_node *new_logical_constant_node(std::int32_t value, type *type);

void append_to_aggregate(constant *aggregate, constant *element);

// ---- merging

inline constexpr unsigned constant_bucket_count = 293;

// Values with the same bytes of equal types, and aggregates of equal elements. Any other kind of constant
// equals only itself.
bool constants_equal(const constant *a, const constant *b);

unsigned constant_hash(const constant *c); // 0 to 292

// The constant of the table that equals this one, which it is itself if it is the first. The one returned is
// from now on the first of its bucket.
constant *hash_constant(constant *c);

// Equal constants of expressions become one. Those of derived types are put on the `constants` list of the
// scope that uses them, all others on the list of the primary scope, bucket after bucket.
void merge_constants(il_header *header);

// The text that a dump prints.
const char *constant_kind_name(unsigned kind);

void constants_init(); // by il_init: empties the table

} // namespace zf90
