// The region allocator to the byte: block sizes, tails, the free list, and what goes back to the system.
#include "il/arena.h"

#include "driver/diagnostics.h"
#include "support/front_end.h"

#include <cstring>

// Under AddressSanitizer an allocation that can't be had returns null, as without it.
extern "C" const char *__asan_default_options();
extern "C" const char *__asan_default_options() { return "allocator_may_return_null=1"; }

namespace zf90 {
namespace {

class ArenaTest : public testing::Test {
protected:
    void SetUp() override {
        free_blocks = nullptr;
        region_init();
        region = new_region();
    }

    region_block *head() const { return region_table[region]; }
    std::uint32_t rest() const { return head()->end - head()->first_free; }
    // Fills the head block up to `left` bytes.
    void fill_to(std::uint32_t left) { alloc_in_region(region, static_cast<std::int32_t>(rest() - left)); }

    std::int32_t region = 0;
};

TEST_F(ArenaTest, RegionZeroComesFirstAndNothingIsAllocatedFromIt) {
    EXPECT_EQ(region, 1);
    EXPECT_EQ(highest_region, 1);
    EXPECT_EQ(region_table_size % 150, 0);
    EXPECT_EQ(region_table[0]->first_free, region_block_header_size);
}

TEST_F(ArenaTest, FirstBlockHasTheMinimumSize) {
    EXPECT_EQ(head()->total_size, 65536u);
    EXPECT_EQ(head()->end, 65536u);
    EXPECT_EQ(head()->first_free, 24u);
}

TEST_F(ArenaTest, RequestsAreRoundedUpToEight) {
    auto *a = static_cast<unsigned char *>(alloc_in_region(region, 1));
    auto *b = static_cast<unsigned char *>(alloc_in_region(region, 8));
    auto *c = static_cast<unsigned char *>(alloc_in_region(region, 9));
    auto *d = static_cast<unsigned char *>(alloc_in_region(region, 0));
    EXPECT_EQ(b - a, 8);
    EXPECT_EQ(c - b, 8);
    EXPECT_EQ(d - c, 16);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(a) % 8, 0u);
}

TEST_F(ArenaTest, ZeroBytesAdvanceNothing) {
    void *a = alloc_in_region(region, 0);
    void *b = alloc_in_region(region, 0);
    EXPECT_EQ(a, b);
    EXPECT_EQ(alloc_in_region(region, 8), a);
}

TEST_F(ArenaTest, NegativeSizeCountsAsZero) {
    const std::uint32_t before = head()->first_free;
    alloc_in_region(region, -5);
    EXPECT_EQ(head()->first_free, before);
}

TEST_F(ArenaTest, LargeRequestsGetABlockOfTheirOwnSize) {
    alloc_in_region(region, 65504);
    EXPECT_EQ(head()->total_size, 65536u); // 65528 bytes with the header: the minimum
    fill_to(0);
    alloc_in_region(region, 65520);
    EXPECT_EQ(head()->total_size, 65544u);
    fill_to(0);
    alloc_in_region(region, 100001);
    EXPECT_EQ(head()->total_size, 100008u + 24u);
}

TEST_F(ArenaTest, TailOf216BytesIsLost) {
    region_block *first = head();
    fill_to(216); // the longest tail of whole granules below 220
    alloc_in_region(region, 224);
    EXPECT_NE(head(), first);
    EXPECT_EQ(free_blocks, nullptr);
    EXPECT_EQ(first->end, 65536u);
}

TEST_F(ArenaTest, TailOf219BytesIsLostAnd220AreRecycled) {
    region_block *first = head();
    first->end -= 5; // an end off the granule: 219 bytes are left
    fill_to(219);
    alloc_in_region(region, 224);
    EXPECT_EQ(free_blocks, nullptr);

    region_block *second = head();
    second->end -= 4;
    fill_to(220);
    alloc_in_region(region, 224);
    ASSERT_NE(free_blocks, nullptr);
    EXPECT_EQ(free_blocks->total_size, 0u);
    EXPECT_EQ(free_blocks->end, 220u);
    EXPECT_EQ(free_blocks->first_free, 24u);
    EXPECT_EQ(second->end, second->first_free);
}

TEST_F(ArenaTest, SpareBlockIsUsedWhenItHoldsTheRequestAndAHeader) {
    fill_to(1024); // the tail will have a payload of 1000 bytes
    alloc_in_region(region, 2000);
    region_block *tail = free_blocks;
    ASSERT_NE(tail, nullptr);
    ASSERT_EQ(tail->end - region_block_header_size, 1000u);

    // A request that would fit exactly is passed over; 24 bytes less are taken.
    const std::int32_t other = new_region();
    EXPECT_EQ(region_table[other], tail) << "a first block is asked for with 0 bytes";
}

TEST_F(ArenaTest, SpareBlockWithExactPayloadIsPassedOver) {
    fill_to(1024);
    alloc_in_region(region, 2000);
    region_block *tail = free_blocks;
    ASSERT_EQ(tail->end - region_block_header_size, 1000u);
    fill_to(8);
    alloc_in_region(region, 1000);
    EXPECT_NE(head(), tail);
    EXPECT_EQ(free_blocks, tail);
    fill_to(8);
    alloc_in_region(region, 976);
    EXPECT_EQ(head(), tail);
    EXPECT_EQ(free_blocks, nullptr);
    EXPECT_EQ(tail->first_free, 24u + 976u);
}

TEST_F(ArenaTest, FreeingAWholeBlockGivesItBack) {
    fill_to(0);
    free_region(region);
    EXPECT_EQ(region_table[region], nullptr);
    EXPECT_EQ(free_blocks, nullptr);
}

TEST_F(ArenaTest, BlockGrownBackToItsSpanStaysOnTheFreeList) {
    region_block *first = head();
    fill_to(1024);
    alloc_in_region(region, 2000); // the tail of `first` goes to the free list
    ASSERT_NE(free_blocks, nullptr);
    free_region(region);
    ASSERT_EQ(free_blocks, first);
    EXPECT_EQ(first->end, 65536u);
    EXPECT_EQ(first->next, nullptr);
    // And it serves again, from its start.
    const std::int32_t other = new_region();
    EXPECT_EQ(region_table[other], first);
    EXPECT_EQ(first->first_free, 24u);
}

TEST_F(ArenaTest, TailReleasedAfterItsBlockJoinsIt) {
    region_block *first = head();
    fill_to(1024);
    alloc_in_region(region, 2000);
    region_block *tail = free_blocks;
    const std::int32_t other = new_region(); // takes the tail
    ASSERT_EQ(region_table[other], tail);
    free_region(region);
    EXPECT_EQ(free_blocks, first);
    EXPECT_EQ(first->end, 65536u - 1024u);
    free_region(other);
    EXPECT_EQ(free_blocks, first);
    EXPECT_EQ(first->end, 65536u);
}

TEST_F(ArenaTest, RegionTableGrowsBy150) {
    const std::int32_t size = region_table_size;
    while (highest_region + 1 < size) {
        new_region();
    }
    EXPECT_EQ(region_table_size, size);
    new_region();
    EXPECT_EQ(region_table_size, size + 150);
}

TEST_F(ArenaTest, RegionNumbersHaveACeiling) {
    EXPECT_STREQ(message_text(msg_program_too_large_to_compile_too_many_subprograms),
                 "program too large to compile (too many subprograms)");
    error_limit = 100;
    highest_region = 0x7fffffff;
    EXPECT_EXIT(new_region(), testing::ExitedWithCode(4),
                "program too large to compile .too many subprograms.");
    highest_region = 1;
}

TEST_F(ArenaTest, OutOfMemoryIsCatastrophic) {
    EXPECT_EXIT(sys_alloc(SIZE_MAX / 2), testing::ExitedWithCode(4), message_text(msg_out_of_memory));
}

TEST_F(ArenaTest, IlAllocClearsWhatItHandsOut) {
    il_region = region;
    std::memset(alloc_in_region(region, 4096), 0xff, 4096);
    free_region(region);
    il_region = new_region();
    const auto *p = static_cast<const unsigned char *>(il_alloc(4096));
    for (int i = 0; i < 4096; ++i) {
        ASSERT_EQ(p[i], 0);
    }
}

TEST_F(ArenaTest, ReallocKeepsTheContents) {
    auto *p = static_cast<char *>(sys_realloc(nullptr, 0, 6));
    std::memcpy(p, "hello", 6);
    p = static_cast<char *>(sys_realloc(p, 6, 100000));
    EXPECT_STREQ(p, "hello");
    std::free(p);
}

} // namespace
} // namespace zf90
