// The primitives on integers, reals and complex numbers, conversions, and the fold of each operator.
#include "constants/arithmetic.h"

#include "driver/diagnostics.h"
#include "il/constants.h"
#include "il/il_fixture.h"

#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <vector>

using namespace zf90;

namespace {

using arithmetic = il_test;

constexpr std::int32_t largest = 2147483647;
constexpr std::int32_t smallest = -2147483647 - 1;
constexpr error_code out_of_range = msg_integer_operation_result_is_out_of_range;
constexpr error_code zero_power = msg_zero_raised_to_nonpositive_power_is_undefined;
constexpr double infinite = std::numeric_limits<double>::infinity();

// ---- integers

const std::vector<std::int32_t> &interesting() {
    static const std::vector<std::int32_t> values = [] {
        std::vector<std::int32_t> v;
        for (const std::int64_t base : {0LL, 1LL, 2LL, 3LL, 46340LL, 46341LL, 65535LL, 65536LL, 1073741823LL,
                                        1073741824LL, 2147483647LL, 2147483648LL}) {
            for (const std::int64_t sign : {1, -1}) {
                for (const std::int64_t d : {-1, 0, 1}) {
                    const std::int64_t x = sign * base + d;
                    if (x >= smallest && x <= largest) {
                        v.push_back(static_cast<std::int32_t>(x));
                    }
                }
            }
        }
        std::mt19937 random(1);
        for (int i = 0; i < 100; ++i) {
            v.push_back(static_cast<std::int32_t>(random()) >> (random() % 31));
        }
        return v;
    }();
    return values;
}

bool fits(std::int64_t value) { return value >= smallest && value <= largest; }

TEST(int_primitives, add_and_subtract) {
    constexpr std::int32_t untouched = 12345;
    for (const std::int32_t a : interesting()) {
        for (const std::int32_t b : interesting()) {
            const std::int64_t sum = std::int64_t{a} + b;
            std::int32_t out = untouched;
            EXPECT_EQ(int_add_checked(a, b, out), fits(sum) ? no_failure : out_of_range) << a << "+" << b;
            EXPECT_EQ(out, fits(sum) ? sum : untouched) << a << "+" << b;

            const std::int64_t difference = std::int64_t{a} - b;
            out = untouched;
            EXPECT_EQ(int_sub_checked(a, b, out), fits(difference) ? no_failure : out_of_range)
                << a << "-" << b;
            EXPECT_EQ(out, fits(difference) ? difference : untouched) << a << "-" << b;
        }
    }
    std::int32_t out = 0;
    EXPECT_EQ(int_add_checked(largest, 1, out), out_of_range);
    EXPECT_EQ(int_sub_checked(-largest, 2, out), out_of_range);
    EXPECT_EQ(int_sub_checked(-largest, 1, out), no_failure);
    EXPECT_EQ(out, smallest);
}

TEST(int_primitives, multiply) {
    for (const std::int32_t a : interesting()) {
        for (const std::int32_t b : interesting()) {
            const std::int64_t product = std::int64_t{a} * b;
            std::int32_t out = 0;
            const error_code code = int_mul_checked(a, b, out);
            EXPECT_EQ(out, static_cast<std::int32_t>(static_cast<std::uint32_t>(product))) << a << "*" << b;
            if (a == -1 && b == smallest) {
                EXPECT_EQ(code, no_failure) << "the one product that wraps without a message";
            } else {
                EXPECT_EQ(code, fits(product) ? no_failure : out_of_range) << a << "*" << b;
            }
        }
    }
    std::int32_t out = 0;
    EXPECT_EQ(int_mul_checked(65536, 65536, out), out_of_range);
    EXPECT_EQ(int_mul_checked(46341, 46341, out), out_of_range);
    EXPECT_EQ(int_mul_checked(46340, 46340, out), no_failure);
    EXPECT_EQ(int_mul_checked(smallest, -1, out), out_of_range);
    EXPECT_EQ(int_mul_checked(-1, smallest, out), no_failure);
    EXPECT_EQ(out, smallest);
}

TEST(int_primitives, divide) {
    std::int32_t out = 7;
    EXPECT_EQ(int_div_checked(5, 0, out), msg_division_by_zero);
    EXPECT_EQ(out, 0);
    EXPECT_EQ(int_div_checked(7, -2, out), no_failure);
    EXPECT_EQ(out, -3);
    EXPECT_EQ(int_div_checked(-7, 2, out), no_failure);
    EXPECT_EQ(out, -3);
    EXPECT_EQ(int_div_checked(smallest, 1, out), no_failure);
    EXPECT_EQ(out, smallest);
    EXPECT_EQ(int_div_checked(smallest, -1, out), out_of_range);
    EXPECT_EQ(int_div_trunc(smallest, -1), smallest);
    EXPECT_EQ(int_div_trunc(-9, 4), -2);
}

struct power_case {
    std::int32_t base, exponent;
    error_code code;
    std::int32_t result;
};

TEST(int_primitives, power) {
    constexpr std::int32_t untouched = 77;
    const power_case cases[] = {
        {0, 0, zero_power, untouched},
        {0, -1, zero_power, untouched},
        {0, smallest, zero_power, untouched},
        {0, 1, no_failure, 0},
        {0, 5, no_failure, 0},
        {1, 0, no_failure, 1},
        {1, -5, no_failure, 1},
        {1, largest, no_failure, 1},
        {2, -1, no_failure, 0},
        {-1, -1, no_failure, 0},
        {-1, -2, no_failure, 0},
        {-1, 2, no_failure, 1},
        {-1, 3, no_failure, -1},
        {-1, largest, no_failure, -1},
        {smallest, 0, no_failure, 1},
        {7, 0, no_failure, 1},
        {2, 30, no_failure, 1073741824},
        {2, 31, out_of_range, untouched},
        {2, largest, out_of_range, untouched},
        {-2, 31, no_failure, smallest},
        {-2, 32, out_of_range, untouched},
        {46340, 2, no_failure, 2147395600},
        {46341, 2, out_of_range, untouched},
        {smallest, 1, no_failure, smallest},
        {largest, 1, no_failure, largest},
        {3, 19, no_failure, 1162261467},
        {3, 20, out_of_range, untouched},
        {-10, 9, no_failure, -1000000000},
    };
    for (const power_case &c : cases) {
        std::int32_t out = untouched;
        EXPECT_EQ(int_power(c.base, c.exponent, out), c.code) << c.base << "**" << c.exponent;
        EXPECT_EQ(out, c.result) << c.base << "**" << c.exponent;
    }
}

struct loop_case {
    std::int32_t first, last, step;
    error_code code;
    std::int32_t count;
};

TEST(int_primitives, trip_counts) {
    const loop_case cases[] = {
        {1, 10, 1, no_failure, 10},
        {1, 10, 3, no_failure, 4},
        {10, 1, -3, no_failure, 4},
        {10, 1, 1, no_failure, 0},
        {1, 10, -1, no_failure, 0},
        {1, 1, 5, no_failure, 1},
        {1, 10, 0, msg_division_by_zero, 0},
        {-largest, largest, 1, out_of_range, 0},
        {1, largest, 1, no_failure, largest},
        {0, largest, 1, out_of_range, 0},
        {largest, smallest, -1, out_of_range, 0},
        {0, smallest, 0, msg_division_by_zero, 0},
        {-1, smallest, -1, out_of_range, 0},
    };
    for (const loop_case &c : cases) {
        std::int32_t out = 99;
        EXPECT_EQ(iteration_count(c.first, c.last, c.step, out), c.code) << c.first << "," << c.last;
        EXPECT_EQ(out, c.count) << c.first << "," << c.last << "," << c.step;
    }
}

// ---- reals

TEST(real_primitives, operations) {
    double out = 0;
    EXPECT_EQ(real_add(1e308, 1e308, out), no_failure);
    EXPECT_EQ(out, infinite);
    EXPECT_EQ(real_sub(1, 0.25, out), no_failure);
    EXPECT_EQ(out, 0.75);
    EXPECT_EQ(real_mul(1e38, 1e38, out), no_failure);
    EXPECT_EQ(out, 1e38 * 1e38);
    EXPECT_EQ(real_div(1, 8, out), no_failure);
    EXPECT_EQ(out, 0.125);
    EXPECT_EQ(real_div(1, 0.0, out), msg_division_by_zero);
    EXPECT_EQ(real_div(0, -0.0, out), msg_division_by_zero);
    EXPECT_EQ(out, 0.125) << "not stored";
    EXPECT_EQ(real_div(1e300, 1e-300, out), no_failure);
    EXPECT_EQ(out, infinite);
    EXPECT_EQ(real_compare(1, 2), -1);
    EXPECT_EQ(real_compare(2, 1), 1);
    EXPECT_EQ(real_compare(0.0, -0.0), 0);
}

TEST(real_primitives, power) {
    double out = 0;
    EXPECT_EQ(real_power(0.0, 0, out), zero_power);
    EXPECT_EQ(real_power(-0.0, -3, out), zero_power);
    EXPECT_EQ(real_power(0.0, 3, out), no_failure);
    EXPECT_EQ(out, 0.0);
    EXPECT_EQ(real_power(2.0, 10, out), no_failure);
    EXPECT_EQ(out, 1024.0);
    EXPECT_EQ(real_power(2.0, -2, out), no_failure);
    EXPECT_EQ(out, 0.25);
    EXPECT_EQ(real_power(-3.0, 3, out), no_failure);
    EXPECT_EQ(out, -27.0);
    EXPECT_EQ(real_power(5.0, 0, out), no_failure);
    EXPECT_EQ(out, 1.0);
    EXPECT_EQ(real_power(2.0, smallest, out), no_failure);
    EXPECT_EQ(out, 0.0) << "1 divided by an infinity";
    EXPECT_EQ(real_power(-1.0, smallest, out), no_failure);
    EXPECT_EQ(out, 1.0);
    EXPECT_EQ(real_power(1e200, 1, out), no_failure);
    EXPECT_EQ(out, 1e200) << "without the square that is not used";
    EXPECT_EQ(real_power(1e-200, -2, out), msg_division_by_zero) << "the power has become zero";
}

TEST(complex_primitives, operations) {
    complex_value z{};
    EXPECT_EQ(complex_add({1, 2}, {3, 5}, z), no_failure);
    EXPECT_EQ(z.real, 4);
    EXPECT_EQ(z.imaginary, 7);
    EXPECT_EQ(complex_sub({1, 2}, {3, 5}, z), no_failure);
    EXPECT_EQ(z.real, -2);
    EXPECT_EQ(z.imaginary, -3);
    EXPECT_EQ(complex_mul({1, 2}, {3, 5}, z), no_failure);
    EXPECT_EQ(z.real, -7);
    EXPECT_EQ(z.imaginary, 11);
    z = {4, 2};
    EXPECT_EQ(complex_mul(z, z, z), no_failure) << "the operands may be the result";
    EXPECT_EQ(z.real, 12);
    EXPECT_EQ(z.imaginary, 16);
    EXPECT_EQ(complex_mul({0.1, 0.3}, {0.1, -0.3}, z), no_failure);
    EXPECT_EQ(z.imaginary, 0) << "each product is rounded before the sum";
    z = {12, 16};
    EXPECT_EQ(complex_div(z, {4, 2}, z), no_failure);
    EXPECT_EQ(z.real, 4);
    EXPECT_EQ(z.imaginary, 2);
    EXPECT_EQ(complex_div({0, 0}, {0, 0}, z), msg_division_by_zero);
    EXPECT_EQ(complex_div({1, 0}, {1e-200, 1e-200}, z), msg_division_by_zero) << "without scaling";
    EXPECT_EQ(z.real, 4) << "not stored";
    EXPECT_EQ(complex_div({1, 0}, {1e200, 1e200}, z), no_failure);
    EXPECT_EQ(z.real, 0) << "without scaling";
}

TEST(complex_primitives, power) {
    complex_value z{};
    EXPECT_EQ(complex_power({0, 0}, 0, z), zero_power);
    EXPECT_EQ(complex_power({0, 0}, -1, z), zero_power);
    EXPECT_EQ(complex_power({0, 0}, 2, z), no_failure);
    EXPECT_EQ(complex_power({0, 1}, 2, z), no_failure);
    EXPECT_EQ(z.real, -1);
    EXPECT_EQ(z.imaginary, 0);
    EXPECT_EQ(complex_power({0, 1}, -1, z), no_failure);
    EXPECT_EQ(z.real, 0);
    EXPECT_EQ(z.imaginary, -1);
    EXPECT_EQ(complex_power({3, 4}, 0, z), no_failure);
    EXPECT_EQ(z.real, 1);
    EXPECT_EQ(z.imaginary, 0);
}

// ---- values

fold_value integer(std::int32_t v, std::uint32_t kind = default_integer_kind) {
    fold_value value = new_fold_value(ck_value);
    value.type = integer_type(kind);
    value.integer = v;
    return value;
}

fold_value logical(std::int32_t v) {
    fold_value value = new_fold_value(ck_value);
    value.type = default_logical();
    value.integer = v;
    return value;
}

fold_value real(double v, std::uint32_t kind = default_real_kind) {
    fold_value value = new_fold_value(ck_value);
    value.type = real_type(kind);
    value.real = v;
    return value;
}

fold_value complex(double a, double b, std::uint32_t kind = default_real_kind) {
    fold_value value = new_fold_value(ck_value);
    value.type = complex_type(kind);
    value.real = a;
    value.imaginary = b;
    return value;
}

fold_value text(const std::string &s) {
    fold_value value = new_fold_value(ck_value);
    value.type = character_type(0, static_cast<std::int32_t>(s.size()));
    std::memcpy(new_fold_text(value, static_cast<std::int32_t>(s.size())), s.data(), s.size());
    return value;
}

std::string text_of(const fold_value &value) {
    return {reinterpret_cast<const char *>(fold_text(value)),
            static_cast<std::size_t>(constant_length(value.type))};
}

TEST_F(arithmetic, new_and_cleared_values) {
    error_pos = {5, 6};
    fold_value value = new_fold_value(ck_aggregate);
    EXPECT_EQ(value.source_pos, (source_pos{5, 6}));
    EXPECT_EQ(value.type, unknown_type());
    EXPECT_EQ(value.repr_kind, ck_aggregate);
    EXPECT_EQ(value.first_constant, nullptr);
    EXPECT_EQ(value.last_constant, nullptr);
    EXPECT_EQ(value.value_bytes, nullptr);
    EXPECT_TRUE(has_value(value));
    error_pos = {};
    append_to_fold_value(value, new_constant());
    clear_fold_value(value);
    EXPECT_FALSE(has_value(value));
    EXPECT_EQ(value.type, error_type());
    EXPECT_EQ(value.first_constant, nullptr);
    EXPECT_EQ(value.source_pos, (source_pos{5, 6}));
}

// Stored and read again.
fold_value again(const fold_value &value) {
    fold_value result = new_fold_value(ck_error);
    read_constant(store_fold_value(value), result);
    return result;
}

TEST_F(arithmetic, storing_and_reading_numbers) {
    EXPECT_EQ(again(integer(-5)).integer, -5);
    EXPECT_EQ(again(integer(40000, 0)).integer, 40000 - 65536) << "cut to 16 bits";
    EXPECT_EQ(again(integer(-5)).type, default_integer());
    EXPECT_EQ(again(integer(-5)).repr_kind, ck_value);
    EXPECT_EQ(again(logical(1)).integer, 1);
    EXPECT_EQ(again(real(0.1)).real, static_cast<double>(0.1f));
    EXPECT_EQ(again(real(0.1, 1)).real, 0.1);
    EXPECT_EQ(again(real(1e76)).real, infinite);
    for (const std::uint32_t kind : {0u, 1u}) {
        const fold_value z = again(complex(1.5, -2.5, kind));
        EXPECT_EQ(z.real, 1.5);
        EXPECT_EQ(z.imaginary, -2.5);
        EXPECT_EQ(z.type, complex_type(kind));
    }
}

TEST_F(arithmetic, storing_and_reading_texts) {
    for (const int length : {0, 1, 39, 40, 41, 5000}) {
        std::string s;
        for (int i = 0; i < length; ++i) {
            s += static_cast<char>('a' + i % 26);
        }
        const fold_value value = text(s);
        EXPECT_EQ(value.value_bytes != nullptr, length > inline_text_size);
        const constant *c = store_fold_value(value);
        EXPECT_EQ(c->type->size, length > 0 ? static_cast<unsigned>(length) : 1u);
        EXPECT_NE(c->value.bytes, fold_text(value));
        fold_value read = new_fold_value(ck_error);
        read_constant(c, read);
        EXPECT_EQ(text_of(read), s);
        EXPECT_EQ(read.value_bytes == c->value.bytes, length > inline_text_size);
    }
    // A short text may lie in memory of its own, as a part of a longer one.
    fold_value part = text(std::string(50, 'x') + "yz");
    part.value_bytes += 49;
    part.type = character_type(0, 3);
    EXPECT_EQ(text_of(part), "xyz");
    EXPECT_EQ(text_of(again(part)), "xyz");
}

TEST_F(arithmetic, positions) {
    fold_value value = integer(1);
    value.source_pos = {8, 9};
    const constant *c = store_fold_value(value);
    EXPECT_EQ(c->source_pos, (source_pos{8, 9}));
    fold_value read = new_fold_value(ck_error);
    read.source_pos = {10, 11};
    read_constant(c, read);
    EXPECT_EQ(read.source_pos, (source_pos{10, 11}));
}

TEST_F(arithmetic, storing_and_reading_aggregates) {
    fold_value value = new_fold_value(ck_aggregate);
    value.type = new_array_type(default_integer(), 1);
    constant *elements[] = {store_fold_value(integer(1)), store_fold_value(integer(2))};
    for (constant *element : elements) {
        append_to_fold_value(value, element);
    }
    EXPECT_EQ(value.first_constant, elements[0]);
    EXPECT_EQ(elements[0]->next, elements[1]);
    EXPECT_EQ(value.last_constant, elements[1]);
    const constant *c = store_fold_value(value);
    EXPECT_EQ(c->repr_kind, ck_aggregate);
    EXPECT_EQ(c->aggregate.first_constant, value.first_constant);
    EXPECT_EQ(c->aggregate.last_constant, value.last_constant);
    const fold_value read = again(value);
    EXPECT_EQ(read.repr_kind, ck_aggregate);
    EXPECT_EQ(read.first_constant, value.first_constant);
    EXPECT_EQ(read.last_constant, value.last_constant);
    EXPECT_EQ(read.type, value.type);
}

TEST_F(arithmetic, reading_what_is_no_plain_value) {
    fold_value value = integer(3);
    read_constant(new_constant(), value);
    EXPECT_FALSE(has_value(value));

    constant *expression = new_constant();
    set_constant_repr(expression, ck_expression);
    expression->type = default_integer();
    value = integer(3);
    read_constant(expression, value);
    EXPECT_FALSE(has_value(value)) << "not folded yet";
    expression->value.bytes = make_integer_constant(12, default_integer())->value.bytes;
    read_constant(expression, value);
    EXPECT_EQ(value.repr_kind, ck_value);
    EXPECT_EQ(value.integer, 12);

    constant *repeat = new_constant();
    set_constant_repr(repeat, ck_init_repeat);
    read_constant(repeat, value);
    EXPECT_FALSE(has_value(value));
    EXPECT_EQ(store_fold_value(value)->repr_kind, ck_error);
}

// ---- operators

// The result of an operation that is expected to succeed in silence.
fold_value binary(operation_kind op, const fold_value &left, const fold_value &right, type *t) {
    fold_value result = new_fold_value(ck_error);
    result.source_pos = {4, 5};
    const std::uint32_t before = error_count;
    EXPECT_TRUE(fold_binary(op, left, right, t, result)) << op;
    EXPECT_EQ(error_count, before);
    EXPECT_EQ(result.repr_kind, ck_value);
    EXPECT_EQ(result.source_pos, (source_pos{4, 5}));
    if (op != eok_concat) {
        EXPECT_EQ(result.type, t);
    }
    return result;
}

std::int32_t truth(operation_kind op, const fold_value &left, const fold_value &right) {
    return binary(op, left, right, default_logical()).integer;
}

fold_value unary(operation_kind op, const fold_value &operand, type *t) {
    fold_value result = new_fold_value(ck_error);
    result.source_pos = {4, 5};
    EXPECT_TRUE(fold_unary(op, operand, t, result)) << op;
    EXPECT_EQ(result.repr_kind, ck_value);
    EXPECT_EQ(result.source_pos, (source_pos{4, 5}));
    EXPECT_EQ(result.type, t);
    return result;
}

// What a failing operation reports: the text, once, at the place of the result. None for one that reports
// nothing and just does not fold.
std::optional<std::string> failure(operation_kind op, const fold_value &left, const fold_value &right,
                                   type *t) {
    fold_value result = new_fold_value(ck_value);
    result.source_pos = {0, 31};
    const std::uint32_t before = error_count;
    testing::internal::CaptureStderr();
    EXPECT_FALSE(fold_binary(op, left, right, t, result)) << op;
    std::fflush(stderr);
    const std::string printed = testing::internal::GetCapturedStderr();
    EXPECT_FALSE(has_value(result));
    EXPECT_EQ(result.source_pos, (source_pos{0, 31}));
    if (error_count == before) {
        EXPECT_EQ(printed, "");
        return std::nullopt;
    }
    EXPECT_EQ(error_count, before + 1);
    // "... error:   TEXT" and the end of the line.
    const std::size_t word = printed.find("rror:   ");
    return word == std::string::npos ? printed : printed.substr(word + 8, printed.size() - word - 9);
}

TEST_F(arithmetic, unary_operators) {
    type *l = default_logical();
    EXPECT_EQ(unary(eok_not, logical(0), l).integer, 1);
    EXPECT_EQ(unary(eok_not, logical(1), l).integer, 0);
    EXPECT_EQ(unary(eok_not, logical(-7), l).integer, 0);
    EXPECT_EQ(unary(eok_inegate, integer(5), default_integer()).integer, -5);
    EXPECT_EQ(unary(eok_inegate, integer(smallest), default_integer()).integer, smallest);
    EXPECT_EQ(unary(eok_fnegate, real(2.5), default_real()).real, -2.5);
    EXPECT_TRUE(std::signbit(unary(eok_fnegate, real(0), default_real()).real));
    const fold_value z = unary(eok_xnegate, complex(1, -2), default_complex());
    EXPECT_EQ(z.real, -1);
    EXPECT_EQ(z.imaginary, 2);
    EXPECT_EQ(unary(eok_cast, integer(3), default_real()).real, 3.0);
    unary(eok_spread, integer(3), default_integer());

    fold_value same = integer(9);
    EXPECT_TRUE(fold_unary(eok_inegate, same, default_integer(), same));
    EXPECT_EQ(same.integer, -9) << "the operand may be the result";
}

TEST_F(arithmetic, logical_operators) {
    const std::int32_t land[] = {0, 0, 0, 1}, lor[] = {0, 1, 1, 1}, neqv[] = {0, 1, 1, 0},
                       eqv[] = {1, 0, 0, 1};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(truth(eok_land, logical(i / 2), logical(i % 2)), land[i]);
        EXPECT_EQ(truth(eok_lor, logical(i / 2), logical(i % 2)), lor[i]);
        EXPECT_EQ(truth(eok_neqv, logical(i / 2), logical(i % 2)), neqv[i]);
        EXPECT_EQ(truth(eok_eqv, logical(i / 2), logical(i % 2)), eqv[i]);
    }
    EXPECT_EQ(truth(eok_land, logical(2), logical(4)), 1);
    EXPECT_EQ(truth(eok_eqv, logical(2), logical(4)), 0) << "equal as integers";
}

