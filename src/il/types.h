// The types of the intermediate language and the description of the target. Intrinsic types are made once
// for each kind and shared, so that comparing pointers answers most questions of equality; arrays, routines
// and derived types are made freely. All arithmetic on kinds goes through the kind tables.
#pragma once

#include "il/records.h"

#include <cstdint>

namespace zf90 {

// ---- the target

// One kind of a class; the row index is the `kind` of a type. `kind_number` is what a program writes.
// The conversions move a value between the target's bytes and a host number.
template <class Value> struct kind_row {
    std::int32_t kind_number;
    std::uint32_t byte_size;
    std::uint8_t byte_alignment;
    std::uint8_t radix; // the model of the numbers: radix, digits, range of exponents
    std::uint8_t digits;
    std::int16_t min_exponent;
    std::int16_t max_exponent;
    char blank_char; // what texts are padded with
    Value (*read_value)(const unsigned char *bytes);
    void (*write_value)(unsigned char *bytes, Value value);
};

inline constexpr std::uint32_t integer_kind_count = 2;
inline constexpr std::uint32_t real_kind_count = 2;
inline constexpr std::uint32_t logical_kind_count = 2;
inline constexpr std::uint32_t character_kind_count = 1;

extern const kind_row<std::int32_t> integer_kinds[integer_kind_count];
extern const kind_row<double> real_kinds[real_kind_count]; // of complex too: twice the size, same alignment
extern const kind_row<std::int32_t> logical_kinds[logical_kind_count];
extern const kind_row<std::int32_t> character_kinds[character_kind_count];

inline constexpr std::uint32_t default_integer_kind = 1;
inline constexpr std::uint32_t default_real_kind = 0;
inline constexpr std::uint32_t double_precision_kind = 1;
inline constexpr std::uint32_t default_logical_kind = 1;
inline constexpr std::uint32_t default_character_kind = 0;

// The kind index of a kind number, -1 if there is none. Complex has the numbers of real.
int integer_kind_index(std::int32_t kind_number);
int real_kind_index(std::int32_t kind_number);
int logical_kind_index(std::int32_t kind_number);
int character_kind_index(std::int32_t kind_number);

std::uint32_t largest_model_integer(std::uint32_t kind); // radix ** digits - 1
double largest_model_real(std::uint32_t kind);

// ---- cached types: the same entry at each call with the same arguments

type *integer_type(std::uint32_t kind);
type *real_type(std::uint32_t kind);
type *complex_type(std::uint32_t kind);
type *logical_type(std::uint32_t kind);
type *character_type(std::uint32_t kind, std::int32_t length);
type *assumed_character_type(std::uint32_t kind); // CHARACTER*(*)

type *default_integer();
type *default_real();
type *double_precision();
type *default_complex();
type *default_logical();
type *default_character(std::int32_t length);

type *error_type();
type *unknown_type();
type *void_type();
type *format_type();
type *unspec_routine_type();
type *stmt_label_type();

// By kind number. If there is no such kind: the error type, and `failed` is set; else `failed` stays as it
// is. The caller reports.
type *integer_type_for_kind_number(std::int32_t kind_number, bool &failed);
type *real_type_for_kind_number(std::int32_t kind_number, bool &failed);
type *complex_type_for_kind_number(std::int32_t kind_number, bool &failed);
type *logical_type_for_kind_number(std::int32_t kind_number, bool &failed);
type *character_type_for_kind_number(std::int32_t kind_number, std::int32_t length, bool &failed);
type *assumed_character_type_for_kind_number(std::int32_t kind_number, bool &failed);

// The same by the size of a value in bytes; a complex value is two reals.
type *integer_type_for_size(std::uint32_t size, bool &failed);
type *real_type_for_size(std::uint32_t size, bool &failed);
type *complex_type_for_size(std::uint32_t size, bool &failed);
type *logical_type_for_size(std::uint32_t size, bool &failed);

// ---- fresh types

// Size 0, alignment 1, no flags, the default kind of its class, an empty variant: constant length 0 of a
// character, rank 0 and no bounds of an array.
type *new_type(enum type_code code);
type *new_array_type(type *element, unsigned rank); // explicit shape, every bound undefined
type *new_routine_type(object *routine, type *return_type);

// Everything but `next`.
void copy_type(const type *source, type *destination);

// Fills `size` and `alignment` if `size` is 0. The size stays 0 where it depends on values of the run. An
// array too large for 32 bits is an error (array_is_too_large) at the type's position, reported once.
void complete_type(type *t);

// Whether an array with bounds of its own is too large. complete_type has reported that.
bool is_too_large(const type *array);

// ---- small questions

inline bool is_array(const type *t) { return t->type_code == tk_farray; }

// Whether an expression of the type has a value: it is neither the name of a procedure nor a subroutine call.
inline bool is_value_type(const type *t) {
    return t->type_code != tk_void && t->type_code != tk_routine && t->type_code != tk_unspec_routine;
}

inline type *element_type_of(type *t) { return t->type_code == tk_farray ? t->array.element_type : t; }

// The number of elements of a dimension with constant bounds; 0 if it is empty. At most 2 ** 32.
std::uint64_t constant_extent(const bound &lower, const bound &upper);

void set_constant_bound(bound &b, std::int32_t value);
void set_expression_bound(bound &b, expr_node *expr);

// The length of a character type, 0 unless it is constant.
inline std::int32_t constant_length(const type *t) {
    return t->character.length.kind == bound_constant ? t->character.length.value : 0;
}

const char *type_code_name(unsigned code); // "**BAD TYPE CODE**" for an unknown one

void types_init(); // by il_init: clears the caches

} // namespace zf90
