// The rules of defined operators and assignment, and of generic sets without ambiguity.
#include "declarations/generic_sets.h"

#include "declarations/symbols.h"
#include "driver/diagnostics.h"
#include "expressions/predicates.h"
#include "il/types.h"
#include "source/tokens.h"

#include <unordered_map>
#include <vector>

namespace zf90 {

namespace {

constexpr error_code no_error{};

// ---- operators and the assignment

bool is_reported(const param_type *p) { return element_type_of(p->type)->type_code == tk_error; }

bool is_operand(const param_type *p) {
    return (p->intent_in && !p->intent_out && !p->is_optional) || is_reported(p);
}

bool is_assigned(const param_type *p) { return (p->intent_out && !p->is_optional) || is_reported(p); }

error_code check_assignment(const routine_variant &r) {
    if (r.return_type->type_code != tk_void) {
        return msg_defined_assignment_procedure_must_be_subroutine;
    }
    const param_type *left = r.param_type_list;
    if (!left) {
        return msg_incorrect_number_of_arguments;
    }
    if (!is_assigned(left)) {
        return msg_nonoptional_intent_out_or_intent_inout_argument_required;
    }
    const param_type *right = left->next;
    if (!right) {
        return msg_incorrect_number_of_arguments;
    }
    if (!is_operand(right)) {
        return msg_nonoptional_intent_in_argument_required;
    }
    return right->next ? msg_incorrect_number_of_arguments : no_error;
}

error_code check_operands(const routine_variant &r, int fewest) {
    int count = 0;
    bool all_good = true;
    for (const param_type *p = r.param_type_list; p && count <= 2; p = p->next) {
        ++count;
        all_good &= is_operand(p);
    }
    if (count < fewest || count > 2) {
        return msg_incorrect_number_of_arguments;
    }
    return all_good ? no_error : msg_nonoptional_intent_in_argument_required;
}

// The rule that the name of the generic sets for each of its members.
bool check_member_form(const object *routine, const interface *generic) {
    const routine_variant &r = routine->type->routine;
    const source_pos position = routine->source_corresp.decl_position;
    const int code = generic->source_corresp.name->token_code;
    error_code error = no_error;
    bool good = true;
    if (code == tok_assign) {
        error = check_assignment(r);
    } else if (code == tok_defined_op || (code >= first_operator_token && code <= last_operator_token)) {
        if (r.return_type->type_code == tk_void) {
            error_at(msg_defined_operation_procedure_must_be_function, position);
            good = false;
        }
        const bool may_be_unary =
            code == tok_defined_op || code == tok_plus || code == tok_minus || code == tok_not;
        error = check_operands(r, may_be_unary ? 1 : 2);
    }
    if (error != no_error) {
        error_at(error, position);
        good = false;
    }
    return good;
}

// ---- arguments that tell two procedures apart

bool is_as_shaped(const type *t) { return is_array(t) && t->array.shape_kind == as_shaped; }

bool is_any_numeric(const type *t) { return t->type_code == tk_any_numerical || t->type_code == tk_any_type; }

bool kinds_differ(const type *x, const type *y) {
    return x->kind != y->kind && x->kind != ANY_KIND && y->kind != ANY_KIND;
}

// Whether no actual argument can be meant for both.
bool distinguishable(const type *x, const type *y) {
    for (;;) {
        x = is_as_shaped(x) ? x->array.element_type : x;
        y = is_as_shaped(y) ? y->array.element_type : y;
        if (!is_array(x)) {
            break;
        }
        if (!is_array(y) || x->array.rank != y->array.rank) {
            return true;
        }
        x = x->array.element_type;
        y = y->array.element_type;
    }
    const bool is_same_class = x->type_code == y->type_code;
    switch (x->type_code) {
    case tk_integer:
    case tk_float:
    case tk_complex: return !is_any_numeric(y) && (!is_same_class || kinds_differ(x, y));
    case tk_logical:
    case tk_fcharacter: return y->type_code != tk_any_type && (!is_same_class || kinds_differ(x, y));
    case tk_derived_type: return x != y && y->type_code != tk_any_type && !types_equal(x, y);
    case tk_any_type: return is_array(y);
    case tk_any_numerical:
        return !is_any_numeric(y) && y->type_code != tk_integer && y->type_code != tk_float &&
               y->type_code != tk_complex;
    default: return !is_same_class;
    }
}

// Looks at positions only, not at keywords or OPTIONAL.
bool types_differ_at_some_argument(const type *a, const type *b) {
    const param_type *x = a->routine.param_type_list;
    const param_type *y = b->routine.param_type_list;
    for (; x && y; x = x->next, y = y->next) {
        if (distinguishable(x->type, y->type)) {
            return true;
        }
    }
    return x != y;
}

bool is_same_procedure(const object *a, const object *b) {
    return a == b || (a->storage_class == sc_mod_proc && b->storage_class == sc_mod_proc &&
                      a->assoc.module == b->assoc.module && a->source_corresp.name == b->source_corresp.name);
}

// ---- sets without ambiguity

// What the arguments of a procedure are, as a number: that of two procedures is the same if their arguments
// don't differ, so that each needs to be compared with few others.
struct signature {
    std::size_t hash = 0;
    bool is_wild = false; // some argument stands for several types: of an intrinsic procedure
    bool is_bad = false;  // some argument is in error: it is taken to differ from everything

