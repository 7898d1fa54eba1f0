// The handlers of the statements, one for each kind. A handler is called with no token read, the cursor at
// `stmt_resume` and `curr_token` tok_none. It returns whether the statement was good, with `curr_token` at
// tok_eos then: text that it leaves is an error of the statement loop, but not after false, for which it must
// have reported an error of its own. The family of a handler says which file defines it.
#pragma once

#include "statements/kinds.h"

namespace zf90 {

#define STATEMENT(number, name, order_class, order_limit) bool stmt_##name();
#include "statements/kinds.def"

} // namespace zf90
