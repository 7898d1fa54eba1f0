// The table of the handlers, and what they share.
#include "intrinsics/handlers.h"

#include "constants/folding.h"
#include "expressions/predicates.h"
#include "il/constants.h"
#include "intrinsics/handler_helpers.h"

#include <array>

namespace zf90 {

// ---- arguments

expr_node **argument_slot(expr_node *node, unsigned number) {
    expr_node **slot = &node->operands;
    while (number-- > 0 && *slot) {
        slot = &(*slot)->next;
    }
    return slot;
}

expr_node *argument(const expr_node *node, unsigned number) {
    expr_node *e = node->operands;
    while (number-- > 0 && e) {
        e = e->next;
    }
    return e;
}

// ---- results

bool finish_intrinsic(expr_node *node, type *result) {
    const intrinsic_code code = handler_index(node->routine);
    const bool is_elemental = node->routine->type->routine.is_elemental;
    expr_node *const operands = node->operands;
    set_expr_node_kind(node, enk_intrinsic);
    node->intrinsic = code;
    node->operands = operands;
    node->type = result;
    node->for_all = is_elemental && is_array(result);
    return true;
}

bool finish_conversion(expr_node *node, type *result) {
    expr_node *const operand = node->operands;
    operand->next = nullptr;
    if (types_equal(operand->type, result)) {
        expr_node converted = *operand;
        converted.il_id = node->il_id;
        converted.source_pos = node->source_pos;
        converted.next = node->next;
        converted.keyword = node->keyword;
        converted.is_specifier = node->is_specifier;
        converted.is_optional = node->is_optional;
        converted.intent_in = node->intent_in;
        converted.intent_out = node->intent_out;
        converted.element_sequence = node->element_sequence;
        converted.type = result;
        *node = converted;
        keep_fold_memo(node, operand);
        return true;
    }
    set_expr_node_kind(node, enk_operation);
    node->op_kind = eok_cast;
    node->operands = operand;
    node->type = result;
    node->for_all = is_array(result);
    return true;
}

type *shaped_like(const expr_node *e, type *element) { return combine_shapes(e->type, element, element); }

type *new_vector_type(type *element, expr_node *extent) {
    type *const t = new_array_type(element, 1);
    set_constant_bound(t->array.bound->bounds[0], 1);
    set_expression_bound(t->array.bound->bounds[1], extent);
    return t;
}

type *new_vector_type(type *element, std::int32_t extent) {
    type *const t = new_array_type(element, 1);
    set_constant_bound(t->array.bound->bounds[0], 1);
    set_constant_bound(t->array.bound->bounds[1], extent);
    return t;
}

// ---- checks

bool refuse(expr_node *node, error_code message, source_pos position) {
    error_at(message, position);
    mark_error_node(node);
    return false;
}

bool require_array(expr_node *node, const expr_node *e) {
    return is_array_valued(e) || refuse(node, msg_expected_array_valued_expression, e->source_pos);
}

bool require_conformance(expr_node *node, const expr_node *e, const expr_node *other,
                         const expr_node *blamed) {
    if (is_absent(e) || !is_array_valued(e)) {
        return true;
    }
    return (is_array_valued(other) && shapes_conform(e->type, other->type)) ||
           refuse(node, msg_operands_are_incompatible, blamed->source_pos);
}

bool same_element_type(const type *a, const type *b) {
    if (a == b || types_equal(a, b)) {
        return true;
    }
    if (a->type_code != tk_fcharacter || b->type_code != tk_fcharacter || a->kind != b->kind) {
        return false;
    }
    const bound &p = char_length_of_type(a);
    const bound &q = char_length_of_type(b);
    return p.kind != bound_constant || q.kind != bound_constant || p.value == q.value;
}

namespace {

// The value of an argument that is a constant or a named constant. False if it is not.
bool constant_argument(expr_node *e, std::int32_t &value) {
    if (e->node_kind != enk_constant && (e->node_kind != enk_object || !e->object->is_constant)) {
        return false;
    }
    fold_value folded;
    if (!fold_expression(e, folded, false) || folded.repr_kind != ck_value) {
        return false;
    }
    value = folded.integer;
    return true;
}

} // namespace

bool refuse_optional_dummy(expr_node *node, const expr_node *e) {
    if (e->node_kind == enk_object && e->object->is_parameter && e->object->is_optional) {
        return refuse(node, msg_argument_must_not_be_optional_dummy_argument, e->source_pos);
    }
    return true;
}

bool check_dim_argument(expr_node *node, expr_node *dim, unsigned rank, error_code range_message,
                        unsigned &dimension) {
    dimension = 0;
    if (is_absent(dim)) {
        dim->type = default_integer();
        return true;
    }
    std::int32_t value;
    if (constant_argument(dim, value)) {
        if (value < 1 || value > static_cast<std::int32_t>(rank)) {
            return refuse(node, range_message, dim->source_pos);
        }
        dimension = static_cast<unsigned>(value);
    }
    return true;
}

// ---- the table

namespace {

// The specific names that demand a type of their first argument, and the generic whose handler goes on.
struct specific_row {
    intrinsic_code code;
    intrinsic_code generic;
};

constexpr specific_row default_integer_rows[] = {
    {intr_iabs, intr_abs}, {intr_idim, intr_dim},  {intr_isign, intr_sign}, {intr_max0, intr_max},
    {intr_min0, intr_min}, {intr_amax0, intr_max}, {intr_amin0, intr_min},  {intr_float, intr_real},
};

constexpr specific_row default_real_rows[] = {
    {intr_alog, intr_log},  {intr_alog10, intr_log10}, {intr_amod, intr_mod},
    {intr_amax1, intr_max}, {intr_amin1, intr_min},    {intr_max1, intr_max},
    {intr_min1, intr_min},  {intr_dprod, intr_dprod},  {intr_ifix, intr_int},
};

constexpr specific_row default_complex_rows[] = {
    {intr_cabs, intr_abs}, {intr_ccos, intr_cos}, {intr_cexp, intr_exp},
    {intr_clog, intr_log}, {intr_csin, intr_sin}, {intr_csqrt, intr_sqrt},
};

constexpr specific_row double_precision_rows[] = {
    {intr_dabs, intr_abs},     {intr_dacos, intr_acos}, {intr_dasin, intr_asin},  {intr_datan, intr_atan},
    {intr_datan2, intr_atan2}, {intr_dcos, intr_cos},   {intr_dcosh, intr_cosh},  {intr_ddim, intr_dim},
    {intr_dexp, intr_exp},     {intr_dint, intr_aint},  {intr_dlog, intr_log},    {intr_dlog10, intr_log10},
    {intr_dmax1, intr_max},    {intr_dmin1, intr_min},  {intr_dmod, intr_mod},    {intr_dnint, intr_anint},
    {intr_dsin, intr_sin},     {intr_dsinh, intr_sinh}, {intr_dsqrt, intr_sqrt},  {intr_dtan, intr_tan},
    {intr_dtanh, intr_tanh},   {intr_idint, intr_int},  {intr_idnint, intr_nint},
};

// The wording of the message is that for integers all the same.
constexpr specific_row double_precision_rows_of_integer_message[] = {
    {intr_dsign, intr_sign},
    {intr_sngl, intr_real},
};

enum demanded_type : std::uint8_t {
    no_demand,
    demand_default_integer,
    demand_default_real,
    demand_default_complex,
    demand_double_precision
};

struct handler_row {
    intrinsic_handler *handler;
    demanded_type demand; // of the first argument
    error_code message;   // if it is not met
    bool is_entered;
};

using handler_table = std::array<handler_row, intrinsic_code_count>;

template <std::size_t count>
constexpr void enter_specifics(handler_table &table, const specific_row (&rows)[count], demanded_type demand,
                               error_code message) {
    for (const specific_row &row : rows) {
        table[row.code] = {table[row.generic].handler, demand, message, true};
    }
}

constexpr handler_table make_table() {
    handler_table table{};
    const auto enter = [&](intrinsic_handler *handler, auto... codes) {
        ((table[codes] = {handler, no_demand, {}, true}), ...);
    };
    enter(handle_assignment, assign_op);
    enter(handle_add, plus_op);
    enter(handle_subtract, minus_op);
    enter(handle_multiply, multiply_op);
    enter(handle_divide, divide_op);
    enter(handle_power, expon_op);
    enter(handle_concat, concat_op);
    enter(handle_eq, eq_op);
    enter(handle_ne, ne_op);
    enter(handle_gt, gt_op);
    enter(handle_ge, ge_op);
    enter(handle_lt, lt_op);
    enter(handle_le, le_op);
    enter(handle_not, not_op);
    enter(handle_and, land_op);
    enter(handle_or, lor_op);
    enter(handle_eqv, eqv_op);
    enter(handle_neqv, neqv_op);

    enter(handle_plain, intr_acos, intr_asin, intr_atan, intr_conjg, intr_cos, intr_cosh, intr_exp,
          intr_fraction, intr_log, intr_log10, intr_rrspacing, intr_sin, intr_sinh, intr_spacing, intr_sqrt,
          intr_tan, intr_tanh);
    enter(handle_plain_two, intr_atan2, intr_nearest, intr_scale, intr_set_exponent);
    enter(handle_to_integer, intr_ceiling, intr_exponent, intr_floor);
    enter(handle_abs, intr_abs);
    enter(handle_aimag, intr_aimag);
    enter(handle_remainder, intr_mod, intr_modulo, intr_sign, intr_dim);
    enter(handle_dprod, intr_dprod);
    enter(handle_extremum, intr_max, intr_min);
    enter(handle_merge, intr_merge);
    enter(handle_bit_pair, intr_iand, intr_ior, intr_ieor);
    enter(handle_bit_shift, intr_ibclr, intr_ibset, intr_ishft);
    enter(handle_btest, intr_btest);
    enter(handle_bit_field, intr_ibits, intr_ishftc);
    enter(handle_bit_not, intr_not);

    enter(handle_int, intr_int);
    enter(handle_real, intr_real);
    enter(handle_dble, intr_dble);
    enter(handle_cmplx, intr_cmplx);
    enter(handle_logical, intr_logical);
    enter(handle_rounding, intr_aint, intr_anint);
    enter(handle_nint, intr_nint);
    enter(handle_char, intr_char);

    enter(handle_search, intr_index, intr_scan, intr_verify);
    enter(handle_len_trim, intr_len_trim);
    enter(handle_adjust, intr_adjustl, intr_adjustr);
    enter(handle_repeat, intr_repeat);
    enter(handle_trim, intr_trim);
    enter(handle_achar, intr_achar);
    enter(handle_character_code, intr_iachar, intr_ichar);
    enter(handle_lexical, intr_lge, intr_lgt, intr_lle, intr_llt);

    enter(handle_numeric_inquiry, intr_bit_size, intr_digits, intr_kind, intr_maxexponent, intr_minexponent,
          intr_precision, intr_radix, intr_range);
    enter(handle_model_number, intr_epsilon, intr_huge, intr_tiny);
    enter(handle_bound, intr_lbound, intr_ubound);
    enter(handle_size, intr_size);
    enter(handle_shape, intr_shape);
    enter(handle_len, intr_len);
    enter(handle_allocated, intr_allocated);
    enter(handle_associated, intr_associated);
    enter(handle_present, intr_present);
    enter(handle_selected_int_kind, intr_selected_int_kind);
    enter(handle_selected_real_kind, intr_selected_real_kind);

    enter(handle_reduction, intr_all, intr_any, intr_count, intr_maxval, intr_minval, intr_product, intr_sum);
    enter(handle_location, intr_maxloc, intr_minloc);
    enter(handle_reshape, intr_reshape);
    enter(handle_spread, intr_spread);
    enter(handle_cshift, intr_cshift);
    enter(handle_eoshift, intr_eoshift);
    enter(handle_dot_product, intr_dot_product);
    enter(handle_matmul, intr_matmul);
    enter(handle_transpose, intr_transpose);
    enter(handle_pack, intr_pack);
    enter(handle_unpack, intr_unpack);
    enter(handle_transfer, intr_transfer);

    enter(handle_date_and_time, intr_date_and_time);
    enter(handle_system_clock, intr_system_clock);
    enter(handle_random_seed, intr_random_seed);
    enter(handle_random_number, intr_random_number);
    enter(handle_mvbits, intr_mvbits);

    enter_specifics(table, default_integer_rows, demand_default_integer,
                    msg_argument_must_be_of_type_default_integer);
    enter_specifics(table, default_real_rows, demand_default_real, msg_argument_must_be_of_type_default_real);
    enter_specifics(table, default_complex_rows, demand_default_complex,
                    msg_argument_must_be_of_type_default_complex);
    enter_specifics(table, double_precision_rows, demand_double_precision,
                    msg_argument_must_be_of_type_double_precision);
    enter_specifics(table, double_precision_rows_of_integer_message, demand_double_precision,
                    msg_argument_must_be_of_type_default_integer);
    return table;
}

constexpr handler_table handlers = make_table();

constexpr bool is_complete() {
    for (const handler_row &row : handlers) {
        if (!row.is_entered) {
            return false;
        }
    }
    return true;
}
static_assert(is_complete(), "an intrinsic has no handler");

bool meets(const type *t, demanded_type demand) {
    switch (demand) {
    case demand_default_integer: return t == default_integer();
    case demand_default_real: return t == default_real();
    case demand_default_complex: return t == default_complex();
    case demand_double_precision: return t == double_precision();
    default: return true;
    }
}

// Whether some argument has been reported in error, or has a type that has.
bool has_error_argument(const expr_node *node) {
    for (const expr_node *e = node->operands; e; e = e->next) {
        if (e->type && element_of(e)->type_code == tk_error) {
            return true;
        }
    }
    return false;
}

} // namespace

bool run_intrinsic_handler(intrinsic_code code, expr_node *node, std::uint32_t flags, object *routine) {
    if (has_error_argument(node)) {
        mark_error_node(node);
        return false;
    }
    const handler_row &row = handlers[code];
    if (row.demand != no_demand && !meets(element_of(node->operands), row.demand)) {
        return refuse(node, row.message, node->source_pos);
    }
    return row.handler(node, flags, routine);
}

} // namespace zf90
