// What an internal procedure uses of its host, as the output tells it.
#include "declarations/symbols.h"
#include "expressions/calls.h"

#include <unordered_set>
#include <vector>

namespace zf90 {

namespace {

// The types that have been looked at for a routine, so that each one is looked at once.
const object *walked_routine;
std::unordered_set<const type *> walked_types;

void mark_if_hosts(named_entry *entry, unsigned host_level) {
    if (entry->source_corresp.scope_depth == host_level) {
        entry->source_corresp.host_associated = true;
    }
}

void push_parts(const type *t, std::vector<type *> &open) {
    switch (t->type_code) {
    case tk_routine:
        open.push_back(t->routine.return_type);
        for (const param_type *p = t->routine.param_type_list; p; p = p->next) {
            open.push_back(p->type);
        }
        break;
    case tk_farray: open.push_back(t->array.element_type); break;
    case tk_derived_type:
        for (const object *field = t->derived.first_field; field; field = field->next) {
            open.push_back(field->type);
        }
        break;
    default: break;
    }
}

void mark_types(type *first, const object *routine, unsigned host_level) {
    if (walked_routine != routine) {
        walked_routine = routine;
        walked_types.clear();
    }
    std::vector<type *> open{first};
    while (!open.empty()) {
        type *t = open.back();
        open.pop_back();
        if (t && walked_types.insert(t).second) {
            mark_if_hosts(t, host_level);
            push_parts(t, open);
        }
    }
}

bool lives_in_frame(const object *o) {
    return o->storage_class == sc_local && !o->is_constant && !o->is_saved;
}

// The procedure or program whose names an internal procedure uses; null for other routines. What comes from a
// module needs no frame.
object *host_of(const object *routine) {
    object *host = routine && routine->storage_class == sc_internal ? routine->assoc.routine : nullptr;
    return host && host->storage_class != sc_module ? host : nullptr;
}

unsigned level_within(const object *host) { return host->source_corresp.scope_depth + 1u; }

} // namespace

void note_host_type(type *t, object *routine) {
    if (const object *host = host_of(routine)) {
        mark_types(t, routine, level_within(host));
    }
}

void note_host_reference(object *o, object *routine) {
    object *host = host_of(routine);
    if (!host) {
        return;
    }
    const unsigned host_level = level_within(host);
    mark_types(o->type, routine, host_level);
    if (o->source_corresp.scope_depth != host_level) {
        return;
    }
    o->source_corresp.host_associated = true;
    object *storage = o;
    if (o->storage_class == sc_associated && o->assoc.variable) {
        storage = o->assoc.variable;
        if (o->type->type_code != tk_farray && storage->storage_class == sc_local) {
            storage->source_corresp.host_associated = true;
        }
    }
    if (lives_in_frame(storage)) {
        host->is_host = true;
        routine->uses_host = true;
    }
}

} // namespace zf90
