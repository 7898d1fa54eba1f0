// Reads the intermediate language back from its text: any file of the format becomes entries again. The two
// things that depend on the use of a file are callbacks: what a name is, and what becomes of a symbol. A file
// of any other form is a catastrophic error at the current position.
#pragma once

#include "il/records.h"

#include <array>
#include <cstdio>
#include <string_view>

namespace zf90 {

// Returns the interned name.
using intern_atom_callback = atom *(*)(const char *name);

// Makes the symbol that a record describes. The payload, null or an entry of the kind that the symbol kind
// asks for, may not be filled yet.
using symbol_callback = void (*)(atom *name, symbol_kind kind, il_entry *payload);

// Of the file that is being read, and until the next one.
extern std::FILE *il_input;
extern intern_atom_callback intern_atom_fn;
extern symbol_callback symbol_fn;
extern std::array<std::uint64_t, entry_kind_count> entry_counts; // the count line
extern std::array<void *, entry_kind_count> entry_arrays;        // null where the count is zero

// Reads a whole file and returns its root. Every entry of it has been read exactly once, every reference
// leads to one, and the sizes of bounds and values are those that their types ask for; whether the entries
// make sense is for the caller to find out. What has been read is never freed.
il_header *read_il_file(std::FILE *input, intern_atom_callback intern, symbol_callback make_symbol);

// Error 78.
[[noreturn]] void reject_il_file();

// The text of the file that was read last, and how much of it has been read: of a file that is rejected, the
// last of these characters is the one at fault.
extern std::string_view il_text;
extern std::size_t il_text_place;

// Where the record of an entry begins in the text. The entry is one of those of the last file.
std::size_t record_place(const il_entry *entry, entry_kind kind);

// Frees the text.
void drop_il_text();

// The entries of a kind, by number; of the bounds, one for each 8 bytes of their numbers, of which some are
// empty.
template <class T> T *entries_of(entry_kind kind) { return static_cast<T *>(entry_arrays[kind]); }

} // namespace zf90
