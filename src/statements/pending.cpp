// Handlers that do not exist yet: each skips its statement and succeeds. Whoever writes a handler deletes its
// line here.
#include "declarations/derived_types.h"
#include "declarations/storage.h"
#include "statements/handlers.h"
#include "statements/loop.h"

namespace zf90 {

#define PENDING(name) \
    bool stmt_##name() { return skip_to_eos(); }

// clang-format off
PENDING(assignment)
PENDING(pointer_assignment)
PENDING(construct_name)
PENDING(allocatable)
PENDING(allocate)
PENDING(assign)
PENDING(backspace)
PENDING(call)
PENDING(case)
PENDING(close)
PENDING(common)
PENDING(continue)
PENDING(cycle)
PENDING(data)
PENDING(deallocate)
PENDING(dimension)
PENDING(do)
PENDING(do_while)
PENDING(else)
PENDING(else_if)
PENDING(elsewhere)
PENDING(end_do)
PENDING(endfile)
PENDING(end_if)
PENDING(end_interface)
PENDING(end_select)
PENDING(end_type)
PENDING(end_where)
PENDING(equivalence)
PENDING(exit)
PENDING(external)
PENDING(format)
PENDING(stmt_function)
PENDING(goto)
PENDING(assigned_goto)
PENDING(computed_goto)
PENDING(if)
PENDING(arithmetic_if)
PENDING(if_then)
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
PENDING(pause)
PENDING(pointer)
PENDING(print)
PENDING(private)
PENDING(module_procedure)
PENDING(public)
PENDING(read)
PENDING(return)
PENDING(rewind)
PENDING(save)
PENDING(select_case)
PENDING(sequence)
PENDING(stop)
PENDING(target)
PENDING(type_declaration)
PENDING(type_definition)
PENDING(use)
PENDING(where_stmt)
PENDING(where_construct)
PENDING(write)
// clang-format on

#undef PENDING

void finish_open_type() {}
void layout_storage() {}

} // namespace zf90