TEST_F(arithmetic, integer_operators) {
    type *t = default_integer();
    EXPECT_EQ(binary(eok_iadd, integer(7), integer(-9), t).integer, -2);
    EXPECT_EQ(binary(eok_isubtract, integer(-largest), integer(1), t).integer, smallest);
    EXPECT_EQ(binary(eok_imultiply, integer(46340), integer(46340), t).integer, 2147395600);
    EXPECT_EQ(binary(eok_idivide, integer(7), integer(-2), t).integer, -3);
    EXPECT_EQ(binary(eok_i_to_i_expon, integer(-2), integer(31), t).integer, smallest);
    // The short kind too works in 32 bits, until the value is stored.
    EXPECT_EQ(binary(eok_iadd, integer(20000, 0), integer(20000, 0), integer_type(0)).integer, 40000);

    const char *range = message_text(msg_integer_operation_result_is_out_of_range);
    EXPECT_EQ(failure(eok_iadd, integer(largest), integer(1), t),
              message_text(msg_integer_operation_result_is_out_of_range));
    EXPECT_EQ(failure(eok_isubtract, integer(-largest), integer(2), t), range);
    EXPECT_EQ(failure(eok_imultiply, integer(65536), integer(65536), t), range);
    EXPECT_EQ(failure(eok_i_to_i_expon, integer(2), integer(31), t), range);
    EXPECT_EQ(failure(eok_idivide, integer(smallest), integer(-1), t), range);
    EXPECT_EQ(failure(eok_idivide, integer(1), integer(0), t), message_text(msg_division_by_zero));
    EXPECT_EQ(failure(eok_i_to_i_expon, integer(0), integer(0), t),
              message_text(msg_zero_raised_to_nonpositive_power_is_undefined));

    fold_value same = integer(9);
    EXPECT_TRUE(fold_binary(eok_iadd, same, same, t, same));
    EXPECT_EQ(same.integer, 18) << "the operands may be the result";
}

