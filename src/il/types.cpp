// The caches of intrinsic types, the constructors of types, and their sizes.
#include "il/types.h"

#include "driver/diagnostics.h"
#include "expressions/predicates.h"
#include "il/entries.h"

#include <algorithm>
#include <cassert>
#include <iterator>
#include <limits>

namespace zf90 {

namespace {

// ---- the caches

// The types of constant length stand on chains by the low bits of the length.
constexpr std::uint32_t length_chain_count = 256;

struct character_cache_row {
    type *of_length[length_chain_count];
    type *assumed;
};

type *integer_cache[integer_kind_count];
type *real_cache[real_kind_count];
type *complex_cache[real_kind_count];
type *logical_cache[logical_kind_count];
character_cache_row character_cache[character_kind_count];

type *singletons[type_code_count]; // of the six codes that have one

type *singleton(enum type_code code) {
    if (!singletons[code]) {
        singletons[code] = new_type(code);
        complete_type(singletons[code]);
    }
    return singletons[code];
}

type *cached(type *&slot, enum type_code code, std::uint32_t kind, bool is_default) {
    if (!slot) {
        slot = new_type(code);
        slot->kind = kind;
        slot->is_numeric = is_default;
        complete_type(slot);
    }
    return slot;
}

type *new_character_type(std::uint32_t kind) {
    type *t = new_type(tk_fcharacter);
    t->kind = kind;
    t->is_character = kind == default_character_kind;
    return t;
}

template <class Value, std::size_t N>
int index_of_kind_number(const kind_row<Value> (&rows)[N], std::int32_t kind_number) {
    for (std::size_t i = 0; i < N; ++i) {
        if (rows[i].kind_number == kind_number) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

template <class Value, std::size_t N>
int index_of_size(const kind_row<Value> (&rows)[N], std::uint32_t size) {
    for (std::size_t i = 0; i < N; ++i) {
        if (rows[i].byte_size == size) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

type *type_of_index(type *(*cached_type)(std::uint32_t), int index, bool &failed) {
    if (index < 0) {
        failed = true;
        return error_type();
    }
    return cached_type(static_cast<std::uint32_t>(index));
}

} // namespace

// ---- the target

int integer_kind_index(std::int32_t kind_number) { return index_of_kind_number(integer_kinds, kind_number); }
int real_kind_index(std::int32_t kind_number) { return index_of_kind_number(real_kinds, kind_number); }
int logical_kind_index(std::int32_t kind_number) { return index_of_kind_number(logical_kinds, kind_number); }
int character_kind_index(std::int32_t kind_number) {
    return index_of_kind_number(character_kinds, kind_number);
}

std::uint32_t largest_model_integer(std::uint32_t kind) {
    assert(kind < integer_kind_count);
    std::uint32_t power = 1;
    for (unsigned i = 0; i < integer_kinds[kind].digits; ++i) {
        power *= integer_kinds[kind].radix;
    }
    return power - 1;
}

double largest_model_real(std::uint32_t kind) {
    assert(kind < real_kind_count);
    const kind_row<double> &row = real_kinds[kind];
    double unit = 1;
    for (unsigned i = 0; i < row.digits; ++i) {
        unit /= row.radix;
    }
    double value = 1 - unit;
    for (int i = 0; i < row.max_exponent; ++i) {
        value *= row.radix;
    }
    return value;
}

// ---- cached types

type *integer_type(std::uint32_t kind) {
    assert(kind < integer_kind_count);
    return cached(integer_cache[kind], tk_integer, kind, kind == default_integer_kind);
}

type *real_type(std::uint32_t kind) {
    assert(kind < real_kind_count);
    const bool is_default = kind == default_real_kind || kind == double_precision_kind;
    return cached(real_cache[kind], tk_float, kind, is_default);
}

type *complex_type(std::uint32_t kind) {
    assert(kind < real_kind_count);
    return cached(complex_cache[kind], tk_complex, kind, kind == default_real_kind);
}

type *logical_type(std::uint32_t kind) {
    assert(kind < logical_kind_count);
    return cached(logical_cache[kind], tk_logical, kind, kind == default_logical_kind);
}

type *character_type(std::uint32_t kind, std::int32_t length) {
    assert(kind < character_kind_count);
    type *&chain =
        character_cache[kind].of_length[static_cast<std::uint32_t>(length) & (length_chain_count - 1)];
    type **link = &chain;
    while (*link && (*link)->character.length.value != length) {
        link = &(*link)->character.next_cached;
    }
    type *t = *link;
    if (t) {
        // To the front: a program uses few lengths, and those often.
        *link = t->character.next_cached;
    } else {
        t = new_character_type(kind);
        set_constant_bound(t->character.length, length);
        complete_type(t);
    }
    t->character.next_cached = chain;
    chain = t;
    return t;
}

type *assumed_character_type(std::uint32_t kind) {
    assert(kind < character_kind_count);
    type *&slot = character_cache[kind].assumed;
    if (!slot) {
        slot = new_character_type(kind);
        slot->character.length.kind = bound_assumed;
        complete_type(slot);
    }
    return slot;
}

type *default_integer() { return integer_type(default_integer_kind); }
type *default_real() { return real_type(default_real_kind); }
type *double_precision() { return real_type(double_precision_kind); }
type *default_complex() { return complex_type(default_real_kind); }
type *default_logical() { return logical_type(default_logical_kind); }
type *default_character(std::int32_t length) { return character_type(default_character_kind, length); }

type *error_type() { return singleton(tk_error); }
type *unknown_type() { return singleton(tk_unknown); }
type *void_type() { return singleton(tk_void); }
type *format_type() { return singleton(tk_format); }
type *unspec_routine_type() { return singleton(tk_unspec_routine); }
type *stmt_label_type() { return singleton(tk_stmt_label); }

type *integer_type_for_kind_number(std::int32_t kind_number, bool &failed) {
    return type_of_index(integer_type, integer_kind_index(kind_number), failed);
}

type *real_type_for_kind_number(std::int32_t kind_number, bool &failed) {
    return type_of_index(real_type, real_kind_index(kind_number), failed);
}

type *complex_type_for_kind_number(std::int32_t kind_number, bool &failed) {
    return type_of_index(complex_type, real_kind_index(kind_number), failed);
}

type *logical_type_for_kind_number(std::int32_t kind_number, bool &failed) {
    return type_of_index(logical_type, logical_kind_index(kind_number), failed);
}

type *character_type_for_kind_number(std::int32_t kind_number, std::int32_t length, bool &failed) {
    const int index = character_kind_index(kind_number);
    if (index < 0) {
        failed = true;
        return error_type();
    }
    return character_type(static_cast<std::uint32_t>(index), length);
}

type *assumed_character_type_for_kind_number(std::int32_t kind_number, bool &failed) {
    return type_of_index(assumed_character_type, character_kind_index(kind_number), failed);
}

type *integer_type_for_size(std::uint32_t size, bool &failed) {
    return type_of_index(integer_type, index_of_size(integer_kinds, size), failed);
}

type *real_type_for_size(std::uint32_t size, bool &failed) {
    return type_of_index(real_type, index_of_size(real_kinds, size), failed);
}

type *complex_type_for_size(std::uint32_t size, bool &failed) {
    const int index = size % 2 == 0 ? index_of_size(real_kinds, size / 2) : -1;
    return type_of_index(complex_type, index, failed);
}

type *logical_type_for_size(std::uint32_t size, bool &failed) {
    return type_of_index(logical_type, index_of_size(logical_kinds, size), failed);
}

// ---- fresh types

type *new_type(enum type_code code) {
    type *t = il_new<type>();
    t->source_corresp = null_source_corresp;
    t->alignment = 1;
    t->type_code = code;
    // The first assignment to a member of a union makes it the live one.
    switch (code) {
    case tk_integer: t->kind = default_integer_kind; break;
    case tk_logical: t->kind = default_logical_kind; break;
    case tk_float:
    case tk_complex: t->kind = default_real_kind; break;
    case tk_routine: t->routine = {}; break;
    case tk_fcharacter:
        t->kind = default_character_kind;
        t->character = {};
        set_constant_bound(t->character.length, 0);
        break;
    case tk_farray: t->array = {}; break;
    case tk_derived_type: t->derived = {}; break;
    default: break;
    }
    return t;
}

type *new_array_type(type *element, unsigned rank) {
    type *t = new_type(tk_farray);
    t->array.element_type = element;
    t->array.rank = static_cast<std::uint8_t>(rank);
    t->array.bound = new_bound_info_entry(rank);
    return t;
}

type *new_routine_type(object *routine, type *return_type) {
    type *t = new_type(tk_routine);
    t->routine.assoc_routine = routine;
    t->routine.return_type = return_type;
    return t;
}

void copy_type(const type *source, type *destination) {
    type *const next = destination->next;
    *destination = *source;
    destination->next = next;
}

// ---- sizes

namespace {

struct array_size {
    std::uint32_t bytes; // 0: not known
    bool too_large;      // beyond 32 bits; `bytes` is then the number of elements as far as it was counted
};

array_size array_size_of(const bound_info_entry &info, unsigned rank, const type &element) {
    constexpr std::uint64_t limit = std::numeric_limits<std::uint32_t>::max();
    std::uint64_t count = 1;
    for (unsigned i = 0; i < rank && count > 0; ++i) {
        const bound &lower = info.bounds[i];
        const bound &upper = info.bounds[rank + i];
        if (lower.kind != bound_constant || upper.kind != bound_constant) {
            return {0, false};
        }
        const std::uint64_t extent = constant_extent(lower, upper);
        if (extent > limit / count) {
            return {static_cast<std::uint32_t>(count), true};
        }
        count *= extent;
    }
    // An array of size zero has the room of one element.
    const bool empty_text = element.type_code == tk_fcharacter &&
                            element.character.length.kind == bound_constant &&
                            element.character.length.value <= 0;
    if (count == 0 || empty_text) {
        count = 1;
    }
    if (count > limit / element.size) {
        return {static_cast<std::uint32_t>(count), true};
    }
    return {static_cast<std::uint32_t>(count * element.size), false};
}

} // namespace

bool is_too_large(const type *array) {
    const type *element = array->array.element_type;
    return element && element->size != 0 &&
           array_size_of(*array->array.bound, array->array.rank, *element).too_large;
}

namespace {

void complete_array(type *t) {
    const type *element = t->array.element_type;
    if (!element || element->size == 0) {
        return;
    }
    t->alignment = element->alignment;
    const type *owner = type_with_bounds_of(t);
    if (!owner) {
        return;
    }
    const array_size size = array_size_of(*owner->array.bound, t->array.rank, *element);
    // An array that is too large is reported once, not again for each expression of its shape. The type is no
    // longer incomplete from now on.
    if (size.too_large && (owner == t || !is_too_large(owner))) {
        const source_pos declared = t->source_corresp.decl_position;
        error_at(msg_array_is_too_large, declared.seq != 0 ? declared : error_pos);
    }
    t->size = size.bytes;
}

void complete_character(type *t) {
    const kind_row<std::int32_t> &row = character_kinds[t->kind];
    t->alignment = row.byte_alignment;
    if (t->character.length.kind == bound_constant) {
        const std::int32_t length = t->character.length.value;
        t->size = row.byte_size * (length > 0 ? static_cast<std::uint32_t>(length) : 1);
    }
}

template <class Value> void complete_number(type *t, const kind_row<Value> &row, unsigned parts) {
    t->size = parts * row.byte_size;
    t->alignment = row.byte_alignment;
}

} // namespace

void complete_type(type *t) {
    if (t->size != 0) {
        return;
    }
    t->alignment = 1;
    switch (t->type_code) {
    case tk_integer:
        if (t->kind < integer_kind_count) {
            complete_number(t, integer_kinds[t->kind], 1);
        }
        break;
    case tk_float:
        if (t->kind < real_kind_count) {
            complete_number(t, real_kinds[t->kind], 1);
        }
        break;
    case tk_complex:
        if (t->kind < real_kind_count) {
            complete_number(t, real_kinds[t->kind], 2);
        }
        break;
    case tk_logical:
        if (t->kind < logical_kind_count) {
            complete_number(t, logical_kinds[t->kind], 1);
        }
        break;
    case tk_fcharacter:
        if (t->kind < character_kind_count) {
            complete_character(t);
        }
        break;
    case tk_error: t->size = 1; break;
    case tk_farray: complete_array(t); break;
    case tk_derived_type: field_layout(t); break;
    default: break;
    }
}

// ---- small questions

std::uint64_t constant_extent(const bound &lower, const bound &upper) {
    if (upper.value < lower.value) {
        return 0;
    }
    return static_cast<std::uint64_t>(std::int64_t{upper.value} - lower.value + 1);
}

void set_constant_bound(bound &b, std::int32_t value) {
    b.kind = bound_constant;
    b.value = value;
}

void set_expression_bound(bound &b, expr_node *expr) {
    b.kind = bound_expression;
    b.expr = expr;
}

void types_init() {
    std::ranges::fill(integer_cache, nullptr);
    std::ranges::fill(real_cache, nullptr);
    std::ranges::fill(complex_cache, nullptr);
    std::ranges::fill(logical_cache, nullptr);
    std::ranges::fill(character_cache, character_cache_row{});
    std::ranges::fill(singletons, nullptr);
}

} // namespace zf90
