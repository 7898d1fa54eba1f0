// The region allocator. Blocks are filled from the front; what is left of a block that is too short for the
// next request is recycled through the free list when it is worth it, and lost until the region is freed
// otherwise.
#include "il/arena.h"

#include "driver/diagnostics.h"

#include <cstring>
#include <new>
#include <sys/mman.h>

namespace zf90 {

region_block **region_table;
std::int32_t region_table_size;
std::int32_t highest_region;
region_block *free_blocks;
std::int32_t il_region;

namespace {

constexpr std::int32_t region_growth_step = 150;
constexpr std::uint32_t minimum_block_size = 0x10000;
constexpr std::uint32_t tail_threshold = 220;
constexpr std::int32_t region_number_ceiling = 0x7fffffff;
constexpr std::size_t largest_request = 0x7fffffff;

unsigned char *address(region_block *b) { return reinterpret_cast<unsigned char *>(b); }
unsigned char *block_end(region_block *b) { return address(b) + b->end; }

constexpr std::uint32_t round_up(std::uint32_t n) { return (n + 7u) & ~7u; }

// Asks for the pages of a block at once, where the system can: one by one, each costs a fault.
void populate([[maybe_unused]] void *block, [[maybe_unused]] std::uint32_t size) {
#ifdef MADV_POPULATE_WRITE
    constexpr std::uintptr_t page_size = 4096; // a larger page just fails the call
    const auto address = reinterpret_cast<std::uintptr_t>(block);
    const std::uintptr_t rest_of_page = (page_size - address % page_size) % page_size;
    madvise(static_cast<char *>(block) + rest_of_page, size - rest_of_page, MADV_POPULATE_WRITE);
#endif
}

// A block with room for `n` bytes becomes the head of the region's list.
void obtain_block(std::int32_t region, std::uint32_t n) {
    region_block **link = &free_blocks;
    // The header is counted although the payload starts behind it: a spare block whose payload is exactly `n`
    // is passed over, on purpose.
    while (*link && (*link)->end - region_block_header_size < n + region_block_header_size) {
        link = &(*link)->next;
    }
    region_block *b = *link;
    if (b) {
        *link = b->next;
        b->first_free = region_block_header_size;
    } else {
        std::uint32_t size = n + region_block_header_size;
        size = size < minimum_block_size ? minimum_block_size : round_up(size);
        void *const place = sys_alloc(size);
        if (size == minimum_block_size) {
            populate(place, size);
        }
        b = new (place) region_block();
        b->total_size = size;
        b->first_free = region_block_header_size;
        b->end = size;
    }
    b->next = region_table[region];
    region_table[region] = b;
}

void unlink_free_block(region_block *f) {
    region_block **link = &free_blocks;
    while (*link != f) {
        link = &(*link)->next;
    }
    *link = f->next;
}

void release_block(region_block *b) {
    if (b->total_size != 0 && b->total_size == b->end) {
        std::free(b);
        return;
    }
    for (region_block *f = free_blocks; f;) {
        region_block *next = f->next;
        const bool before = block_end(f) == address(b);
        if (before || block_end(b) == address(f)) {
            unlink_free_block(f);
            if (before) {
                f->end += b->end;
                b = f;
            } else {
                b->end += f->end;
            }
            // Measured from the payload, unlike above: a block that has grown back to its original span stays
            // on the free list, on purpose.
            if (b->total_size != 0 && b->total_size == b->end - region_block_header_size) {
                std::free(b);
                return;
            }
        }
        f = next;
    }
    b->next = free_blocks;
    free_blocks = b;
}

void recycle_tail(region_block *b) {
    const std::uint32_t rest = b->end - b->first_free;
    if (rest < tail_threshold) {
        return;
    }
    region_block *tail = new (address(b) + b->first_free) region_block();
    tail->first_free = region_block_header_size;
    tail->end = rest;
    b->end = b->first_free;
    release_block(tail);
}

void make_region(std::int32_t region) {
    if (region >= region_table_size) {
        const auto old_bytes = static_cast<std::size_t>(region_table_size) * sizeof(region_block *);
        region_table_size += region_growth_step;
        region_table = static_cast<region_block **>(sys_realloc(
            region_table, old_bytes, static_cast<std::size_t>(region_table_size) * sizeof(region_block *)));
    }
    region_table[region] = nullptr;
    obtain_block(region, 0);
}

} // namespace

void out_of_memory() { catastrophe(msg_out_of_memory); }

void region_init() {
    if (!std::get_new_handler()) {
        std::set_new_handler(out_of_memory); // for the containers of the standard library
    }
    highest_region = 0;
    make_region(0);
}

std::int32_t new_region() {
    if (highest_region == region_number_ceiling) {
        catastrophe(msg_program_too_large_to_compile_too_many_subprograms);
    }
    ++highest_region;
    make_region(highest_region);
    return highest_region;
}

void *alloc_in_region(std::int32_t region, std::int32_t n) {
    const std::uint32_t size = n > 0 ? round_up(static_cast<std::uint32_t>(n)) : 0;
    region_block *b = region_table[region];
    if (size > b->end - b->first_free) {
        recycle_tail(b);
        obtain_block(region, size);
        b = region_table[region];
    }
    void *result = address(b) + b->first_free;
    b->first_free += size;
    return result;
}

void *il_alloc(std::int32_t n) {
    void *result = alloc_in_region(il_region, n);
    if (n > 0) {
        std::memset(result, 0, static_cast<std::size_t>(n));
    }
    return result;
}

std::int32_t region_size(std::size_t n) {
    if (n > largest_request) {
        out_of_memory();
    }
    return static_cast<std::int32_t>(n);
}

void free_region(std::int32_t region) {
    for (region_block *b = region_table[region]; b;) {
        region_block *next = b->next;
        release_block(b);
        b = next;
    }
    region_table[region] = nullptr;
}

void *sys_alloc(std::size_t n) { return sys_realloc(nullptr, 0, n); }

void *sys_realloc(void *old, std::size_t, std::size_t n) {
    void *result = std::realloc(old, n > 0 ? n : 1);
    if (!result) {
        out_of_memory();
    }
    return result;
}

char *il_copy_string(const char *text, std::size_t length) {
    char *copy = static_cast<char *>(il_alloc(region_size(length + 1)));
    std::memcpy(copy, text, length);
    return copy;
}

} // namespace zf90
