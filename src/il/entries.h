// What all entries of the intermediate language have in common: initialisation, the constructors, the
// sentinel records, and the walker on which every operation over the whole IL rests. Constructors that need
// more than zeroes are told in the header of their family (il/types.h, il/constants.h).
#pragma once

#include "il/arena.h"
#include "il/records.h"

namespace zf90 {

// Copied into every new entry that has a `source_corresp`: no name, `referenced` set, out of scope.
extern struct source_corresp null_source_corresp;

// A constant of `ck_error` and the unknown type.
extern struct constant null_constant;

// Once, before the first source file is opened: makes `il_region`, clears the caches of types and constants,
// sets up the sentinels.
void il_init();

param_type *new_param_type();
interface *new_interface();
object *new_object();
label *new_label();
void set_label_kind(label *l, label_kind kind); // clears the variant; lk_control also `referenced`
label_list_entry *new_label_list_entry();
object_list_member *new_object_list_member();
do_loop *new_do_loop();
alloc *new_alloc();
case_range *new_case_range();
namelist_group *new_namelist_group();
input_output_description *new_input_output_description();
entry_description *new_entry_description();
statement *new_statement(il_statement_kind kind); // at the current statement position
scope *new_scope();
source_file *new_source_file();
bound_info_entry *new_bound_info_entry(unsigned rank); // every bound undefined

// The size of a bound_info_entry in the file format, and back: a head of 8 bytes, then two bounds of 8 bytes
// for each dimension.
constexpr std::uint32_t bound_info_size(unsigned rank) { return 16 * rank + 8; }
constexpr unsigned bound_info_rank(std::uint32_t size) { return (size - 8) / 16; }

// A node stamped with `error_pos`, of the unknown type, with `allow_reordering` set.
expr_node *new_expr_node(expr_node_kind kind);
void set_expr_node_kind(expr_node *node, expr_node_kind kind); // stores the kind and resets the variant
expr_node *new_operation(operation_kind op, type *result, expr_node *operands);
// A reference to an intrinsic function.
expr_node *new_intrinsic_node(intrinsic_code code, type *result, expr_node *operands);
expr_node *new_error_node();
expr_node *new_ref(expr_node *target); // to the first target that is no ref itself

// What a chain of refs leads to.
inline expr_node *without_refs(expr_node *e) {
    while (e->node_kind == enk_ref) {
        e = e->reference;
    }
    return e;
}

// The position of the current statement (classify_statement sets it).
extern source_pos stmt_pos;

// ---- the walker

// Called before the children of an entry; `size` is that of a bound_info_entry, else 0.
using il_visitor = void (*)(il_entry *entry, entry_kind kind, std::uint32_t size);

// The scope being walked, null outside of any.
extern scope *walking_scope;

// While set, the walk is that of a module file: private parts, bodies and expressions of constants are left
// out.
extern bool module_mode;

// The module whose file is written: it alone leads to its public symbols.
extern const object *module_being_written;

// Two passes over everything reachable from the root, each entry once a pass, an entry before its children
// and its name before it. The second pass visits what the first one has met, whatever its visitor has
// changed. A pre-step, if not null, is called with the root first; a visitor may be null. Depth costs memory,
// not stack.
void walk_il(il_entry *root, entry_kind kind, std::uint32_t size, il_visitor first_pre_step,
             il_visitor first_visitor, il_visitor second_pre_step, il_visitor second_visitor);

} // namespace zf90
