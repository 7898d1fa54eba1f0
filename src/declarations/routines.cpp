// The names of procedures in the scopes around them, entry points, dummy arguments and results.
#include "declarations/routines.h"

#include "declarations/external_names.h"
#include "declarations/names_in_error.h"
#include "declarations/scopes.h"
#include "declarations/variables.h"
#include "il/entries.h"
#include "il/types.h"
#include "source/tokens.h"

#include <algorithm>

namespace zf90 {

namespace {

constexpr error_code no_error{};

bool is_known(const type *t) { return t->type_code != tk_unknown; }

// ---- the procedure's name

// The meaning of a name in the scope of a depth, or null.
symbol *meaning_at(atom *name, std::int32_t depth) {
    const name_locator saved = curr_name;
    curr_name.atom = name;
    symbol *s = lookup_at_depth(depth);
    curr_name = saved;
    return s;
}

// A SUBROUTINE, FUNCTION or ENTRY statement that declares its name.
struct procedure_header {
    bool is_function;
    bool is_entry;
    type *given; // the type before FUNCTION; unknown if there is none, void of a subroutine
    symbol_kind kind = sk_undetermined; // what the name becomes
    std::int32_t outer = 0;             // depth of the scope that the name belongs to
    object *reused = nullptr;           // the object that the name had, if it is to stay
    bool hidden = false; // a generic has the name: the procedure itself is not seen by look-ups
};

bool is_internal(const procedure_header &h) {
    return h.kind == sk_internal_subroutine || h.kind == sk_internal_function;
}

// A variable that an ENTRY of a function may still become: a POINTER has been declared before.
bool is_undefined_pointer(const symbol *s) {
    if (s->kind != sk_variable || s->var_flags != 0) {
        return false;
    }
    const object *o = entity_as<object>(s);
    return o->is_pointer && !o->is_parameter && !o->is_result && !o->is_saved;
}

error_code check_entry(const procedure_header &h, atom *name) {
    // Only a subroutine is tested here: an ENTRY in an internal function has no error 194. Intended.
    if (h.kind == sk_internal_subroutine && unit_kind_of(h.outer) != uk_module) {
        return msg_entry_statement_is_not_allowed;
    }
    const symbol *local = name ? meaning_at(name, curr_scope_depth) : nullptr;
    if (!local) {
        return no_error;
    }
    const bool may_be_result =
        h.is_function && (local->kind == sk_undetermined || is_undefined_pointer(local));
    return may_be_result ? no_error : msg_declaration_conflicts_with_previous_specifications;
}

error_code check_existing(procedure_header &h, symbol *&s, const name_locator &name) {
    const bool is_external = !is_internal(h);
    switch (s->kind) {
    case sk_undetermined:
        if (is_external && common_block_exists(name.atom)) {
            return msg_declaration_conflicts_with_previous_specifications;
        }
        if (!(s->flags & sf_typed)) {
            return no_error;
        }
        if (entity_as<type>(s)->type_code == tk_error) {
            s->flags &= ~std::uint32_t{sf_typed}; // what was declared in error may have been this procedure
            return no_error;
        }
        if (h.is_function && h.is_entry) {
            h.given = entity_as<type>(s);
            return no_error;
        }
        return msg_declaration_conflicts_with_previous_specifications;
    case sk_module_procedure:
        if (!is_external && unit_kind_of(h.outer) != uk_module) {
            s->aux2 |= pf_body_seen; // there will be no complaint that the body is missing
            return msg_previously_mentioned_as_module_procedure;
        }
        h.reused = entity_as<object>(s);
        return no_error;
    case sk_dummy:
        if (interface_depth == 0) {
            return msg_declaration_conflicts_with_previous_specifications;
        }
        h.kind = h.is_function ? sk_dummy_function : sk_dummy_subroutine;
        h.reused = entity_as<object>(s);
        return no_error;
    case sk_interface: {
        const scope_row &row = scope_stack[h.outer];
        const auto *generic = entity_as<interface>(s);
        if (interface_depth > 0) {
            if (generic != row.last_interface && generic != row.current_interface) {
                return msg_declaration_conflicts_with_previous_specifications;
            }
            s = new_further_symbol(sk_undetermined, name, h.outer);
            h.hidden = true;
            return no_error;
        }
        symbol *specific = !is_external && unit_kind_of(h.outer) == uk_module
                               ? hidden_module_procedure(name.atom, h.outer)
                               : nullptr;
        if (!specific) {
            return msg_declaration_conflicts_with_previous_specifications;
        }
        s = specific;
        h.reused = entity_as<object>(s);
        return no_error;
    }
    case sk_host_candidate: s->flags |= marks_from_within(s); return no_error;
    default: return msg_declaration_conflicts_with_previous_specifications;
    }
}

// Gives a routine's object its return type; an object that was no routine before (a dummy argument) becomes
// one.
void make_routine(object *o, type *return_type) {
    if (o->type && o->type->type_code == tk_routine) {
        o->type->routine.return_type = return_type;
    } else {
        o->type = new_routine_type(o, return_type);
    }
}

symbol *declare_procedure(procedure_header h, symbol *s, name_locator &name, entry_description *&entry) {
    h.outer = curr_scope_depth - 1;
    const bool is_external = curr_scope_depth == 1 || interface_depth > 0;
    h.kind = is_external ? (h.is_function ? sk_function : sk_subroutine)
                         : (h.is_function ? sk_internal_function : sk_internal_subroutine);

    error_code code = h.is_entry ? check_entry(h, name.atom) : no_error;
    if (code == no_error && !s) {
        if (is_external && name.atom && common_block_exists(name.atom)) {
            code = msg_declaration_conflicts_with_previous_specifications;
        } else {
            s = new_symbol(sk_undetermined, name, h.outer);
        }
    } else if (code == no_error) {
        code = check_existing(h, s, name);
    }

    if (code != no_error) {
        error_at(code, name.position);
        name.atom = nullptr;
        s = new_symbol(h.kind, name, h.outer);
    }
    if (s->name == error_atom) {
        // The type of a function that is in error anyway shall bring no further message.
        if (h.is_function && !is_known(h.given)) {
            h.given = error_type();
        }
        h.reused = nullptr;
    }
    set_symbol_kind(s, h.kind);
    s->decl_position = name.position;
    if (h.reused) {
        type *previous = h.reused->type;
        if (h.is_function && h.kind == sk_dummy_function && !is_known(h.given) &&
            previous->type_code != tk_routine) {
            h.given = previous;
        }
        make_routine(h.reused, h.given);
        if (h.kind == sk_dummy_function || h.kind == sk_dummy_subroutine) {
            h.reused->storage_class = sc_external;
        }
        tie_to_symbol(h.reused, s);
        s->entity = h.reused;
    } else {
        s->entity = new_routine_object(s, h.given);
    }
    if (is_known(h.given)) {
        s->flags |= sf_typed;
    }
    if (h.hidden) {
        s->flags &= ~std::uint32_t{sf_visible};
    }
    object *routine = entity_as<object>(s);
    if (is_internal(h)) {
        add_object(scope_stack[h.outer], routine);
    }
    entry = new_unit_routine(routine);
    return s;
}

} // namespace

object *new_routine_object(symbol *s, type *return_type) {
    object *o = new_object();
    tie_to_symbol(o, s);
    std::int32_t depth = curr_scope_depth - 1;
    if (s->kind == sk_subroutine || s->kind == sk_function) {
        depth = 0;
    } else if (s->kind == sk_module_procedure) {
        depth = 1;
    }
    o->source_corresp.scope_depth = static_cast<std::uint8_t>(depth);
    const bool is_dummy = s->kind == sk_dummy_function || s->kind == sk_dummy_subroutine;
    o->storage_class = depth != 0 && !is_dummy ? sc_internal : sc_external;
    if (depth != 0) {
        o->assoc.routine = routine_at(depth);
    }
    o->type = new_routine_type(o, return_type);
    return o;
}

symbol *hidden_module_procedure(const atom *name, std::int32_t depth) {
    for (symbol *s = name->first_symbol; s; s = s->next_same_name) {
        if (s->kind == sk_module_procedure && s->scope_depth == depth && !(s->flags & sf_visible)) {
            return s;
        }
    }
    return nullptr;
}

routine_variant &routine_of(const object *o) { return o->type->routine; }

entry_description *new_unit_routine(object *routine) {
    scope_row &row = curr_row();
    routine->variant.assoc_scope = row.il_scope;
    if (routine->type->type_code == tk_routine) {
        routine_of(routine).assoc_routine = routine;
    }
    if (!row.il_scope->assoc_routine) {
        row.il_scope->assoc_routine = routine;
        return nullptr;
    }
    routine->is_fortran_entry = true;
    entry_description *entry = new_entry_description();
    entry->assoc_routine = routine;
    add_entry(row, entry);
    return entry;
}

symbol *declare_subroutine(symbol *s, name_locator &name, bool is_entry, entry_description *&entry) {
    return declare_procedure({.is_function = false, .is_entry = is_entry, .given = void_type()}, s, name,
                             entry);
}

symbol *declare_function(symbol *s, name_locator &name, type *result_type, bool is_entry,
                         entry_description *&entry) {
    return declare_procedure(
        {.is_function = true, .is_entry = is_entry, .given = result_type ? result_type : unknown_type()}, s,
        name, entry);
}

// ---- dummy arguments

namespace {

// What a variable has been so far that no dummy argument can be; the first that holds.
error_code check_dummy_variable(const symbol *s, bool is_entry) {
    const object *o = entity_as<object>(s);
    // To stand in a list of a NAMELIST or DATA statement is a use too, but has a message of its own.
    const bool is_listed = (s->var_flags & (vf_initialized | vf_in_namelist)) != 0;
    if (is_entry && (s->flags & (is_listed ? sf_used_in_body : sf_referenced))) {
        return msg_prior_use_is_inconsistent_with_specification_as_dummy;
    }
    if (s->var_flags & vf_in_common) {
        return msg_variable_declared_in_common_is_not_allowed;
    }
    if (s->var_flags & vf_equivalenced) {
        return msg_variable_appearing_in_equivalence_is_not_allowed;
    }
    if (s->var_flags & vf_initialized) {
        return msg_data_initialized_variable_is_not_allowed;
    }
    if (s->flags & sf_saved) {
        return msg_saved_variable_is_not_allowed;
    }
    if (s->var_flags & vf_in_namelist) {
        return msg_member_of_namelist_group_is_not_allowed;
    }
    return o->is_result ? msg_function_result_name_is_not_allowed : no_error;
}

object *new_dummy_object(symbol *s, type *t) {
    object *o = new_object();
    tie_to_symbol(o, s);
    o->type = t;
    o->storage_class = sc_local;
    o->is_parameter = true;
    o->assoc.routine = curr_routine();
    return o;
}

// Makes a name that has only a type a dummy argument, of data or, for EXTERNAL, a procedure.
void make_dummy(symbol *s, symbol_kind kind, type *t) {
    set_symbol_kind(s, kind);
    object *o = new_dummy_object(s, t);
    if (kind != sk_dummy) {
        o->storage_class = sc_external;
        o->type = new_routine_type(o, t);
    }
    s->entity = o;
    if (s->name != error_atom) {
        add_object(curr_row(), o);
    }
}

// A dummy argument already: it may be shared by several lists, but stands on each of them once.
error_code check_repeated_dummy(const dummy_list &list, const symbol *s) {
    return !list.entry || (s->var_flags & vf_on_entry_list)
               ? msg_variable_already_specified_in_dummy_argument_list
               : no_error;
}

// Whether a statement ahead of the ENTRY has taken the name for something of its own.
bool is_used_before(const dummy_list &list, const symbol *s) {
    return list.entry && (s->flags & sf_used_in_body) != 0;
}

error_code check_dummy(const dummy_list &list, symbol *s, const name_locator &name) {
    switch (s->kind) {
    case sk_undetermined:
    case sk_data_name:
    case sk_external_pending:
    case sk_host_candidate:
        if (is_used_before(list, s)) {
            return msg_prior_use_is_inconsistent_with_specification_as_dummy;
        }
        break;
    default: break;
    }
    switch (s->kind) {
    case sk_variable: {
        object *o = entity_as<object>(s);
        if (o->is_parameter) {
            return check_repeated_dummy(list, s);
        }
        const error_code code = check_dummy_variable(s, list.entry != nullptr);
        if (code == no_error) {
            o->is_parameter = true;
            o->is_auto = false;
            o->storage_class = sc_local;
            o->assoc.routine = curr_routine();
            s->decl_position = name.position;
            o->source_corresp.decl_position = name.position;
        }
        return code;
    }
    case sk_dummy:
    case sk_dummy_function:
    case sk_dummy_subroutine:
    case sk_dummy_procedure: return check_repeated_dummy(list, s);
    case sk_undetermined:
    case sk_data_name: make_dummy(s, sk_dummy, entity_as<type>(s)); return no_error;
    case sk_external_pending: {
        type *t = entity_as<type>(s);
        make_dummy(s, is_known(t) ? sk_dummy_function : sk_dummy_procedure, t);
        return no_error;
    }
    case sk_host_candidate:
        s->flags |= marks_from_within(s);
        make_dummy(s, sk_dummy, unknown_type());
        return no_error;
    default: return msg_identifier_is_not_variable;
    }
}

void append_dummy(dummy_list &list, object *o) {
    object_list_member *member = new_object_list_member();
    member->object = o;
    if (!list.entry) {
        add_parameter(curr_row(), member);
    } else if (list.last) {
        list.last->next = member;
    } else {
        list.entry->parameters = member;
    }
    list.last = member;
}

} // namespace

dummy_list begin_dummy_list(entry_description *entry) {
    return {.entry = entry, .last = nullptr, .next_alternate = curr_unit.alternate_returns};
}

void declare_dummy(dummy_list &list, symbol *s, name_locator &name) {
    if (s) {
        if (const error_code code = check_dummy(list, s, name); code != no_error) {
            error_at(code, name.position);
            name.atom = nullptr;
        }
    }
    if (!s || !name.atom) {
        s = new_symbol(sk_undetermined, name, curr_scope_depth);
        make_dummy(s, sk_dummy, name.atom ? unknown_type() : error_type());
    }
    if (list.entry) {
        s->var_flags |= vf_on_entry_list;
    }
    append_dummy(list, entity_as<object>(s));
}

void declare_alternate_return(dummy_list &list, source_pos position) {
    if (!list.next_alternate) {
        object *o = new_object();
        o->source_corresp.decl_position = position;
        o->source_corresp.scope_depth = static_cast<std::uint8_t>(curr_scope_depth);
        o->type = stmt_label_type();
        o->storage_class = sc_local;
        o->is_parameter = true;
        o->assoc.routine = curr_routine();
        add_object(curr_row(), o);
        object_list_member *member = new_object_list_member();
        member->object = o;
        object_list_member *last = curr_unit.last_alternate_return;
        (last ? last->next : curr_unit.alternate_returns) = member;
        curr_unit.last_alternate_return = member;
        append_dummy(list, o);
        return;
    }
    append_dummy(list, list.next_alternate->object);
    list.next_alternate = list.next_alternate->next;
}

void end_dummy_list(dummy_list &list) {
    if (!list.entry) {
        return;
    }
    for (const object_list_member *m = list.entry->parameters; m; m = m->next) {
        if (symbol *s = m->object->symbol_link) {
            s->var_flags &= ~std::uint32_t{vf_on_entry_list};
        }
    }
}

// ---- results

namespace {

// Whether a name is that of the unit's function or of one of its entries, other than the routine itself. Its
// symbol is found in the scope around the unit, not by a walk over the entries.
bool is_entry_name(const atom *name, const object *routine) {
    for (const symbol *s = name->first_symbol; s && s->scope_depth >= curr_scope_depth - 1;
         s = s->next_same_name) {
        if (s->scope_depth == curr_scope_depth - 1 &&
            (s->kind == sk_function || s->kind == sk_internal_function)) {
            const object *o = entity_as<object>(s);
            if (o != routine && o->variant.assoc_scope == curr_row().il_scope) {
                return true;
            }
        }
    }
    return false;
}

error_code check_result(const symbol *s, const object *routine) {
    switch (s->kind) {
    case sk_dummy:
    case sk_dummy_function:
    case sk_dummy_subroutine:
    case sk_dummy_procedure: return msg_declaration_conflicts_with_previous_specifications;
    case sk_variable:
        if (entity_as<object>(s)->is_parameter) {
            return msg_declaration_conflicts_with_previous_specifications;
        }
        break;
    default: break;
    }
    return is_entry_name(s->name, routine) ? msg_result_name_must_not_be_same_as_entry : no_error;
}

// Puts the result into the storage that all results of the unit share. It is made with the first ENTRY.
void overlay_result(object *result) {
    object *main_result = curr_row().il_scope->function_result_var;
    if (!main_result || main_result == result) {
        return;
    }
    if (main_result->storage_class != sc_associated) {
        object *storage = new_object();
        storage->source_corresp.decl_position = main_result->source_corresp.decl_position;
        storage->source_corresp.referenced = main_result->source_corresp.referenced;
        storage->source_corresp.scope_depth = static_cast<std::uint8_t>(curr_scope_depth);
        storage->storage_class = sc_local;
        storage->assoc.routine = curr_routine();
        storage->type = new_type(tk_association);
        add_object(curr_row(), storage);
        main_result->storage_class = sc_associated;
        main_result->assoc.variable = storage;
        main_result->association_offset = 0;
        raise_result_storage(main_result);
    }
    result->storage_class = sc_associated;
    result->assoc.variable = main_result->assoc.variable;
    result->association_offset = 0;
    raise_result_storage(result);
}

} // namespace

void declare_result(symbol *s, name_locator &name, entry_description *entry) {
    object *routine = entry ? entry->assoc_routine : curr_row().il_scope->assoc_routine;
    symbol *function = routine->symbol_link;
    type *&return_type = routine_of(routine).return_type;

    if (s && s->scope_depth == curr_scope_depth && name.atom) {
        if (const error_code code = check_result(s, routine); code != no_error) {
            error_at(code, name.position);
            name.atom = nullptr;
            give_up_type(s); // it is declared as what it cannot be both
        }
    }
    if (!s || s->scope_depth != curr_scope_depth || !name.atom) {
        s = new_symbol(sk_undetermined, name, curr_scope_depth);
        // A function whose name was refused may still declare the type of its result.
        const bool is_open = name.atom && function->name == error_atom && return_type->type_code == tk_error;
        if (is_known(return_type) && !is_open) {
            s->entity = return_type;
            s->flags |= sf_typed | (function->flags & sf_type_implicit);
        }
    }
    s = make_variable(s, name);
    object *result = entity_as<object>(s);
    const bool is_shared = result->is_result; // an ENTRY may name the result of the function as its own
    result->is_result = true;
    if ((!is_known(return_type) || (function->flags & sf_type_implicit)) && is_known(result->type)) {
        return_type = result->type;
        function->flags |= s->flags & (sf_typed | sf_type_implicit);
    }
    if (!is_shared) {
        result->variant.result_var_function = routine;
    }
    if (entry) {
        entry->function_result_var = result;
        overlay_result(result);
    } else {
        curr_row().il_scope->function_result_var = result;
    }
}

void raise_result_storage(object *result) {
    if (!result->is_result || result->storage_class != sc_associated) {
        return;
    }
    complete_type(result->type);
    type *storage = result->assoc.variable->type;
    storage->size = std::max(storage->size, result->type->size);
    storage->alignment = std::max(storage->alignment, result->type->alignment);
}

} // namespace zf90
