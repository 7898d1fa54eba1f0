// The statements that give names one attribute each: DIMENSION, ALLOCATABLE, POINTER, TARGET, EXTERNAL,
// INTRINSIC, INTENT, OPTIONAL, PARAMETER, SAVE, PUBLIC and PRIVATE.
#include "declarations/declarations.h"
#include "declarations/implicit.h"
#include "declarations/interfaces.h"
#include "declarations/names_in_error.h"
#include "declarations/scopes.h"
#include "declarations/storage.h"
#include "declarations/symbols.h"
#include "driver/diagnostics.h"
#include "expressions/parser.h"
#include "il/entries.h"
#include "il/types.h"
#include "source/token_helpers.h"
#include "statements/handlers.h"
#include "statements/loop.h"

namespace zf90 {

namespace {

attribute_set attributes(std::initializer_list<attribute> list) {
    attribute_set set{};
    for (attribute a : list) {
        set[a] = true;
    }
    return set;
}

// Items separated by commas, from the current token on. An item reads its name and the token behind it.
template <class Item> bool read_list(Item read_item) {
    const stop_at stop({tok_comma});
    const std::uint32_t errors_before = error_count;
    bool good = true;
    do {
        good = read_item() && good;
    } while (accept_optional(tok_comma, 0));
    give_up_rest(); // it is not clear what is to be done with it
    return good && error_count == errors_before;
}

bool read_plain_list(const attribute_set &set) {
    return read_list([&] { return read_plain_entity(set) != nullptr; });
}

bool read_array_list(const attribute_set &set, bool require_spec) {
    accept_optional(tok_double_colon, 0);
    return read_list([&] {
        entity_type = unknown_type();
        return read_array_entity(set, require_spec, false, 0) != nullptr;
    });
}

// "name = value" of PARAMETER.
bool read_named_constant() {
    attribute_set set = attributes({attr_parameter, attr_initialized, attr_variable});
    entity_init = nullptr;
    name_locator name{};
    symbol *s = nullptr;
    {
        const stop_at stop({tok_assign});
        if (expect_token(tok_name, msg_expected_identifier)) {
            name = curr_name;
            s = lookup_for_declaration();
            next_token(0);
        }
        if (!accept_token(tok_assign, msg_expected_equals, lex_signed)) {
            if (name.atom) {
                give_up_type(make_variable(s, name));
            }
            return false;
        }
    }
    const bool has_value = parse_expression(entity_init);
    if (!name.atom) {
        return false;
    }
    const bool good = check_attributes(s, set, name.position);
    set[attr_initialized] = has_value;
    s = apply_attributes(s, set, name);
    if (!has_value) {
        give_up_type(s);
    }
    return good && has_value;
}

// An item of PUBLIC or PRIVATE, which has been peeked at.
bool read_access_item(attribute access) {
    lex_rewind_token();
    name_locator name;
    symbol *s = read_generic_spec(name, curr_scope_depth);
    if (!s || !name.atom) {
        if (!s) {
            error_pos = curr_token_pos;
            syntax_error(msg_expected_identifier);
        }
        return false;
    }
    if (s->kind == sk_host_link) {
        error_at(msg_invalid_redeclaration_of_host_symbol, name.position, name.atom->spelling);
        return true;
    }
    attribute_set set = attributes({access});
    const bool good = check_attributes(s, set, name.position);
    apply_attributes(s, set, name);
    return good;
}

// The name of a COMMON block between slashes, or "//".
bool read_saved_block() {
    const source_pos position = curr_token_pos;
    if (accept_optional(tok_concat, lex_lone_slash)) {
        warning_at(msg_blank_common_is_not_allowed, position);
        return true;
    }
    if (next_token(lex_lone_slash) == tok_slash) {
        warning_at(msg_blank_common_is_not_allowed, position);
        next_token(lex_lone_slash);
        return true;
    }
    const stop_at stop({tok_slash});
    if (expect_token(tok_name, msg_expected_identifier)) {
        name_locator name = curr_name;
        symbol *block = common_symbol(name);
        if (block->flags & sf_saved) {
            warning_at(msg_common_block_was_previously_specified_in_save_statement, curr_token_pos,
                       block->name->spelling);
        }
        block->flags |= sf_saved;
        next_token(lex_lone_slash);
    }
    return accept_token(tok_slash, msg_expected_slash, lex_lone_slash);
}

bool access_statement(attribute access) {
    if (next_token(lex_peek) == tok_eos || in_type_def) {
        scope_row &row = curr_row();
        if (row.access_stated) {
            error_at(msg_access_statement_has_been_already_specified, stmt_pos);
            return false;
        }
        row.access_stated = true;
        row.names_public = access == attr_public;
        return true;
    }
    accept_optional(tok_double_colon, lex_peek);
    const stop_at stop({tok_comma});
    const std::uint32_t errors_before = error_count;
    bool good = true;
    do {
        good = read_access_item(access) && good;
    } while (accept_optional(tok_comma, lex_peek));
    return good && error_count == errors_before;
}

} // namespace

symbol *read_plain_entity(attribute_set set) {
    if (!expect_token(tok_name, msg_expected_identifier)) {
        return nullptr;
    }
    name_locator name = curr_name;
    symbol *s = lookup_for_declaration();
    check_attributes(s, set, name.position);
    s = apply_attributes(s, set, name);
    next_token(0);
    return s;
}

symbol *read_array_entity(attribute_set set, bool require_spec, bool explicit_shape_only,
                          std::uint32_t next_mode) {
    if (!expect_token(tok_name, msg_expected_identifier)) {
        return nullptr;
    }
    name_locator name = curr_name;
    symbol *s = lookup_for_declaration();
    next_token(next_mode);
    bool has_shape = true;
    if (curr_token == tok_lparen) {
        const source_pos position = curr_token_pos;
        type *array = read_array_spec(set[attr_typed] ? element_type_of(entity_type) : unknown_type());
        has_shape = array && (!explicit_shape_only || array->array.shape_kind == explicit_shape);
        if (has_shape) {
            entity_type = array;
            set[shape_attribute(array->array.shape_kind)] = true;
        } else if (array) {
            error_at(msg_explicit_shape_specification_required, position);
        }
        if (!array && curr_token == tok_eos) {
            give_up_statement(); // the bracket that closes it is missing
        }
    } else if (require_spec) {
        error_pos = curr_token_pos;
        syntax_error(msg_expected_lparen);
        has_shape = false;
    }
    const type *const before = s ? type_of_symbol(s) : nullptr;
    const bool good = check_attributes(s, set, name.position);
    if (!good && is_array(entity_type) && (!keeps_shape(set, entity_type) || (before && is_array(before)))) {
        has_shape = false;
    }
    s = apply_attributes(s, set, name);
    if (!has_shape) {
        give_up_type(s);
    }
    return good && has_shape ? s : nullptr;
}

bool read_intent_spec(attribute_set &set) {
    next_token(lex_keyword);
    if (!accept_token(tok_lparen, msg_expected_lparen, lex_keyword)) {
        return false;
    }
    attribute intent = attr_intent_inout;
    switch (curr_token) {
    case tok_kw_in:
        intent = attr_intent_in;
        if (next_token(lex_keyword) == tok_kw_out) {
            intent = attr_intent_inout;
            next_token(0);
        }
        break;
    case tok_kw_inout: next_token(0); break;
    case tok_kw_out:
        intent = attr_intent_out;
        next_token(0);
        break;
    default: {
        const stop_at stop({tok_rparen});
        error_pos = curr_token_pos;
        syntax_error(msg_intent_specification_is_not_in_out_or_inout);
        return accept_token(tok_rparen, msg_expected_rparen, 0); // without an intent any argument will do
    }
    }
    set[intent] = true;
    return accept_token(tok_rparen, msg_expected_rparen, 0);
}

bool stmt_allocatable() {
    next_token(0);
    return read_array_list(attributes({attr_allocatable, attr_variable}), false);
}

bool stmt_dimension() {
    next_token(0);
    return read_array_list({}, true);
}

bool stmt_pointer() {
    next_token(0);
    return read_array_list(attributes({attr_pointer}), false);
}

bool stmt_target() {
    next_token(0);
    return read_array_list(attributes({attr_target, attr_variable}), false);
}

bool stmt_external() {
    next_token(0);
    return read_plain_list(attributes({attr_external}));
}

bool stmt_intrinsic() {
    next_token(0);
    return read_plain_list(attributes({attr_intrinsic}));
}

bool stmt_intent() {
    attribute_set set = attributes({attr_variable});
    if (!read_intent_spec(set)) {
        return false;
    }
    accept_optional(tok_double_colon, 0);
    return read_plain_list(set);
}

bool stmt_optional() {
    next_token(0);
    accept_optional(tok_double_colon, 0);
    return read_plain_list(attributes({attr_optional}));
}

bool stmt_parameter() {
    next_token(0);
    bool good = false;
    {
        const stop_at stop({tok_rparen});
        if (!accept_token(tok_lparen, msg_expected_lparen, 0)) {
            give_up_statement();
            return false;
        }
        good = read_list(read_named_constant);
    }
    return accept_token(tok_rparen, msg_expected_rparen, 0) && good;
}

bool stmt_save() {
    next_token(lex_lone_slash);
    if (global_save) {
        error_at(msg_all_variables_already_have_save_specification, stmt_pos);
        return false;
    }
    if (curr_token == tok_eos) {
        if (any_save) {
            error_at(msg_some_variables_were_previously_specified_in_save_statement, stmt_pos);
        }
        global_save = any_save = true;
        return true;
    }
    accept_optional(tok_double_colon, lex_lone_slash);
    any_save = true;
    const attribute_set set = attributes({attr_save, attr_variable});
    const stop_at stop({tok_comma});
    bool good = true;
    do {
        const bool is_block = curr_token == tok_slash || curr_token == tok_concat;
        good = (is_block ? read_saved_block() : read_plain_entity(set) != nullptr) && good;
    } while (accept_optional(tok_comma, lex_lone_slash));
    return good;
}

bool stmt_private() { return access_statement(attr_private); }

bool stmt_public() { return access_statement(attr_public); }

} // namespace zf90
