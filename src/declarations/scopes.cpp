// The rows of the scope stack, their symbols' fate when a row is closed, and the lists of the IL scopes.
#include "declarations/scopes.h"

#include "declarations/symbols.h"
#include "il/entries.h"
#include "il/types.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>

namespace zf90 {

scope_row *scope_stack;
std::int32_t curr_scope_depth = -1;
int interface_depth;

program_unit_kind curr_unit_kind;
std::uint32_t implicit_letter_set;
unit_state curr_unit;

namespace {

constexpr std::int32_t min_stack_growth = 6; // rows

std::int32_t scope_stack_size;

// The global scope's list has an object for each external name of the source, and a definition moves to its
// end: what stands before each of its objects is kept here, so that taking one out is no search.
std::unordered_map<const object *, object *> global_predecessor;

std::unordered_map<const atom *, object *> common_storage;

// One more row at least; doubled, so that the copying stays in proportion to the rows.
void grow_scope_stack() {
    const std::int32_t size = scope_stack_size < min_stack_growth ? min_stack_growth : 2 * scope_stack_size;
    scope_stack = static_cast<scope_row *>(
        sys_realloc(scope_stack, static_cast<std::size_t>(scope_stack_size) * sizeof(scope_row),
                    static_cast<std::size_t>(size) * sizeof(scope_row)));
    scope_stack_size = size;
}

template <class T> void append(T *&head, T *&tail, T *item) {
    item->next = nullptr;
    if (tail) {
        tail->next = item;
    } else {
        head = item;
    }
    tail = item;
}

bool is_module_row(const scope_row &row) {
    return row.il_scope && row.il_scope->assoc_routine &&
           row.il_scope->assoc_routine->storage_class == sc_module;
}

// A COMMON block outlives its unit: the first one of its name that is left becomes the global record.
void leave_common_block(symbol *s, bool in_module) {
    if (!(s->flags & sf_visible) && s->scope_depth == 0) {
        return;
    }
    const bool recorded = global_symbol(s->name) != nullptr;
    unlink_symbol(s);
    if (recorded) {
        return;
    }
    s->flags &= ~std::uint32_t{sf_visible};
    s->scope_depth = 0;
    if (!in_module) {
        s->next_in_scope = nullptr;
    }
    link_symbol(s);
}

void leave_symbol(symbol *s, bool in_module) {
    switch (s->kind) {
    case sk_external_unused:
        // An external that is only declared survives to the output.
        if (object *o = entity_as<object>(s);
            o && !(s->flags & sf_referenced) && o->storage_class == sc_unspecified) {
            o->source_corresp.referenced = true;
        }
        [[fallthrough]];
    case sk_subroutine:
    case sk_function:
    case sk_program:
    case sk_block_data:
    case sk_module:
        if ((s->flags & sf_visible) || s->scope_depth != 0) {
            unlink_symbol(s);
        }
        break;
    case sk_common_block: leave_common_block(s, in_module); break;
    case sk_folded_external: break;
    case sk_host_link: {
        // The marks replace those of the target and are not joined with them. This is intended: it is how the
        // marks of an inner scope reach the host.
        constexpr std::uint32_t marks = sf_referenced | sf_used_as_bound;
        if (symbol *target = entity_as<symbol>(s)) {
            target->flags = (target->flags & ~marks) | (s->flags & marks);
        }
        unlink_symbol(s);
        break;
    }
    default: unlink_symbol(s); break;
    }
}

// Whether a symbol of a module's row is among the names that the module gives away.
bool is_given_away(const symbol *s) {
    constexpr std::uint32_t tested = sf_public | sf_visible | sf_inferred | sf_ambiguous;
    constexpr std::uint32_t wanted = sf_public | sf_visible;
    if ((s->flags & tested) != wanted) {
        return false;
    }
    switch (s->kind) {
    case sk_derived_type:
    case sk_variable:
    case sk_subroutine:
    case sk_function:
    case sk_internal_subroutine:
    case sk_internal_function:
    case sk_specific_function:
    case sk_specific_subroutine:
    case sk_intrinsic_function:
    case sk_intrinsic_subroutine:
    case sk_interface:
    case sk_namelist: return true;
    default: return false;
    }
}

// Links the public symbols of a module's row, in the order of their making, and hangs them on the module's
// symbol and on the record of its name. The row's list is gone after that.
void build_public_list(scope_row &row, symbol *module) {
    symbol *head = nullptr;
    symbol *tail = nullptr;
    for (symbol *s = row.first_symbol, *next; s; s = next) {
        next = s->next_in_scope;
        if (!is_given_away(s)) {
            continue;
        }
        (tail ? tail->next_in_scope : head) = s;
        s->next_in_scope = nullptr;
        tail = s;
    }
    module->aux = head;
    if (symbol *record = global_symbol(module->name); record && record->kind == sk_module) {
        record->aux = head;
    }
}

// The rules of the scopes closed so far; most units of a source have those of the one before.
const scope_rules *latest_rules;

const scope_rules *rules_of_row(const scope_row &row) {
    if (latest_rules && latest_rules->implicit_none == row.implicit_none &&
        std::equal(std::begin(row.implicit_types), std::end(row.implicit_types),
                   latest_rules->implicit_types)) {
        return latest_rules;
    }
    scope_rules *rules = il_new<scope_rules>();
    rules->implicit_none = row.implicit_none;
    std::copy(std::begin(row.implicit_types), std::end(row.implicit_types), rules->implicit_types);
    latest_rules = rules;
    return rules;
}

template <class T> T *last_of(T *list) {
    while (list && list->next) {
        list = list->next;
    }
    return list;
}

// The depth of the row that a routine's scope has while it is open.
std::int32_t depth_of(const scope *s) {
    return s->assoc_routine ? s->assoc_routine->source_corresp.scope_depth + 1 : 0;
}

} // namespace

void scopes_init() {
    latest_rules = nullptr;
    curr_scope_depth = -1;
    interface_depth = 0;
    curr_unit_kind = uk_none;
    implicit_letter_set = 0;
    curr_unit = {};
    global_predecessor.clear();
    common_storage.clear();
}

scope *push_scope(scope_row_kind kind) {
    if (curr_scope_depth + 1 == scope_stack_size) {
        grow_scope_stack();
    }
    ++curr_scope_depth;
    scope_row &row = curr_row();
    row = {};
    row.row_kind = kind;
    if (curr_scope_depth > 0) {
        // A host's IMPLICIT statements reach its internal procedures, but no interface body. IMPLICIT NONE
        // needs no copy: it has emptied the table.
        const bool is_body = kind == sr_unit && interface_depth > 0;
        const scope_row &model = scope_stack[is_body ? 0 : curr_scope_depth - 1];
        for (std::size_t i = 0; i < std::size(row.implicit_types); ++i) {
            row.implicit_types[i] = model.implicit_types[i];
        }
    }
    implicit_letter_set = 0;
    if (kind != sr_use) {
        row.il_scope = new_scope();
    }
    row.names_public = curr_scope_depth == 0;
    return row.il_scope;
}

void pop_scope() {
    scope_row &row = curr_row();
    if (row.il_scope) {
        row.il_scope->rules = rules_of_row(row);
        row.il_scope->saves_all = global_save;
    }
    const bool in_module = is_module_row(row);
    for (symbol *s = row.first_symbol, *next; s; s = next) {
        next = s->next_in_scope;
        if (s->name != error_atom) {
            leave_symbol(s, in_module);
        }
    }
    if (in_module && row.row_kind == sr_unit) {
        symbol *module = row.il_scope->assoc_routine->symbol_link;
        if (module && !module->aux) {
            build_public_list(row, module);
        }
    }
    --curr_scope_depth;
}

bool is_open_scope(const scope *s) {
    if (curr_row().il_scope == s) { // an interface body's routine has no depth of its own
        return true;
    }
    const std::int32_t depth = depth_of(s);
    return depth <= curr_scope_depth && scope_stack[depth].il_scope == s;
}

bool saves_all_at(std::int32_t depth) {
    const scope *s = depth > 0 && depth < curr_scope_depth ? scope_stack[depth].il_scope : nullptr;
    return s && s->rules ? s->saves_all : global_save;
}

void reopen_scope(scope *s, closed_state &outer) {
    const std::int32_t depth = depth_of(s);
    while (depth >= scope_stack_size) {
        grow_scope_stack();
    }
    scope_row &row = scope_stack[depth];
    outer = {row, depth, curr_scope_depth, curr_unit, curr_unit_kind, interface_depth};
    row = {};
    row.row_kind = s->assoc_routine->storage_class == sc_stmt_func ? sr_stmt_function : sr_unit;
    row.il_scope = s;
    row.last_parameter = last_of(s->parameters);
    row.last_type = last_of(s->types);
    row.last_object = last_of(s->objects);
    row.last_label = last_of(s->labels);
    row.last_entry = last_of(s->entries);
    row.last_namelist = last_of(s->namelist_groups);
    row.last_interface = last_of(s->interfaces);
    row.implicit_none = s->rules->implicit_none;
    std::copy(std::begin(s->rules->implicit_types), std::end(s->rules->implicit_types), row.implicit_types);
    row.spec_done = true;
    curr_scope_depth = depth;
    curr_unit = {};
    curr_unit.spec_part_over = true;
    curr_unit.global_save = s->saves_all;
    interface_depth = 0;
    curr_unit_kind = unit_kind_of(depth);
}

void close_reopened_scope(const closed_state &outer) {
    scope_stack[outer.depth] = outer.row;
    curr_scope_depth = outer.scope_depth;
    curr_unit = outer.unit;
    curr_unit_kind = outer.unit_kind;
    interface_depth = outer.interfaces;
}

void set_standard_implicit_types(scope_row &row) {
    for (std::size_t i = 0; i < std::size(row.implicit_types); ++i) {
        const bool integer = i >= 'I' - 'A' && i <= 'N' - 'A';
        row.implicit_types[i] = integer ? default_integer() : default_real();
    }
}

// A derived type has no routine of its own, nor has a row of USE: the nearest row below that has one counts.
object *routine_at(std::int32_t depth) {
    for (; depth > 0; --depth) {
        const scope *s = scope_stack[depth].il_scope;
        if (s && s->assoc_routine) {
            return s->assoc_routine;
        }
    }
    return nullptr;
}

program_unit_kind unit_kind_of(std::int32_t depth) {
    if (depth < 1 || depth > curr_scope_depth) {
        return uk_none;
    }
    const object *routine = routine_at(depth);
    if (!routine) {
        return uk_none;
    }
    switch (routine->storage_class) {
    case sc_local:
    case sc_external:
    case sc_internal:
    case sc_unspecified:
        return routine->type->routine.return_type->type_code == tk_void ? uk_subroutine : uk_function;
    case sc_stmt_func: return uk_function;
    case sc_module: return uk_module;
    case sc_program: return uk_program;
    case sc_blockdata: return uk_block_data;
    default: return uk_none;
    }
}

void add_parameter(scope_row &row, object_list_member *member) {
    append(row.il_scope->parameters, row.last_parameter, member);
}

void add_type(scope_row &row, type *t) { append(row.il_scope->types, row.last_type, t); }

void add_object(scope_row &row, object *o) {
    if (row.row_kind == sr_global) {
        global_predecessor[o] = row.last_object;
        if (o->storage_class == sc_common) {
            common_storage.emplace(o->source_corresp.name, o);
        }
    }
    append(row.il_scope->objects, row.last_object, o);
}

void remove_global_object(object *o) {
    const auto place = global_predecessor.find(o);
    if (place == global_predecessor.end()) {
        return;
    }
    scope_row &row = scope_stack[0];
    object *before = place->second;
    global_predecessor.erase(place);
    (before ? before->next : row.il_scope->objects) = o->next;
    if (o->next) {
        global_predecessor[o->next] = before;
    } else {
        row.last_object = before;
    }
    o->next = nullptr;
}

object *find_common_storage(const atom *name) {
    const auto found = common_storage.find(name);
    return found == common_storage.end() ? nullptr : found->second;
}

void add_label(scope_row &row, label *l) { append(row.il_scope->labels, row.last_label, l); }

void add_entry(scope_row &row, entry_description *entry) {
    append(row.il_scope->entries, row.last_entry, entry);
}

void add_namelist_group(scope_row &row, namelist_group *group) {
    append(row.il_scope->namelist_groups, row.last_namelist, group);
}

void add_interface(scope_row &row, interface *i) { append(row.il_scope->interfaces, row.last_interface, i); }

} // namespace zf90