    template <class T> void add(T value) { hash = (hash ^ std::hash<T>()(value)) * 0x100000001b3; }
};

void add_derived_type(signature &s, const type *t) {
    if (t->derived.is_seq) {
        const object *first = t->derived.first_field;
        s.add(first ? first->source_corresp.name : nullptr);
    } else if (t->derived.module) {
        s.add(t->derived.module);
        s.add(t->source_corresp.name);
    } else {
        s.add(t);
    }
}

void add_argument(signature &s, const type *t) {
    s.is_wild |= is_array(t) && (t->array.rank == 0 || t->array.shape_kind == as_shaped);
    if (is_array(t)) {
        s.add(t->array.rank);
        t = t->array.element_type;
    }
    s.add(static_cast<unsigned>(t->type_code));
    switch (t->type_code) {
    case tk_integer:
    case tk_logical:
    case tk_float:
    case tk_complex:
    case tk_fcharacter:
        s.is_wild |= t->kind == ANY_KIND;
        s.add(t->kind);
        break;
    case tk_derived_type: add_derived_type(s, t); break;
    case tk_any_type:
    case tk_any_derived:
    case tk_any_numerical: s.is_wild = true; break;
    case tk_error: s.is_bad = true; break;
    default: break;
    }
}

signature signature_of(const object *routine) {
    signature s;
    for (const param_type *p = routine->type->routine.param_type_list; p; p = p->next) {
        add_argument(s, p->type);
    }
    return s;
}

// The procedures of a generic seen so far.
class generic_set {
public:
    void add(const object *routine) { add(routine, signature_of(routine)); }

    // Adds a procedure. False if one that is there can't be told from it.
    bool add_distinct(const object *routine) {
        const signature s = signature_of(routine);
        const bool good = s.is_bad || s.is_wild || !clashes(routine, s);
        add(routine, s);
        return good;
    }

private:
    void add(const object *routine, const signature &s) {
        if (!s.is_bad) {
            (s.is_wild ? wild_ : exact_[s.hash]).push_back(routine);
        }
    }

    bool clashes(const object *routine, const signature &s) const {
        if (clashes_with(routine, wild_)) {
            return true;
        }
        const auto alike = exact_.find(s.hash);
        return alike != exact_.end() && clashes_with(routine, alike->second);
    }

    static bool clashes_with(const object *routine, const std::vector<const object *> &others) {
        for (const object *other : others) {
            if (!is_same_procedure(routine, other) &&
                !types_differ_at_some_argument(routine->type, other->type)) {
                return true;
            }
        }
        return false;
    }

    std::unordered_map<std::size_t, std::vector<const object *>> exact_; // by signature
    std::vector<const object *> wild_;
};

// Of a procedure with an argument in error it is not known what it is told apart by, nor which one it is if
// its name has been refused.
bool has_known_interface(const object *routine) {
    if (routine->type->type_code != tk_routine || !routine->type->routine.has_param_info ||
        (routine->symbol_link && routine->symbol_link->name == error_atom)) {
        return false;
    }
    const param_type *p = routine->type->routine.param_type_list;
    while (p && !is_reported(p)) {
        p = p->next;
    }
    return !p;
}

void make_public(object *routine) {
    routine->source_corresp.referenced = true;
    routine->is_public = true;
}

bool check_public_member(object *routine) {
    if (depends_on_private_type(routine)) {
        error_at(msg_procedure_dependent_of_private_type_should_not_have,
                 routine->source_corresp.decl_position);
        return false;
    }
    make_public(routine);
    return true;
}

// The members of a set that has come from a module, which has checked them.
void pass_on_members(const interface *generic) {
    for (const object_list_member *m = generic->routine_prototype_list; m && generic->is_public;
         m = m->next) {
        if (!depends_on_private_type(m->object)) {
            make_public(m->object);
        }
    }
}

} // namespace

bool depends_on_private_type(const object *routine) {
    // A type that a procedure defines for itself is not the module's to hide.
    const auto is_private = [](type *t) {
        const type *element = element_type_of(t);
        return element->type_code == tk_derived_type && element->derived.module && !element->is_public;
    };
    if (routine->type->type_code != tk_routine) {
        return false;
    }
    const routine_variant &r = routine->type->routine;
    if (is_private(r.return_type)) {
        return true;
    }
    for (const param_type *p = r.param_type_list; p; p = p->next) {
        if (is_private(p->type)) {
            return true;
        }
    }
    return false;
}

bool check_generic_set(interface *generic, bool (*check_member)(object *routine)) {
    if (generic->source_corresp.name == error_atom) {
        return true;
    }
    if (generic->symbol_link && generic->symbol_link->from_module) {
        pass_on_members(generic);
        return true;
    }
    generic_set set;
    for (const interface *outer = generic->inherited; outer; outer = outer->inherited) {
        for (const object_list_member *m = outer->routine_prototype_list; m; m = m->next) {
            if (has_known_interface(m->object)) {
                set.add(m->object);
            }
        }
    }
    bool good = true;
    for (const object_list_member *m = generic->routine_prototype_list; m; m = m->next) {
        object *routine = m->object;
        if (!check_member(routine) || !has_known_interface(routine)) {
            routine->is_refused = true;
            good = false;
            continue;
        }
        good = check_member_form(routine, generic) && good;
        if (!set.add_distinct(routine)) {
            error_at(msg_procedure_violates_rules_of_unambiguous_generic_procedure_references,
                     routine->source_corresp.decl_position);
            routine->is_refused = true;
            good = false;
        }
        if (generic->is_public) {
            good = check_public_member(routine) && good;
        }
    }
    return good;
}

} // namespace zf90