struct relations {
    operation_kind eq, ne, gt, lt, ge, le;
};

void expect_order(const relations &r, const fold_value &a, const fold_value &b, int order) {
    EXPECT_EQ(truth(r.eq, a, b), order == 0);
    EXPECT_EQ(truth(r.ne, a, b), order != 0);
    EXPECT_EQ(truth(r.gt, a, b), order > 0);
    EXPECT_EQ(truth(r.lt, a, b), order < 0);
    EXPECT_EQ(truth(r.ge, a, b), order >= 0);
    EXPECT_EQ(truth(r.le, a, b), order <= 0);
}

TEST_F(arithmetic, comparisons) {
    const relations i{eok_ieq, eok_ine, eok_igt, eok_ilt, eok_ige, eok_ile};
    expect_order(i, integer(1), integer(2), -1);
    expect_order(i, integer(2), integer(2), 0);
    expect_order(i, integer(largest), integer(smallest), 1);
    const relations f{eok_feq, eok_fne, eok_fgt, eok_flt, eok_fge, eok_fle};
    expect_order(f, real(1), real(1.5), -1);
    expect_order(f, real(0.0), real(-0.0), 0);
    expect_order(f, real(1), real(-infinite), 1);
    const relations c{eok_ceq, eok_cne, eok_cgt, eok_clt, eok_cge, eok_cle};
    expect_order(c, text("a"), text("b"), -1);
    expect_order(c, text("a"), text("a   "), 0);
    expect_order(c, text("a   "), text("a"), 0);
    expect_order(c, text(""), text("  "), 0);
    expect_order(c, text("a"), text("a\t"), 1); // a tab is less than a blank
    expect_order(c, text("ab"), text("a"), 1);
    expect_order(c, text("\xe4"), text(" "), -1); // characters are signed
    expect_order(c, text("\xe4"), text(""), -1);
    expect_order(c, text(std::string(60, 'x')), text(std::string(60, 'x') + "y"), -1);
    EXPECT_EQ(compare_texts(text("abc"), text("abd")), -1);
}

