// The copiers. Each looks for an earlier copy first, in one table by scope and origin. Expressions are shared
// with the module unless they name something that has been copied.
#include "modules/copies.h"

#include "declarations/external_names.h"
#include "declarations/interfaces.h"
#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "driver/deep_call.h"
#include "il/constants.h"
#include "il/entries.h"
#include "il/types.h"

#include <algorithm>
#include <unordered_map>
#include <vector>

namespace zf90 {

namespace {

// ---- what has been copied

enum copy_class : std::uint8_t { copied_variable, copied_routine, copied_type, imported_symbol };

// A copy by the scope that it is in and by where it comes from: its name in its module, the module or the
// storage that it lies in, and the place there.
struct copy_key {
    const void *scope;
    const void *name;
    const void *origin;
    std::int32_t offset;
    copy_class what;

    friend bool operator==(const copy_key &, const copy_key &) = default;
};

struct copy_hash {
    std::size_t operator()(const copy_key &k) const {
        std::uint64_t h = static_cast<std::uint32_t>(k.offset) ^ (std::uint64_t{k.what} << 32);
        for (const void *p : {k.scope, k.name, k.origin}) {
            h = (h ^ reinterpret_cast<std::uintptr_t>(p)) * 0x9e3779b97f4a7c15;
            h ^= h >> 29;
        }
        return static_cast<std::size_t>(h);
    }
};

std::unordered_map<copy_key, named_entry *, copy_hash> copies;
std::unordered_map<const atom *, object *> module_copies;

template <class T> T *find_copy(const copy_key &key) {
    const auto found = copies.find(key);
    return found == copies.end() ? nullptr : static_cast<T *>(found->second);
}

const scope *scope_at(std::int32_t level) { return scope_stack[level].il_scope; }

object *copy_object(const object *source) {
    object *o = new_object();
    *o = *source;
    o->il_id = source->il_id & il_check_mark;
    o->symbol_link = nullptr;
    o->next = nullptr;
    return o;
}

bool is_module(const object *o) { return o && o->storage_class == sc_module; }

// The module that a procedure or variable comes from; null for what is no module's.
object *module_of(const object *o) {
    switch (o->storage_class) {
    case sc_local:
    case sc_internal: return is_module(o->assoc.routine) ? o->assoc.routine : nullptr;
    case sc_use_associated:
    case sc_mod_proc: return o->assoc.module;
    default: return nullptr;
    }
}

copy_key key_of_routine(const object *source, std::int32_t level) {
    return {scope_at(level), source->source_corresp.name, use_module_object(module_of(source)), 0,
            copied_routine};
}

copy_key key_of_module_variable(const object *source, std::int32_t level) {
    return {scope_at(level), source->source_corresp.name, use_module_object(module_of(source)),
            source->association_offset, copied_variable};
}

copy_key key_of_associated(const object *source, const object *storage, std::int32_t level) {
    return {scope_at(level), source->source_corresp.name, storage, source->association_offset,
            copied_variable};
}

// A type that is no module's is itself and no other, whatever its name.
copy_key key_of_type(const type *source, std::int32_t level) {
    if (!source->derived.module) {
        return {scope_at(level), source, nullptr, 0, copied_type};
    }
    return {scope_at(level), source->source_corresp.name, use_module_object(source->derived.module), 0,
            copied_type};
}

bool is_module_variable(const object *o) {
    return (o->storage_class == sc_local || o->storage_class == sc_use_associated) && module_of(o);
}

} // namespace

object *use_module_object(object *module) {
    if (module->variant.assoc_scope) {
        return module; // of this source
    }
    const atom *name = module->source_corresp.name;
    const symbol *known = name ? global_symbol(name) : nullptr;
    if (known && known->kind == sk_module && entity_as<object>(known)->variant.assoc_scope) {
        return entity_as<object>(known);
    }
    object *&copy = module_copies[name];
    if (!copy) {
        copy = copy_object(module);
        copy->type = use_type(module->type, nullptr, 0);
        add_object(scope_stack[0], copy);
    }
    return copy;
}

// ---- types

namespace {

// A module shows either all components of a type or none.
bool shows_components(const type *t) { return t->derived.first_field && t->derived.first_field->is_public; }

void copy_components(const type *source, type *copy, std::int32_t level) {
    object *last = nullptr;
    copy->derived.first_field = nullptr;
    if (!shows_components(source)) {
        return;
    }
    for (const object *f = source->derived.first_field; f; f = f->next) {
        object *component = copy_object(f);
        component->type = use_type(f->type, nullptr, level);
        component->assoc.derived_type = copy;
        (last ? last->next : copy->derived.first_field) = component;
        last = component;
    }
}

type *fresh_copy(const type *source) {
    type *copy = new_type(source->type_code);
    copy_type(source, copy);
    copy->il_id = source->il_id & il_check_mark;
    copy->symbol_link = nullptr;
    return copy;
}

type *use_derived_type_of_module(type *source, type *existing, std::int32_t level) {
    const copy_key key = key_of_type(source, level);
    if (!existing) {
        if (type *earlier = find_copy<type>(key)) {
            return earlier;
        }
    }
    type *copy = existing ? existing : new_type(tk_derived_type);
    copies[key] = copy; // its components may lead back to it
    copy_type(source, copy);
    copy->il_id = source->il_id & il_check_mark;
    copy->symbol_link = nullptr;
    if (source->derived.module) {
        copy->derived.module = use_module_object(source->derived.module);
    }
    add_type(scope_stack[level], copy);
    copy_components(source, copy, level);
    return copy;
}

// Several entries of a procedure may have one dummy procedure.
type *use_param_type(type *source, std::int32_t level) {
    if (source->type_code != tk_routine) {
        return use_type(source, nullptr, level);
    }
    const copy_key key{scope_at(level), source, nullptr, 0, copied_type};
    type *copy = find_copy<type>(key);
    if (!copy) {
        copies[key] = copy = use_type(source, nullptr, level);
    }
    return copy;
}

type *use_routine_type(const type *source, std::int32_t level) {
    type *copy = fresh_copy(source);
    copy->routine.return_type = use_type(source->routine.return_type, nullptr, level);
    param_type *last = nullptr;
    copy->routine.param_type_list = nullptr;
    for (const param_type *p = source->routine.param_type_list; p; p = p->next) {
        param_type *param = new_param_type();
        *param = *p;
        param->il_id = p->il_id & il_check_mark;
        param->symbol_link = nullptr;
        param->next = nullptr;
        param->type = use_param_type(p->type, level);
        (last ? last->next : copy->routine.param_type_list) = param;
        last = param;
    }
    return copy;
}

type *use_type_of_code(type *source, type *existing, std::int32_t level) {
    switch (source->type_code) {
    case tk_fcharacter:
    case tk_association: {
        type *own = type_of_this_compilation(source);
        return own == source ? fresh_copy(source) : own;
    }
    case tk_farray: {
        type *copy = fresh_copy(source);
        copy->array.element_type = use_type(source->array.element_type, nullptr, level);
        return copy;
    }
    case tk_routine: return use_routine_type(source, level);
    case tk_derived_type: return use_derived_type_of_module(source, existing, level);
    default: return type_of_this_compilation(source);
    }
}

} // namespace

type *type_of_this_compilation(type *t) {
    const std::uint32_t kind = t->kind;
    switch (t->type_code) {
    case tk_void: return void_type();
    case tk_stmt_label: return stmt_label_type();
    case tk_format: return format_type();
    case tk_unspec_routine: return unspec_routine_type();
    case tk_error: return error_type();
    case tk_unknown: return unknown_type();
    case tk_integer: return kind < integer_kind_count ? integer_type(kind) : t;
    case tk_logical: return kind < logical_kind_count ? logical_type(kind) : t;
    case tk_float: return kind < real_kind_count ? real_type(kind) : t;
    case tk_complex: return kind < real_kind_count ? complex_type(kind) : t;
    case tk_fcharacter:
        if (kind < character_kind_count && t->character.length.kind == bound_constant) {
            return character_type(kind, t->character.length.value);
        }
        return kind < character_kind_count && t->character.length.kind == bound_assumed
                   ? assumed_character_type(kind)
                   : t;
    default: return t;
    }
}

type *use_type(type *source, type *existing, std::int32_t level) {
    return deep_call([=] { return use_type_of_code(source, existing, level); });
}

// ---- expressions of bounds and lengths

namespace {

// Rewrites the expressions of one procedure so that they lead to the copies. What has been rewritten is kept:
// parts of an expression may be shared.
struct remapper {
    param_type *params;
    std::int32_t level;
    std::unordered_map<const expr_node *, expr_node *> done;

