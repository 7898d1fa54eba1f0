// The records of external names, and what becomes of a second occurrence.
#include "declarations/external_names.h"

#include "declarations/scopes.h"
#include "driver/diagnostics.h"
#include "driver/options.h"
#include "expressions/predicates.h"
#include "il/entries.h"
#include "il/pair_queue.h"
#include "il/types.h"

#include <algorithm>

namespace zf90 {

namespace {

symbol *folded_external(const atom *folded) { return find_kind(folded, sk_folded_external); }

// The first occurrence of a name: its object belongs to the global scope from now on.
symbol *make_record(const symbol *s) {
    const name_locator name{s->name, s->decl_position};
    object *o = entity_as<object>(s);
    add_object(scope_stack[0], o);
    check_folded_name(name);
    symbol *record = new_further_symbol(s->kind, name, 0);
    record->flags &= ~std::uint32_t{sf_visible};
    record->entity = o;
    return record;
}

// Reports a contradiction between a symbol and the record of its name. The record is dropped, and the next
// occurrence of the name makes a new one, so that there are no further messages about it.
symbol *refuse(error_code code, symbol *record, const symbol *s) {
    error_at(code, s->decl_position, s->name->spelling);
    unlink_symbol(record);
    return nullptr;
}

bool is_open(const type *t) {
    return t->type_code == tk_unknown || t->type_code == tk_void || t->type_code == tk_unspec_routine;
}

// ---- the types of two occurrences

// Lengths and bounds that are expressions are not compared: those of an interface body are never those of the
// procedure itself.
bool lengths_agree(const bound &a, const bound &b) {
    if (a.kind == bound_expression || b.kind == bound_expression) {
        return a.kind != bound_assumed && b.kind != bound_assumed;
    }
    return a.kind == b.kind && (a.kind != bound_constant || a.value == b.value);
}

bool data_types_agree(const type *a, const type *b) {
    if (a->type_code == tk_farray && b->type_code == tk_farray) {
        const bool a_assumed = a->array.shape_kind == assumed_size;
        const bool b_assumed = b->array.shape_kind == assumed_size;
        if (a->array.rank != b->array.rank || a_assumed != b_assumed) {
            return false;
        }
        if (!a_assumed && !shapes_conform(a, b)) {
            return false;
        }
        a = a->array.element_type;
        b = b->array.element_type;
    }
    if (a->type_code == tk_fcharacter && b->type_code == tk_fcharacter) {
        return a->kind == b->kind && lengths_agree(a->character.length, b->character.length);
    }
    return types_equal(a, b);
}

bool is_unsettled(const type *t) {
    return t->type_code == tk_unknown || t->type_code == tk_unspec_routine || t->type_code == tk_error;
}

// Whether the result of a function has a name of its own.
bool has_named_result(const type *routine) {
    const object *o = routine->routine.assoc_routine;
    const scope *body = o ? o->variant.assoc_scope : nullptr;
    const object *result = body ? body->function_result_var : nullptr;
    return result && result->source_corresp.name != o->source_corresp.name;
}

bool demands_as_much(const param_type *p, const param_type *q) {
    return p->is_optional >= q->is_optional && p->intent_in >= q->intent_in && p->intent_out >= q->intent_out;
}

// The number and types of the dummy arguments agree. Dummy procedures are compared in the same way; they wait
// in a list. The attributes count only on the side of a function whose result has its own name.
bool params_agree(const type *first, const type *second) {
    static pair_queue waiting;
    start_pairs(waiting);
    queue_pair(waiting, first, second);
    for (queued_pair pair; take_pair(waiting, pair);) {
        const auto *a = static_cast<const type *>(pair.a);
        const auto *b = static_cast<const type *>(pair.b);
        const bool a_demands = has_named_result(a);
        const bool b_demands = has_named_result(b);
        const param_type *p = a->routine.param_type_list;
        const param_type *q = b->routine.param_type_list;
        for (; p && q; p = p->next, q = q->next) {
            if ((a_demands && !demands_as_much(p, q)) || (b_demands && !demands_as_much(q, p))) {
                return false;
            }
            if (p->type == q->type || is_unsettled(p->type) || is_unsettled(q->type)) {
                continue;
            }
            if (p->type->type_code != tk_routine || q->type->type_code != tk_routine) {
                if (!data_types_agree(p->type, q->type)) {
                    return false;
                }
                continue;
            }
            const type *p_result = p->type->routine.return_type;
            const type *q_result = q->type->routine.return_type;
            if (!is_unsettled(p_result) && !is_unsettled(q_result) && !data_types_agree(p_result, q_result)) {
                return false;
            }
            if (p->type->routine.has_param_info && q->type->routine.has_param_info) {
                queue_pair(waiting, p->type, q->type);
            }
        }
        if (p || q) {
            return false;
        }
    }
    return true;
}

// Joins the return types of two occurrences of a function. False if they contradict each other.
bool merge_return_types(type *&kept, type *&other) {
    if (kept == other || is_open(other) || kept->type_code == tk_error || other->type_code == tk_error) {
        other = kept;
        return true;
    }
    if (is_open(kept)) {
        kept = other;
        return true;
    }
    if (kept->type_code == tk_fcharacter && other->type_code == tk_fcharacter && kept->kind == other->kind) {
        const bool kept_assumed = kept->character.length.kind == bound_assumed;
        const bool other_assumed = other->character.length.kind == bound_assumed;
        if (kept_assumed || other_assumed) {
            (kept_assumed ? kept : other) = kept_assumed ? other : kept;
            return true;
        }
    }
    return data_types_agree(kept, other);
}

bool owned_by_routine(const object *o) {
    switch (o->storage_class) {
    case sc_local:
    case sc_external:
    case sc_internal:
    case sc_stmt_func:
    case sc_unspecified: return true;
    default: return false;
    }
}

// The record's object takes over the body of `definition`, and its place is that of the definition.
void move_definition(object *o, object *definition, symbol *s) {
    scope *body = definition->variant.assoc_scope;
    o->source_corresp.decl_position = s->decl_position;
    o->source_corresp.referenced |= definition->source_corresp.referenced;
    o->symbol_link = s;
    o->is_pointer = definition->is_pointer;
    remove_global_object(o);
    add_object(scope_stack[0], o);
    o->variant.assoc_scope = body;
    if (definition->is_fortran_entry) {
        o->is_fortran_entry = true; // its description is the caller's
        return;
    }
    o->is_host = definition->is_host;
    o->is_fortran_entry = false;
    body->assoc_routine = o;
    for (object *owned = body->objects; owned; owned = owned->next) {
        if (owned_by_routine(owned) && owned->assoc.routine == definition) {
            owned->assoc.routine = o;
        }
        if (owned->is_result && owned->variant.result_var_function == definition) {
            owned->variant.result_var_function = o;
        }
    }
}

// Two occurrences of one procedure become the record's object.
symbol *merge(symbol *record, symbol *s) {
    object *o = entity_as<object>(record);
    object *d = entity_as<object>(s);
    const bool defines = d->variant.assoc_scope != nullptr;
    if (defines && o->variant.assoc_scope) {
        return refuse(msg_inconsistent_use_of_previously_specified_external_name_named, record, s);
    }
    routine_variant &known = o->type->routine;
    routine_variant &given = d->type->routine;
    if (record->kind == sk_function && !merge_return_types(known.return_type, given.return_type)) {
        return refuse(msg_return_type_inconsistent_for_a_previous_specification_of_the_function_named, record,
                      s);
    }
    if (given.has_param_info) {
        if (!known.has_param_info) {
            o->type = d->type;
            o->type->routine.assoc_routine = o;
        } else if (!params_agree(o->type, d->type)) {
            return refuse(msg_parameters_conflict_with_previous_specification_of_procedure, record, s);
        } else if (defines) {
            known.param_type_list = given.param_type_list;
            known.is_recursive = given.is_recursive;
        }
    }
    s->entity = o;
    if (defines) {
        move_definition(o, d, s);
    }
    return record;
}

// The record is only an EXTERNAL that nothing was known of: what is known now replaces it.
symbol *replace_unused(symbol *record, symbol *s) {
    object *o = entity_as<object>(record);
    object *d = entity_as<object>(s);
    o->storage_class = d->storage_class;
    o->type = d->type;
    if (o->type->type_code == tk_routine) {
        o->type->routine.assoc_routine = o;
    }
    set_symbol_kind(record, s->kind);
    record->entity = o;
    s->entity = o;
    if (d->variant.assoc_scope) {
        move_definition(o, d, s);
    }
    return record;
}

} // namespace

symbol *enter_external(symbol *s) {
    symbol *record = global_symbol(s->name);
    if (s->aux2 & pf_entered) { // an interface body, at its own end and at that of its host
        return record;
    }
    s->aux2 |= pf_entered;
    if (common_block_exists(s->name)) {
        error_at(msg_common_block_name_is_not_allowed_as_a_procedure_name_named, s->decl_position,
                 s->name->spelling);
        return nullptr;
    }
    if (!record) {
        return make_record(s);
    }
    if (record->entity == s->entity) {
        return record;
    }
    if (record->kind == sk_external_unused) {
        switch (s->kind) {
        case sk_subroutine:
        case sk_function:
        case sk_block_data: return replace_unused(record, s);
        case sk_external_unused: s->entity = record->entity; return record;
        default: break;
        }
    } else if (s->kind == sk_external_unused) {
        switch (record->kind) {
        case sk_subroutine:
        case sk_function:
        case sk_block_data:
            set_symbol_kind(s, record->kind);
            s->aux2 |= pf_entered;
            s->entity = record->entity;
            return record;
        default: break;
        }
    } else if (record->kind == s->kind && (s->kind == sk_subroutine || s->kind == sk_function)) {
        return merge(record, s);
    }
    return refuse(msg_inconsistent_use_of_previously_specified_external_name_named, record, s);
}

void check_folded_name(const name_locator &name) {
    if (!case_sensitive_names) {
        return;
    }
    static char folded_text[stmt_buffer_size + 1];
    const std::uint32_t length = std::min<std::uint32_t>(name.atom->length, stmt_buffer_size);
    std::transform(name.atom->spelling, name.atom->spelling + length, folded_text, char_fold);
    atom *folded;
    intern_name(folded_text, length, folded);
    const symbol *other = folded_external(folded);
    if (!other) {
        symbol *s = new_further_symbol(sk_folded_external, {folded, name.position}, -1);
        s->entity = name.atom;
    } else if (other->entity != name.atom) {
        error_at(msg_name_conflicts_with_previously_used_external_name, name.position,
                 static_cast<const atom *>(other->entity)->spelling);
    }
}

bool common_block_exists(const atom *name) {
    for (const symbol *s = name->first_symbol; s; s = s->next_same_name) {
        if (s->kind == sk_common_block && s->scope_depth != -1) {
            return true;
        }
    }
    return false;
}

} // namespace zf90