TEST_F(arithmetic, no_complex_constants_are_equal) {
    EXPECT_EQ(truth(eok_xeq, complex(1, 2), complex(1, 2)), 0);
    EXPECT_EQ(truth(eok_xne, complex(1, 2), complex(1, 2)), 1);
    EXPECT_EQ(truth(eok_xeq, complex(1, 2), complex(3, 2)), 0);
    EXPECT_EQ(truth(eok_xne, complex(1, 2), complex(3, 2)), 1);
}

TEST_F(arithmetic, real_operators) {
    type *t = default_real();
    EXPECT_EQ(binary(eok_fadd, real(1), real(2), t).real, 3);
    EXPECT_EQ(binary(eok_fsubtract, real(1), real(2), t).real, -1);
    EXPECT_EQ(binary(eok_fmultiply, real(1e38), real(1e38), t).real, 1e38 * 1e38);
    EXPECT_EQ(binary(eok_fdivide, real(1), real(4), t).real, 0.25);
    EXPECT_EQ(binary(eok_f_to_i_expon, real(2), integer(-2), t).real, 0.25);
    EXPECT_EQ(failure(eok_fdivide, real(1), real(0), t), message_text(msg_division_by_zero));
    EXPECT_EQ(failure(eok_f_to_i_expon, real(0), integer(0), t),
              message_text(msg_zero_raised_to_nonpositive_power_is_undefined));
}

