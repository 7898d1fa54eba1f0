// A fresh intermediate language for a test of the core: the memory, the caches and the table of constants.
#pragma once

#include "il/arena.h"
#include "il/entries.h"

#include <gtest/gtest.h>

struct il_test : testing::Test {
    il_test() {
        zf90::region_init();
        zf90::il_init();
    }
    ~il_test() override {
        for (std::int32_t region = zf90::highest_region; region >= 0; --region) {
            zf90::free_region(region);
        }
    }
};
