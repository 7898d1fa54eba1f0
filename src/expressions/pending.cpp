// What does not exist yet. Whoever writes one deletes it here.
#include "declarations/check_scopes.h"
#include "expressions/calls.h"
#include "expressions/check.h"
#include "expressions/operators.h"
#include "expressions/predicates.h"
#include "expressions/shapes.h"
#include "intrinsics/handlers.h"
#include "statements/statement_pass.h"

namespace zf90 {

// references
bool check_definable(expr_node *) { return true; }
bool section_has_vector_subscript(const expr_node *) { return false; }
bool check_type(type *, object *) { return true; }
bool type_matches_dummy(const type *, const type *) { return true; }
bool assignment_compatible(const type *, const type *) { return true; }
bool is_assumed_size(const type *) { return false; }
bool has_nonconstant_bound(const type *) { return false; }
bool is_explicit_constant_shape(const type *) { return false; }
bool is_zero_sized(const type *) { return false; }

// shapes
bool check_array_constructor(expr_node *, object *) { return true; }
bool constructor_extent(expr_node *, object *, bound &) { return true; }
expr_node *expr_extent(expr_node *, unsigned) { return nullptr; }
void section_bounds(type *) {}
void make_constant_bounds(type *) {}
bool replace_object(expr_node *&, const object *, expr_node *) { return false; }
bool pointer_assign_check(type *, expr_node *) { return true; }

// calls
bool check_call(expr_node *, std::uint32_t, object *) { return true; }
bool check_generic_call(expr_node *, std::uint32_t, object *) { return true; }
binding bind_arguments(type *, expr_node *&, expr_node *&, bool, object *) { return binding_done; }
bool match_one_argument(const expr_node *, const param_type *, bool) { return true; }
bool check_argument_association(bool, bool, expr_node *, const param_type *) { return true; }
expr_node *make_absent_argument(const param_type *) { return nullptr; }
type *instantiate_result_type(type *t, object *, expr_node *, object *) { return t; }
bool substitute_dummies(expr_node *&, object *, expr_node *) { return false; }
void note_host_reference(object *, object *) {}

// operators
type *common_type(type *left, type *) { return left; }
type *combine_shapes(type *, type *, type *element) { return element; }
type *convert_operands(expr_node *&operands) { return operands->type; }
void convert_expr(expr_node *&, type *) {}
bool assign_conversion(type *, expr_node *&) { return true; }
bool check_operand_context(expr_node *, std::uint32_t, object *) { return true; }
bool handle_assignment(expr_node *, std::uint32_t, object *) { return true; }
bool handle_add(expr_node *, std::uint32_t, object *) { return true; }
bool handle_subtract(expr_node *, std::uint32_t, object *) { return true; }
bool handle_multiply(expr_node *, std::uint32_t, object *) { return true; }
bool handle_divide(expr_node *, std::uint32_t, object *) { return true; }
bool handle_power(expr_node *, std::uint32_t, object *) { return true; }
bool handle_concat(expr_node *, std::uint32_t, object *) { return true; }
bool handle_eq(expr_node *, std::uint32_t, object *) { return true; }
bool handle_ne(expr_node *, std::uint32_t, object *) { return true; }
bool handle_gt(expr_node *, std::uint32_t, object *) { return true; }
bool handle_ge(expr_node *, std::uint32_t, object *) { return true; }
bool handle_lt(expr_node *, std::uint32_t, object *) { return true; }
bool handle_le(expr_node *, std::uint32_t, object *) { return true; }
bool handle_not(expr_node *, std::uint32_t, object *) { return true; }
bool handle_and(expr_node *, std::uint32_t, object *) { return true; }
bool handle_or(expr_node *, std::uint32_t, object *) { return true; }
bool handle_eqv(expr_node *, std::uint32_t, object *) { return true; }
bool handle_neqv(expr_node *, std::uint32_t, object *) { return true; }


// the end of the compilation
bool check_object(object *) { return true; }
bool check_scope(scope *) { return true; }
bool check_compilation() { return true; }
bool check_statement(statement *, object *) { return true; }
bool check_do_control(do_loop *, std::uint32_t, object *) { return true; }

} // namespace zf90
