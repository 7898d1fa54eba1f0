// The walk over the items of DATA statements, with their implied DOs, sections and substrings.
#include "declarations/data_items.h"

#include "constants/folding.h"
#include "declarations/end_of_unit.h"
#include "declarations/implicit.h"
#include "declarations/scopes.h"
#include "driver/deep_call.h"
#include "driver/options.h"
#include "expressions/check.h"
#include "expressions/predicates.h"
#include "expressions/rewrite.h"
#include "expressions/uses.h"
#include "il/constants.h"
#include "il/types.h"

#include <algorithm>
#include <unordered_set>
#include <vector>

namespace zf90 {

namespace {

// ---- the check

// What may stand in an implied DO: elements of arrays and their parts.
bool is_element(const expr_node *node) {
    for (;;) {
        switch (node->node_kind) {
        case enk_subscript: return true;
        case enk_field: node = node->base_expr; break;
        case enk_substring: node = node->array_expr; break;
        default: return false;
        }
    }
}

// The variable of an implied DO is one of its own, but takes its type from the name outside, which is thus in
// use.
void mark_outer_name(const symbol *variable) {
    symbol *s = variable->name->first_symbol;
    while (s && (!(s->flags & sf_visible) || s->kind == sk_common_block)) {
        s = s->next_same_name;
    }
    if (s && s->scope_depth == curr_scope_depth && (s->flags & sf_typed)) {
        s->flags |= sf_implied_do;
    }
}

// The variable of an implied DO must be an integer.
bool check_control_variable(const expr_node *variable) {
    if (!variable || variable->node_kind != enk_symbol) {
        return false; // reported by the parser
    }
    symbol *s = variable->symbol;
    if (s->kind == sk_implied_do_var) {
        finish_symbol(s);
    }
    mark_outer_name(s);
    const bool is_declared = (s->flags & sf_typed) != 0;
    apply_implicit(s, variable->source_pos);
    const type *t = type_of_symbol(s);
    if (is_declared && t->type_code != tk_integer && t->type_code != tk_error) {
        error_at(msg_implied_do_variable_must_have_integer_type, variable->source_pos);
        return false;
    }
    return t->type_code == tk_integer;
}

// What must be known ahead of the check of the expressions.
bool check_controls(const expr_node *item) {
    if (item->node_kind != enk_implied_do) {
        return true;
    }
    return deep_call([item] {
        bool good = check_control_variable(item->do_info->variable);
        for (const expr_node *e = item->expr_list; e; e = e->next) {
            good = check_controls(e) && good;
        }
        return good;
    });
}

bool check_element(const expr_node *e) {
    note_definition(e);
    if (e->node_kind == enk_error) {
        return false;
    }
    if (!is_element(e)) {
        error_at(msg_item_for_implied_do_initialization_must_be_array, e->source_pos);
        return false;
    }
    if (e->node_kind == enk_substring && strict_f77_mode) {
        warning_at(msg_implied_do_substring_initialization_is_not_standard_fortran, e->source_pos);
    }
    return true;
}

bool check_elements(const expr_node *loop) {
    return deep_call([loop] {
        bool good = true;
        for (const expr_node *e = loop->expr_list; e; e = e->next) {
            good = (e->node_kind == enk_implied_do ? check_elements(e) : check_element(e)) && good;
        }
        return good;
    });
}

// ---- parts of designators

using place_visitor = bool (*)(void *context, const designator_place &place);

struct part_visitor {
    place_visitor visit;
    void *context;
    bool operator()(const designator_place &place) const { return visit(context, place); }
};

template <class Visit> part_visitor visitor_of(Visit &visit) {
    return {
        [](void *context, const designator_place &place) { return (*static_cast<Visit *>(context))(place); },
        &visit};
}

bool visit_parts(expr_node *node, part_visitor visit);

// Visits each element of what lies at a place.
bool visit_elements(const designator_place &place, part_visitor visit) {
    type *t = element_type_of(place.type);
    designator_place element{place.object, place.offset, t, t->size};
    const std::int64_t end = place.offset + place.length;
    for (; t->size != 0 && element.offset < end; element.offset += t->size) {
        if (!visit(element)) {
            return false;
        }
    }
    return true;
}

// The indices of one dimension of a section.
struct section_dimension {
    std::int64_t first = 0;
    std::int64_t step = 1;
    std::int64_t count = 1;
    std::vector<std::int32_t> indices; // of a vector subscript
    std::int64_t lower = 0;
    std::int64_t stride = 0; // bytes from one index to the next

