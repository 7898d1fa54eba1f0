// The literal half of the tokenizer: numbers, strings, BOZ, Hollerith and logical literals and label digits
// are scanned into `token_text`, and outside of peek mode converted to `curr_constant`. A faulty literal
// keeps its token; its value is then the error constant, so that one literal gives one message. Private to
// the tokenizer.
#pragma once

#include "source/tokens.h"

namespace zf90 {

void literals_init();

// Each begins where the state machine of next_token meets the literal, with its front in `token_text` as
// told, and returns the token.

token_kind scan_digits(std::uint32_t mode);     // at a digit; a "-" in the text is part of the number
token_kind scan_fraction(std::uint32_t mode);   // behind the period, which is in the text
token_kind scan_string();                       // at the quote
token_kind scan_string_of_kind(char *kind_end); // the same; the text up to there names the kind, then "_"
token_kind scan_boz();                          // at the quote; the letter is in the text
token_kind scan_logical();                      // behind .TRUE. or .FALSE., which is in the text

} // namespace zf90
