// The intrinsics that ask about types: the models of numbers, the choice of kinds, lengths and bounds. The
// value of the argument asked about takes no part.
#include "constants/fold_parts.h"

#include "expressions/predicates.h"
#include "expressions/shapes.h"
#include "il/constants.h"
#include "intrinsics/intrinsic_codes.h"

#include <algorithm>
#include <cmath>

namespace zf90 {

namespace {

// ---- the models of numbers

// The smallest positive model number.
double smallest_model_real(std::uint32_t kind) {
    const auto &row = real_kinds[kind];
    double value = 1;
    for (int i = 0; i < 1 - row.min_exponent; ++i) {
        value /= row.radix;
    }
    return value;
}

double model_epsilon(std::uint32_t kind) {
    const auto &row = real_kinds[kind];
    double value = 1;
    for (int i = 0; i < row.digits - 1; ++i) {
        value /= row.radix;
    }
    return value;
}

std::int32_t real_precision(std::uint32_t kind) {
    const auto &row = real_kinds[kind];
    const auto digits = static_cast<std::int32_t>((row.digits - 1) * std::log10(row.radix));
    return row.radix % 10 == 0 ? digits + 1 : digits;
}

std::int32_t real_range(std::uint32_t kind) {
    return static_cast<std::int32_t>(
        std::min(std::log10(largest_model_real(kind)), -std::log10(smallest_model_real(kind))));
}

std::int32_t integer_range(std::uint32_t kind) {
    return static_cast<std::int32_t>(std::log10(largest_model_integer(kind)));
}

// What the numbers of a class are asked in common.
template <class Row> bool model_parameter(intrinsic_code inquiry, const Row &row, std::int32_t &value) {
    switch (inquiry) {
    case intr_bit_size: value = static_cast<std::int32_t>(8 * row.byte_size); return true;
    case intr_digits: value = row.digits; return true;
    case intr_kind: value = row.kind_number; return true;
    case intr_maxexponent: value = row.max_exponent; return true;
    case intr_minexponent: value = row.min_exponent; return true;
    case intr_radix: value = row.radix; return true;
    default: return false;
    }
}

bool integer_inquiry(intrinsic_code inquiry, std::uint32_t kind, std::int32_t &value) {
    switch (inquiry) {
    case intr_huge: value = static_cast<std::int32_t>(largest_model_integer(kind)); return true;
    case intr_range: value = integer_range(kind); return true;
    default: return model_parameter(inquiry, integer_kinds[kind], value);
    }
}

// An inquiry about a real whose answer is an integer; of a complex, about its parts.
bool real_inquiry(intrinsic_code inquiry, std::uint32_t kind, std::int32_t &value) {
    switch (inquiry) {
    case intr_precision: value = real_precision(kind); return true;
    case intr_range: value = real_range(kind); return true;
    default: return model_parameter(inquiry, real_kinds[kind], value);
    }
}

bool real_valued_inquiry(intrinsic_code inquiry, std::uint32_t kind, double &value) {
    switch (inquiry) {
    case intr_epsilon: value = model_epsilon(kind); return true;
    case intr_huge: value = largest_model_real(kind); return true;
    case intr_tiny: value = smallest_model_real(kind); return true;
    default: return false;
    }
}

} // namespace

fold_outcome fold_kind_inquiry(expr_node *node, fold_value &value) {
    const type *t = element_type_of(node->operands->type);
    std::int32_t answer = 0;
    bool known = false;
    switch (t->type_code) {
    case tk_integer: known = integer_inquiry(node->intrinsic, t->kind, answer); break;
    case tk_float:
        if (real_valued_inquiry(node->intrinsic, t->kind, value.real)) {
            value.repr_kind = ck_value;
            value.type = real_type(t->kind);
            return fold_outcome::folded;
        }
        [[fallthrough]];
    case tk_complex: known = real_inquiry(node->intrinsic, t->kind, answer); break;
    case tk_logical: known = model_parameter(node->intrinsic, logical_kinds[t->kind], answer); break;
    case tk_fcharacter: known = model_parameter(node->intrinsic, character_kinds[t->kind], answer); break;
    default: break;
    }
    if (!known) {
        return node->operands->node_kind == enk_error ? fold_outcome::failed : fold_outcome::never;
    }
    set_integer_value(value, answer);
    if (node->intrinsic == intr_huge) {
        value.type = integer_type(t->kind);
    }
    return fold_outcome::folded;
}

// ---- the choice of kinds

namespace {

fold_outcome fold_selected_int_kind(const expr_node *node, fold_value &value, bool must_fold) {
    std::int32_t range = 0;
    if (const fold_outcome outcome = fold_integer(node->operands, range, must_fold);
        outcome != fold_outcome::folded) {
        return outcome;
    }
    std::int32_t kind_number = -1;
    for (std::uint32_t kind = 0; kind < integer_kind_count && kind_number == -1; ++kind) {
        if (integer_range(kind) >= range) {
            kind_number = integer_kinds[kind].kind_number;
        }
    }
    set_integer_value(value, kind_number);
    return fold_outcome::folded;
}

// The first kind from `kind` on whose measure is large enough; `real_kind_count` if there is none.
std::uint32_t first_kind(std::uint32_t kind, std::int32_t (*measure)(std::uint32_t), std::int32_t least) {
    while (kind < real_kind_count && measure(kind) < least) {
        ++kind;
    }
    return kind;
}

// -1: the precision is too large; -2: the range; -3: both.
fold_outcome fold_selected_real_kind(const expr_node *node, fold_value &value, bool must_fold) {
    expr_node *precision = node->operands;
    expr_node *range = precision->next;
    std::uint32_t kind = 0;
    std::int32_t chosen = 0;
    std::int32_t least = 0;
    if (is_present(precision)) {
        if (const fold_outcome outcome = fold_integer(precision, least, must_fold);
            outcome != fold_outcome::folded) {
            return outcome;
        }
        kind = first_kind(0, real_precision, least);
        if (kind == real_kind_count) {
            chosen = -1;
            kind = 0;
        } else {
            chosen = real_kinds[kind].kind_number;
        }
    }
    if (is_present(range)) {
        if (const fold_outcome outcome = fold_integer(range, least, must_fold);
            outcome != fold_outcome::folded) {
            return outcome;
        }
        kind = first_kind(kind, real_range, least);
        if (kind == real_kind_count) {
            chosen = chosen == -1 ? -3 : -2;
        } else if (chosen != -1) {
            chosen = real_kinds[kind].kind_number;
        }
    }
    set_integer_value(value, chosen);
    return fold_outcome::folded;
}

} // namespace

fold_outcome fold_selected_kind(expr_node *node, fold_value &value, bool must_fold) {
    return node->intrinsic == intr_selected_int_kind ? fold_selected_int_kind(node, value, must_fold)
                                                     : fold_selected_real_kind(node, value, must_fold);
}

// ---- lengths and bounds

namespace {

bool bound_value(const bound &b, std::int32_t &value) {
    switch (b.kind) {
    case bound_constant: value = b.value; return true;
    case bound_expression: return fold_integer(b.expr, value, false) == fold_outcome::folded;
    default: return false;
    }
}

} // namespace

fold_outcome fold_len(expr_node *node, fold_value &value, bool /*must_fold*/) {
    expr_node *text = node->operands;
    const type *t = element_type_of(text->type);
    if (t->type_code != tk_fcharacter) {
        return text->node_kind == enk_error ? fold_outcome::failed : fold_outcome::never;
    }
    std::int32_t length = 0;
    if (!bound_value(char_length_of_type(t), length)) {
        fold_value known;
        if (const fold_outcome outcome = fold_node(text, known, false); outcome != fold_outcome::folded) {
            return outcome;
        }
        length = text_length(element_type_of(known.type));
    }
    set_integer_value(value, std::max(length, 0));
    return fold_outcome::folded;
}

namespace {

// One dimension of the array asked about, as far as it is known.
struct dimension_bounds {
    std::int32_t lower = 0;
    std::int32_t upper = 0;
    bool has_lower = false;
    bool has_upper = false;
    bool upper_assumed = false;

