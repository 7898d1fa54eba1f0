// The constructors of the plain entries and the sentinel records. All memory comes zeroed, so a constructor
// sets only what does not start at zero.
#include "il/entries.h"

#include "driver/diagnostics.h"
#include "il/constants.h"
#include "il/types.h"

namespace zf90 {

struct source_corresp null_source_corresp;
struct constant null_constant;
source_pos stmt_pos;

namespace {

template <class T> T *new_named() {
    T *entry = il_new<T>();
    entry->source_corresp = null_source_corresp;
    return entry;
}

} // namespace

void il_init() {
    il_region = new_region();
    null_source_corresp = {};
    null_source_corresp.decl_position = error_pos;
    null_source_corresp.referenced = true;
    null_source_corresp.scope_depth = depth_out_of_scope;
    types_init();
    constants_init();
    init_constant(&null_constant, ck_error);
}

param_type *new_param_type() { return new_named<param_type>(); }
interface *new_interface() {
    return new_named<interface>();
}

object *new_object() {
    object *o = new_named<object>();
    o->storage_class = sc_unspecified;
    return o;
}

label *new_label() { return new_named<label>(); }

void set_label_kind(label *l, label_kind kind) {
    l->kind = kind;
    l->exec_stmt = nullptr;
    if (kind == lk_control) {
        l->source_corresp.referenced = false;
    }
}

label_list_entry *new_label_list_entry() { return il_new<label_list_entry>(); }
object_list_member *new_object_list_member() { return il_new<object_list_member>(); }
do_loop *new_do_loop() { return il_new<do_loop>(); }
alloc *new_alloc() { return il_new<alloc>(); }

case_range *new_case_range() {
    case_range *r = il_new<case_range>();
    r->range_kind = crk_eq;
    return r;
}

namelist_group *new_namelist_group() { return new_named<namelist_group>(); }
input_output_description *new_input_output_description() { return il_new<input_output_description>(); }
entry_description *new_entry_description() { return il_new<entry_description>(); }

statement *new_statement(il_statement_kind kind) {
    statement *s = il_new<statement>();
    s->source_pos = stmt_pos;
    s->kind = kind;
    // The first assignment to a member of a union makes it the live one.
    switch (kind) {
    case stmk_expr:
    case stmk_return:
    case stmk_alt_return:
    case stmk_nullify:
    case stmk_io_item:
    case stmk_io_term: break;
    case stmk_if:
        s->then_statement = nullptr;
        s->else_statement = nullptr;
        break;
    case stmk_while:
    case stmk_select: s->body_statement = nullptr; break;
    case stmk_goto:
    case stmk_label: s->label = nullptr; break;
    case stmk_block:
        s->statements = nullptr;
        s->last_statement = nullptr;
        break;
    case stmk_fentry:
        s->entry_descr = nullptr;
        s->prologue = nullptr;
        break;
    case stmk_ido:
    case stmk_fdo:
        s->loop_statement = nullptr;
        s->do_loop = nullptr;
        break;
    case stmk_iarith_if:
    case stmk_farith_if:
    case stmk_computed_goto:
    case stmk_assigned_goto: s->label_list = nullptr; break;
    case stmk_stop:
    case stmk_pause: s->stop_pause_string = nullptr; break;
    case stmk_case:
        s->case_range_list = nullptr;
        s->case_statements = nullptr;
        break;
    case stmk_exit:
    case stmk_cycle: s->constr_label = nullptr; break;
    case stmk_where:
        s->where_assignment = nullptr;
        s->elsewhere_assignment = nullptr;
        break;
    case stmk_alloc:
        s->alloc_list = nullptr;
        s->stat_variable = nullptr;
        break;
    case stmk_dealloc:
        s->dealloc_list = nullptr;
        s->stat_variable = nullptr;
        break;
    case stmk_set_array_shape: s->array_variable = nullptr; break;
    case stmk_set_char_length: s->string_variable = nullptr; break;
    case stmk_open:
    case stmk_close:
    case stmk_read:
    case stmk_write:
    case stmk_inquire:
    case stmk_backspace:
    case stmk_endfile:
    case stmk_rewind:
        s->io_descr = nullptr;
        s->treated_as_io_initializer = false;
        break;
    case il_statement_kind_count: break;
    }
    return s;
}

scope *new_scope() { return il_new<scope>(); }
source_file *new_source_file() { return il_new<source_file>(); }

bound_info_entry *new_bound_info_entry(unsigned rank) {
    bound_info_entry *b = il_new<bound_info_entry>();
    b->bounds = il_new_array<bound>(2 * rank);
    for (unsigned i = 0; i < 2 * rank; ++i) {
        b->bounds[i].kind = bound_undefined;
    }
    return b;
}

expr_node *new_expr_node(expr_node_kind kind) {
    expr_node *node = il_new<expr_node>();
    node->source_pos = error_pos;
    node->type = unknown_type();
    node->allow_reordering = true;
    set_expr_node_kind(node, kind);
    return node;
}

void set_expr_node_kind(expr_node *node, expr_node_kind kind) {
    node->node_kind = kind;
    // The first assignment to a member of a union makes it the live one.
    switch (kind) {
    case enk_error:
    case enk_empty: break;
    case enk_operation:
        node->op_kind = eok_error;
        node->operands = nullptr;
        break;
    case enk_intrinsic:
        node->intrinsic = intrinsic_code{};
        node->operands = nullptr;
        break;
    case enk_call:
        node->routine = nullptr;
        node->operands = nullptr;
        node->interface = nullptr;
        break;
    case enk_constant: node->constant = nullptr; break;
    case enk_stmt_label_value: node->stmt_label_value = nullptr; break;
    case enk_object:
    case enk_data_implied_do_var: node->object = nullptr; break;
    case enk_field:
        node->base_expr = nullptr;
        node->field_var = nullptr;
        break;
    case enk_subscript:
    case enk_substring:
    case enk_section:
        node->array_expr = nullptr;
        node->ind_list = nullptr;
        node->ignore_lbound = false;
        break;
    case enk_constructor: node->constructor = nullptr; break;
    case enk_implied_do:
    case enk_isum:
        node->expr_list = nullptr;
        node->do_info = new_do_loop();
        node->has_a_scope = false;
        break;
    case enk_triplet:
        node->first = nullptr;
        node->second = nullptr;
        node->stride = nullptr;
        break;
    case enk_ref: node->reference = nullptr; break;
    case enk_param: node->parameter = nullptr; break;
    case enk_generic_call:
        node->generic = nullptr;
        node->operands = nullptr;
        break;
    case enk_interface_block: node->interface_block = nullptr; break;
    case enk_symbol: node->symbol = nullptr; break;
    case enk_symbol_call:
        node->symbol = nullptr;
        node->operands = nullptr;
        break;
    case expr_node_kind_count: break;
    }
}

expr_node *new_operation(operation_kind op, type *result, expr_node *operands) {
    expr_node *node = new_expr_node(enk_operation);
    node->op_kind = op;
    node->type = result;
    node->operands = operands;
    return node;
}

expr_node *new_intrinsic_node(intrinsic_code code, type *result, expr_node *operands) {
    expr_node *node = new_expr_node(enk_intrinsic);
    node->intrinsic = code;
    node->type = result;
    node->operands = operands;
    return node;
}

expr_node *new_error_node() {
    expr_node *node = new_expr_node(enk_error);
    node->type = error_type();
    return node;
}

expr_node *new_ref(expr_node *target) {
    target = without_refs(target);
    expr_node *node = new_expr_node(enk_ref);
    node->intent_in = true;
    node->type = target->type;
    node->reference = target;
    target->multiply_referenced = true;
    return node;
}

} // namespace zf90
