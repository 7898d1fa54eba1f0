// A module file comes from outside: its form may be right and its entries still make no sense together. What
// the compiler relies on without looking is checked here, in time linear in the file: links that must lead
// somewhere, lists and trees that end, kinds and sizes that agree.
#include "modules/module_check.h"

#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "driver/deep_call.h"
#include "il/entries.h"
#include "il/fields.h"
#include "il/types.h"
#include "intrinsics/seed_table.h"
#include "modules/copies.h"
#include "output/il_reader.h"

#include <algorithm>
#include <span>
#include <vector>

namespace zf90 {

namespace {

void require(bool holds) {
    if (!holds) {
        reject_il_file();
    }
}

template <class T> std::span<T> all(entry_kind kind) {
    return {entries_of<T>(kind), static_cast<std::size_t>(entry_counts[kind])};
}

// ---- trees and lists end

// Following `next` from an entry never leads back to it.
template <class T, class Next> void check_chains(entry_kind kind, Next next) {
    const std::span<T> entries = all<T>(kind);
    std::vector<std::uint32_t> first_walk(entries.size(), 0);
    std::uint32_t walk = 0;
    for (const T &head : entries) {
        ++walk;
        for (const T *entry = &head; entry; entry = next(*entry)) {
            std::uint32_t &mark = first_walk[static_cast<std::size_t>(entry - entries.data())];
            require(mark != walk);
            if (mark != 0) {
                break;
            }
            mark = walk;
        }
    }
}

// Calls `visit` with the head of each list and with each single entry that an entry consists of, and with the
// next one of its own list.
template <class Visit> void visit_operands(const expr_node &e, Visit visit) {
    switch (e.node_kind) {
    case enk_operation:
    case enk_intrinsic:
    case enk_call: visit(e.operands); break;
    case enk_constant: visit(e.constant); break;
    case enk_field: visit(e.base_expr); break;
    case enk_subscript:
    case enk_substring:
    case enk_section:
        visit(e.array_expr);
        visit(e.ind_list);
        break;
    case enk_constructor: visit(e.constructor); break;
    case enk_implied_do:
    case enk_isum:
        visit(e.expr_list);
        visit(e.do_info->variable);
        visit(e.do_info->initial_value);
        visit(e.do_info->final_value);
        visit(e.do_info->increment);
        break;
    case enk_triplet:
        visit(e.first);
        visit(e.second);
        visit(e.stride);
        break;
    case enk_ref: visit(e.reference); break;
    default: break;
    }
}

// The expression that a type has its shape or length from. Most types of that kind are the type of that very
// expression: there, shape and length come from its operands.
template <class Visit> void visit_source(const type &t, expr_node *e, Visit visit) {
    const expr_node *source = e ? without_refs(e) : nullptr;
    const type *own = source ? source->type : nullptr;
    if (own == &t || (own && own->type_code == tk_farray && own->array.element_type == &t)) {
        visit_operands(*source, visit);
    } else {
        visit(e);
    }
}

template <class Visit> void visit_length(const type &t, Visit visit) {
    const bound &length = t.character.length;
    if (length.kind == bound_expression) {
        visit(length.expr);
    } else if (length.kind == bound_same_as) {
        visit_source(t, length.expr, visit);
    }
}

template <class Visit> void visit_shape(const type &t, Visit visit) {
    if (t.array.shape_kind > as_shaped) {
        visit_source(t, t.array.args, visit);
        return;
    }
    for (unsigned i = 0; i < 2u * t.array.rank; ++i) {
        const bound &b = t.array.bound->bounds[i];
        if (b.kind == bound_expression || b.kind == bound_same_as) {
            visit(b.expr);
        }
    }
}

template <class Visit> void visit_parts(const type &t, Visit visit) {
    switch (t.type_code) {
    case tk_routine:
        visit(t.routine.return_type);
        visit(t.routine.param_type_list);
        break;
    case tk_fcharacter: visit_length(t, visit); break;
    case tk_farray:
        visit(t.array.element_type);
        visit_shape(t, visit);
        break;
    case tk_derived_type: visit(t.derived.first_field); break;
    default: break;
    }
}

template <class Visit> void visit_parts(const param_type &p, Visit visit) {
    visit(p.type);
    visit(p.next);
}

// Of objects only components are parts, and one that is a pointer may be of the type that it belongs to.
template <class Visit> void visit_parts(const object &o, Visit visit) {
    if (o.storage_class == sc_type_field) {
        visit(o.next);
        if (!o.is_pointer) {
            visit(o.type);
        }
    }
}

template <class Visit> void visit_parts(const constant &c, Visit visit) {
    visit(c.type);
    visit(c.next);
    if (c.repr_kind == ck_aggregate) {
        visit(c.aggregate.first_constant);
    } else if (c.repr_kind == ck_init_repeat) {
        visit(c.repeat.constant);
    }
}

template <class Visit> void visit_parts(const expr_node &e, Visit visit) {
    visit(e.type);
    visit(e.next);
    visit_operands(e, visit);
}

// The entries that have parts, as the nodes of a graph.
struct part_graph {
    std::size_t first_node[entry_kind_count];
    std::vector<std::uint32_t> users; // of how many entries a node is a part
    std::vector<std::size_t> ready;   // nodes of which all users have been seen

