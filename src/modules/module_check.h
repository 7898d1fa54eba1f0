// What the entries of a module file must satisfy beyond the file's form.
#pragma once

namespace zf90 {

// Checks the entries of the file that has been read last, so that the rest of the compiler can rely on them
// as on those that it makes itself: error 78 if it can't. Intrinsic types become those of this compilation.
void check_module_entries();

} // namespace zf90
