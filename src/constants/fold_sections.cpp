// Parts of constant values: components, elements, sections and substrings, and the lists that they are taken
// from.
#include "constants/fold_parts.h"

#include "expressions/check.h"
#include "expressions/predicates.h"
#include "il/constants.h"
#include "il/entries.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

namespace zf90 {

// ---- lists of elements

const constant *next_element(element_cursor &cursor) {
    while (cursor.at) {
        const constant *c = cursor.at;
        if (c->repr_kind == ck_init_repeat) {
            if (cursor.taken < c->repeat.count) {
                ++cursor.taken;
                return c->repeat.constant;
            }
            cursor.taken = 0;
        }
        cursor.at = c->next;
        if (c->repr_kind != ck_init_repeat && c->repr_kind != ck_init_position &&
            c->repr_kind != ck_init_index) {
            return c;
        }
    }
    return nullptr;
}

std::int64_t element_count(const fold_value &aggregate, std::int64_t limit) {
    std::int64_t count = 0;
    for (const constant *c = aggregate.first_constant; c && count < limit; c = c->next) {
        count += c->repr_kind == ck_init_repeat ? c->repeat.count : 1;
    }
    return std::min(count, limit);
}

std::vector<const constant *> element_vector(const fold_value &aggregate) {
    std::vector<const constant *> elements;
    element_cursor cursor = elements_of(aggregate);
    while (const constant *element = next_element(cursor)) {
        elements.push_back(element);
        if (elements.size() > largest_element_count) {
            break;
        }
    }
    return elements;
}

namespace {

// Tables of the long lists, by their first element. An empty one is that of a list which has more than plain
// elements.
std::unordered_map<const constant *, std::vector<const constant *>> element_tables;

constexpr std::int64_t short_list = 32;

const constant *walk_to_element(const constant *list, std::int64_t index) {
    std::int64_t position = 0;
    const constant *range = nullptr; // the indices that the next value goes to
    for (const constant *c = list; c; c = c->next) {
        if (c->repr_kind == ck_init_position) {
            position = c->position.offset;
        } else if (c->repr_kind == ck_init_index) {
            range = c;
        } else {
            const bool repeated = c->repr_kind == ck_init_repeat;
            const std::int64_t count = repeated ? c->repeat.count : 1;
            const constant *value = repeated ? c->repeat.constant : c;
            if (range) {
                const auto &[first, second, stride] = range->index;
                if (index >= first && index <= second && stride > 0 && (index - first) % stride == 0) {
                    return value;
                }
                range = nullptr;
            } else {
                if (index >= position && index < position + count) {
                    return value;
                }
                position += count;
            }
        }
    }
    return nullptr;
}

const std::vector<const constant *> &element_table(const constant *list) {
    auto [entry, is_new] = element_tables.try_emplace(list);
    std::vector<const constant *> &table = entry->second;
    if (is_new) {
        for (const constant *c = list; c; c = c->next) {
            if (c->repr_kind >= ck_init_position) {
                table.clear();
                break;
            }
            table.push_back(c);
        }
    }
    return table;
}

} // namespace

const constant *nth_element(const constant *list, std::int64_t index) {
    if (!list || index < 0) {
        return nullptr;
    }
    if (index >= short_list) {
        const std::vector<const constant *> &table = element_table(list);
        if (!table.empty()) {
            return index < static_cast<std::int64_t>(table.size()) ? table[static_cast<std::size_t>(index)]
                                                                   : nullptr;
        }
    }
    return walk_to_element(list, index);
}

void forget_element_tables() { element_tables.clear(); }

// ---- components

namespace {

const constant *parts_of(const constant *structure) {
    return structure->repr_kind == ck_aggregate ? structure->aggregate.first_constant : nullptr;
}

// The value of a component in the list of a structure's values, or null.
const constant *component_value(const constant *values, const type *derived, const object *component) {
    const object *o = derived->type_code == tk_derived_type ? derived->derived.first_field : nullptr;
    for (; o && values; o = o->next, values = values->next) {
        if (o == component) {
            return values;
        }
    }
    return nullptr;
}

fold_outcome read_element(const constant *element, fold_value &value) {
    if (!element) {
        return fold_outcome::never;
    }
    read_constant(element, value);
    return has_value(value) ? fold_outcome::folded : fold_outcome::never;
}

} // namespace

fold_outcome fold_field(expr_node *node, fold_value &value, bool must_fold) {
    expr_node *base = node->base_expr;
    fold_value outer;
    if (const fold_outcome outcome = fold_node(base, outer, must_fold); outcome != fold_outcome::folded) {
        return outcome;
    }
    const type *derived = element_type_of(base->type);
    if (!is_array(base->type)) {
        return read_element(component_value(outer.first_constant, derived, node->field_var), value);
    }
    value = new_aggregate(node);
    element_cursor cursor = elements_of(outer);
    while (const constant *element = next_element(cursor)) {
        const constant *part = component_value(parts_of(element), derived, node->field_var);
        if (!part) {
            return fold_outcome::never;
        }
        if (!append_copy(value, part)) {
            return too_large(node, must_fold);
        }
    }
    return fold_outcome::folded;
}

// ---- elements

namespace {

// The offset of a list of scalar subscripts in element order. It may be outside of the array, on either side.
fold_outcome linear_index(const type *array, expr_node *subscripts, bool must_fold, std::int64_t &index) {
    const bound_info_entry *info = bounds_of_type(array);
    const unsigned rank = array->array.rank;
    std::int64_t stride = 1;
    index = 0;
    unsigned dimension = 0;
    for (expr_node *e = subscripts; e && dimension < rank; e = e->next, ++dimension) {
        std::int32_t subscript = 0;
        if (const fold_outcome outcome = fold_integer(e, subscript, must_fold);
            outcome != fold_outcome::folded) {
            return outcome;
        }
        const bool has_lower = info && info->bounds[dimension].kind == bound_constant;
        const std::int64_t lower = has_lower ? info->bounds[dimension].value : 1;
        index += (subscript - lower) * stride;
        if (!e->next) {
            break;
        }
        const bound *upper = info ? &info->bounds[rank + dimension] : nullptr;
        if (!upper || upper->kind != bound_constant) {
            return fold_outcome::never;
        }
        // Strides of a type that is too large mean nothing, but must not overflow.
        stride =
            std::min(stride * std::max<std::int64_t>(upper->value - lower + 1, 0), std::int64_t{1} << 30);
    }
    return fold_outcome::folded;
}

fold_outcome out_of_range(const expr_node *node) {
    error_at(msg_subscript_out_of_range, node->source_pos);
    return fold_outcome::failed;
}

// The element of a component in each structure of an array.
fold_outcome fold_component_element(expr_node *node, const expr_node *component, fold_value &value,
                                    bool must_fold) {
    expr_node *base = component->base_expr;
    fold_value outer;
    std::int64_t index = 0;
    fold_outcome outcome = fold_node(base, outer, must_fold);
    if (outcome == fold_outcome::folded) {
        outcome = linear_index(component->field_var->type, node->ind_list, must_fold, index);
    }
    if (outcome != fold_outcome::folded) {
        return outcome;
    }
    if (index < 0) {
        return fold_outcome::never;
    }
    value = new_aggregate(node);
    element_cursor cursor = elements_of(outer);
    while (const constant *structure = next_element(cursor)) {
        const constant *part =
            component_value(parts_of(structure), element_type_of(base->type), component->field_var);
        if (!part || part->repr_kind != ck_aggregate) {
            return fold_outcome::never;
        }
        const constant *element = nth_element(part->aggregate.first_constant, index);
        if (!element) {
            return out_of_range(node);
        }
        if (!append_copy(value, element)) {
            return too_large(node, must_fold);
        }
    }
    return fold_outcome::folded;
}

} // namespace

fold_outcome fold_subscript(expr_node *node, fold_value &value, bool must_fold) {
    expr_node *base = without_refs(node->array_expr);
    if (base->node_kind == enk_field && is_array(base->base_expr->type) && is_array(base->field_var->type)) {
        return fold_component_element(node, base, value, must_fold);
    }
    fold_value array;
    fold_outcome outcome = fold_node(base, array, must_fold);
    std::int64_t index = 0;
    if (outcome == fold_outcome::folded) {
        if (!is_array(base->type) || array.repr_kind != ck_aggregate) {
            return fold_outcome::never;
        }
        outcome = linear_index(base->type, node->ind_list, must_fold, index);
    }
    if (outcome != fold_outcome::folded) {
        return outcome;
    }
    if (index < 0) {
        return fold_outcome::never;
    }
    const constant *element = nth_element(array.first_constant, index);
    return element ? read_element(element, value) : out_of_range(node);
}

// ---- substrings

namespace {

// The positions of a substring, from 1, both included.
struct text_range {
    std::int32_t start;
    std::int32_t end;
    std::int32_t length() const { return start > end ? 0 : end - start + 1; }
};

// The part of a text. A start of 0 has a blank in front of the text.
void take_substring(fold_value &text, text_range range, type *result) {
    const std::int32_t length = range.length();
    const fold_value whole = text;
    if (range.start >= 1 && whole.value_bytes && length > inline_text_size) {
        text.value_bytes = whole.value_bytes + (range.start - 1);
    } else {
        const unsigned char *bytes = fold_text(whole);
        unsigned char *part = new_fold_text(text, length);
        for (std::int32_t i = 0; i < length; ++i) {
            const std::int32_t position = range.start + i;
            part[i] = position >= 1 ? bytes[position - 1]
                                    : static_cast<unsigned char>(character_kinds[result->kind].blank_char);
        }
    }
    text.type = result;
}

// Whether a position is one of a text of that length, or 0, which is let through.
bool is_position(std::int32_t position, std::int32_t length) { return position >= 0 && position <= length; }

} // namespace

fold_outcome fold_substring(expr_node *node, fold_value &value, bool must_fold) {
    fold_outcome outcome = fold_node(node->array_expr, value, must_fold);
    if (outcome != fold_outcome::folded) {
        return outcome;
    }
    const type *text = element_type_of(value.type);
    if (text->type_code != tk_fcharacter) {
        return fold_outcome::never;
    }
    const std::int32_t length = text_length(text);
    const expr_node *positions = node->ind_list;
    text_range range{1, length};
    if (is_present(positions->first)) {
        outcome = fold_integer(positions->first, range.start, must_fold);
    }
    if (outcome == fold_outcome::folded && is_present(positions->second)) {
        outcome = fold_integer(positions->second, range.end, must_fold);
    }
    if (outcome != fold_outcome::folded) {
        return outcome;
    }
    for (const auto &[position, part] :
         {std::pair{range.start, positions->first}, std::pair{range.end, positions->second}}) {
        if (!is_position(position, length)) {
            // Not given, it is the start of a text without characters.
            if (!is_present(part)) {
                continue;
            }
            error_at(msg_subscript_out_of_range, part->source_pos);
            mark_error_node(node);
            return fold_outcome::failed;
        }
    }
    if (range.end - range.start + 1 == length) {
        return fold_outcome::folded;
    }
    type *result = character_type(text->kind, range.length());
    if (!is_array(value.type)) {
        node->type = result;
        take_substring(value, range, result);
        return fold_outcome::folded;
    }
    type *array = new_type(tk_farray);
    copy_type(value.type, array);
    array->il_id = 0;
    array->size = 0;
    array->array.element_type = result;
    complete_type(array);
    node->type = array;
    const fold_value whole = value;
    value = new_aggregate(node);
    element_cursor cursor = elements_of(whole);
    while (const constant *element = next_element(cursor)) {
        fold_value part;
        part.source_pos = element->source_pos;
        read_constant(element, part);
        take_substring(part, range, result);
        if (!append_element(value, part)) {
            return too_large(node, must_fold);
        }
    }
    return fold_outcome::folded;
}

// ---- sections

namespace {

// One dimension of an array and what is selected of it, as offsets from its lower bound. Nothing to select
// stands for all of it.
struct dimension_selection {
    std::int32_t lower = 1;
    std::int32_t upper = 0;
    bool whole = false;
    std::vector<std::int64_t> offsets;

