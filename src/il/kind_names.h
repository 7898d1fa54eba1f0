// The names of the enumerators of the intermediate language, for printers. A value out of range has a text of
// its own for each enumeration.
#pragma once

#include "il/kinds.h"

namespace zf90 {

const char *enumerator_name(enum type_code value);
const char *enumerator_name(enum storage_class value);
const char *enumerator_name(expr_node_kind value);
const char *enumerator_name(operation_kind value);
const char *enumerator_name(io_specifier value);
const char *enumerator_name(il_statement_kind value);
const char *enumerator_name(constant_kind value);
const char *enumerator_name(label_kind value);
const char *enumerator_name(case_range_kind value);
const char *enumerator_name(enum shape_kind value);
const char *enumerator_name(bound_kind value);
const char *enumerator_name(enum unit_kind value);
const char *enumerator_name(enum format_kind value);
const char *enumerator_name(source_language value);
const char *enumerator_name(symbol_kind value);

} // namespace zf90
