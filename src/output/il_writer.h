// Writes the intermediate language as text: the `.cil` file of a compilation, and, with `module_mode` set,
// the records of a module file.
#pragma once

#include "il/records.h"

#include <cstdio>

namespace zf90 {

inline constexpr const char *il_format_version = "2.30F";

// Writes the whole IL to `il_file` and closes it; does nothing if there is no such file. If an error has been
// counted, the file is closed and deleted instead. A failure to write or to delete is catastrophic.
void write_il_file(il_header &root);

// If an error has been counted, closes and deletes the IL file, which from then on there is none of; true
// then.
bool discard_il_after_errors();

// Writes everything reachable from `root` to `il_file` in the current mode, and closes it. A failure is
// catastrophic.
void write_il(il_header &root);

} // namespace zf90
