// What the readers of control statements share: conditions in parentheses.
#pragma once

#include "il/records.h"

namespace zf90 {

// Reads "(" and an expression, which is an error node if it could not be read. True if ")" is the current
// token then, also behind an expression in error; everything else has been reported.
bool parse_condition(expr_node *&condition, bool &failed);

// The same with the ")", and the token behind it read in the mode. True if all was good.
bool parse_parenthesized(expr_node *&condition, std::uint32_t mode);

} // namespace zf90
