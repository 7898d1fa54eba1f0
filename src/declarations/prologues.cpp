// The statements that begin the body of a procedure, or what follows an ENTRY.
#include "declarations/prologues.h"

#include "expressions/predicates.h"
#include "expressions/rewrite.h"
#include "il/entries.h"
#include "il/types.h"

#include <algorithm>
#include <unordered_set>

namespace zf90 {

namespace {

struct statement_list {
    explicit statement_list(source_pos place) : position(place) {}

    source_pos position; // of the statements
    statement *first = nullptr;
    statement *last = nullptr;
};

statement *append(statement_list &list, il_statement_kind kind) {
    statement *s = new_statement(kind);
    s->source_pos = list.position;
    (list.last ? list.last->next : list.first) = s;
    list.last = s;
    return s;
}

bool has_constant_length(const type *t) {
    return t->type_code != tk_fcharacter || t->character.length.kind == bound_constant;
}

void set_up(statement_list &list, object *o) {
    if (!o->is_parameter || o->storage_class != sc_local) {
        return;
    }
    const type *element = element_type_of(o->type);
    if (element->type_code == tk_fcharacter && element->character.length.kind == bound_expression) {
        append(list, stmk_set_char_length)->string_variable = o;
    }
    if (is_array(o->type) && !o->is_pointer && !o->is_allocatable &&
        !(is_explicit_constant_shape(o->type) && has_constant_length(element))) {
        append(list, stmk_set_array_shape)->array_variable = o;
    }
}

// ---- ENTRY

using object_set = std::unordered_set<const object *>;

object_set objects_of(const object_list_member *list) {
    object_set set;
    for (; list; list = list->next) {
        set.insert(list->object);
    }
    return set;
}

// Whether a bound names a dummy argument that the main entry does not have.
bool uses_other_dummies(const bound &b, const object_set &main_list) {
    if (b.kind != bound_expression) {
        return false;
    }
    return names_object(b.expr, [&](const object *o) { return o->is_parameter && main_list.count(o) == 0; });
}

bool uses_other_dummies(const object *o, const object_set &main_list) {
    const type *const element = element_type_of(o->type);
    if (element->type_code == tk_fcharacter && uses_other_dummies(element->character.length, main_list)) {
        return true;
    }
    if (!is_array(o->type) || o->type->array.shape_kind > as_shaped) {
        return false;
    }
    const bound *const bounds = o->type->array.bound->bounds;
    return std::any_of(bounds, bounds + 2 * std::size_t{o->type->array.rank},
                       [&](const bound &b) { return uses_other_dummies(b, main_list); });
}

// What depends on the dummies of the main entry alone is set up with these.
void add_entry_prologue(const entry_description *entry, const object_set &main_list) {
    statement_list prologue{entry->entry_point->source_pos};
    for (const object_list_member *m = entry->parameters; m; m = m->next) {
        if (uses_other_dummies(m->object, main_list)) {
            set_up(prologue, m->object);
        }
    }
    entry->entry_point->prologue = prologue.first;
}

} // namespace

void add_prologues(scope *s) {
    statement *const body = s->assoc_block;
    statement_list prologue{body->source_pos};
    for (const object_list_member *m = s->parameters; m; m = m->next) {
        set_up(prologue, m->object);
    }
    if (prologue.first) {
        prologue.last->next = body->statements;
        body->statements = prologue.first;
        if (!body->last_statement) {
            body->last_statement = prologue.last;
        }
    }
    if (!s->entries) {
        return;
    }
    const object_set main_list = objects_of(s->parameters);
    for (const entry_description *e = s->entries; e; e = e->next) {
        if (e->entry_point) {
            add_entry_prologue(e, main_list);
        }
    }
}

} // namespace zf90
