// The type declaration statement: type, attribute list, and the entities with their shapes, lengths and
// initial values.
#include "declarations/declarations.h"
#include "declarations/implicit.h"
#include "declarations/names_in_error.h"
#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "declarations/type_spec.h"
#include "driver/diagnostics.h"
#include "expressions/parser.h"
#include "il/types.h"
#include "source/token_helpers.h"
#include "source/tokens.h"
#include "statements/handlers.h"
#include "statements/loop.h"

namespace zf90 {

namespace {

constexpr attribute shape_attributes[] = {attr_explicit_shape, attr_deferred_shape, attr_assumed_shape,
                                          attr_assumed_size};

void set_shape(attribute_set &set, const type *array) {
    for (attribute a : shape_attributes) {
        set[a] = false;
    }
    set[shape_attribute(array->array.shape_kind)] = true;
}

// The type specifier, at its first keyword. False after a word that is none.
bool read_type_spec() {
    switch (curr_token) {
    case tok_kw_character: return read_type_character(0);
    case tok_kw_complex: return read_type_complex(0);
    case tok_kw_integer: return read_type_integer(0);
    case tok_kw_logical: return read_type_logical(0);
    case tok_kw_real: return read_type_real(0);
    case tok_kw_type: return read_type_derived(0);
    case tok_kw_in:
        if (next_token(lex_keyword) == tok_kw_teger) {
            return read_type_integer(0);
        }
        break;
    case tok_kw_do:
    case tok_kw_double:
        if (curr_token == tok_kw_do && next_token(lex_keyword) != tok_kw_uble) {
            break;
        }
        if (next_token(lex_keyword) != tok_kw_precision) {
            break;
        }
        [[fallthrough]];
    case tok_kw_doubleprecision:
        curr_type_spec = double_precision();
        next_token(0);
        return true;
    default: break;
    }
    error_pos = curr_token_pos;
    syntax_error(msg_expected_type_keyword);
    return false;
}

// Adds an attribute of the list. A repetition is an error where the attribute may not be stated twice.
void add_attribute(attribute_set &set, attribute a) {
    if (set[a] && attr_matrix[a][a] == conflict) {
        error_at(msg_attribute_specifier_appears_repeatedly, curr_token_pos);
    }
    set[a] = true;
}

void add_data_attribute(attribute_set &set, attribute a) {
    add_attribute(set, a);
    set[attr_variable] = true;
}

// DIMENSION: the whole declaration has that shape.
bool read_dimension_attribute(attribute_set &set) {
    const bool repeated = is_array(curr_type_spec);
    if (repeated) {
        error_at(msg_attribute_specifier_appears_repeatedly, curr_token_pos);
    }
    next_token(0);
    if (!expect_token(tok_lparen, msg_expected_lparen)) {
        return false;
    }
    type *array = read_array_spec(curr_type_spec);
    if (repeated) {
        return true;
    }
    if (!array) {
        curr_type_spec = error_type();
        return true;
    }
    set_shape(set, array);
    curr_type_spec = array;
    return true;
}

bool read_intent_attribute(attribute_set &set) {
    const bool repeated = set[attr_intent_in] || set[attr_intent_out] || set[attr_intent_inout];
    if (repeated) {
        error_at(msg_attribute_specifier_appears_repeatedly, curr_token_pos);
    }
    attribute_set scratch{};
    set[attr_variable] = true;
    if (!read_intent_spec(repeated ? scratch : set)) {
        curr_type_spec = error_type(); // what may be done with the arguments is not known
        return curr_token == tok_comma || curr_token == tok_double_colon;
    }
    return true;
}

void add_access(attribute_set &set, attribute a) {
    if (curr_unit_kind != uk_module) {
        error_at(msg_access_specifier_or_statement_may_appear_only_in_scoping, curr_token_pos);
        return;
    }
    add_attribute(set, a);
}

// Passes over an item that is no attribute; only the first one is reported. What the entities lack without it
// is not known.
bool skip_unknown_attribute(bool &reported) {
    error_pos = curr_token_pos;
    if (!reported) {
        report_syntax_error(msg_attribute_specifier_expected);
    }
    reported = true;
    recover_tokens();
    return curr_token != tok_eos;
}

// One item of the attribute list, at its keyword. False after an error behind which the list can't go on.
bool read_attribute(attribute_set &set, bool &reported_unknown) {
    switch (curr_token) {
    case tok_kw_allocatable:
        if (curr_unit_kind == uk_block_data) {
            error_at(msg_allocatable_not_allowed, curr_token_pos);
        }
        add_data_attribute(set, attr_allocatable);
        break;
    case tok_kw_dimension: return read_dimension_attribute(set);
    case tok_kw_external:
        if (curr_unit_kind == uk_block_data) {
            error_at(msg_external_not_allowed, curr_token_pos);
        }
        add_attribute(set, attr_external);
        break;
    case tok_kw_intent: return read_intent_attribute(set);
    case tok_kw_in:
        if (next_token(lex_keyword) == tok_kw_tent) {
            return read_intent_attribute(set);
        }
        if (curr_token != tok_kw_trinsic) {
            return skip_unknown_attribute(reported_unknown);
        }
        add_attribute(set, attr_intrinsic);
        break;
    case tok_kw_intrinsic: add_attribute(set, attr_intrinsic); break;
    case tok_kw_optional: add_attribute(set, attr_optional); break;
    case tok_kw_parameter: add_data_attribute(set, attr_parameter); break;
    case tok_kw_pointer: add_attribute(set, attr_pointer); break;
    case tok_kw_private: add_access(set, attr_private); break;
    case tok_kw_public: add_access(set, attr_public); break;
    case tok_kw_save:
        if (global_save) {
            error_at(msg_all_variables_already_have_save_specification, curr_token_pos);
        }
        add_data_attribute(set, attr_save);
        break;
    case tok_kw_target: add_data_attribute(set, attr_target); break;
    default: return skip_unknown_attribute(reported_unknown);
    }
    next_token(0);
    return true;
}

// Behind an attribute: whether another one follows, of which the keyword is read. If only its comma lacks,
// that is reported as the missing end of the list.
bool next_attribute() {
    if (curr_token == tok_name && lookahead_find_at_depth(tok_double_colon, false)) {
        error_pos = curr_token_pos;
        report_syntax_error(msg_expected_double_colon);
        lex_rewind_token();
    } else if (curr_token != tok_comma) {
        return false;
    }
    next_token(lex_keyword);
    return true;
}

// ", attribute" as often as they come, and the "::" that must close them.
bool read_attribute_list(attribute_set &set) {
    {
        const stop_at stop({tok_comma, tok_double_colon});
        bool reported_unknown = false;
        while (next_attribute()) {
            if (!read_attribute(set, reported_unknown)) {
                return false;
            }
        }
        if (reported_unknown) {
            curr_type_spec = error_type();
        }
    }
    if (curr_token == tok_name || curr_token == tok_colon) {
        // The list of entities begins without it, or with half of it.
        error_pos = curr_token_pos;
        report_syntax_error(msg_expected_double_colon);
        return curr_token == tok_name || next_token(0) == tok_name;
    }
    if (curr_token != tok_double_colon) {
        curr_type_spec = error_type(); // an attribute may be lost
    }
    return accept_token(tok_double_colon, msg_expected_double_colon, 0);
}

// "*length" behind an entity.
bool read_entity_length(bool has_type) {
    type *element = element_type_of(entity_type);
    if (!has_type || element->type_code != tk_fcharacter) {
        if (element->type_code != tk_error) {
            error_at(msg_length_specification_is_not_allowed_for_this_data, curr_token_pos);
        }
        recover_tokens();
        return true;
    }
    type *with_length = read_char_length(element, 0);
    if (!is_array(entity_type)) {
        entity_type = with_length;
        return true;
    }
    type *array = new_type(tk_farray);
    copy_type(entity_type, array);
    array->array.element_type = with_length;
    array->size = 0;
    complete_type(array);
    entity_type = array;
    return true;
}

// "= value" behind an entity.
bool read_entity_value(attribute_set &set, bool has_double_colon) {
    if (!has_double_colon) {
        error_at(msg_double_colon_must_appear_before_entity_declaration, curr_token_pos);
    }
    next_token(lex_signed);
    if (!parse_expression(entity_init)) {
        return false;
    }
    set[attr_initialized] = set[attr_variable] = true;
    return true;
}

// At what is no name where an entity must stand: goes on at the first name behind it, but not at one in a
// value.
bool find_entity() {
    error_pos = curr_token_pos;
    report_syntax_error(msg_expected_identifier);
    {
        const stop_at stop({tok_name, tok_assign});
        recover_tokens();
    }
    if (curr_token == tok_assign) {
        recover_tokens();
    }
    return curr_token == tok_name;
}

// A named constant without "=". The next entity may stand right behind it.
void refuse_missing_value() {
    error_pos = curr_token_pos;
    report_syntax_error(msg_expected_equals);
    if (curr_token != tok_name || !lookahead_find_at_depth(tok_assign, false)) {
        recover_tokens();
    }
}

bool read_entity(attribute_set set, bool has_double_colon) {
    entity_type = curr_type_spec;
    entity_init = nullptr;
    if (curr_token != tok_name && !find_entity()) {
        return false;
    }
    name_locator name = curr_name;
    symbol *s = lookup_for_declaration();
    bool is_unclosed = false;
    bool has_bad_shape = false;
    next_token(lex_lone_star);
    {
        const stop_at stop({tok_comma});
        if (curr_token == tok_lparen) {
            type *array = read_array_spec(element_type_of(curr_type_spec));
            // Of what is in error the shape is no more certain than the type.
            entity_type = array && curr_type_spec->type_code != tk_error ? array : error_type();
            has_bad_shape = !array;
            is_unclosed = !array && curr_token == tok_eos;
        }
        if (is_array(entity_type)) {
            set_shape(set, entity_type);
        }
        if (curr_token == tok_star) {
            read_entity_length(set[attr_typed]);
        }
    }
    bool good = true;
    bool has_value = true;
    if (curr_token == tok_assign) {
        good = has_value = read_entity_value(set, has_double_colon);
    } else if (set[attr_parameter]) {
        if (!has_bad_shape) { // otherwise the value may have been passed over
            refuse_missing_value();
        }
        set[attr_parameter] = has_value = false;
    }
    const bool is_component_of_any_length = set[attr_component] && set[attr_assumed_length];
    const bool is_repeated =
        s && has_explicit_type(s) && !(s->flags & sf_inferred) && type_of_symbol(s) != entity_type;
    const bool is_pointer = set[attr_pointer];
    if (!check_attributes(s, set, name.position) &&
        (is_component_of_any_length || is_repeated || is_pointer != set[attr_pointer] ||
         (is_array(entity_type) && !keeps_shape(set, entity_type)))) {
        entity_type = error_type();
    }
    symbol *const declared = apply_attributes(s, set, name);
    if (!has_value || entity_type->type_code == tk_error) {
        give_up_type(declared);
    }
    if (is_unclosed) {
        declare_statement_in_error(); // the entities behind it too
    }
    return good;
}

// Behind an entity, at a name or "::": something lacks in front of it. True if the next entity can be read.
// `before`: the last name of the scope ahead of the statement.
bool pass_missing_comma(symbol *before) {
    error_pos = curr_token_pos;
    report_syntax_error(msg_expected_comma);
    if (curr_token == tok_name) {
        return true;
    }
    // What was read so far was to be the attributes; the entities stand behind.
    for (symbol *s = before ? before->next_in_scope : curr_row().first_symbol; s; s = s->next_in_scope) {
        if (has_explicit_type(s)) {
            give_up_type(s);
        }
    }
    declare_statement_in_error();
    return false;
}

} // namespace

bool stmt_type_declaration() {
    attribute_set set{};
    set[attr_typed] = true;
    if (in_type_def) {
        set[attr_variable] = set[attr_component] = true;
    }
    next_token(lex_keyword);
    if (!read_type_spec()) {
        declare_statement_in_error();
        return false;
    }
    const bool is_character = curr_type_spec->type_code == tk_fcharacter;
    if (is_character && curr_type_spec->character.length.kind == bound_assumed) {
        set[attr_assumed_length] = true;
    }
    bool has_double_colon = false;
    if (curr_token == tok_comma && is_character && char_star_form &&
        !lookahead_find_at_depth(tok_double_colon, false)) {
        // The old form CHARACTER*n, list
        if (in_type_def) {
            error_at(msg_comma_not_allowed, curr_token_pos);
        }
        next_token(0);
    } else if (curr_token == tok_comma) {
        if (!read_attribute_list(set)) {
            declare_statement_in_error();
            return false;
        }
        has_double_colon = true;
    } else {
        has_double_colon = accept_optional(tok_double_colon, 0);
    }

    if (curr_token != tok_name && !has_double_colon && lookahead_find_at_depth(tok_double_colon, false)) {
        error_pos = curr_token_pos;
        report_syntax_error(msg_expected_identifier);
        declare_statement_in_error(); // what stands here may say anything about the entities
        return false;
    }
    bool good = true;
    symbol *const before = curr_row().last_symbol;
    const stop_at stop({tok_comma});
    for (;;) {
        good = read_entity(set, has_double_colon) && good;
        if (curr_token == tok_name || curr_token == tok_double_colon) {
            good = false;
            if (!pass_missing_comma(before)) {
                return false;
            }
        } else if (!accept_unless_end(tok_comma, msg_expected_comma, 0)) {
            return good;
        }
    }
}

} // namespace zf90
