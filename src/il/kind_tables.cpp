// The kind tables of the target.
#include "il/types.h"

#include <bit>
#include <cfloat>
#include <cmath>
#include <limits>

namespace zf90 {

namespace {

// ---- the target's bytes, the lowest first

template <class Word> Word load(const unsigned char *bytes) {
    Word word = 0;
    for (unsigned i = 0; i < sizeof(Word); ++i) {
        word |= static_cast<Word>(static_cast<Word>(bytes[i]) << (8 * i));
    }
    return word;
}

template <class Word> void store(unsigned char *bytes, Word word) {
    for (unsigned i = 0; i < sizeof(Word); ++i) {
        bytes[i] = static_cast<unsigned char>(word >> (8 * i));
    }
}

std::int32_t read_int8(const unsigned char *bytes) { return static_cast<std::int8_t>(bytes[0]); }
std::int32_t read_int16(const unsigned char *bytes) {
    return static_cast<std::int16_t>(load<std::uint16_t>(bytes));
}
std::int32_t read_int32(const unsigned char *bytes) {
    return static_cast<std::int32_t>(load<std::uint32_t>(bytes));
}
double read_float32(const unsigned char *bytes) {
    return static_cast<double>(std::bit_cast<float>(load<std::uint32_t>(bytes)));
}
double read_float64(const unsigned char *bytes) { return std::bit_cast<double>(load<std::uint64_t>(bytes)); }

// The low bits of the value.
void write_int8(unsigned char *bytes, std::int32_t value) { bytes[0] = static_cast<unsigned char>(value); }
void write_int16(unsigned char *bytes, std::int32_t value) {
    store(bytes, static_cast<std::uint16_t>(value));
}
void write_int32(unsigned char *bytes, std::int32_t value) {
    store(bytes, static_cast<std::uint32_t>(value));
}

// To the nearest. From half a unit above the largest float on, that is infinity.
float round_to_float(double value) {
    constexpr double infinite_from = 0x1.ffffffp127;
    const double magnitude = std::fabs(value);
    if (magnitude > static_cast<double>(FLT_MAX)) {
        const float nearest = magnitude < infinite_from ? FLT_MAX : std::numeric_limits<float>::infinity();
        return std::copysign(nearest, std::signbit(value) ? -1.0f : 1.0f);
    }
    return static_cast<float>(value);
}

void write_float32(unsigned char *bytes, double value) {
    store(bytes, std::bit_cast<std::uint32_t>(round_to_float(value)));
}
void write_float64(unsigned char *bytes, double value) { store(bytes, std::bit_cast<std::uint64_t>(value)); }

} // namespace

const kind_row<std::int32_t> integer_kinds[] = {
    {1, 2, 2, 2, 15, 0, 0, '\0', read_int16, write_int16},
    {2, 4, 4, 2, 31, 0, 0, '\0', read_int32, write_int32},
};
const kind_row<double> real_kinds[] = {
    {1, 4, 4, 2, 24, -125, 128, '\0', read_float32, write_float32},
    {2, 8, 8, 2, 53, -1021, 1024, '\0', read_float64, write_float64},
};
const kind_row<std::int32_t> logical_kinds[] = {
    {1, 1, 1, 0, 0, 0, 0, '\0', read_int8, write_int8},
    {2, 4, 4, 0, 0, 0, 0, '\0', read_int32, write_int32},
};
const kind_row<std::int32_t> character_kinds[] = {
    {1, 1, 1, 0, 0, 0, 0, ' ', read_int8, write_int8},
};

} // namespace zf90
