// The numbers of the intrinsic operators and procedures, made from the table of intrinsics. They stand in
// `enk_intrinsic` nodes and in the file format, and say which handler checks a reference.
#pragma once

#include "il/kinds.h"

namespace zf90 {

// The operators as they are named in the table (plus_op), the procedures with `intr_` before (intr_iabs).
enum intrinsic_code : std::uint8_t {
#define INTRINSIC_OPERATOR(code, name, flags, forms) code,
#define INTRINSIC(code, name, flags, forms) intr_##code,
#include "intrinsics/seed_table.def"
    intrinsic_code_count
};

// The name that is printed for it: "plus_op", "iabs"; and as a program spells it: "+", "IABS".
const char *intrinsic_code_name(unsigned code); // "**BAD INTRINSIC**" for an unknown one
const char *intrinsic_spelling(unsigned code);  // the same

} // namespace zf90
