// What each record holds, in the order of the file format: the one description from which the writer, the
// reader and the dump of the intermediate language are made. `describe_fields(record, visitor)` hands every
// field to the visitor, by name and by reference, so that a reader can fill it; a field that decides which
// fields follow comes before them. A visitor has these functions:
//
//     reference(name, T *&)            a link to an entry of the kind of T
//     bounds(name, bound_info_entry *&, rank)
//     integer(name, I &)               a count, a size, a kind
//     enumeration(name, E &, count)    an enumerator below `count`
//     position(name, source_pos &)
//     flag_run(), flag(name, bool &)   consecutive flags, announced once
//     string(name, const char *&)
//     constant_value(constant &)       the bytes of its value
//     bound_value(name, bound &)       a bound with its kind
//     begin_group(name), end_group()   around the fields of an embedded record; a visitor may lack both
// and a constant `reading`: what the writer leaves out of a form of the file is read like the rest.
#pragma once

#include "driver/diagnostics.h"
#include "il/entries.h"
#include "il/records.h"

namespace zf90 {

// The entry kind of a record type.
template <class T> inline constexpr entry_kind kind_of = kind_end;
#define ZF90_KIND_OF(name) template <> inline constexpr entry_kind kind_of<struct name> = kind_##name;
ZF90_KIND_OF(il_header)
ZF90_KIND_OF(source_file)
ZF90_KIND_OF(constant)
ZF90_KIND_OF(param_type)
ZF90_KIND_OF(type)
ZF90_KIND_OF(label)
ZF90_KIND_OF(expr_node)
ZF90_KIND_OF(object)
ZF90_KIND_OF(interface)
ZF90_KIND_OF(statement)
ZF90_KIND_OF(scope)
ZF90_KIND_OF(atom)
ZF90_KIND_OF(bound_info_entry)
ZF90_KIND_OF(do_loop)
ZF90_KIND_OF(label_list_entry)
ZF90_KIND_OF(object_list_member)
ZF90_KIND_OF(alloc)
ZF90_KIND_OF(case_range)
ZF90_KIND_OF(namelist_group)
ZF90_KIND_OF(input_output_description)
ZF90_KIND_OF(entry_description)
ZF90_KIND_OF(symbol)
#undef ZF90_KIND_OF

// The records that describe_fields describes, for switches over kinds.
#define ZF90_DESCRIBED_RECORDS(X) \
    X(il_header)                  \
    X(source_file)                \
    X(constant)                   \
    X(param_type)                 \
    X(type)                       \
    X(label)                      \
    X(expr_node)                  \
    X(object)                     \
    X(interface)                  \
    X(statement)                  \
    X(scope)                      \
    X(do_loop)                    \
    X(label_list_entry)           \
    X(object_list_member)         \
    X(alloc)                      \
    X(case_range)                 \
    X(namelist_group)             \
    X(input_output_description)   \
    X(entry_description)

// A link that this form of the file leaves out prints as null: a module file holds no lists of scopes.
template <class V, class T> void optional_reference(V &v, const char *name, T *&link, bool present) {
    T *absent = nullptr;
    v.reference(name, V::reading || present ? link : absent);
}

template <class V> void describe_source_corresp(source_corresp &s, V &v) {
    if constexpr (requires { v.begin_group(""); }) {
        v.begin_group("source_corresp");
    }
    v.reference("name", s.name);
    // The declarations of a module have no place in the source of its user.
    source_pos writing_position = error_pos;
    v.position("decl_position", module_mode && !V::reading ? writing_position : s.decl_position);
    v.flag_run();
    v.flag("referenced", s.referenced);
    v.flag("host_associated", s.host_associated);
    v.integer("scope_depth", s.scope_depth);
    if constexpr (requires { v.end_group(); }) {
        v.end_group();
    }
}

template <class V> void describe_fields(il_header &h, V &v) {
    v.reference("primary_source_file", h.primary_source_file);
    v.reference("primary_scope", h.primary_scope);
    v.reference("main_routine", h.main_routine);
    v.string("compiler_version", h.compiler_version);
    v.string("time_of_compilation", h.time_of_compilation);
    v.flag_run();
    v.flag("case_sensitive_identifiers", h.case_sensitive_identifiers);
    v.enumeration("source language", h.source_language, 2);
}

template <class V> void describe_fields(source_file &f, V &v) {
    v.string("file_name", f.file_name);
    v.string("full_name", f.full_name);
    v.integer("first_seq_number", f.first_seq_number);
    v.integer("last_seq_number", f.last_seq_number);
    v.integer("first_line_number", f.first_line_number);
    v.reference("first_child_file", f.first_child_file);
    v.reference("last_child_file", f.last_child_file);
    v.reference("next", f.next);
}

template <class V> void describe_fields(constant &c, V &v) {
    v.position("source_pos", c.source_pos);
    v.reference("next", c.next);
    v.reference("type", c.type);
    // A module file keeps the value of a folded expression, and not the expression.
    constant_kind value_kind = ck_value;
    const bool drops_expression = !V::reading && module_mode && c.repr_kind == ck_expression;
    v.enumeration("kind", drops_expression ? value_kind : c.repr_kind, constant_kind_count);
    switch (c.repr_kind) {
    case ck_value: v.constant_value(c); break;
    case ck_expression:
        if (!drops_expression) {
            v.reference("variant.formula.expr", c.value.expr);
        }
        v.constant_value(c);
        break;
    case ck_aggregate:
        v.reference("first_constant", c.aggregate.first_constant);
        v.reference("last_constant", c.aggregate.last_constant);
        break;
    case ck_init_position:
        v.integer("offset", c.position.offset);
        v.integer("segment_size", c.position.segment_size);
        break;
    case ck_init_index:
        v.integer("first", c.index.first);
        v.integer("second", c.index.second);
        v.integer("stride", c.index.stride);
        break;
    case ck_init_repeat: // the other way about from memory
        v.integer("count", c.repeat.count);
        v.reference("constant", c.repeat.constant);
        break;
    default: break;
    }
}

template <class V> void describe_fields(param_type &p, V &v) {
    describe_source_corresp(p.source_corresp, v);
    v.reference("next", p.next);
    v.reference("type", p.type);
    v.flag_run();
    v.flag("is_optional", p.is_optional);
    v.flag("intent_in", p.intent_in);
    v.flag("intent_out", p.intent_out);
    v.flag("is_pointer", p.is_pointer);
}

template <class V> void describe_type_variant(type &t, V &v) {
    switch (t.type_code) {
    case tk_integer:
    case tk_logical:
    case tk_float:
    case tk_complex: v.integer("kind", t.kind); break;
    case tk_routine:
        v.reference("return_type", t.routine.return_type);
        v.reference("param_type_list", t.routine.param_type_list);
        v.reference("assoc_routine", t.routine.assoc_routine);
        v.flag_run();
        v.flag("has_param_info", t.routine.has_param_info);
        v.flag("has_ellipsis", t.routine.has_ellipsis);
        v.flag("is_recursive", t.routine.is_recursive);
        v.flag("is_elemental", t.routine.is_elemental);
        break;
    case tk_fcharacter:
        v.integer("kind", t.kind);
        v.bound_value("length", t.character.length);
        break;
    case tk_farray:
        v.reference("element_type", t.array.element_type);
        v.integer("rank", t.array.rank);
        v.enumeration("shape_kind", t.array.shape_kind, shape_kind_count);
        if (t.array.shape_kind <= as_shaped) {
            v.bounds("bound", t.array.bound, t.array.rank);
        } else {
            v.reference("bound.args", t.array.args);
        }
        break;
    case tk_derived_type: {
        const bool shows_fields = !module_mode || (t.derived.first_field && t.derived.first_field->is_public);
        optional_reference(v, "first_field", t.derived.first_field, shows_fields);
        v.reference("module", t.derived.module);
        v.flag_run();
        v.flag("is_seq", t.derived.is_seq);
        break;
    }
    default: break;
    }
}

template <class V> void describe_fields(type &t, V &v) {
    describe_source_corresp(t.source_corresp, v);
    // Cached types use the link for other lists than a scope's.
    optional_reference(v, "next", t.next, t.type_code == tk_derived_type && !module_mode);
    v.integer("size", t.size);
    v.integer("alignment", t.alignment);
    v.flag_run();
    v.flag("is_numeric", t.is_numeric);
    v.flag("is_character", t.is_character);
    v.flag("contains_ptrs", t.contains_ptrs);
    v.flag("is_public", t.is_public);
    v.enumeration("type_code", t.type_code, type_code_count);
    describe_type_variant(t, v);
}

template <class V> void describe_fields(label &l, V &v) {
    describe_source_corresp(l.source_corresp, v);
    v.reference("next", l.next);
    v.integer("association_offset", l.association_offset);
    v.flag_run();
    v.flag("used_in_assign", l.used_in_assign);
    v.flag("", l.second_flag);
    v.enumeration("kind", l.kind, label_kind_count);
    switch (l.kind) {
    case lk_executable:
    case lk_else_or_elseif:
    case lk_control: v.reference("variant.exec_stmt", l.exec_stmt); break;
    case lk_format: v.reference("variant.format_constant", l.format_constant); break;
    default: break;
    }
}

template <class V> void describe_expr_variant(expr_node &e, V &v) {
    switch (e.node_kind) {
    case enk_operation:
        v.enumeration("op_kind", e.op_kind, operation_kind_count);
        v.reference("operands", e.operands);
        break;
    case enk_intrinsic:
        v.enumeration("intrinsic", e.intrinsic, intrinsic_vocabulary_size);
        v.reference("operands", e.operands);
        break;
    case enk_call:
        v.reference("routine", e.routine);
        v.reference("operands", e.operands);
        v.reference("interface", e.interface);
        break;
    case enk_constant: v.reference("constant", e.constant); break;
    case enk_stmt_label_value: v.reference("stmt_label_value", e.stmt_label_value); break;
    case enk_object: v.reference("variant.object", e.object); break;
    case enk_field:
        v.reference("base_expr", e.base_expr);
        v.reference("field_var", e.field_var);
        break;
    case enk_subscript:
    case enk_substring:
    case enk_section:
        v.reference("array_expr", e.array_expr);
        v.reference("ind_list", e.ind_list);
        v.flag_run();
        v.flag("ignore_lbound", e.ignore_lbound);
        break;
    case enk_constructor: v.reference("constructor", e.constructor); break;
    case enk_implied_do:
    case enk_isum:
        v.reference("expr_list", e.expr_list);
        v.reference("do_info", e.do_info);
        v.flag_run();
        v.flag("has_a_scope", e.has_a_scope);
        break;
    case enk_triplet:
        v.reference("first", e.first);
        v.reference("second", e.second);
        v.reference("stride", e.stride);
        break;
    case enk_ref: v.reference("reference", e.reference); break;
    case enk_param: v.reference("parameter", e.parameter); break;
    case enk_generic_call:
        v.reference("routine", e.generic);
        v.reference("operands", e.operands);
        break;
    case enk_interface_block: v.reference("interface_block", e.interface_block); break;
    default: break;
    }
}

template <class V> void describe_fields(expr_node &e, V &v) {
    v.position("source_pos", e.source_pos);
    v.reference("type", e.type);
    v.reference("next", e.next);
    v.flag_run();
    v.flag("multiply_referenced", e.multiply_referenced);
    v.flag("allow_reordering", e.allow_reordering);
    v.flag("is_optional", e.is_optional);
    v.flag("intent_in", e.intent_in);
    v.flag("intent_out", e.intent_out);
    v.flag("is_pointer", e.is_pointer);
    v.flag("element_sequence", e.element_sequence);
    v.flag("for_all", e.for_all);
    v.flag("iterated", e.iterated);
    v.flag("treated_as_subroutine_call", e.treated_as_subroutine_call);
    v.flag("any_type_argument", e.any_type_argument);
    v.flag("is_specifier", e.is_specifier);
    v.enumeration("node_kind", e.node_kind, expr_node_kind_count);
    if (e.is_specifier) {
        v.enumeration("argument selector", e.selector, io_specifier_count);
    } else {
        v.reference("argument keyword", e.keyword);
    }
    describe_expr_variant(e, v);
}

template <class V> void describe_object_variant(object &o, V &v) {
    switch (o.storage_class) {
    case sc_local:
        if (o.is_result) {
            v.reference("result_var_function", o.variant.result_var_function);
        } else {
            v.reference("variant.initializer", o.variant.initializer);
        }
        v.reference("assoc.routine", o.assoc.routine);
        break;
    case sc_common:
        v.reference("variant.initializer", o.variant.initializer);
        v.reference("assoc.routine", o.assoc.routine);
        break;
    case sc_use_associated:
        v.reference("variant.initializer", o.variant.initializer);
        v.reference("assoc.module", o.assoc.module);
        break;
    case sc_associated:
        if (o.is_result) {
            v.reference("result_var_function", o.variant.result_var_function);
        }
        v.reference("assoc.variable", o.assoc.variable);
        break;
    case sc_implied_do_var: v.reference("assoc.implied_do", o.assoc.implied_do); break;
    case sc_type_field: v.reference("assoc.derived_type", o.assoc.derived_type); break;
    case sc_external:
    case sc_module:
    case sc_program:
    case sc_blockdata:
    case sc_internal:
    case sc_stmt_func:
    case sc_unspecified:
        optional_reference(v, "variant.assoc_scope", o.variant.assoc_scope, !module_mode);
        v.reference("assoc.routine", o.assoc.routine);
        break;
    case sc_mod_proc: v.reference("assoc.module", o.assoc.module); break;
    default: break;
    }
}

template <class V> void describe_fields(object &o, V &v) {
    describe_source_corresp(o.source_corresp, v);
    optional_reference(v, "next", o.next, !module_mode || o.storage_class == sc_type_field);
    v.reference("type", o.type);
    v.enumeration("storage_class", o.storage_class, storage_class_count);
    v.flag_run();
    v.flag("is_result", o.is_result);
    v.flag("is_parameter", o.is_parameter);
    v.flag("is_auto", o.is_auto);
    v.flag("is_target", o.is_target);
    v.flag("is_pointer", o.is_pointer);
    v.flag("is_allocatable", o.is_allocatable);
    v.flag("is_saved", o.is_saved);
    v.flag("is_optional", o.is_optional);
    v.flag("intent_in", o.intent_in);
    v.flag("intent_out", o.intent_out);
    v.flag("is_fortran_entry", o.is_fortran_entry);
    v.flag("is_public", o.is_public);
    v.flag("is_host", o.is_host);
    v.flag("uses_host", o.uses_host);
    v.flag("is_constant", o.is_constant);
    v.integer("association_offset", o.association_offset);
    describe_object_variant(o, v);
}

template <class V> void describe_fields(interface &i, V &v) {
    describe_source_corresp(i.source_corresp, v);
    optional_reference(v, "next", i.next, !module_mode);
    optional_reference(v, "inherited", i.inherited, false);
    v.reference("routine_prototype_list", i.routine_prototype_list);
    v.flag_run();
    v.flag("is_public", i.is_public);
}

template <class V> void describe_statement_variant(statement &s, V &v) {
    switch (s.kind) {
    case stmk_if:
        v.reference("then_statement", s.then_statement);
        v.reference("else_statement", s.else_statement);
        break;
    case stmk_while:
    case stmk_select: v.reference("body_statement", s.body_statement); break;
    case stmk_goto:
    case stmk_label: v.reference("variant.label", s.label); break;
    case stmk_block:
        v.reference("statements", s.statements);
        v.reference("last_statement", s.last_statement);
        break;
    case stmk_fentry:
        v.reference("entry_descr", s.entry_descr);
        v.reference("prologue", s.prologue);
        break;
    case stmk_ido:
    case stmk_fdo:
        v.reference("loop_statement", s.loop_statement);
        v.reference("do_loop", s.do_loop);
        break;
    case stmk_iarith_if:
    case stmk_farith_if:
    case stmk_computed_goto:
    case stmk_assigned_goto: v.reference("variant.label_list", s.label_list); break;
    case stmk_stop:
    case stmk_pause: v.reference("stop_pause_string", s.stop_pause_string); break;
    case stmk_case:
        v.reference("case_range_list", s.case_range_list);
        v.reference("statements", s.case_statements);
        break;
    case stmk_exit:
    case stmk_cycle: v.reference("variant.constr_label", s.constr_label); break;
    case stmk_where:
        v.reference("where_assignment", s.where_assignment);
        v.reference("elsewhere_assignment", s.elsewhere_assignment);
        break;
    case stmk_alloc:
        v.reference("list", s.alloc_list);
        v.reference("stat_variable", s.stat_variable);
        break;
    case stmk_dealloc:
        v.reference("list", s.dealloc_list);
        v.reference("stat_variable", s.stat_variable);
        break;
    case stmk_set_array_shape: v.reference("variant.array_variable", s.array_variable); break;
    case stmk_set_char_length: v.reference("variant.string_variable", s.string_variable); break;
    case stmk_open:
    case stmk_close:
    case stmk_read:
    case stmk_write:
    case stmk_inquire:
    case stmk_backspace:
    case stmk_endfile:
    case stmk_rewind:
        v.reference("io_descr", s.io_descr);
        v.flag_run();
        v.flag("treated_as_io_initializer", s.treated_as_io_initializer);
        break;
    default: break;
    }
}

template <class V> void describe_fields(statement &s, V &v) {
    v.position("source_pos", s.source_pos);
    v.reference("next", s.next);
    v.enumeration("kind", s.kind, il_statement_kind_count);
    v.reference("expr", s.expr);
    describe_statement_variant(s, v);
}

template <class V> void describe_fields(scope &u, V &v) {
    v.reference("assoc_routine", u.assoc_routine);
    v.reference("parameters", u.parameters);
    v.reference("function_result_var", u.function_result_var);
    v.reference("assoc_block", u.assoc_block);
    v.reference("constants", u.constants);
    v.reference("types", u.types);
    v.reference("objects", u.objects);
    v.reference("labels", u.labels);
    v.reference("entries", u.entries);
    v.reference("namelist_groups", u.namelist_groups);
    v.reference("interfaces", u.interfaces);
}

template <class V> void describe_fields(do_loop &d, V &v) {
    v.reference("variable", d.variable);
    v.reference("initial_value", d.initial_value);
    v.reference("final_value", d.final_value);
    v.reference("increment", d.increment);
    v.flag_run();
    v.flag("final_value_excluded", d.final_value_excluded);
}

template <class V> void describe_fields(label_list_entry &k, V &v) {
    v.reference("next", k.next);
    v.reference("label", k.label);
}

template <class V> void describe_fields(object_list_member &m, V &v) {
    v.reference("next", m.next);
    v.reference("object", m.object);
}

template <class V> void describe_fields(alloc &q, V &v) {
    v.reference("next", q.next);
    v.reference("var", q.var);
    v.integer("rank", q.rank); // the other way about from memory
    v.bounds("bounds", q.bounds, q.rank);
}

template <class V> void describe_fields(case_range &r, V &v) {
    v.reference("next", r.next);
    v.reference("low", r.low);
    v.reference("high", r.high);
    v.enumeration("range_kind", r.range_kind, case_range_kind_count);
}

template <class V> void describe_fields(namelist_group &n, V &v) {
    describe_source_corresp(n.source_corresp, v);
    optional_reference(v, "next", n.next, !module_mode);
    v.reference("original_name", n.original_name);
    v.reference("member_list", n.member_list);
    v.flag_run();
    v.flag("is_public", n.is_public);
}

template <class V> void describe_fields(input_output_description &j, V &v) {
    v.enumeration("unit_kind", j.unit_kind, unit_kind_count);
    v.reference("unit_expr", j.unit_expr);
    v.enumeration("format_kind", j.format_kind, format_kind_count);
    switch (j.format_kind) {
    case iof_format_label: v.reference("format.label", j.format.label); break;
    case iof_assigned_var:
    case iof_char_expr: v.reference("format.expr", j.format.expr); break;
    case iof_namelist_directed: v.reference("format.namelist_group", j.format.namelist_group); break;
    default: break;
    }
    v.reference("specifier_list", j.specifier_list);
}

template <class V> void describe_fields(entry_description &e, V &v) {
    v.reference("next", e.next);
    v.reference("assoc_routine", e.assoc_routine);
    v.reference("parameters", e.parameters);
    v.reference("function_result_var", e.function_result_var);
    v.reference("entry_point", e.entry_point);
}

} // namespace zf90
