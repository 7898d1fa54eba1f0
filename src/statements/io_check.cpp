// The check of input and output statements.
#include "statements/io_check.h"

#include "driver/deep_call.h"
#include "driver/diagnostics.h"
#include "expressions/check.h"
#include "expressions/uses.h"
#include "il/constants.h"
#include "il/entries.h"
#include "il/types.h"

namespace zf90 {

namespace {

constexpr std::int32_t largest_unit_number = 99;

// What a check needs to know of its statement.
struct io_context {
    input_output_description *description;
    il_statement_kind kind;
    object *routine;
};

// ---- questions

// Whether the node denotes a variable or a part of one.
bool is_designator(const expr_node *node) {
    return node->node_kind >= enk_object && node->node_kind <= enk_section;
}

bool is_default_character(const type *t) {
    return t->type_code == tk_fcharacter && t->kind == default_character_kind;
}

bool is_in_error(const expr_node *node) {
    return node->node_kind == enk_error || node->type->type_code == tk_error;
}

bool refuse(const expr_node *node, error_code code) {
    error_at(code, node->source_pos);
    return false;
}

// Marks a variable as one that the statement gives a value. False if it may not be set, which is reported.
bool set_by_statement(expr_node *variable) {
    variable->intent_out = true;
    note_definition(variable);
    return check_definable(variable);
}

// ---- the unit

void give_up_unit(input_output_description *d) {
    d->unit_kind = iou_error;
    mark_error_node(d->unit_expr);
}

bool check_internal_unit(const io_context &io) {
    expr_node *unit = io.description->unit_expr;
    switch (io.kind) {
    case stmk_read: unit->intent_in = true; break;
    case stmk_write:
        if (!set_by_statement(unit)) {
            return false;
        }
        break;
    case stmk_inquire: return refuse(unit, msg_i_o_specifier_conflicts_with_previous_specification);
    default: return refuse(unit, msg_must_be_scalar_integer_expression);
    }
    io.description->unit_kind = iou_internal;
    return true;
}

bool check_external_unit(expr_node *unit) {
    unit->intent_in = true;
    if (unit->type->type_code != tk_integer) {
        return refuse(unit, msg_must_be_scalar_integer_expression);
    }
    if (unit->node_kind == enk_constant &&
        (unit->constant->repr_kind == ck_value || unit->constant->repr_kind == ck_expression)) {
        const std::int32_t number = integer_value_of(unit->constant);
        if (number < 0 || number > largest_unit_number) {
            return refuse(unit, msg_invalid_i_o_unit_number);
        }
    }
    return true;
}

bool check_unit(const io_context &io) {
    input_output_description *d = io.description;
    expr_node *unit = d->unit_expr;
    if (d->unit_kind != iou_external) {
        return d->unit_kind != iou_error;
    }
    if (!check_expression(unit, 0, io.routine) || is_in_error(unit)) {
        return false;
    }
    const bool is_internal = is_designator(unit) && is_default_character(element_type_of(unit->type));
    if (is_internal ? check_internal_unit(io) : check_external_unit(unit)) {
        return true;
    }
    give_up_unit(d);
    return false;
}

// ---- the format

// Whether a designator is that of a named constant or of a part of one.
bool is_part_of_constant(const expr_node *node) {
    for (;;) {
        switch (node->node_kind) {
        case enk_object: return node->object->is_constant;
        case enk_field: node = node->base_expr; break;
        case enk_subscript: node = node->array_expr; break;
        default: return false;
        }
    }
}

bool check_format_variable(expr_node *expr) {
    expr->intent_in = true;
    return is_designator(expr) && !is_part_of_constant(expr) && expr->type == default_integer()
               ? true
               : refuse(expr, msg_expression_must_be_variable_of_type_default_integer);
}

// Where the name of the group stands, which is kept among the specifiers until now; null if there is no
// control list, or the name was in error.
const expr_node *take_namelist_place(input_output_description *d) {
    for (expr_node **link = &d->specifier_list; *link; link = &(*link)->next) {
        if ((*link)->selector == iosk_nml) {
            const expr_node *place = *link;
            *link = place->next;
            return place;
        }
    }
    return nullptr;
}

bool check_format(const io_context &io) {
    input_output_description *d = io.description;
    switch (d->format_kind) {
    case iof_error: return false;
    case iof_assigned_var:
    case iof_char_expr: {
        expr_node *expr = d->format.expr;
        if (!check_expression(expr, 0, io.routine) || is_in_error(expr)) {
            return false;
        }
        if (is_default_character(element_type_of(expr->type))) {
            expr->intent_in = true;
            expr->element_sequence = is_array(expr->type); // its elements make up the format
            return true;
        }
        d->format_kind = iof_assigned_var;
        return check_format_variable(expr);
    }
    case iof_namelist_directed: {
        d->format.namelist_group->source_corresp.referenced = true;
        const expr_node *place = take_namelist_place(d);
        return place && d->unit_kind == iou_internal
                   ? refuse(place, msg_namelist_directed_internal_i_o_is_not_allowed)
                   : true;
    }
    default: return true;
    }
}

// ---- the specifiers

// What the value of a specifier must be.
enum class specifier_rule : std::uint8_t {
    nothing,
    label,
    character,
    integer,
    character_variable,
    integer_variable,
    logical_variable
};

specifier_rule rule_of(io_specifier specifier, bool is_inquire) {
    switch (specifier) {
    case iosk_access:
    case iosk_action:
    case iosk_blank:
    case iosk_delim:
    case iosk_form:
    case iosk_pad:
    case iosk_position: return is_inquire ? specifier_rule::character_variable : specifier_rule::character;
    case iosk_advance:
    case iosk_file:
    case iosk_status: return specifier_rule::character;
    case iosk_direct:
    case iosk_formatted:
    case iosk_name:
    case iosk_read:
    case iosk_write:
    case iosk_readwrite:
    case iosk_sequential:
    case iosk_unformatted: return specifier_rule::character_variable;
    case iosk_end:
    case iosk_eor:
    case iosk_err: return specifier_rule::label;
    case iosk_exist:
    case iosk_named:
    case iosk_opened: return specifier_rule::logical_variable;
    case iosk_iolength:
    case iosk_iostat:
    case iosk_nextrec:
    case iosk_number:
    case iosk_size: return specifier_rule::integer_variable;
    case iosk_rec: return specifier_rule::integer;
    case iosk_recl: return is_inquire ? specifier_rule::integer_variable : specifier_rule::integer;
    default: return specifier_rule::nothing;
    }
}

bool check_value(expr_node *node, bool fits, error_code code) {
    node->intent_in = true;
    return fits ? true : refuse(node, code);
}

bool check_variable(expr_node *node, bool fits, error_code code) {
    if (!fits || !is_designator(node)) {
        return refuse(node, code);
    }
    return set_by_statement(node);
}

bool check_specifier(const io_context &io, expr_node *node) {
    const specifier_rule rule = rule_of(node->selector, io.kind == stmk_inquire);
    if (rule == specifier_rule::label) {
        node->stmt_label_value->source_corresp.referenced = true;
        return true;
    }
    if (!check_expression(node, 0, io.routine) || is_in_error(node)) {
        return false;
    }
    if (io.description->unit_kind == iou_internal &&
        (node->selector == iosk_rec || node->selector == iosk_advance)) {
        return refuse(node, msg_invalid_specifier_for_internal_file_i_o);
    }
    const type *t = node->type;
    switch (rule) {
    case specifier_rule::character:
        return check_value(node, is_default_character(t), msg_expression_must_be_of_type_default_character);
    case specifier_rule::integer:
        return check_value(node, t->type_code == tk_integer, msg_expression_must_be_of_type_integer);
    case specifier_rule::character_variable:
        return check_variable(node, is_default_character(t),
                              msg_expression_must_be_variable_of_type_default_character);
    case specifier_rule::integer_variable:
        return check_variable(node, t == default_integer(),
                              msg_expression_must_be_variable_of_type_default_integer);
    case specifier_rule::logical_variable:
        return check_variable(node, t == default_logical(),
                              msg_expression_must_be_variable_of_type_default_logical);
    default: return true;
    }
}

// ---- the items

// An item of output: a value.
bool check_output_item(expr_node *item) {
    item->intent_in = true;
    return is_value_type(item->type) || refuse(item, msg_expected_expression);
}

// An item, or what is in it if it is an implied DO. One of READ is a variable that may be set.
bool check_item(expr_node *item, bool is_input) {
    if (item->node_kind != enk_implied_do) {
        return is_input ? set_by_statement(item) : check_output_item(item);
    }
    item->intent_in = item->intent_in || !is_input;
    return deep_call([=] {
        bool good = true;
        for (expr_node *e = item->expr_list; e; e = e->next) {
            good = (e->node_kind == enk_error || check_item(e, is_input)) && good;
        }
        return good;
    });
}

bool check_items(statement *s, object *routine) {
    const bool is_input = s->kind == stmk_read;
    const std::uint32_t flags = is_input ? std::uint32_t{ECF_DATA_OBJECT} : 0u;
    bool good = true;
    for (expr_node *item = s->expr; item; item = item->next) {
        if (!check_expression(item, flags, routine)) {
            good = false;
        } else {
            good = check_item(item, is_input) && good;
        }
    }
    return good;
}

// ---- transfers in several steps

bool list_calls_function(const expr_node *list);

// Whether the evaluation of an expression calls a function that is no intrinsic one.
bool calls_function(const expr_node *node) {
    switch (node->node_kind) {
    case enk_call: return node->routine->storage_class != sc_intrinsic || list_calls_function(node->operands);
    case enk_operation:
    case enk_intrinsic: return list_calls_function(node->operands);
    case enk_field: return list_calls_function(node->base_expr);
    case enk_subscript:
    case enk_substring:
    case enk_section: return list_calls_function(node->array_expr) || list_calls_function(node->ind_list);
    case enk_constructor: return list_calls_function(node->constructor);
    case enk_implied_do:
        return list_calls_function(node->expr_list) || list_calls_function(node->do_info->initial_value) ||
               list_calls_function(node->do_info->final_value) ||
               list_calls_function(node->do_info->increment);
    case enk_triplet:
        return list_calls_function(node->first) || list_calls_function(node->second) ||
               list_calls_function(node->stride);
    default: return false; // what an enk_ref refers to stands in the same expression
    }
}

bool list_calls_function(const expr_node *list) {
    return list && deep_call([list] {
               for (const expr_node *e = list; e; e = e->next) {
                   if (calls_function(e)) {
                       return true;
                   }
               }
               return false;
           });
}

statement *new_step(il_statement_kind kind, expr_node *expr, source_pos position) {
    statement *s = new_statement(kind);
    s->source_pos = position;
    s->expr = expr;
    begin_check(s);
    return s;
}

// A copy of a statement that becomes a block in its place.
statement *move_into_block(statement *s) {
    statement *inner = new_step(s->kind, nullptr, s->source_pos);
    inner->io_descr = s->io_descr;
    s->kind = stmk_block;
    s->expr = nullptr;
    s->statements = s->last_statement = inner;
    return inner;
}

// Divides the transfer: the statement begins it, one stmk_io_item transfers each item, and a stmk_io_term
// ends it. What owns the statement, a list or the one place of a branch, knows only the statement itself: the
// steps are linked behind it if it has a successor, and are a block in its place if not.
void divide_transfer(statement *s) {
    expr_node *items = s->expr;
    statement *const successor = s->next;
    statement *const block = successor ? nullptr : s;
    statement *last = block ? move_into_block(s) : s;
    last->treated_as_io_initializer = true;
    last->expr = nullptr;
    while (items) {
        expr_node *item = items;
        items = item->next;
        item->next = nullptr;
        last = last->next = new_step(stmk_io_item, item, item->source_pos);
    }
    last = last->next = new_step(stmk_io_term, nullptr, s->source_pos);
    last->next = successor;
    if (block) {
        block->last_statement = last;
    }
}

} // namespace

bool check_io_statement(statement *s, object *routine) {
    const io_context io{s->io_descr, s->kind, routine};
    bool good = check_items(s, routine);
    good = check_unit(io) && good;
    good = check_format(io) && good;
    for (expr_node *node = io.description->specifier_list; node; node = node->next) {
        good = check_specifier(io, node) && good;
    }
    if (good && (s->kind == stmk_read || s->kind == stmk_write) && list_calls_function(s->expr)) {
        divide_transfer(s);
    }
    return good;
}

} // namespace zf90
