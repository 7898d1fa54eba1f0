// How a word becomes a keyword token: whole, by its atom, where blanks delimit it; letter by letter from the
// front of the text in fixed form, where nothing does. Private to the tokenizer.
#pragma once

#include "source/tokens.h"

#include <cstddef>

namespace zf90 {

// The token code of a word, of a specifier with its "=", or of a dotted word with its periods, without regard
// to case even under -U. For a word that is none of these: tok_defined_op if it begins with a period, else
// tok_name.
token_kind lookup_keyword(const char *text, std::size_t length);

// The keyword at the front of the text at `line_cursor`, which moves past it, whatever follows; its
// characters go into the token's text. tok_name if there is none, with nothing changed.
token_kind fixed_keyword();

} // namespace zf90
