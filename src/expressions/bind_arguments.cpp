// Which actual argument belongs to which dummy argument of a routine, and whether the two fit.
#include "declarations/symbols.h"
#include "driver/deep_call.h"
#include "driver/diagnostics.h"
#include "expressions/calls.h"
#include "expressions/check.h"
#include "expressions/predicates.h"
#include "expressions/shapes.h"
#include "il/entries.h"
#include "il/types.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zf90 {

// ---- one argument

namespace {

bool passes_type(const type *actual, const type *dummy) {
    return actual == dummy || types_equal(actual, dummy) || type_matches_dummy(actual, dummy);
}

// A dummy whose bounds come with the actual argument.
bool has_descriptor(const type *t) {
    return t->array.shape_kind == assumed_shape || t->array.shape_kind == deferred_shape;
}

// An assumed-size array where the bounds are wanted, which has a message of its own.
bool lacks_only_bounds(const type *actual, const type *dummy) {
    return is_array(dummy) && has_descriptor(dummy) && is_assumed_size(actual) &&
           actual->array.rank == dummy->array.rank &&
           passes_type(actual->array.element_type, dummy->array.element_type);
}

// An array element, or a part of one, stands for the array from there on.
bool is_element(const expr_node *e) {
    return e->node_kind == enk_subscript ||
           (e->node_kind == enk_substring && e->array_expr->node_kind == enk_subscript);
}

} // namespace

bool match_one_argument(const expr_node *actual, const param_type *param, binding_mode mode) {
    const bool trial = mode != binding_mode::call;
    if (!passes_type(actual->type, param->type)) {
        return !trial && lacks_only_bounds(actual->type, param->type);
    }
    if (!is_array(param->type) || param->type->array.rank == 0) {
        return true;
    }
    if (!is_array(actual->type)) {
        return !trial && is_element(actual);
    }
    return mode != binding_mode::trial_by_rank || actual->type->array.rank == param->type->array.rank;
}

// ---- which is which