    template <class T> std::size_t node_of(const T *entry) const {
        return first_node[kind_of<T>] + static_cast<std::size_t>(entry - entries_of<T>(kind_of<T>));
    }
    template <class T> void count_parts(const T &entry) {
        visit_parts(entry, [this](const auto *part) {
            if (part) {
                ++users[node_of(part)];
            }
        });
    }
    template <class T> void release_parts(const T &entry) {
        visit_parts(entry, [this](const auto *part) {
            if (part && --users[node_of(part)] == 0) {
                ready.push_back(node_of(part));
            }
        });
    }
};

// The kinds whose entries have parts, in any order.
#define ZF90_GRAPH_RECORDS(X) X(type) X(param_type) X(object) X(expr_node) X(constant)

// Nothing is part of itself: taking away what is part of nothing, again and again, leaves nothing.
void check_parts() {
    part_graph g{};
    std::size_t count = 0;
#define PLACE_NODES(name)              \
    g.first_node[kind_##name] = count; \
    count += all<struct name>(kind_##name).size();
    ZF90_GRAPH_RECORDS(PLACE_NODES)
#undef PLACE_NODES
    g.users.assign(count, 0);
#define COUNT_PARTS(name)                                            \
    for (const struct name &entry : all<struct name>(kind_##name)) { \
        g.count_parts(entry);                                        \
    }
    ZF90_GRAPH_RECORDS(COUNT_PARTS)
#undef COUNT_PARTS
    for (std::size_t node = 0; node < count; ++node) {
        if (g.users[node] == 0) {
            g.ready.push_back(node);
        }
    }
    std::size_t taken = 0;
    for (; !g.ready.empty(); ++taken) {
        const std::size_t node = g.ready.back();
        g.ready.pop_back();
#define RELEASE_PARTS(name)                                                                                 \
    if (const std::size_t i = node - g.first_node[kind_##name]; i < all<struct name>(kind_##name).size()) { \
        g.release_parts(all<struct name>(kind_##name)[i]);                                                  \
    }
        ZF90_GRAPH_RECORDS(RELEASE_PARTS)
#undef RELEASE_PARTS
    }
    require(taken == count);
}

// ---- types

bool has_type_code(const type *t, std::initializer_list<type_code> codes) {
    for (type_code code : codes) {
        if (t->type_code == code) {
            return true;
        }
    }
    return false;
}

bool is_scalar_data(const type *t) {
    return has_type_code(t, {tk_integer, tk_logical, tk_float, tk_complex, tk_fcharacter, tk_derived_type});
}

bool is_data(const type *t) {
    return is_scalar_data(t) || (t->type_code == tk_farray && is_scalar_data(t->array.element_type));
}

void check_bound(const bound &b) {
    require(b.kind != bound_error);
    require((b.kind != bound_expression && b.kind != bound_same_as) || b.expr);
}

void check_array(const type &t) {
    require(t.array.element_type && t.array.rank > 0);
    require(is_scalar_data(t.array.element_type) ||
            has_type_code(t.array.element_type, {tk_any_type, tk_any_derived, tk_any_numerical}));
    if (t.array.shape_kind > as_shaped) {
        require(t.array.args);
        return;
    }
    require(t.array.bound);
    for (unsigned i = 0; i < 2u * t.array.rank; ++i) {
        check_bound(t.array.bound->bounds[i]);
    }
}

bool is_module(const object *o) { return o && o->storage_class == sc_module && o->source_corresp.name; }

bool is_component(const object *o, const type *t) {
    return o->storage_class == sc_type_field && o->assoc.derived_type == t;
}

void check_type_entry(type &t) {
    constexpr unsigned largest_alignment = 8;
    require(t.alignment > 0 && t.alignment <= largest_alignment && (t.alignment & (t.alignment - 1)) == 0);
    switch (t.type_code) {
    case tk_integer: require(t.kind < integer_kind_count || t.kind == ANY_KIND); break;
    case tk_logical: require(t.kind < logical_kind_count || t.kind == ANY_KIND); break;
    case tk_float:
    case tk_complex: require(t.kind < real_kind_count || t.kind == ANY_KIND); break;
    case tk_fcharacter:
        require(t.kind < character_kind_count || t.kind == ANY_KIND);
        check_bound(t.character.length);
        break;
    case tk_routine: require(t.routine.return_type != nullptr); break;
    case tk_farray: check_array(t); break;
    case tk_derived_type:
        require(t.source_corresp.name && (!t.derived.module || is_module(t.derived.module)));
        require(!t.derived.first_field || is_component(t.derived.first_field, &t));
        break;
    default: break;
    }
    const type *own = type_of_this_compilation(&t);
    require(own == &t || (own->size == t.size && own->alignment == t.alignment));
}

void check_routine_parts(const type &t) {
    if (t.type_code != tk_routine) {
        return;
    }
    require(is_data(t.routine.return_type) ||
            has_type_code(t.routine.return_type, {tk_void, tk_unspec_routine, tk_unknown, tk_error}));
    const object *o = t.routine.assoc_routine;
    require(!o || (o->type && o->type->type_code == tk_routine));
}

void check_param(const param_type &p) {
    require(p.type != nullptr);
    require(p.type->type_code == tk_stmt_label || p.source_corresp.name);
    require(is_data(p.type) || has_type_code(p.type, {tk_routine, tk_stmt_label, tk_any_type, tk_any_derived,
                                                      tk_any_numerical}));
}

// ---- objects

bool is_routine_class(storage_class sc) {
    return sc == sc_external || sc == sc_internal || sc == sc_mod_proc;
}

bool is_storage(const object *o) {
    return o && o->type && o->type->type_code == tk_association &&
           (o->storage_class == sc_local || o->storage_class == sc_common ||
            o->storage_class == sc_use_associated);
}

void check_object_entry(const object &o) {
    require(o.type != nullptr);
    const bool is_routine = o.type->type_code == tk_routine;
    const bool named = o.source_corresp.name != nullptr;
    switch (o.storage_class) {
    case sc_local: require(is_data(o.type) || is_storage(&o) || o.type->type_code == tk_stmt_label); break;
    case sc_common: require(is_storage(&o)); break;
    case sc_associated: require(is_data(o.type) && is_storage(o.assoc.variable)); break;
    case sc_use_associated: require((is_data(o.type) || is_storage(&o)) && is_module(o.assoc.module)); break;
    case sc_implied_do_var: require(is_data(o.type)); break;
    case sc_type_field:
        require(named && is_data(o.type) && o.assoc.derived_type);
        require(!o.next || is_component(o.next, o.assoc.derived_type));
        break;
    case sc_module: require(named && o.type->type_code == tk_module); break;
    case sc_internal: require(named && is_routine && o.assoc.routine); break;
    case sc_mod_proc: require(named && is_routine && is_module(o.assoc.module)); break;
    case sc_external: require(named && is_routine); break;
    default: require(false); // nothing that a module leads to
    }
}

// ---- constants

bool same_class(const type *a, const type *b) {
    return a->type_code == b->type_code && (a->type_code == tk_derived_type || a->kind == b->kind);
}

void check_constant(constant &c) {
    require(c.type != nullptr);
    switch (c.repr_kind) {
    case ck_expression: c.repr_kind = ck_value; [[fallthrough]]; // the value is all that counts
    case ck_value:
        require(has_type_code(c.type, {tk_integer, tk_logical, tk_float, tk_complex, tk_fcharacter}));
        require(c.type->kind != ANY_KIND && c.type->size > 0);
        break;
    case ck_aggregate: {
        const constant *last = c.aggregate.last_constant;
        require((last != nullptr) == (c.aggregate.first_constant != nullptr) && (!last || !last->next));
        require(is_data(c.type) || c.type->type_code == tk_association);
        break;
    }
    case ck_init_repeat: require(c.repeat.constant != nullptr); break;
    case ck_init_position:
    case ck_init_index: break;
    default: require(false);
    }
}

// The number of elements of an array whose bounds are constants.
bool has_element_count(const type *t, std::uint64_t count) {
    const unsigned rank = t->array.rank;
    std::uint64_t extents = 1;
    for (unsigned i = 0; i < rank; ++i) {
        const bound &lower = t->array.bound->bounds[i];
        const bound &upper = t->array.bound->bounds[rank + i];
        if (lower.kind != bound_constant || upper.kind != bound_constant) {
            return false;
        }
        const std::uint64_t extent = constant_extent(lower, upper);
        if (extent != 0 && extents > entry_counts[kind_constant] / extent) {
            return false;
        }
        extents *= extent;
    }
    return extents == count;
}

// The value of a named constant is one of its type.
void check_named_constant(const object &o) {
    const constant *value = o.variant.initializer;
    require(value != nullptr);
    const type *t = o.type;
    if (t->type_code == tk_farray) {
        require(t->array.shape_kind <= as_shaped && value->repr_kind == ck_aggregate);
        std::uint64_t count = 0;
        for (const constant *c = value->aggregate.first_constant; c; c = c->next) {
            require(same_class(c->type, t->array.element_type));
            ++count;
        }
        require(has_element_count(t, count));
        return;
    }
    require(same_class(value->type, t));
    require(value->repr_kind == (t->type_code == tk_derived_type ? ck_aggregate : ck_value));
}

// The list that a constant consists of, or null.
const constant *list_of(const constant &c) {
    switch (c.repr_kind) {
    case ck_aggregate: return c.aggregate.first_constant;
    case ck_init_repeat: return c.repeat.constant;
    default: return nullptr;
    }
}

std::size_t index_of(const constant *c) {
    return static_cast<std::size_t>(c - all<constant>(kind_constant).data());
}

// The number of constants that a copy of a list consists of, no more than `limit`. `known` holds what has
// been counted, by the head of the list.
std::uint64_t copied_size(const constant *head, std::uint64_t limit, std::vector<std::uint64_t> &known) {
    if (!head || known[index_of(head)] != 0) {
        return head ? known[index_of(head)] : 0;
    }
    std::uint64_t size = 0;
    for (const constant *c = head; c; c = c->next) {
        const constant *list = list_of(*c);
        size += 1 + deep_call([&] { return copied_size(list, limit, known); });
        size = std::min(size, limit);
    }
    known[index_of(head)] = size;
    return size;
}

// An element belongs to one list. Constants may share a list, as the elements of an array do that all have
// one value, but every one gets its own copy: those must not come to more than there is room for.
void check_constant_lists() {
    constexpr std::uint64_t most_copies = 1u << 24;
    const std::span<constant> constants = all<constant>(kind_constant);
    std::vector<bool> follows(constants.size(), false);
    for (const constant &c : constants) {
        if (c.next) {
            require(!follows[index_of(c.next)]);
            follows[index_of(c.next)] = true;
        }
    }
    const std::uint64_t limit = std::max<std::uint64_t>(most_copies, constants.size()) + 1;
    std::vector<std::uint64_t> known(constants.size(), 0);
    for (const constant &c : constants) {
        const constant *list = list_of(c);
        require(!list || (!follows[index_of(list)] && copied_size(list, limit, known) < limit));
    }
}

// ---- expressions

std::size_t length_of(const expr_node *list) {
    std::size_t n = 0;
    for (; list; list = list->next) {
        ++n;
    }
    return n;
}

// Whether some form of an intrinsic procedure takes so many arguments.
bool takes_arguments(intrinsic_code code, std::size_t count) {
    for (const object_list_member *m = seed_interface(code)->routine_prototype_list; m; m = m->next) {
        const routine_variant &form = m->object->type->routine;
        std::size_t needed = 0;
        std::size_t most = 0;
        for (const param_type *p = form.param_type_list; p; p = p->next) {
            ++most;
            needed += p->is_optional ? 0u : 1u;
        }
        if (count >= needed && (count <= most || form.has_ellipsis)) {
            return true;
        }
    }
    return false;
}

std::size_t operands_of(operation_kind op) {
    switch (op) {
    case eok_not:
    case eok_inegate:
    case eok_fnegate:
    case eok_xnegate:
    case eok_negate:
    case eok_cast:
    case eok_spread:
    case eok_reorder:
    case eok_expand:
    case eok_reshape: return 1;
    default: return 2;
    }
}

void check_expr(const expr_node &e) {
    require(e.type != nullptr);
    switch (e.node_kind) {
    case enk_operation:
        require(e.op_kind != eok_error && length_of(e.operands) >= operands_of(e.op_kind));
        break;
    case enk_intrinsic: require(takes_arguments(e.intrinsic, length_of(e.operands))); break;
    case enk_call: require(e.routine && e.routine->type && e.routine->type->type_code == tk_routine); break;
    case enk_constant: require(e.constant != nullptr); break;
    case enk_object: require(e.object != nullptr); break;
    case enk_field: require(e.base_expr && e.field_var && e.field_var->storage_class == sc_type_field); break;
    case enk_substring: require(e.array_expr && e.ind_list && e.ind_list->node_kind == enk_triplet); break;
    case enk_subscript:
    case enk_section: require(e.array_expr && e.ind_list); break;
    case enk_implied_do:
    case enk_isum:
        require(e.expr_list && e.do_info && e.do_info->variable && e.do_info->initial_value &&
                e.do_info->final_value);
        break;
    case enk_ref: require(e.reference != nullptr); break;
    case enk_param: require(e.parameter != nullptr); break;
    case enk_constructor:
    case enk_triplet:
    case enk_empty: break;
    default: require(false); // nothing that a checked expression holds
    }
}

// ---- names

bool is_function(const object *o) { return o->type->routine.return_type->type_code != tk_void; }

// A public procedure is a function or a subroutine as its name says, and of the module.
void check_procedure_symbol(const symbol *s, const object *o) {
    const bool named_function = s->kind == sk_function || s->kind == sk_internal_function;
    const bool named_external = s->kind == sk_subroutine || s->kind == sk_function;
    require(is_routine_class(o->storage_class) && is_function(o) == named_function);
    require((o->storage_class == sc_external) == named_external);
    require(o->type->routine.has_param_info || o->storage_class == sc_external);
    require(o->storage_class != sc_internal || is_module(o->assoc.routine));
}

// Only what is generic has the name of an operator.
bool names_operator(const atom *name) {
    return char_fold(name->spelling[0]) < 'A' || char_fold(name->spelling[0]) > 'Z';
}

void check_symbol(const symbol *s) {
    const bool is_generic =
        s->kind == sk_interface || s->kind == sk_intrinsic_function || s->kind == sk_intrinsic_subroutine;
    require(is_generic || !names_operator(s->name));
    switch (s->kind) {
    case sk_derived_type: require(entity_as<type>(s)->type_code == tk_derived_type); break;
    case sk_variable: {
        const object *o = entity_as<object>(s);
        require(o->source_corresp.name && is_data(o->type) && o->storage_class != sc_type_field);
        require(o->storage_class != sc_local || is_module(o->assoc.routine));
        if (o->is_constant) {
            check_named_constant(*o);
        }
        break;
    }
    case sk_subroutine:
    case sk_function:
    case sk_internal_subroutine:
    case sk_internal_function: check_procedure_symbol(s, entity_as<object>(s)); break;
    case sk_interface: require(entity_as<interface>(s)->source_corresp.name != nullptr); break;
    case sk_namelist:
        for (const expr_node *m = entity_as<namelist_group>(s)->member_list; m; m = m->next) {
            require(m->node_kind == enk_object && is_data(m->object->type));
        }
        break;
    default: break;
    }
}

void check_all_entries() {
    for (const struct do_loop &d : all<do_loop>(kind_do_loop)) {
        require(d.variable != nullptr);
    }
    for (const expr_node &e : all<expr_node>(kind_expr_node)) {
        // What the graph of parts looks into.
        require((e.node_kind != enk_implied_do && e.node_kind != enk_isum) || e.do_info);
        require(e.node_kind != enk_ref || e.reference);
    }
    for (const type &t : all<type>(kind_type)) {
        require(t.type_code != tk_farray || t.array.shape_kind > as_shaped || t.array.bound);
    }
    check_chains<expr_node>(kind_expr_node, [](const expr_node &e) -> const expr_node * {
        return e.node_kind == enk_ref ? e.reference : nullptr;
    });
    check_parts();
    check_chains<object_list_member>(kind_object_list_member,
                                     [](const object_list_member &m) { return m.next; });
    for (type &t : all<type>(kind_type)) {
        check_type_entry(t);
    }
    for (const type &t : all<type>(kind_type)) {
        check_routine_parts(t);
    }
    for (const param_type &p : all<param_type>(kind_param_type)) {
        check_param(p);
    }
    for (constant &c : all<constant>(kind_constant)) {
        check_constant(c);
    }
    check_constant_lists();
    for (const object &o : all<object>(kind_object)) {
        check_object_entry(o);
    }
    for (const expr_node &e : all<expr_node>(kind_expr_node)) {
        check_expr(e);
    }
    for (const object_list_member &m : all<object_list_member>(kind_object_list_member)) {
        require(m.object && is_routine_class(m.object->storage_class));
    }
}

template <class T> void adopt(T &entry) {
    entry.type = type_of_this_compilation(entry.type);
    entry.il_id |= il_check_mark;
}

// The entries become those of this compilation. What is checked before a module is written needs no further
// check. Types that are made once in a compilation are compared by their address: those of the file go.
void adopt_entries() {
    for (expr_node &e : all<expr_node>(kind_expr_node)) {
        adopt(e);
    }
    for (constant &c : all<constant>(kind_constant)) {
        adopt(c);
    }
    for (param_type &p : all<param_type>(kind_param_type)) {
        adopt(p);
    }
    for (object &o : all<object>(kind_object)) {
        adopt(o);
    }
    for (type &t : all<type>(kind_type)) {
        t.il_id |= il_check_mark;
        if (t.type_code == tk_farray) {
            t.array.element_type = type_of_this_compilation(t.array.element_type);
        } else if (t.type_code == tk_routine) {
            t.routine.return_type = type_of_this_compilation(t.routine.return_type);
        }
    }
}

} // namespace

void check_module_entries() {
    // No statements lead out of a module, nor scopes.
    for (entry_kind kind : {kind_label, kind_statement, kind_scope, kind_label_list_entry, kind_alloc,
                            kind_case_range, kind_input_output_description, kind_entry_description}) {
        require(entry_counts[kind] == 0);
    }
    check_all_entries();
    for (const symbol *s = curr_row().first_symbol; s; s = s->next_in_scope) {
        check_symbol(s);
    }
    adopt_entries();
}

} // namespace zf90
