// The statements that open and close program units.
#include "declarations/units.h"

#include "declarations/check_scopes.h"
#include "declarations/derived_types.h"
#include "declarations/end_of_unit.h"
#include "declarations/external_names.h"
#include "declarations/interfaces.h"
#include "declarations/names_in_error.h"
#include "declarations/routines.h"
#include "declarations/storage.h"
#include "declarations/symbols.h"
#include "declarations/type_spec.h"
#include "driver/driver.h"
#include "il/entries.h"
#include "il/types.h"
#include "source/token_helpers.h"
#include "source/tokens.h"
#include "statements/constructs.h"
#include "statements/handlers.h"
#include "statements/loop.h"

namespace zf90 {

bool in_prefix_type;

// ---- opening a unit

void begin_program_unit(program_unit_kind kind) {
    scope *s = push_scope(sr_unit);
    scope_row &row = curr_row();
    row.names_public = kind == uk_block_data || kind == uk_module;
    row.outer_unit = curr_unit;
    row.outer_interface_depth = interface_depth;
    curr_unit = {};
    curr_unit_kind = kind;
    if (kind != uk_module) {
        s->assoc_block = new_statement(stmk_block);
        push_construct(cons_routine, s->assoc_block);
    }
}

namespace {

// Reads the name behind PROGRAM or MODULE. Error 218 if there is none; the locator then has a null atom.
bool read_unit_name(name_locator &name) {
    name = {nullptr, curr_token_pos};
    if (curr_token == tok_name) {
        name = curr_name;
        return true;
    }
    expect_token(tok_name, msg_expected_identifier);
    return false;
}

// The object of a unit that is no procedure, joined with the current scope.
object *make_unit_object(symbol *s, storage_class sc, type *t) {
    object *o = new_object();
    tie_to_symbol(o, s);
    o->source_corresp.scope_depth = 0;
    o->storage_class = sc;
    o->type = t;
    s->entity = o;
    new_unit_routine(o);
    return o;
}

// The unit's name is known within it, so that declaring it again is an error there.
void link_unit_name(symbol *s, const name_locator &name) {
    if (s->name != error_atom) {
        symbol *link = new_further_symbol(sk_host_link, name, curr_scope_depth);
        link->entity = s;
        link->flags |= s->flags & (sf_referenced | sf_used_as_bound);
    }
}

// A symbol of an empty name, which is on no chain and no list.
symbol *unnamed_unit_symbol(symbol_kind kind, atom *name, source_pos position) {
    symbol *s = alloc_symbol(kind);
    s->name = name;
    s->scope_depth = 0;
    s->decl_position = position;
    return s;
}

void make_program_object(symbol *s) {
    object *o = make_unit_object(s, sc_program, new_routine_type(nullptr, void_type()));
    if (!il_root.main_routine) {
        il_root.main_routine = o;
    }
}

} // namespace

void implied_program(source_pos position) {
    if (main_program_seen) {
        error_at(curr_stmt_kind == stmtk_program ? msg_main_program_has_already_been_declared
                                                 : msg_program_implied_but_main_program_has_already_been,
                 stmt_pos);
    }
    main_program_seen = true;
    begin_program_unit(uk_program);
    make_program_object(unnamed_unit_symbol(sk_program, main_atom, position));
}

bool stmt_program() {
    if (next_token(0) == tok_eos) {
        implied_program(curr_token_pos);
        return true;
    }
    if (main_program_seen) {
        error_at(msg_main_program_has_already_been_declared, stmt_pos);
    }
    main_program_seen = true;
    name_locator name;
    const bool ok = read_unit_name(name);
    begin_program_unit(uk_program);
    symbol *s = new_symbol(sk_program, name, 0);
    make_program_object(s);
    link_unit_name(s, name);
    note_declaration(s, name.position, true);
    if (ok) {
        next_token(0);
    }
    return ok;
}

bool stmt_module() {
    begin_program_unit(uk_module);
    next_token(0);
    name_locator name;
    const bool ok = read_unit_name(name);
    symbol *s = new_symbol(sk_module, name, 0);
    make_unit_object(s, sc_module, new_type(tk_module));
    link_unit_name(s, name);
    note_declaration(s, name.position, true);
    if (ok) {
        next_token(0);
    }
    return ok;
}

bool stmt_block_data() {
    begin_program_unit(uk_block_data);
    symbol *s;
    if (next_token(0) == tok_name) {
        s = new_symbol(sk_block_data, curr_name, curr_scope_depth - 1);
        note_declaration(s, curr_name.position, true);
        next_token(0);
    } else if (block_data_atom) {
        error_at(msg_unnamed_block_data_has_already_been_defined, stmt_pos);
        s = new_symbol(sk_block_data, {nullptr, stmt_pos}, curr_scope_depth - 1);
    } else {
        block_data_atom = new_empty_atom();
        s = unnamed_unit_symbol(sk_block_data, block_data_atom, stmt_pos);
    }
    make_unit_object(s, sc_blockdata, new_type(tk_blockdata));
    return true;
}

// ---- FUNCTION, SUBROUTINE, ENTRY

namespace {

// Reads an item of a list of dummy arguments.
bool read_dummy(dummy_list &list) {
    if (curr_token == tok_star && curr_unit_kind == uk_subroutine) {
        declare_alternate_return(list, curr_token_pos);
        next_token(0);
        return true;
    }
    const bool ok = curr_token == tok_name;
    name_locator name{nullptr, curr_token_pos};
    symbol *s = nullptr;
    const bool has_name = expect_token(tok_name, msg_expected_identifier);
    if (has_name) {
        s = lookup_for_declaration();
        name = curr_name;
    }
    declare_dummy(list, s, name); // without a name too, so that the number of arguments is right
    if (has_name) {
        next_token(0);
    }
    return ok;
}

// Whether the name just read is followed by a parenthesis.
bool opens_parenthesis() {
    const saved_place here;
    return next_token(lex_peek) == tok_lparen;
}

// Whether the name just read begins RESULT (name), where the list of dummies should have been closed.
bool begins_result() {
    if (curr_token != tok_name || curr_unit_kind != uk_function || !opens_parenthesis()) {
        return false;
    }
    const saved_place here;
    lex_rewind_token();
    return next_token(lex_peek | lex_keyword) == tok_kw_result;
}

// Behind an item: whether there is another one. It counts as one where only its comma is missing.
bool another_dummy(bool &ok) {
    if (accept_optional(tok_comma, 0)) {
        return true;
    }
    if (curr_token != tok_name || opens_parenthesis()) {
        return false;
    }
    if (ok) {
        report_syntax_error(msg_expected_rparen);
    }
    ok = false;
    return true;
}

// The list in its parentheses. The end of the statement is good instead of them in a subroutine and, as the
// language has it, in an ENTRY.
bool read_dummies(bool is_entry, entry_description *entry) {
    if (curr_token == tok_eos && (is_entry || curr_unit_kind == uk_subroutine)) {
        return true;
    }
    bool ok = true;
    if (curr_token == tok_name && (begins_result() || !opens_parenthesis())) {
        ok = accept_opening(0); // the list goes on without it
    } else if (!accept_token(tok_lparen, msg_expected_lparen, 0)) {
        return false;
    }
    if (curr_token != tok_rparen && !begins_result()) {
        dummy_list list = begin_dummy_list(entry);
        const stop_at stops{tok_comma, tok_rparen};
        do {
            ok &= read_dummy(list);
        } while (another_dummy(ok));
        end_dummy_list(list);
    }
    if (begins_result()) {
        error_pos = curr_token_pos;
        if (ok) {
            report_syntax_error(msg_expected_rparen);
        }
        lex_rewind_token();
        next_token(lex_keyword);
        return false;
    }
    if (!ok) {
        accept_optional(tok_rparen, lex_keyword);
        return false;
    }
    const bool closed = curr_token == tok_rparen;
    accept_token(tok_rparen, msg_expected_rparen, lex_keyword);
    return closed;
}

// A result without a name of its own: it is the variable with the function's name, as that was written. What
// the name was refused for lies outside of the function.
void declare_own_result(symbol *function, atom *written, entry_description *entry) {
    symbol *s = nullptr;
    name_locator name{written, function->decl_position};
    if (written) {
        curr_name = name;
        s = lookup_current();
    }
    declare_result(s, name, entry);
}

// A result with a name of its own. The function's name is no variable then.
void declare_named_result(symbol *function, entry_description *entry) {
    name_locator name = curr_name;
    if (function->name != error_atom) {
        const name_locator function_name{function->name, function->decl_position};
        if (!entry) {
            link_unit_name(function, function_name);
        } else {
            curr_name = function_name;
            if (lookup_current()) {
                error_at(msg_declaration_conflicts_with_previous_specifications, curr_token_pos);
            }
            curr_name = name;
        }
    }
    symbol *s = lookup_for_declaration();
    declare_result(s, name, entry);
}

// The same, where the result may be meant to have a name that could not be read: the type of the function may
// be that of it.
bool declare_uncertain_result(symbol *function, atom *written, entry_description *entry) {
    declare_own_result(function, written, entry);
    const object *const routine = entry ? entry->assoc_routine : curr_row().il_scope->assoc_routine;
    object *const result = entry ? entry->function_result_var : curr_row().il_scope->function_result_var;
    if (result->symbol_link && routine_of(routine).return_type->type_code == tk_unknown) {
        give_up_type(result->symbol_link);
    }
    return false;
}

// RESULT (name), or nothing. Whatever is wrong, the function has a result afterwards. `quiet`: there was an
// error ahead of it, and what is missing here brings no second one.
bool read_result(symbol *function, atom *written, entry_description *entry, bool quiet) {
    if (curr_token == tok_eos || (quiet && curr_token != tok_kw_result)) {
        declare_own_result(function, written, entry);
        return true;
    }
    if (!accept_token(tok_kw_result, msg_expected_result, 0) ||
        !accept_token(tok_lparen, msg_expected_lparen, 0)) {
        return declare_uncertain_result(function, written, entry);
    }
    bool ok = curr_token == tok_name;
    if (!expect_token(tok_name, msg_expected_identifier)) {
        return declare_uncertain_result(function, written, entry);
    }
    if (curr_name.atom == written) {
        error_at(msg_result_name_must_not_be_same_as_entry, curr_token_pos);
        ok = declare_uncertain_result(function, written, entry);
    } else {
        declare_named_result(function, entry);
    }
    next_token(0);
    ok &= curr_token == tok_rparen;
    accept_token(tok_rparen, msg_expected_rparen, 0);
    return ok;
}

// The name behind FUNCTION, SUBROUTINE or ENTRY, and its symbol in the scope around the unit. Error 218 if
// there is none; the locator then has a null atom.
bool read_procedure_name(name_locator &name, symbol *&s) {
    const stop_at stop{tok_lparen};
    next_token(0);
    name = {nullptr, curr_token_pos};
    if (curr_token == tok_name) {
        name = curr_name;
        s = lookup_at_depth(curr_scope_depth - 1);
        next_token(0);
        return true;
    }
    if (expect_token(tok_name, msg_expected_identifier)) {
        next_token(0); // a name behind what is wrong
    }
    return false;
}

// From the name of the procedure on. `result_type` is that before FUNCTION; null for an ENTRY.
bool read_subprogram(bool is_entry, type *result_type) {
    name_locator name;
    symbol *s = nullptr;
    bool ok = read_procedure_name(name, s);

    const source_pos name_pos = name.position;
    atom *written = name.atom;
    const bool is_subroutine = curr_unit_kind == uk_subroutine;
    entry_description *entry = nullptr;
    symbol *procedure = is_subroutine ? declare_subroutine(s, name, is_entry, entry)
                                      : declare_function(s, name, result_type, is_entry, entry);
    if (is_entry && procedure->name == error_atom) {
        written = nullptr; // the name means something else in this very scope
    }
    if (procedure->name != error_atom) {
        procedure->aux2 |= pf_body_seen;
    }
    routine_of(entity_as<object>(procedure)).has_param_info = true;
    note_declaration(procedure, name_pos, true);

    ok &= read_dummies(is_entry, entry);
    if (!is_subroutine) {
        ok &= read_result(procedure, written, entry, !ok);
    }
    if (curr_unit.prefix && !is_entry) {
        read_skipped_selectors(*curr_unit.prefix);
        curr_unit.prefix->failed |= !ok; // what it names may be missing
    }
    if (is_entry) {
        statement *entry_point = add_statement(stmk_fentry);
        entry_point->entry_descr = entry;
        entry->entry_point = entry_point;
    }
    return ok;
}

// A function whose prefix could not be read: its unit is open, and it has no name.
bool declare_failed_function() {
    skip_to_eos();
    name_locator name{nullptr, curr_token_pos};
    entry_description *entry = nullptr;
    symbol *function = declare_function(nullptr, name, nullptr, false, entry);
    declare_own_result(function, nullptr, entry);
    return false;
}

// In fixed form two keywords may come in pieces: whether the rest of one follows, in keyword mode.
bool next_piece(token_kind piece) { return next_token(lex_keyword) == piece; }

// Reads a type specifier from its first token, in keyword mode, and leaves the type in `curr_type_spec` and
// the token behind it current, read in keyword mode too. False if the token begins none.
bool read_prefix_type() {
    if (curr_token == tok_kw_in && !next_piece(tok_kw_teger)) {
        return false;
    }
    switch (curr_token) {
    case tok_kw_character:
    case tok_kw_complex:
    case tok_kw_integer:
    case tok_kw_logical:
    case tok_kw_real:
    case tok_kw_teger:
        curr_unit.prefix = skip_named_selectors(lex_keyword);
        if (curr_unit.prefix) {
            return true;
        }
        break;
    default: break;
    }
    switch (curr_token) {
    case tok_kw_character: read_type_character(lex_keyword); return true;
    case tok_kw_complex: read_type_complex(lex_keyword); return true;
    case tok_kw_teger:
    case tok_kw_integer: read_type_integer(lex_keyword); return true;
    case tok_kw_logical: read_type_logical(lex_keyword); return true;
    case tok_kw_real: read_type_real(lex_keyword); return true;
    case tok_kw_do:
        if (!next_piece(tok_kw_uble)) {
            return false;
        }
        [[fallthrough]];
    case tok_kw_double:
        if (!next_piece(tok_kw_precision)) {
            return false;
        }
        [[fallthrough]];
    case tok_kw_doubleprecision:
        curr_type_spec = double_precision();
        next_token(lex_keyword);
        return true;
    case tok_kw_type:
        in_prefix_type = true;
        read_type_derived(lex_keyword);
        in_prefix_type = false;
        return true;
    default: return false;
    }
}

} // namespace

bool stmt_subprogram() {
    next_token(lex_keyword);
    bool is_recursive = false;
    bool is_repeated = false;
    source_pos repeated_pos;
    const auto take_recursive = [&] {
        if (is_recursive) {
            is_repeated = true;
            repeated_pos = curr_token_pos;
        }
        is_recursive = true;
        next_token(lex_keyword);
    };
    while (curr_token == tok_kw_recursive) {
        take_recursive();
    }
    bool ok;
    if (curr_token == tok_kw_subroutine) {
        begin_program_unit(uk_subroutine);
        ok = read_subprogram(false, void_type());
    } else if (curr_token == tok_kw_function) {
        begin_program_unit(uk_function);
        ok = read_subprogram(false, unknown_type());
    } else {
        begin_program_unit(uk_function);
        ok = read_prefix_type();
        if (!ok) {
            syntax_error(msg_expected_type_keyword);
        } else {
            if (curr_token == tok_kw_recursive) {
                take_recursive();
            }
            ok = expect_token(tok_kw_function, msg_expected_function_keyword);
        }
        ok = ok ? read_subprogram(false, curr_type_spec) : declare_failed_function();
    }
    if (is_recursive) {
        routine_of(curr_row().il_scope->assoc_routine).is_recursive = true;
    }
    if (is_repeated) {
        error_at(msg_attribute_specifier_appears_repeatedly, repeated_pos);
        ok = false;
    }
    return ok;
}

void begin_misspelt_procedure(program_unit_kind kind, bool has_prefix) {
    begin_program_unit(kind);
    type *const result_type = has_prefix ? error_type() : unknown_type();
    read_subprogram(false, kind == uk_subroutine ? void_type() : result_type);
    if (has_prefix) { // RECURSIVE may be in it
        routine_of(curr_row().il_scope->assoc_routine).is_recursive = true;
    }
}

bool stmt_entry() {
    if (curr_unit_kind != uk_subroutine && curr_unit_kind != uk_function) {
        error_at(msg_entry_statement_is_not_allowed, stmt_pos);
        return false;
    }
    if (top_construct().kind != cons_routine) {
        error_at(msg_entry_statement_is_not_allowed_within_if_block, stmt_pos);
        return false;
    }
    return read_subprogram(true, nullptr);
}

// ---- closing a unit

bool stmt_contains() {
    next_token(0);
    end_of_specification();
    return true;
}

namespace {

// The type in front of FUNCTION takes the place of the provisional one.
void settle_prefix_type() {
    prefix_type *const prefix = curr_unit.prefix;
    curr_unit.prefix = nullptr;
    if (!prefix) {
        return;
    }
    type *const resolved = resolve_prefix_type(*prefix);
    const auto replace = [&](type *&t) {
        if (t == prefix->provisional) {
            t = resolved;
        } else if (is_array(t) && t->array.element_type == prefix->provisional) {
            t->array.element_type = resolved;
            t->size = 0;
            complete_type(t);
        }
    };
    scope *const s = curr_row().il_scope;
    replace(routine_of(s->assoc_routine).return_type);
    if (object *result = s->function_result_var) {
        replace(result->type);
        raise_result_storage(result);
    }
}

} // namespace

void end_of_specification() {
    scope_row &row = curr_row();
    if (row.row_kind != sr_unit || row.spec_done) {
        return;
    }
    row.spec_done = true;
    settle_prefix_type();
    fix_forward_types();
    spec_part_over = true; // what attributes require is asked for from now on
    layout_storage();
}

namespace {

// Closes what is open in the body, and ends it with the STOP or RETURN that its end stands for.
void end_body() {
    if (!curr_row().il_scope->assoc_block) {
        return;
    }
    close_open_constructs();
    if (reach_state == reachable) {
        switch (unit_kind_of(curr_scope_depth)) {
        case uk_program: add_statement(stmk_stop); break;
        case uk_subroutine:
        case uk_function:
            if (!is_interface_body()) {
                add_statement(stmk_return);
            }
            break;
        default: break;
        }
    }
    pop_construct();
}

// What callers know of a list of dummy arguments.
param_type *make_prototype(const object_list_member *dummies) {
    param_type *head = nullptr;
    param_type *tail = nullptr;
    for (; dummies; dummies = dummies->next) {
        const object *o = dummies->object;
        param_type *p = new_param_type();
        p->symbol_link = o->symbol_link;
        p->source_corresp = o->source_corresp;
        p->type = o->type;
        p->is_optional = o->is_optional;
        p->intent_in = o->intent_in;
        p->intent_out = o->intent_out;
        p->is_pointer = o->is_pointer;
        (tail ? tail->next : head) = p;
        tail = p;
    }
    return head;
}

void make_prototypes(const scope *s) {
    if (s->assoc_routine->type->type_code != tk_routine) {
        return;
    }
    routine_of(s->assoc_routine).param_type_list = make_prototype(s->parameters);
    for (const entry_description *e = s->entries; e; e = e->next) {
        e->assoc_routine->source_corresp.referenced = true;
        routine_of(e->assoc_routine).param_type_list = make_prototype(e->parameters);
    }
}

// An outermost unit becomes an object of the global scope: by way of the external names or, without a name of
// its own, directly. So does a unit in error, for its statements are to be checked like all others.
void enter_unit(scope *s) {
    object *routine = s->assoc_routine;
    symbol *name = routine->symbol_link;
    routine->source_corresp.referenced = true;
    // A second main program has been reported: its name is not compared.
    const bool is_second_program = routine->storage_class == sc_program && routine != il_root.main_routine;
    const bool has_name = name->name != error_atom && name->name->length != 0;
    if (!has_name || is_second_program || !enter_external(name)) {
        add_object(scope_stack[0], routine);
    }
    if (has_name) {
        unlink_symbol(name);
    }
    for (entry_description *e = s->entries; e; e = e->next) {
        symbol *entry_name = e->assoc_routine->symbol_link;
        if (entry_name->name == error_atom) {
            continue;
        }
        if (const symbol *record = enter_external(entry_name)) {
            object *result = e->function_result_var;
            if (result && result->variant.result_var_function == e->assoc_routine) {
                result->variant.result_var_function = entity_as<object>(record);
            }
            e->assoc_routine = entity_as<object>(record);
        }
        unlink_symbol(entry_name);
    }
}

// An interface body leaves a prototype only: an external procedure, or a dummy argument of its host.
void enter_prototype(const scope *s) {
    object *routine = s->assoc_routine;
    routine->variant.assoc_scope = nullptr;
    symbol *name = routine->symbol_link;
    if (routine->storage_class == sc_external && !routine->is_parameter && name->name != error_atom) {
        enter_external(name);
        routine = entity_as<object>(name);
    }
    add_to_interface(routine, curr_scope_depth - 1);
}

} // namespace

void end_program_unit() {
    const bool is_unit = curr_row().row_kind == sr_unit;
    if (is_unit) {
        interface_depth =
            curr_row().outer_interface_depth; // its own blocks are closed, if END INTERFACE is missing
        end_of_specification();
        end_body();
    }
    finish_row(curr_scope_depth);
    scope *s = curr_row().il_scope;
    make_prototypes(s);
    if (curr_scope_depth == 1) {
        check_declarations(s);
        enter_unit(s);
    } else if (is_unit && is_interface_body()) {
        check_declarations(s); // nothing leads to them afterwards
        enter_prototype(s);
    }
    lay_out_frame(s);
    const unit_state outer = curr_row().outer_unit;
    pop_scope();
    if (is_unit) {
        curr_unit = outer;
    }
}

void close_all_units() {
    while (curr_scope_depth > 0) {
        if (curr_row().row_kind == sr_unit) {
            end_program_unit();
        } else {
            finish_open_type();
        }
        curr_unit_kind = unit_kind_of(curr_scope_depth);
    }
    interface_depth = 0;
}

namespace {

// A label on an END: a loop that is to end there is reported as such, not as one that was never ended.
void end_unit() {
    if (curr_label_symbol) {
        check_do_termination(curr_label_symbol);
    }
    end_program_unit();
    curr_unit_kind = unit_kind_of(curr_scope_depth);
}

// The name behind END and the kind of the unit. One that could not be read, there or at the head of the unit,
// is not compared.
bool check_end_name() {
    if (!expect_token(tok_name, msg_expected_identifier)) {
        return false;
    }
    const atom *expected = curr_row().il_scope->assoc_routine->source_corresp.name;
    if (expected != error_atom && expected != curr_name.atom) {
        error_at(msg_end_name_does_not_match_name_of_corresponding, stmt_pos,
                 expected ? expected->spelling : "");
    }
    next_token(0);
    return true;
}

bool end_unit_of_kind(program_unit_kind kind) {
    if (unit_kind_of(curr_scope_depth) != kind) {
        error_at(msg_end_statement_does_not_correspond_to_kind_of_program, stmt_pos);
    }
    const bool ok = next_token(0) == tok_eos || check_end_name();
    end_unit();
    return ok;
}

} // namespace

bool stmt_end() {
    next_token(0);
    end_unit();
    if (interface_depth == 0 && curr_scope_depth != 0) {
        error_at(msg_end_statement_is_not_allowed_here_use_end, stmt_pos);
    }
    return true;
}

bool stmt_end_program() { return end_unit_of_kind(uk_program); }
bool stmt_end_subroutine() { return end_unit_of_kind(uk_subroutine); }
bool stmt_end_function() { return end_unit_of_kind(uk_function); }
bool stmt_end_block_data() { return end_unit_of_kind(uk_block_data); }
bool stmt_end_module() { return end_unit_of_kind(uk_module); }

} // namespace zf90
