// The layout of storage: the members of COMMON blocks, what an association carries over to the storage, and
// the sizes of the blocks.
#include "declarations/storage.h"

#include "declarations/check_scopes.h"
#include "declarations/implicit.h"
#include "declarations/initial_values.h"
#include "declarations/scopes.h"
#include "driver/options.h"
#include "expressions/predicates.h"
#include "il/types.h"

#include <algorithm>

namespace zf90 {

namespace {

bool holds_pointers(const object *o) { return o->is_pointer || element_type_of(o->type)->contains_ptrs; }

// What BLOCK DATA may give initial values to.
void check_block_data_value(object *o, const object *storage) {
    const bool has_value = !o->is_result && o->variant.initializer && !o->is_constant;
    if (!has_value || unit_kind_of(curr_scope_depth) != uk_block_data) {
        return;
    }
    const source_pos position = o->source_corresp.decl_position;
    const char *name = o->source_corresp.name->spelling;
    if (storage->storage_class != sc_common) {
        warning_at(msg_data_initialization_of_local_variable_ignored, position, name);
        o->variant.initializer = nullptr;
    } else if (strict_f77_mode && is_blank_common(storage)) {
        warning_at(msg_may_not_be_data_initialized_not_in_named, position, name);
    }
}

void lay_out_block(common_info *block) {
    if (!block->members) {
        return; // only mentioned, by SAVE
    }
    std::uint32_t offset = 0;
    for (const common_member *m = block->members; m; m = m->next) {
        object *o = m->object;
        finish_for_layout(o);
        const room r = object_size(o);
        if (offset % r.alignment != 0) {
            remark_at(msg_padding_supplied_to_align_in_common, o->source_corresp.decl_position,
                      o->source_corresp.name->spelling);
            offset += r.alignment - offset % r.alignment;
        }
        assign_storage(o, block->storage, offset);
        offset += r.size;
    }
    type *t = block->storage->type;
    block->previous_size = t->size;
    t->size = offset;
    block->members = block->last_member = nullptr;
}

// The size of a block only grows, from unit to unit.
void settle_size(common_info *block) {
    type *t = block->storage->type;
    if (t->size == block->previous_size || block->previous_size == 0) {
        return;
    }
    remark_at(msg_size_of_common_block_differs_from_previous_specification,
              block->source_corresp.decl_position,
              block->source_corresp.name ? block->source_corresp.name->spelling : "");
    t->size = std::max(t->size, block->previous_size);
}

} // namespace

void finish_for_layout(object *o) {
    if (o->symbol_link && !(o->symbol_link->flags & sf_typed)) {
        apply_implicit(o->symbol_link, null_pos);
    }
    check_object(o);
    complete_type(o->type);
}

void mark_storage(const object *o) {
    object *storage = o->assoc.variable;
    storage->is_public = storage->is_public || o->is_public;
    storage->is_saved = storage->is_saved || o->is_saved;
    storage->source_corresp.referenced = storage->source_corresp.referenced || o->source_corresp.referenced;
    storage->type->contains_ptrs = storage->type->contains_ptrs || holds_pointers(o);
}

void assign_storage(object *o, object *storage, std::uint32_t offset) {
    o->storage_class = sc_associated;
    o->assoc.variable = storage;
    o->association_offset = static_cast<std::int32_t>(offset);
    if (o->symbol_link && (o->symbol_link->flags & sf_referenced)) {
        o->source_corresp.referenced = true;
    }
    mark_storage(o);
    const std::uint8_t alignment = object_size(o).alignment;
    if (offset % alignment != 0) {
        warning_at(storage->storage_class == sc_common
                       ? msg_variable_is_misaligned_in_common_block
                       : msg_variable_is_misaligned_in_its_equivalence_association,
                   o->source_corresp.decl_position, o->source_corresp.name->spelling);
    }
    storage->type->alignment = std::max(storage->type->alignment, alignment);
    check_block_data_value(o, storage);
    if (!o->is_result && o->variant.initializer) {
        transfer_initializer(o);
    }
}

void layout_storage() {
    for (common_info *block = curr_unit.common_list; block; block = block->next_in_unit) {
        lay_out_block(block);
    }
    lay_out_equivalence();
    for (common_info *block = curr_unit.common_list, *next; block; block = next) {
        next = block->next_in_unit;
        block->next_in_unit = nullptr;
        if (block->in_unit) {
            settle_size(block);
        }
        block->in_unit = false;
    }
    curr_unit.common_list = curr_unit.last_common = nullptr;
}

} // namespace zf90
