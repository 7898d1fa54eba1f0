// Each record by itself, and then that lists and trees end: along the links from the whole to its parts no
// record comes back to itself. All other links may lead anywhere.
#include "library/check_records.h"

#include "il/fields.h"
#include "il/types.h"
#include "output/il_reader.h"

#include <array>
#include <cstring>
#include <vector>

namespace zf90 {

namespace {

std::array<std::size_t, entry_kind_count + 1> first_node; // of each kind, among all records
record_fault fault;

template <class T> std::size_t node_of(const T *entry) {
    return first_node[kind_of<T>] + static_cast<std::size_t>(entry - entries_of<T>(kind_of<T>));
}

template <std::size_t count> bool is_one_of(const char *name, const char *const (&names)[count]) {
    for (const char *other : names) {
        if (std::strcmp(name, other) == 0) {
            return true;
        }
    }
    return false;
}

// Whether a link of this name to an entry of this kind leads from the whole to a part or to the next of a
// list.
bool leads_to_part(entry_kind kind, const char *name) {
    static constexpr const char *type_parts[] = {"next", "types", "return_type", "element_type"};
    static constexpr const char *object_parts[] = {"next", "objects", "first_field"};
    static constexpr const char *interface_parts[] = {"next", "interfaces"};
    static constexpr const char *label_parts[] = {"next", "labels"};
    static constexpr const char *parameter_parts[] = {"next", "param_type_list"};
    static constexpr const char *scope_parts[] = {"variant.assoc_scope", "primary_scope"};
    static constexpr const char *statements_elsewhere[] = {"variant.constr_label", "entry_point",
                                                           "variant.exec_stmt"};
    switch (kind) {
    case kind_type: return is_one_of(name, type_parts);
    case kind_object: return is_one_of(name, object_parts);
    case kind_interface: return is_one_of(name, interface_parts);
    case kind_label: return is_one_of(name, label_parts);
    case kind_param_type: return is_one_of(name, parameter_parts);
    case kind_scope: return is_one_of(name, scope_parts);
    case kind_statement: return !is_one_of(name, statements_elsewhere);
    case kind_expr_node: return std::strcmp(name, "assoc.implied_do") != 0;
    default: return true;
    }
}

// Whether the link of this name must lead somewhere.
bool is_required(const char *name) {
    static constexpr const char *required[] = {"primary_source_file",
                                               "type",
                                               "return_type",
                                               "element_type",
                                               "routine",
                                               "constant",
                                               "stmt_label_value",
                                               "variant.object",
                                               "base_expr",
                                               "field_var",
                                               "array_expr",
                                               "do_info",
                                               "reference",
                                               "parameter",
                                               "interface_block",
                                               "variant.label",
                                               "entry_descr",

                                               "io_descr",
                                               "variable",
                                               "initial_value",
                                               "final_value",
                                               "label",
                                               "object",
                                               "var",
                                               "format.label",
                                               "format.expr",
                                               "format.namelist_group",
                                               "variant.formula.expr",
                                               "bound",
                                               "bound value"};
    return is_one_of(name, required);
}

// Finds what must not be null, and collects the parts.
struct link_visitor {
    static constexpr bool reading = true;
    std::vector<std::size_t> *parts;
    bool lacks_link = false;