namespace {

atom *keyword_of(const expr_node *actual) { return actual->is_specifier ? nullptr : actual->keyword; }

// The actual arguments with a keyword, for look-ups by it.
struct keyword_table {
    struct row {
        const atom *keyword;
        std::size_t order; // of two with the same keyword the first is found
        expr_node *actual; // null once it has its dummy
    };
    std::vector<row> rows; // by keyword, then by order
    std::size_t left = 0;  // how many have no dummy yet
};

keyword_table make_keyword_table(expr_node *first) {
    keyword_table table;
    for (expr_node *actual = first; actual; actual = actual->next) {
        table.rows.push_back({keyword_of(actual), table.left++, actual});
    }
    std::sort(table.rows.begin(), table.rows.end(), [](const auto &a, const auto &b) {
        return a.keyword != b.keyword ? std::less<>()(a.keyword, b.keyword) : a.order < b.order;
    });
    return table;
}

// Takes the argument with a keyword; null if there is none.
expr_node *take_keyword(keyword_table &table, const atom *keyword) {
    const auto row =
        std::lower_bound(table.rows.begin(), table.rows.end(), keyword,
                         [](const auto &r, const atom *k) { return std::less<>()(r.keyword, k); });
    if (!keyword || row == table.rows.end() || row->keyword != keyword || !row->actual) {
        return nullptr;
    }
    --table.left;
    return std::exchange(row->actual, nullptr);
}

// The name of the last dummy of a routine that takes any number of them: "A2" is "A" and 2.
struct numbered_name {
    std::string_view prefix;
    std::size_t number;
};

std::string_view spelling_of(const atom *name) { return {name->spelling, name->length}; }

numbered_name split_name(const atom *name) {
    const std::string_view text = spelling_of(name);
    const std::size_t digits = std::min(text.find_first_of("0123456789"), text.size());
    numbered_name result{text.substr(0, digits), 0};
    std::from_chars(text.data() + digits, text.data() + text.size(), result.number);
    return result;
}

atom *find_numbered(std::string_view prefix, std::size_t number) {
    const std::string text = std::string(prefix) + std::to_string(number);
    return find_atom(text.data(), text.size());
}

// How the arguments of a call lie, when they have been matched.
struct placement {
    std::vector<expr_node *> of_dummies; // in the order of the dummies; null: absent
    std::vector<expr_node *> repeated;   // what follows for the last dummy, in order
    expr_node *bad_actual = nullptr;
};

binding misfit(placement &found, expr_node *actual) {
    found.bad_actual = actual;
    return binding_misfit;
}

// Further arguments of a routine that takes any number: those with keywords have the names behind that of the
// last dummy, without a gap. Arguments without a keyword come behind them, or ahead of them if these take the
// first of the names.
binding match_numbered(const param_type *last, keyword_table &keywords, binding_mode mode, placement &found) {
    const numbered_name name = split_name(last->source_corresp.name);
    std::vector<expr_node *> named;
    std::size_t number = name.number + 1;
    const auto take = [&] { return take_keyword(keywords, find_numbered(name.prefix, number++)); };
    expr_node *actual = take();
    const bool is_behind = !actual && !found.repeated.empty();
    if (is_behind) {
        number = name.number + 1 + found.repeated.size();
        actual = take();
    }
    for (;; actual = take()) {
        if (!actual) {
            return binding_keyword_missing;
        }
        if (!match_one_argument(actual, last, mode)) {
            return misfit(found, actual);
        }
        named.push_back(actual);
        if (keywords.left == 0) {
            break;
        }
    }
    found.repeated.insert(is_behind ? found.repeated.end() : found.repeated.begin(), named.begin(),
                          named.end());
    return binding_done;
}

binding match_keywords(const type *routine_type, const param_type *p, const param_type *last,
                       expr_node *first, binding_mode mode, placement &found) {
    keyword_table keywords = make_keyword_table(first);
    for (; p; p = p->next) {
        expr_node *actual = take_keyword(keywords, p->source_corresp.name);
        if (!actual && !p->is_optional) {
            return binding_keyword_missing;
        }
        if (actual && !match_one_argument(actual, p, mode)) {
            return misfit(found, actual);
        }
        found.of_dummies.push_back(actual);
        last = p;
    }
    if (keywords.left == 0) {
        return binding_done;
    }
    if (!routine_type->routine.has_ellipsis || !last) {
        return binding_surplus_keywords;
    }
    return match_numbered(last, keywords, mode, found);
}

// Finds the place of each actual argument.
binding match_arguments(const type *routine_type, expr_node *actual, binding_mode mode, placement &found) {
    const param_type *p = routine_type->routine.param_type_list;
    const param_type *last = nullptr;
    for (; p && actual && !keyword_of(actual); p = p->next, actual = actual->next) {
        if (!match_one_argument(actual, p, mode)) {
            return misfit(found, actual);
        }
        found.of_dummies.push_back(actual);
        last = p;
    }
    if (!actual) {
        for (; p; p = p->next) {
            if (!p->is_optional) {
                return binding_too_few;
            }
            found.of_dummies.push_back(nullptr);
        }
        return binding_done;
    }
    found.bad_actual = actual;
    const bool repeats = routine_type->routine.has_ellipsis && last;
    for (; actual && !keyword_of(actual); actual = actual->next) {
        if (repeats && !match_one_argument(actual, last, mode)) {
            return misfit(found, actual);
        }
        found.repeated.push_back(actual);
    }
    if (actual) {
        return match_keywords(routine_type, p, last, actual, mode, found);
    }
    return repeats ? binding_done : binding_too_many;
}

} // namespace

// ---- actual and dummy together