    std::int64_t extent() const { return std::max<std::int64_t>(std::int64_t{upper} - lower + 1, 0); }
};

dimension_bounds bounds_of_dimension(const bound_info_entry *info, unsigned rank, unsigned dimension) {
    dimension_bounds d;
    const bound &upper = info->bounds[rank + dimension];
    d.has_lower = bound_value(info->bounds[dimension], d.lower);
    d.has_upper = bound_value(upper, d.upper);
    d.upper_assumed = upper.kind == bound_assumed;
    return d;
}

// Whether an array has the bounds that its type has: that of an operation or a section starts at 1, and so
// does a component of all elements of an array.
bool has_declared_bounds(const expr_node *array) {
    switch (array->node_kind) {
    case enk_field: return !is_array(array->base_expr->type);
    case enk_object:
    case enk_param:
    case enk_constant: return true;
    default: return false;
    }
}

// What LBOUND, UBOUND and the other two ask of a dimension. False if it is no constant.
bool inquire_dimension(intrinsic_code inquiry, const dimension_bounds &d, bool declared,
                       std::int64_t &value) {
    const bool is_known = d.has_lower && d.has_upper;
    switch (inquiry) {
    case intr_lbound:
        // An empty dimension has the bounds 1 and 0.
        if (!declared || (d.has_lower && d.lower == 1) || (is_known && d.extent() == 0)) {
            value = 1;
            return true;
        }
        value = d.lower;
        return is_known || (d.has_lower && d.upper_assumed);
    case intr_ubound: value = declared && d.extent() > 0 ? d.upper : d.extent(); return is_known;
    default: value = d.extent(); return is_known;
    }
}

// The bounds of an array; null if there is no table of them. The extents of a section are worked out only for
// a constant that is demanded.
const bound_info_entry *bounds_asked_about(const type *t, bool must_fold) {
    const bound_info_entry *info = bounds_of_type(t);
    if (info || !must_fold || t->array.shape_kind != same_shape) {
        return info;
    }
    type *copy = new_type(tk_farray);
    copy_type(t, copy);
    section_bounds(copy);
    return bounds_of_type(copy);
}

} // namespace

fold_outcome fold_bounds(expr_node *node, fold_value &value, bool must_fold) {
    const expr_node *array = without_refs(node->operands);
    const type *t = array->type;
    if (!is_array(t)) {
        if (node->intrinsic == intr_shape && t->type_code != tk_error) {
            value = new_aggregate(node); // a scalar has no dimensions
            return fold_outcome::folded;
        }
        return array->node_kind == enk_error ? fold_outcome::failed : fold_outcome::never;
    }
    const unsigned rank = t->array.rank;
    const bound_info_entry *info = bounds_asked_about(t, must_fold);
    const bool declared = has_declared_bounds(array);
    const auto inquire = [&](unsigned dimension, std::int64_t &answer) {
        return info && inquire_dimension(node->intrinsic, bounds_of_dimension(info, rank, dimension),
                                         declared, answer);
    };
    std::int64_t answer = 0;
    expr_node *dimension = node->operands->next;
    if (is_present(dimension)) {
        std::int32_t number = 0;
        if (const fold_outcome outcome = fold_integer(dimension, number, must_fold);
            outcome != fold_outcome::folded) {
            return outcome;
        }
        if (number < 1 || number > static_cast<std::int32_t>(rank)) {
            return fold_failure(msg_argument_value_out_of_rank, dimension);
        }
        if (!inquire(static_cast<unsigned>(number - 1), answer)) {
            return fold_outcome::never;
        }
        set_integer_value(value, static_cast<std::int32_t>(answer));
        return fold_outcome::folded;
    }
    fold_value all = new_aggregate(node);
    std::int64_t product = 1;
    for (unsigned i = 0; i < rank; ++i) {
        if (!inquire(i, answer)) {
            return fold_outcome::never;
        }
        product = std::min<std::int64_t>(product * answer, INT32_MAX);
        fold_value element = new_fold_value(ck_value);
        element.source_pos = node->source_pos;
        set_integer_value(element, static_cast<std::int32_t>(answer));
        append_element(all, element);
    }
    if (node->intrinsic == intr_size) {
        set_integer_value(value, static_cast<std::int32_t>(product));
    } else {
        value = all;
    }
    return fold_outcome::folded;
}

} // namespace zf90