    template <class T> void reference(const char *name, T *&entry) {
        if constexpr (!std::is_same_v<T, atom>) {
            if (!entry) {
                lacks_link = lacks_link || is_required(name);
            } else if (leads_to_part(kind_of<T>, name)) {
                parts->push_back(node_of(entry));
            }
        }
    }
    void bounds(const char *name, bound_info_entry *&entry, unsigned rank) {
        if (!entry) {
            lacks_link = lacks_link || is_required(name);
            return;
        }
        for (unsigned i = 0; i < 2 * rank; ++i) {
            bound_value("", entry->bounds[i]);
        }
    }
    void bound_value(const char *, bound &b) {
        if (b.kind == bound_expression || b.kind == bound_same_as) {
            reference("bound value", b.expr);
        }
    }
    template <class I> void integer(const char *, I &) {}
    template <class E> void enumeration(const char *, E &, unsigned) {}
    void position(const char *, source_pos &) {}
    void flag_run() {}
    void flag(const char *, bool &) {}
    void string(const char *, const char *&) {}
    void constant_value(constant &) {}
};

// ---- values of fields

bool is_kind(std::uint32_t kind, std::uint32_t count) { return kind < count || kind == ANY_KIND; }

const char *fault_of_type(const type &t) {
    switch (t.type_code) {
    case tk_integer: return is_kind(t.kind, integer_kind_count) ? nullptr : "no such kind of integer";
    case tk_logical: return is_kind(t.kind, logical_kind_count) ? nullptr : "no such kind of logical";
    case tk_float:
    case tk_complex: return is_kind(t.kind, real_kind_count) ? nullptr : "no such kind of real";
    case tk_fcharacter: return is_kind(t.kind, character_kind_count) ? nullptr : "no such kind of character";
    case tk_farray: return t.array.rank <= 7 ? nullptr : "no such rank";
    default: return nullptr;
    }
}

bool has_value(const type &t) {
    switch (t.type_code) {
    case tk_integer: return t.kind < integer_kind_count && t.size == integer_kinds[t.kind].byte_size;
    case tk_logical: return t.kind < logical_kind_count && t.size == logical_kinds[t.kind].byte_size;
    case tk_float: return t.kind < real_kind_count && t.size == real_kinds[t.kind].byte_size;
    case tk_complex: return t.kind < real_kind_count && t.size == 2 * real_kinds[t.kind].byte_size;
    case tk_fcharacter:
        return t.kind < character_kind_count && t.character.length.kind == bound_constant &&
               t.character.length.value >= 0 &&
               static_cast<std::uint32_t>(t.character.length.value) <= t.size;
    default: return false;
    }
}

const char *fault_of_constant(const constant &c) {
    if (c.repr_kind == ck_error) {
        return "an erroneous constant";
    }
    const bool is_value = c.repr_kind == ck_value || c.repr_kind == ck_expression;
    return is_value && c.type && !has_value(*c.type) ? "a value of a type that has none" : nullptr;
}

const char *fault_of_expression(const expr_node &e) {
    switch (e.node_kind) {
    case enk_error:
    case enk_data_implied_do_var:
    case enk_symbol:
    case enk_symbol_call: return "an expression that is not finished";
    case enk_operation: return e.op_kind == eok_error ? "an erroneous operation" : nullptr;
    case enk_generic_call: return e.generic ? nullptr : "a link that leads nowhere";
    default: return nullptr;
    }
}

const char *fault_of_range(const case_range &r) {
    const bool needs_low = r.range_kind != crk_ge;
    const bool needs_high = r.range_kind == crk_ge || r.range_kind == crk_gl;
    return (needs_low && !r.low) || (needs_high && !r.high) ? "a range without its bounds" : nullptr;
}

const char *fault_of_unit(const input_output_description &j) {
    const bool needs_unit = j.unit_kind == iou_external || j.unit_kind == iou_internal;
    return needs_unit && !j.unit_expr ? "no unit" : nullptr;
}

template <class T> const char *fault_of_values(const T &entry) {
    if constexpr (std::is_same_v<T, type>) {
        return fault_of_type(entry);
    } else if constexpr (std::is_same_v<T, constant>) {
        return fault_of_constant(entry);
    } else if constexpr (std::is_same_v<T, expr_node>) {
        return fault_of_expression(entry);
    } else if constexpr (std::is_same_v<T, case_range>) {
        return fault_of_range(entry);
    } else if constexpr (std::is_same_v<T, input_output_description>) {
        return fault_of_unit(entry);
    } else {
        return nullptr;
    }
}

// ---- the records

// Appends the parts of a record. Sets the fault, if there is none yet, when a link is missing.
template <class T> void visit_record(T &entry, std::vector<std::size_t> &parts) {
    link_visitor v{&parts};
    describe_fields(entry, v);
    const char *text = v.lacks_link ? "a link that leads nowhere" : fault_of_values(entry);
    if (text && !fault.text) {
        fault = {text, &entry, kind_of<T>};
    }
}

entry_kind kind_of_node(std::size_t node) {
    unsigned kind = 0;
    while (node >= first_node[kind + 1]) {
        ++kind;
    }
    return static_cast<entry_kind>(kind);
}

const il_entry *visit_node(std::size_t node, std::vector<std::size_t> &parts) {
    const entry_kind kind = kind_of_node(node);
    const std::size_t place = node - first_node[kind];
    switch (kind) {
#define VISIT_RECORD(name)                                  \
    case kind_##name: {                                     \
        auto &entry = entries_of<struct name>(kind)[place]; \
        visit_record(entry, parts);                         \
        return &entry;                                      \
    }
        ZF90_DESCRIBED_RECORDS(VISIT_RECORD)
#undef VISIT_RECORD
    default: return nullptr;
    }
}

bool is_described(unsigned kind) {
    return kind >= kind_il_header && kind <= kind_entry_description && kind != kind_atom &&
           kind != kind_bound_info_entry;
}

void number_nodes() {
    std::size_t node = 0;
    for (unsigned kind = 0; kind <= entry_kind_count; ++kind) {
        first_node[kind] = node;
        if (kind < entry_kind_count && is_described(kind)) {
            node += entry_counts[kind];
        }
    }
}

// A walk of its own, deep first, that remembers which records it is in.
struct open_record {
    std::size_t node;
    std::size_t first_part; // in the list of the parts of all open records
    const il_entry *entry;
};

enum progress : std::uint8_t { untouched, open, done };

void walk_parts(std::size_t start, std::vector<progress> &state, std::vector<open_record> &path,
                std::vector<std::size_t> &parts) {
    std::size_t next = start;
    for (bool entering = true;;) {
        if (entering) {
            state[next] = open;
            const std::size_t first_part = parts.size();
            const il_entry *const entry = visit_node(next, parts);
            path.push_back({next, first_part, entry});
        }
        if (fault.text) {
            return;
        }
        const open_record &current = path.back();
        entering = false;
        if (parts.size() == current.first_part) {
            state[current.node] = done;
            path.pop_back();
            if (path.empty()) {
                return;
            }
            continue;
        }
        next = parts.back();
        parts.pop_back();
        if (state[next] == open) {
            fault = {"a part of itself", current.entry, kind_of_node(current.node)};
            return;
        }
        entering = state[next] == untouched;
    }
}

} // namespace

record_fault check_records(const symbol *first_symbol) {
    fault = {};
    number_nodes();
    const std::size_t count = first_node[entry_kind_count];
    std::vector<progress> state(count, untouched);
    std::vector<open_record> path;
    std::vector<std::size_t> parts;
    for (std::size_t node = 0; node < count && !fault.text; ++node) {
        if (state[node] == untouched) {
            walk_parts(node, state, path, parts);
        }
    }
    for (const symbol *s = first_symbol; s && !fault.text; s = s->next_in_scope) {
        if (!s->name || !s->entity) {
            fault = {"a symbol without a name or a meaning", s, kind_symbol};
        }
    }
    return fault;
}

} // namespace zf90
