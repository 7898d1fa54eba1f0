// The storage of a unit's variables. COMMON and EQUIVALENCE statements are collected while the unit is read
// (common_statements.cpp, equivalence.cpp) and laid out when its specification part ends (storage.cpp): each
// variable then lies at an offset in the storage object of a block or of a group.
#pragma once

#include "declarations/symbols.h"

namespace zf90 {

// An item of a COMMON list.
struct common_member {
    common_member *next;
    struct object *object;
    struct source_pos position;
};

// What is known of a COMMON block: the entity of its symbol.
struct common_info : named_entry { // its position: the first mention in the unit
    object *storage;               // sc_common, of a type as large as the block
    std::uint32_t previous_size;   // as last laid out, 0 at first
    common_info *next_in_unit;
    common_member *members; // of this unit, in the order of the statements
    common_member *last_member;
    bool in_unit; // on the unit's list
};

// An item of an EQUIVALENCE list.
struct equiv_item {
    equiv_item *next;
    struct source_pos position;
    struct object *object; // null if the item is in error, or left out
    expr_node *designator;
    std::int64_t offset; // from the base of its group, in bytes
    struct equiv_group *group;
};

// What an EQUIVALENCE list joins. During the layout groups that share a variable become one, and the `aux` of
// a variable's symbol is the first item that names it.
struct equiv_group {
    equiv_group *next;
    equiv_item *items;
    equiv_item *last_item;
    std::int64_t max_offset;
    std::int64_t size;
    equiv_group *merged_into; // or null
    std::int64_t shift;       // of its base, from the base of the group that it was merged into
};

// The symbol of a COMMON block, by its name, made at its first mention in the unit. A name that something
// global has already is an error; it is dropped, and the block has no name.
symbol *common_symbol(name_locator &name);

// The same for blank COMMON, mentioned at `position`.
symbol *blank_common_symbol(source_pos position);

// When the specification part ends: gives every variable of COMMON and EQUIVALENCE statements its place, and
// empties the unit's lists of them.
void layout_storage();

// ---- parts of the layout

// Puts an object at an offset of a storage object, with its marks and its initial value.
void assign_storage(object *o, object *storage, std::uint32_t offset);

// Hands the marks of an associated object on to its storage.
void mark_storage(const object *o);

// Gives an object the type that it has, and completes it.
void finish_for_layout(object *o);

// Joins the groups of the unit, and gives their objects their places. Called when COMMON has been laid out.
void lay_out_equivalence();

// Whether the storage is that of blank COMMON.
inline bool is_blank_common(const object *storage) {
    return storage->storage_class == sc_common && !storage->source_corresp.name;
}

} // namespace zf90
