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
};
