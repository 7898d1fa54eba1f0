// Equality of types, shapes, and the layout of components and frames.
#include "expressions/predicates.h"

#include "il/pair_queue.h"
#include "il/types.h"

#include <algorithm>
#include <span>

namespace zf90 {

// ---- bounds and lengths

namespace {

// The object, component or dummy argument that an expression names, as its type; null for anything else.
const type *type_of_named(const expr_node *e) {
    while (e && e->node_kind == enk_ref) {
        e = e->reference;
    }
    if (!e) {
        return nullptr;
    }
    switch (e->node_kind) {
    case enk_object: return e->object->type;
    case enk_param: return e->parameter->type;
    case enk_field: return e->field_var->type;
    default: return nullptr;
    }
}

bool has_own_bounds(const type *t) { return t->type_code == tk_farray && t->array.shape_kind <= as_shaped; }

} // namespace

const type *type_with_bounds_of(const type *t) {
    if (t->type_code != tk_farray || t->array.shape_kind != same_shape) {
        return has_own_bounds(t) ? t : nullptr;
    }
    const type *named = type_of_named(t->array.args);
    // Who reads the bounds counts on the rank of `t`; another one is possible after an error.
    return named && has_own_bounds(named) && named->array.rank == t->array.rank ? named : nullptr;
}

bound_info_entry *bounds_of_type(const type *t) {
    const type *owner = type_with_bounds_of(t);
    return owner ? owner->array.bound : nullptr;
}

const bound &char_length_of_type(const type *t) {
    const bound &own = t->character.length;
    if (own.kind == bound_same_as) {
        const type *named = type_of_named(own.expr);
        if (named && named->type_code == tk_farray) {
            named = named->array.element_type;
        }
        if (named && named->type_code == tk_fcharacter) {
            return named->character.length;
        }
    }
    return own;
}

// ---- equality

bool shapes_conform(const type *a, const type *b) {
    const unsigned rank = a->array.rank;
    if (rank == 0 || b->array.rank == 0) {
        return true;
    }
    if (rank != b->array.rank) {
        return false;
    }
    const bound_info_entry *p = bounds_of_type(a);
    const bound_info_entry *q = bounds_of_type(b);
    if (!p || !q) {
        return true;
    }
    for (unsigned i = 0; i < rank; ++i) {
        const bound &a_lower = p->bounds[i];
        const bound &a_upper = p->bounds[rank + i];
        const bound &b_lower = q->bounds[i];
        const bound &b_upper = q->bounds[rank + i];
        if (a_upper.kind == bound_assumed || b_upper.kind == bound_assumed) {
            return false;
        }
        if (a_lower.kind == bound_constant && a_upper.kind == bound_constant &&
            b_lower.kind == bound_constant && b_upper.kind == bound_constant &&
            constant_extent(a_lower, a_upper) != constant_extent(b_lower, b_upper)) {
            return false;
        }
    }
    return true;
}

namespace {

// Types are equal if all parts that they are made of are, so the parts wait in a queue, and a pair that leads
// back to itself, as a component that points to its own type does, counts as equal.
pair_queue type_pairs;

void queue_types(const type *a, const type *b) {
    if (a != b) {
        queue_pair(type_pairs, a, b);
    }
}

bool lengths_equal(const bound &a, const bound &b) {
    return a.kind == b.kind && (a.kind == bound_assumed || (a.kind == bound_constant && a.value == b.value));
}

bool params_equal_but_for_types(const type *a, const type *b) {
    const param_type *p = a->routine.param_type_list;
    const param_type *q = b->routine.param_type_list;
    for (; p && q; p = p->next, q = q->next) {
        if (p->is_optional != q->is_optional || p->intent_in != q->intent_in ||
            p->intent_out != q->intent_out || p->source_corresp.name != q->source_corresp.name) {
            return false;
        }
        queue_types(p->type, q->type);
    }
    return p == q;
}

bool routines_equal_but_for_parts(const type *a, const type *b) {
    const type *p = a->routine.return_type;
    const type *q = b->routine.return_type;
    const auto is_unspecified = [](const type *t) { return t && t->type_code == tk_unspec_routine; };
    if (!is_unspecified(p) && !is_unspecified(q)) {
        queue_types(p, q);
    }
    if (a->routine.has_param_info && b->routine.has_param_info) {
        return params_equal_but_for_types(a, b);
    }
    return true;
}

bool derived_equal_but_for_components(const type *a, const type *b) {
    if (a->derived.module && a->derived.module == b->derived.module &&
        a->source_corresp.name == b->source_corresp.name) {
        return true; // one declaration, reached in two ways
    }
    if (!a->derived.is_seq || !b->derived.is_seq) {
        return false;
    }
    const object *f = a->derived.first_field;
    const object *g = b->derived.first_field;
    for (; f && g; f = f->next, g = g->next) {
        if (f->source_corresp.name != g->source_corresp.name) {
            return false;
        }
        queue_types(f->type, g->type);
    }
    return f == g;
}

bool equal_but_for_parts(const type *a, const type *b) {
    if (!a || !b || a->type_code != b->type_code) {
        return a == b;
    }
    switch (a->type_code) {
    case tk_integer:
    case tk_logical:
    case tk_float:
    case tk_complex: return a->kind == b->kind;
    case tk_fcharacter: return a->kind == b->kind && lengths_equal(a->character.length, b->character.length);
    case tk_farray: queue_types(a->array.element_type, b->array.element_type); return shapes_conform(a, b);
    case tk_routine: return routines_equal_but_for_parts(a, b);
    case tk_derived_type: return derived_equal_but_for_components(a, b);
    default: return true;
    }
}

bool queued_types_equal() {
    for (queued_pair pair; take_pair(type_pairs, pair);) {
        if (!equal_but_for_parts(static_cast<const type *>(pair.a), static_cast<const type *>(pair.b))) {
            return false;
        }
    }
    return true;
}

} // namespace

bool types_equal(const type *a, const type *b) {
    if (a == b || !a || !b || a->type_code != b->type_code) {
        return a == b;
    }
    start_pairs(type_pairs);
    queue_types(a, b);
    return queued_types_equal();
}

bool param_lists_equal(const type *a, const type *b) {
    start_pairs(type_pairs);
    return params_equal_but_for_types(a, b) && queued_types_equal();
}

// ---- matches

namespace {

bool is_unspecified(const type *t) { return t->type_code == tk_unspec_routine; }

bool fits(const type *actual, const type *dummy) {
    return actual == dummy || types_equal(actual, dummy) || type_matches_dummy(actual, dummy);
}

bool routine_matches_dummy(const type *actual, const type *dummy) {
    if (actual->type_code != tk_routine) {
        return false;
    }
    const type *result = actual->routine.return_type;
    const type *expected = dummy->routine.return_type;
    if (is_unspecified(result) || is_unspecified(expected)) {
        return true;
    }
    if (actual->routine.is_elemental && is_array(result)) {
        result = result->array.element_type;
    }
    return fits(result, expected);
}

// The shapes of dummies that take their shape from the actual argument.
bool takes_shape(const type *dummy) {
    return dummy->array.shape_kind == assumed_shape || dummy->array.shape_kind == deferred_shape ||
           dummy->array.shape_kind == as_shaped;
}

bool matches_dummy_array(const type *actual, const type *dummy) {
    if (!is_array(actual)) {
        return fits(actual, dummy->array.element_type) && (!takes_shape(dummy) || dummy->array.rank == 0);
    }
    return fits(actual->array.element_type, dummy->array.element_type) &&
           (!takes_shape(dummy) || shapes_conform(dummy, actual));
}

} // namespace

bool type_matches_dummy(const type *actual, const type *dummy) {
    const bool same_code = actual->type_code == dummy->type_code;
    switch (dummy->type_code) {
    case tk_void:
    case tk_stmt_label: return same_code;
    case tk_integer:
    case tk_logical:
    case tk_float:
    case tk_complex:
    case tk_fcharacter: return same_code && (dummy->kind == ANY_KIND || dummy->kind == actual->kind);
    case tk_routine: return routine_matches_dummy(actual, dummy);
    case tk_farray: return matches_dummy_array(actual, dummy);
    case tk_derived_type: return false; // equal ones have been accepted before
    case tk_any_derived: return actual->type_code == tk_derived_type;
    case tk_any_numerical:
        return actual->type_code == tk_integer || actual->type_code == tk_float ||
               actual->type_code == tk_complex;
    default: return true;
    }
}

bool assignment_compatible(const type *destination, const type *source) {
    if (source->type_code == tk_error) {
        return true;
    }
    switch (destination->type_code) {
    case tk_integer:
    case tk_float:
    case tk_complex:
        return source->type_code == tk_integer || source->type_code == tk_float ||
               source->type_code == tk_complex;
    case tk_logical: return source->type_code == tk_logical;
    case tk_fcharacter: return source->type_code == tk_fcharacter && source->kind == destination->kind;
    case tk_farray: {
        const type *element = destination->array.element_type;
        const type *part = is_array(source) ? source->array.element_type : source;
        return (part == element || assignment_compatible(element, part)) &&
               (!is_array(source) || shapes_conform(destination, source));
    }
    case tk_derived_type: return types_equal(destination, source);
    case tk_error: return true;
    default: return false;
    }
}

// ---- what a shape is like

namespace {

bool has_explicit_shape(const type *t) {
    return is_array(t) && t->array.shape_kind == explicit_shape && t->array.bound;
}

std::span<const bound> own_bounds(const type *t) { return {t->array.bound->bounds, 2u * t->array.rank}; }

bool is_constant(const bound &b) { return b.kind == bound_constant; }

bool has_empty_dimension(const type *t) {
    const bound_info_entry *table = bounds_of_type(t);
    for (unsigned i = 0; table && i < t->array.rank; ++i) {
        const bound &lower = table->bounds[i];
        const bound &upper = table->bounds[t->array.rank + i];
        if (!is_constant(lower) || !is_constant(upper)) {
            return false;
        }
        if (upper.value < lower.value) {
            return true;
        }
    }
    return false;
}

} // namespace

bool is_assumed_size(const type *t) {
    if (!is_array(t) || t->array.rank == 0) {
        return false;
    }
    const bound_info_entry *table = bounds_of_type(t);
    return table && table->bounds[2u * t->array.rank - 1].kind == bound_assumed;
}

bool has_nonconstant_bound(const type *t) {
    return has_explicit_shape(t) &&
           std::ranges::any_of(own_bounds(t), [](const bound &b) { return b.kind == bound_expression; });
}

bool is_explicit_constant_shape(const type *t) {
    return has_explicit_shape(t) && std::ranges::all_of(own_bounds(t), is_constant);
}

bool is_zero_sized(const type *t) {
    if (t->type_code == tk_fcharacter) {
        const bound &length = char_length_of_type(t);
        return length.kind == bound_constant && length.value <= 0;
    }
    if (!is_array(t)) {
        return false;
    }
    const type *element = t->array.element_type;
    return is_zero_sized(element) || (t->size == element->size && has_empty_dimension(t));
}

bool has_known_bounds(const object *o) {
    if (o->is_allocatable || o->is_pointer) {
        return false;
    }
    const type *t = o->type;
    if (is_array(t)) {
        if (!is_explicit_constant_shape(t)) {
            return false;
        }
        t = t->array.element_type;
    }
    return t->type_code != tk_fcharacter || t->character.length.kind == bound_constant;
}

// ---- layout

namespace {

constexpr std::uint32_t pointer_size = 4;
constexpr std::uint8_t pointer_alignment = 4;
constexpr std::uint32_t descriptor_size_per_dimension = 12;

} // namespace

room object_size(const object *o) {
    type *t = o->type;
    if (o->is_pointer || o->is_allocatable || o->is_auto || o->is_parameter) {
        std::uint32_t size = pointer_size;
        if (t && is_array(t)) {
            size += descriptor_size_per_dimension * t->array.rank;
        }
        return {size, pointer_alignment};
    }
    if (!t) {
        return {0, 1};
    }
    if (t->type_code != tk_derived_type) {
        complete_type(t);
    }
    return {t->size, t->alignment};
}

void field_layout(type *t) {
    // Sizes wrap at 32 bits: the room of a frame beyond that has no message of its own.
    std::uint32_t offset = 0;
    std::uint8_t alignment = 1;
    std::int32_t internal_count = 0;
    const auto round_up = [](std::uint32_t n, std::uint8_t to) { return (n + to - 1u) / to * to; };
    const auto place = [&](object *o, room r) {
        offset = round_up(offset, r.alignment);
        o->association_offset = static_cast<std::int32_t>(offset);
        offset += r.size;
        alignment = std::max(alignment, r.alignment);
    };
    for (object *o = t->derived.first_field; o; o = o->next) {
        switch (o->storage_class) {
        case sc_local:
        case sc_type_field: place(o, object_size(o)); break;
        case sc_external:
            if (o->is_parameter) {
                place(o, {pointer_size, pointer_alignment});
            } else {
                o->association_offset = 0;
            }
            break;
        case sc_common:
        case sc_module:
        case sc_program:
        case sc_blockdata:
        case sc_stmt_func: o->association_offset = 0; break;
        case sc_internal: o->association_offset = ++internal_count; break;
        // The others have their room elsewhere, and an offset there.
        default: break;
        }
    }
    t->size = round_up(offset, alignment);
    t->alignment = alignment;
}

} // namespace zf90
