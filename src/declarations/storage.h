// The storage of a unit's variables: COMMON blocks and EQUIVALENCE.
#pragma once

namespace zf90 {

// When the specification part ends: gives every variable of COMMON and EQUIVALENCE statements its place, and
// empties the unit's lists of them.
void layout_storage();

} // namespace zf90
