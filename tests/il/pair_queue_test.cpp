// The queue gives each pair once, in the order of the first request, whether the pairs are few or many.
#include "il/pair_queue.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

using namespace zf90;

namespace {

const char entries[200] = {}; // things to make pairs of

pair_queue q; // keeps its memory, so it stays from test to test

using pair_of_numbers = std::pair<int, int>;

std::vector<pair_of_numbers> taken() {
    std::vector<pair_of_numbers> result;
    for (queued_pair pair; take_pair(q, pair);) {
        result.emplace_back(static_cast<const char *>(pair.a) - entries,
                            static_cast<const char *>(pair.b) - entries);
    }
    return result;
}

void queue_all(const std::vector<pair_of_numbers> &pairs) {
    for (const auto &[a, b] : pairs) {
        queue_pair(q, &entries[a], &entries[b]);
    }
}

// Every pair of a square, so that many share one side; the two orders of a pair are different pairs.
std::vector<pair_of_numbers> square(int side) {
    std::vector<pair_of_numbers> pairs;
    for (int a = 0; a < side; ++a) {
        for (int b = 0; b < side; ++b) {
            pairs.emplace_back(a, b);
        }
    }
    return pairs;
}

TEST(pair_queue, gives_each_pair_once) {
    for (const int side : {1, 2, 3, 4, 5, 40, 6, 200, 4}) { // a shorter queue after a longer one too
        const std::vector<pair_of_numbers> pairs = square(side);
        start_pairs(q);
        queue_all(pairs);
        queue_all(pairs);
        EXPECT_EQ(taken(), pairs) << side;
        queue_all(pairs);
        EXPECT_TRUE(taken().empty()) << "what was taken is not queued again";
    }
}

TEST(pair_queue, knows_the_pairs_while_it_grows) {
    start_pairs(q);
    const std::vector<pair_of_numbers> pairs = square(20);
    for (std::size_t i = 0; i < pairs.size(); ++i) {
        queue_all({pairs[i]});
        queue_all({pairs[i], pairs[i / 2], pairs[0]});
        ASSERT_EQ(q.count, i + 1);
    }
    EXPECT_EQ(taken(), pairs);
}

TEST(pair_queue, starts_anew) {
    start_pairs(q);
    queue_all(square(10));
    start_pairs(q);
    EXPECT_TRUE(taken().empty());
    queue_all({{1, 1}, {1, 2}});
    EXPECT_EQ(taken(), (std::vector<pair_of_numbers>{{1, 1}, {1, 2}}));
}

} // namespace