TEST_F(arithmetic, complex_operators) {
    type *t = default_complex();
    const auto expect = [&](operation_kind op, const fold_value &a, const fold_value &b, double re,
                            double im) {
        const fold_value z = binary(op, a, b, t);
        EXPECT_EQ(z.real, re);
        EXPECT_EQ(z.imaginary, im);
    };
    expect(eok_xadd, complex(1, 2), complex(3, 5), 4, 7);
    expect(eok_xsubtract, complex(1, 2), complex(3, 5), -2, -3);
    expect(eok_xmultiply, complex(1, 2), complex(3, 5), -7, 11);
    expect(eok_xdivide, complex(-7, 11), complex(3, 5), 1, 2);
    expect(eok_x_to_i_expon, complex(0, 1), integer(2), -1, 0);
    EXPECT_EQ(failure(eok_xdivide, complex(1, 0), complex(0, 0), t), message_text(msg_division_by_zero));
    EXPECT_EQ(failure(eok_x_to_i_expon, complex(0, 0), integer(0), t),
              message_text(msg_zero_raised_to_nonpositive_power_is_undefined));
}

TEST_F(arithmetic, operators_that_do_not_fold) {
    EXPECT_EQ(failure(eok_f_to_f_expon, real(2), real(0.5), default_real()), std::nullopt);
    EXPECT_EQ(failure(eok_x_to_x_expon, complex(2, 0), complex(2, 0), default_complex()), std::nullopt);
    for (const operation_kind op : {eok_lassign, eok_iassign, eok_add, eok_reshape, eok_error, eok_passign}) {
        EXPECT_EQ(failure(op, integer(1), integer(1), default_integer()), std::nullopt);
    }
}

