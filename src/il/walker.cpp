// The walk over the whole IL. Two passes flip the visit mark of every entry that they reach, so no walk needs
// a clearing pass and cycles end by themselves. What is still to be walked stands on a stack of its own: a
// program may nest and chain its entries as deeply as it likes. Only the first pass follows links: it notes
// what it visits, and the second pass goes through its notes.
#include "il/entries.h"

#include <algorithm>

namespace zf90 {

scope *walking_scope;
bool module_mode;
const object *module_being_written;

namespace {

enum class step : std::uint8_t {
    entry,        // walk the entry
    list,         // walk the entry, then the rest of its list
    rest_of_list, // walk what follows the entry on its list
    leave_scope   // `entry` is the scope that encloses the one whose children are done
};

struct frame {
    il_entry *entry;
    std::uint32_t size;
    entry_kind kind;
    step what;
};

struct frame_list {
    frame *frames;
    std::size_t count;
    std::size_t capacity;
};

frame_list pending; // a stack
frame_list visited; // by the first pass, in order
std::uint32_t target_mark;
il_visitor curr_visitor;

void append(frame_list &l, step what, il_entry *entry, entry_kind kind, std::uint32_t size) {
    if (l.count == l.capacity) {
        const std::size_t old_bytes = l.capacity * sizeof(frame);
        l.capacity = std::max<std::size_t>(256, 2 * l.capacity);
        l.frames = static_cast<frame *>(sys_realloc(l.frames, old_bytes, l.capacity * sizeof(frame)));
    }
    new (&l.frames[l.count++]) frame{entry, size, kind, what};
}

void push(step what, il_entry *entry, entry_kind kind, std::uint32_t size = 0) {
    if (entry || what == step::leave_scope) {
        append(pending, what, entry, kind, size);
    }
}

bool is_taken(const il_entry *entry) { return (entry->il_id & il_visit_mark) == target_mark; }

// Most children are types and objects that the pass has met before: they need no frame.
void child(il_entry *entry, entry_kind kind) {
    if (entry && !is_taken(entry)) {
        push(step::entry, entry, kind);
    }
}

void list(il_entry *head, entry_kind kind) { push(step::list, head, kind); }

void bounds(bound_info_entry *b, unsigned rank) {
    push(step::entry, b, kind_bound_info_entry, bound_info_size(rank));
}

void bound_expression_of(const bound &b) {
    if (b.kind == bound_expression || b.kind == bound_same_as) {
        child(b.expr, kind_expr_node);
    }
}

il_entry *next_on_list(il_entry *entry, entry_kind kind) {
    switch (kind) {
    case kind_constant: return static_cast<constant *>(entry)->next;
    case kind_param_type: return static_cast<param_type *>(entry)->next;
    case kind_type: return static_cast<type *>(entry)->next;
    case kind_label: return static_cast<label *>(entry)->next;
    case kind_expr_node: return static_cast<expr_node *>(entry)->next;
    case kind_object: return static_cast<object *>(entry)->next;
    case kind_interface: return static_cast<interface *>(entry)->next;
    case kind_statement: return static_cast<statement *>(entry)->next;
    case kind_label_list_entry: return static_cast<label_list_entry *>(entry)->next;
    case kind_object_list_member: return static_cast<object_list_member *>(entry)->next;
    case kind_alloc: return static_cast<alloc *>(entry)->next;
    case kind_case_range: return static_cast<case_range *>(entry)->next;
    case kind_namelist_group: return static_cast<namelist_group *>(entry)->next;
    case kind_entry_description: return static_cast<entry_description *>(entry)->next;
    case kind_symbol: return static_cast<symbol *>(entry)->next_in_scope;
    default: return nullptr;
    }
}

// ---- the children of each kind, in the order of the walk

void children_of_header(il_header *h) {
    child(h->primary_source_file, kind_source_file);
    child(h->primary_scope, kind_scope);
    child(h->main_routine, kind_object);
}

void children_of_source_file(source_file *f) {
    child(f->first_child_file, kind_source_file);
    child(f->last_child_file, kind_source_file);
    child(f->next, kind_source_file);
}

void children_of_constant(constant *c) {
    child(c->type, kind_type);
    switch (c->repr_kind) {
    case ck_expression:
        if (!module_mode) {
            child(c->value.expr, kind_expr_node);
        }
        break;
    case ck_aggregate: list(c->aggregate.first_constant, kind_constant); break;
    case ck_init_repeat: list(c->repeat.constant, kind_constant); break;
    default: break;
    }
}

void children_of_type(type *t) {
    switch (t->type_code) {
    case tk_routine:
        child(t->routine.return_type, kind_type);
        list(t->routine.param_type_list, kind_param_type);
        child(t->routine.assoc_routine, kind_object);
        break;
    case tk_fcharacter: bound_expression_of(t->character.length); break;
    case tk_farray:
        child(t->array.element_type, kind_type);
        if (t->array.shape_kind <= as_shaped) {
            bounds(t->array.bound, t->array.rank);
        } else {
            list(t->array.args, kind_expr_node);
        }
        break;
    case tk_derived_type:
        // A module's user sees no component of a type whose first component is private.
        if (!module_mode || (t->derived.first_field && t->derived.first_field->is_public)) {
            list(t->derived.first_field, kind_object);
        }
        child(t->derived.module, kind_object);
        break;
    default: break;
    }
}

void children_of_expr_node(expr_node *e) {
    child(e->type, kind_type);
    switch (e->node_kind) {
    case enk_operation:
    case enk_intrinsic: list(e->operands, kind_expr_node); break;
    case enk_call:
        list(e->operands, kind_expr_node);
        child(e->routine, kind_object);
        child(e->interface, kind_interface);
        break;
    case enk_constant: child(e->constant, kind_constant); break;
    case enk_stmt_label_value: child(e->stmt_label_value, kind_label); break;
    case enk_object: child(e->object, kind_object); break;
    case enk_field:
        child(e->base_expr, kind_expr_node);
        child(e->field_var, kind_object);
        break;
    case enk_subscript:
    case enk_substring:
    case enk_section:
        child(e->array_expr, kind_expr_node);
        list(e->ind_list, kind_expr_node);
        break;
    case enk_constructor: list(e->constructor, kind_expr_node); break;
    case enk_implied_do:
    case enk_isum:
        list(e->expr_list, kind_expr_node);
        child(e->do_info, kind_do_loop);
        break;
    case enk_triplet:
        child(e->first, kind_expr_node);
        child(e->second, kind_expr_node);
        child(e->stride, kind_expr_node);
        break;
    case enk_ref: child(e->reference, kind_expr_node); break;
    case enk_param: child(e->parameter, kind_param_type); break;
    case enk_generic_call:
        child(e->generic, kind_interface);
        list(e->operands, kind_expr_node);
        break;
    case enk_interface_block: child(e->interface_block, kind_interface); break;
    default: break;
    }
}

void public_symbols_of(const object *module) {
    if (module == module_being_written && module->symbol_link) {
        list(static_cast<symbol *>(module->symbol_link->aux), kind_symbol);
    }
}

void children_of_object(object *o) {
    child(o->type, kind_type);
    switch (o->storage_class) {
    case sc_local:
        if (o->is_result) {
            child(o->variant.result_var_function, kind_object);
        } else {
            child(o->variant.initializer, kind_constant);
        }
        child(o->assoc.routine, kind_object);
        break;
    case sc_common: child(o->variant.initializer, kind_constant); break;
    case sc_associated: child(o->assoc.variable, kind_object); break;
    case sc_mod_proc: child(o->assoc.module, kind_object); break;
    case sc_implied_do_var: child(o->assoc.implied_do, kind_expr_node); break;
    case sc_use_associated:
        child(o->variant.initializer, kind_constant);
        child(o->assoc.module, kind_object);
        break;
    case sc_type_field: child(o->assoc.derived_type, kind_type); break;
    case sc_external:
    case sc_program:
    case sc_blockdata:
        if (!module_mode) {
            child(o->variant.assoc_scope, kind_scope);
        }
        break;
    case sc_module:
        if (module_mode) {
            public_symbols_of(o);
        } else {
            child(o->variant.assoc_scope, kind_scope);
        }
        break;
    case sc_internal:
    case sc_stmt_func:
    case sc_unspecified:
        child(o->assoc.routine, kind_object);
        if (!module_mode) {
            child(o->variant.assoc_scope, kind_scope);
        }
        break;
    default: break;
    }
}

void children_of_statement(statement *s) {
    list(s->expr, kind_expr_node);
    switch (s->kind) {
    case stmk_if:
        child(s->then_statement, kind_statement);
        child(s->else_statement, kind_statement);
        break;
    case stmk_where:
        child(s->where_assignment, kind_statement);
        child(s->elsewhere_assignment, kind_statement);
        break;
    case stmk_while:
    case stmk_select: child(s->body_statement, kind_statement); break;
    case stmk_exit:
    case stmk_cycle: child(s->constr_label, kind_statement); break;
    case stmk_goto:
    case stmk_label: child(s->label, kind_label); break;
    case stmk_block: list(s->statements, kind_statement); break;
    case stmk_fentry:
        child(s->entry_descr, kind_entry_description);
        list(s->prologue, kind_statement);
        break;
    case stmk_ido:
    case stmk_fdo:
        child(s->loop_statement, kind_statement);
        child(s->do_loop, kind_do_loop);
        break;
    case stmk_iarith_if:
    case stmk_farith_if:
    case stmk_computed_goto:
    case stmk_assigned_goto: list(s->label_list, kind_label_list_entry); break;
    case stmk_stop:
    case stmk_pause: child(s->stop_pause_string, kind_constant); break;
    case stmk_case:
        list(s->case_range_list, kind_case_range);
        child(s->case_statements, kind_statement);
        break;
    case stmk_alloc:
        list(s->alloc_list, kind_alloc);
        child(s->stat_variable, kind_expr_node);
        break;
    case stmk_dealloc:
        list(s->dealloc_list, kind_expr_node);
        child(s->stat_variable, kind_expr_node);
        break;
    case stmk_set_array_shape: child(s->array_variable, kind_object); break;
    case stmk_set_char_length: child(s->string_variable, kind_object); break;
    case stmk_open:
    case stmk_close:
    case stmk_read:
    case stmk_write:
    case stmk_inquire:
    case stmk_backspace:
    case stmk_endfile:
    case stmk_rewind: child(s->io_descr, kind_input_output_description); break;
    default: break;
    }
}

void children_of_scope(scope *u) {
    scope *const enclosing = walking_scope;
    walking_scope = u;
    list(u->parameters, kind_object_list_member);
    child(u->function_result_var, kind_object);
    list(u->constants, kind_constant);
    if (u->assoc_routine) {
        list(u->types, kind_type);
    }
    list(u->objects, kind_object);
    list(u->labels, kind_label);
    list(u->entries, kind_entry_description);
    list(u->namelist_groups, kind_namelist_group);
    list(u->interfaces, kind_interface);
    child(u->assoc_routine, kind_object);
    child(u->assoc_block, kind_statement);
    push(step::leave_scope, enclosing, kind_scope);
}

void children_of_bounds(bound_info_entry *b, std::uint32_t size) {
    for (unsigned i = 0; i < 2 * bound_info_rank(size); ++i) {
        if (b->bounds[i].kind == bound_expression) {
            child(b->bounds[i].expr, kind_expr_node);
        }
    }
}

void children_of_io_description(input_output_description *j) {
    if (j->unit_kind == iou_external || j->unit_kind == iou_internal) {
        child(j->unit_expr, kind_expr_node);
    }
    switch (j->format_kind) {
    case iof_format_label: child(j->format.label, kind_label); break;
    case iof_assigned_var:
    case iof_char_expr: child(j->format.expr, kind_expr_node); break;
    case iof_namelist_directed: child(j->format.namelist_group, kind_namelist_group); break;
    default: break;
    }
    list(j->specifier_list, kind_expr_node);
}

void children_of_symbol(symbol *s) {
    switch (s->kind) {
    case sk_derived_type: child(s->entity, kind_type); break;
    case sk_variable:
    case sk_subroutine:
    case sk_function:
    case sk_internal_subroutine:
    case sk_internal_function: child(s->entity, kind_object); break;
    case sk_interface: child(s->entity, kind_interface); break;
    case sk_namelist: child(s->entity, kind_namelist_group); break;
    default: break;
    }
}

void push_children(const frame &f) {
    switch (f.kind) {
    case kind_il_header: children_of_header(static_cast<il_header *>(f.entry)); break;
    case kind_source_file: children_of_source_file(static_cast<source_file *>(f.entry)); break;
    case kind_constant: children_of_constant(static_cast<constant *>(f.entry)); break;
    case kind_param_type: child(static_cast<param_type *>(f.entry)->type, kind_type); break;
    case kind_type: children_of_type(static_cast<type *>(f.entry)); break;
    case kind_label: {
        const label *l = static_cast<label *>(f.entry);
        if (l->kind == lk_format) {
            child(l->format_constant, kind_constant);
        }
        break;
    }
    case kind_expr_node: children_of_expr_node(static_cast<expr_node *>(f.entry)); break;
    case kind_object: children_of_object(static_cast<object *>(f.entry)); break;
    case kind_interface:
        list(static_cast<interface *>(f.entry)->routine_prototype_list, kind_object_list_member);
        break;
    case kind_statement: children_of_statement(static_cast<statement *>(f.entry)); break;
    case kind_scope: children_of_scope(static_cast<scope *>(f.entry)); break;
    case kind_bound_info_entry: children_of_bounds(static_cast<bound_info_entry *>(f.entry), f.size); break;
    case kind_do_loop: {
        const do_loop *d = static_cast<do_loop *>(f.entry);
        child(d->variable, kind_expr_node);
        child(d->initial_value, kind_expr_node);
        child(d->final_value, kind_expr_node);
        child(d->increment, kind_expr_node);
        break;
    }
    case kind_label_list_entry: child(static_cast<label_list_entry *>(f.entry)->label, kind_label); break;
    case kind_object_list_member:
        child(static_cast<object_list_member *>(f.entry)->object, kind_object);
        break;
    case kind_alloc: {
        const alloc *q = static_cast<alloc *>(f.entry);
        child(q->var, kind_expr_node);
        bounds(q->bounds, q->rank);
        break;
    }
    case kind_case_range: {
        const case_range *r = static_cast<case_range *>(f.entry);
        child(r->low, kind_constant);
        child(r->high, kind_constant);
        break;
    }
    case kind_namelist_group: {
        const namelist_group *n = static_cast<namelist_group *>(f.entry);
        child(n->original_name, kind_atom);
        list(n->member_list, kind_expr_node);
        break;
    }
    case kind_input_output_description:
        children_of_io_description(static_cast<input_output_description *>(f.entry));
        break;
    case kind_entry_description: {
        const entry_description *e = static_cast<entry_description *>(f.entry);
        child(e->assoc_routine, kind_object);
        list(e->parameters, kind_object_list_member);
        child(e->function_result_var, kind_object);
        break;
    }
    case kind_symbol: children_of_symbol(static_cast<symbol *>(f.entry)); break;
    default: break;
    }
}

// ---- the walk

// Flips the mark of an entry that this pass meets for the first time.
bool take(il_entry *entry) {
    if (!entry || is_taken(entry)) {
        return false;
    }
    entry->il_id ^= il_visit_mark;
    return true;
}

void visit(il_entry *entry, entry_kind kind, std::uint32_t size) {
    append(visited, step::entry, entry, kind, size);
    if (curr_visitor) {
        curr_visitor(entry, kind, size);
    }
}

void visit_atom(atom *name) {
    if (take(name)) {
        visit(name, kind_atom, 0);
    }
}

// The names that an entry is known by come just before it.
void visit_names_of(const frame &f) {
    if (carries_source_corresp(f.kind)) {
        visit_atom(static_cast<named_entry *>(f.entry)->source_corresp.name);
    } else if (f.kind == kind_expr_node) {
        const expr_node *e = static_cast<expr_node *>(f.entry);
        if (!e->is_specifier) {
            visit_atom(e->keyword);
        }
    } else if (f.kind == kind_symbol) {
        const symbol *s = static_cast<symbol *>(f.entry);
        visit_atom(s->name);
        if (s->kind >= sk_specific_function && s->kind <= sk_intrinsic_subroutine) {
            visit_atom(static_cast<named_entry *>(s->entity)->symbol_link->name);
        }
    }
}

void walk_entry(const frame &f) {
    if (!take(f.entry)) {
        return;
    }
    visit_names_of(f);
    visit(f.entry, f.kind, f.size);
    // The last one pushed is the first one walked.
    const std::size_t first_child = pending.count;
    push_children(f);
    if (pending.count - first_child > 1) {
        std::reverse(pending.frames + first_child, pending.frames + pending.count);
    }
}

void begin_pass(const frame &root, il_visitor pre_step, il_visitor visitor) {
    curr_visitor = visitor;
    target_mark = ~root.entry->il_id & il_visit_mark;
    if (pre_step) {
        pre_step(root.entry, root.kind, root.size);
    }
}

void follow_links(const frame &root) {
    visited.count = 0;
    pending.count = 0;
    push(step::entry, root.entry, root.kind, root.size);
    while (pending.count > 0) {
        // Field by field, as it was written: a load of the whole would wait for the stores.
        const frame &top = pending.frames[--pending.count];
        const frame f{top.entry, top.size, top.kind, top.what};
        switch (f.what) {
        case step::entry: walk_entry(f); break;
        case step::list:
            push(step::rest_of_list, f.entry, f.kind);
            walk_entry(f);
            break;
        case step::rest_of_list:
            // Read only now: a visitor may have changed the list behind the entry.
            push(step::list, next_on_list(f.entry, f.kind), f.kind);
            break;
        case step::leave_scope: walking_scope = static_cast<scope *>(f.entry); break;
        }
    }
}

void visit_again() {
    for (std::size_t i = 0; i < visited.count; ++i) {
        const frame &f = visited.frames[i];
        f.entry->il_id ^= il_visit_mark;
        if (curr_visitor) {
            curr_visitor(f.entry, f.kind, f.size);
        }
    }
}

} // namespace

void walk_il(il_entry *root, entry_kind kind, std::uint32_t size, il_visitor first_pre_step,
             il_visitor first_visitor, il_visitor second_pre_step, il_visitor second_visitor) {
    const frame start{root, size, kind, step::entry};
    begin_pass(start, first_pre_step, first_visitor);
    follow_links(start);
    begin_pass(start, second_pre_step, second_visitor);
    visit_again();
}

} // namespace zf90
