// The check of an expression: classifies what the parser left open, resolves procedures and operators, gives
// every node its type, and folds. Statements and declarations call it on finished trees.
#pragma once

#include "il/records.h"

namespace zf90 {

// What the context demands, as a set.
enum expr_check_flags : std::uint32_t {
    ecf_designator = 2,           // a variable
    ecf_init_expr = 4,            // it must fold to a constant
    ecf_restricted_a = 8,         // both: a restricted expression
    ecf_restricted_b = 16,        //
    ecf_spec_expr = 32,           // of type integer
    ecf_section_ok = 64,          // with ecf_designator: an implied DO is an item too
    ecf_stmt_func = 128,          // the right side of a statement function
    ecf_whole_assumed_size = 256, // a whole assumed-size array is allowed here

    ECF_INIT = ecf_init_expr | ecf_restricted_a | ecf_restricted_b,
    ECF_SPEC = ecf_restricted_a | ecf_restricted_b | ecf_spec_expr,
    ECF_DATA_OBJECT = ecf_designator | ecf_section_ok,
};
static_assert(ECF_INIT == 28 && ECF_SPEC == 56 && ECF_DATA_OBJECT == 66);

inline bool is_restricted_context(std::uint32_t flags) {
    return (flags & ecf_restricted_a) && (flags & ecf_restricted_b);
}

// Checks a tree in place, once. `routine` is the program unit around it, or null. False if it is in error:
// that has been reported, and the node is an `enk_error`.
bool check_expression(expr_node *node, std::uint32_t flags, object *routine);

// Makes a node an `enk_error` of the error type. The operands stay reachable.
void mark_error_node(expr_node *node);

// Of an expression with text behind it that does not belong there: the name that it ends with may have been
// meant for something else, as in `X = SIN Y`, and is not looked at.
void excuse_last_name(expr_node *e);

// Whether what a statement stores to can be stored to, which is noted as a definition of it. Errors 535 and
// 241 say why not.
bool check_definable(expr_node *expr);

// Whether the expression is a section with a vector subscript.
bool section_has_vector_subscript(const expr_node *expr);

// Checks and completes a type, once: the expressions of bounds and lengths, parameters, components. `routine`
// is the program unit around it, or null. False if something was in error.
bool check_type(type *t, object *routine);

// Whether the public components of a derived type are of public types; error 576 at those that are not. Only
// when its unit ends is it known what is public.
bool check_component_access(const type *t);

} // namespace zf90
