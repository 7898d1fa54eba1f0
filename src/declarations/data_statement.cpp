// The DATA statement: sets of items and values, which are matched as they are read.
#include "declarations/data_items.h"
#include "declarations/data_values.h"
#include "declarations/initial_values.h"
#include "declarations/scopes.h"
#include "declarations/variables.h"
#include "expressions/parser.h"
#include "expressions/predicates.h"
#include "expressions/uses.h"
#include "il/types.h"
#include "source/token_helpers.h"
#include "statements/handlers.h"
#include "statements/loop.h"

#include <algorithm>

namespace zf90 {

namespace {

// ---- the items

// The name of an item becomes a variable of this unit that has an initial value. False if it can't.
bool declare_initialized(name_locator name) {
    symbol *s = lookup_current();
    if (s && s->kind == sk_implied_do_var) {
        return true; // told when the items of its loop are looked at
    }
    s = declare_variable(attr_initialized, name);
    if (!s) {
        return false;
    }
    s->var_flags |= vf_initialized;
    object *o = entity_as<object>(s);
    if (!o->is_constant && !(s->var_flags & vf_in_common)) {
        o->is_saved = true; // a variable with an initial value keeps its value
    }
    return true;
}

bool parse_item(expr_node *&item) {
    if (!expect_token(tok_name, msg_expected_identifier)) {
        return false;
    }
    const bool is_variable = declare_initialized(curr_name);
    return parse_designator(item) && is_variable;
}

// ---- the matching

struct item_match {
    data_value_queue *queue;
    const object *reported; // what was initialised twice in the item
};

bool is_numeric(const type *t) {
    return t->type_code == tk_integer || t->type_code == tk_float || t->type_code == tk_complex;
}

// Whether a value may be stored in something of that type: as by assignment.
bool is_castable(const data_value &v, const type *t) {
    const type *from = v.value.type;
    if (v.is_boz) {
        return is_numeric(t) || t->type_code == tk_logical;
    }
    if (is_numeric(from)) {
        return is_numeric(t);
    }
    if (from->type_code == tk_logical || from->type_code == tk_fcharacter) {
        return from->type_code == t->type_code;
    }
    return types_equal(from, t);
}

// Whether an object holds initial values of its own. Others are in error, which is reported where the unit's
// names are checked.
bool holds_value(const object *o) {
    return (o->storage_class == sc_local || o->storage_class == sc_associated) && !o->is_result &&
           !o->is_parameter && !o->is_auto && !o->is_pointer && !o->is_allocatable;
}

void store(item_match &match, const expr_node *designator, const designator_place &run, const constant *c,
           std::int64_t offset, std::uint32_t count) {
    object *o = run.object;
    const bool is_empty_text =
        is_array(o->type) && c->type->type_code == tk_fcharacter && constant_length(c->type) == 0;
    if (is_empty_text) {
        return; // it takes no room
    }
    if (store_data_value(c, o, offset, count) || match.reported == o) {
        return;
    }
    error_at(msg_multiple_data_initialization_of_storage_for, designator->source_pos,
             o->source_corresp.name->spelling);
    match.reported = o;
}

bool assign_to_item(void *context, const expr_node *designator, const designator_place &run) {
    auto &match = *static_cast<item_match *>(context);
    if (!holds_value(run.object)) {
        match.queue->at_end = true;
        return false;
    }
    type *t = element_type_of(run.type);
    std::int64_t elements = t->size != 0 ? run.length / t->size : 1;
    std::int64_t offset = run.offset;
    while (elements != 0) {
        data_value v;
        const std::uint32_t n = take_data_values(
            *match.queue, v, static_cast<std::uint32_t>(std::min<std::int64_t>(elements, UINT32_MAX)));
        if (n == 0) {
            if (!match.queue->at_end) {
                error_at(msg_too_few_values_in_data_initialization, curr_token_pos);
            }
            return false;
        }
        if (has_value(v.value) && t->type_code != tk_error && t->size != 0) {
            if (is_castable(v, t)) {
                convert_value(v.value, t);
                store(match, designator, run, store_fold_value(v.value), offset, n);
            } else if (!v.is_reported) {
                error_at(msg_constant_type_is_incompatible_with_destination, v.value.source_pos);
                note_reported_value(*match.queue);
            }
        }
        elements -= n;
        offset += std::int64_t{n} * t->size;
    }
    return true;
}

bool check_items(expr_node *items) {
    bool good = true;
    for (expr_node *item = items; item; item = item->next) {
        good = check_data_item(item, curr_routine()) && good;
    }
    return good;
}

bool walk_items(expr_node *items, data_value_queue &queue) {
    for (expr_node *item = items; item; item = item->next) {
        item_match match{&queue, nullptr};
        if (!walk_data_item(item, {assign_to_item, &match})) {
            return false;
        }
    }
    return true;
}

// Reads the values and matches them with the items, which may be in error. False if something was reported.
bool match_values(expr_node *items, bool good) {
    const stop_at stops{tok_comma, tok_slash};
    data_value_queue queue;
    start_data_values(queue);
    if (!good || !check_items(items)) {
        queue.at_end = true;
    }
    if (!queue.at_end && walk_items(items, queue)) {
        data_value extra;
        if (take_data_values(queue, extra, 1) != 0) {
            error_at(msg_too_many_values_in_data_initialization, extra.value.source_pos);
            queue.at_end = true;
        }
    } else {
        queue.at_end = true;
    }
    good = good && !queue.at_end;
    drop_data_values(queue);
    finish_uses();
    return good;
}

// Whether the brackets fit from `start` to the current token.
bool brackets_fit(char *start) {
    char *const end = token_start;
    const saved_place place;
    line_cursor = start;
    int depth = 0;
    while (next_token(lex_peek) != tok_eos && token_start < end) {
        depth += curr_token == tok_lparen ? 1 : curr_token == tok_rparen ? -1 : 0;
    }
    return depth == 0;
}

// Items, "/", values, "/". False after an error; the next set can be read if the place is not lost.
bool read_set() {
    expr_node *items = nullptr;
    bool good = true;
    char *const start = token_start;
    const std::uint32_t errors_before = error_count;
    {
        const stop_at stop{tok_slash};
        if (curr_token == tok_slash || curr_token == tok_eos) {
            error_at(msg_expected_list_of_items_to_be_initialized, curr_token_pos);
            good = false;
            if (curr_token == tok_eos) {
                return false;
            }
        } else {
            good = parse_element_list(parse_item, items, true);
        }
        if (curr_token == tok_eos) {
            if (good) {
                error_at(msg_expected_list_of_initial_values, curr_token_pos);
            }
            return false;
        }
        if (curr_token != tok_slash || (!good && !brackets_fit(start))) {
            expect_token(tok_slash, msg_expected_slash);
            skip_to_eos(); // where the values begin is not clear
            return false;
        }
        next_token(lex_signed | lex_lone_slash);
    }
    good = match_values(items, good);
    if (curr_token == tok_eos && error_count != errors_before) {
        return false;
    }
    return accept_token(tok_slash, msg_expected_slash, 0) && good;
}

// Behind a set in error, whose end may have been taken wrongly: whether another one may begin here.
bool begins_set() { return curr_token == tok_name || curr_token == tok_lparen; }

} // namespace

bool stmt_data() {
    next_token(lex_lone_slash);
    bool good = true;
    // The comma between sets is optional.
    do {
        good = read_set() && good;
    } while ((accept_optional(tok_comma, 0) || curr_token != tok_eos) && (good || begins_set()));
    if (!good) {
        skip_to_eos();
    }
    return good;
}

} // namespace zf90
