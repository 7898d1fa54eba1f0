// Constructors of constants, their equality, and the merging of equal ones at the end of a compilation.
//
// The table of canonical constants has 293 buckets in the order of use, which decides the order of the
// constants in the file. It is not searched along the buckets, which would be slow in a program of many
// constants, but through an index by a finer hash. The lists of derived-type constants of the scopes are
// searched through the same index.
#include "il/constants.h"

#include "driver/diagnostics.h"
#include "expressions/predicates.h"
#include "il/entries.h"
#include "il/pair_queue.h"
#include "il/types.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <iterator>

namespace zf90 {

// ---- constructors

void init_constant(constant *c, constant_kind kind) {
    c->il_id = 0;
    c->source_pos = error_pos;
    c->next = nullptr;
    c->type = unknown_type();
    set_constant_repr(c, kind);
}

void set_constant_repr(constant *c, constant_kind kind) {
    c->repr_kind = kind;
    switch (kind) {
    case ck_value:
    case ck_expression: c->value = {nullptr, nullptr}; break;
    case ck_aggregate: c->aggregate = {nullptr, nullptr}; break;
    case ck_init_position: c->position = {0, 0}; break;
    case ck_init_index: c->index = {0, 0, 1}; break;
    case ck_init_repeat: c->repeat = {nullptr, 1}; break;
    default: break;
    }
}

constant *new_constant() {
    constant *c = il_new<constant>();
    init_constant(c, ck_error);
    c->type = error_type();
    return c;
}

namespace {

constant *new_value(type *type) {
    constant *c = il_new<constant>();
    init_constant(c, ck_value);
    c->type = type;
    c->value.bytes = static_cast<unsigned char *>(il_alloc(static_cast<std::int32_t>(type->size)));
    return c;
}

expr_node *new_constant_node(constant *c) {
    expr_node *node = new_expr_node(enk_constant);
    node->intent_in = true;
    node->type = c->type;
    node->constant = c;
    return node;
}

} // namespace

constant *make_integer_constant(std::int32_t value, type *type) {
    assert(type->type_code == tk_integer);
    constant *c = new_value(type);
    integer_kinds[type->kind].write_value(c->value.bytes, value);
    return c;
}

constant *make_real_constant(double value, type *type) {
    assert(type->type_code == tk_float);
    constant *c = new_value(type);
    real_kinds[type->kind].write_value(c->value.bytes, value);
    return c;
}

constant *make_logical_constant(std::int32_t value, type *type) {
    assert(type->type_code == tk_logical);
    constant *c = new_value(type);
    logical_kinds[type->kind].write_value(c->value.bytes, value);
    return c;
}

std::int32_t integer_value_of(const constant *c) {
    const auto &rows = c->type->type_code == tk_logical ? logical_kinds : integer_kinds;
    return rows[c->type->kind].read_value(c->value.bytes);
}

expr_node *new_integer_constant_node(std::int32_t value, type *type) {
    return new_constant_node(make_integer_constant(value, type));
}

expr_node *new_real_constant_node(double value, type *type) {
    return new_constant_node(make_real_constant(value, type));
}

expr_node *new_logical_constant_node(std::int32_t value, type *type) {
    return new_constant_node(make_logical_constant(value, type));
}

void append_to_aggregate(constant *aggregate, constant *element) {
    assert(aggregate->repr_kind == ck_aggregate);
    (aggregate->aggregate.last_constant ? aggregate->aggregate.last_constant->next
                                        : aggregate->aggregate.first_constant) = element;
    aggregate->aggregate.last_constant = element;
}

// ---- equality

namespace {

pair_queue aggregate_pairs; // heads of element lists

bool equal_without_elements(const constant *a, const constant *b) {
    if (a == b) {
        return true;
    }
    if (a->repr_kind != b->repr_kind || a->type->size != b->type->size ||
        (a->type != b->type && !types_equal(a->type, b->type))) {
        return false;
    }
    switch (a->repr_kind) {
    case ck_value:
        return a->value.bytes == b->value.bytes ||
               (a->value.bytes && b->value.bytes &&
                std::memcmp(a->value.bytes, b->value.bytes, a->type->size) == 0);
    case ck_aggregate: return true;
    default: return false;
    }
}

void queue_elements(const constant *a, const constant *b) {
    if (a != b && a->repr_kind == ck_aggregate &&
        a->aggregate.first_constant != b->aggregate.first_constant) {
        queue_pair(aggregate_pairs, a->aggregate.first_constant, b->aggregate.first_constant);
    }
}

} // namespace

bool constants_equal(const constant *a, const constant *b) {
    if (!equal_without_elements(a, b)) {
        return false;
    }
    start_pairs(aggregate_pairs);
    queue_elements(a, b);
    for (queued_pair heads; take_pair(aggregate_pairs, heads);) {
        const constant *x = static_cast<const constant *>(heads.a);
        const constant *y = static_cast<const constant *>(heads.b);
        for (; x && y; x = x->next, y = y->next) {
            if (!equal_without_elements(x, y)) {
                return false;
            }
            queue_elements(x, y);
        }
        if (x != y) { // one list is longer
            return false;
        }
    }
    return true;
}

// ---- hashing

namespace {

std::uint32_t signed_byte(unsigned char byte) {
    return static_cast<std::uint32_t>(std::int32_t{static_cast<std::int8_t>(byte)});
}

std::uint32_t sum_of_bytes(const constant *c) {
    std::uint32_t sum = 0;
    for (std::uint32_t i = 0; i < c->type->size; ++i) {
        sum += signed_byte(c->value.bytes[i]);
    }
    return sum;
}

std::uint32_t hash_number(const constant *c) {
    if (c->repr_kind != ck_value) {
        return c->repr_kind + 200u;
    }
    const type *t = c->type;
    switch (t->type_code) {
    case tk_integer:
    case tk_logical: return static_cast<std::uint32_t>(integer_value_of(c));
    case tk_float: return 500 + sum_of_bytes(c);
    case tk_fcharacter: {
        const std::int32_t length = constant_length(t);
        if (length <= 0) {
            return 100;
        }
        const unsigned char *bytes = c->value.bytes;
        return 100 + static_cast<std::uint32_t>(length) + 64 * signed_byte(bytes[0]) +
               signed_byte(bytes[length - 1]);
    }
    case tk_complex: return 700 + sum_of_bytes(c);
    default: return 0;
    }
}

// The finer hash: constants that are equal have the same one.

std::uint64_t mixed(std::uint64_t hash, std::uint64_t word) {
    hash = (hash ^ word) * 0x9e3779b97f4a7c15u;
    return hash ^ (hash >> 29);
}

std::uint64_t mixed_pointer(std::uint64_t hash, const void *p) {
    return mixed(hash, reinterpret_cast<std::uintptr_t>(p));
}

std::uint64_t mixed_bytes(std::uint64_t hash, const unsigned char *bytes, std::uint32_t size) {
    for (; size >= 8; size -= 8, bytes += 8) {
        std::uint64_t word;
        std::memcpy(&word, bytes, 8);
        hash = mixed(hash, word);
    }
    std::uint64_t rest = 0;
    std::memcpy(&rest, bytes, size);
    return mixed(hash, rest);
}

// The type itself cannot take part: equal types may be different entries. But derived types of other names
// are only equal as sequences of the same components.
std::uint64_t mixed_type(std::uint64_t hash, const type *t) {
    hash = mixed(hash, t->type_code + 256u * std::uint64_t{t->size});
    if (t->type_code != tk_derived_type) {
        return hash;
    }
    if (!t->derived.is_seq) {
        return mixed_pointer(hash, t->source_corresp.name);
    }
    return t->derived.first_field ? mixed_pointer(hash, t->derived.first_field->source_corresp.name) : hash;
}

std::uint64_t mixed_without_elements(std::uint64_t hash, const constant *c) {
    hash = mixed_type(mixed(hash, c->repr_kind), c->type);
    switch (c->repr_kind) {
    case ck_value: return c->value.bytes ? mixed_bytes(hash, c->value.bytes, c->type->size) : hash;
    case ck_aggregate: return hash;
    default: return mixed_pointer(hash, c); // equal only to itself
    }
}

// Aggregates may share their elements to any depth, so the walk stops after so many of them.
constexpr unsigned hashed_elements = 4096;
constexpr unsigned hashed_levels = 64;

std::uint64_t fine_hash(const constant *c) {
    std::uint64_t hash = mixed_without_elements(0, c);
    if (c->repr_kind != ck_aggregate) {
        return hash;
    }
    const constant *rest[hashed_levels]; // what follows the aggregates that are open
    unsigned depth = 0;
    unsigned count = 0;
    const constant *e = c->aggregate.first_constant;
    while (count < hashed_elements) {
        if (!e) {
            if (depth == 0) {
                break;
            }
            e = rest[--depth];
            hash = mixed(hash, depth);
            continue;
        }
        hash = mixed_without_elements(hash, e);
        ++count;
        if (e->repr_kind == ck_aggregate && depth < hashed_levels) {
            rest[depth++] = e->next;
            e = e->aggregate.first_constant;
        } else {
            e = e->next;
        }
    }
    return hash;
}

// ---- the table and its index

// A constant of the table, one of a scope's list, or, without a constant, the scope's list itself.
struct indexed_constant {
    struct constant *constant;
    const scope *owner; // null for the constants of the table
    std::uint64_t hash;
    indexed_constant *next_in_slot;
    // In the bucket, by last use.
    indexed_constant *newer;
    indexed_constant *older;
    struct constant *last_of_list; // of a scope's list
};

struct bucket {
    indexed_constant *newest;
};

bucket constant_table[constant_bucket_count];

// Constants of the table come to the front of their slot when they are used and those of scopes keep the
// order of their list, so that the first match is the one that a search of the bucket or the list would find.
indexed_constant **slots;
std::size_t slot_count;
std::size_t indexed_count;

std::size_t slot_of(std::uint64_t hash) { return static_cast<std::size_t>(hash >> 16) & (slot_count - 1); }

void grow_index() {
    const std::size_t old_count = slot_count;
    const std::size_t count = old_count > 0 ? 2 * old_count : 1024;
    slots = static_cast<indexed_constant **>(
        sys_realloc(slots, old_count * sizeof(*slots), count * sizeof(*slots)));
    std::fill(slots + old_count, slots + count, nullptr);
    slot_count = count;
    // Each slot parts into two, both in the same order as before.
    for (std::size_t i = 0; i < old_count; ++i) {
        indexed_constant *e = slots[i];
        indexed_constant **low = &slots[i];
        indexed_constant **high = &slots[i + old_count];
        for (; e; e = e->next_in_slot) {
            indexed_constant **&tail = slot_of(e->hash) == i ? low : high;
            *tail = e;
            tail = &e->next_in_slot;
        }
        *low = nullptr;
        *high = nullptr;
    }
}

indexed_constant *new_indexed(constant *c, const scope *owner, std::uint64_t hash) {
    if (indexed_count == slot_count) {
        grow_index();
    }
    ++indexed_count;
    indexed_constant *e = il_new<indexed_constant>();
    e->constant = c;
    e->owner = owner;
    e->hash = hash;
    return e;
}

// The link that leads to a constant of this owner that equals `c`, or to the end of the slot.
indexed_constant **find_indexed(const constant *c, const scope *owner, std::uint64_t hash) {
    if (slot_count == 0) {
        grow_index();
    }
    indexed_constant **link = &slots[slot_of(hash)];
    while (indexed_constant *e = *link) {
        if (e->hash == hash && e->owner == owner && e->constant && constants_equal(e->constant, c)) {
            break;
        }
        link = &e->next_in_slot;
    }
    return link;
}

void put_first_in_slot(indexed_constant *e) {
    indexed_constant *&first = slots[slot_of(e->hash)];
    e->next_in_slot = first;
    first = e;
}

void put_last_in_slot(indexed_constant *e) {
    indexed_constant **link = &slots[slot_of(e->hash)];
    while (*link) {
        link = &(*link)->next_in_slot;
    }
    *link = e;
    e->next_in_slot = nullptr;
}

void put_first_in_bucket(indexed_constant *e, bucket &b) {
    e->newer = nullptr;
    e->older = b.newest;
    if (b.newest) {
        b.newest->newer = e;
    }
    b.newest = e;
}

void remove_from_bucket(indexed_constant *e, bucket &b) {
    (e->newer ? e->newer->older : b.newest) = e->older;
    if (e->older) {
        e->older->newer = e->newer;
    }
}

void clear_index() {
    std::ranges::fill(constant_table, bucket{});
    std::fill(slots, slots + slot_count, nullptr);
    indexed_count = 0;
}

} // namespace

unsigned constant_hash(const constant *c) { return hash_number(c) % constant_bucket_count; }

constant *hash_constant(constant *c) {
    const std::uint64_t hash = fine_hash(c);
    bucket &b = constant_table[constant_hash(c)];
    indexed_constant **link = find_indexed(c, nullptr, hash);
    indexed_constant *e = *link;
    if (e) {
        *link = e->next_in_slot;
        remove_from_bucket(e, b);
    } else {
        e = new_indexed(c, nullptr, hash);
    }
    put_first_in_slot(e);
    put_first_in_bucket(e, b);
    return e->constant;
}

// ---- the merge

namespace {

std::uint64_t hash_in_scope(const constant *c, const scope *owner) {
    return mixed_pointer(fine_hash(c), owner);
}

void index_in_scope(constant *c, const scope *owner) {
    put_last_in_slot(new_indexed(c, owner, hash_in_scope(c, owner)));
}

// What stands for the list of a scope; a list that is met for the first time is indexed.
indexed_constant *list_of_scope(scope *owner) {
    const std::uint64_t hash = mixed_pointer(1, owner);
    if (slot_count == 0) {
        grow_index();
    }
    for (indexed_constant *e = slots[slot_of(hash)]; e; e = e->next_in_slot) {
        if (e->owner == owner && !e->constant) {
            return e;
        }
    }
    indexed_constant *list = new_indexed(nullptr, owner, hash);
    put_last_in_slot(list);
    for (constant *c = owner->constants; c; c = c->next) {
        index_in_scope(c, owner);
        list->last_of_list = c;
    }
    return list;
}

constant *merge_in_scope(constant *c, scope *owner) {
    indexed_constant *list = list_of_scope(owner);
    if (indexed_constant *e = *find_indexed(c, owner, hash_in_scope(c, owner))) {
        return e->constant;
    }
    c->next = nullptr;
    (list->last_of_list ? list->last_of_list->next : owner->constants) = c;
    list->last_of_list = c;
    index_in_scope(c, owner);
    return c;
}

void merge_constant_of_node(il_entry *entry, entry_kind kind, std::uint32_t) {
    if (kind != kind_expr_node) {
        return;
    }
    expr_node *node = static_cast<expr_node *>(entry);
    if (node->node_kind != enk_constant || !node->constant || !node->constant->type) {
        return;
    }
    constant *c = node->constant;
    if (element_type_of(c->type)->type_code != tk_derived_type) {
        node->constant = hash_constant(c);
    } else if (walking_scope) {
        node->constant = merge_in_scope(c, walking_scope);
    }
}

} // namespace

void merge_constants(il_header *header) {
    header->primary_scope->constants = nullptr;
    walk_il(header, kind_il_header, 0, nullptr, merge_constant_of_node, nullptr, nullptr);
    for (const bucket &b : constant_table) {
        for (const indexed_constant *e = b.newest; e; e = e->older) {
            e->constant->next = header->primary_scope->constants;
            header->primary_scope->constants = e->constant;
        }
    }
    clear_index();
}

void constants_init() { clear_index(); }

} // namespace zf90
