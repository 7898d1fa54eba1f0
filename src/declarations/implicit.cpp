// The states of a symbol's type, and the IMPLICIT statements.
#include "declarations/implicit.h"

#include "declarations/routines.h"
#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "declarations/type_spec.h"
#include "driver/diagnostics.h"
#include "driver/options.h"
#include "il/types.h"
#include "source/token_helpers.h"
#include "source/tokens.h"
#include "statements/handlers.h"
#include "statements/loop.h"

#include <string_view>

namespace zf90 {

namespace {

void recompute_size(type *array) {
    array->size = 0;
    complete_type(array);
}

// Whether the name reports a conflict with its type so far: one that was declared has been reported as declared
// twice, and one that comes from mere use gives way.
bool reports_conflict(const symbol *s) {
    return (s->flags & sf_type_implicit) && !(s->flags & sf_inferred) && s->name != error_atom;
}

// Puts the declared type in the place that holds the symbol's type so far.
bool settle(symbol *s, type *&place, type *declared, bool override_type) {
    const bool is_known_array = place && is_array(place);
    type *&scalar = is_known_array ? place->array.element_type : place;
    if (!scalar || scalar->type_code == tk_unknown) {
        scalar = declared;
        s->flags |= sf_typed;
        if (is_known_array) {
            recompute_size(place);
        }
        return true;
    }
    if ((s->flags & sf_type_implicit) && scalar == declared) {
        s->flags &= ~std::uint32_t{sf_type_implicit};
        return true;
    }
    if (reports_conflict(s)) {
        error(msg_type_declaration_conflicts_with_implied_type);
    }
    if (override_type) {
        scalar = declared;
        s->flags = (s->flags | sf_typed) & ~std::uint32_t{sf_type_implicit};
        if (is_known_array) {
            recompute_size(place);
        }
    }
    return false;
}

// The result of a routine of the current scope: the unit's own, or an entry's. Null if it has none yet.
object *result_of(const object *routine) {
    const scope *u = curr_row().il_scope;
    if (!u) {
        return nullptr;
    }
    if (u->assoc_routine == routine) {
        return u->function_result_var;
    }
    for (const entry_description *e = u->entries; e; e = e->next) {
        if (e->assoc_routine == routine) {
            return e->function_result_var;
        }
    }
    return nullptr;
}

bool has_explicit_type(const object *o) {
    const symbol *s = o->symbol_link;
    return s && (s->flags & sf_typed) && !(s->flags & sf_type_implicit);
}

// The type of a result is the type of its function. The function's own flag follows the result's.
void settle_function_of(symbol *result, type *declared, bool override_type) {
    object *routine = entity_as<object>(result)->variant.result_var_function;
    symbol *function = routine ? routine->symbol_link : nullptr;
    if (!function || (function->kind != sk_function && function->kind != sk_internal_function)) {
        return;
    }
    const std::uint32_t implied = result->flags & sf_type_implicit;
    function->flags = (function->flags & ~std::uint32_t{sf_type_implicit}) | implied;
    type *&return_type = routine_of(routine).return_type;
    if (override_type || return_type->type_code == tk_unknown) {
        return_type = declared;
        function->flags |= sf_typed;
    }
    raise_result_storage(entity_as<object>(result));
}

} // namespace

type *type_of_symbol(const symbol *s) {
    switch (s->kind) {
    case sk_variable:
    case sk_subroutine:
    case sk_function:
    case sk_internal_subroutine:
    case sk_internal_function:
    case sk_stmt_function:
    case sk_specific_function:
    case sk_specific_subroutine:
    case sk_program:
    case sk_block_data:
    case sk_external_unused:
    case sk_dummy:
    case sk_dummy_function:
    case sk_dummy_subroutine:
    case sk_dummy_procedure: return s->entity ? entity_as<object>(s)->type : nullptr;
    case sk_undetermined:
    case sk_data_name:
    case sk_external_pending: return entity_as<type>(s);
    default: return nullptr;
    }
}

bool is_character_symbol(const symbol *s) {
    const type *t = type_of_symbol(s);
    return t && t->type_code == tk_fcharacter;
}

void apply_implicit(symbol *s, source_pos position) {
    if ((s->flags & sf_typed) && s->name != error_atom) {
        return;
    }
    type *implied = error_type();
    error_code code = msg_unknown_error;
    if (s->name != error_atom) {
        implied = implicit_type_of(s);
        if (!implied) {
            code = msg_identifier_has_not_been_explicitly_typed;
        } else if (implied->type_code != tk_integer && s->kind == sk_variable && (s->flags & sf_used_as_bound)) {
            code = msg_implicit_type_of_conflicts_with_use_as_array;
        } else if (implied->type_code != tk_integer && (s->flags & sf_implied_do)) {
            code = msg_implicit_type_of_conflicts_with_use_as_implied;
        }
    }
    if (code != msg_unknown_error) {
        error_at(code, position == null_pos ? s->decl_position : position, s->name->spelling);
        implied = error_type();
    } else {
        s->flags |= sf_type_implicit;
    }
    switch (s->kind) {
    case sk_function:
    case sk_internal_function: set_routine_type(s, implied, true); break;
    case sk_subroutine:
    case sk_internal_subroutine: set_routine_type(s, void_type(), true); break;
    default:
        if (set_type(s, implied, true) && implied->type_code == tk_derived_type && implied->symbol_link) {
            note_use(use_declared, implied->symbol_link, s->decl_position);
        }
        break;
    }
}

bool set_type(symbol *s, type *declared, bool override_type) {
    switch (s->kind) {
    case sk_variable:
    case sk_dummy: {
        object *o = entity_as<object>(s);
        const bool good = settle(s, o->type, declared, override_type);
        if (o->is_result) {
            settle_function_of(s, o->type, override_type);
        }
        return good;
    }
    case sk_undetermined:
    case sk_data_name:
    case sk_external_pending: {
        type *held = entity_as<type>(s);
        const bool good = settle(s, held, declared, override_type);
        s->entity = held;
        return good;
    }
    case sk_dummy_function:
    case sk_dummy_procedure: {
        s->kind = sk_dummy_function; // the object stays
        const bool good = set_dummy_proc_type(s, declared);
        s->flags |= sf_typed;
        return good;
    }
    default:
        if (reports_conflict(s)) {
            error(msg_type_declaration_conflicts_with_implied_type);
        }
        return false;
    }
}

bool set_routine_type(symbol *s, type *declared, bool override_type) {
    object *routine = entity_as<object>(s);
    const bool good = settle(s, routine_of(routine).return_type, declared, override_type);
    object *result = declared->type_code != tk_void && (good || override_type) ? result_of(routine) : nullptr;
    if (result && !has_explicit_type(result)) {
        result->type = declared;
        if (result->symbol_link) {
            result->symbol_link->flags |= sf_typed | (s->flags & sf_type_implicit);
        }
    }
    if (result) {
        raise_result_storage(result);
    }
    return good;
}

bool set_dummy_proc_type(symbol *s, type *declared) {
    object *o = entity_as<object>(s);
    bool good = true;
    if (!o->type || o->type->type_code != tk_routine) {
        o->type = new_routine_type(o, declared);
    } else if (type *&return_type = o->type->routine.return_type; return_type->type_code == tk_unknown ||
                                                                  return_type->type_code == tk_unspec_routine) {
        return_type = declared;
    } else if ((s->flags & sf_type_implicit) && return_type == declared) {
        s->flags &= ~std::uint32_t{sf_type_implicit};
    } else {
        good = (s->flags & sf_inferred) != 0;
        if (reports_conflict(s)) {
            error(msg_type_declaration_conflicts_with_implied_type);
        }
    }
    if (declared->type_code != tk_unknown) {
        s->flags |= sf_typed;
    }
    return good;
}

// ---- the IMPLICIT statements

bool stmt_implicit_none() {
    scope_row &row = curr_row();
    if (row.implicit_none) {
        warning_at(msg_implicit_none_statement_has_already_appeared, stmt_pos);
    }
    row.implicit_none = true;
    for (type *&t : row.implicit_types) {
        t = nullptr;
    }
    next_token(0);
    return true;
}

namespace {

constexpr std::uint32_t letter_list_mode = lex_letter;

// Whether a selector, and not the letter list, stands behind a type keyword. Reads nothing.
bool has_selector() {
    char *const saved_cursor = line_cursor;
    const token_kind saved_token = curr_token;
    const source_pos saved_position = curr_token_pos;
    bool found = false;
    switch (next_token(lex_peek)) {
    case tok_star: found = true; break;
    case tok_lparen:
        skip_balanced();
        found = curr_token == tok_rparen && next_token(lex_peek) == tok_lparen;
        break;
    default: break;
    }
    line_cursor = saved_cursor;
    curr_token = saved_token;
    curr_token_pos = error_pos = saved_position;
    return found;
}

// The specifier of a type keyword that may be followed by the letter list at once.
bool read_implicit_selector(bool (*read_type)(std::uint32_t), type *default_spec) {
    if (has_selector()) {
        return read_type(0);
    }
    curr_type_spec = default_spec;
    next_token(0);
    return true;
}

bool read_double_precision() {
    curr_type_spec = double_precision();
    next_token(0);
    return true;
}

// The type specifier of an IMPLICIT specification, at its first keyword; reads on to the "(" of the letters.
bool read_implicit_type() {
    switch (curr_token) {
    case tok_kw_character: return read_implicit_selector(read_type_character, default_character(1));
    case tok_kw_complex: return read_implicit_selector(read_type_complex, default_complex());
    case tok_kw_integer: return read_implicit_selector(read_type_integer, default_integer());
    case tok_kw_logical: return read_implicit_selector(read_type_logical, default_logical());
    case tok_kw_real: return read_implicit_selector(read_type_real, default_real());
    case tok_kw_type: return read_type_derived(0);
    case tok_kw_in:
        if (next_token(lex_keyword) == tok_kw_teger) {
            return read_implicit_selector(read_type_integer, default_integer());
        }
        break;
    case tok_kw_do:
        if (next_token(lex_keyword) == tok_kw_uble && next_token(lex_keyword) == tok_kw_precision) {
            return read_double_precision();
        }
        break;
    case tok_kw_double:
        if (next_token(lex_keyword) == tok_kw_precision) {
            return read_double_precision();
        }
        break;
    case tok_kw_doubleprecision: return read_double_precision();
    default: break;
    }
    error_pos = curr_token_pos;
    syntax_error(msg_expected_type_keyword);
    return false;
}

void set_letter(int letter, source_pos position) {
    const char spelling[] = {static_cast<char>('A' + letter)};
    const std::uint32_t bit = 1u << letter;
    type *&entry = curr_row().implicit_types[letter];
    if (!(implicit_letter_set & bit)) {
        implicit_letter_set |= bit;
        entry = curr_type_spec;
    } else if (entry != curr_type_spec) {
        error_at(msg_type_has_already_been_associated_with, position, std::string_view(spelling, 1));
    } else {
        warning_at(msg_type_has_already_been_associated_with, position, std::string_view(spelling, 1));
    }
}

// A letter, or a range of letters.
bool read_letters() {
    if (!expect_token(tok_letter, msg_expected_letter)) {
        return false;
    }
    const source_pos position = curr_token_pos;
    const int first = token_text[0] - 'A';
    int last = first;
    if (next_token(letter_list_mode) == tok_minus) {
        next_token(letter_list_mode);
        if (!expect_token(tok_letter, msg_expected_letter)) {
            return false;
        }
        last = token_text[0] - 'A';
        const char spelling[] = {static_cast<char>('A' + first)};
        if (last < first) {
            error(msg_letter_must_follow_in_alphabetic_order, std::string_view(spelling, 1));
            last = first;
        } else if (last == first) {
            warning(msg_letter_must_follow_in_alphabetic_order, std::string_view(spelling, 1));
        }
        next_token(letter_list_mode);
    }
    for (int letter = first; letter <= last; ++letter) {
        set_letter(letter, position);
    }
    return true;
}

// One specification, from its type keyword on.
bool read_implicit_spec() {
    bool good = true;
    {
        const stop_guard stop(tok_lparen);
        good = read_implicit_type();
    }
    if (!accept_token(tok_lparen, msg_expected_lparen, letter_list_mode)) {
        return false;
    }
    {
        const stop_guard stop(tok_comma, tok_rparen);
        do {
            good = read_letters() && good;
        } while (accept_optional(tok_comma, letter_list_mode));
    }
    return accept_token(tok_rparen, msg_expected_rparen, 0) && good;
}

} // namespace

bool stmt_implicit() {
    if (curr_row().implicit_none) {
        error_at(msg_implicit_none_in_effect_implicit_typing_not_permitted, stmt_pos);
    } else if (no_implicit_typing) {
        warning_at(msg_implicit_none_in_effect_implicit_typing_not_permitted, stmt_pos);
    }
    bool good = true;
    do {
        next_token(lex_keyword);
        good = read_implicit_spec() && good;
    } while (good && curr_token == tok_comma);
    return good;
}

} // namespace zf90
