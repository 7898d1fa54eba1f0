// The items of DATA statements: which elements they stand for, in order.
#pragma once

#include "declarations/designator_place.h"

namespace zf90 {

// Called with each run of elements that lie next to each other. False ends the walk.
struct item_visitor {
    bool (*visit)(void *context, const expr_node *designator, const designator_place &run);
    void *context;
};

// Checks an item: a designator or an implied DO. False after an error.
bool check_data_item(expr_node *item, object *routine);

// Visits the elements of a checked item. False after an error, or if a visit ended it.
bool walk_data_item(expr_node *item, item_visitor visitor);

} // namespace zf90