    std::int64_t offset_of(std::int64_t i) const {
        const std::int64_t index =
            indices.empty() ? first + i * step : std::int64_t{indices[static_cast<std::size_t>(i)]};
        return (index - lower) * stride;
    }
};

bool bad_index(const expr_node *at) {
    error_at(msg_bad_index_value_for_section_expression_in_data, at->source_pos);
    return false;
}

bool evaluate_part(expr_node *part, std::int64_t &value) {
    std::int32_t n = 0;
    if (part && !evaluate_index(part, place_in_data, n)) {
        return false;
    }
    value = part ? n : value;
    return true;
}

// The values of a triplet, `d` holding those of the whole dimension.
bool evaluate_triplet(expr_node *triplet, const bound &lower, const bound &upper, section_dimension &d) {
    std::int64_t last = upper.value;
    d.first = lower.value;
    if (!evaluate_part(triplet->first, d.first) || !evaluate_part(triplet->second, last) ||
        !evaluate_part(triplet->stride, d.step)) {
        return false;
    }
    if (d.step == 0) {
        return bad_index(triplet->stride);
    }
    d.count = std::max<std::int64_t>((last - d.first + d.step) / d.step, 0);
    const std::int64_t final = d.first + (d.count - 1) * d.step;
    if (d.count != 0 && (d.first < lower.value || d.first > upper.value)) {
        return bad_index(triplet->first ? triplet->first : triplet);
    }
    if (d.count != 0 && (final < lower.value || final > upper.value)) {
        return bad_index(triplet->second ? triplet->second : triplet);
    }
    return true;
}

bool evaluate_vector(expr_node *vector, const bound &lower, const bound &upper, section_dimension &d) {
    const auto is_variable = [](const object *o) {
        return !o->is_constant && o->storage_class != sc_implied_do_var;
    };
    if (names_object(vector, is_variable)) {
        error_at(msg_only_constants_do_variables_and_intrinsic_operations_are_allowed, vector->source_pos);
        return false;
    }
    fold_value value;
    if (!fold_expression(vector, value, true) || value.repr_kind != ck_aggregate) {
        return false;
    }
    for (const constant *c = value.first_constant; c; c = c->next) {
        const std::int32_t index =
            c->repr_kind == ck_value || c->repr_kind == ck_expression ? integer_value_of(c) : lower.value - 1;
        if (index < lower.value || index > upper.value) {
            return bad_index(vector);
        }
        d.indices.push_back(index);
    }
    d.count = static_cast<std::int64_t>(d.indices.size());
    return true;
}

bool evaluate_dimension(expr_node *e, const bound &lower, const bound &upper, section_dimension &d) {
    if (e->node_kind == enk_triplet) {
        return evaluate_triplet(e, lower, upper, d);
    }
    if (is_array(e->type)) {
        return evaluate_vector(e, lower, upper, d);
    }
    if (!evaluate_part(e, d.first)) {
        return false;
    }
    return (d.first >= lower.value && d.first <= upper.value) || bad_index(e);
}

// Visits the elements of a section of the array at a place, in the order of array elements.
bool visit_section(const expr_node *node, const designator_place &place, part_visitor visit) {
    constexpr unsigned max_rank = 7;
    const type *array = place.type;
    const bound_info_entry *bounds = is_array(array) ? bounds_of_type(array) : nullptr;
    if (!bounds) {
        return false;
    }
    type *element = array->array.element_type;
    section_dimension dimensions[max_rank];
    const unsigned rank = array->array.rank;
    std::int64_t stride = element->size;
    bool is_empty = false;
    unsigned i = 0;
    for (expr_node *e = node->ind_list; e && i < rank; e = e->next, ++i) {
        const bound &lower = bounds->bounds[i];
        const bound &upper = bounds->bounds[rank + i];
        section_dimension &d = dimensions[i];
        if (lower.kind != bound_constant || upper.kind != bound_constant ||
            !evaluate_dimension(e, lower, upper, d)) {
            return false;
        }
        d.lower = lower.value;
        d.stride = stride;
        stride *= static_cast<std::int64_t>(constant_extent(lower, upper));
        is_empty = is_empty || d.count == 0;
    }
    // The first dimension goes in one run, if its elements lie next to each other.
    const bool in_runs = dimensions[0].indices.empty() && dimensions[0].step == 1;
    std::int64_t counters[max_rank] = {};
    while (!is_empty) {
        designator_place run{place.object, place.offset, element, element->size};
        for (unsigned k = 0; k < rank; ++k) {
            run.offset += dimensions[k].offset_of(counters[k]);
        }
        run.length *= in_runs ? dimensions[0].count : 1;
        if (!visit(run)) {
            return false;
        }
        unsigned k = in_runs ? 1 : 0;
        while (k < rank && ++counters[k] == dimensions[k].count) {
            counters[k++] = 0;
        }
        is_empty = k == rank;
    }
    return true;
}

// The bytes of all elements of an object. Its own size is no measure: an array without elements, and one of
// empty texts, have the size of an element.
std::int64_t length_of_whole(const designator_place &place) {
    const type *t = place.type;
    const bound_info_entry *bounds = is_array(t) ? bounds_of_type(t) : nullptr;
    if (!bounds) {
        return place.length;
    }
    std::int64_t length = t->array.element_type->size;
    for (unsigned i = 0; i < t->array.rank; ++i) {
        const bound &lower = bounds->bounds[i];
        const bound &upper = bounds->bounds[t->array.rank + i];
        if (lower.kind != bound_constant || upper.kind != bound_constant) {
            return place.length;
        }
        length *= static_cast<std::int64_t>(constant_extent(lower, upper));
    }
    return length;
}

// Visits the stretches of a variable that a designator stands for, in order.
bool visit_parts_of(expr_node *node, part_visitor visit) {
    const auto visit_base = [&](expr_node *base, auto each) { return visit_parts(base, visitor_of(each)); };
    const auto each_part = [&](const designator_place &place) {
        designator_place part = place;
        return find_part(node, place_in_data, part) && visit(part);
    };
    const auto each_element = [&](const designator_place &place) {
        auto element = each_part;
        return visit_elements(place, visitor_of(element));
    };
    switch (node->node_kind) {
    case enk_object: {
        designator_place place;
        if (!find_place(node, place_in_data, place)) {
            return false;
        }
        place.length = length_of_whole(place);
        return visit(place);
    }
    case enk_ref: return visit_parts(node->reference, visit);
    case enk_field: return visit_base(node->base_expr, each_element);
    case enk_subscript: return visit_base(node->array_expr, each_part);
    case enk_substring: return visit_base(node->array_expr, each_element);
    case enk_section:
        return visit_base(node->array_expr,
                          [&](const designator_place &place) { return visit_section(node, place, visit); });
    case enk_error: return false;
    default: error_at(msg_expected_variable, node->source_pos); return false;
    }
}

bool visit_parts(expr_node *node, part_visitor visit) {
    return deep_call([&] { return visit_parts_of(node, visit); });
}

// How often a visitor has been called.
std::uint64_t visits;

bool visit_item(item_visitor visitor, expr_node *node, const designator_place &place) {
    ++visits;
    return visitor.visit(visitor.context, node, place);
}

bool walk_designator(expr_node *node, item_visitor visitor) {
    auto each = [&](const designator_place &place) { return visit_item(visitor, node, place); };
    return visit_parts(node, visitor_of(each));
}

// ---- implied DOs

struct loop_range {
    symbol *variable;
    std::int32_t first;
    std::int32_t step;
    std::int32_t count;
};

symbol *variable_of(const expr_node *node) {
    return node->node_kind == enk_object ? node->object->symbol_link : node->symbol;
}

bool evaluate_range(const expr_node *loop, loop_range &range) {
    const do_loop *control = loop->do_info;
    range.variable = variable_of(control->variable);
    range.step = 1;
    std::int32_t last = 0;
    if (!evaluate_index(control->initial_value, place_in_data, range.first) ||
        !evaluate_index(control->final_value, place_in_data, last) ||
        (control->increment && !evaluate_index(control->increment, place_in_data, range.step))) {
        return false;
    }
    if (range.step == 0) {
        error_at(msg_increment_of_do_is_not_allowed_to_be_zero, control->increment->source_pos);
        return false;
    }
    const std::int64_t count = (std::int64_t{last} - range.first + range.step) / range.step;
    static std::unordered_set<const do_loop *> warned_loops; // a loop within a loop is met again and again
    if (count < 1 && warned_loops.insert(control).second) {
        warning_at(msg_iteration_count_for_implied_do_loop_is_less, loop->source_pos);
    }
    range.count = static_cast<std::int32_t>(std::clamp<std::int64_t>(count, 0, INT32_MAX));
    return true;
}

bool names_variable(const expr_node *node, const symbol *s) {
    return (node->node_kind == enk_object && node->object->symbol_link == s) ||
           (node->node_kind == enk_data_implied_do_var && node->symbol == s);
}

// Whether a loop goes over an array in the order of its elements: its only item is an element whose first
// subscript is the loop's variable, on which the others don't depend.
bool is_run(const expr_node *loop, const loop_range &range) {
    const expr_node *e = loop->expr_list;
    if (range.step != 1 || !e || e->next || e->node_kind != enk_subscript ||
        e->array_expr->node_kind != enk_object || !names_variable(e->ind_list, range.variable)) {
        return false;
    }
    for (const expr_node *index = e->ind_list->next; index; index = index->next) {
        if (index->node_kind != enk_constant &&
            (!names_variable(index, variable_of(index)) || names_variable(index, range.variable))) {
            return false;
        }
    }
    return true;
}

bool walk_run(expr_node *node, const loop_range &range, item_visitor visitor) {
    designator_place last;
    designator_place run;
    set_do_value(range.variable, range.first + range.count - 1);
    if (!find_place(node, place_in_data, last)) {
        return false;
    }
    set_do_value(range.variable, range.first);
    if (!find_place(node, place_in_data, run)) {
        return false;
    }
    run.length = last.offset + last.length - run.offset;
    return visit_item(visitor, node, run);
}

// Trips of loops that may go by without an item before the walk is given up.
constexpr std::uint64_t most_idle_trips = std::uint64_t{1} << 22;
std::uint64_t idle_trips;

bool walk_loop(const expr_node *loop, item_visitor visitor) {
    loop_range range;
    if (!evaluate_range(loop, range)) {
        return false;
    }
    if (range.count > 0 && is_run(loop, range)) {
        return walk_run(loop->expr_list, range, visitor);
    }
    for (std::int32_t i = 0; i < range.count; ++i) {
        const std::uint64_t visits_before = visits;
        const std::uint64_t reads_before = count_of_do_value_reads();
        for (expr_node *e = loop->expr_list; e; e = e->next) {
            // Set each time, for a loop within may have the same variable.
            set_do_value(range.variable,
                         static_cast<std::int32_t>(range.first + std::int64_t{i} * range.step));
            if (!walk_data_item(e, visitor)) {
                return false;
            }
        }
        if (visits != visits_before) {
            idle_trips = 0;
        } else if (count_of_do_value_reads() == reads_before) {
            return true; // no trip has an item
        } else if (++idle_trips > most_idle_trips) {
            error_at(msg_array_is_too_large, loop->source_pos);
            return false;
        }
    }
    return true;
}

} // namespace

bool check_data_item(expr_node *item, object *routine) {
    if (!check_controls(item) || !check_expression(item, ECF_DATA_OBJECT, routine)) {
        return false;
    }
    if (item->node_kind == enk_implied_do) {
        return check_elements(item);
    }
    note_definition(item);
    return true;
}

bool walk_data_item(expr_node *item, item_visitor visitor) {
    if (item->node_kind != enk_implied_do) {
        return walk_designator(item, visitor);
    }
    return deep_call([&] { return walk_loop(item, visitor); });
}

} // namespace zf90
