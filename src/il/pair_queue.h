// A queue of pairs of entries that are assumed to be equal while the question is being answered. Comparing
// two graphs means: take the next pair, compare it without its children, queue the pairs of its children. A
// pair that was queued before is not queued again, so cycles end and shared parts are compared once. Used for
// types (expressions/predicates.cpp) and constants (il/constants.cpp).
#pragma once

#include <cstddef>
#include <cstdint>

namespace zf90 {

struct queued_pair {
    const void *a;
    const void *b;
};

struct pair_queue {
    queued_pair *pairs; // all pairs since the last start, in order
    std::size_t count;
    std::size_t taken; // how many of them have been taken
    std::size_t capacity;
    std::uint32_t *slots; // 1 more than the number of a pair, 0 if free; made when there are many pairs
    std::size_t slot_count;
};

void start_pairs(pair_queue &queue);
void queue_pair(pair_queue &queue, const void *a, const void *b); // unless it is there
bool take_pair(pair_queue &queue, queued_pair &pair);             // false: none is left

} // namespace zf90
