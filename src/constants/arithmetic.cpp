// Checked integer, real and complex primitives, the conversions between stored constants and working values,
// and the fold of one operator. What looks wrong here is meant: see the comments at the places.
#include "constants/arithmetic.h"

#include "il/arena.h"
#include "il/constants.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>

namespace zf90 {

namespace {

constexpr std::int32_t int_max = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t int_min = std::numeric_limits<std::int32_t>::min();

std::int32_t wrapped_product(std::int32_t a, std::int32_t b) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

std::int32_t wrapped_negative(std::int32_t a) {
    return static_cast<std::int32_t>(0u - static_cast<std::uint32_t>(a));
}

const kind_row<std::int32_t> &character_row(const type *t) { return character_kinds[t->kind]; }

} // namespace

// ---- the working form of a value

fold_value new_fold_value(constant_kind kind) {
    fold_value value;
    value.source_pos = error_pos;
    value.type = unknown_type();
    value.repr_kind = kind;
    return value;
}

void clear_fold_value(fold_value &value) {
    value.type = error_type();
    value.repr_kind = ck_error;
    value.value_bytes = nullptr;
    value.first_constant = nullptr;
    value.last_constant = nullptr;
}

const unsigned char *fold_text(const fold_value &value) {
    return value.value_bytes ? value.value_bytes : value.text;
}

unsigned char *new_fold_text(fold_value &value, std::int32_t length) {
    if (length <= inline_text_size) {
        value.value_bytes = nullptr;
        return value.text;
    }
    value.value_bytes = static_cast<unsigned char *>(il_alloc(length));
    return value.value_bytes;
}

void read_constant(const constant *c, fold_value &value) {
    const source_pos position = value.source_pos;
    value = fold_value{};
    value.source_pos = position;
    value.type = c->type;
    if (c->repr_kind == ck_aggregate) {
        value.repr_kind = ck_aggregate;
        value.first_constant = c->aggregate.first_constant;
        value.last_constant = c->aggregate.last_constant;
        return;
    }
    const bool has_bytes = (c->repr_kind == ck_value || c->repr_kind == ck_expression) && c->value.bytes;
    if (!has_bytes) {
        clear_fold_value(value);
        return;
    }
    value.repr_kind = ck_value;
    unsigned char *bytes = c->value.bytes;
    const type *t = c->type;
    switch (t->type_code) {
    case tk_integer: value.integer = integer_kinds[t->kind].read_value(bytes); break;
    case tk_logical: value.integer = logical_kinds[t->kind].read_value(bytes); break;
    case tk_float: value.real = real_kinds[t->kind].read_value(bytes); break;
    case tk_complex:
        value.real = real_kinds[t->kind].read_value(bytes);
        value.imaginary = real_kinds[t->kind].read_value(bytes + real_kinds[t->kind].byte_size);
        break;
    case tk_fcharacter: {
        const std::int32_t length = constant_length(t);
        if (length > inline_text_size) {
            value.value_bytes = bytes;
        } else if (length > 0) {
            std::memcpy(value.text, bytes, static_cast<std::size_t>(length));
        }
        break;
    }
    default: break;
    }
}

constant *store_fold_value(const fold_value &value) {
    constant *c = il_new<constant>();
    init_constant(c, value.repr_kind);
    c->source_pos = value.source_pos;
    c->type = value.type;
    if (value.repr_kind == ck_aggregate) {
        c->aggregate = {value.first_constant, value.last_constant};
        return c;
    }
    if (value.repr_kind != ck_value) {
        return c;
    }
    type *t = value.type;
    complete_type(t);
    unsigned char *bytes = static_cast<unsigned char *>(il_alloc(static_cast<std::int32_t>(t->size)));
    c->value.bytes = bytes;
    switch (t->type_code) {
    case tk_integer: integer_kinds[t->kind].write_value(bytes, value.integer); break;
    case tk_logical: logical_kinds[t->kind].write_value(bytes, value.integer); break;
    case tk_float: real_kinds[t->kind].write_value(bytes, value.real); break;
    case tk_complex:
        real_kinds[t->kind].write_value(bytes, value.real);
        real_kinds[t->kind].write_value(bytes + real_kinds[t->kind].byte_size, value.imaginary);
        break;
    case tk_fcharacter:
        if (const std::int32_t length = constant_length(t); length > 0) {
            std::memcpy(bytes, fold_text(value), static_cast<std::size_t>(length));
        }
        break;
    default: break;
    }
    return c;
}

void append_to_fold_value(fold_value &aggregate, constant *element) {
    (aggregate.last_constant ? aggregate.last_constant->next : aggregate.first_constant) = element;
    aggregate.last_constant = element;
}

// ---- integers

error_code int_add_checked(std::int32_t a, std::int32_t b, std::int32_t &out) {
    if (a >= 0 && b >= 0 && a > int_max - b) {
        return msg_integer_operation_result_is_out_of_range;
    }
    if (a < 0 && b < 0 && a < -int_max - (b + 1)) {
        return msg_integer_operation_result_is_out_of_range;
    }
    out = a + b;
    return no_failure;
}

error_code int_sub_checked(std::int32_t a, std::int32_t b, std::int32_t &out) {
    if (b >= 0) {
        return int_add_checked(a, -b, out);
    }
    // In two steps, as the smallest integer has no negative.
    std::int32_t sum = 0;
    if (const error_code code = int_add_checked(a, -(b + 1), sum); code != no_failure) {
        return code;
    }
    return int_add_checked(sum, 1, out);
}

error_code int_mul_checked(std::int32_t a, std::int32_t b, std::int32_t &out) {
    out = wrapped_product(a, b);
    bool in_range;
    if (a >= 1 && b >= 1) {
        in_range = int_max / b >= a;
    } else if (a >= 1 && b < -1) {
        in_range = int_div_trunc(int_min, b) >= a;
    } else if (a < -1 && b >= 1) {
        in_range = int_div_trunc(int_min, a) >= b;
    } else if (a >= -1 || b >= 0) {
        // -1 times the smallest integer wraps here without a message, on purpose, while the smallest integer
        // times -1 goes through the test below.
        in_range = true;
    } else {
        in_range = int_div_trunc(int_max, a) <= b;
    }
    return in_range ? no_failure : msg_integer_operation_result_is_out_of_range;
}

std::int32_t int_div_trunc(std::int32_t a, std::int32_t b) { return b == -1 ? wrapped_negative(a) : a / b; }

error_code int_div_checked(std::int32_t a, std::int32_t b, std::int32_t &out) {
    if (b == 0) {
        out = 0;
        return msg_division_by_zero;
    }
    out = int_div_trunc(a, b);
    return a == int_min && b == -1 ? msg_integer_operation_result_is_out_of_range : no_failure;
}

error_code int_power(std::int32_t a, std::int32_t n, std::int32_t &out) {
    if (a == 0 && n <= 0) {
        return msg_zero_raised_to_nonpositive_power_is_undefined;
    }
    if (a == 1 || n == 0) {
        out = 1;
        return no_failure;
    }
    if (n < 0) {
        out = 0; // for a base of -1 too, on purpose
        return no_failure;
    }
    std::int32_t result = 1;
    for (;;) {
        if (n % 2 != 0) {
            if (const error_code code = int_mul_checked(result, a, result); code != no_failure) {
                return code;
            }
        }
        n /= 2;
        if (n == 0) {
            break; // without a last square, which might be out of range
        }
        if (const error_code code = int_mul_checked(a, a, a); code != no_failure) {
            return code;
        }
    }
    out = result;
    return no_failure;
}

error_code iteration_count(std::int32_t first, std::int32_t last, std::int32_t step, std::int32_t &out) {
    out = 0;
    std::int32_t count = 0;
    error_code code = int_sub_checked(last, first, count);
    if (code == no_failure) {
        code = int_add_checked(count, step, count);
    }
    if (code == no_failure) {
        code = int_div_checked(count, step, count);
    }
    if (code == no_failure && count > 0) {
        out = count;
    }
    return code;
}

// ---- reals

error_code real_add(double a, double b, double &out) {
    out = a + b;
    return no_failure;
}

error_code real_sub(double a, double b, double &out) {
    out = a - b;
    return no_failure;
}

error_code real_mul(double a, double b, double &out) {
    out = a * b;
    return no_failure;
}

error_code real_div(double a, double b, double &out) {
    if (b == 0) {
        return msg_division_by_zero;
    }
    out = a / b;
    return no_failure;
}

error_code real_power(double x, std::int32_t n, double &out) {
    if (x == 0 && n <= 0) {
        return msg_zero_raised_to_nonpositive_power_is_undefined;
    }
    std::uint32_t rest = static_cast<std::uint32_t>(n < 0 ? wrapped_negative(n) : n);
    double result = 1;
    while (rest != 0) {
        if (rest % 2 != 0) {
            result *= x;
        }
        rest /= 2;
        if (rest != 0) {
            x *= x;
        }
    }
    if (n < 0) {
        return real_div(1, result, out);
    }
    out = result;
    return no_failure;
}

int real_compare(double a, double b) { return a == b ? 0 : a < b ? -1 : 1; }

// ---- complex

error_code complex_add(complex_value a, complex_value b, complex_value &out) {
    out = {a.real + b.real, a.imaginary + b.imaginary};
    return no_failure;
}

error_code complex_sub(complex_value a, complex_value b, complex_value &out) {
    out = {a.real - b.real, a.imaginary - b.imaginary};
    return no_failure;
}

error_code complex_mul(complex_value a, complex_value b, complex_value &out) {
    double ac, bd, bc, ad;
    real_mul(a.real, b.real, ac);
    real_mul(a.imaginary, b.imaginary, bd);
    real_mul(a.imaginary, b.real, bc);
    real_mul(a.real, b.imaginary, ad);
    out = {ac - bd, bc + ad};
    return no_failure;
}

// By the formula as it stands, without scaling.
error_code complex_div(complex_value a, complex_value b, complex_value &out) {
    const double den = b.real * b.real + b.imaginary * b.imaginary;
    complex_value result{};
    error_code code = real_div(a.real * b.real + a.imaginary * b.imaginary, den, result.real);
    if (code == no_failure) {
        code = real_div(a.imaginary * b.real - a.real * b.imaginary, den, result.imaginary);
    }
    if (code == no_failure) {
        out = result;
    }
    return code;
}

error_code complex_power(complex_value x, std::int32_t n, complex_value &out) {
    if (x.real == 0 && x.imaginary == 0 && n <= 0) {
        return msg_zero_raised_to_nonpositive_power_is_undefined;
    }
    std::uint32_t rest = static_cast<std::uint32_t>(n < 0 ? wrapped_negative(n) : n);
    complex_value result{1, 0};
    while (rest != 0) {
        if (rest % 2 != 0) {
            complex_mul(result, x, result);
        }
        rest /= 2;
        if (rest != 0) {
            complex_mul(x, x, x);
        }
    }
    if (n < 0) {
        return complex_div({1, 0}, result, out);
    }
    out = result;
    return no_failure;
}

// ---- texts

int compare_texts(const fold_value &left, const fold_value &right) {
    const std::int32_t left_length = constant_length(left.type);
    const std::int32_t right_length = constant_length(right.type);
    const unsigned char *left_text = fold_text(left);
    const unsigned char *right_text = fold_text(right);
    const auto &row = character_row(left.type);
    const unsigned char blank = static_cast<unsigned char>(row.blank_char);
    for (std::int32_t i = 0; i < std::max(left_length, right_length); ++i) {
        const std::int32_t a = row.read_value(i < left_length ? left_text + i : &blank);
        const std::int32_t b = row.read_value(i < right_length ? right_text + i : &blank);
        if (a != b) {
            return a < b ? -1 : 1;
        }
    }
    return 0;
}

namespace {

// False if the length is beyond all lengths.
bool concatenate(const fold_value &left, const fold_value &right, fold_value &result) {
    const std::int32_t left_length = std::max(constant_length(left.type), 0);
    const std::int32_t right_length = std::max(constant_length(right.type), 0);
    if (left_length > int_max - right_length) {
        return false;
    }
    const std::int32_t length = left_length + right_length;
    unsigned char *text = new_fold_text(result, length);
    std::copy_n(fold_text(left), left_length, text);
    std::copy_n(fold_text(right), right_length, text + left_length);
    result.type = character_type(left.type->kind, length);
    return true;
}

// ---- operators

enum class relation : std::uint8_t { eq, ne, gt, lt, ge, le };

bool holds(relation r, int order) {
    switch (r) {
    case relation::eq: return order == 0;
    case relation::ne: return order != 0;
    case relation::gt: return order > 0;
    case relation::lt: return order < 0;
    case relation::ge: return order >= 0;
    case relation::le: return order <= 0;
    }
    return false;
}

// The relations stand in the same order for each class of operands.
static_assert(eok_ile - eok_ieq == 5 && eok_fle - eok_feq == 5 && eok_cle - eok_ceq == 5);

relation relation_from(operation_kind op, operation_kind first) { return static_cast<relation>(op - first); }

int compare_integers(std::int32_t a, std::int32_t b) { return a == b ? 0 : a < b ? -1 : 1; }

complex_value complex_of(const fold_value &value) { return {value.real, value.imaginary}; }

// The value of an operation, in a result that is ready to take it. False: it does not fold.
bool apply_binary(operation_kind op, const fold_value &left, const fold_value &right, fold_value &result,
                  error_code &code) {
    const std::int32_t i = left.integer;
    const std::int32_t j = right.integer;
    complex_value z{};
    const auto take_complex = [&] {
        result.real = z.real;
        result.imaginary = z.imaginary;
        return true;
    };
    switch (op) {
    case eok_concat: return concatenate(left, right, result);

    case eok_land: result.integer = i != 0 && j != 0; return true;
    case eok_lor: result.integer = i != 0 || j != 0; return true;
    case eok_neqv: result.integer = i != j; return true;
    case eok_eqv: result.integer = i == j; return true;

    case eok_iadd: code = int_add_checked(i, j, result.integer); return true;
    case eok_isubtract: code = int_sub_checked(i, j, result.integer); return true;
    case eok_imultiply: code = int_mul_checked(i, j, result.integer); return true;
    case eok_idivide: code = int_div_checked(i, j, result.integer); return true;
    case eok_i_to_i_expon: code = int_power(i, j, result.integer); return true;
    case eok_ieq:
    case eok_ine:
    case eok_igt:
    case eok_ilt:
    case eok_ige:
    case eok_ile: result.integer = holds(relation_from(op, eok_ieq), compare_integers(i, j)); return true;

    case eok_fadd: code = real_add(left.real, right.real, result.real); return true;
    case eok_fsubtract: code = real_sub(left.real, right.real, result.real); return true;
    case eok_fmultiply: code = real_mul(left.real, right.real, result.real); return true;
    case eok_fdivide: code = real_div(left.real, right.real, result.real); return true;
    case eok_f_to_i_expon: code = real_power(left.real, j, result.real); return true;
    case eok_feq:
    case eok_fne:
    case eok_fgt:
    case eok_flt:
    case eok_fge:
    case eok_fle:
        result.integer = holds(relation_from(op, eok_feq), real_compare(left.real, right.real));
        return true;

    case eok_xadd: code = complex_add(complex_of(left), complex_of(right), z); return take_complex();
    case eok_xsubtract: code = complex_sub(complex_of(left), complex_of(right), z); return take_complex();
    case eok_xmultiply: code = complex_mul(complex_of(left), complex_of(right), z); return take_complex();
    case eok_xdivide: code = complex_div(complex_of(left), complex_of(right), z); return take_complex();
    case eok_x_to_i_expon: code = complex_power(complex_of(left), j, z); return take_complex();
    // Whatever the operands, on purpose: no two complex constants are found equal.
    case eok_xeq: result.integer = 0; return true;
    case eok_xne: result.integer = 1; return true;

    case eok_ceq:
    case eok_cne:
    case eok_cgt:
    case eok_clt:
    case eok_cge:
    case eok_cle: result.integer = holds(relation_from(op, eok_ceq), compare_texts(left, right)); return true;

    default: return false;
    }
}

fold_value new_result(type *result_type, const fold_value &place) {
    fold_value result;
    result.source_pos = place.source_pos;
    result.type = result_type;
    result.repr_kind = ck_value;
    return result;
}

} // namespace

bool fold_unary(operation_kind op, const fold_value &operand, type *result_type, fold_value &result) {
    fold_value r = new_result(result_type, result);
    switch (op) {
    case eok_not: r.integer = operand.integer == 0; break;
    // The smallest integer stays as it is.
    case eok_inegate: r.integer = wrapped_negative(operand.integer); break;
    case eok_fnegate: r.real = -operand.real; break;
    case eok_xnegate:
        r.real = -operand.real;
        r.imaginary = -operand.imaginary;
        break;
    case eok_cast:
        r = operand;
        r.source_pos = result.source_pos;
        convert_value(r, result_type);
        break;
    default: break; // never asked for
    }
    result = r;
    return true;
}

bool fold_binary(operation_kind op, const fold_value &left, const fold_value &right, type *result_type,
                 fold_value &result) {
    fold_value r = new_result(result_type, result);
    error_code code = no_failure;
    const bool folds = apply_binary(op, left, right, r, code);
    if (code != no_failure) {
        error_at(code, r.source_pos);
    }
    if (!folds || code != no_failure) {
        clear_fold_value(result);
        return false;
    }
    result = r;
    return true;
}

// ---- conversions

namespace {

std::int32_t truncate_to_integer(double value) {
    if (value >= 2147483648.0) {
        return int_max;
    }
    if (value <= -2147483649.0) {
        return int_min;
    }
    return std::isnan(value) ? 0 : static_cast<std::int32_t>(value);
}

// A text of the target's length that starts with this one.
void lengthen_text(fold_value &value, std::int32_t old_length, std::int32_t length) {
    const fold_value old = value;
    unsigned char *text = new_fold_text(value, length);
    std::copy_n(fold_text(old), old_length, text);
    std::fill(text + old_length, text + length,
              static_cast<unsigned char>(character_row(old.type).blank_char));
}

void convert_text(fold_value &value, type *target) {
    if (target->character.length.kind != bound_constant) {
        return; // a value has its length in its type, so it keeps that
    }
    const std::int32_t old_length = std::max(constant_length(value.type), 0);
    const std::int32_t length = constant_length(target);
    if (length > old_length) {
        lengthen_text(value, old_length, length);
    }
    value.type = target;
}

// A text that starts with the character of this code, and has the length of the target or, if that is not
// constant, 1.
void convert_code_to_text(fold_value &value, std::int32_t code, type *target) {
    if (target->character.length.kind != bound_constant) {
        target = character_type(target->kind, 1);
    }
    const std::int32_t length = std::max(constant_length(target), 0);
    const auto &row = character_row(target);
    unsigned char *text = new_fold_text(value, length);
    std::fill(text, text + length, static_cast<unsigned char>(row.blank_char));
    if (length > 0) {
        row.write_value(text, code);
    }
    value.type = target;
}

std::int32_t first_character(const fold_value &value) {
    return constant_length(value.type) > 0 ? character_row(value.type).read_value(fold_text(value)) : 0;
}

} // namespace

void convert_value(fold_value &value, type *target) {
    if (target->type_code == tk_unknown || !value.type || !has_value(value)) {
        return;
    }
    if (target->type_code == tk_error) {
        clear_fold_value(value);
        return;
    }
    const enum type_code from = value.repr_kind == ck_value ? value.type->type_code : tk_void;
    const enum type_code to = target->type_code;
    if (from == tk_fcharacter && to == tk_fcharacter) {
        convert_text(value, target);
        return;
    }
    if (from != tk_void && to == tk_fcharacter) {
        // The other values have no code, but what is a text must have one of its length.
        convert_code_to_text(value, from == tk_integer ? value.integer : ' ', target);
        return;
    }
    if (from == tk_integer && (to == tk_float || to == tk_complex)) {
        value.real = value.integer;
        value.imaginary = 0;
    } else if ((from == tk_float || from == tk_complex) && to == tk_integer) {
        value.integer = truncate_to_integer(value.real);
    } else if (from == tk_float && to == tk_complex) {
        value.imaginary = 0;
    } else if (from == tk_fcharacter && to == tk_integer) {
        value.integer = first_character(value);
    }
    value.type = target;
}

// ---- reals in the target's bytes

void real_bytes_to_integer(std::uint32_t kind, const unsigned char *bytes, std::int32_t &value,
                           bool &too_big) {
    const double real = real_kinds[kind].read_value(bytes);
    too_big = !(real >= -2147483648.0 && real <= 2147483647.0);
    if (!too_big) {
        value = static_cast<std::int32_t>(real);
    }
}

bool real_is_zero(std::uint32_t kind, const unsigned char *bytes) {
    return real_kinds[kind].read_value(bytes) == 0.0;
}

const char *real_to_text(std::uint32_t kind, const unsigned char *bytes) {
    static char text[32];
    const kind_row<double> &row = real_kinds[kind];
    const int precision = static_cast<int>(std::ceil(std::log10(std::ldexp(1.0, row.digits + 1) - 1)));
    std::snprintf(text, sizeof(text), "%.*e", precision, row.read_value(bytes));
    return text;
}

} // namespace zf90
