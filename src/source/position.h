// Where something stands in the source. A position holds no file and no line number: `seq` counts the
// physical lines of all files as they are read, and `find_position` (source/files.h) maps it back.
#pragma once

#include <cstdint>

namespace zf90 {

struct source_pos {
    std::uint32_t seq = 0;    // 1 is the first line read; 0, with column 0, is the null position
    std::uint16_t column = 0; // 1 is the first character of the physical line; 0 is the line as a whole

    friend bool operator==(const source_pos &, const source_pos &) = default;
};

inline constexpr source_pos null_pos{};

} // namespace zf90
