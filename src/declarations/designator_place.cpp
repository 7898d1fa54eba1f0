// Designators whose place is known when they are read.
#include "declarations/designator_place.h"

#include "constants/folding.h"
#include "driver/deep_call.h"
#include "expressions/predicates.h"
#include "il/types.h"

namespace zf90 {

void set_do_value(symbol *s, std::int32_t value) {
    s->aux = reinterpret_cast<void *>(static_cast<std::intptr_t>(value));
}

namespace {

std::uint64_t do_value_reads;

std::int32_t do_value(const symbol *s) {
    ++do_value_reads;
    return static_cast<std::int32_t>(reinterpret_cast<std::intptr_t>(s->aux));
}

void set_integer(fold_value &value, std::int32_t n) {
    value = new_fold_value(ck_value);
    value.type = default_integer();
    value.integer = n;
}

bool only_constants(const expr_node *node) {
    error_at(msg_only_constants_do_variables_and_intrinsic_operations_are_allowed, node->source_pos);
    return false;
}

bool fold_constant(expr_node *node, fold_value &value) {
    return (fold_expression(node, value, false) && has_value(value)) || only_constants(node);
}

bool evaluate(expr_node *node, fold_value &value);

bool evaluate_operation(expr_node *node, fold_value &value) {
    expr_node *left = node->operands;
    expr_node *right = left ? left->next : nullptr;
    fold_value a;
    fold_value b;
    if (!left || !evaluate(left, a) || (right && !evaluate(right, b))) {
        return left || only_constants(node);
    }
    value = new_fold_value(ck_error);
    value.source_pos = node->source_pos;
    return right ? fold_binary(node->op_kind, a, b, node->type, value)
                 : fold_unary(node->op_kind, a, node->type, value);
}

// The value of an expression in which the variables of implied DOs have theirs.
bool evaluate(expr_node *node, fold_value &value) {
    switch (node->node_kind) {
    case enk_error: return false;
    case enk_data_implied_do_var: set_integer(value, do_value(node->symbol)); return true;
    case enk_object:
        if (node->object->storage_class != sc_implied_do_var) {
            return fold_constant(node, value);
        }
        set_integer(value, do_value(node->object->symbol_link));
        return true;
    case enk_operation: return deep_call([&] { return evaluate_operation(node, value); });
    default: return fold_constant(node, value);
    }
}

// The place of a part of what lies at `place`.
bool place_of_element(const expr_node *node, place_context context, designator_place &place) {
    const type *array = place.type;
    const bound_info_entry *bounds = is_array(array) ? bounds_of_type(array) : nullptr;
    if (!bounds) {
        error_at(msg_subscript_used_on_non_array, node->source_pos);
        return false;
    }
    type *element = array->array.element_type;
    std::int64_t stride = element->size;
    unsigned dimension = 0;
    for (expr_node *e = node->ind_list; e && dimension < array->array.rank; e = e->next, ++dimension) {
        const bound &lower = bounds->bounds[dimension];
        const bound &upper = bounds->bounds[array->array.rank + dimension];
        std::int32_t index = 0;
        if (!evaluate_index(e, context, index)) {
            return false;
        }
        if (lower.kind != bound_constant || upper.kind != bound_constant) {
            return false; // such an array is in error here, which is reported where it is declared
        }
        if (index < lower.value || index > upper.value) {
            error_at(msg_subscript_out_of_range, e->source_pos);
            return false;
        }
        place.offset += (std::int64_t{index} - lower.value) * stride;
        stride *= static_cast<std::int64_t>(constant_extent(lower, upper));
    }
    place.type = element;
    place.length = element->size;
    return true;
}

bool place_of_substring(const expr_node *node, place_context context, designator_place &place) {
    const type *base = place.type;
    if (base->type_code != tk_fcharacter || char_length_of_type(base).kind != bound_constant) {
        return false; // reported where it is declared
    }
    const std::int32_t length = char_length_of_type(base).value;
    const expr_node *range = node->ind_list;
    std::int32_t start = 1;
    std::int32_t end = length;
    if (range->first && !evaluate_index(range->first, context, start)) {
        return false;
    }
    if (range->second && !evaluate_index(range->second, context, end)) {
        return false;
    }
    if (start < 1 || start > length) {
        error_at(msg_substring_character_position_out_of_range,
                 range->first ? range->first->source_pos : node->source_pos);
        return false;
    }
    if (context == place_in_data && (end < start || end > length)) {
        error_at(msg_substring_character_position_out_of_range,
                 range->second ? range->second->source_pos : node->source_pos);
        return false;
    }
    const auto unit = static_cast<std::int64_t>(character_kinds[base->kind].byte_size);
    place.offset += (start - 1) * unit;
    if (context == place_in_data) {
        place.type = character_type(base->kind, end - start + 1);
        place.length = place.type->size;
    }
    return true;
}

bool place_of_field(const expr_node *node, designator_place &place) {
    const object *field = node->field_var;
    place.offset += field->association_offset;
    place.type = field->type;
    place.length = field->type->size;
    return true;
}

bool refuse(const expr_node *node, error_code code) {
    error_at(code, node->source_pos);
    return false;
}

bool find_place_of(expr_node *node, place_context context, designator_place &place) {
    switch (node->node_kind) {
    case enk_object: {
        object *o = node->object;
        place = {o, 0, o->type, object_size(o).size};
        return true;
    }
    case enk_ref: return find_place(node->reference, context, place);
    case enk_field:
        if (context == place_in_equivalence) {
            return refuse(node, msg_structure_component_is_not_allowed);
        }
        return find_place(node->base_expr, context, place) && find_part(node, context, place);
    case enk_subscript:
    case enk_substring:
        return find_place(node->array_expr, context, place) && find_part(node, context, place);
    case enk_error: return false;
    default: return refuse(node, msg_expected_variable);
    }
}

} // namespace

std::uint64_t count_of_do_value_reads() { return do_value_reads; }

bool find_part(const expr_node *designator, place_context context, designator_place &place) {
    switch (designator->node_kind) {
    case enk_field: return place_of_field(designator, place);
    case enk_subscript: return place_of_element(designator, context, place);
    default: return place_of_substring(designator, context, place);
    }
}

bool evaluate_index(expr_node *expr, place_context context, std::int32_t &value) {
    fold_value folded;
    const bool good = context == place_in_equivalence
                          ? fold_expression(expr, folded, true) && has_value(folded)
                          : evaluate(expr, folded) && has_value(folded);
    value = folded.integer;
    return good;
}

bool find_place(expr_node *designator, place_context context, designator_place &place) {
    return deep_call([&] { return find_place_of(designator, context, place); });
}

} // namespace zf90
