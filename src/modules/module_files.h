// Module files: each module of a source leaves a file with its public names, in the format of the
// intermediate language, and a USE statement reads it back.
#pragma once

#include "declarations/symbols.h"

namespace zf90 {

// Whether this source has defined modules.
bool has_module_files(const il_header &root);

// Writes the files of all modules that this source has defined. Failures are catastrophic.
void write_module_files(il_header &root);

// Writes the file of one module into the first directory of the search list.
void write_module_file(il_header &root, object *module);

// The module that a USE statement names, with its public names in `aux`, linked through `next_in_scope`.
// `module` is its symbol, or null if this source has not met it: then its file is read. There is no return if
// the file can't be read or the symbol is none of a module.
symbol *load_module(symbol *module, const name_locator &name);

// The callback of the reader: the symbol of a public name.
void make_module_symbol(atom *name, symbol_kind kind, il_entry *payload);

// The public name of a loaded module with that spelling, or null. The first call for a module walks its list.
symbol *find_in_module(const symbol *module, const atom *name);

// Once at the start of a compilation.
void modules_init();

} // namespace zf90
