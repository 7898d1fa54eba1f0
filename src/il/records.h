// The records of the intermediate language, and the front end's own two that stand beside them: `atom`, an
// interned spelling, and `symbol`, a meaning of a name in a scope. The constructors are in il/entries.h; all
// records come zero-filled from `il_alloc` and are never freed one by one. Fields have the order in which the
// IL file holds them. A field that several kinds of a record give different meanings to is a union: the
// record's kind says which member is live.
#pragma once

#include "il/kinds.h"
#include "source/position.h"

#include <cstdint>

namespace zf90 {

struct atom;
struct bound_info_entry;
struct constant;
struct do_loop;
struct entry_description;
struct expr_node;
struct input_output_description;
struct interface;
struct label;
struct namelist_group;
struct object;
struct object_list_member;
struct param_type;
struct scope;
struct statement;
struct symbol;
struct type;

// The word that every entry starts with. Bits 0 to 29: the entry's number within its kind, given just before
// writing; bit 30: the walker's visit mark; bit 31: set once the checks have been at the entry.
struct il_entry {
    std::uint32_t il_id;
};

inline constexpr std::uint32_t il_number_mask = 0x3fffffff;
inline constexpr std::uint32_t il_visit_mark = 0x40000000;
inline constexpr std::uint32_t il_check_mark = 0x80000000;

// Sets the mark of the checks. False if it was set already: an entry is checked once.
inline bool begin_check(il_entry *entry) {
    const bool first = (entry->il_id & il_check_mark) == 0;
    entry->il_id |= il_check_mark;
    return first;
}

inline bool is_checked(const il_entry *entry) { return (entry->il_id & il_check_mark) != 0; }

// What ties a named entry to its declaration.
struct source_corresp {
    atom *name; // null for an unnamed entity
    source_pos decl_position;
    bool referenced;
    bool host_associated;
    std::uint8_t scope_depth; // 255: out of scope
};

inline constexpr std::uint8_t depth_out_of_scope = 255;

// The common part of the entries that carry a `source_corresp`.
struct named_entry : il_entry {
    symbol *symbol_link; // the symbol through which it was declared, or null; not written to any file
    struct source_corresp source_corresp;
};

// ---- the root and the source files

struct source_file : il_entry {
    const char *file_name;           // as given in the source, without the directory of the search
    const char *full_name;           // the path that was opened; null for a record made by a #line directive
    std::uint32_t first_seq_number;  // of its first line
    std::uint32_t last_seq_number;   // of its last line; all ones while the file is being read
    std::uint32_t first_line_number; // 1, or the number that a #line directive gave
    source_file *first_child_file;   // the files that it includes, in order
    source_file *last_child_file;
    source_file *next; // next sibling
};

struct il_header : il_entry {
    source_file *primary_source_file;
    scope *primary_scope; // the global scope: its objects are the program units
    object *main_routine; // or null
    const char *compiler_version;
    const char *time_of_compilation; // 24 characters, the form of ctime
    bool case_sensitive_identifiers;
    enum source_language source_language;
};

// ---- types

// A value of `kind` that matches any kind of its class.
inline constexpr std::uint32_t ANY_KIND = 0xffffffff;

struct bound {
    union {
        std::int32_t value; // bound_constant
        expr_node *expr;    // bound_expression, bound_same_as
    };
    bound_kind kind;
};

// The bounds of a shape; its owner (`type` or `alloc`) knows the rank.
struct bound_info_entry : il_entry {
    bound *bounds; // `rank` lower bounds, then `rank` upper bounds
};

struct param_type : named_entry {
    param_type *next;
    struct type *type;
    bool is_optional;
    bool intent_in;
    bool intent_out;
    bool is_pointer;
};

struct routine_variant {
    type *return_type;
    param_type *param_type_list;
    object *assoc_routine;
    bool has_param_info;
    bool has_ellipsis;
    bool is_recursive;
    bool is_elemental;
};

struct character_variant {
    type *next_cached;
    bound length;
};

struct array_variant {
    type *element_type;
    union {
        bound_info_entry *bound; // shape_kind explicit_shape to as_shaped
        expr_node *args;         // same_shape to delete_dimension
    };
    std::uint8_t rank;
    enum shape_kind shape_kind;
};

struct derived_variant {
    object *first_field; // the components along `next`
    object *module;      // the module that declares the type, or null
    bool is_seq;
    bool in_doubt; // some component has been lost in a statement in error, or END TYPE is; not written
};

struct type : named_entry {
    type *next;               // next derived type of the scope
    std::uint32_t size;       // in bytes; 0 while unknown
    std::uint8_t alignment;   // in bytes
    bool is_numeric;          // the type is the default of its class
    bool is_character;        // default-kind character
    bool contains_ptrs;       // a derived type with pointer components
    bool is_public;           // bit 4 in the file; bit 3 is spare
    enum type_code type_code; // says which of the variants below is live
    std::uint32_t kind;       // kind index of tk_integer, tk_logical, tk_float, tk_complex, tk_fcharacter
    union {
        routine_variant routine;     // tk_routine
        character_variant character; // tk_fcharacter
        array_variant array;         // tk_farray
        derived_variant derived;     // tk_derived_type
    };
};

// ---- constants

struct value_variant {
    unsigned char *bytes; // `type->size` bytes in the target's form
    expr_node *expr;      // ck_expression: what it was folded from
};

struct aggregate_variant {
    constant *first_constant; // the elements along `next`
    constant *last_constant;
};

struct init_position_variant {
    std::int32_t offset;
    std::uint32_t segment_size;
};

struct init_index_variant {
    std::int32_t first;
    std::int32_t second;
    std::int32_t stride;
};

struct init_repeat_variant {
    struct constant *constant;
    std::uint32_t count;
};

struct constant : il_entry {
    struct source_pos source_pos;
    constant *next; // aggregate elements, hash chain, or the scope's `constants` list
    struct type *type;
    constant_kind repr_kind;
    union {
        value_variant value;            // ck_value, ck_expression
        aggregate_variant aggregate;    // ck_aggregate
        init_position_variant position; // ck_init_position
        init_index_variant index;       // ck_init_index
        init_repeat_variant repeat;     // ck_init_repeat
    };
};

// ---- labels, objects, scopes

struct label : named_entry { // the digits are the name
    label *next;
    std::int32_t association_offset; // the number that ASSIGN stores
    bool used_in_assign;
    bool second_flag; // carried by the file format without a name
    label_kind kind;
    union {
        statement *exec_stmt;      // lk_executable, lk_else_or_elseif, lk_control
        constant *format_constant; // lk_format
    };
};

struct object : named_entry {
    object *next; // on the scope's list; of a component, the next component
    struct type *type;
    enum storage_class storage_class;
    bool is_result;
    bool is_parameter; // dummy argument
    bool is_auto;
    bool is_target;
    bool is_pointer;
    bool is_allocatable;
    bool is_saved;
    bool is_optional;
    bool intent_in; // both intent bits: INOUT
    bool intent_out;
    bool is_fortran_entry;
    bool is_public;
    bool is_host;     // the routine hosts internal procedures that use its variables
    bool uses_host;   // the routine refers to its host's variables
    bool is_constant; // named constant
    bool is_refused;  // as a member of a generic set, a message has told why; not written
    union {
        constant *initializer;       // data classes, unless is_result
        object *result_var_function; // is_result
        scope *assoc_scope;          // program units and procedures
    } variant;
    std::int32_t association_offset; // bytes from the start of the storage object
    union {
        object *routine;           // owner of a local, host of an internal procedure
        object *variable;          // sc_associated: the storage object
        expr_node *implied_do;     // sc_implied_do_var
        object *module;            // sc_use_associated, sc_mod_proc
        struct type *derived_type; // sc_type_field
    } assoc;
};

struct scope : il_entry {
    object *assoc_routine;          // null in the global scope
    object_list_member *parameters; // the dummy arguments in order
    object *function_result_var;
    statement *assoc_block; // the body, a stmk_block
    constant *constants;    // derived-type constants
    type *types;
    object *objects; // in the global scope: the program units
    label *labels;
    entry_description *entries;
    namelist_group *namelist_groups;
    interface *interfaces;
    const struct scope_rules
        *rules;     // of its names, once its row is closed (declarations/scopes.h); not written
    bool saves_all; // SAVE without a list; not written
};

struct interface : named_entry {
    interface *next;
    interface *inherited; // the interface of the same name whose procedures this one adds to
    object_list_member *routine_prototype_list;
    bool is_public;
};

struct object_list_member : il_entry {
    object_list_member *next;
    struct object *object;
};

struct namelist_group : named_entry {
    namelist_group *next;
    expr_node *member_list;
    atom *original_name; // the name of a use-associated group in its module
    bool is_public;
};

struct entry_description : il_entry {
    entry_description *next;
    object *assoc_routine;
    object_list_member *parameters;
    object *function_result_var;
    statement *entry_point; // never followed by the walker
};

// ---- expressions

struct expr_node : il_entry {
    struct source_pos source_pos;
    struct type *type;
    expr_node *next; // next operand or list element
    bool multiply_referenced;
    bool allow_reordering;
    bool is_optional;
    bool intent_in;
    bool intent_out;
    bool is_pointer;
    bool element_sequence;
    bool for_all;
    bool iterated;
    bool treated_as_subroutine_call;
    bool any_type_argument;
    bool is_specifier; // `selector` is live below, not `keyword`
    expr_node_kind node_kind;
    union {
        atom *keyword; // argument keyword, or null
        io_specifier selector;
    };
    // The three variant words.
    union {
        operation_kind op_kind;            // enk_operation
        intrinsic_code intrinsic;          // enk_intrinsic
        struct object *routine;            // enk_call
        struct interface *generic;         // enk_generic_call
        struct constant *constant;         // enk_constant
        struct label *stmt_label_value;    // enk_stmt_label_value
        struct object *object;             // enk_object, enk_data_implied_do_var
        expr_node *base_expr;              // enk_field
        expr_node *array_expr;             // enk_subscript, enk_substring, enk_section
        expr_node *constructor;            // enk_constructor: a list
        expr_node *expr_list;              // enk_implied_do, enk_isum: a list
        expr_node *first;                  // enk_triplet
        expr_node *reference;              // enk_ref
        struct param_type *parameter;      // enk_param
        struct interface *interface_block; // enk_interface_block
        struct symbol *symbol;             // enk_symbol, enk_symbol_call
    };
    union {
        expr_node *operands;      // enk_operation, enk_intrinsic, enk_call, enk_generic_call, enk_symbol_call
        struct object *field_var; // enk_field
        expr_node *ind_list;      // subscript family
        do_loop *do_info;         // enk_implied_do, enk_isum
        expr_node *second;        // enk_triplet
    };
    union {
        struct interface *interface; // enk_call through a generic
        expr_node *stride;           // enk_triplet
        bool ignore_lbound;          // subscript family
        bool has_a_scope;            // enk_implied_do, enk_isum
        bool has_triplet;            // enk_symbol_call: the list has a section triplet
    };
    std::uintptr_t fold_memo; // of the folder (constants/folding.cpp), not written to any file
};

struct do_loop : il_entry {
    expr_node *variable;
    expr_node *initial_value;
    expr_node *final_value;
    expr_node *increment;
    bool final_value_excluded;
};

// ---- statements

struct statement : il_entry {
    struct source_pos source_pos;
    statement *next; // in the enclosing list
    il_statement_kind kind;
    expr_node *expr; // head of the statement's expression list
    // The two variant words.
    union {
        statement *then_statement;           // stmk_if
        statement *body_statement;           // stmk_while, stmk_select
        struct label *label;                 // stmk_goto, stmk_label
        statement *statements;               // stmk_block: a list
        entry_description *entry_descr;      // stmk_fentry
        statement *loop_statement;           // stmk_ido, stmk_fdo
        struct label_list_entry *label_list; // arithmetic IF, computed and assigned GO TO
        constant *stop_pause_string;         // stmk_stop, stmk_pause
        struct case_range *case_range_list;  // stmk_case; null for CASE DEFAULT
        statement *constr_label;            // stmk_exit, stmk_cycle: the statement with the construct's label
        statement *where_assignment;        // stmk_where
        struct alloc *alloc_list;           // stmk_alloc
        expr_node *dealloc_list;            // stmk_dealloc
        object *array_variable;             // stmk_set_array_shape
        object *string_variable;            // stmk_set_char_length
        input_output_description *io_descr; // stmk_open to stmk_rewind
    };
    union {
        statement *else_statement;       // stmk_if
        statement *last_statement;       // stmk_block: the list's tail
        statement *prologue;             // stmk_fentry: a list
        struct do_loop *do_loop;         // stmk_ido, stmk_fdo
        statement *case_statements;      // stmk_case
        statement *elsewhere_assignment; // stmk_where
        expr_node *stat_variable;        // stmk_alloc, stmk_dealloc
        bool treated_as_io_initializer;  // stmk_open to stmk_rewind
    };
};

// The statements with an input_output_description.
inline bool is_io_statement(il_statement_kind kind) { return kind >= stmk_open && kind <= stmk_rewind; }

struct label_list_entry : il_entry {
    label_list_entry *next;
    struct label *label;
};

struct case_range : il_entry {
    case_range *next;
    constant *low;
    constant *high;
    case_range_kind range_kind;
};

struct alloc : il_entry {
    alloc *next;
    expr_node *var;
    bound_info_entry *bounds;
    std::uint8_t rank;
};

struct input_output_description : il_entry {
    enum unit_kind unit_kind;
    expr_node *unit_expr; // iou_external, iou_internal
    enum format_kind format_kind;
    union {
        struct label *label;                   // iof_format_label
        expr_node *expr;                       // iof_assigned_var, iof_char_expr
        struct namelist_group *namelist_group; // iof_namelist_directed
    } format;
    expr_node *specifier_list;
};

// ---- names

// An interned spelling: two names are the same if their atoms are. (`declarations/symbols.h`)
struct atom : il_entry {
    const char *spelling; // upper case unless names are case-sensitive
    atom *next_in_bucket;
    std::uint32_t length;
    symbol *first_symbol; // the meanings, innermost first
    int token_code;       // when read as a keyword or operator; 0 plain name, 10 user operator
};

// Flags of a symbol.
enum symbol_flags : std::uint32_t {
    sf_visible = 1u << 0,
    sf_inferred = 1u << 1,
    sf_access_given = 1u << 2,
    sf_public = 1u << 3,
    sf_referenced = 1u << 4,
    sf_used_as_bound = 1u << 5,
    sf_typed = 1u << 6,
    sf_type_implicit = 1u << 7,
    sf_saved = 1u << 8,
    sf_implied_do = 1u << 9,
    sf_external_attr = 1u << 10,
    sf_optional = 1u << 11,
    sf_intent_in = 1u << 12,
    sf_intent_out = 1u << 13,
    sf_ambiguous = 1u << 14, // two modules give the name to different entities
    sf_called = 1u << 15,
    sf_called_as_subroutine = 1u << 16,
    sf_clash_reported = 1u << 17, // with a name from a module
    sf_used_in_body = 1u << 18,   // named in an executable statement
    sf_called_as_function = 1u << 19,
    sf_used_as_data = 1u << 20, // named where no procedure can stand
};

// `var_flags` of sk_variable and sk_dummy.
enum symbol_var_flags : std::uint32_t {
    vf_initialized = 1u << 0,
    vf_in_common = 1u << 1,
    vf_equivalenced = 1u << 2,
    vf_blank_common = 1u << 3,
    vf_do_variable = 1u << 5,
    vf_in_namelist = 1u << 7,
    vf_has_initializer = 1u << 8,
    vf_on_entry_list = 1u << 9,  // while the dummy arguments of an ENTRY are read: it is one of them
    vf_called_data = 1u << 10,   // a scalar that some references take for a function or an array
    vf_list_reported = 1u << 11, // one of these has been reported
};

// `aux2` of the procedure kinds, of sk_label, of sk_namelist and of sk_host_candidate.
enum symbol_aux_flags : std::uint32_t {
    pf_type_declared = 1u << 0, // an intrinsic name whose type the unit declared
    pf_body_seen = 1u << 1,     // its FUNCTION or SUBROUTINE statement has been processed
    pf_entered = 1u << 2,       // it has been compared with the external names
    lf_defined = 1u << 0,       // sk_label
    lf_ends_loop = 1u << 1,     // sk_label: some DO has named it
    lf_branch = 1u << 2,        // sk_label: has been referred to as something to execute
    lf_format = 1u << 3,        // sk_label: has been referred to as a FORMAT
    lf_listed = 1u << 4,        // sk_label: is in the list of labels being read
    lf_reported = 1u << 5,      // sk_label: an error made it clear that it may never be defined
    nf_used = 1u << 0,          // sk_namelist: a statement uses it, and its members are marked as referenced
    cf_referenced = 1u << 0,    // sk_host_candidate: saved sf_referenced
    cf_used_as_bound = 1u << 1, // sk_host_candidate: saved sf_used_as_bound
};

struct symbol : il_entry {
    std::uint32_t xref_number; // its number in the cross-reference file; 0 before its first line there
    atom *name;                // never null
    symbol *next_same_name;    // on the atom's chain
    symbol *next_in_scope;     // on the list of its scope row
    std::int32_t scope_depth;  // 0 global, -1 in no scope
    source_pos decl_position;
    symbol *from_module; // of a name that came in by USE: what it stands for in its module; else null
    symbol_kind kind;
    std::uint32_t flags; // sf_
    il_entry *entity;    // by kind; read with entity_as
    void *aux;           // by kind: equiv_group, public list, host's type, next candidate
    std::uint32_t aux2;  // by kind: pf_, lf_, cf_
    union {
        std::uint32_t var_flags;        // sk_variable, sk_dummy: vf_
        std::uint32_t branch_construct; // sk_label: number of the construct it belongs to, 0 if not known
    };
};

// The entity of a symbol, whose kind the caller knows.
template <class T> T *entity_as(const symbol *s) { return static_cast<T *>(s->entity); }

} // namespace zf90
