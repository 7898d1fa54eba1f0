// A fresh intermediate language for a test of the core: the memory, the caches and the table of constants. No
// source file is open, and there has been no error.
#pragma once

#include "driver/diagnostics.h"
#include "il/arena.h"
#include "il/entries.h"
#include "source/files.h"

#include <gtest/gtest.h>

struct il_test : testing::Test {
    il_test() {
        zf90::error_count = 0;
        zf90::region_init();
        zf90::il_init();
        zf90::source_files_init();
    }
    ~il_test() override {
        for (std::int32_t region = zf90::highest_region; region >= 0; --region) {
            zf90::free_region(region);
        }
    }
};