TEST_F(arithmetic, concatenation) {
    const auto joined = [](const std::string &a, const std::string &b) {
        const fold_value value = binary(eok_concat, text(a), text(b), unknown_type());
        EXPECT_EQ(value.type, character_type(0, static_cast<std::int32_t>(a.size() + b.size())));
        EXPECT_EQ(value.value_bytes != nullptr, a.size() + b.size() > 40);
        return text_of(value);
    };
    EXPECT_EQ(joined("ab", "cde"), "abcde");
    EXPECT_EQ(joined("", ""), "");
    EXPECT_EQ(joined("", "x"), "x");
    EXPECT_EQ(joined("x", ""), "x");
    EXPECT_EQ(joined(std::string(20, 'a'), std::string(20, 'b')),
              std::string(20, 'a') + std::string(20, 'b'));
    EXPECT_EQ(joined(std::string(20, 'a'), std::string(21, 'b')),
              std::string(20, 'a') + std::string(21, 'b'));
    EXPECT_EQ(joined(std::string(400, 'a'), "b"), std::string(400, 'a') + "b");
    fold_value same = text("ab");
    EXPECT_TRUE(fold_binary(eok_concat, same, same, same.type, same));
    EXPECT_EQ(text_of(same), "abab");
    // Texts of a length that no text has.
    fold_value huge = text("x");
    huge.type = character_type(0, largest);
    EXPECT_EQ(failure(eok_concat, huge, text("x"), huge.type), std::nullopt);
}

