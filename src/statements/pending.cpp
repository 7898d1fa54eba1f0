// Handlers that do not exist yet: each skips its statement and succeeds. Whoever writes a handler deletes its
// line here.
#include "declarations/derived_types.h"
#include "statements/handlers.h"
#include "statements/loop.h"

namespace zf90 {

#define PENDING(name) \
    bool stmt_##name() { return skip_to_eos(); }

// clang-format off
PENDING(allocatable)
PENDING(allocate)
PENDING(backspace)
PENDING(close)
PENDING(common)
PENDING(data)
PENDING(deallocate)
PENDING(dimension)
PENDING(endfile)
PENDING(end_interface)
PENDING(end_type)
PENDING(equivalence)
PENDING(external)
PENDING(format)
PENDING(stmt_function)
PENDING(implicit)
PENDING(implicit_none)
PENDING(inquire)
PENDING(intent)
PENDING(interface)
PENDING(intrinsic)
PENDING(namelist)
PENDING(nullify)
PENDING(open)
PENDING(optional)
PENDING(parameter)
PENDING(pointer)
PENDING(print)
PENDING(private)
PENDING(module_procedure)
PENDING(public)
PENDING(read)
PENDING(rewind)
PENDING(save)
PENDING(sequence)
PENDING(target)
PENDING(type_declaration)
PENDING(type_definition)
PENDING(use)
PENDING(write)
// clang-format on

#undef PENDING

void finish_open_type() {}

} // namespace zf90
