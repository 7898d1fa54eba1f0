// The EQUIVALENCE statement and the layout of its groups. Each list is a group of variables with their
// distances. Groups that share a variable are joined; a joined group lies in a COMMON block, if one of its
// variables does, or in nameless storage of its own.
#include "constants/folding.h"
#include "declarations/designator_place.h"
#include "declarations/end_of_unit.h"
#include "declarations/scopes.h"
#include "declarations/storage.h"
#include "declarations/variables.h"
#include "driver/deep_call.h"
#include "driver/options.h"
#include "expressions/check.h"
#include "expressions/parser.h"
#include "expressions/predicates.h"
#include "expressions/uses.h"
#include "il/entries.h"
#include "il/types.h"
#include "source/token_helpers.h"
#include "statements/handlers.h"
#include "statements/loop.h"

#include <algorithm>

namespace zf90 {

// ---- the statement

namespace {

// A name of this unit becomes a variable that is equivalenced. False if it can't.
bool declare_equivalenced(name_locator name) {
    symbol *const s = declare_variable(attr_equivalence, name);
    if (!s) {
        return false;
    }
    s->var_flags |= vf_equivalenced;
    return true;
}

// Being equivalenced is no use of a variable.
bool read_designator(expr_node *&designator, atom *name) {
    symbol *s = name->first_symbol;
    const std::uint32_t marks = s ? s->flags & sf_referenced : 0;
    const bool good = parse_designator(designator);
    if (s) {
        s->flags = (s->flags & ~std::uint32_t{sf_referenced}) | marks;
    }
    return good;
}

bool read_item(equiv_group *group) {
    if (!expect_token(tok_name, msg_expected_identifier)) {
        return false;
    }
    const name_locator name = curr_name;
    const bool is_variable = declare_equivalenced(name);
    expr_node *designator = nullptr;
    if (!read_designator(designator, name.atom) || !is_variable) {
        return false;
    }
    auto *item = il_new<equiv_item>();
    item->position = name.position;
    item->designator = designator;
    item->group = group;
    (group->last_item ? group->last_item->next : group->items) = item;
    group->last_item = item;
    return true;
}

// A list in its parentheses. It has two items at least.
bool read_group() {
    if (curr_token == tok_name) {
        error_pos = curr_token_pos;
        report_syntax_error(msg_expected_lparen);
        return !skip_to_eos(); // what the other brackets belong to is not clear
    }
    if (!accept_token(tok_lparen, msg_expected_lparen, 0)) {
        return false;
    }
    auto *group = il_new<equiv_group>();
    bool good = true;
    {
        const stop_at stops{tok_comma, tok_rparen};
        good = read_item(group);
        if (good && curr_token == tok_name) {
            error_pos = curr_token_pos;
            report_syntax_error(msg_expected_comma);
            read_item(group);
            good = false;
        } else if (good && curr_token != tok_comma) {
            const source_pos position = curr_token_pos;
            expect_token(tok_comma, msg_expected_comma);
            if (curr_token == tok_rparen) {
                error_at(msg_expected_identifier, position);
            }
            good = false;
        }
        while (accept_optional(tok_comma, 0)) {
            good = read_item(group) && good;
        }
    }
    (curr_unit.last_equiv_group ? curr_unit.last_equiv_group->next : curr_unit.equiv_groups) = group;
    curr_unit.last_equiv_group = group;
    const bool closed = curr_token == tok_rparen;
    accept_token(tok_rparen, msg_expected_rparen, 0);
    return good && closed;
}

} // namespace

bool stmt_equivalence() {
    next_token(0);
    bool good = true;
    do {
        good = read_group() && good;
    } while (accept_optional(tok_comma, 0));
    return good;
}

// ---- offsets

namespace {

enum storage_unit : std::uint8_t { unit_numeric, unit_character, unit_mixed };

// The storage units that a type is made of; of a sequence type, those of all its components.
storage_unit storage_unit_of(const type *t) {
    if (t->type_code != tk_derived_type) {
        return t->is_character ? unit_character : t->is_numeric ? unit_numeric : unit_mixed;
    }
    const object *field = t->derived.first_field;
    if (!field || !t->derived.is_seq) {
        return unit_mixed;
    }
    return deep_call([&] {
        const storage_unit unit = storage_unit_of(element_type_of(field->type));
        for (; field; field = field->next) {
            if (field->is_pointer || storage_unit_of(element_type_of(field->type)) != unit) {
                return unit_mixed;
            }
        }
        return unit;
    });
}

bool is_in_doubt(const type *t) {
    return t->type_code == tk_error || (t->type_code == tk_derived_type && t->derived.in_doubt);
}

bool may_be_associated(type *a, type *b) {
    if (is_in_doubt(a) || is_in_doubt(b) || types_equal(a, b)) {
        return true;
    }
    const storage_unit unit = storage_unit_of(a);
    return unit != unit_mixed && unit == storage_unit_of(b);
}

// Finds out where the items of a group lie.
void evaluate_equivalence(equiv_group *group) {
    type *first_type = nullptr;
    for (equiv_item *item = group->items; item; item = item->next) {
        expr_node *designator = item->designator;
        const bool good = check_expression(designator, ecf_designator, curr_routine());
        forget_use(designator);
        finish_uses();
        if (!good) {
            continue;
        }
        designator_place place;
        if (!find_place(designator, place_in_equivalence, place)) {
            continue;
        }
        finish_for_layout(place.object);
        type *t = element_type_of(place.object->type);
        if (first_type && !may_be_associated(first_type, t)) {
            error_at(msg_association_of_different_storage_units, item->position);
            continue;
        }
        first_type = first_type ? first_type : t;
        item->object = place.object;
        item->offset = place.offset;
        group->max_offset = std::max(group->max_offset, item->offset);
    }
}

std::int64_t size_of(const object *o) { return object_size(o).size; }

// Turns the offsets within the variables into offsets of the variables from the base of the group, its first
// byte.
void normalise_equivalence(equiv_group *group) {
    for (equiv_item *item = group->items; item; item = item->next) {
        if (item->object) {
            item->offset = group->max_offset - item->offset;
            group->size = std::max(group->size, item->offset + size_of(item->object));
        }
    }
}

// ---- joining

// The group that a group is part of by now, and its distance from it.
struct group_place {
    equiv_group *root;
    std::int64_t shift;
};

group_place find_root(equiv_group *group) {
    group_place place{group, 0};
    for (; place.root->merged_into; place.root = place.root->merged_into) {
        place.shift += place.root->shift;
    }
    // The next search is shorter.
    std::int64_t shift = place.shift;
    while (group != place.root) {
        equiv_group *const above = group->merged_into;
        const std::int64_t step = group->shift;
        group->merged_into = place.root;
        group->shift = shift;
        shift -= step;
        group = above;
    }
    return place;
}

std::int64_t offset_of(const equiv_item *item) { return item->offset + find_root(item->group).shift; }

// Makes a group part of another one, `shift` bytes behind its base.
void merge_into(equiv_group *group, equiv_group *other, std::int64_t shift) {
    group->merged_into = other;
    group->shift = shift;
    other->size = std::max(other->size, group->size + shift);
}

// Joins a group with the group of an item that names the same variable. All other items are kept.
void join_groups(equiv_item *item, equiv_item *other) {
    equiv_group *g = find_root(item->group).root;
    equiv_group *h = find_root(other->group).root;
    const std::int64_t delta = offset_of(other) - offset_of(item);
    if (delta > 0) {
        item->object = nullptr;
        h->last_item->next = g->items;
        h->last_item = g->last_item;
        g->items = g->last_item = nullptr;
        merge_into(g, h, delta);
    } else {
        item->object->symbol_link->aux = item;
        other->object = nullptr;
        h->last_item->next = item->next;
        item->next = h->items;
        if (g->last_item == item) {
            g->last_item = h->last_item;
        }
        h->items = h->last_item = nullptr;
        merge_into(h, g, -delta);
    }
}

// Joins a group with those ahead of it that name the same variables.
void merge_equivalence(equiv_group *group) {
    for (equiv_item *item = group->items, *next; item; item = next) {
        next = item->next;
        if (!item->object) {
            continue;
        }
        symbol *s = item->object->symbol_link;
        auto *first = static_cast<equiv_item *>(s->aux);
        if (!first) {
            s->aux = item;
        } else if (find_root(first->group).root != find_root(item->group).root) {
            join_groups(item, first);
        } else {
            if (offset_of(first) != offset_of(item)) {
                error_at(msg_inconsistent_equivalence_specifications_for_variable, item->position,
                         item->object->source_corresp.name->spelling);
            }
            item->object = nullptr;
        }
    }
}

// ---- places

bool is_in_common(const equiv_item *item) {
    return (item->object->symbol_link->var_flags & vf_in_common) != 0;
}

void warn_of_common_value(const object *o, const object *storage) {
    if (!strict_f77_mode) {
        return;
    }
    if (is_blank_common(storage)) {
        o->symbol_link->var_flags |= vf_blank_common;
    }
    if (o->is_result || !o->variant.initializer) {
        return;
    }
    if (is_blank_common(storage)) {
        warning_at(msg_data_initialization_of_blank_common_is_not_standard, o->source_corresp.decl_position);
    } else if (unit_kind_of(curr_scope_depth) != uk_block_data) {
        warning_at(msg_data_of_common_outside_blockdata_is_not_standard, o->source_corresp.decl_position);
    }
}

// Places an item in a block: `offset` bytes from its start.
void place_in_common(const equiv_item *item, object *storage, std::int64_t offset) {
    object *o = item->object;
    if (is_in_common(item)) {
        if (o->storage_class == sc_associated &&
            (o->assoc.variable != storage || o->association_offset != offset)) {
            error_at(msg_equivalence_and_common_specifications_of_are_inconsistent, item->position,
                     o->source_corresp.name->spelling);
        }
    } else if (offset < 0) {
        error_at(msg_equivalence_specification_of_extends_common_block_backwards, item->position,
                 o->source_corresp.name->spelling);
    } else if (o->storage_class == sc_local) {
        warn_of_common_value(o, storage);
        assign_storage(o, storage, static_cast<std::uint32_t>(offset));
    }
}

object *new_group_storage(const equiv_group *group) {
    object *storage = new_object();
    storage->source_corresp.referenced = false;
    storage->source_corresp.scope_depth =
        static_cast<std::uint8_t>(std::min<std::int32_t>(curr_scope_depth, depth_out_of_scope));
    storage->storage_class = sc_local;
    storage->assoc.routine = curr_routine();
    storage->type = new_type(tk_association);
    storage->type->size = static_cast<std::uint32_t>(group->size);
    add_object(curr_row(), storage);
    return storage;
}

void place_in_storage(const equiv_group *group) {
    object *storage = nullptr;
    for (const equiv_item *item = group->items; item; item = item->next) {
        object *o = item->object;
        if (!o || o->storage_class != sc_local) {
            continue;
        }
        if (global_save && can_be_saved(o)) {
            o->is_saved = true; // its storage belongs to no name that SAVE could reach
        }
        if (!storage) {
            storage = new_group_storage(group);
        }
        assign_storage(o, storage, static_cast<std::uint32_t>(offset_of(item)));
    }
}

void place_equivalence(const equiv_group *group) {
    const equiv_item *anchor = nullptr;
    unsigned count = 0;
    for (const equiv_item *item = group->items; item; item = item->next) {
        if (item->object) {
            item->object->symbol_link->aux = nullptr;
            ++count;
            if (!anchor && is_in_common(item) && item->object->storage_class == sc_associated) {
                anchor = item;
            }
        }
    }
    if (count < 2) {
        return;
    }
    if (!anchor) {
        place_in_storage(group);
        return;
    }
    object *storage = anchor->object->assoc.variable;
    const std::int64_t base = anchor->object->association_offset - offset_of(anchor);
    type *block = storage->type;
    block->size =
        std::max(block->size, static_cast<std::uint32_t>(std::max<std::int64_t>(group->size + base, 0)));
    for (const equiv_item *item = group->items; item; item = item->next) {
        if (item->object && item != anchor) {
            place_in_common(item, storage, offset_of(item) + base);
        }
    }
}

} // namespace

void lay_out_equivalence() {
    equiv_group *const groups = curr_unit.equiv_groups;
    for (equiv_group *group = groups; group; group = group->next) {
        evaluate_equivalence(group);
    }
    for (equiv_group *group = groups; group; group = group->next) {
        normalise_equivalence(group);
    }
    for (equiv_group *group = groups; group; group = group->next) {
        merge_equivalence(group);
    }
    for (equiv_group *group = groups; group; group = group->next) {
        place_equivalence(group);
    }
    curr_unit.equiv_groups = curr_unit.last_equiv_group = nullptr;
}

} // namespace zf90