// ---- conversions

fold_value converted(fold_value value, type *target) {
    convert_value(value, target);
    return value;
}

TEST_F(arithmetic, conversions_that_do_nothing) {
    EXPECT_EQ(converted(integer(5), unknown_type()).type, default_integer());
    fold_value no_type = integer(5);
    no_type.type = nullptr;
    EXPECT_EQ(converted(no_type, default_real()).type, nullptr);
    fold_value none = integer(5);
    clear_fold_value(none);
    EXPECT_FALSE(has_value(converted(none, default_real())));
    EXPECT_EQ(converted(none, default_real()).type, error_type());
    EXPECT_FALSE(has_value(converted(integer(5), error_type())));
}

TEST_F(arithmetic, number_conversions) {
    EXPECT_EQ(converted(integer(-3), default_real()).real, -3.0);
    const fold_value z = converted(integer(-3), default_complex());
    EXPECT_EQ(z.real, -3.0);
    EXPECT_EQ(z.imaginary, 0.0);
    EXPECT_EQ(z.type, default_complex());
    const fold_value cut = converted(integer(70000), integer_type(0));
    EXPECT_EQ(cut.integer, 70000) << "32 bits until it is stored";
    EXPECT_EQ(cut.type, integer_type(0));
    EXPECT_EQ(converted(real(2.9), default_integer()).integer, 2);
    EXPECT_EQ(converted(real(-2.9), default_integer()).integer, -2);
    fold_value with_rest = real(2.5);
    with_rest.imaginary = 9;
    EXPECT_EQ(converted(with_rest, default_complex()).imaginary, 0.0);
    const fold_value narrowed = converted(real(0.1, 1), default_real());
    EXPECT_EQ(narrowed.real, 0.1) << "a double until it is stored";
    EXPECT_EQ(narrowed.type, default_real());
    EXPECT_EQ(converted(complex(2.9, 7), default_integer()).integer, 2);
    EXPECT_EQ(converted(complex(2.9, 7), default_real()).real, 2.9);
    const fold_value wide = converted(complex(0.1, 0.2), complex_type(1));
    EXPECT_EQ(wide.real, 0.1);
    EXPECT_EQ(wide.imaginary, 0.2);
    EXPECT_EQ(wide.type, complex_type(1));
    EXPECT_EQ(converted(logical(1), logical_type(0)).integer, 1);
    EXPECT_EQ(converted(logical(1), logical_type(0)).type, logical_type(0));
}

TEST_F(arithmetic, reals_beyond_the_integers) {
    EXPECT_EQ(converted(real(1e10), default_integer()).integer, largest);
    EXPECT_EQ(converted(real(-1e10), default_integer()).integer, smallest);
    EXPECT_EQ(converted(real(2147483647.5, 1), default_integer()).integer, largest);
    EXPECT_EQ(converted(real(2147483648.0, 1), default_integer()).integer, largest);
    EXPECT_EQ(converted(real(-2147483648.5, 1), default_integer()).integer, smallest);
    EXPECT_EQ(converted(real(-2147483649.0, 1), default_integer()).integer, smallest);
    EXPECT_EQ(converted(real(infinite), default_integer()).integer, largest);
    EXPECT_EQ(converted(real(-infinite), default_integer()).integer, smallest);
    EXPECT_EQ(converted(real(std::nan("")), default_integer()).integer, 0);
}

