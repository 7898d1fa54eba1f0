// What a statement can be: the enumeration of the kinds, and what the order of statements knows of each. All
// of it is made from statements/kinds.def.
#pragma once

#include <cstdint>

namespace zf90 {

enum statement_kind : std::uint8_t {
#define STATEMENT(number, name, order_class, order_limit) stmtk_##name = number,
#include "statements/kinds.def"
    statement_kind_count
};

struct statement_order {
    std::uint8_t order_class; // the phase to which the statement moves its unit up
    std::uint8_t order_limit; // the last phase in which it may stand
};

inline constexpr statement_order statement_orders[statement_kind_count] = {
#define STATEMENT(number, name, order_class, order_limit) {order_class, order_limit},
#include "statements/kinds.def"
};

inline constexpr std::uint8_t executable_order_class = 6;

inline bool is_executable_kind(statement_kind kind) {
    return statement_orders[kind].order_class == executable_order_class;
}

// The name of a kind as an enumerator, for tests and dumps.
const char *statement_kind_name(unsigned kind);

} // namespace zf90
