// The list of values of a DATA statement.
#pragma once

#include "constants/arithmetic.h"

namespace zf90 {

// A value as it was read. One in error has been reported, and has no value.
struct data_value {
    fold_value value;
    bool is_boz;      // it has no type of its own
    bool is_reported; // it does not fit an item
};

// The list being read: the value at hand, and how often it is still to be used. `at_end`: after a failure, or
// the end of the statement; nothing more is matched then, and values that are missing or left are no error.
struct data_value_queue {
    data_value current;
    std::uint32_t remaining;
    bool at_end;
};

// The value that was taken last has been reported; the other items that it is for are passed over.
void note_reported_value(data_value_queue &queue);

// Reads the first value, at the current token.
void start_data_values(data_value_queue &queue);

// Takes a value to be used up to `max` times. Returns how many times, 0 if there is no more value.
std::uint32_t take_data_values(data_value_queue &queue, data_value &value, std::uint32_t max);

// Reads the values that are left up to the "/" or the end of the statement, and throws them away.
void drop_data_values(data_value_queue &queue);

} // namespace zf90