TEST_F(arithmetic, text_conversions) {
    EXPECT_EQ(text_of(converted(integer(65), character_type(0, 1))), "A");
    EXPECT_EQ(text_of(converted(integer(256 + 65), character_type(0, 1))), "A");
    EXPECT_EQ(text_of(converted(integer(65), character_type(0, 3))), "A  ");
    EXPECT_EQ(text_of(converted(integer(65), character_type(0, 0))), "");
    EXPECT_EQ(text_of(converted(integer(65), character_type(0, 50))), "A" + std::string(49, ' '));
    EXPECT_EQ(text_of(converted(integer(65), assumed_character_type(0))), "A");
    EXPECT_EQ(converted(text("AB"), default_integer()).integer, 65);
    EXPECT_EQ(converted(text("\xff"), default_integer()).integer, -1);
    EXPECT_EQ(converted(text(""), default_integer()).integer, 0);

    // No value of a text type is without a text of that length.
    const fold_value others[] = {logical(65), real(65), complex(65, 66)};
    for (const fold_value &other : others) {
        EXPECT_EQ(text_of(again(converted(other, character_type(0, 50)))), std::string(50, ' '));
    }

    EXPECT_EQ(text_of(converted(text("abc"), character_type(0, 2))), "ab");
    EXPECT_EQ(text_of(converted(text("abc"), character_type(0, 3))), "abc");
    EXPECT_EQ(text_of(converted(text("abc"), character_type(0, 0))), "");
    EXPECT_EQ(text_of(converted(text("abc"), character_type(0, 5))), "abc  ");
    EXPECT_EQ(text_of(converted(text("abc"), character_type(0, 45))), "abc" + std::string(42, ' '));
    EXPECT_EQ(text_of(converted(text(std::string(50, 'x')), character_type(0, 52))),
              std::string(50, 'x') + "  ");
    EXPECT_EQ(text_of(converted(text(std::string(50, 'x')), character_type(0, 4))), "xxxx");
    const fold_value kept = converted(text("abc"), assumed_character_type(0));
    EXPECT_EQ(text_of(kept), "abc") << "a value has its length in its type";
    EXPECT_EQ(text_of(again(converted(text(std::string(50, 'x')), character_type(0, 4)))), "xxxx");
}

TEST_F(arithmetic, other_conversions_change_the_type_only) {
    type *derived = new_type(tk_derived_type);
    fold_value value = new_fold_value(ck_aggregate);
    value.type = derived;
    append_to_fold_value(value, new_constant());
    const fold_value result = converted(value, default_integer());
    EXPECT_EQ(result.type, default_integer());
    EXPECT_EQ(result.repr_kind, ck_aggregate);
    EXPECT_EQ(result.first_constant, value.first_constant);
    type *array = new_array_type(default_integer(), 1);
    EXPECT_EQ(converted(value, array).type, array);
}

// ---- reals in the target's bytes

struct stored_real {
    unsigned char bytes[8];
    stored_real(std::uint32_t kind, double value) { real_kinds[kind].write_value(bytes, value); }
};

TEST(real_bytes, to_integer) {
    const auto integer_of = [](std::uint32_t kind, double value) {
        std::int32_t result = 5;
        bool too_big = false;
        real_bytes_to_integer(kind, stored_real(kind, value).bytes, result, too_big);
        return too_big ? std::optional<std::int32_t>() : result;
    };
    EXPECT_EQ(integer_of(0, 2.75), 2);
    EXPECT_EQ(integer_of(0, -2.75), -2);
    EXPECT_EQ(integer_of(1, 2147483647.0), largest);
    EXPECT_EQ(integer_of(1, -2147483648.0), smallest);
    EXPECT_EQ(integer_of(1, 2147483647.5), std::nullopt);
    EXPECT_EQ(integer_of(1, -2147483648.5), std::nullopt);
    EXPECT_EQ(integer_of(0, 2147483647.0), std::nullopt) << "rounded to 2147483648";
    EXPECT_EQ(integer_of(0, infinite), std::nullopt);
    EXPECT_EQ(integer_of(1, std::nan("")), std::nullopt);
}

TEST(real_bytes, zero) {
    EXPECT_TRUE(real_is_zero(0, stored_real(0, 0.0).bytes));
    EXPECT_TRUE(real_is_zero(0, stored_real(0, -0.0).bytes));
    EXPECT_TRUE(real_is_zero(0, stored_real(0, 1e-60).bytes));
    EXPECT_FALSE(real_is_zero(1, stored_real(1, 1e-60).bytes));
}

TEST(real_bytes, text) {
    EXPECT_STREQ(real_to_text(0, stored_real(0, 1.5).bytes), "1.50000000e+00");
    EXPECT_STREQ(real_to_text(0, stored_real(0, 0.1).bytes), "1.00000001e-01");
    EXPECT_STREQ(real_to_text(0, stored_real(0, FLT_MAX).bytes), "3.40282347e+38");
    EXPECT_STREQ(real_to_text(1, stored_real(1, 0.1).bytes), "1.00000000000000006e-01");
    EXPECT_STREQ(real_to_text(1, stored_real(1, -DBL_MAX).bytes), "-1.79769313486231571e+308");
    EXPECT_STREQ(real_to_text(1, stored_real(1, 0).bytes), "0.00000000000000000e+00");
}

} // namespace
