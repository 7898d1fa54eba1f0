// The check of input and output statements.
#include "statements/io_check.h"

namespace zf90 {

bool check_io_statement(statement *, object *) { return true; }

} // namespace zf90