    expr_node *list(expr_node *head);
    expr_node *node(expr_node *source, expr_node *next);
    bool children(expr_node &copy);
    bool loop_of(expr_node &copy);
    bool replace(expr_node *&link) {
        expr_node *const before = link;
        link = before ? list(before) : nullptr;
        return link != before;
    }
};

expr_node *remapper::list(expr_node *head) {
    std::vector<expr_node *> nodes;
    expr_node *next = nullptr;
    for (expr_node *e = head; e; e = e->next) {
        if (const auto found = done.find(e); found != done.end()) {
            next = found->second;
            break;
        }
        nodes.push_back(e);
    }
    for (; !nodes.empty(); nodes.pop_back()) {
        expr_node *const e = nodes.back();
        next = done[e] = node(e, next);
    }
    return next;
}

expr_node *remapper::node(expr_node *source, expr_node *next) {
    expr_node copy = *source;
    copy.next = next;
    const bool changed = deep_call([&] { return children(copy); });
    if (!changed && next == source->next) {
        return source;
    }
    expr_node *result = il_new<expr_node>();
    *result = copy;
    result->il_id = source->il_id & il_check_mark;
    return result;
}

object *component_of_copy(const type *t, const object *component) {
    const type *element = t && t->type_code == tk_farray ? t->array.element_type : t;
    if (element && element->type_code == tk_derived_type) {
        for (object *f = element->derived.first_field; f; f = f->next) {
            if (f->source_corresp.name == component->source_corresp.name) {
                return f;
            }
        }
    }
    return nullptr;
}

bool remapper::loop_of(expr_node &copy) {
    do_loop loop = *copy.do_info;
    bool changed = replace(loop.variable);
    changed = replace(loop.initial_value) || changed;
    changed = replace(loop.final_value) || changed;
    changed = replace(loop.increment) || changed;
    if (changed) {
        copy.do_info = new_do_loop();
        *copy.do_info = loop;
        copy.do_info->il_id = 0;
    }
    return changed;
}

bool remapper::children(expr_node &copy) {
    switch (copy.node_kind) {
    case enk_operation:
    case enk_intrinsic:
    case enk_generic_call: return replace(copy.operands);
    case enk_call: {
        object *const routine = use_routine(copy.routine, level);
        const bool other = routine != copy.routine;
        copy.routine = routine;
        return replace(copy.operands) || other;
    }
    case enk_object: {
        const object *before = copy.object;
        copy.object = before->type->type_code == tk_routine ? use_routine(copy.object, level)
                                                            : use_variable(copy.object, level);
        copy.type = copy.object == before ? copy.type : copy.object->type;
        return copy.object != before;
    }
    case enk_field: {
        const bool changed = replace(copy.base_expr);
        object *component = changed ? component_of_copy(copy.base_expr->type, copy.field_var) : nullptr;
        if (component) {
            copy.field_var = component;
            copy.type = component->type;
        }
        return changed;
    }
    case enk_subscript:
    case enk_substring:
    case enk_section: {
        const bool changed = replace(copy.array_expr);
        return replace(copy.ind_list) || changed;
    }
    case enk_constructor: return replace(copy.constructor);
    case enk_implied_do:
    case enk_isum: {
        const bool changed = replace(copy.expr_list);
        return loop_of(copy) || changed;
    }
    case enk_triplet: {
        bool changed = replace(copy.first);
        changed = replace(copy.second) || changed;
        return replace(copy.stride) || changed;
    }
    case enk_ref: return replace(copy.reference);
    case enk_param:
        for (param_type *p = params; p; p = p->next) {
            if (p->source_corresp.name == copy.parameter->source_corresp.name) {
                const bool changed = p != copy.parameter;
                copy.parameter = p;
                return changed;
            }
        }
        return false;
    default: return false;
    }
}

// Rewrites what a type that was copied just now has for lengths and bounds.
void remap_bounds(type *t, remapper &r) {
    if (t->type_code == tk_fcharacter) {
        bound &length = t->character.length;
        if (length.kind == bound_expression || length.kind == bound_same_as) {
            r.replace(length.expr);
        }
        return;
    }
    if (t->type_code != tk_farray) {
        return;
    }
    remap_bounds(t->array.element_type, r);
    if (t->array.shape_kind > as_shaped) {
        r.replace(t->array.args);
        return;
    }
    const unsigned count = 2u * t->array.rank;
    const bound_info_entry *source = t->array.bound;
    bound_info_entry *copy = nullptr;
    for (unsigned i = 0; i < count; ++i) {
        bound b = source->bounds[i];
        if (b.kind != bound_expression || !r.replace(b.expr)) {
            continue;
        }
        if (!copy) {
            copy = new_bound_info_entry(t->array.rank);
            std::copy_n(source->bounds, count, copy->bounds);
            t->array.bound = copy;
        }
        copy->bounds[i] = b;
    }
}

} // namespace

// ---- procedures

namespace {

bool is_function(const object *o) {
    const type_code code = o->type->routine.return_type->type_code;
    return code != tk_void;
}

// The one object of an external procedure. What the source knows of it by now may be less than the module.
object *known_external(const object *source) {
    const symbol *record = source->source_corresp.name ? global_symbol(source->source_corresp.name) : nullptr;
    if (!record || (record->kind != sk_subroutine && record->kind != sk_function)) {
        return nullptr;
    }
    object *o = entity_as<object>(record);
    const bool as_good = o->type->routine.has_param_info || !source->type->routine.has_param_info;
    return as_good && is_function(o) == is_function(source) ? o : nullptr;
}

// An external procedure that only a generic leads to is an external name of the source all the same.
object *enter_copy(object *copy) {
    symbol *s = alloc_symbol(is_function(copy) ? sk_function : sk_subroutine);
    s->name = copy->source_corresp.name;
    s->entity = copy;
    enter_external(s);
    return entity_as<object>(s);
}

} // namespace

object *use_routine(object *source, std::int32_t level) {
    const bool is_external = source->storage_class == sc_external;
    if (is_external ? source->is_parameter : !module_of(source)) {
        return source; // a dummy procedure belongs to its own procedure
    }
    copy_key key{};
    if (is_external) {
        if (object *known = known_external(source)) {
            return known;
        }
    } else {
        key = key_of_routine(source, level);
        if (object *earlier = find_copy<object>(key)) {
            return earlier;
        }
    }
    object *copy = copy_object(source);
    copy->variant.assoc_scope = nullptr;
    if (is_external) {
        copy->assoc.routine = nullptr;
    } else {
        copy->storage_class = sc_mod_proc;
        copy->assoc.module = use_module_object(module_of(source));
        copies[key] = copy; // its bounds may lead back to it
    }
    copy->type = use_type(source->type, nullptr, level);
    routine_variant &routine = copy->type->routine;
    routine.assoc_routine = copy;
    remapper r{routine.param_type_list, level, {}};
    remap_bounds(routine.return_type, r);
    for (param_type *p = routine.param_type_list; p; p = p->next) {
        remap_bounds(p->type, r);
    }
    if (is_external) {
        return enter_copy(copy);
    }
    add_object(scope_stack[level], copy);
    return copy;
}

// ---- variables and constants

namespace {

object *make_variable_copy(const object *source, std::int32_t level) {
    object *copy = copy_object(source);
    copy->type = use_type(source->type, nullptr, level);
    if (source->storage_class != sc_associated && !source->is_result && source->variant.initializer) {
        copy->variant.initializer = use_constant(source->variant.initializer, level);
    }
    add_object(scope_stack[level], copy);
    return copy;
}

object *use_common(object *source) {
    const atom *name = source->source_corresp.name;
    if (object *known = find_common_storage(name)) {
        type *block = known->type; // it only grows
        block->size = std::max(block->size, source->type->size);
        block->alignment = std::max(block->alignment, source->type->alignment);
        block->contains_ptrs |= source->type->contains_ptrs;
        return known;
    }
    object *copy = make_variable_copy(source, 0);
    if (is_module(copy->assoc.routine)) {
        copy->assoc.routine = use_module_object(copy->assoc.routine);
    }
    return copy;
}

object *use_associated(object *source, std::int32_t level) {
    object *storage = use_variable(source->assoc.variable, level);
    const copy_key key = key_of_associated(source, storage, level);
    if (object *earlier = find_copy<object>(key)) {
        return earlier;
    }
    object *copy = make_variable_copy(source, level);
    copies[key] = copy;
    copy->assoc.variable = storage;
    return copy;
}

} // namespace

object *use_variable(object *source, std::int32_t level) {
    if (source->storage_class == sc_common) {
        return use_common(source);
    }
    if (source->storage_class == sc_associated) {
        return use_associated(source, level);
    }
    if (!is_module_variable(source)) {
        return source; // nothing that a module gives away
    }
    const copy_key key = key_of_module_variable(source, level);
    if (object *earlier = find_copy<object>(key)) {
        return earlier;
    }
    object *module = use_module_object(module_of(source));
    object *copy = make_variable_copy(source, level);
    copies[key] = copy;
    copy->storage_class = sc_use_associated;
    copy->assoc.module = module;
    return copy;
}

namespace {

constant *use_constant_list(constant *head, constant *&last, std::int32_t level) {
    constant *first = nullptr;
    last = nullptr;
    for (constant *c = head; c; c = c->next) {
        constant *copy = use_constant(c, level);
        (last ? last->next : first) = copy;
        last = copy;
    }
    return first;
}

constant *copy_constant(constant *source, std::int32_t level) {
    constant *copy = new_constant();
    *copy = *source;
    copy->il_id = source->il_id & il_check_mark;
    copy->next = nullptr;
    copy->type = use_type(source->type, nullptr, level);
    constant *last;
    if (source->repr_kind == ck_aggregate) {
        copy->aggregate.first_constant = use_constant_list(source->aggregate.first_constant, last, level);
        copy->aggregate.last_constant = last;
    } else if (source->repr_kind == ck_init_repeat) {
        copy->repeat.constant = use_constant_list(source->repeat.constant, last, level);
    }
    return copy;
}

} // namespace

constant *use_constant(constant *source, std::int32_t level) {
    return deep_call([=] { return copy_constant(source, level); });
}

// ---- generic names and NAMELIST groups

void add_member(interface *generic, object *routine, std::int32_t level) {
    interface *const open = scope_stack[level].current_interface;
    scope_stack[level].current_interface = generic;
    add_to_interface(routine, level);
    scope_stack[level].current_interface = open;
}

void extend_interface(interface *generic, const interface *source, std::int32_t level) {
    for (const object_list_member *m = source->routine_prototype_list; m; m = m->next) {
        add_member(generic, use_routine(m->object, level), level);
    }
}

interface *use_interface(interface *source, std::int32_t level) {
    interface *copy = new_interface();
    *copy = *source;
    copy->il_id = source->il_id & il_check_mark;
    copy->symbol_link = nullptr;
    copy->next = nullptr;
    copy->inherited = nullptr;
    copy->routine_prototype_list = nullptr;
    add_interface(scope_stack[level], copy);
    extend_interface(copy, source, level);
    return copy;
}

namespace {

// A member of a group is a variable, or an element or component of one.
expr_node *copy_of_members(expr_node *members, std::int32_t level) {
    expr_node *first = nullptr;
    expr_node *last = nullptr;
    for (const expr_node *m = members; m; m = m->next) {
        expr_node *copy = il_new<expr_node>();
        *copy = *m;
        copy->il_id = m->il_id & il_check_mark;
        copy->next = nullptr;
        if (m->node_kind == enk_object) {
            copy->object = use_variable(m->object, level);
            copy->type = copy->object->type;
        }
        (last ? last->next : first) = copy;
        last = copy;
    }
    return first;
}

bool same_members(const namelist_group *copy, const namelist_group *source, std::int32_t level) {
    const expr_node *a = copy->member_list;
    const expr_node *b = source->member_list;
    for (; a && b; a = a->next, b = b->next) {
        if (a->node_kind != enk_object || b->node_kind != enk_object ||
            a->object != use_variable(b->object, level)) {
            return false;
        }
    }
    return a == b;
}

} // namespace

namelist_group *use_namelist(namelist_group *source, std::int32_t level) {
    namelist_group *copy = new_namelist_group();
    *copy = *source;
    copy->il_id = source->il_id & il_check_mark;
    copy->symbol_link = nullptr;
    copy->next = nullptr;
    copy->member_list = copy_of_members(source->member_list, level);
    add_namelist_group(scope_stack[level], copy);
    return copy;
}

// ---- identity

namespace {

named_entry *earlier_copy_of_object(object *source, std::int32_t level) {
    switch (source->storage_class) {
    case sc_common: return find_common_storage(source->source_corresp.name);
    case sc_associated: {
        const named_entry *storage = earlier_copy_of_object(source->assoc.variable, level);
        return storage
                   ? find_copy<object>(key_of_associated(source, static_cast<const object *>(storage), level))
                   : nullptr;
    }
    case sc_external: return known_external(source);
    case sc_internal:
    case sc_mod_proc: return module_of(source) ? find_copy<object>(key_of_routine(source, level)) : nullptr;
    default:
        return is_module_variable(source) ? find_copy<object>(key_of_module_variable(source, level))
                                          : nullptr;
    }
}

} // namespace

bool stands_for(const symbol *local, const symbol *module_symbol, std::int32_t level) {
    if (local->kind != module_symbol->kind || !local->entity) {
        return false;
    }
    if (local->entity == module_symbol->entity) {
        return true;
    }
    switch (local->kind) {
    case sk_derived_type:
        return find_copy<type>(key_of_type(entity_as<type>(module_symbol), level)) == local->entity;
    case sk_variable:
    case sk_subroutine:
    case sk_function:
    case sk_internal_subroutine:
    case sk_internal_function:
        return earlier_copy_of_object(entity_as<object>(module_symbol), level) == local->entity;
    case sk_namelist: {
        const auto *a = entity_as<namelist_group>(local);
        const auto *b = entity_as<namelist_group>(module_symbol);
        return a->original_name == b->original_name && same_members(a, b, level);
    }
    default: return false;
    }
}

namespace {

copy_key key_of_import(const symbol *module_symbol, std::int32_t level) {
    return {scope_at(level), module_symbol, nullptr, 0, imported_symbol};
}

} // namespace

bool is_imported(const symbol *module_symbol, std::int32_t level) {
    return copies.contains(key_of_import(module_symbol, level));
}

void note_import(const symbol *module_symbol, std::int32_t level) {
    copies.emplace(key_of_import(module_symbol, level), nullptr);
}

void copies_init() {
    copies.clear();
    module_copies.clear();
}

} // namespace zf90
