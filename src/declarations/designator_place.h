// Which bytes of a variable a designator stands for, where that must be known when it is read: in EQUIVALENCE
// and DATA statements.
#pragma once

#include "il/records.h"

namespace zf90 {

enum place_context : std::uint8_t {
    place_in_equivalence, // no components; subscripts are constant
    place_in_data         // subscripts may depend on the variables of implied DOs
};

struct designator_place {
    struct object *object;
    std::int64_t offset; // in bytes
    struct type *type;   // of what lies there
    std::int64_t length; // in bytes
};

// Finds the place of a checked designator that is no section. False after an error, which is reported at the
// subscript or at the designator.
bool find_place(expr_node *designator, place_context context, designator_place &place);

// Goes from the place of the base of a component, an element or a substring to that of the part.
bool find_part(const expr_node *designator, place_context context, designator_place &place);

// The value of an integer expression; of the variables of implied DOs, the current ones. False after an
// error.
bool evaluate_index(expr_node *expr, place_context context, std::int32_t &value);

// The current value of the variable of an implied DO, which is kept in its symbol.
void set_do_value(symbol *s, std::int32_t value);

// How often the value of any implied-DO variable has been used.
std::uint64_t count_of_do_value_reads();

} // namespace zf90
