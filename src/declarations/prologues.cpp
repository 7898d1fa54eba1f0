// The statements that begin the body of a procedure, or what follows an ENTRY.
#include "declarations/prologues.h"

#include "expressions/predicates.h"
#include "il/entries.h"
#include "il/types.h"

namespace zf90 {

namespace {

struct statement_list {
    statement *first = nullptr;
    statement *last = nullptr;
};

statement *append(statement_list &list, il_statement_kind kind) {
    statement *s = new_statement(kind);
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

} // namespace

void add_prologues(scope *s) {
    statement *const body = s->assoc_block;
    statement_list prologue;
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
    for (const entry_description *e = s->entries; e; e = e->next) {
        statement_list own;
        for (const object_list_member *m = e->parameters; m; m = m->next) {
            set_up(own, m->object);
        }
        if (e->entry_point) {
            e->entry_point->prologue = own.first;
        }
    }
}

} // namespace zf90
