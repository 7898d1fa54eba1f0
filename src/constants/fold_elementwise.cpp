// The elemental intrinsics of integers and texts, and the choice of the folder for each intrinsic.
#include "constants/fold_parts.h"

#include "expressions/check.h"
#include "il/constants.h"
#include "intrinsics/intrinsic_codes.h"

#include <algorithm>

namespace zf90 {

std::int32_t text_length(const type *character) { return std::max(constant_length(character), 0); }

std::int32_t trimmed_length(const fold_value &text) {
    const auto &row = character_kinds[text.type->kind];
    const unsigned char *bytes = fold_text(text);
    std::int32_t length = text_length(text.type);
    while (length > 0 && row.read_value(bytes + length - 1) == row.blank_char) {
        --length;
    }
    return length;
}

void set_integer_value(fold_value &value, std::int32_t integer) {
    value.repr_kind = ck_value;
    value.type = default_integer();
    value.integer = integer;
}

namespace {

// One call of an elemental function: the values of its arguments, and the nodes that they come from.
struct element_call {
    intrinsic_code function;
    unsigned count;
    const fold_value *values;
    expr_node *const *operands;

    std::int32_t operator[](unsigned i) const { return values[i].integer; }
    bool has(unsigned i) const { return i < count; }
    std::int32_t bits() const {
        return values[0].type->type_code == tk_integer
                   ? static_cast<std::int32_t>(8 * integer_kinds[values[0].type->kind].byte_size)
                   : 32;
    }
    // Reports at an argument. False, as the function then is.
    bool fail(error_code code, unsigned i) const {
        fold_failure(code, operands[i]);
        return false;
    }
};

// The value goes to `result`, which has the type of the function's result. False after an error.
using element_function = bool (*)(const element_call &call, fold_value &result);

// Integers wrap.
std::uint32_t u(std::int32_t i) { return static_cast<std::uint32_t>(i); }
std::int32_t wrapped(std::uint32_t i) { return static_cast<std::int32_t>(i); }

std::uint32_t low_bits(std::int32_t count) { return count >= 32 ? ~0u : (1u << count) - 1; }

// ---- numbers

std::int32_t absolute(std::int32_t i) { return i < 0 ? wrapped(0 - u(i)) : i; }

bool element_abs(const element_call &call, fold_value &result) {
    result.integer = absolute(call[0]);
    return true;
}

bool element_dim(const element_call &call, fold_value &result) {
    result.integer = std::max(wrapped(u(call[0]) - u(call[1])), 0);
    return true;
}

bool element_max(const element_call &call, fold_value &result) {
    result.integer = call[0];
    for (unsigned i = 1; i < call.count; ++i) {
        result.integer = std::max(result.integer, call[i]);
    }
    return true;
}

bool element_min(const element_call &call, fold_value &result) {
    result.integer = call[0];
    for (unsigned i = 1; i < call.count; ++i) {
        result.integer = std::min(result.integer, call[i]);
    }
    return true;
}

bool element_mod(const element_call &call, fold_value &result) {
    if (call[1] == 0) {
        return call.fail(msg_division_by_zero, 1);
    }
    result.integer = call[1] == -1 ? 0 : call[0] % call[1];
    return true;
}

bool element_modulo(const element_call &call, fold_value &result) {
    if (!element_mod(call, result)) {
        return false;
    }
    if (result.integer != 0 && (result.integer < 0) != (call[1] < 0)) {
        result.integer += call[1];
    }
    return true;
}

bool element_sign(const element_call &call, fold_value &result) {
    result.integer = absolute(call[0]);
    if (call[1] < 0) {
        result.integer = wrapped(0 - u(result.integer));
    }
    return true;
}

// ---- bits

bool element_iand(const element_call &call, fold_value &result) {
    result.integer = call[0] & call[1];
    return true;
}

bool element_ior(const element_call &call, fold_value &result) {
    result.integer = call[0] | call[1];
    return true;
}

bool element_ieor(const element_call &call, fold_value &result) {
    result.integer = call[0] ^ call[1];
    return true;
}

bool element_not(const element_call &call, fold_value &result) {
    result.integer = ~call[0];
    return true;
}

// IBCLR and IBSET.
bool element_change_bit(const element_call &call, fold_value &result) {
    if (call[1] < 0 || call[1] >= call.bits()) {
        return call.fail(msg_argument_value_out_of_bit_size_of_integer, 1);
    }
    const std::uint32_t bit = 1u << call[1];
    result.integer = wrapped(call.function == intr_ibset ? u(call[0]) | bit : u(call[0]) & ~bit);
    return true;
}

// The counts of shifts are taken modulo 32, so that all 32 bits from position 0 are none.
bool element_ibits(const element_call &call, fold_value &result) {
    const std::int32_t position = call[1];
    const std::int32_t length = call[2];
    if (length < 0) {
        return call.fail(msg_argument_must_not_be_negative, 2);
    }
    if (position < 0) {
        return call.fail(msg_argument_must_not_be_negative, 1);
    }
    if (std::int64_t{position} + length > call.bits()) {
        return call.fail(msg_argument_value_out_of_bit_size_of_integer, 1);
    }
    result.integer = (call[0] >> position % 32) & wrapped(~(~0u << length % 32));
    return true;
}

bool element_ishft(const element_call &call, fold_value &result) {
    const std::int32_t bits = call.bits();
    const std::int32_t shift = call[1];
    if (shift < -bits || shift > bits) {
        return call.fail(msg_argument_value_out_of_bit_size_of_integer, 1);
    }
    const std::uint32_t i = u(call[0]);
    if (shift >= 0) {
        result.integer = shift == 32 ? 0 : wrapped(i << shift);
    } else {
        // The bits of a shorter kind above its own are copies of its sign: they do not move in.
        result.integer = shift == -32 ? 0 : wrapped((i & low_bits(bits)) >> -shift);
    }
    return true;
}

bool element_ishftc(const element_call &call, fold_value &result) {
    const std::int32_t size = call.has(2) ? call[2] : call.bits();
    if (size < 1 || size > call.bits()) {
        return call.fail(msg_argument_value_out_of_bit_size_of_integer, 2);
    }
    const std::int64_t shift = call[1] < 0 ? std::int64_t{call[1]} + size : call[1];
    if (shift < 0 || shift > size) {
        return call.fail(msg_argument_value_out_of_bit_size_of_integer, 1);
    }
    const std::uint32_t mask = low_bits(size);
    const std::uint64_t field = u(call[0]) & mask;
    const auto turned = static_cast<std::uint32_t>((field << shift) | (field >> (size - shift))) & mask;
    result.integer = wrapped((u(call[0]) & ~mask) | turned);
    return true;
}

// The subroutine's result is its argument TO: FROM, FROMPOS, LEN, TO, TOPOS.
bool element_mvbits(const element_call &call, fold_value &result) {
    const std::int32_t from = call[1];
    const std::int32_t length = call[2];
    const std::int32_t to = call[4];
    for (const unsigned i : {2u, 1u, 4u}) {
        if (call[i] < 0) {
            return call.fail(msg_argument_must_not_be_negative, i);
        }
    }
    for (const unsigned i : {1u, 4u}) {
        if (std::int64_t{call[i]} + length > call.bits()) {
            return call.fail(msg_argument_value_out_of_bit_size_of_integer, i);
        }
    }
    if (length == 0) {
        result.integer = call[3];
        return true;
    }
    const std::uint32_t mask = low_bits(length);
    const std::uint32_t field = (u(call[0]) >> from) & mask;
    result.integer = wrapped((u(call[3]) & ~(mask << to)) | field << to);
    return true;
}

// ---- texts

bool element_char(const element_call &call, fold_value &result) {
    type *t = result.type;
    const source_pos position = result.source_pos;
    result = call.values[0];
    result.source_pos = position;
    convert_value(result, t);
    return true;
}

// ADJUSTL and ADJUSTR: the blanks of one end move to the other.
bool element_adjust(const element_call &call, fold_value &result) {
    const fold_value &text = call.values[0];
    const auto &row = character_kinds[text.type->kind];
    const std::int32_t length = text_length(text.type);
    const unsigned char *bytes = fold_text(text);
    std::int32_t blanks = 0;
    const bool to_left = call.function == intr_adjustl;
    while (blanks < length &&
           row.read_value(bytes + (to_left ? blanks : length - 1 - blanks)) == row.blank_char) {
        ++blanks;
    }
    unsigned char *adjusted = new_fold_text(result, length);
    result.type = text.type;
    for (std::int32_t i = 0; i < length; ++i) {
        const std::int32_t from = to_left ? i + blanks : i - blanks;
        const bool is_text = from >= 0 && from < length;
        row.write_value(adjusted + i, is_text ? row.read_value(bytes + from) : row.blank_char);
    }
    return true;
}

bool element_len_trim(const element_call &call, fold_value &result) {
    result.integer = trimmed_length(call.values[0]);
    return true;
}

// ---- the choice

struct elemental_folder {
    intrinsic_code function;
    element_function element;
};

constexpr elemental_folder elemental_folders[] = {
    {intr_abs, element_abs},          {intr_iabs, element_abs},         {intr_achar, element_char},
    {intr_char, element_char},        {intr_adjustl, element_adjust},   {intr_adjustr, element_adjust},
    {intr_dim, element_dim},          {intr_idim, element_dim},         {intr_iand, element_iand},
    {intr_ior, element_ior},          {intr_ieor, element_ieor},        {intr_not, element_not},
    {intr_ibclr, element_change_bit}, {intr_ibset, element_change_bit}, {intr_ibits, element_ibits},
    {intr_ishft, element_ishft},      {intr_ishftc, element_ishftc},    {intr_len_trim, element_len_trim},
    {intr_max, element_max},          {intr_max0, element_max},         {intr_min, element_min},
    {intr_min0, element_min},         {intr_mod, element_mod},          {intr_modulo, element_modulo},
    {intr_mvbits, element_mvbits},    {intr_sign, element_sign},        {intr_isign, element_sign},
};

element_function elemental_folder_of(intrinsic_code function) {
    const auto *entry = std::ranges::find(elemental_folders, function, &elemental_folder::function);
    return entry == std::end(elemental_folders) ? nullptr : entry->element;
}

bool is_integer_or_text(const type *t) { return t->type_code == tk_integer || t->type_code == tk_fcharacter; }

// The arguments of an elemental call.
struct argument_list {
    std::vector<expr_node *> operands;
    std::vector<fold_value> values;       // the array arguments are replaced by the element in turn
    std::vector<element_cursor> elements; // of the array arguments
    std::vector<bool> is_array;
};

fold_outcome fold_arguments(const expr_node *node, bool must_fold, argument_list &arguments) {
    for (expr_node *e = node->operands; is_present(e); e = e->next) {
        if (e->node_kind != enk_error && !is_integer_or_text(element_type_of(e->type))) {
            return fold_outcome::never;
        }
        fold_value value;
        if (const fold_outcome outcome = fold_node(e, value, must_fold); outcome != fold_outcome::folded) {
            return outcome;
        }
        arguments.operands.push_back(e);
        arguments.elements.push_back(elements_of(value));
        arguments.is_array.push_back(zf90::is_array(value.type));
        arguments.values.push_back(value);
    }
    return arguments.operands.empty() ? fold_outcome::never : fold_outcome::folded;
}

// Takes the next element of each array argument. Counts those that had one and those that had none.
void take_elements(argument_list &arguments, unsigned &present, unsigned &absent) {
    present = absent = 0;
    for (std::size_t i = 0; i < arguments.values.size(); ++i) {
        if (!arguments.is_array[i]) {
            continue;
        }
        if (const constant *element = next_element(arguments.elements[i])) {
            ++present;
            read_constant(element, arguments.values[i]);
        } else {
            ++absent;
        }
    }
}

} // namespace

fold_outcome fold_elementwise(expr_node *node, fold_value &value, bool must_fold) {
    const element_function element = elemental_folder_of(node->intrinsic);
    type *result_type = element_type_of(node->type);
    if (!element || !is_integer_or_text(result_type)) {
        return fold_outcome::never;
    }
    argument_list arguments;
    if (const fold_outcome outcome = fold_arguments(node, must_fold, arguments);
        outcome != fold_outcome::folded) {
        return outcome;
    }
    const element_call call{node->intrinsic, static_cast<unsigned>(arguments.values.size()),
                            arguments.values.data(), arguments.operands.data()};
    const auto call_function = [&](fold_value &result) {
        result = new_fold_value(ck_value);
        result.source_pos = node->source_pos;
        result.type = result_type;
        return element(call, result);
    };
    if (!is_array(node->type)) {
        return call_function(value) ? fold_outcome::folded : fold_outcome::failed;
    }
    value = new_aggregate(node);
    for (;;) {
        unsigned present = 0;
        unsigned absent = 0;
        take_elements(arguments, present, absent);
        if (present == 0) {
            return fold_outcome::folded;
        }
        if (absent > 0) {
            return fold_failure(msg_different_array_sizes, node);
        }
        fold_value result;
        if (!call_function(result)) {
            return fold_outcome::failed;
        }
        if (!append_element(value, result)) {
            return too_large(node, must_fold);
        }
    }
}

fold_outcome fold_intrinsic(expr_node *node, fold_value &value, bool must_fold) {
    switch (node->intrinsic) {
    case intr_trim: return fold_trim(node, value, must_fold);
    case intr_repeat: return fold_repeat(node, value, must_fold);
    case intr_reshape: return fold_reshape(node, value, must_fold);
    case intr_transfer: return fold_transfer(node, value, must_fold);
    case intr_selected_int_kind:
    case intr_selected_real_kind: return fold_selected_kind(node, value, must_fold);
    case intr_len: return fold_len(node, value, must_fold);
    case intr_lbound:
    case intr_ubound:
    case intr_size:
    case intr_shape: return fold_bounds(node, value, must_fold);
    case intr_bit_size:
    case intr_digits:
    case intr_epsilon:
    case intr_huge:
    case intr_kind:
    case intr_maxexponent:
    case intr_minexponent:
    case intr_precision:
    case intr_radix:
    case intr_range:
    case intr_tiny: return fold_kind_inquiry(node, value);
    default: return fold_elementwise(node, value, must_fold);
    }
}

} // namespace zf90