namespace {

// Reports once, at the argument.
bool misses(error_code code, source_pos position) {
    error_at(code, position);
    return false;
}

bool check_dummy_characteristics(type *actual, type *dummy, source_pos position);

// Whether what a dummy procedure is called with may be passed to the procedure that stands for it.
bool same_dummy(type *actual, type *dummy, bool is_elemental) {
    if (!is_elemental) {
        return passes_type(actual, dummy);
    }
    // Of an intrinsic procedure: its own dummy may be of any kind.
    return passes_type(element_type_of(actual), dummy) || type_matches_dummy(dummy, element_type_of(actual));
}

bool check_dummy_procedure(const type *actual, const type *dummy, source_pos position) {
    const bool is_elemental = actual->routine.is_elemental;
    const param_type *p = actual->routine.param_type_list;
    const param_type *q = dummy->routine.param_type_list;
    for (; p && q; p = p->next, q = q->next) {
        if (!same_dummy(p->type, q->type, is_elemental)) {
            return misses(msg_characteristics_not_same_as_those_of_dummy_procedure, position);
        }
        type *own = is_elemental ? element_type_of(p->type) : p->type;
        if (!check_dummy_characteristics(own, q->type, position)) {
            return false;
        }
    }
    return p == q || misses(msg_characteristics_not_same_as_those_of_dummy_procedure, position);
}

// Whether the lengths of two character types agree as far as they are known. A dummy whose storage goes on
// behind a text takes a longer one.
bool lengths_agree(const type *actual, const type *dummy, bool is_descriptor) {
    const bound &have = char_length_of_type(actual);
    const bound &want = char_length_of_type(dummy);
    if (have.kind != bound_constant || want.kind != bound_constant) {
        return true;
    }
    return dummy->is_character && !is_descriptor ? have.value >= want.value : have.value == want.value;
}

bool check_dummy_characteristics(type *actual, type *dummy, source_pos position) {
    if (actual->type_code == tk_routine && dummy->type_code == tk_routine) {
        const bool both_known = actual->routine.has_param_info && dummy->routine.has_param_info;
        if (both_known && !deep_call([&] { return check_dummy_procedure(actual, dummy, position); })) {
            return false;
        }
        const bool is_elemental = actual->routine.is_elemental;
        actual = actual->routine.return_type;
        dummy = dummy->routine.return_type;
        if (!actual || !dummy) {
            return true;
        }
        actual = is_elemental ? element_type_of(actual) : actual;
    }
    bool is_descriptor = false;
    if (is_array(dummy)) {
        is_descriptor = has_descriptor(dummy);
        if (is_descriptor && is_assumed_size(actual)) {
            return misses(msg_assumed_size_array_is_not_allowed, position);
        }
    }
    const type *have = element_type_of(actual);
    const type *want = element_type_of(dummy);
    return have->type_code != tk_fcharacter || want->type_code != tk_fcharacter ||
           lengths_agree(have, want, is_descriptor) ||
           misses(msg_character_length_not_agreed_with_that_of_dummy, position);
}

void mark_argument_attributes(expr_node *actual, const param_type *param) {
    actual->is_optional = param->is_optional;
    actual->intent_in = param->intent_in;
    actual->intent_out = param->intent_out;
    actual->is_pointer = param->is_pointer;
    actual->element_sequence =
        is_array(param->type) && !has_descriptor(param->type) && param->type->array.shape_kind != as_shaped;
}

bool check_definable_argument(bool is_elemental, expr_node *actual) {
    if (!check_definable(actual)) {
        return false;
    }
    // An elemental procedure stores to each element by itself.
    return is_elemental || !section_has_vector_subscript(actual) ||
           misses(msg_array_section_with_vector_subscript_is_not_allowed, actual->source_pos);
}

// What the name of a program unit or procedure is, in the message that it may not be passed; null if it may.
const char *unpassable_class(const object *o) {
    switch (o->storage_class) {
    case sc_module: return "a module unit";
    case sc_program: return "a program unit";
    case sc_blockdata: return "a blockdata unit";
    case sc_stmt_func: return "a statement function";
    case sc_internal:
        return o->assoc.routine && o->assoc.routine->storage_class == sc_module ? nullptr
                                                                                : "an internal procedure";
    default: return nullptr;
    }
}

bool check_argument_entity(const expr_node *actual, const object *o, const param_type *param) {
    bool ok = true;
    if (param && param->is_pointer && !o->is_pointer) {
        ok = misses(msg_expected_pointer_entity, actual->source_pos);
    }
    return check_passable(o, actual->source_pos) && ok;
}

// A pointer dummy takes what has an association of its own: besides names and components that is the result
// of a function. An intrinsic procedure, which takes any type, looks at its argument itself.
bool check_pointer_argument(expr_node *actual, const param_type *param) {
    if (actual->node_kind == enk_empty || element_type_of(param->type)->type_code == tk_any_type) {
        return true;
    }
    return pointer_assign_check(param->type, actual) &&
           (actual->node_kind == enk_call || misses(msg_expected_pointer_entity, actual->source_pos));
}

} // namespace

bool check_passable(const object *o, source_pos position) {
    const char *const text = unpassable_class(o);
    if (text) {
        error_at(msg_actual_argument_must_not_be_name_of, position, text);
    }
    return !text;
}

bool check_argument_association(bool is_subroutine, bool is_elemental, expr_node *actual,
                                const param_type *param) {
    bool ok = true;
    if (param) {
        ok = check_dummy_characteristics(actual->type, param->type, actual->source_pos);
        if (ok && param->intent_out) {
            ok = check_definable_argument(is_elemental, actual);
        }
        mark_argument_attributes(actual, param);
        actual->iterated =
            is_elemental && is_array(param->type) && param->type->array.rank == 0 && is_array(actual->type);
    } else if (is_array(actual->type)) {
        actual->element_sequence = true;
    }
    switch (actual->node_kind) {
    case enk_stmt_label_value:
        return is_subroutine ? ok
                             : misses(msg_alternate_return_is_only_allowed_in_subroutine, actual->source_pos);
    case enk_object: return check_argument_entity(actual, actual->object, param) && ok;
    case enk_field: return check_argument_entity(actual, actual->field_var, param) && ok;
    default: return (!param || !param->is_pointer || check_pointer_argument(actual, param)) && ok;
    }
}

