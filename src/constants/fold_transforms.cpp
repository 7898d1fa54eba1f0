// The intrinsics that take constants as a whole: TRIM, REPEAT, RESHAPE and TRANSFER.
#include "constants/fold_parts.h"

#include "driver/deep_call.h"
#include "expressions/check.h"
#include "expressions/predicates.h"
#include "il/constants.h"
#include "il/entries.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace zf90 {

fold_outcome fold_trim(expr_node *node, fold_value &value, bool must_fold) {
    const fold_outcome outcome = fold_node(node->operands, value, must_fold);
    if (outcome == fold_outcome::folded) {
        value.type = character_type(value.type->kind, trimmed_length(value));
    }
    return outcome;
}

fold_outcome fold_repeat(expr_node *node, fold_value &value, bool must_fold) {
    expr_node *count = node->operands->next;
    fold_value text;
    std::int32_t copies = 0;
    fold_outcome outcome = fold_node(node->operands, text, must_fold);
    if (outcome == fold_outcome::folded) {
        outcome = fold_integer(count, copies, must_fold);
    }
    if (outcome != fold_outcome::folded) {
        return outcome;
    }
    if (copies < 0) {
        return fold_failure(msg_argument_must_not_be_negative, count);
    }
    const std::int32_t length = text_length(text.type);
    const std::int64_t total = std::int64_t{length} * copies;
    if (total > largest_folded_size) {
        return fold_outcome::never;
    }
    value.repr_kind = ck_value;
    value.type = character_type(text.type->kind, static_cast<std::int32_t>(total));
    unsigned char *bytes = new_fold_text(value, static_cast<std::int32_t>(total));
    for (std::int32_t i = 0; length > 0 && i < copies; ++i) {
        bytes = std::copy_n(fold_text(text), length, bytes);
    }
    return fold_outcome::folded;
}

// ---- RESHAPE

