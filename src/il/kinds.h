// The enumerations of the intermediate language. Each list stands here once, in number order; the
// enumerators and their printed names are both made from it. The numbers are part of the file format.
#pragma once

#include <cstdint>

namespace zf90 {

// clang-format off

// Entry kinds: enumerator, printed name, file letter, whether the entry carries a `source_corresp`.
#define ZF90_ENTRY_KINDS(X) \
    X(end, "(end)", '0', false) \
    X(il_header, "il_header", 'h', false) \
    X(source_file, "source_file", 'f', false) \
    X(constant, "constant", 'c', false) \
    X(param_type, "param_type", 'p', true) \
    X(type, "type", 't', true) \
    X(label, "label", 'l', true) \
    X(expr_node, "expr_node", 'x', false) \
    X(object, "object", 'o', true) \
    X(interface, "interface", 'i', true) \
    X(statement, "statement", 's', false) \
    X(scope, "scope", 'u', false) \
    X(atom, "atom", 'a', false) \
    X(bound_info_entry, "bound_info_entry", 'b', false) \
    X(do_loop, "do_loop", 'd', false) \
    X(label_list_entry, "label_list_entry", 'k', false) \
    X(object_list_member, "object_list_member", 'm', false) \
    X(alloc, "alloc", 'q', false) \
    X(case_range, "case_range", 'r', false) \
    X(namelist_group, "namelist_group", 'n', true) \
    X(input_output_description, "input_output_description", 'j', false) \
    X(entry_description, "entry_description", 'e', false) \
    X(symbol, "symbol", 'z', false) \
    X(string_area, "(string area)", 'w', false) \
    X(value_area, "(value area)", 'v', false)

// Type codes.
#define ZF90_TYPE_CODES(X) \
    X(tk_void) X(tk_integer) X(tk_logical) X(tk_float) X(tk_routine) X(tk_fcharacter) X(tk_farray)       \
    X(tk_complex) X(tk_stmt_label) X(tk_format) X(tk_association) X(tk_unspec_routine) X(tk_blockdata)   \
    X(tk_module) X(tk_derived_type) X(tk_error) X(tk_any_type) X(tk_any_derived) X(tk_any_numerical)     \
    X(tk_unknown)

// Storage classes of an object.
#define ZF90_STORAGE_CLASSES(X) \
    X(sc_local) X(sc_common) X(sc_associated) X(sc_implied_do_var) X(sc_use_associated) X(sc_type_field) \
    X(sc_external) X(sc_module) X(sc_program) X(sc_blockdata) X(sc_intrinsic) X(sc_internal)             \
    X(sc_stmt_func) X(sc_mod_proc) X(sc_unspecified)

// Kinds of expression nodes.
#define ZF90_EXPR_NODE_KINDS(X) \
    X(enk_error) X(enk_operation) X(enk_intrinsic) X(enk_call) X(enk_constant) X(enk_stmt_label_value)   \
    X(enk_object) X(enk_field) X(enk_subscript) X(enk_substring) X(enk_section) X(enk_constructor)       \
    X(enk_implied_do) X(enk_triplet) X(enk_empty) X(enk_ref) X(enk_isum) X(enk_param)                    \
    X(enk_generic_call) X(enk_interface_block) X(enk_data_implied_do_var) X(enk_symbol)                  \
    X(enk_symbol_call)

// Operations of an `enk_operation`. The letter before the operation says the class of the operands: i integer,
// f real, x complex, c character, l logical, p pointer, s structure, none for array-valued operations.
#define ZF90_OPERATIONS(X) \
    X(eok_not) X(eok_inegate) X(eok_fnegate) X(eok_xnegate) X(eok_cast) X(eok_spread) X(eok_concat)      \
    X(eok_land) X(eok_lor) X(eok_neqv) X(eok_eqv) X(eok_lassign) X(eok_iadd) X(eok_isubtract)            \
    X(eok_imultiply) X(eok_idivide) X(eok_i_to_i_expon) X(eok_ieq) X(eok_ine) X(eok_igt) X(eok_ilt)      \
    X(eok_ige) X(eok_ile) X(eok_iassign) X(eok_fadd) X(eok_fsubtract) X(eok_fmultiply) X(eok_fdivide)    \
    X(eok_f_to_i_expon) X(eok_f_to_f_expon) X(eok_feq) X(eok_fne) X(eok_fgt) X(eok_flt) X(eok_fge)       \
    X(eok_fle) X(eok_fassign) X(eok_xadd) X(eok_xsubtract) X(eok_xmultiply) X(eok_xdivide)               \
    X(eok_x_to_i_expon) X(eok_x_to_x_expon) X(eok_xeq) X(eok_xne) X(eok_xassign) X(eok_ceq) X(eok_cne)   \
    X(eok_cgt) X(eok_clt) X(eok_cge) X(eok_cle) X(eok_cassign) X(eok_passign) X(eok_sassign)             \
    X(eok_reorder) X(eok_expand) X(eok_reshape) X(eok_negate) X(eok_add) X(eok_subtract) X(eok_multiply) \
    X(eok_divide) X(eok_an_to_an_expon) X(eok_eq) X(eok_ne) X(eok_gt) X(eok_lt) X(eok_ge) X(eok_le)      \
    X(eok_assign) X(eok_error)

// Specifier selectors of I/O statements.
#define ZF90_IO_SPECIFIERS(X) \
    X(iosk_access) X(iosk_action) X(iosk_advance) X(iosk_blank) X(iosk_delim) X(iosk_direct) X(iosk_end) \
    X(iosk_eor) X(iosk_err) X(iosk_exist) X(iosk_file) X(iosk_fmt) X(iosk_form) X(iosk_formatted)        \
    X(iosk_iolength) X(iosk_iostat) X(iosk_name) X(iosk_named) X(iosk_nextrec) X(iosk_nml)               \
    X(iosk_number) X(iosk_opened) X(iosk_pad) X(iosk_position) X(iosk_read) X(iosk_write)                \
    X(iosk_readwrite) X(iosk_rec) X(iosk_recl) X(iosk_sequential) X(iosk_size) X(iosk_status)            \
    X(iosk_unformatted) X(iosk_unit) X(iosk_last) X(iosk_fe_kind) X(iosk_fe_len) X(iosk_fe_stat)

// Kinds of statements.
#define ZF90_IL_STATEMENT_KINDS(X) \
    X(stmk_expr) X(stmk_if) X(stmk_while) X(stmk_goto) X(stmk_label) X(stmk_return) X(stmk_block)        \
    X(stmk_fentry) X(stmk_ido) X(stmk_fdo) X(stmk_iarith_if) X(stmk_farith_if) X(stmk_computed_goto)     \
    X(stmk_assigned_goto) X(stmk_alt_return) X(stmk_stop) X(stmk_pause) X(stmk_select) X(stmk_case)      \
    X(stmk_exit) X(stmk_cycle) X(stmk_where) X(stmk_alloc) X(stmk_dealloc) X(stmk_nullify)               \
    X(stmk_set_array_shape) X(stmk_set_char_length) X(stmk_open) X(stmk_close) X(stmk_read)              \
    X(stmk_write) X(stmk_inquire) X(stmk_backspace) X(stmk_endfile) X(stmk_rewind) X(stmk_io_item)       \
    X(stmk_io_term)

// Representations of a constant.
#define ZF90_CONSTANT_KINDS(X) \
    X(ck_error) X(ck_value) X(ck_expression) X(ck_aggregate) X(ck_init_position) X(ck_init_index)        \
    X(ck_init_repeat)

// Kinds of labels.
#define ZF90_LABEL_KINDS(X) \
    X(lk_unknown) X(lk_executable) X(lk_specification) X(lk_format) X(lk_else_or_elseif) X(lk_control)

// Kinds of CASE ranges.
#define ZF90_CASE_RANGE_KINDS(X) \
    X(crk_le) X(crk_ge) X(crk_gl) X(crk_eq)

// Kinds of array shapes.
#define ZF90_SHAPE_KINDS(X) \
    X(explicit_shape) X(assumed_size) X(assumed_shape) X(deferred_shape) X(as_shaped) X(same_shape)      \
    X(add_dimension) X(delete_dimension)

// Kinds of bounds.
#define ZF90_BOUND_KINDS(X) \
    X(bound_error) X(bound_constant) X(bound_expression) X(bound_assumed) X(bound_undefined)             \
    X(bound_same_as)

// Kinds of units of an I/O statement.
#define ZF90_UNIT_KINDS(X) \
    X(iou_none) X(iou_error) X(iou_external) X(iou_default) X(iou_internal)

// Kinds of formats of an I/O statement.
#define ZF90_FORMAT_KINDS(X) \
    X(iof_none) X(iof_error) X(iof_format_label) X(iof_assigned_var) X(iof_char_expr)                    \
    X(iof_list_directed) X(iof_namelist_directed)

// Symbol kinds.
#define ZF90_SYMBOL_KINDS(X) \
    X(sk_derived_type) X(sk_variable) X(sk_subroutine) X(sk_function) X(sk_internal_subroutine)          \
    X(sk_internal_function) X(sk_stmt_function) X(sk_specific_function) X(sk_specific_subroutine)        \
    X(sk_intrinsic_function) X(sk_intrinsic_subroutine) X(sk_program) X(sk_block_data) X(sk_module)      \
    X(sk_label) X(sk_common_block) X(sk_implied_do_var) X(sk_undetermined) X(sk_data_name)               \
    X(sk_external_pending) X(sk_module_procedure) X(sk_forward_type) X(sk_external_unused) X(sk_dummy)   \
    X(sk_dummy_function) X(sk_dummy_subroutine) X(sk_dummy_procedure) X(sk_interface) X(sk_namelist)     \
    X(sk_folded_external) X(sk_host_link) X(sk_host_candidate)

// clang-format on

#define ZF90_ENUMERATOR(name) name,
#define ZF90_ENTRY_ENUMERATOR(name, text, letter, named) kind_##name,

enum entry_kind : std::uint8_t { ZF90_ENTRY_KINDS(ZF90_ENTRY_ENUMERATOR) entry_kind_count };
enum type_code : std::uint8_t { ZF90_TYPE_CODES(ZF90_ENUMERATOR) type_code_count };
enum storage_class : std::uint8_t { ZF90_STORAGE_CLASSES(ZF90_ENUMERATOR) storage_class_count };
enum expr_node_kind : std::uint8_t { ZF90_EXPR_NODE_KINDS(ZF90_ENUMERATOR) expr_node_kind_count };
enum operation_kind : std::uint8_t { ZF90_OPERATIONS(ZF90_ENUMERATOR) operation_kind_count };
enum io_specifier : std::uint8_t { ZF90_IO_SPECIFIERS(ZF90_ENUMERATOR) io_specifier_count };
enum il_statement_kind : std::uint8_t { ZF90_IL_STATEMENT_KINDS(ZF90_ENUMERATOR) il_statement_kind_count };
enum constant_kind : std::uint8_t { ZF90_CONSTANT_KINDS(ZF90_ENUMERATOR) constant_kind_count };
enum label_kind : std::uint8_t { ZF90_LABEL_KINDS(ZF90_ENUMERATOR) label_kind_count };
enum case_range_kind : std::uint8_t { ZF90_CASE_RANGE_KINDS(ZF90_ENUMERATOR) case_range_kind_count };
enum shape_kind : std::uint8_t { ZF90_SHAPE_KINDS(ZF90_ENUMERATOR) shape_kind_count };
enum bound_kind : std::uint8_t { ZF90_BOUND_KINDS(ZF90_ENUMERATOR) bound_kind_count };
enum unit_kind : std::uint8_t { ZF90_UNIT_KINDS(ZF90_ENUMERATOR) unit_kind_count };
enum format_kind : std::uint8_t { ZF90_FORMAT_KINDS(ZF90_ENUMERATOR) format_kind_count };
enum symbol_kind : std::uint8_t { ZF90_SYMBOL_KINDS(ZF90_ENUMERATOR) symbol_kind_count };

// The operator and intrinsic vocabulary: its enumerators are made from the seed table (src/intrinsics).
enum intrinsic_code : std::uint8_t;
inline constexpr unsigned intrinsic_vocabulary_size = 178;

enum source_language : std::uint32_t { sl_C, sl_Fortran };

// The name of an entry kind, its letter in the file format, and whether it carries a `source_corresp`.
const char *entry_kind_name(unsigned kind); // "**BAD ENTRY KIND**" for an unknown one
char entry_kind_letter(entry_kind kind);
bool carries_source_corresp(entry_kind kind);

} // namespace zf90
