// Aggregates of initial values.
#include "declarations/initial_values.h"

#include "driver/diagnostics.h"
#include "il/arena.h"
#include "il/constants.h"
#include "il/types.h"

#include <iterator>
#include <map>
#include <unordered_map>

namespace zf90 {

namespace {

struct segment {
    constant *position; // the ck_init_position; its values follow
    constant *last;     // value
};

using segment_map = std::map<std::int64_t, segment>; // by offset

// The segments of the aggregates that values have been added to, so that finding the place of one is no walk
// over the others. It is made from the aggregate when it is missing.
std::unordered_map<const constant *, segment_map> segments_by_aggregate;

std::int64_t end_of(const segment &s) {
    return std::int64_t{s.position->position.offset} + s.position->position.segment_size;
}

segment_map &segments_of(const constant *aggregate) {
    const auto [place, is_new] = segments_by_aggregate.try_emplace(aggregate);
    segment_map &segments = place->second;
    if (is_new) {
        for (constant *c = aggregate->aggregate.first_constant; c; c = c->next) {
            if (c->repr_kind == ck_init_position) {
                segments[c->position.offset] = {c, c};
            } else {
                segments.rbegin()->second.last = c;
            }
        }
    }
    return segments;
}

// Whether a value is an aggregate of segments, and not that of an array or structure constructor.
bool has_segments(const constant *value) {
    return value->repr_kind == ck_aggregate &&
           (!value->aggregate.first_constant ||
            value->aggregate.first_constant->repr_kind == ck_init_position);
}

constant *new_element(constant_kind kind, const constant *model) {
    auto *c = il_new<constant>();
    init_constant(c, kind);
    c->source_pos = model->source_pos;
    c->type = model->type;
    return c;
}

constant *copy_of(const constant *value) {
    auto *c = il_new<constant>();
    *c = *value;
    c->next = nullptr;
    return c;
}

constant *repetition(const constant *value, std::uint32_t count) {
    constant *copy = copy_of(value);
    if (count == 1) {
        return copy;
    }
    constant *c = new_element(ck_init_repeat, value);
    c->repeat.constant = copy;
    c->repeat.count = count;
    return c;
}

const constant *value_of(const constant *c) {
    return c->repr_kind == ck_init_repeat ? c->repeat.constant : c;
}

std::uint32_t count_of(const constant *c) { return c->repr_kind == ck_init_repeat ? c->repeat.count : 1; }

// Takes the value behind it into an equal one. False if they differ.
bool absorb(constant *c, const constant *following) {
    if (!constants_equal(value_of(c), value_of(following))) {
        return false;
    }
    if (c->repr_kind != ck_init_repeat) {
        constant *value = copy_of(c);
        set_constant_repr(c, ck_init_repeat);
        c->repeat.constant = value;
    }
    c->repeat.count += count_of(following);
    return true;
}

// Puts a list of values behind the one that ends a segment. Returns the new end.
constant *append_values(constant *tail, constant *first, constant *last) {
    last->next = tail->next;
    if (!absorb(tail, first)) {
        tail->next = first;
        return last;
    }
    tail->next = first->next;
    return first == last ? tail : last;
}

// Puts a list of values in front of those of a segment.
void prepend_values(segment &s, constant *first, constant *last) {
    constant *head = s.position->next;
    last->next = s.last->next;
    s.position->next = first;
    s.last = append_values(last, head, s.last);
}

void append_next_segment(segment &s, const segment &following) {
    constant *head = following.position->next;
    s.last->next = following.last->next;
    s.last = append_values(s.last, head, following.last);
    s.position->position.segment_size += following.position->position.segment_size;
}

// Adds values that fill a stretch of bytes. False, with nothing added, if some of these have a value.
bool add_values(constant *aggregate, std::int64_t offset, std::uint32_t size, constant *first,
                constant *last) {
    segment_map &segments = segments_of(aggregate);
    const auto next = segments.upper_bound(offset);
    const auto previous = next == segments.begin() ? segments.end() : std::prev(next);
    const bool has_previous = previous != segments.end();
    const bool has_next = next != segments.end();
    if ((has_previous && offset < end_of(previous->second)) || (has_next && offset + size > next->first)) {
        return false;
    }
    const bool touches_next = has_next && offset + size == next->first;
    if (has_previous && end_of(previous->second) == offset) {
        segment &s = previous->second;
        s.last = append_values(s.last, first, last);
        s.position->position.segment_size += size;
        if (touches_next) {
            append_next_segment(s, next->second);
            segments.erase(next);
        }
    } else if (touches_next) {
        auto moved = segments.extract(next);
        moved.key() = offset;
        segment &s = segments.insert(std::move(moved)).position->second;
        prepend_values(s, first, last);
        s.position->position.offset = static_cast<std::int32_t>(offset);
        s.position->position.segment_size += size;
    } else {
        constant *position = new_element(ck_init_position, value_of(first));
        position->position.offset = static_cast<std::int32_t>(offset);
        position->position.segment_size = size;
        position->next = first;
        last->next = has_next ? next->second.position : nullptr;
        if (has_previous) {
            previous->second.last->next = position;
        }
        segments[offset] = {position, last};
    }
    aggregate->aggregate.first_constant = segments.begin()->second.position;
    aggregate->aggregate.last_constant = segments.rbegin()->second.last;
    return true;
}

// The aggregate that an object's value is, or is to be; null if it has been set as a whole.
constant *aggregate_of(object *o) {
    constant *&value = o->variant.initializer;
    if (!value) {
        value = il_new<constant>();
        init_constant(value, ck_aggregate);
        value->type = o->type;
        value->source_pos = o->source_corresp.decl_position;
    }
    return has_segments(value) ? value : nullptr;
}

// Whether storing a value of that type in an object sets all of it.
bool is_whole_value(const object *o, const type *t) {
    return o->storage_class != sc_associated && !is_array(o->type) && o->type->type_code != tk_derived_type &&
           (o->type->type_code != tk_fcharacter || constant_length(o->type) == constant_length(t));
}

// Adds a value that was given as a whole to storage.
bool add_whole_value(constant *aggregate, const object *o, constant *value) {
    constant *first = value;
    constant *last = value;
    if (is_array(o->type) && value->repr_kind == ck_aggregate) {
        first = value->aggregate.first_constant;
        last = value->aggregate.last_constant;
        if (!first) {
            return true; // no elements
        }
    } else if (is_array(o->type) && value->type->size != 0 && o->type->size > value->type->size) {
        first = last = repetition(value, o->type->size / value->type->size);
    }
    last->next = nullptr;
    return add_values(aggregate, o->association_offset, o->type->size, first, last);
}

// Moves the segments of an object's value to storage. False if some of them found their place taken.
bool add_segments(constant *aggregate, const object *o, const constant *value) {
    bool good = true;
    for (const auto &[offset, s] : segments_of(value)) {
        constant *first = s.position->next;
        const std::uint32_t size = s.position->position.segment_size;
        good = add_values(aggregate, offset + o->association_offset, size, first, s.last) && good;
    }
    segments_by_aggregate.erase(value);
    return good;
}

} // namespace

bool store_data_value(const constant *value, object *o, std::int64_t offset, std::uint32_t count) {
    if (count == 1 && is_whole_value(o, value->type)) {
        if (o->variant.initializer) {
            return false;
        }
        o->variant.initializer = copy_of(value);
        return true;
    }
    if (o->storage_class == sc_associated) {
        offset += o->association_offset;
        o = o->assoc.variable;
    }
    constant *aggregate = aggregate_of(o);
    if (!aggregate) {
        return false;
    }
    constant *element = repetition(value, count);
    return add_values(aggregate, offset, count * value->type->size, element, element);
}

void transfer_initializer(object *o) {
    object *storage = o->assoc.variable;
    constant *value = o->variant.initializer;
    o->variant.initializer = nullptr;
    if (storage->storage_class != sc_common) {
        storage->is_saved = true;
    }
    constant *aggregate = aggregate_of(storage);
    const bool good =
        has_segments(value) ? add_segments(aggregate, o, value) : add_whole_value(aggregate, o, value);
    if (!good) {
        error_at(msg_multiple_data_initialization_of_storage_for, o->source_corresp.decl_position,
                 o->source_corresp.name->spelling);
    }
}

} // namespace zf90