namespace {

constexpr unsigned largest_rank = 7;

// A new array type with lower bounds of 1.
type *array_of(type *element, const std::vector<std::int32_t> &extents, source_pos position) {
    const auto rank = static_cast<unsigned>(extents.size());
    type *t = new_array_type(element, rank);
    t->source_corresp.decl_position = position;
    t->is_numeric = element->is_numeric;
    t->is_character = element->is_character;
    t->contains_ptrs = element->contains_ptrs;
    for (unsigned i = 0; i < rank; ++i) {
        set_constant_bound(t->array.bound->bounds[i], 1);
        set_constant_bound(t->array.bound->bounds[rank + i], extents[i]);
    }
    complete_type(t);
    return t;
}

// The arguments of RESHAPE, folded.
struct reshape_arguments {
    expr_node *node;
    expr_node *shape;
    expr_node *order;                    // null: absent
    std::vector<std::int32_t> extents;   // of the result
    std::vector<std::size_t> dimensions; // in the order in which they are filled
    std::vector<const constant *> source;
    std::vector<const constant *> pad;
};

// An error at an element of an argument: where it is written, unless that is in a declaration.
fold_outcome bad_element(error_code code, expr_node *argument, const constant *element) {
    const bool is_written_here =
        argument->node_kind == enk_constant || argument->node_kind == enk_constructor;
    error_at(code, is_written_here ? element->source_pos : argument->source_pos);
    mark_error_node(argument);
    return fold_outcome::failed;
}

fold_outcome read_order(reshape_arguments &arguments, const fold_value &order) {
    const std::size_t rank = arguments.extents.size();
    element_cursor cursor = elements_of(order);
    std::int32_t product = 1;
    std::int32_t factorial = 1;
    while (const constant *element = next_element(cursor)) {
        if (arguments.dimensions.size() == largest_rank) {
            return arguments.dimensions.push_back(0), fold_outcome::folded;
        }
        const std::int32_t dimension = integer_value_of(element);
        if (dimension < 1 || static_cast<std::size_t>(dimension) > rank) {
            return bad_element(msg_argument_value_out_of_rank, arguments.order, element);
        }
        arguments.dimensions.push_back(static_cast<std::size_t>(dimension - 1));
        product *= dimension;
        factorial *= static_cast<std::int32_t>(arguments.dimensions.size());
    }
    if (arguments.dimensions.size() == rank && product != factorial) {
        return fold_failure(msg_argument_value_is_not_permutation_of_1_rank, arguments.order);
    }
    return fold_outcome::folded;
}

fold_outcome read_shape(reshape_arguments &arguments, const fold_value &shape) {
    const std::int64_t rank = element_count(shape, largest_rank + 1);
    if (rank < 1) {
        error_at(msg_must_be_positive, arguments.shape->source_pos, "rank");
        mark_error_node(arguments.shape);
        return fold_outcome::failed;
    }
    if (rank > largest_rank) {
        return fold_failure(msg_maximum_rank_is_seven, arguments.shape);
    }
    arguments.extents.resize(static_cast<std::size_t>(rank));
    return fold_outcome::folded;
}

fold_outcome read_extents(reshape_arguments &arguments, const fold_value &shape) {
    element_cursor cursor = elements_of(shape);
    for (std::int32_t &extent : arguments.extents) {
        const constant *element = next_element(cursor);
        extent = integer_value_of(element);
        if (extent < 0) {
            return bad_element(msg_argument_must_not_be_negative, arguments.shape, element);
        }
    }
    return fold_outcome::folded;
}

// Folds the arguments and checks them.
fold_outcome fold_reshape_arguments(reshape_arguments &arguments, bool must_fold) {
    expr_node *source = arguments.node->operands;
    expr_node *pad = arguments.shape->next;
    expr_node *order = pad ? pad->next : nullptr;
    fold_value values[4];
    unsigned i = 0;
    for (expr_node *e : {source, arguments.shape, pad, order}) {
        if (is_present(e)) {
            if (const fold_outcome outcome = fold_node(e, values[i], must_fold);
                outcome != fold_outcome::folded) {
                return outcome;
            }
        }
        ++i;
    }
    fold_outcome outcome = read_shape(arguments, values[1]);
    if (outcome != fold_outcome::folded) {
        return outcome;
    }
    if (is_present(order)) {
        arguments.order = order;
        outcome = read_order(arguments, values[3]);
        if (outcome == fold_outcome::folded && arguments.dimensions.size() != arguments.extents.size()) {
            error_at(msg_argument_must_have_same_shape_as, order->source_pos, "SHAPE");
            mark_error_node(order);
            return fold_outcome::failed;
        }
    } else {
        for (std::size_t d = 0; d < arguments.extents.size(); ++d) {
            arguments.dimensions.push_back(d);
        }
    }
    if (outcome == fold_outcome::folded) {
        outcome = read_extents(arguments, values[1]);
    }
    arguments.source = element_vector(values[0]);
    arguments.pad = element_vector(values[2]);
    return outcome;
}

// Appends the elements of the result, in its own order. A dimension that ORDER leaves out does not move.
fold_outcome fill_reshaped(const reshape_arguments &arguments, std::int64_t total, fold_value &value,
                           bool must_fold) {
    std::array<std::int64_t, largest_rank> strides{};
    std::array<std::int32_t, largest_rank> counters{};
    std::int64_t stride = 1;
    for (const std::size_t d : arguments.dimensions) {
        strides[d] = stride;
        stride *= arguments.extents[d];
    }
    const auto source_size = static_cast<std::int64_t>(arguments.source.size());
    const auto pad_size = static_cast<std::int64_t>(arguments.pad.size());
    std::int64_t position = 0;
    for (std::int64_t i = 0; i < total; ++i) {
        const constant *element;
        if (position < source_size) {
            element = arguments.source[static_cast<std::size_t>(position)];
        } else if (pad_size > 0) {
            element = arguments.pad[static_cast<std::size_t>((position - source_size) % pad_size)];
        } else {
            return fold_failure(msg_argument_size_must_be_greater_or_equal_to_product, arguments.node);
        }
        if (!append_copy(value, element)) {
            return too_large(arguments.node, must_fold);
        }
        for (std::size_t d = 0; d < arguments.extents.size(); ++d) {
            position += strides[d];
            if (++counters[d] < arguments.extents[d]) {
                break;
            }
            position -= strides[d] * arguments.extents[d];
            counters[d] = 0;
        }
    }
    return fold_outcome::folded;
}

} // namespace

