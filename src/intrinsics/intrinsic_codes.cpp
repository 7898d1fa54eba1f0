// The names of the intrinsics.
#include "intrinsics/intrinsic_codes.h"

namespace zf90 {

namespace {

struct intrinsic_names {
    const char *code_name;
    const char *spelling;
};

constexpr intrinsic_names names[] = {
#define INTRINSIC_OPERATOR(code, name, flags, forms) {#code, name},
#define INTRINSIC(code, name, flags, forms) {#code, name},
#include "intrinsics/seed_table.def"
};

constexpr char unknown[] = "**BAD INTRINSIC**";

} // namespace

const char *intrinsic_code_name(unsigned code) {
    return code < intrinsic_code_count ? names[code].code_name : unknown;
}

const char *intrinsic_spelling(unsigned code) {
    return code < intrinsic_code_count ? names[code].spelling : unknown;
}

} // namespace zf90
