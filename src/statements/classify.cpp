// Classification of statements. Each function below decides one row or one group of rows of what a
// statement's first word allows; most end in the name test, which asks whether the whole statement reads as
// an assignment after all: `READ(1) = 2` does, and so does IFX=1 in fixed form, where IF is only the front of
// a name.
#include "statements/classify.h"

#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "driver/options.h"
#include "il/entries.h"
#include "source/token_helpers.h"
#include "statements/constructs.h"
#include "statements/handlers.h"
#include "statements/loop.h"

#include <array>

namespace zf90 {

statement_kind curr_stmt_kind;
char *stmt_start;
char *stmt_resume;
bool is_bad_declaration;

namespace {

constexpr std::uint32_t peek_word = lex_peek | lex_keyword;
constexpr std::uint32_t peek_label = lex_peek | lex_label_digits;
constexpr std::uint32_t peek_word_or_label = peek_word | lex_label_digits;

struct word_kind {
    token_kind word;
    statement_kind kind;
};

// The words that say what the statement is, unless it is an assignment.
constexpr word_kind plain_words[] = {
    {tok_kw_allocatable, stmtk_allocatable},
    {tok_kw_allocate, stmtk_allocate},
    {tok_kw_assign, stmtk_assign},
    {tok_kw_backspace, stmtk_backspace},
    {tok_kw_blockdata, stmtk_block_data},
    {tok_kw_call, stmtk_call},
    {tok_kw_case, stmtk_case},
    {tok_kw_close, stmtk_close},
    {tok_kw_common, stmtk_common},
    {tok_kw_contains, stmtk_contains},
    {tok_kw_continue, stmtk_continue},
    {tok_kw_cycle, stmtk_cycle},
    {tok_kw_data, stmtk_data},
    {tok_kw_deallocate, stmtk_deallocate},
    {tok_kw_dimension, stmtk_dimension},
    {tok_kw_elseif, stmtk_else_if},
    {tok_kw_elsewhere, stmtk_elsewhere},
    {tok_kw_endblockdata, stmtk_end_block_data},
    {tok_kw_enddo, stmtk_end_do},
    {tok_kw_endfile, stmtk_endfile},
    {tok_kw_endfunction, stmtk_end_function},
    {tok_kw_endif, stmtk_end_if},
    {tok_kw_endinterface, stmtk_end_interface},
    {tok_kw_endmodule, stmtk_end_module},
    {tok_kw_endprogram, stmtk_end_program},
    {tok_kw_endselect, stmtk_end_select},
    {tok_kw_endsubroutine, stmtk_end_subroutine},
    {tok_kw_endtype, stmtk_end_type},
    {tok_kw_endwhere, stmtk_end_where},
    {tok_kw_entry, stmtk_entry},
    {tok_kw_equivalence, stmtk_equivalence},
    {tok_kw_exit, stmtk_exit},
    {tok_kw_external, stmtk_external},
    {tok_kw_format, stmtk_format},
    {tok_kw_inquire, stmtk_inquire},
    {tok_kw_intent, stmtk_intent},
    {tok_kw_interface, stmtk_interface},
    {tok_kw_intrinsic, stmtk_intrinsic},
    {tok_kw_namelist, stmtk_namelist},
    {tok_kw_nullify, stmtk_nullify},
    {tok_kw_open, stmtk_open},
    {tok_kw_optional, stmtk_optional},
    {tok_kw_parameter, stmtk_parameter},
    {tok_kw_pause, stmtk_pause},
    {tok_kw_pointer, stmtk_pointer},
    {tok_kw_print, stmtk_print},
    {tok_kw_private, stmtk_private},
    {tok_kw_program, stmtk_program},
    {tok_kw_public, stmtk_public},
    {tok_kw_read, stmtk_read},
    {tok_kw_return, stmtk_return},
    {tok_kw_rewind, stmtk_rewind},
    {tok_kw_save, stmtk_save},
    {tok_kw_selectcase, stmtk_select_case},
    {tok_kw_sequence, stmtk_sequence},
    {tok_kw_stop, stmtk_stop},
    {tok_kw_target, stmtk_target},
    {tok_kw_use, stmtk_use},
    {tok_kw_write, stmtk_write},
};

// The words that END may have behind it, with the kind of the two together.
constexpr word_kind words_after_end[] = {
    {tok_kw_blockdata, stmtk_end_block_data},
    {tok_kw_do, stmtk_end_do},
    {tok_kw_file, stmtk_endfile},
    {tok_kw_fixed_where, stmtk_end_where},
    {tok_kw_function, stmtk_end_function},
    {tok_kw_if, stmtk_end_if},
    {tok_kw_interface, stmtk_end_interface},
    {tok_kw_module, stmtk_end_module},
    {tok_kw_program, stmtk_end_program},
    {tok_kw_select, stmtk_end_select},
    {tok_kw_subroutine, stmtk_end_subroutine},
    {tok_kw_type, stmtk_end_type},
    {tok_kw_where, stmtk_end_where},
};

using word_table = std::array<statement_kind, token_count>;

constexpr statement_kind no_kind = statement_kind_count;

template <std::size_t size> constexpr word_table make_word_table(const word_kind (&words)[size]) {
    word_table table{};
    table.fill(no_kind);
    for (const word_kind &w : words) {
        table[w.word] = w.kind;
    }
    return table;
}

constexpr word_table plain_word_table = make_word_table(plain_words);
constexpr word_table word_after_end_table = make_word_table(words_after_end);

// ---- the name test

bool is_array_type(const type *t) { return t && t->type_code == tk_farray; }

bool is_array_name(const symbol *s) {
    switch (s->kind) {
    case sk_variable:
    case sk_dummy: return is_array_type(entity_as<object>(s)->type);
    case sk_undetermined: return is_array_type(entity_as<type>(s));
    default: return false;
    }
}

// The host's array that `curr_name` means in the current scope, which has no such name of its own.
bool is_array_of_host() {
    if (interface_depth > 0) {
        return false;
    }
    const symbol *s = curr_name.atom->first_symbol;
    while (s && (!(s->flags & sf_visible) || s->kind == sk_common_block)) {
        s = s->next_same_name;
    }
    while (s && (s->kind == sk_host_link || s->kind == sk_host_candidate)) {
        s = s->kind == sk_host_link ? entity_as<symbol>(s) : static_cast<const symbol *>(s->aux);
    }
    return s && s->scope_depth > 0 && is_array_name(s);
}

// Whether `curr_name` may become a statement function: no other meaning of it is known.
bool may_be_new_function() {
    if (curr_scope_depth < 1) {
        return true;
    }
    if (const symbol *s = lookup_current()) {
        return s->kind == sk_undetermined && !is_array_name(s) && !is_quiet(s);
    }
    return !is_array_of_host();
}

// For the form NAME(...) = ...: whether it defines a statement function, of which the parentheses hold
// nothing or begin with a plain name. What else is wrong with it is then reported as a fault of that.
bool is_statement_function() {
    if (stmt_phase >= ph_execution) {
        return false;
    }
    line_cursor = stmt_start;
    next_token(0);
    if (!may_be_new_function()) {
        return false;
    }
    next_token(lex_peek); // "("
    switch (next_token(lex_peek)) {
    case tok_rparen: return true;
    case tok_name: {
        const token_kind next = next_token(lex_peek);
        return next == tok_rparen || next == tok_comma;
    }
    default: return false;
    }
}

bool found_kind(statement_kind kind) {
    curr_stmt_kind = kind;
    return true;
}

// Behind the "%" of a component.
bool classify_component() {
    switch (lookahead_find(tok_assign, tok_arrow)) {
    case 1: return found_kind(stmtk_assignment);
    case 2: return found_kind(stmtk_pointer_assignment);
    default: return false;
    }
}

// Behind the "(" of a subscript list or the like: moves to its ")".
bool skip_parentheses() {
    skip_balanced();
    return curr_token == tok_rparen;
}

// With the first token just read in plain mode: whether the statement makes sense as one that begins with a
// name. Sets its kind if so.
bool classify_name_form() {
    if (curr_token != tok_name) {
        return false;
    }
    switch (next_token(lex_peek)) {
    case tok_colon: return found_kind(stmtk_construct_name);
    case tok_percent: return classify_component();
    case tok_arrow: return found_kind(stmtk_pointer_assignment);
    case tok_assign: return found_kind(stmtk_assignment);
    case tok_lparen: break;
    default: return false;
    }
    if (!skip_parentheses()) {
        return false;
    }
    switch (next_token(lex_peek)) {
    case tok_percent: return classify_component();
    case tok_assign: return found_kind(is_statement_function() ? stmtk_stmt_function : stmtk_assignment);
    case tok_lparen: // a substring of an element
        return skip_parentheses() && next_token(lex_peek) == tok_assign && found_kind(stmtk_assignment);
    default: return false;
    }
}

// The name test. False changes nothing but the cursor and the current token.
bool reads_as_name() {
    line_cursor = stmt_start;
    next_token(lex_peek);
    if (!classify_name_form()) {
        return false;
    }
    stmt_resume = stmt_start;
    return true;
}

// ---- what most words come down to

void bad_statement(error_code code) {
    error_at(code, stmt_pos);
    curr_stmt_kind = stmtk_bad;
    stmt_resume = stmt_start;
}

void unrecognized() { bad_statement(msg_unrecognized_statement); }

// No statement of a word: an assignment or nothing.
void name_or_bad() {
    if (!reads_as_name()) {
        unrecognized();
    }
}

void set_kind(statement_kind kind, char *resume) {
    curr_stmt_kind = kind;
    stmt_resume = resume;
}

// The statement is of that kind unless it is an assignment; its handler begins at the cursor.
void kind_or_name(statement_kind kind) {
    set_kind(kind, line_cursor);
    reads_as_name();
}

// The same if the next word is the second one of the statement's name.
void kind_with_second_word(token_kind second, statement_kind kind) {
    if (next_token(peek_word) == second) {
        kind_or_name(kind);
    } else {
        name_or_bad();
    }
}

// ---- type words

// With the "(" of a selector current: past its ")", to the next word.
bool skip_parenthesised_selector() {
    if (!skip_parentheses()) {
        error(msg_expected_rparen);
        return false;
    }
    next_token(peek_word);
    return true;
}

// Behind a type word: makes the token behind its selector the current one. False if the selector is not well
// formed, which has been reported.
bool skip_kind_selector() { return next_token(peek_word) != tok_lparen || skip_parenthesised_selector(); }

bool skip_char_selector() {
    switch (next_token(peek_word | lex_lone_star)) {
    case tok_lparen: return skip_parenthesised_selector();
    case tok_star: break;
    default: return true;
    }
    switch (next_token(lex_peek | lex_plain_digits | lex_no_hollerith)) {
    case tok_lparen: return skip_parenthesised_selector();
    case tok_integer: next_token(peek_word); return true;
    default: error(msg_expected_integer_constant); return false;
    }
}

bool skip_type_name() {
    if (next_token(lex_peek) != tok_lparen) {
        error(msg_expected_lparen);
        return false;
    }
    return skip_parenthesised_selector();
}

bool skip_no_selector() {
    next_token(peek_word);
    return true;
}

// With the token behind a type specification current: a type that FUNCTION follows is the prefix of one,
// where a program unit may begin.
void check_function_prefix() {
    if (stmt_phase != ph_start) {
        return;
    }
    if (curr_token == tok_kw_recursive) {
        next_token(peek_word);
    }
    if (curr_token == tok_kw_function) {
        curr_stmt_kind = stmtk_subprogram;
    }
}

// Behind a type word. The handler reads the statement from its first word.
void classify_type_word(bool (*skip_selector)()) {
    char *const selector = line_cursor;
    if (reads_as_name()) {
        return;
    }
    line_cursor = selector;
    if (!skip_selector()) {
        unrecognized();
        is_bad_declaration = true;
        return;
    }
    set_kind(stmtk_type_declaration, stmt_start);
    check_function_prefix();
}

// Behind DOUBLE, or DO and UBLE.
void classify_double() {
    if (next_token(peek_word) == tok_kw_precision) {
        classify_type_word(skip_no_selector);
    } else {
        name_or_bad();
    }
}

// With the first word of a type specification current: past it and its selector. False if it is none.
bool skip_type_specification() {
    switch (curr_token) {
    case tok_kw_character: return skip_char_selector();
    case tok_kw_complex:
    case tok_kw_integer:
    case tok_kw_logical:
    case tok_kw_real: return skip_kind_selector();
    case tok_kw_in: return next_token(peek_word) == tok_kw_teger && skip_kind_selector();
    case tok_kw_type: return skip_type_name();
    case tok_kw_do:
        if (next_token(peek_word) != tok_kw_uble) {
            return false;
        }
        [[fallthrough]];
    case tok_kw_double: return next_token(peek_word) == tok_kw_precision && skip_no_selector();
    case tok_kw_doubleprecision: return skip_no_selector();
    default: return false;
    }
}

// RECURSIVE may stand on either side of the type; the handler reports one that is repeated.
void skip_recursive() {
    while (curr_token == tok_kw_recursive) {
        next_token(peek_word);
    }
}

void classify_recursive() {
    char *const prefix = line_cursor;
    if (reads_as_name()) {
        return;
    }
    set_kind(stmtk_subprogram, stmt_start);
    line_cursor = prefix;
    next_token(peek_word);
    skip_recursive();
    if (curr_token == tok_kw_function || curr_token == tok_kw_subroutine) {
        return;
    }
    if (skip_type_specification()) {
        skip_recursive();
        if (curr_token == tok_kw_function) {
            return;
        }
    }
    unrecognized();
}

void classify_type() {
    set_kind(stmtk_type_definition, line_cursor);
    switch (next_token(lex_peek)) {
    case tok_double_colon:
    case tok_comma: return;
    case tok_name: reads_as_name(); return;
    case tok_lparen: break;
    default: name_or_bad(); return;
    }
    line_cursor = stmt_resume;
    classify_type_word(skip_type_name);
}

// ---- DO

// With the cursor behind DO: whether an "=" follows outside of parentheses and then a comma, as in
// `I = 1, 5`.
bool has_loop_control() { return lookahead_find(tok_assign) == 1 && lookahead_find(tok_comma) == 1; }

void do_or_name(bool is_loop, statement_kind otherwise) {
    if (is_loop) {
        curr_stmt_kind = stmtk_do;
    } else {
        curr_stmt_kind = otherwise;
        reads_as_name();
    }
}

// Whether the statement begins with a name and a colon: in fixed form the name of a construct may begin with
// DO, and have a loop behind it.
bool begins_with_construct_name() {
    char *const rest = line_cursor;
    line_cursor = stmt_start;
    const bool found = next_token(lex_peek) == tok_name && next_token(lex_peek) == tok_colon;
    line_cursor = rest;
    return found;
}

// Behind DO and UBLE: a loop on a variable, or DOUBLE PRECISION.
void classify_do_uble() {
    char *const rest = line_cursor;
    if (lookahead_find(tok_assign, tok_double_colon) == 1 && lookahead_find(tok_comma) == 1) {
        return;
    }
    line_cursor = rest;
    classify_double();
}

void classify_do() {
    if (fixed_form_input && begins_with_construct_name()) {
        name_or_bad();
        return;
    }
    set_kind(stmtk_do, line_cursor);
    char *rest = line_cursor;
    token_kind t = next_token(peek_word_or_label);
    if (t == tok_kw_uble) {
        classify_do_uble();
        return;
    }
    if (t == tok_label) {
        rest = line_cursor;
        t = next_token(peek_word);
    }
    if (t == tok_comma) { // it may be there without a label too
        rest = line_cursor;
        t = next_token(peek_word);
    }
    switch (t) {
    case tok_colon: name_or_bad(); return; // the name of a construct
    case tok_eos: return;
    case tok_assign:
    case tok_lparen: reads_as_name(); return;
    case tok_kw_while:
        if (next_token(lex_peek) == tok_lparen) {
            do_or_name(skip_parentheses() && has_loop_control(), stmtk_do_while);
            return;
        }
        break;
    default: break;
    }
    line_cursor = rest;
    do_or_name(has_loop_control(), stmtk_do);
}

// ---- the other words with a look ahead

void classify_if() {
    set_kind(stmtk_if, line_cursor);
    if (next_token(lex_peek) != tok_lparen) {
        reads_as_name();
        return;
    }
    if (!skip_parentheses()) {
        return;
    }
    switch (next_token(peek_word_or_label)) {
    case tok_label: curr_stmt_kind = stmtk_arithmetic_if; return;
    case tok_kw_then:
        // Text behind THEN makes it the front of a name, in the statement of a logical IF.
        if (next_token(lex_peek) == tok_eos) {
            curr_stmt_kind = stmtk_if_then;
        }
        return;
    default: reads_as_name(); return;
    }
}

void classify_else() {
    set_kind(stmtk_else, line_cursor);
    switch (next_token(peek_word)) {
    case tok_eos: return;
    case tok_kw_if: {
        char *const condition = line_cursor;
        if (next_token(lex_peek) == tok_lparen) {
            set_kind(stmtk_else_if, condition);
        }
        break;
    }
    case tok_kw_fixed_where:
        if (construct_depth >= 0 && top_construct().kind == cons_where && next_token(lex_peek) == tok_eos) {
            lex_rewind_token(); // the end of the statement is left for the handler
            set_kind(stmtk_elsewhere, line_cursor);
            return;
        }
        break;
    default: break;
    }
    reads_as_name();
}

void classify_end() {
    set_kind(stmtk_end, line_cursor);
    const token_kind second = next_token(peek_word);
    if (second == tok_eos) {
        if (fixed_form_input && curr_token_pos.seq != stmt_pos.seq) {
            bad_statement(msg_invalid_end_statement);
        }
        return;
    }
    if (word_after_end_table[second] != no_kind) {
        kind_or_name(word_after_end_table[second]);
    } else if (second == tok_kw_block) {
        kind_with_second_word(tok_kw_data, stmtk_end_block_data);
    } else if (second == tok_kw_in) {
        kind_with_second_word(tok_kw_terface, stmtk_end_interface);
    } else {
        name_or_bad();
    }
}

void classify_goto() {
    set_kind(stmtk_goto, line_cursor);
    switch (next_token(peek_label)) {
    case tok_name: curr_stmt_kind = stmtk_assigned_goto; break;
    case tok_lparen: curr_stmt_kind = stmtk_computed_goto; break;
    default: break;
    }
    reads_as_name();
}

void classify_implicit() {
    set_kind(stmtk_implicit, line_cursor);
    if (next_token(peek_word) == tok_kw_none) {
        set_kind(stmtk_implicit_none, line_cursor);
    }
    reads_as_name();
}

void classify_module() {
    set_kind(stmtk_module, line_cursor);
    if (next_token(peek_word) == tok_kw_procedure) {
        char *const names = line_cursor;
        // Where a unit begins, it is the front of a module's name in fixed form.
        const bool is_front = fixed_form_input && curr_scope_depth == 0;
        if (next_token(lex_peek) != tok_eos && !is_front) {
            set_kind(stmtk_module_procedure, names);
        }
    }
    reads_as_name();
}

void classify_where() {
    set_kind(stmtk_where_stmt, line_cursor);
    if (next_token(lex_peek) == tok_lparen) {
        if (!skip_parentheses()) {
            return;
        }
        if (next_token(lex_peek) == tok_eos) {
            curr_stmt_kind = stmtk_where_construct;
            return;
        }
    }
    reads_as_name();
}

// The tokenizer is not asked here whether a character constant and nothing else follows on the line: in fixed
// form it would fetch the next line to learn that the statement ends, and the lines of the file have to come
// before that one.
void classify_include() {
    set_kind(stmtk_include, line_cursor);
    if (!find_include_name(line_cursor).begin && !reads_as_name()) {
        bad_statement(msg_invalid_include_statement);
    }
}

// Behind IN, which in fixed form is the front of several words.
void classify_in() {
    switch (next_token(peek_word)) {
    case tok_kw_clude: classify_include(); break;
    case tok_kw_quire: kind_or_name(stmtk_inquire); break;
    case tok_kw_tent: kind_or_name(stmtk_intent); break;
    case tok_kw_terface: kind_or_name(stmtk_interface); break;
    case tok_kw_trinsic: kind_or_name(stmtk_intrinsic); break;
    case tok_kw_teger: classify_type_word(skip_kind_selector); break;
    default: name_or_bad(); break;
    }
}

void classify_subprogram() {
    set_kind(stmtk_subprogram, stmt_start);
    reads_as_name();
}

void classify_by_word(token_kind word) {
    switch (word) {
    case tok_eos: bad_statement(msg_expected_statement); break;
    case tok_kw_block: kind_with_second_word(tok_kw_data, stmtk_block_data); break;
    case tok_kw_select: kind_with_second_word(tok_kw_case, stmtk_select_case); break;
    case tok_kw_endblock: kind_with_second_word(tok_kw_data, stmtk_end_block_data); break;
    case tok_kw_end: classify_end(); break;
    case tok_kw_integer:
    case tok_kw_logical:
    case tok_kw_real:
    case tok_kw_complex: classify_type_word(skip_kind_selector); break;
    case tok_kw_character: classify_type_word(skip_char_selector); break;
    case tok_kw_doubleprecision: classify_type_word(skip_no_selector); break;
    case tok_kw_double: classify_double(); break;
    case tok_kw_do: classify_do(); break;
    case tok_kw_else: classify_else(); break;
    case tok_kw_function:
    case tok_kw_subroutine: classify_subprogram(); break;
    case tok_kw_go:
        if (next_token(peek_word) == tok_kw_to) {
            classify_goto();
        } else {
            name_or_bad();
        }
        break;
    case tok_kw_goto: classify_goto(); break;
    case tok_kw_if: classify_if(); break;
    case tok_kw_implicit: classify_implicit(); break;
    case tok_kw_in: classify_in(); break;
    case tok_kw_include: classify_include(); break;
    case tok_kw_module: classify_module(); break;
    case tok_kw_recursive: classify_recursive(); break;
    case tok_kw_type: classify_type(); break;
    case tok_kw_where:
    case tok_kw_fixed_where: classify_where(); break;
    default:
        if (plain_word_table[word] != no_kind) {
            kind_or_name(plain_word_table[word]);
        } else {
            name_or_bad();
        }
        break;
    }
}

constexpr bool (*handlers[statement_kind_count])() = {
#define STATEMENT(number, name, order_class, order_limit) stmt_##name,
#include "statements/kinds.def"
};

constexpr const char *kind_names[statement_kind_count] = {
#define STATEMENT(number, name, order_class, order_limit) #name,
#include "statements/kinds.def"
};

// The words of statements that have a list of names behind "::".
bool begins_declaration(token_kind word) {
    switch (word) {
    case tok_kw_character:
    case tok_kw_complex:
    case tok_kw_integer:
    case tok_kw_logical:
    case tok_kw_real:
    case tok_kw_allocatable:
    case tok_kw_dimension:
    case tok_kw_optional:
    case tok_kw_pointer:
    case tok_kw_save:
    case tok_kw_target: return true;
    default: return false;
    }
}

// A word and ":" ahead of the executable statements, where "::" was meant: it is not the name of a construct,
// whose statement would end the declarations. What follows is reported as it would be behind such a name.
void check_construct_name() {
    line_cursor = stmt_start;
    if (!begins_declaration(next_token(peek_word)) || next_token(lex_peek) != tok_colon) {
        return;
    }
    skip_to_token();
    char *const rest = line_cursor;
    const source_pos position = position_of_cursor(rest);
    if (next_token(peek_word) != tok_name) {
        return;
    }
    line_cursor = rest;
    next_token(lex_peek);
    error_at(classify_name_form() ? msg_construct_name_can_be_given_to_do_select : msg_unrecognized_statement,
             position);
    curr_stmt_kind = stmtk_bad;
}

} // namespace

include_name find_include_name(char *text) {
    char *const opening = past_blanks(text);
    if (*opening != '\'' && *opening != '"') {
        return {};
    }
    char *closing = opening + 1;
    while (*closing != *opening || closing[1] == *opening) {
        if (*closing == '\0') {
            return {};
        }
        closing += *closing == *opening ? 2 : 1;
    }
    char *end = past_blanks(closing + 1);
    while (*end == ';') {
        end = past_blanks(end + 1);
    }
    if (*end != '\0' && *end != '!') {
        return {};
    }
    return {opening + 1, closing, end};
}

void classify_statement() {
    skip_to_token();
    stmt_start = line_cursor;
    stmt_pos = position_of_cursor(line_cursor);
    is_bad_declaration = false;
    classify_by_word(next_token(peek_word));
    if (curr_stmt_kind == stmtk_construct_name && stmt_phase < ph_execution) {
        check_construct_name();
    }
    line_cursor = stmt_resume;
}

bool dispatch_statement() { return handlers[curr_stmt_kind](); }

const char *statement_kind_name(unsigned kind) {
    return kind < statement_kind_count ? kind_names[kind] : "?";
}

} // namespace zf90