fold_outcome fold_reshape(expr_node *node, fold_value &value, bool must_fold) {
    reshape_arguments arguments{node, node->operands->next, nullptr, {}, {}, {}, {}};
    if (const fold_outcome outcome = fold_reshape_arguments(arguments, must_fold);
        outcome != fold_outcome::folded) {
        return outcome;
    }
    std::int64_t total = 1;
    for (const std::int32_t extent : arguments.extents) {
        total = std::min(total * extent, std::int64_t{largest_element_count} + 1);
    }
    if (std::ranges::find(arguments.extents, 0) != arguments.extents.end()) {
        total = 0;
    }
    if (total > largest_element_count) {
        return too_large(node, must_fold);
    }
    node->type = array_of(element_type_of(node->type), arguments.extents, arguments.shape->source_pos);
    value = new_aggregate(node);
    return fill_reshaped(arguments, total, value, must_fold);
}

// ---- TRANSFER

namespace {

// A walk over an area in the target's form.
struct byte_area {
    std::vector<unsigned char> bytes;
    bool failed = false; // a value has no such form
};

// The room for a value at an offset; null if it is not in the area.
unsigned char *room_at(byte_area &area, std::size_t offset, std::size_t size) {
    if (offset > area.bytes.size() || size > area.bytes.size() - offset) {
        area.failed = true;
        return nullptr;
    }
    return area.bytes.data() + offset;
}

bool is_component_stored(const object *component) {
    return !component->is_pointer && component->type && component->association_offset >= 0;
}

// Writes a constant at an offset.
bool write_bytes(byte_area &area, std::size_t offset, const constant *c) {
    return deep_call([&] {
        const type *t = c->type;
        if (c->repr_kind != ck_aggregate) {
            const bool has_bytes = (c->repr_kind == ck_value || c->repr_kind == ck_expression) &&
                                   c->value.bytes && t->type_code != tk_derived_type;
            unsigned char *room = has_bytes ? room_at(area, offset, t->size) : nullptr;
            if (room) {
                std::memcpy(room, c->value.bytes, t->size);
            }
            area.failed = area.failed || !room;
            return !area.failed;
        }
        fold_value parts;
        read_constant(c, parts);
        element_cursor cursor = elements_of(parts);
        if (is_array(t)) {
            const std::size_t step = t->array.element_type->size;
            while (const constant *element = next_element(cursor)) {
                if (!write_bytes(area, offset, element)) {
                    break;
                }
                offset += step;
            }
            return !area.failed;
        }
        const object *component = t->derived.first_field;
        while (const constant *part = next_element(cursor)) {
            if (!component || !is_component_stored(component) ||
                !write_bytes(area, offset + static_cast<std::size_t>(component->association_offset), part)) {
                area.failed = true;
                break;
            }
            component = component->next;
        }
        return !area.failed;
    });
}

// The constant of a type that stands at an offset; null if the type has none.
constant *read_bytes(byte_area &area, std::size_t offset, type *t, source_pos position) {
    return deep_call([&]() -> constant * {
        auto *c = il_new<constant>();
        if (!is_array(t) && t->type_code != tk_derived_type) {
            const unsigned char *room = t->size > 0 ? room_at(area, offset, t->size) : nullptr;
            if (!room) {
                return nullptr;
            }
            init_constant(c, ck_value);
            c->source_pos = position;
            c->type = t;
            c->value.bytes = static_cast<unsigned char *>(il_alloc(static_cast<std::int32_t>(t->size)));
            std::memcpy(c->value.bytes, room, t->size);
            return c;
        }
        init_constant(c, ck_aggregate);
        c->source_pos = position;
        c->type = t;
        if (is_array(t)) {
            const bound_info_entry *info = bounds_of_type(t);
            const std::size_t step = t->array.element_type->size;
            std::uint64_t count = 1;
            for (unsigned i = 0; i < t->array.rank; ++i) {
                const bool is_constant = info && info->bounds[i].kind == bound_constant &&
                                         info->bounds[t->array.rank + i].kind == bound_constant;
                if (!is_constant) {
                    return nullptr;
                }
                count = std::min(count * constant_extent(info->bounds[i], info->bounds[t->array.rank + i]),
                                 std::uint64_t{largest_element_count} + 1);
            }
            for (std::uint64_t i = 0; i < count; ++i) {
                constant *element = read_bytes(area, offset + i * step, t->array.element_type, position);
                if (!element) {
                    return nullptr;
                }
                append_to_aggregate(c, element);
            }
            return c;
        }
        for (const object *o = t->derived.first_field; o; o = o->next) {
            constant *part = is_component_stored(o)
                                 ? read_bytes(area, offset + static_cast<std::size_t>(o->association_offset),
                                              o->type, position)
                                 : nullptr;
            if (!part) {
                return nullptr;
            }
            append_to_aggregate(c, part);
        }
        return c;
    });
}

// The size of a value of a type, where an array without elements has none; -1 if it is not known.
std::int64_t stored_size(type *t) {
    complete_type(t);
    if (t->size == 0) {
        return -1;
    }
    return is_zero_sized(t) ? 0 : std::int64_t{t->size};
}

// The type of an element, with its length as a constant.
type *constant_element_type(type *t) {
    type *element = element_type_of(t);
    if (element->type_code == tk_fcharacter && element->character.length.kind != bound_constant) {
        const bound &length = char_length_of_type(element);
        if (length.kind == bound_constant) {
            return character_type(element->kind, length.value);
        }
    }
    return element;
}

} // namespace

