// What a program finds declared before its first line: the words and operators of the language as atoms, and
// the intrinsic operators and procedures as generic names, in the same records that INTERFACE blocks make.
// They are built from source/keywords.def and intrinsics/seed_table.def at the start of each compilation, so
// that looking up names, matching keywords and resolving generics need no code of their own for intrinsics.
#pragma once

#include "il/records.h"
#include "intrinsics/intrinsic_codes.h"

namespace zf90 {

inline constexpr std::size_t seed_atom_count = 369;
inline constexpr std::size_t seed_symbol_count = 233;

// In the order of the tables: keywords, specifiers, operators, intrinsic names, names of their arguments.
extern atom *seed_atoms[seed_atom_count];

// The generic names by intrinsic_code, then the specific ones that may be passed as arguments, in the order
// of their generics.
extern symbol *seed_symbols[seed_symbol_count];

// Empties the atom table and the stack of scopes and fills the former. Once in a compilation, after il_init
// and before anything reads a name.
void init_seed_tables();

// The generic of an intrinsic operator or procedure.
inline interface *seed_interface(intrinsic_code code) { return entity_as<interface>(seed_symbols[code]); }

// Which handler checks a reference to a form of an intrinsic. The number stands where the objects of other
// procedures have their storage, and so appears in the file.
inline intrinsic_code handler_index(const object *form) {
    return static_cast<intrinsic_code>(form->association_offset);
}

} // namespace zf90