// ---- absent arguments

namespace {

// The type that a module's type is known as in the unit of a call, looked for from the inside out.
type *type_in_calling_scope(type *t, const object *routine) {
    for (const object *unit = routine; unit;
         unit = unit->storage_class == sc_internal ? unit->assoc.routine : nullptr) {
        const scope *s = unit->variant.assoc_scope;
        for (type *own = s ? s->types : nullptr; own; own = own->next) {
            if (own == t || (own->type_code == tk_derived_type && own->derived.module == t->derived.module &&
                             own->source_corresp.name == t->source_corresp.name)) {
                return own;
            }
        }
    }
    return t;
}

} // namespace

expr_node *make_absent_argument(const param_type *param, const object *routine) {
    expr_node *absent = new_expr_node(enk_empty);
    absent->type = param->type;
    if (param->type->type_code == tk_derived_type && param->type->derived.module) {
        absent->type = type_in_calling_scope(param->type, routine);
    }
    mark_argument_attributes(absent, param);
    return absent;
}

// ---- the list of a call

namespace {

bool is_void_routine(const type *t) {
    return t->routine.return_type && t->routine.return_type->type_code == tk_void;
}

binding bind_implicit(expr_node *actuals, bool is_subroutine) {
    bool ok = true;
    for (expr_node *actual = actuals; actual; actual = actual->next) {
        if (keyword_of(actual)) {
            error_at(msg_keyword_is_not_allowed, actual->source_pos);
        }
        if (actual->type->type_code == tk_void) { // a subroutine was referred to as a function
            ok = misses(msg_actual_argument_is_incompatible_with_dummy_argument, actual->source_pos);
        }
        ok = check_argument_association(is_subroutine, false, actual, nullptr) && ok;
    }
    return ok ? binding_done : binding_reported;
}

void set_keyword(expr_node *actual, atom *keyword) {
    actual->is_specifier = false;
    actual->keyword = keyword;
}

// Puts the list in the order of the dummies.
binding rebuild(const type *routine_type, const placement &found, expr_node *&actuals,
                const object *routine) {
    const bool is_subroutine = is_void_routine(routine_type);
    const bool is_elemental = routine_type->routine.is_elemental;
    bool ok = true;
    expr_node **tail = &actuals;
    const auto append = [&](expr_node *actual) {
        *tail = actual;
        tail = &actual->next;
    };
    const param_type *p = routine_type->routine.param_type_list;
    const param_type *last = p;
    for (expr_node *actual : found.of_dummies) {
        if (actual) {
            ok = check_argument_association(is_subroutine, is_elemental, actual, p) && ok;
            set_keyword(actual, p->source_corresp.name);
        } else {
            actual = make_absent_argument(p, routine);
        }
        append(actual);
        last = p;
        p = p->next;
    }
    if (!found.repeated.empty()) {
        const numbered_name name = split_name(last->source_corresp.name);
        std::size_t number = name.number;
        for (expr_node *actual : found.repeated) {
            ok = check_argument_association(is_subroutine, is_elemental, actual, last) && ok;
            const std::string text = std::string(name.prefix) + std::to_string(++number);
            atom *keyword = nullptr;
            intern_name(text.data(), text.size(), keyword);
            set_keyword(actual, keyword);
            append(actual);
        }
    }
    *tail = nullptr;
    return ok ? binding_done : binding_reported;
}

} // namespace

binding bind_arguments(type *routine_type, expr_node *&actuals, expr_node *&bad_actual, binding_mode mode,
                       object *routine) {
    if (!routine_type->routine.has_param_info) {
        return mode == binding_mode::call ? bind_implicit(actuals, is_void_routine(routine_type))
                                          : binding_done;
    }
    static placement spare; // keeps its room from call to call
    placement found = std::move(spare);
    found.of_dummies.clear();
    found.repeated.clear();
    found.bad_actual = nullptr;
    binding result = match_arguments(routine_type, actuals, mode, found);
    bad_actual = found.bad_actual;
    if (result == binding_done && mode == binding_mode::call) {
        result = rebuild(routine_type, found, actuals, routine);
    }
    spare = std::move(found);
    return result;
}

} // namespace zf90