fold_outcome fold_transfer(expr_node *node, fold_value &value, bool must_fold) {
    expr_node *source = node->operands;
    expr_node *mold = source->next;
    expr_node *size = mold->next;
    fold_value from;
    std::int32_t extent = 0;
    fold_outcome outcome = fold_node(source, from, must_fold);
    if (outcome == fold_outcome::folded && is_present(size)) {
        outcome = fold_integer(size, extent, must_fold);
    }
    if (outcome != fold_outcome::folded) {
        return outcome;
    }
    type *element = constant_element_type(mold->type);
    const std::int64_t source_size = stored_size(from.type);
    complete_type(element);
    const std::int64_t element_size = element->size;
    if (source_size < 0 || element_size == 0) {
        return fold_outcome::never;
    }
    const bool is_scalar = !is_present(size) && !is_array(mold->type);
    std::int64_t count = 1;
    if (is_present(size)) {
        count = std::max(extent, 0);
    } else if (!is_scalar) {
        count = (source_size + element_size - 1) / element_size;
    }
    if (source_size > largest_folded_size || count > largest_element_count ||
        count * element_size > largest_folded_size) {
        return too_large(node, must_fold);
    }
    byte_area area;
    area.bytes.resize(static_cast<std::size_t>(std::max(source_size, count * element_size)));
    type *result =
        is_scalar ? element : array_of(element, {static_cast<std::int32_t>(count)}, node->source_pos);
    if (source_size > 0) {
        write_bytes(area, 0, store_fold_value(from));
    }
    const constant *c = area.failed ? nullptr : read_bytes(area, 0, result, node->source_pos);
    if (!c) {
        return fold_outcome::never;
    }
    node->type = result;
    read_constant(c, value);
    return fold_outcome::folded;
}

} // namespace zf90
