// A page of HTML about a file of intermediate language.
#pragma once

#include "library/il_file.h"

#include <cstdio>

namespace zf90 {

// Prints the page. `path` is that of the file: sources are looked for beside it too.
void print_html_page(loaded_il &file, const char *path, std::FILE *output);

} // namespace zf90
