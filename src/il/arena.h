// Memory of the intermediate language: regions of bump-allocated blocks that are dropped as a whole, one free
// list of spare blocks for all regions, and a thin pair of calls to the system allocator for tables that
// grow. No allocator result needs a test: running out of memory is a catastrophic error and does not return.
#pragma once

#include <cstddef>
#include <cstdint>
#include <new>
#include <type_traits>

namespace zf90 {

// Every block starts with this header of 24 bytes; addresses within the block are kept as byte offsets from
// its start, so that the header has the same size on every host.
struct region_block {
    region_block *next;
    std::uint32_t total_size; // bytes obtained from the system; 0 for a block carved out of another's tail
    std::uint32_t first_free; // offset of the next byte to hand out
    std::uint32_t end;        // offset one past the last usable byte
    std::uint32_t spare;
};

inline constexpr std::uint32_t region_block_header_size = 24;
static_assert(sizeof(region_block) == region_block_header_size);

// Owned by arena.cpp.
extern region_block **region_table; // slot n: head of region n's block list, the block being filled
extern std::int32_t region_table_size;
extern std::int32_t highest_region;
extern region_block *free_blocks; // spare blocks, in no order
extern std::int32_t il_region;    // made by il_init

void region_init();        // makes region 0; from now on operator new ends the run where there is no memory
std::int32_t new_region(); // the number of a fresh region; catastrophe 498 past 2147483647 regions

// `n` bytes of a region, rounded up to a multiple of 8, 8-aligned, not cleared. A negative size counts as 0.
void *alloc_in_region(std::int32_t region, std::int32_t n);

// `n` bytes of the IL region, cleared to zero.
void *il_alloc(std::int32_t n);

// A size for the above: what does not fit is more memory than there is.
std::int32_t region_size(std::size_t n);

void free_region(std::int32_t region);

[[noreturn]] void out_of_memory();

// System memory for tables that are reallocated. `old` may be null.
void *sys_alloc(std::size_t n);
void *sys_realloc(void *old, std::size_t old_size, std::size_t n);

// A zero-filled record in the IL region.
template <class T> T *il_new() {
    static_assert(std::is_trivially_destructible_v<T>);
    return new (alloc_in_region(il_region, static_cast<std::int32_t>(sizeof(T)))) T();
}

// A zero-filled array in the IL region.
template <class T> T *il_new_array(std::size_t count) {
    static_assert(std::is_trivially_destructible_v<T>);
    return new (alloc_in_region(il_region, region_size(sizeof(T) * count))) T[count]();
}

// A NUL-terminated copy of `length` characters in the IL region.
char *il_copy_string(const char *text, std::size_t length);

} // namespace zf90
