// What the handlers of the intrinsic procedures share, and the handlers themselves, by families. Each takes
// the bound `enk_call` node, the flags of check_expression and the program unit around it, and returns false
// after an error, which it has reported; the node is an error node then.
#pragma once

#include "driver/diagnostics.h"
#include "expressions/check.h"
#include "expressions/operators.h"
#include "il/entries.h"
#include "il/types.h"
#include "intrinsics/handlers.h"
#include "intrinsics/seed_table.h"

namespace zf90 {

using intrinsic_handler = bool(expr_node *node, std::uint32_t flags, object *routine);

// ---- arguments. The list of a bound call has one for each dummy, from 0 on.

// The place of an argument, and the argument; null if the form has no so many.
expr_node **argument_slot(expr_node *node, unsigned number);
expr_node *argument(const expr_node *node, unsigned number);

inline bool is_absent(const expr_node *e) { return !e || e->node_kind == enk_empty; }
inline bool is_array_valued(const expr_node *e) { return is_array(e->type); }
inline type *element_of(const expr_node *e) { return element_type_of(e->type); }

// ---- results

// Turns the call into an `enk_intrinsic` of the specific that was chosen. Returns true.
bool finish_intrinsic(expr_node *node, type *result);

// Turns a conversion into its argument if that has the type already, else into a cast. Returns true.
bool finish_conversion(expr_node *node, type *result);

// The element type in the shape of an expression.
type *shaped_like(const expr_node *e, type *element);

// A fresh array of rank 1 whose extent is the expression or the number.
type *new_vector_type(type *element, expr_node *extent);
type *new_vector_type(type *element, std::int32_t extent);

// ---- checks

// Reports at the position and makes the node an error node. Returns false.
bool refuse(expr_node *node, error_code message, source_pos position);

// Error 111 in a restricted expression. An initialization expression is left to the folding, which refuses
// whatever has no value.
bool refuse_if_restricted(expr_node *node, std::uint32_t flags);

// check_operand_context for a routine that does not evaluate its first argument.
bool check_inquiry_context(expr_node *node, std::uint32_t flags, object *routine);

// Error 537 unless the argument is an array.
bool require_array(expr_node *node, const expr_node *e);

// Error 285, at `blamed`, unless the argument is absent or has a shape that conforms with that of `other`.
bool require_conformance(expr_node *node, const expr_node *e, const expr_node *other,
                         const expr_node *blamed);

// Whether the elements have the same type; of characters the lengths, where both are constant.
bool same_element_type(const type *a, const type *b);

// Error 42 if the argument is an optional dummy argument.
bool refuse_optional_dummy(expr_node *node, const expr_node *e);

// Checks an argument DIM: `range_message` for a constant out of 1 to `rank`. An absent one gets its type.
// `dimension` is the constant's, 0 if it is absent or unknown.
bool check_dim_argument(expr_node *node, expr_node *dim, unsigned rank, error_code range_message,
                        unsigned &dimension);

// ---- the handlers

// intrinsics/elementals.cpp
intrinsic_handler handle_plain;      // the first argument's type: SIN, EXP, ...
intrinsic_handler handle_plain_two;  // the same in the shape of two arguments: ATAN2, SCALE, ...
intrinsic_handler handle_to_integer; // CEILING, EXPONENT, FLOOR
intrinsic_handler handle_abs;
intrinsic_handler handle_aimag;
intrinsic_handler handle_remainder; // MOD, MODULO, SIGN, DIM
intrinsic_handler handle_dprod;
intrinsic_handler handle_extremum; // MAX, MIN and their specifics
intrinsic_handler handle_merge;
intrinsic_handler handle_bit_pair;  // IAND, IOR, IEOR
intrinsic_handler handle_bit_shift; // IBCLR, IBSET, ISHFT
intrinsic_handler handle_btest;
intrinsic_handler handle_bit_field; // IBITS, ISHFTC
intrinsic_handler handle_bit_not;

// intrinsics/conversions.cpp
intrinsic_handler handle_int;
intrinsic_handler handle_real;
intrinsic_handler handle_dble;
intrinsic_handler handle_cmplx;
intrinsic_handler handle_logical;
intrinsic_handler handle_rounding; // AINT, ANINT
intrinsic_handler handle_nint;
intrinsic_handler handle_char;

// intrinsics/character_functions.cpp
intrinsic_handler handle_search; // INDEX, SCAN, VERIFY
intrinsic_handler handle_len_trim;
intrinsic_handler handle_adjust; // ADJUSTL, ADJUSTR
intrinsic_handler handle_repeat;
intrinsic_handler handle_trim;
intrinsic_handler handle_achar;
intrinsic_handler handle_character_code; // IACHAR, ICHAR
intrinsic_handler handle_lexical;        // LGE, LGT, LLE, LLT

// intrinsics/inquiries.cpp
intrinsic_handler handle_numeric_inquiry; // BIT_SIZE, DIGITS, KIND, ...
intrinsic_handler handle_model_number;    // EPSILON, HUGE, TINY
intrinsic_handler handle_bound;           // LBOUND, UBOUND
intrinsic_handler handle_size;
intrinsic_handler handle_shape;
intrinsic_handler handle_len;
intrinsic_handler handle_allocated;
intrinsic_handler handle_associated;
intrinsic_handler handle_present;
intrinsic_handler handle_selected_int_kind;
intrinsic_handler handle_selected_real_kind;

// intrinsics/array_functions.cpp
intrinsic_handler handle_reduction; // ALL, ANY, COUNT, MAXVAL, MINVAL, PRODUCT, SUM
intrinsic_handler handle_location;  // MAXLOC, MINLOC
intrinsic_handler handle_reshape;
intrinsic_handler handle_spread;
intrinsic_handler handle_cshift;
intrinsic_handler handle_eoshift;
intrinsic_handler handle_dot_product;
intrinsic_handler handle_matmul;
intrinsic_handler handle_transpose;
intrinsic_handler handle_pack;
intrinsic_handler handle_unpack;
intrinsic_handler handle_transfer;

// intrinsics/intrinsic_subroutines.cpp
intrinsic_handler handle_date_and_time;
intrinsic_handler handle_system_clock;
intrinsic_handler handle_random_seed;
intrinsic_handler handle_random_number;
intrinsic_handler handle_mvbits;

} // namespace zf90
