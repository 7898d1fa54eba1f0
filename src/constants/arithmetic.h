// The arithmetic of constants, on the host for the target that the kind tables describe: the working form of
// a value, checked operations on it, and the fold of one operator. Integers are signed 32 bits and reals are
// doubles whatever their kind: a value is cut or rounded only when it is stored. Nothing here keeps state,
// but for the text of real_to_text. The primitives return the code of a message, or no_failure, and leave the
// reporting to their caller.
#pragma once

#include "driver/diagnostics.h"
#include "il/types.h"

#include <cstdint>

namespace zf90 {

inline constexpr error_code no_failure{};

// ---- the working form of a value

inline constexpr std::int32_t inline_text_size = 40;

struct fold_value {
    struct source_pos source_pos;         // for messages
    struct type *type = nullptr;          // of a text, its length too
    constant_kind repr_kind = ck_error;   // ck_error: no value; ck_value; ck_aggregate
    unsigned char *value_bytes = nullptr; // a text in memory of its own; null: it is in `text`
    constant *first_constant = nullptr;   // ck_aggregate
    constant *last_constant = nullptr;
    std::int32_t integer = 0; // integer or logical
    double real = 0;          // real, and the real part of a complex
    double imaginary = 0;
    unsigned char text[inline_text_size] = {}; // a text of at most 40 bytes
};

// A value of this kind at `error_pos`, of the unknown type, zero, empty.
fold_value new_fold_value(constant_kind kind);

// No value: `ck_error` and the error type. The position stays.
void clear_fold_value(fold_value &value);

inline bool has_value(const fold_value &value) { return value.repr_kind != ck_error; }

// The bytes of a text; their count is the length of the value's type.
const unsigned char *fold_text(const fold_value &value);

// Where to write a text of `length` bytes: inside of the value, or in fresh memory that it then points at.
// The type is left alone.
unsigned char *new_fold_text(fold_value &value, std::int32_t length);

// From a stored constant and back. Reading leaves the position alone, shares the text and the elements, and
// of a folded expression takes the value; what is stored is a fresh constant at the value's position.
void read_constant(const constant *c, fold_value &value);
constant *store_fold_value(const fold_value &value);

// Appends a constant to the elements of a ck_aggregate.
void append_to_fold_value(fold_value &aggregate, constant *element);

// ---- primitives

error_code int_add_checked(std::int32_t a, std::int32_t b, std::int32_t &out);
error_code int_sub_checked(std::int32_t a, std::int32_t b, std::int32_t &out);
error_code int_mul_checked(std::int32_t a, std::int32_t b, std::int32_t &out);
error_code int_div_checked(std::int32_t a, std::int32_t b, std::int32_t &out);
std::int32_t int_div_trunc(std::int32_t a, std::int32_t b); // b is not 0; wraps
error_code int_power(std::int32_t a, std::int32_t n, std::int32_t &out);

// The trip count of a DO loop; a failure or a negative count leaves 0.
error_code iteration_count(std::int32_t first, std::int32_t last, std::int32_t step, std::int32_t &out);

error_code real_add(double a, double b, double &out);
error_code real_sub(double a, double b, double &out);
error_code real_mul(double a, double b, double &out);
error_code real_div(double a, double b, double &out);
error_code real_power(double x, std::int32_t n, double &out);
int real_compare(double a, double b); // 1, 0 or -1

struct complex_value {
    double real;
    double imaginary;
};

error_code complex_add(complex_value a, complex_value b, complex_value &out);
error_code complex_sub(complex_value a, complex_value b, complex_value &out);
error_code complex_mul(complex_value a, complex_value b, complex_value &out);
error_code complex_div(complex_value a, complex_value b, complex_value &out);
error_code complex_power(complex_value x, std::int32_t n, complex_value &out);

// As texts of signed characters, the shorter one padded with the blank of the left one's kind: 1, 0 or -1.
int compare_texts(const fold_value &left, const fold_value &right);

// ---- one operator applied to values

// The result may be one of the operands. It keeps its position, at which a failure is reported. False: the
// operation does not fold, or it failed and that has been reported; the result has no value then.
bool fold_unary(operation_kind op, const fold_value &operand, type *result_type, fold_value &result);
bool fold_binary(operation_kind op, const fold_value &left, const fold_value &right, type *result_type,
                 fold_value &result);

// Makes the value one of this type. No range is checked: an integer keeps its 32 bits and a real its double
// until they are stored; a real beyond the integers becomes the nearest of them.
void convert_value(fold_value &value, type *target);

// ---- reals in the target's bytes

void real_bytes_to_integer(std::uint32_t kind, const unsigned char *bytes, std::int32_t &value,
                           bool &too_big);
bool real_is_zero(std::uint32_t kind, const unsigned char *bytes);

// The text of a real in the exponent form, with all its digits. It lasts until the next call.
const char *real_to_text(std::uint32_t kind, const unsigned char *bytes);

} // namespace zf90
