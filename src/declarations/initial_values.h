// The initial values of variables, as DATA statements give them piece by piece: an aggregate of segments, in
// the order of their offsets in bytes. A segment is a `ck_init_position` and the values that fill it, equal
// neighbours as a `ck_init_repeat`. Segments neither overlap nor touch. A variable that is set as a whole has
// its value instead.
#pragma once

#include "il/records.h"

namespace zf90 {

// Gives `count` elements of an object from a byte offset on a value of the element's type. False if any of
// them has a value already; nothing is stored then, and nothing reported.
bool store_data_value(const constant *value, object *o, std::int64_t offset, std::uint32_t count);

// Moves the value of an object that lies in other storage to that storage. Error 17 if the storage has a
// value there.
void transfer_initializer(object *o);

} // namespace zf90
