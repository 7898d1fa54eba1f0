// Atoms, symbols and look-ups.
#include "declarations/symbols.h"

#include "declarations/scopes.h"
#include "driver/options.h"
#include "il/arena.h"
#include "il/types.h"
#include "output/xref.h"
#include "source/tokens.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <unordered_map>

namespace zf90 {

atom *error_atom;
atom *main_atom;
atom *block_data_atom;
atom *blank_common_atom;

bool used_in_bound;
std::int32_t implied_do_depth = -1;

namespace {

// ---- the atom table

// Programs of the usual size stay in the first table. Its hash looks at five characters of a name, which is
// quick; names by the thousand, or alike but for characters that it does not look at, get a larger table and
// a hash of the whole name. Neither the buckets nor the order within one shows anywhere.
constexpr std::uint32_t first_bucket_count = 599;
constexpr std::uint32_t atoms_per_bucket = 2; // on average, past which the table grows
constexpr int longest_walk = 32;              // along a bucket of the first table

atom *first_buckets[first_bucket_count];
atom **buckets = first_buckets;
std::uint32_t bucket_count = first_bucket_count;
std::uint32_t atom_count;

constexpr std::uint32_t hash_step(std::uint32_t h, char c) {
    return h * 73 + static_cast<unsigned char>(char_fold(c));
}

std::uint32_t hash_whole_name(const char *text, std::size_t length) {
    std::uint32_t h = 0;
    for (std::size_t i = 0; i < length; ++i) {
        h = hash_step(h, text[i]);
    }
    return h;
}

atom **bucket_of(const char *text, std::size_t length) {
    const std::uint32_t h =
        buckets == first_buckets ? hash_name(text, length) : hash_whole_name(text, length);
    return &buckets[h % bucket_count];
}

void grow_atom_table() {
    atom **const old = buckets;
    const std::uint32_t old_count = bucket_count;
    bucket_count = 4 * old_count + 3;
    buckets = static_cast<atom **>(sys_alloc(bucket_count * sizeof(atom *)));
    std::fill_n(buckets, bucket_count, nullptr);
    for (std::uint32_t i = 0; i < old_count; ++i) {
        for (atom *a = old[i], *next; a; a = next) {
            next = a->next_in_bucket;
            atom **bucket = bucket_of(a->spelling, a->length);
            a->next_in_bucket = *bucket;
            *bucket = a;
        }
    }
    if (old != first_buckets) {
        std::free(old);
    }
}

bool same_spelling(const atom *a, const char *text, std::size_t length) {
    if (a->length != length) {
        return false;
    }
    if (case_sensitive_names) {
        return std::memcmp(a->spelling, text, length) == 0;
    }
    for (std::size_t i = 0; i < length; ++i) {
        if (char_fold(text[i]) != a->spelling[i]) {
            return false;
        }
    }
    return true;
}

// The atom, moved to the head of its bucket, or null.
atom *search_bucket(atom **bucket, const char *text, std::size_t length) {
    int steps = 0;
    for (atom **link = bucket; *link; link = &(*link)->next_in_bucket, ++steps) {
        atom *a = *link;
        if (same_spelling(a, text, length)) {
            if (a != *bucket) {
                *link = a->next_in_bucket;
                a->next_in_bucket = *bucket;
                *bucket = a;
            }
            if (steps > longest_walk && buckets == first_buckets) {
                grow_atom_table();
            }
            return a;
        }
    }
    return nullptr;
}

atom *add_atom(const char *text, std::size_t length) {
    if (atom_count == atoms_per_bucket * bucket_count) {
        grow_atom_table();
    }
    ++atom_count;
    char *spelling = il_copy_string(text, length);
    if (!case_sensitive_names) {
        std::transform(spelling, spelling + length, spelling, char_fold);
    }
    atom *a = il_new<atom>();
    a->spelling = spelling;
    a->length = static_cast<std::uint32_t>(length);
    a->token_code = length != 0 && text[0] == '.' ? tok_defined_op : tok_name;
    atom **bucket = bucket_of(spelling, length);
    a->next_in_bucket = *bucket;
    *bucket = a;
    return a;
}

// The second modules of ambiguous names.
std::unordered_map<const symbol *, const atom *> second_modules;

// ---- chains

constexpr std::uint32_t use_marks = sf_referenced | sf_used_as_bound;

// Whether look-ups pass a symbol over: it is invisible, or a common block, whose name is in a space apart.
bool is_passed_over(const symbol *s) { return !(s->flags & sf_visible) || s->kind == sk_common_block; }

symbol *innermost(symbol *s) {
    while (s && is_passed_over(s)) {
        s = s->next_same_name;
    }
    return s;
}

symbol *curr_chain() { return curr_name.atom ? curr_name.atom->first_symbol : nullptr; }

symbol *follow_links(symbol *s) {
    while (s->kind == sk_host_link) {
        s = entity_as<symbol>(s);
    }
    return s;
}

void check_name_length(const atom *name, source_pos position) {
    const bool is_operator = name->length != 0 && name->spelling[0] == '.';
    if (name->length > (is_operator ? max_operator_length : max_name_length)) {
        error_at(msg_maximum_length_of_name_is_31_characters, position);
    }
}

void append_to_row(symbol *s) {
    scope_row &row = scope_stack[s->scope_depth];
    (row.last_symbol ? row.last_symbol->next_in_scope : row.first_symbol) = s;
    row.last_symbol = s;
}

void become_host_link(symbol *s, symbol *target) {
    set_symbol_kind(s, sk_host_link);
    s->entity = target;
}

// The depth of the innermost scope from which the current one gets no names: there is no host association
// into an interface body, though what is open within the body has the body's names. Global names reach
// everywhere. 0: all scopes count.
std::int32_t first_associated_depth() {
    std::int32_t depth = curr_scope_depth;
    while (depth > 0 && scope_stack[depth].row_kind != sr_unit) {
        --depth;
    }
    return depth > 0 && scope_stack[depth].outer_interface_depth > 0 ? depth : 0;
}

} // namespace

// ---- atoms

std::uint32_t hash_name(const char *text, std::size_t length) {
    if (length < 6) {
        return hash_whole_name(text, length);
    }
    const std::size_t middle = length / 2;
    std::uint32_t h = hash_step(0, text[0]);
    h = hash_step(h, text[length - 1]);
    h = hash_step(h, text[middle - 1]);
    h = hash_step(h, text[middle]);
    return hash_step(h, text[middle + 1]);
}

atom *find_atom(const char *text, std::size_t length) {
    return search_bucket(bucket_of(text, length), text, length);
}

symbol *intern_name(const char *text, std::size_t length, atom *&result) {
    result = find_atom(text, length);
    if (!result) {
        result = add_atom(text, length);
    }
    return result->first_symbol;
}

symbol *intern_name(const char *text, atom *&result) { return intern_name(text, std::strlen(text), result); }

atom *new_empty_atom() {
    atom *a = il_new<atom>();
    a->spelling = "";
    return a;
}

void symbols_init() {
    if (buckets != first_buckets) {
        std::free(buckets);
    }
    std::fill(std::begin(first_buckets), std::end(first_buckets), nullptr);
    buckets = first_buckets;
    bucket_count = first_bucket_count;
    atom_count = 0;
    error_atom = il_new<atom>();
    error_atom->spelling = "<error>";
    error_atom->length = 7;
    main_atom = new_empty_atom();
    block_data_atom = nullptr;
    blank_common_atom = new_empty_atom();
    second_modules.clear();
    used_in_bound = false;
    implied_do_depth = -1;
}

// ---- symbols

symbol *alloc_symbol(symbol_kind kind) {
    symbol *s = il_new<symbol>();
    s->scope_depth = -1;
    s->decl_position = error_pos;
    set_symbol_kind(s, kind);
    return s;
}

symbol *new_symbol(symbol_kind kind, const name_locator &locator, std::int32_t depth) {
    symbol *s = new_further_symbol(kind, locator, depth);
    if (s->name != error_atom) {
        check_name_length(s->name, locator.position);
    }
    return s;
}

void move_to_scope(symbol *s, std::int32_t depth) {
    unlink_symbol(s);
    s->scope_depth = depth;
    s->next_in_scope = nullptr;
    append_to_row(s);
    link_symbol(s);
}

symbol *new_further_symbol(symbol_kind kind, const name_locator &locator, std::int32_t depth) {
    symbol *s = alloc_symbol(kind);
    s->name = locator.atom ? locator.atom : error_atom;
    s->decl_position = locator.position;
    s->scope_depth = depth;
    if (depth != -1) {
        if (depth > 0 && s->name != error_atom) {
            append_to_row(s);
        }
        s->flags |= sf_visible;
        if (scope_stack[depth].names_public) {
            s->flags |= sf_public;
        }
    }
    if (s->name != error_atom) {
        link_symbol(s);
    }
    return s;
}

void set_symbol_kind(symbol *s, symbol_kind kind) {
    if (s->kind == sk_host_candidate || s->kind == sk_forward_type) {
        // The link outward and the saved marks mean nothing in another kind.
        s->aux = nullptr;
        s->aux2 = 0;
    }
    s->kind = kind;
    switch (kind) {
    case sk_derived_type:
    case sk_undetermined:
    case sk_data_name:
    case sk_external_pending: s->entity = unknown_type(); break;
    case sk_variable:
    case sk_dummy:
        s->entity = nullptr;
        s->aux = nullptr;
        s->var_flags = 0;
        break;
    case sk_subroutine:
    case sk_function:
    case sk_internal_subroutine:
    case sk_internal_function:
    case sk_stmt_function:
    case sk_specific_function:
    case sk_specific_subroutine:
    case sk_program:
    case sk_block_data:
    case sk_common_block:
    case sk_module_procedure:
    case sk_external_unused:
    case sk_dummy_function:
    case sk_dummy_subroutine:
    case sk_dummy_procedure:
        s->entity = nullptr;
        s->aux2 &= ~std::uint32_t{pf_type_declared | pf_body_seen};
        break;
    case sk_intrinsic_function:
    case sk_intrinsic_subroutine:
    case sk_interface:
        s->entity = nullptr;
        s->aux2 &= ~std::uint32_t{pf_type_declared};
        break;
    case sk_module:
        s->entity = nullptr;
        s->aux = nullptr;
        break;
    case sk_label:
        s->entity = nullptr;
        s->aux = nullptr;
        s->aux2 = 0;
        s->branch_construct = 0;
        break;
    case sk_implied_do_var:
        s->entity = unknown_type();
        s->aux = nullptr;
        break;
    case sk_forward_type:
    case sk_host_candidate:
        s->entity = unknown_type();
        s->aux = nullptr;
        s->aux2 = 0;
        break;
    case sk_namelist:
    case sk_folded_external:
    case sk_host_link: s->entity = nullptr; break;
    case symbol_kind_count: break;
    }
}

void link_symbol(symbol *s) {
    symbol **link = &s->name->first_symbol;
    while (*link && (*link)->scope_depth > s->scope_depth) {
        link = &(*link)->next_same_name;
    }
    s->next_same_name = *link;
    *link = s;
}

void unlink_symbol(symbol *s) {
    for (symbol **link = &s->name->first_symbol; *link; link = &(*link)->next_same_name) {
        if (*link == s) {
            *link = s->next_same_name;
            break;
        }
    }
    s->next_same_name = nullptr;
}

symbol *global_symbol(const atom *name) {
    for (symbol *s = name->first_symbol; s; s = s->next_same_name) {
        if (!(s->flags & sf_visible) && s->scope_depth == 0) {
            return s;
        }
    }
    return nullptr;
}

symbol *find_kind(const atom *name, symbol_kind kind) {
    symbol *s = name->first_symbol;
    while (s && s->kind != kind) {
        s = s->next_same_name;
    }
    return s;
}

symbol *find_intrinsic_function(const symbol *s) {
    symbol *generic = find_kind(s->name, sk_intrinsic_function);
    return generic ? generic : find_kind(s->name, sk_specific_function);
}

symbol *find_intrinsic_subroutine(const symbol *s) {
    symbol *generic = find_kind(s->name, sk_intrinsic_subroutine);
    return generic ? generic : find_kind(s->name, sk_specific_subroutine);
}

type *implicit_type_of(const symbol *s) {
    if (no_implicit_typing || s->scope_depth < 0 || s->name->length == 0) {
        return nullptr;
    }
    // An implied-DO variable lies above all rows and follows the rules of the current one.
    const scope_row &row = scope_stack[std::min(s->scope_depth, curr_scope_depth)];
    const char letter = char_fold(s->name->spelling[0]);
    if (row.implicit_none || letter < 'A' || letter > 'Z') {
        return nullptr;
    }
    return row.implicit_types[letter - 'A'];
}

// ---- names that two modules give to different entities

void mark_ambiguous(symbol *s, const atom *module) {
    s->flags |= sf_ambiguous;
    second_modules.emplace(s, module);
}

void make_quiet(symbol *s) {
    set_symbol_kind(s, sk_undetermined);
    s->entity = error_type();
    s->from_module = nullptr;
    s->flags =
        (s->flags & ~std::uint32_t{sf_ambiguous | sf_type_implicit}) | sf_typed | sf_inferred | sf_referenced;
}

bool is_quiet(const symbol *s) {
    return s->kind == sk_undetermined && (s->flags & sf_typed) && s->entity == error_type();
}

// A use of a name, at `curr_name`, tells that it is ambiguous.
static void report_if_ambiguous(symbol *s) {
    if (s->flags & sf_ambiguous) {
        error_at(msg_name_clash_between_dummy_argument_and_symbol_from_use, curr_name.position,
                 s->name->spelling, second_modules[s]->spelling);
        make_quiet(s);
    }
}

// ---- look-ups

symbol *lookup_current() {
    symbol *s = innermost(curr_chain());
    return s && s->scope_depth >= curr_scope_depth ? s : nullptr;
}

symbol *lookup_for_declaration() {
    symbol *s = innermost(curr_chain());
    if (!s || s->scope_depth != curr_scope_depth) {
        return nullptr;
    }
    if (s->kind == sk_host_link) {
        error(msg_invalid_redeclaration_of_host_symbol, s->name->spelling);
        set_symbol_kind(s, sk_undetermined);
    }
    return s;
}

symbol *lookup_at_depth(std::int32_t depth) {
    symbol *s = curr_chain();
    while (s && (is_passed_over(s) || s->scope_depth > depth)) {
        s = s->next_same_name;
    }
    return s && s->scope_depth == depth ? s : nullptr;
}

// Makes a candidate in the current scope, and one in each scope further out up to a meaning of the name. The
// candidates run outward through `aux`, the last one to that meaning or to null.
static symbol *new_candidate() {
    symbol *const first = new_symbol(sk_host_candidate, curr_name, curr_scope_depth);
    first->entity = implicit_type_of(first);
    if (first->name == error_atom) {
        return first;
    }
    const std::int32_t first_depth = first_associated_depth();
    symbol *inner = first;
    for (std::int32_t depth = curr_scope_depth - 1; depth >= 0; --depth) {
        if (depth < first_depth) {
            depth = 0;
        }
        symbol *found = lookup_at_depth(depth);
        if (found) {
            found = follow_links(found);
        } else if (depth >= 1) {
            found = new_further_symbol(sk_host_candidate, curr_name, depth);
            found->entity = implicit_type_of(found);
        }
        inner->aux = found;
        if (!found || found->kind != sk_host_candidate) {
            break;
        }
        inner = found;
    }
    return first;
}

// Of a candidate: where its chain ends for now.
static symbol *outermost_meaning(symbol *s) {
    for (symbol *outer = s; s->kind == sk_host_candidate; s = outer) {
        outer = static_cast<symbol *>(s->aux);
        if (!outer) {
            break;
        }
    }
    return s;
}

// Where the use of a name is marked. A definition of a type has components and no other names of its own: a
// name that its bounds use and nobody has declared so far is the unit's.
static symbol *used_symbol(symbol *s) {
    auto *const outer = s->kind == sk_host_candidate ? static_cast<symbol *>(s->aux) : nullptr;
    const bool is_of_unit =
        curr_row().row_kind == sr_derived_type && outer && outer->kind == sk_host_candidate;
    return is_of_unit ? outer : s;
}

symbol *lookup_reference() {
    symbol *s = lookup_current();
    const std::uint32_t mark = used_in_bound ? sf_used_as_bound : sf_referenced;
    if (!s) {
        s = new_candidate();
    }
    // The link is marked too: its marks replace those of the target when its scope is closed.
    used_symbol(s)->flags |= mark;
    s = follow_links(s);
    used_symbol(s)->flags |= mark;
    if (spec_part_over && curr_row().row_kind == sr_unit) {
        s->flags |= sf_used_in_body;
    }
    report_if_ambiguous(outermost_meaning(s));
    if (!used_in_bound && curr_row().row_kind == sr_stmt_function && s->scope_depth == curr_scope_depth &&
        s->kind == sk_host_candidate && s->aux) {
        static_cast<symbol *>(s->aux)->flags |= sf_referenced;
    }
    return s;
}

// A candidate for which no host has a meaning becomes a name of its own scope.
static void become_local_name(symbol *s) {
    type *held = entity_as<type>(s);
    set_symbol_kind(s, sk_undetermined);
    s->flags |= sf_inferred;
    if (held) {
        s->entity = held;
        s->flags |= sf_typed | sf_type_implicit;
    }
}

std::uint32_t marks_from_within(const symbol *candidate) {
    return (candidate->aux2 & cf_referenced ? sf_referenced : 0u) |
           (candidate->aux2 & cf_used_as_bound ? sf_used_as_bound : 0u);
}

symbol *resolve_candidate(symbol *s) {
    // Out to the first symbol that is no candidate, leaving the marks of the uses within; `aux` points back
    // inward meanwhile.
    symbol *inner = nullptr;
    symbol *outer = s;
    std::uint32_t marks = 0;
    while (outer && outer->kind == sk_host_candidate) {
        outer->aux2 |=
            (marks & sf_referenced ? cf_referenced : 0u) | (marks & sf_used_as_bound ? cf_used_as_bound : 0u);
        marks |= outer->flags & use_marks;
        symbol *next = static_cast<symbol *>(outer->aux);
        outer->aux = inner;
        inner = outer;
        outer = next;
    }
    symbol *meaning = nullptr;
    if (outer) {
        outer->flags |= marks;
        meaning = follow_links(outer);
    }
    // And back in, with the meaning that the scopes so far give.
    while (inner) {
        symbol *candidate = inner;
        inner = static_cast<symbol *>(candidate->aux);
        candidate->aux = outer;
        // The marks of its own scope decide whether a candidate is a name of that scope. Those from within
        // only count as uses of what it turns out to be.
        const bool used_here = (candidate->flags & use_marks) != 0;
        if (meaning || used_here) {
            candidate->flags |= marks_from_within(candidate);
        }
        if (meaning) {
            meaning->flags |= candidate->flags & use_marks;
            become_host_link(candidate, meaning);
        } else if (used_here) {
            become_local_name(candidate);
            meaning = candidate;
        }
        outer = candidate;
    }
    return meaning;
}

void claim_candidate(symbol *s) {
    if (s->kind == sk_host_candidate) {
        s->flags |= marks_from_within(s);
        set_symbol_kind(s, sk_undetermined);
    }
}

void finish_forward_type(symbol *s) {
    if (symbol *host_type = static_cast<symbol *>(s->aux)) {
        become_host_link(s, host_type);
        return;
    }
    error_at(msg_component_type_is_not_defined, s->decl_position, s->name->spelling);
    give_up_forward_type(s);
}

void give_up_forward_type(symbol *s) {
    type *const t = entity_as<type>(s);
    t->type_code = tk_error; // for all that have it
    set_symbol_kind(s, sk_derived_type);
    s->entity = t;
}

// The meaning of `found`, settled and marked as referenced; null if it has none yet.
static symbol *settle_meaning(symbol *found) {
    found->flags |= found->kind == sk_host_link ? sf_referenced : 0u;
    symbol *s = follow_links(found);
    if (s->kind == sk_host_candidate) {
        // A candidate further out that its own scope does not use gives no meaning to this one.
        if (s->scope_depth >= curr_scope_depth) {
            s->flags |= sf_referenced;
        }
        s = resolve_candidate(s);
        if (!s) {
            return nullptr;
        }
    } else if (s->kind == sk_forward_type) {
        s->flags |= sf_referenced;
        finish_forward_type(s);
        s = follow_links(s);
    }
    s->flags |= sf_referenced;
    report_if_ambiguous(s);
    return s;
}

symbol *lookup_resolved(symbol *first_symbol, std::int32_t min_depth) {
    const std::int32_t first_depth = first_associated_depth();
    const auto is_out_of_reach = [first_depth](const symbol *s) {
        return is_passed_over(s) || (s->scope_depth < first_depth && s->scope_depth >= 1);
    };
    symbol *found = first_symbol;
    while (found && is_out_of_reach(found)) {
        found = found->next_same_name;
    }
    if (!found) {
        return nullptr;
    }
    symbol *const result = settle_meaning(found);
    if (!result || result->scope_depth >= min_depth) {
        return result;
    }
    // The links through which the name was reached are repeated in the scopes within.
    std::int32_t depth = min_depth;
    for (symbol *s = first_symbol, *next; s && s != result; s = next) {
        next = s->next_same_name;
        if (s->kind != sk_host_link || is_out_of_reach(s)) {
            continue;
        }
        for (; depth > s->scope_depth; --depth) {
            symbol *link = new_further_symbol(sk_host_link, {result->name, result->decl_position}, depth);
            link->entity = result;
            link->flags |= sf_referenced;
        }
        depth = std::min(depth, s->scope_depth - 1);
    }
    return result;
}

// ---- implied-DO variables

symbol *push_implied_do_variable(const name_locator &locator) {
    symbol *s = alloc_symbol(sk_implied_do_var);
    s->name = locator.atom ? locator.atom : error_atom;
    s->decl_position = locator.position;
    if (implied_do_depth == -1) {
        implied_do_depth = curr_scope_depth;
    }
    s->scope_depth = ++implied_do_depth;
    s->flags |= sf_visible;
    if (s->name != error_atom) {
        check_name_length(s->name, s->decl_position);
        link_symbol(s);
    }
    return s;
}

void pop_implied_do_variable(symbol *s) {
    unlink_symbol(s);
    if (--implied_do_depth == curr_scope_depth) {
        implied_do_depth = -1;
    }
}

// ---- uses

void note_declaration(symbol *s, source_pos position, bool update) {
    xref_write(use_declared, s, position);
    if (update) {
        s->decl_position = position;
    }
}

void note_symbol_use(use_kind use, symbol *s, source_pos position) {
    xref_write(use, s, position);
    s->flags |= sf_referenced;
}

// Whether the entity of a symbol of that kind has a `source_corresp` to be marked.
static bool has_markable_entity(symbol_kind kind) {
    return kind <= sk_specific_subroutine || (kind >= sk_program && kind <= sk_common_block) ||
           (kind >= sk_external_unused && kind <= sk_dummy_procedure) || kind == sk_namelist;
}

void mark_entity(const symbol *s) {
    if (!s->entity || !has_markable_entity(s->kind)) {
        return;
    }
    entity_as<named_entry>(s)->source_corresp.referenced = true;
    if (s->kind == sk_variable) {
        const object *o = entity_as<object>(s);
        if (o->storage_class == sc_associated && o->assoc.variable) {
            o->assoc.variable->source_corresp.referenced = true;
        }
    }
}

void note_use(use_kind use, symbol *s, source_pos position) {
    note_symbol_use(use, s, position);
    if (use == use_modified && s->kind == sk_variable && (s->var_flags & vf_do_variable)) {
        warning_at(msg_do_variable_modified_within_do_loop, position);
    }
    mark_entity(s);
}

} // namespace zf90
