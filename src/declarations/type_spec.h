// Type specifiers: INTEGER, REAL, COMPLEX, LOGICAL and CHARACTER with their kind and length selectors, and
// TYPE(name). Declarations, prefixes of functions and IMPLICIT read them here.
#pragma once

#include "il/records.h"

namespace zf90 {

// The type of the last specifier read: the error type if it was in error, which has been reported.
extern type *curr_type_spec;

// The last specifier was CHARACTER with a "*" behind the word: a comma may follow it.
extern bool char_star_form;

// Each is called with the type's word as the current token, the last piece of it in fixed form, and leaves
// the token behind the specifier, read in `mode`. False if the specifier is not closed.
bool read_type_integer(std::uint32_t mode);
bool read_type_real(std::uint32_t mode);
bool read_type_complex(std::uint32_t mode);
bool read_type_logical(std::uint32_t mode);
bool read_type_character(std::uint32_t mode);
bool read_type_derived(std::uint32_t mode);

// At a "*": the length behind it, for an entity of the type `base`, and the token behind that, read in
// `mode`. The result is the error type if there is no length.
type *read_char_length(type *base, std::uint32_t mode);

} // namespace zf90
