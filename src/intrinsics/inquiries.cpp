// The inquiries, about kinds, bounds and states, and the functions that select a kind.
#include "expressions/predicates.h"
#include "intrinsics/handler_helpers.h"

namespace zf90 {

namespace {

// Error 36 at a whole assumed-size array, whose last extent nobody knows.
bool refuse_assumed_size(expr_node *node, const expr_node *e) {
    if (e->node_kind == enk_object && is_assumed_size(e->object->type)) {
        return refuse(node, msg_assumed_size_array_is_not_allowed, e->source_pos);
    }
    return true;
}

// The object or component that an argument names; null, after error 241, if it names none.
const object *require_name(expr_node *node, const expr_node *e) {
    if (e->node_kind == enk_object) {
        return e->object;
    }
    if (e->node_kind == enk_field) {
        return e->field_var;
    }
    refuse(node, msg_expected_variable, e->source_pos);
    return nullptr;
}

// Whether something of what a variable lies in is a pointer or target. Null for what is no variable at all.
enum target_state : std::uint8_t { no_variable, no_target, is_target };

target_state target_state_of(const expr_node *e) {
    for (;;) {
        switch (e->node_kind) {
        case enk_object: return e->object->is_pointer || e->object->is_target ? is_target : no_target;
        case enk_field:
            if (e->field_var->is_pointer) {
                return is_target;
            }
            e = e->base_expr;
            break;
        case enk_subscript:
        case enk_substring:
        case enk_section: e = e->array_expr; break;
        case enk_ref: e = e->reference; break;
        default: return no_variable;
        }
    }
}

} // namespace

bool handle_numeric_inquiry(expr_node *node, std::uint32_t flags, object *routine) {
    return check_inquiry_context(node, flags, routine) && finish_intrinsic(node, default_integer());
}

bool handle_model_number(expr_node *node, std::uint32_t flags, object *routine) {
    return check_inquiry_context(node, flags, routine) && finish_intrinsic(node, element_of(node->operands));
}

bool handle_bound(expr_node *node, std::uint32_t flags, object *routine) {
    expr_node *const array = argument(node, 0);
    expr_node *const dim = argument(node, 1);
    unsigned dimension;
    if (!check_inquiry_context(node, flags, routine) || !require_array(node, array) ||
        !refuse_optional_dummy(node, dim) ||
        !check_dim_argument(node, dim, array->type->array.rank, msg_argument_value_out_of_rank, dimension)) {
        return false;
    }
    if (!is_absent(dim)) {
        return finish_intrinsic(node, default_integer());
    }
    if (handler_index(node->routine) == intr_ubound && !refuse_assumed_size(node, array)) {
        return false;
    }
    return finish_intrinsic(node, new_vector_type(default_integer(), array->type->array.rank));
}

bool handle_size(expr_node *node, std::uint32_t flags, object *routine) {
    expr_node *const array = argument(node, 0);
    expr_node *const dim = argument(node, 1);
    unsigned dimension;
    return check_inquiry_context(node, flags, routine) && require_array(node, array) &&
           refuse_optional_dummy(node, dim) &&
           check_dim_argument(node, dim, array->type->array.rank, msg_argument_value_out_of_rank,
                              dimension) &&
           (!is_absent(dim) || refuse_assumed_size(node, array)) && finish_intrinsic(node, default_integer());
}

bool handle_shape(expr_node *node, std::uint32_t flags, object *routine) {
    const expr_node *const source = node->operands;
    const int rank = is_array_valued(source) ? source->type->array.rank : 0;
    return check_inquiry_context(node, flags, routine) && refuse_assumed_size(node, source) &&
           finish_intrinsic(node, new_vector_type(default_integer(), rank));
}

bool handle_len(expr_node *node, std::uint32_t flags, object *routine) {
    return check_inquiry_context(node, flags, routine) && finish_intrinsic(node, default_integer());
}

bool handle_allocated(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_inquiry_context(node, flags, routine) || !refuse_if_restricted(node, flags)) {
        return false;
    }
    const expr_node *const array = node->operands;
    const object *const o = require_name(node, array);
    if (!o) {
        return false;
    }
    if (!is_array(o->type) || !o->is_allocatable) {
        return refuse(node, msg_must_be_allocatable_array, array->source_pos);
    }
    return finish_intrinsic(node, default_logical());
}

bool handle_associated(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_inquiry_context(node, flags, routine) || !refuse_if_restricted(node, flags)) {
        return false;
    }
    const expr_node *const pointer = argument(node, 0);
    expr_node *const target = argument(node, 1);
    const object *const o = require_name(node, pointer);
    if (!o) {
        return false;
    }
    if (!o->is_pointer) {
        return refuse(node, msg_must_be_pointer, pointer->source_pos);
    }
    if (is_absent(target)) {
        target->type = pointer->type;
        return finish_intrinsic(node, default_logical());
    }
    switch (target_state_of(target)) {
    case no_variable: return refuse(node, msg_expected_variable, target->source_pos);
    case no_target: return refuse(node, msg_must_be_pointer_or_target, target->source_pos);
    default: return finish_intrinsic(node, default_logical());
    }
}

bool handle_present(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_inquiry_context(node, flags, routine) || !refuse_if_restricted(node, flags)) {
        return false;
    }
    const expr_node *const a = node->operands;
    if (a->node_kind != enk_object) {
        return refuse(node, msg_argument_to_intrinsic_function_present_is_not_name, a->source_pos);
    }
    const object *const o = a->object;
    if (!o->is_parameter || !o->is_optional) {
        const char *const name = o->source_corresp.name ? o->source_corresp.name->spelling : "";
        error_at(o->is_parameter ? msg_symbol_is_not_optional : msg_symbol_is_not_dummy_argument,
                 a->source_pos, name);
        mark_error_node(node);
        return false;
    }
    return finish_intrinsic(node, default_logical());
}

bool handle_selected_int_kind(expr_node *node, std::uint32_t flags, object *routine) {
    return check_operand_context(node, flags, routine) && finish_intrinsic(node, default_integer());
}

bool handle_selected_real_kind(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_operand_context(node, flags, routine)) {
        return false;
    }
    if (is_absent(argument(node, 0)) && is_absent(argument(node, 1))) {
        return refuse(node, msg_at_least_one_argument_must_be_present, node->source_pos);
    }
    return finish_intrinsic(node, default_integer());
}

} // namespace zf90
