// The intrinsic subroutines, references to which stay calls.
#include "expressions/predicates.h"
#include "intrinsics/handler_helpers.h"

namespace zf90 {

namespace {

// Error 613 at the first argument from `first` on that is present and no default integer.
bool require_default_integers(expr_node *node, expr_node *first) {
    for (const expr_node *e = first; e; e = e->next) {
        if (!is_absent(e) && element_of(e) != default_integer()) {
            return refuse(node, msg_argument_must_be_of_type_default_integer, e->source_pos);
        }
    }
    return true;
}

// The check of the context. The routine takes the intrinsic's name, which no form of a subroutine has from
// the start, so that who reads the call knows what is called.
bool check_subroutine_context(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_operand_context(node, flags, routine) || !refuse_if_restricted(node, flags)) {
        return false;
    }
    node->routine->source_corresp.name = seed_symbols[handler_index(node->routine)]->name;
    return true;
}

} // namespace

bool handle_date_and_time(expr_node *node, std::uint32_t flags, object *routine) {
    return check_subroutine_context(node, flags, routine) &&
           require_default_integers(node, argument(node, 3));
}

bool handle_system_clock(expr_node *node, std::uint32_t flags, object *routine) {
    return check_subroutine_context(node, flags, routine) && require_default_integers(node, node->operands);
}

bool handle_random_seed(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_subroutine_context(node, flags, routine)) {
        return false;
    }
    unsigned present = 0;
    for (const expr_node *e = node->operands; e; e = e->next) {
        present += !is_absent(e);
    }
    if (present > 1) {
        return refuse(node, msg_too_many_actual_arguments, node->source_pos);
    }
    return require_default_integers(node, node->operands);
}

bool handle_random_number(expr_node *node, std::uint32_t flags, object *routine) {
    return check_subroutine_context(node, flags, routine);
}

bool handle_mvbits(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_subroutine_context(node, flags, routine)) {
        return false;
    }
    const expr_node *const from = argument(node, 0);
    const expr_node *const to = argument(node, 3);
    if (element_of(from) != element_of(to)) {
        return refuse(node, msg_operands_are_incompatible, from->source_pos);
    }
    // The result goes to TO, so that TO has the shape of all.
    for (unsigned i = 0; i < 5; ++i) {
        expr_node **const slot = argument_slot(node, i);
        if (i == 3) {
            continue;
        }
        type *const shape = combine_shapes(to->type, (*slot)->type, element_of(*slot));
        if (!shape || (is_array(shape) && !is_array(to->type))) {
            return refuse(node, msg_operands_are_incompatible, (*slot)->source_pos);
        }
        convert_expr(*slot, shape);
    }
    return true;
}

} // namespace zf90