    std::int64_t extent() const { return std::max<std::int64_t>(std::int64_t{upper} - lower + 1, 0); }
    bool contains(std::int64_t index) const { return index >= lower && index <= upper; }
    std::int64_t count() const { return whole ? extent() : static_cast<std::int64_t>(offsets.size()); }
};

// An error at a subscript of a section.
fold_outcome bad_subscript(expr_node *subscript) {
    return fold_failure(msg_subscript_out_of_range, subscript);
}

// One of the bounds of a triplet.
fold_outcome triplet_bound(expr_node *part, const dimension_selection &d, bool must_fold,
                           std::int32_t &index) {
    if (!is_present(part)) {
        return fold_outcome::folded;
    }
    const fold_outcome outcome = fold_integer(part, index, must_fold);
    return outcome == fold_outcome::folded && !d.contains(index) ? bad_subscript(part) : outcome;
}

fold_outcome select_triplet(const expr_node *triplet, bool must_fold, dimension_selection &d) {
    std::int32_t first = d.lower;
    std::int32_t second = d.upper;
    std::int32_t stride = 1;
    fold_outcome outcome = triplet_bound(triplet->first, d, must_fold, first);
    if (outcome == fold_outcome::folded) {
        outcome = triplet_bound(triplet->second, d, must_fold, second);
    }
    if (outcome == fold_outcome::folded && is_present(triplet->stride)) {
        outcome = fold_integer(triplet->stride, stride, must_fold);
        if (outcome == fold_outcome::folded && stride == 0) {
            outcome = fold_failure(msg_stride_value_must_not_be_zero, triplet->stride);
        }
    }
    if (outcome != fold_outcome::folded) {
        return outcome;
    }
    d.whole = stride == 1 && first == d.lower && second == d.upper;
    for (std::int64_t i = first; !d.whole && (stride > 0 ? i <= second : i >= second); i += stride) {
        d.offsets.push_back(i - d.lower);
    }
    return outcome;
}

fold_outcome select_indices(expr_node *subscript, bool must_fold, dimension_selection &d) {
    fold_value indices;
    const fold_outcome outcome = fold_node(subscript, indices, must_fold);
    if (outcome != fold_outcome::folded) {
        return outcome;
    }
    const auto select = [&](std::int32_t index) {
        d.offsets.push_back(std::int64_t{index} - d.lower);
        return d.contains(index);
    };
    if (indices.repr_kind == ck_value) {
        return select(indices.integer) ? outcome : bad_subscript(subscript);
    }
    element_cursor cursor = elements_of(indices);
    while (const constant *element = next_element(cursor)) {
        if (!select(integer_value_of(element))) {
            return bad_subscript(subscript);
        }
    }
    return outcome;
}

// The elements of the array that a section is taken of. The list of a named constant stays, and is not walked
// for each of its sections.
struct element_source {
    const constant *lasting_list;           // null: the elements are in
    std::vector<const constant *> elements; // this order
};

element_source source_of_elements(const expr_node *array, const fold_value &value) {
    if (array->node_kind == enk_object || array->node_kind == enk_constant) {
        return {value.first_constant, {}};
    }
    return {nullptr, element_vector(value)};
}

// Null behind the last one.
const constant *element_at(const element_source &source, std::int64_t index) {
    if (source.lasting_list) {
        return nth_element(source.lasting_list, index);
    }
    const auto place = static_cast<std::size_t>(index);
    return place < source.elements.size() ? source.elements[place] : nullptr;
}

bool has_count(const element_source &source, std::int64_t count) {
    return !element_at(source, count) && (count == 0 || element_at(source, count - 1));
}

// Appends the selected elements of the first `rank` dimensions, of which the first element is at `from`.
bool append_selected(const element_source &elements, const std::vector<dimension_selection> &dimensions,
                     std::size_t rank, std::int64_t from, fold_value &result) {
    if (rank == 0) {
        return append_copy(result, element_at(elements, from));
    }
    const dimension_selection &d = dimensions[rank - 1];
    std::int64_t stride = 1;
    for (std::size_t i = 0; i + 1 < rank; ++i) {
        stride *= dimensions[i].extent();
    }
    for (std::int64_t i = 0; i < d.count(); ++i) {
        const std::int64_t offset = d.whole ? i : d.offsets[static_cast<std::size_t>(i)];
        if (!append_selected(elements, dimensions, rank - 1, from + offset * stride, result)) {
            return false;
        }
    }
    return true;
}

} // namespace

fold_outcome fold_section(expr_node *node, fold_value &value, bool must_fold) {
    fold_value array;
    fold_outcome outcome = fold_node(node->array_expr, array, must_fold);
    if (outcome != fold_outcome::folded) {
        return outcome;
    }
    const type *t = node->array_expr->type;
    const bound_info_entry *info = is_array(t) ? bounds_of_type(t) : nullptr;
    if (!info || array.repr_kind != ck_aggregate) {
        return fold_outcome::never;
    }
    const unsigned rank = t->array.rank;
    std::vector<expr_node *> subscripts;
    std::vector<dimension_selection> dimensions;
    std::int64_t total = 1;
    for (expr_node *e = node->ind_list; e && subscripts.size() < rank; e = e->next) {
        const bound &lower = info->bounds[subscripts.size()];
        const bound &upper = info->bounds[rank + subscripts.size()];
        if (lower.kind != bound_constant || upper.kind != bound_constant) {
            return fold_outcome::never;
        }
        subscripts.push_back(e);
        dimensions.push_back({lower.value, upper.value, false, {}});
        total = std::min(total * dimensions.back().extent(), std::int64_t{1} << 31);
    }
    const element_source elements = source_of_elements(node->array_expr, array);
    if (subscripts.size() != rank || !has_count(elements, total)) {
        return fold_outcome::never;
    }
    value = new_aggregate(node);
    bool is_empty = false;
    for (std::size_t i = rank; i-- > 0 && !is_empty;) {
        outcome = subscripts[i]->node_kind == enk_triplet
                      ? select_triplet(subscripts[i], must_fold, dimensions[i])
                      : select_indices(subscripts[i], must_fold, dimensions[i]);
        if (outcome != fold_outcome::folded) {
            return outcome;
        }
        is_empty = dimensions[i].count() == 0;
    }
    if (!is_empty && !append_selected(elements, dimensions, rank, 0, value)) {
        return too_large(node, must_fold);
    }
    return fold_outcome::folded;
}

} // namespace zf90
