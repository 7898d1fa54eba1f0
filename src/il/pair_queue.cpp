// The pairs are searched one by one while they are few, and through a hash index from then on.
#include "il/pair_queue.h"

#include "il/arena.h"

#include <algorithm>
#include <cstring>

namespace zf90 {

namespace {

constexpr std::size_t few = 16;

std::size_t slot_of(const pair_queue &q, const void *a, const void *b) {
    std::uint64_t h = reinterpret_cast<std::uintptr_t>(a) * 0x9e3779b97f4a7c15u;
    h = (h ^ (h >> 32) ^ reinterpret_cast<std::uintptr_t>(b)) * 0xff51afd7ed558ccdu;
    return static_cast<std::size_t>(h >> 20) & (q.slot_count - 1);
}

// The slot of the pair, or the free one where it belongs.
std::uint32_t *find_slot(const pair_queue &q, const void *a, const void *b) {
    for (std::size_t i = slot_of(q, a, b);; i = (i + 1) & (q.slot_count - 1)) {
        const std::uint32_t number = q.slots[i];
        if (number == 0 || (q.pairs[number - 1].a == a && q.pairs[number - 1].b == b)) {
            return &q.slots[i];
        }
    }
}

void make_index(pair_queue &q, std::size_t slot_count) {
    q.slots = static_cast<std::uint32_t *>(
        sys_realloc(q.slots, q.slot_count * sizeof(std::uint32_t), slot_count * sizeof(std::uint32_t)));
    q.slot_count = slot_count;
    std::memset(q.slots, 0, slot_count * sizeof(std::uint32_t));
    for (std::size_t i = 0; i < q.count; ++i) {
        *find_slot(q, q.pairs[i].a, q.pairs[i].b) = static_cast<std::uint32_t>(i + 1);
    }
}

} // namespace

void start_pairs(pair_queue &q) {
    q.count = 0;
    q.taken = 0;
}

void queue_pair(pair_queue &q, const void *a, const void *b) {
    std::uint32_t *slot = nullptr;
    if (q.count < few) {
        for (std::size_t i = 0; i < q.count; ++i) {
            if (q.pairs[i].a == a && q.pairs[i].b == b) {
                return;
            }
        }
    } else {
        if (q.count == few) {
            make_index(q, 8 * few);
        } else if (2 * q.count >= q.slot_count) {
            make_index(q, 4 * q.slot_count);
        }
        slot = find_slot(q, a, b);
        if (*slot != 0) {
            return;
        }
    }
    if (q.count == q.capacity) {
        const std::size_t capacity = std::max<std::size_t>(few, 2 * q.capacity);
        q.pairs = static_cast<queued_pair *>(
            sys_realloc(q.pairs, q.capacity * sizeof(queued_pair), capacity * sizeof(queued_pair)));
        q.capacity = capacity;
    }
    q.pairs[q.count++] = {a, b};
    if (slot) {
        *slot = static_cast<std::uint32_t>(q.count);
    }
}

bool take_pair(pair_queue &q, queued_pair &pair) {
    if (q.taken == q.count) {
        return false;
    }
    pair = q.pairs[q.taken++];
    return true;
}

} // namespace zf90
