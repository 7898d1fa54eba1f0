// Atoms, symbols, the look-ups, host candidates and links, and the notes of uses.
#include "declarations/symbols.h"

#include "declarations/scopes.h"
#include "driver/driver.h"
#include "driver/options.h"
#include "il/entries.h"
#include "il/il_fixture.h"
#include "il/types.h"
#include "intrinsics/seed_table.h"
#include "output/xref.h"
#include "source/files.h"
#include "source/tokens.h"

#include <chrono>
#include <cstdio>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

using namespace zf90;

namespace {

atom *name(const std::string &text) {
    atom *a = nullptr;
    intern_name(text.c_str(), text.size(), a);
    return a;
}

name_locator at(const std::string &text, source_pos position = {7, 3}) { return {name(text), position}; }

// Makes a name the current one, as the tokenizer does.
void read(const std::string &text, source_pos position = {7, 3}) { curr_name = at(text, position); }

std::vector<const symbol *> chain_of(const atom *a) {
    std::vector<const symbol *> chain;
    for (const symbol *s = a->first_symbol; s; s = s->next_same_name) {
        chain.push_back(s);
    }
    return chain;
}

std::vector<const symbol *> row_of(std::int32_t depth) {
    std::vector<const symbol *> row;
    for (const symbol *s = scope_stack[depth].first_symbol; s; s = s->next_in_scope) {
        row.push_back(s);
    }
    EXPECT_EQ(scope_stack[depth].last_symbol, row.empty() ? nullptr : row.back());
    return row;
}

using symbols = std::vector<const symbol *>;

// The global scope and a program unit at depth 1.
struct symbols_test : il_test {
    symbols_test() {
        init_seed_tables();
        push_scope(sr_global);
        set_standard_implicit_types(curr_row());
        push_scope(sr_unit);
        curr_name = {nullptr, null_pos};
        error_pos = null_pos;
        error_count = warning_count = 0;
        testing::internal::CaptureStderr();
    }
    ~symbols_test() override {
        case_sensitive_names = false;
        no_implicit_typing = false;
        interface_depth = 0;
        used_in_bound = false;
        if (!taken_) {
            EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        }
    }

    // What was reported; nothing may be reported after it.
    std::string messages() {
        taken_ = true;
        return testing::internal::GetCapturedStderr();
    }

private:
    bool taken_ = false;
};

int times(const std::string &text, error_code code, const std::string &argument = "") {
    std::string message = message_text(code);
    if (const std::size_t at_argument = message.find("%s"); at_argument != std::string::npos) {
        message.replace(at_argument, 2, argument);
    }
    int n = 0;
    for (std::size_t i = text.find(message); i != std::string::npos; i = text.find(message, i + 1)) {
        ++n;
    }
    return n;
}

} // namespace

// ---- atoms

TEST_F(symbols_test, hash_takes_all_of_a_short_name_and_five_characters_of_a_long_one) {
    const auto h = [](const std::string &text) { return hash_name(text.data(), text.size()); };
    const auto expected = [](const std::string &characters) {
        std::uint32_t sum = 0;
        for (const char c : characters) {
            sum = sum * 73 + static_cast<unsigned char>(c);
        }
        return sum;
    };
    EXPECT_EQ(h(""), 0u);
    EXPECT_EQ(h("A"), 65u);
    EXPECT_EQ(h("ABCDE"), expected("ABCDE"));
    EXPECT_EQ(h("ABCDEF"), expected("AFCDE"));
    EXPECT_EQ(h("ABCDEFG"), expected("AGCDE"));
    EXPECT_EQ(h("ABCDEFGH"), expected("AHDEF"));
    EXPECT_EQ(h("abcdef"), h("ABCDEF"));
    EXPECT_EQ(h("A_1$\xe9"), expected("A_1$\xe9"));
    EXPECT_EQ(h("xyzzy") % 599, expected("XYZZY") % 599);
}

TEST_F(symbols_test, one_atom_for_a_spelling) {
    atom *a = nullptr;
    EXPECT_EQ(intern_name("VELOCITY", 8, a), nullptr);
    EXPECT_STREQ(a->spelling, "VELOCITY");
    EXPECT_EQ(a->length, 8u);
    EXPECT_EQ(a->token_code, tok_name);
    atom *same = nullptr;
    intern_name("velocityxx", 8, same); // the length counts, not the end of the text
    EXPECT_EQ(same, a);
    EXPECT_NE(name("VELOCIT"), a);
    EXPECT_NE(name("VELOCITX"), a);
    EXPECT_EQ(find_atom("Velocity", 8), a);
    EXPECT_EQ(find_atom("VELOCIT", 7), name("VELOCIT"));
    EXPECT_EQ(find_atom("NEVER_SEEN", 10), nullptr);
    EXPECT_EQ(find_atom("NEVER_SEEN", 10), nullptr);
}

TEST_F(symbols_test, an_atom_answers_its_first_symbol) {
    symbol *s = new_symbol(sk_variable, at("X1"), 1);
    atom *a = nullptr;
    EXPECT_EQ(intern_name("x1", a), s);
}

TEST_F(symbols_test, new_atoms_are_upper_case_unless_case_counts) {
    EXPECT_STREQ(name("MiXed")->spelling, "MIXED");
    case_sensitive_names = true;
    atom *mixed = name("MiXed");
    EXPECT_STREQ(mixed->spelling, "MiXed");
    EXPECT_NE(mixed, name("MIXED"));
    EXPECT_NE(mixed, name("mixed"));
    EXPECT_EQ(find_atom("MiXed", 5), mixed);
    // Words of the language are found in any case only while case does not count.
    EXPECT_EQ(find_atom("integer", 7), nullptr);
    case_sensitive_names = false;
    EXPECT_EQ(find_atom("integer", 7)->token_code, tok_kw_integer);
    EXPECT_STREQ(name("mixed")->spelling, "MIXED");
}

TEST_F(symbols_test, a_dotted_word_is_a_user_operator) {
    EXPECT_EQ(name(".CROSS.")->token_code, tok_defined_op);
    EXPECT_EQ(name(".and.")->token_code, tok_and);
    EXPECT_EQ(name("CROSS")->token_code, tok_name);
}

TEST_F(symbols_test, empty_and_odd_spellings) {
    atom *empty = name("");
    EXPECT_EQ(empty->length, 0u);
    EXPECT_EQ(name(""), empty);
    EXPECT_NE(empty, main_atom);
    EXPECT_NE(name("00100"), name("100"));
    const std::string long_name(5320, 'x');
    EXPECT_EQ(name(long_name), name(std::string(5320, 'X')));
    EXPECT_EQ(name(long_name)->length, 5320u);
    const std::string high = "\xff\x80\x01";
    EXPECT_EQ(name(high), name(high));
}

TEST_F(symbols_test, special_atoms) {
    EXPECT_STREQ(error_atom->spelling, "<error>");
    EXPECT_EQ(error_atom->length, 7u);
    EXPECT_EQ(find_atom("<error>", 7), nullptr);
    EXPECT_STREQ(main_atom->spelling, "");
    EXPECT_STREQ(blank_common_atom->spelling, "");
    EXPECT_EQ(main_atom->length, 0u);
    EXPECT_NE(main_atom, blank_common_atom);
    EXPECT_EQ(block_data_atom, nullptr);
    block_data_atom = new_empty_atom();
    EXPECT_NE(block_data_atom, main_atom);
    init_seed_tables();
    EXPECT_EQ(block_data_atom, nullptr);
}

// Names that the short hash cannot tell apart, and more of them than the first table is made for.
TEST_F(symbols_test, many_names) {
    constexpr int count = 100000;
    std::vector<const atom *> atoms;
    const auto spelling = [](int i) {
        const std::string digits = std::to_string(i);
        return "PREFIX_" + std::string(6 - digits.size(), '0') + digits + "_AND_A_LONG_SUFFIX";
    };
    const auto from = std::chrono::steady_clock::now();
    for (int i = 0; i < count; ++i) {
        atoms.push_back(name(spelling(i)));
    }
    for (int i = 0; i < count; ++i) {
        ASSERT_EQ(name(spelling(i)), atoms[static_cast<std::size_t>(i)]);
    }
    EXPECT_EQ(find_atom("SUBROUTINE", 10)->token_code, tok_kw_subroutine);
    EXPECT_EQ(find_atom("**", 2)->token_code, tok_power);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - from;
    EXPECT_LT(took.count(), 5.0);
    init_seed_tables();
    EXPECT_EQ(find_atom(spelling(1).data(), spelling(1).size()), nullptr);
    EXPECT_EQ(find_atom("SUBROUTINE", 10)->token_code, tok_kw_subroutine);
}

// A few names that share a bucket, looked up in turn, all stay found.
TEST_F(symbols_test, names_of_one_bucket) {
    std::vector<std::string> names;
    std::vector<const atom *> atoms;
    for (int i = 0; i < 26 * 4; ++i) {
        // The same five characters are looked at in each.
        names.push_back(std::string("A") + static_cast<char>('A' + i % 26) + static_cast<char>('0' + i / 26) +
                        "QWXYZ__");
        atoms.push_back(name(names.back()));
        ASSERT_EQ(hash_name(names.back().data(), 10), hash_name(names.front().data(), 10));
    }
    for (int round = 0; round < 3; ++round) {
        for (std::size_t i = 0; i < names.size(); ++i) {
            ASSERT_EQ(name(names[i]), atoms[i]);
        }
    }
}

// ---- making symbols

TEST_F(symbols_test, a_new_symbol) {
    error_pos = {9, 9};
    symbol *s = new_symbol(sk_undetermined, at("ALPHA", {4, 2}), 1);
    EXPECT_EQ(s->kind, sk_undetermined);
    EXPECT_EQ(s->name, name("ALPHA"));
    EXPECT_EQ(s->scope_depth, 1);
    EXPECT_EQ(s->decl_position, (source_pos{4, 2}));
    EXPECT_EQ(s->flags, sf_visible);
    EXPECT_EQ(entity_as<type>(s), unknown_type());
    EXPECT_FALSE(s->from_module);
    EXPECT_EQ(row_of(1), symbols{s});
    EXPECT_EQ(chain_of(s->name), symbols{s});
    symbol *fresh = alloc_symbol(sk_variable);
    EXPECT_EQ(fresh->decl_position, (source_pos{9, 9}));
    EXPECT_EQ(fresh->scope_depth, -1);
    EXPECT_EQ(fresh->name, nullptr);
    EXPECT_EQ(fresh->flags, 0u);
}

TEST_F(symbols_test, public_by_default_in_a_row_of_public_names) {
    EXPECT_FALSE(new_symbol(sk_variable, at("P1"), 1)->flags & sf_public);
    curr_row().names_public = true;
    EXPECT_TRUE(new_symbol(sk_variable, at("P2"), 1)->flags & sf_public);
    EXPECT_TRUE(new_symbol(sk_subroutine, at("P3"), 0)->flags & sf_public);
    EXPECT_FALSE(new_symbol(sk_folded_external, at("P4"), -1)->flags & sf_public);
}

TEST_F(symbols_test, lists_of_rows_are_in_the_order_of_making) {
    push_scope(sr_unit);
    symbol *a = new_symbol(sk_variable, at("A1"), 2);
    symbol *b = new_symbol(sk_variable, at("A1"), 1);
    symbol *c = new_symbol(sk_variable, at("B1"), 2);
    symbol *global = new_symbol(sk_subroutine, at("C1"), 0);
    symbol *nowhere = new_symbol(sk_folded_external, at("D1"), -1);
    EXPECT_EQ(row_of(2), (symbols{a, c}));
    EXPECT_EQ(row_of(1), symbols{b});
    EXPECT_EQ(row_of(0), symbols{});
    EXPECT_TRUE(global->flags & sf_visible);
    EXPECT_FALSE(nowhere->flags & sf_visible);
    EXPECT_EQ(chain_of(name("D1")), symbols{nowhere});
}

TEST_F(symbols_test, chains_run_outward_the_newest_first_among_equals) {
    push_scope(sr_unit);
    symbol *at1 = new_symbol(sk_variable, at("N"), 1);
    symbol *at2 = new_symbol(sk_variable, at("N"), 2);
    symbol *at0 = new_symbol(sk_subroutine, at("N"), 0);
    symbol *second_at1 = new_symbol(sk_common_block, at("N"), 1);
    symbol *nowhere = new_symbol(sk_folded_external, at("N"), -1);
    EXPECT_EQ(chain_of(name("N")), (symbols{at2, second_at1, at1, at0, nowhere}));
    unlink_symbol(at1);
    EXPECT_EQ(chain_of(name("N")), (symbols{at2, second_at1, at0, nowhere}));
    EXPECT_EQ(at1->next_same_name, nullptr);
    EXPECT_EQ(at1->next_in_scope, second_at1); // the list of the row keeps it
    unlink_symbol(at1);
    unlink_symbol(at2);
    EXPECT_EQ(chain_of(name("N")), (symbols{second_at1, at0, nowhere}));
    link_symbol(at1);
    EXPECT_EQ(chain_of(name("N")), (symbols{at1, second_at1, at0, nowhere}));
}

TEST_F(symbols_test, new_symbols_stand_ahead_of_the_seeded_ones) {
    symbol *generic = name("SIN")->first_symbol->next_same_name;
    symbol *specific = name("SIN")->first_symbol;
    symbol *nowhere = new_symbol(sk_folded_external, at("SIN"), -1);
    symbol *local = new_symbol(sk_variable, at("SIN"), 1);
    EXPECT_EQ(chain_of(name("SIN")), (symbols{local, nowhere, specific, generic}));
}

TEST_F(symbols_test, a_failed_name_is_on_no_list) {
    symbol *s = new_symbol(sk_variable, {nullptr, {3, 3}}, 1);
    EXPECT_EQ(s->name, error_atom);
    EXPECT_EQ(s->scope_depth, 1);
    EXPECT_TRUE(s->flags & sf_visible);
    EXPECT_EQ(row_of(1), symbols{});
    EXPECT_EQ(error_atom->first_symbol, nullptr);
    new_symbol(sk_variable, {error_atom, {3, 3}}, 1);
    EXPECT_EQ(row_of(1), symbols{});
    unlink_symbol(s);
    EXPECT_EQ(error_count, 0u);
}

TEST_F(symbols_test, names_over_the_limit) {
    new_symbol(sk_variable, at(std::string(31, 'A')), 1);
    EXPECT_EQ(error_count, 0u);
    const std::string too_long(32, 'A');
    symbol *s = new_symbol(sk_variable, at(too_long), 1);
    EXPECT_EQ(error_count, 1u);
    EXPECT_EQ(s->name->length, 32u);
    read(too_long);
    EXPECT_EQ(lookup_current(), s);
    new_symbol(sk_subroutine, at(too_long), 0); // each one that is made
    EXPECT_EQ(error_count, 2u);
    new_further_symbol(sk_host_link, at(too_long), 1);
    EXPECT_EQ(error_count, 2u);
    const std::string text = messages();
    EXPECT_EQ(times(text, msg_maximum_length_of_name_is_31_characters), 2);
    EXPECT_NE(text.find(" the maximum length of a name is 31 characters"), std::string::npos);
}

TEST_F(symbols_test, operators_over_the_limit) {
    new_symbol(sk_interface, at(".ABCDEFGHIJKLMNOPQRSTUVWXYZABCDE."), 1);
    EXPECT_EQ(error_count, 0u);
    new_symbol(sk_interface, at(".ABCDEFGHIJKLMNOPQRSTUVWXYZABCDEF."), 1);
    EXPECT_EQ(error_count, 1u);
    EXPECT_EQ(times(messages(), msg_maximum_length_of_name_is_31_characters), 1);
}

TEST_F(symbols_test, a_name_over_the_limit_is_one_error_for_one_use) {
    push_scope(sr_unit);
    read(std::string(40, 'B'));
    lookup_reference();
    lookup_reference();
    EXPECT_EQ(error_count, 1u);
    push_implied_do_variable(at(std::string(32, 'C')));
    EXPECT_EQ(error_count, 2u);
    EXPECT_EQ(times(messages(), msg_maximum_length_of_name_is_31_characters), 2);
}

TEST_F(symbols_test, what_a_kind_resets) {
    object *o = new_object();
    object *other = new_object();
    const auto changed_to = [&](symbol_kind kind) {
        symbol *s = alloc_symbol(sk_variable);
        s->entity = o;
        s->aux = other;
        s->aux2 = 3;
        s->var_flags = ~0u;
        s->flags = sf_typed;
        set_symbol_kind(s, kind);
        EXPECT_EQ(s->kind, kind);
        EXPECT_EQ(s->flags, sf_typed);
        return s;
    };
    for (const symbol_kind kind : {sk_derived_type, sk_undetermined, sk_data_name, sk_external_pending}) {
        const symbol *s = changed_to(kind);
        EXPECT_EQ(entity_as<type>(s), unknown_type());
        EXPECT_EQ(s->aux, other);
        EXPECT_EQ(s->aux2, 3u);
    }
    for (const symbol_kind kind : {sk_variable, sk_dummy}) {
        const symbol *s = changed_to(kind);
        EXPECT_EQ(s->entity, nullptr);
        EXPECT_EQ(s->aux, nullptr);
        EXPECT_EQ(s->aux2, 3u);
        EXPECT_EQ(s->var_flags, 0u);
    }
    for (const symbol_kind kind : {sk_subroutine, sk_function, sk_internal_subroutine, sk_internal_function,
                                   sk_stmt_function, sk_specific_function, sk_specific_subroutine, sk_program,
                                   sk_block_data, sk_common_block, sk_module_procedure, sk_external_unused,
                                   sk_dummy_function, sk_dummy_subroutine, sk_dummy_procedure}) {
        const symbol *s = changed_to(kind);
        EXPECT_EQ(s->entity, nullptr);
        EXPECT_EQ(s->aux, other);
        EXPECT_EQ(s->aux2, 0u);
    }
    for (const symbol_kind kind : {sk_intrinsic_function, sk_intrinsic_subroutine, sk_interface}) {
        const symbol *s = changed_to(kind);
        EXPECT_EQ(s->entity, nullptr);
        EXPECT_EQ(s->aux2, pf_body_seen);
    }
    EXPECT_EQ(changed_to(sk_module)->aux, nullptr);
    EXPECT_EQ(changed_to(sk_module)->aux2, 3u);
    EXPECT_EQ(changed_to(sk_label)->entity, nullptr);
    EXPECT_EQ(changed_to(sk_label)->aux, nullptr);
    EXPECT_EQ(changed_to(sk_label)->aux2, 0u);
    for (const symbol_kind kind : {sk_implied_do_var, sk_forward_type, sk_host_candidate}) {
        const symbol *s = changed_to(kind);
        EXPECT_EQ(entity_as<type>(s), unknown_type());
        EXPECT_EQ(s->aux, nullptr);
        EXPECT_EQ(s->aux2, kind == sk_implied_do_var ? 3u : 0u);
    }
    for (const symbol_kind kind : {sk_namelist, sk_folded_external, sk_host_link}) {
        const symbol *s = changed_to(kind);
        EXPECT_EQ(s->entity, nullptr);
        EXPECT_EQ(s->aux, other);
        EXPECT_EQ(s->aux2, 3u);
    }
}

// What a candidate keeps there is not taken for the marks of a procedure later on.
TEST_F(symbols_test, the_marks_of_a_candidate_do_not_outlive_it) {
    for (const symbol_kind former : {sk_host_candidate, sk_forward_type}) {
        symbol *s = alloc_symbol(former);
        s->aux = s;
        s->aux2 = cf_referenced | cf_used_as_bound;
        set_symbol_kind(s, sk_undetermined);
        EXPECT_EQ(s->aux, nullptr);
        EXPECT_EQ(s->aux2, 0u);
    }
}

TEST_F(symbols_test, an_entry_tied_to_its_symbol) {
    symbol *s = new_symbol(sk_variable, at("TIED", {4, 2}), 1);
    object *o = new_object();
    tie_to_symbol(o, s);
    EXPECT_EQ(o->symbol_link, s);
    EXPECT_EQ(o->source_corresp.name, name("TIED"));
    EXPECT_EQ(o->source_corresp.decl_position, (source_pos{4, 2}));
    EXPECT_FALSE(o->source_corresp.referenced);
    EXPECT_EQ(o->source_corresp.scope_depth, 1);
    s->flags |= sf_referenced;
    s->name = main_atom;
    // Depths that the entry has no room for.
    for (const std::int32_t depth : {-1, 255, 256, 1000}) {
        s->scope_depth = depth;
        tie_to_symbol(o, s);
        EXPECT_EQ(o->source_corresp.scope_depth, depth_out_of_scope);
    }
    EXPECT_EQ(o->source_corresp.name, nullptr);
    EXPECT_TRUE(o->source_corresp.referenced);
}

TEST_F(symbols_test, records_of_global_names) {
    atom *a = name("EXT");
    EXPECT_EQ(global_symbol(a), nullptr);
    symbol *local = new_symbol(sk_variable, at("EXT"), 1);
    symbol *visible = new_symbol(sk_program, at("EXT"), 0);
    local->flags &= ~std::uint32_t{sf_visible};
    EXPECT_EQ(global_symbol(a), nullptr);
    symbol *record = new_symbol(sk_subroutine, at("EXT"), 0);
    record->flags &= ~std::uint32_t{sf_visible};
    EXPECT_EQ(global_symbol(a), record);
    EXPECT_EQ(find_kind(a, sk_program), visible);
    EXPECT_EQ(find_kind(a, sk_subroutine), record);
    EXPECT_EQ(find_kind(a, sk_function), nullptr);
    EXPECT_EQ(global_symbol(name("SIN")), nullptr);
}

TEST_F(symbols_test, intrinsics_of_a_name) {
    const auto local = [](const char *text) { return new_symbol(sk_undetermined, at(text), 1); };
    EXPECT_EQ(find_intrinsic_function(local("SQRT"))->kind, sk_intrinsic_function);
    EXPECT_EQ(find_intrinsic_function(local("MVBITS")), nullptr);
    EXPECT_EQ(find_intrinsic_subroutine(local("MVBITS"))->kind, sk_intrinsic_subroutine);
    EXPECT_EQ(find_intrinsic_subroutine(local("SQRT")), nullptr);
    EXPECT_EQ(find_intrinsic_function(local("FOO")), nullptr);
    symbol *specific = find_kind(name("DABS"), sk_specific_function);
    unlink_symbol(find_kind(name("DABS"), sk_intrinsic_function));
    EXPECT_EQ(find_intrinsic_function(specific), specific);
}

TEST_F(symbols_test, implicit_types) {
    EXPECT_EQ(implicit_type_of(new_symbol(sk_undetermined, at("H"), 1)), default_real());
    EXPECT_EQ(implicit_type_of(new_symbol(sk_undetermined, at("I"), 1)), default_integer());
    EXPECT_EQ(implicit_type_of(new_symbol(sk_undetermined, at("N9"), 1)), default_integer());
    symbol *o = new_symbol(sk_undetermined, at("O"), 1);
    EXPECT_EQ(implicit_type_of(o), default_real());
    EXPECT_EQ(implicit_type_of(new_symbol(sk_interface, at(".OP."), 1)), nullptr);
    EXPECT_EQ(implicit_type_of(new_symbol(sk_variable, {nullptr, {}}, 1)), nullptr);
    EXPECT_EQ(implicit_type_of(name("COS")->first_symbol), nullptr);
    curr_row().implicit_types['O' - 'A'] = default_logical();
    EXPECT_EQ(implicit_type_of(o), default_logical());
    push_scope(sr_unit);
    EXPECT_EQ(implicit_type_of(new_symbol(sk_undetermined, at("O"), 2)), default_logical());
    curr_row().implicit_types['O' - 'A'] = nullptr;
    EXPECT_EQ(implicit_type_of(o), default_logical()); // by the symbol's own row
    scope_stack[1].implicit_none = true;
    EXPECT_EQ(implicit_type_of(o), nullptr);
    scope_stack[1].implicit_none = false;
    no_implicit_typing = true;
    EXPECT_EQ(implicit_type_of(o), nullptr);
    no_implicit_typing = false;
    case_sensitive_names = true;
    EXPECT_EQ(implicit_type_of(new_symbol(sk_undetermined, at("i"), 1)), default_integer());
    EXPECT_EQ(implicit_type_of(push_implied_do_variable(at("k"))), default_integer());
}

// ---- plain look-ups

TEST_F(symbols_test, look_ups_by_depth) {
    read("V");
    EXPECT_EQ(lookup_current(), nullptr);
    EXPECT_EQ(lookup_for_declaration(), nullptr);
    symbol *host = new_symbol(sk_variable, at("V"), 1);
    EXPECT_EQ(lookup_current(), host);
    EXPECT_EQ(lookup_for_declaration(), host);
    push_scope(sr_unit);
    EXPECT_EQ(lookup_current(), nullptr);
    EXPECT_EQ(lookup_for_declaration(), nullptr);
    EXPECT_EQ(lookup_at_depth(2), nullptr);
    EXPECT_EQ(lookup_at_depth(1), host);
    EXPECT_EQ(lookup_at_depth(0), nullptr);
    symbol *local = new_symbol(sk_variable, at("V"), 2);
    EXPECT_EQ(lookup_current(), local);
    EXPECT_EQ(lookup_at_depth(2), local);
    EXPECT_EQ(lookup_at_depth(1), host);
    EXPECT_EQ(host->flags & sf_referenced, 0u);
    curr_name.atom = nullptr;
    EXPECT_EQ(lookup_current(), nullptr);
    EXPECT_EQ(lookup_for_declaration(), nullptr);
    EXPECT_EQ(lookup_at_depth(1), nullptr);
}

TEST_F(symbols_test, invisible_symbols_and_common_blocks_are_passed_over) {
    symbol *variable = new_symbol(sk_variable, at("FOO"), 1);
    symbol *block = new_symbol(sk_common_block, at("FOO"), 1);
    new_symbol(sk_subroutine, at("FOO"), 1)->flags &= ~std::uint32_t{sf_visible};
    read("FOO");
    EXPECT_EQ(lookup_current(), variable);
    EXPECT_EQ(lookup_for_declaration(), variable);
    EXPECT_EQ(lookup_at_depth(1), variable);
    EXPECT_EQ(lookup_reference(), variable);
    EXPECT_EQ(lookup_resolved(curr_name.atom->first_symbol, 1), variable);
    EXPECT_EQ(find_kind(name("FOO"), sk_common_block), block);
    unlink_symbol(variable);
    EXPECT_EQ(lookup_current(), nullptr);
    EXPECT_EQ(lookup_resolved(curr_name.atom->first_symbol, 1), nullptr);
}

// The seeded names lie at depth -1, so a local name of the same spelling meets neither of them.
TEST_F(symbols_test, intrinsic_names_are_free) {
    read("IABS");
    EXPECT_EQ(lookup_current(), nullptr);
    EXPECT_EQ(lookup_for_declaration(), nullptr);
    symbol *s = new_symbol(sk_variable, curr_name, 1);
    EXPECT_EQ(lookup_current(), s);
    EXPECT_EQ(lookup_resolved(curr_name.atom->first_symbol, 1), s);
}

TEST_F(symbols_test, keywords_are_names_too) {
    read("INTEGER");
    symbol *s = new_symbol(sk_variable, curr_name, 1);
    EXPECT_EQ(lookup_current(), s);
    EXPECT_EQ(curr_name.atom->token_code, tok_kw_integer);
}

TEST_F(symbols_test, redeclaring_a_host_name_that_was_used) {
    symbol *host = new_symbol(sk_variable, at("H1"), 1);
    push_scope(sr_unit);
    read("H1");
    EXPECT_EQ(resolve_candidate(lookup_reference()), host);
    error_pos = {8, 5};
    symbol *s = lookup_for_declaration();
    EXPECT_EQ(error_count, 1u);
    ASSERT_NE(s, nullptr);
    EXPECT_EQ(s->kind, sk_undetermined);
    EXPECT_EQ(s->scope_depth, 2);
    EXPECT_EQ(entity_as<type>(s), unknown_type());
    EXPECT_EQ(lookup_for_declaration(), s);
    EXPECT_EQ(lookup_current(), s);
    EXPECT_EQ(error_count, 1u);
    EXPECT_EQ(times(messages(), msg_invalid_redeclaration_of_host_symbol, "H1"), 1);
}

// ---- references and candidates

TEST_F(symbols_test, a_reference_to_a_local_name) {
    symbol *s = new_symbol(sk_variable, at("L1"), 1);
    read("L1");
    EXPECT_EQ(lookup_reference(), s);
    EXPECT_TRUE(s->flags & sf_referenced);
    EXPECT_FALSE(s->flags & sf_used_as_bound);
    symbol *b = new_symbol(sk_variable, at("L2"), 1);
    read("L2");
    used_in_bound = true;
    EXPECT_EQ(lookup_reference(), b);
    EXPECT_FALSE(b->flags & sf_referenced);
    EXPECT_TRUE(b->flags & sf_used_as_bound);
}

TEST_F(symbols_test, an_unknown_name_makes_candidates_outward) {
    push_scope(sr_unit);
    push_scope(sr_unit);
    curr_row().implicit_types['Q' - 'A'] = default_complex();
    scope_stack[2].implicit_none = true;
    read("QUITE_NEW", {5, 6});
    symbol *s = lookup_reference();
    EXPECT_EQ(s->kind, sk_host_candidate);
    EXPECT_EQ(s->scope_depth, 3);
    EXPECT_EQ(s->decl_position, (source_pos{5, 6}));
    EXPECT_EQ(entity_as<type>(s), default_complex());
    EXPECT_TRUE(s->flags & sf_referenced);
    auto *middle = static_cast<symbol *>(s->aux);
    ASSERT_NE(middle, nullptr);
    EXPECT_EQ(middle->kind, sk_host_candidate);
    EXPECT_EQ(middle->scope_depth, 2);
    EXPECT_EQ(middle->entity, nullptr);
    EXPECT_FALSE(middle->flags & sf_referenced);
    auto *outer = static_cast<symbol *>(middle->aux);
    ASSERT_NE(outer, nullptr);
    EXPECT_EQ(outer->kind, sk_host_candidate);
    EXPECT_EQ(outer->scope_depth, 1);
    EXPECT_EQ(entity_as<type>(outer), default_real());
    EXPECT_EQ(outer->aux, nullptr);
    EXPECT_EQ(chain_of(name("QUITE_NEW")), (symbols{s, middle, outer}));
    EXPECT_EQ(row_of(2), symbols{middle});
    EXPECT_EQ(lookup_reference(), s);
    EXPECT_EQ(chain_of(name("QUITE_NEW")).size(), 3u);
}

TEST_F(symbols_test, candidates_end_at_a_known_name) {
    symbol *host = new_symbol(sk_variable, at("K1"), 1);
    host->aux = new_object(); // which is the host's own business
    push_scope(sr_unit);
    push_scope(sr_unit);
    read("K1");
    symbol *s = lookup_reference();
    auto *middle = static_cast<symbol *>(s->aux);
    EXPECT_EQ(middle->kind, sk_host_candidate);
    EXPECT_EQ(middle->aux, host);
    EXPECT_NE(host->aux, nullptr);
    EXPECT_FALSE(host->flags & sf_referenced);
    // A further reference from the scope between finds the candidate there.
    pop_scope();
    EXPECT_EQ(lookup_reference(), middle);
    EXPECT_EQ(middle->aux, host);
}

TEST_F(symbols_test, candidates_end_at_global_names_but_not_at_seeded_ones) {
    symbol *program = new_symbol(sk_program, at("MAINP"), 0);
    push_scope(sr_unit);
    read("MAINP");
    EXPECT_EQ(static_cast<symbol *>(static_cast<symbol *>(lookup_reference()->aux)->aux), program);
    read("SIN");
    symbol *s = lookup_reference();
    EXPECT_EQ(s->kind, sk_host_candidate);
    EXPECT_EQ(static_cast<symbol *>(s->aux)->aux, nullptr);
}

TEST_F(symbols_test, candidates_see_through_links) {
    symbol *program = new_symbol(sk_program, at("LP"), 0);
    symbol *link = new_symbol(sk_host_link, at("LP"), 1);
    link->entity = program;
    push_scope(sr_unit);
    push_scope(sr_unit);
    read("LP");
    symbol *s = lookup_reference();
    auto *middle = static_cast<symbol *>(s->aux);
    EXPECT_EQ(middle->scope_depth, 2);
    EXPECT_EQ(middle->aux, program);
    EXPECT_EQ(resolve_candidate(s), program);
    EXPECT_EQ(entity_as<symbol>(s), program);
    EXPECT_EQ(lookup_reference(), program);
    EXPECT_TRUE(program->flags & sf_referenced);
}

TEST_F(symbols_test, a_reference_through_a_link_gives_the_target) {
    symbol *host = new_symbol(sk_variable, at("T1"), 1);
    push_scope(sr_unit);
    symbol *link = new_symbol(sk_host_link, at("T1"), 2);
    link->entity = host;
    read("T1");
    EXPECT_EQ(lookup_reference(), host);
    EXPECT_TRUE(host->flags & sf_referenced);
    pop_scope(); // the link's marks replace the target's: they must hold the use
    EXPECT_TRUE(host->flags & sf_referenced);
}

TEST_F(symbols_test, a_name_in_a_statement_function_counts_as_a_use_in_the_host) {
    symbol *host = new_symbol(sk_variable, at("SF1"), 1);
    push_scope(sr_stmt_function);
    read("SF1");
    lookup_reference();
    EXPECT_TRUE(host->flags & sf_referenced);
    read("SF2");
    symbol *s = lookup_reference();
    EXPECT_TRUE(static_cast<symbol *>(s->aux)->flags & sf_referenced);
    used_in_bound = true;
    read("SF3");
    s = lookup_reference();
    EXPECT_FALSE(static_cast<symbol *>(s->aux)->flags & (sf_referenced | sf_used_as_bound));
    used_in_bound = false;
    // Only what a candidate holds is a name of the host.
    symbol *other = new_symbol(sk_variable, at("SF5"), 1);
    symbol *dummy = new_symbol(sk_variable, at("SF4"), 2);
    dummy->aux = other;
    read("SF4");
    EXPECT_EQ(lookup_reference(), dummy);
    symbol *candidate = new_symbol(sk_host_candidate, at("SF6"), 1);
    candidate->aux = other;
    new_symbol(sk_host_link, at("SF6"), 2)->entity = candidate;
    read("SF6");
    EXPECT_EQ(lookup_reference(), candidate);
    EXPECT_EQ(other->flags & sf_referenced, 0u);
}

TEST_F(symbols_test, no_host_association_into_an_interface_body) {
    symbol *host = new_symbol(sk_variable, at("IB"), 1);
    symbol *global = new_symbol(sk_module, at("GM"), 0);
    push_scope(sr_unit);
    curr_row().outer_interface_depth = 1;
    read("IB");
    symbol *s = lookup_reference();
    EXPECT_EQ(s->kind, sk_host_candidate);
    EXPECT_EQ(s->aux, nullptr);
    EXPECT_EQ(chain_of(name("IB")), (symbols{s, host}));
    read("GM");
    EXPECT_EQ(lookup_reference()->aux, global);
    symbol *constant = new_symbol(sk_variable, at("BC"), 2);
    read("BC");
    EXPECT_EQ(lookup_resolved(curr_name.atom->first_symbol, 2), constant);
    EXPECT_EQ(lookup_resolved(name("IB")->first_symbol->next_same_name, 2), nullptr);
    EXPECT_EQ(lookup_resolved(name("SIN")->first_symbol, 2)->kind, sk_intrinsic_function);
    // A derived type defined in the body has the names of the body.
    push_scope(sr_derived_type);
    EXPECT_EQ(lookup_resolved(name("BC")->first_symbol, 3), constant);
    read("BC");
    EXPECT_EQ(lookup_reference()->aux, constant);
    new_symbol(sk_variable, at("HX"), 1);
    EXPECT_EQ(lookup_resolved(name("HX")->first_symbol, 3), nullptr);
}

TEST_F(symbols_test, a_reference_to_a_failed_name) {
    push_scope(sr_unit);
    curr_name = {nullptr, {3, 4}};
    symbol *s = lookup_reference();
    EXPECT_EQ(s->name, error_atom);
    EXPECT_EQ(s->aux, nullptr);
    EXPECT_EQ(row_of(2), symbols{});
    EXPECT_EQ(row_of(1), symbols{});
    s = resolve_candidate(s);
    EXPECT_EQ(s->kind, sk_undetermined);
}

TEST_F(symbols_test, an_implied_do_variable_is_found_first) {
    symbol *outside = new_symbol(sk_variable, at("I"), 1);
    EXPECT_EQ(implied_do_depth, -1);
    symbol *i = push_implied_do_variable(at("I", {6, 6}));
    EXPECT_EQ(i->kind, sk_implied_do_var);
    EXPECT_EQ(i->scope_depth, 2);
    EXPECT_EQ(implied_do_depth, 2);
    EXPECT_EQ(i->decl_position, (source_pos{6, 6}));
    EXPECT_EQ(i->flags, sf_visible);
    symbol *j = push_implied_do_variable(at("J"));
    EXPECT_EQ(j->scope_depth, 3);
    symbol *inner_i = push_implied_do_variable(at("I"));
    read("I");
    EXPECT_EQ(lookup_current(), inner_i);
    EXPECT_EQ(lookup_for_declaration(), nullptr);
    EXPECT_EQ(lookup_at_depth(1), outside);
    pop_implied_do_variable(inner_i);
    EXPECT_EQ(lookup_reference(), i);
    EXPECT_EQ(lookup_resolved(curr_name.atom->first_symbol, 1), i);
    EXPECT_EQ(row_of(1), symbols{outside});
    pop_implied_do_variable(j);
    EXPECT_EQ(implied_do_depth, 2);
    pop_implied_do_variable(i);
    EXPECT_EQ(implied_do_depth, -1);
    EXPECT_EQ(lookup_current(), outside);
    symbol *failed = push_implied_do_variable({nullptr, {1, 1}});
    EXPECT_EQ(failed->name, error_atom);
    EXPECT_EQ(error_atom->first_symbol, nullptr);
    pop_implied_do_variable(failed);
}

// ---- settling candidates

TEST_F(symbols_test, a_candidate_of_a_host_name_becomes_a_link) {
    symbol *host = new_symbol(sk_variable, at("R1"), 1);
    push_scope(sr_unit);
    push_scope(sr_unit);
    read("R1");
    symbol *s = lookup_reference();
    auto *middle = static_cast<symbol *>(s->aux);
    EXPECT_EQ(resolve_candidate(s), host);
    EXPECT_EQ(s->kind, sk_host_link);
    EXPECT_EQ(entity_as<symbol>(s), host);
    EXPECT_EQ(middle->kind, sk_host_link);
    EXPECT_EQ(entity_as<symbol>(middle), host);
    EXPECT_TRUE(host->flags & sf_referenced);
    EXPECT_FALSE(host->flags & sf_used_as_bound);
    EXPECT_EQ(resolve_candidate(s), host);
    // Closing the scopes, innermost first, leaves the mark of the use on the host's name.
    pop_scope();
    pop_scope();
    EXPECT_TRUE(host->flags & sf_referenced);
}

TEST_F(symbols_test, a_bound_leaves_its_own_mark) {
    symbol *host = new_symbol(sk_variable, at("R2"), 1);
    push_scope(sr_unit);
    used_in_bound = true;
    read("R2");
    EXPECT_EQ(resolve_candidate(lookup_reference()), host);
    EXPECT_TRUE(host->flags & sf_used_as_bound);
    EXPECT_FALSE(host->flags & sf_referenced);
}

// The scope between has settled its own use of the name first.
TEST_F(symbols_test, a_candidate_within_a_link_leaves_its_marks_on_both) {
    symbol *host = new_symbol(sk_variable, at("R3"), 1);
    push_scope(sr_unit);
    push_scope(sr_unit);
    read("R3");
    symbol *s = lookup_reference();
    auto *middle = static_cast<symbol *>(s->aux);
    middle->flags |= sf_used_as_bound;
    EXPECT_EQ(resolve_candidate(middle), host);
    EXPECT_EQ(host->flags & (sf_referenced | sf_used_as_bound), sf_used_as_bound);
    EXPECT_EQ(resolve_candidate(s), host);
    EXPECT_EQ(entity_as<symbol>(s), host);
    EXPECT_TRUE(host->flags & sf_referenced);
    pop_scope();
    pop_scope();
    EXPECT_TRUE(host->flags & sf_referenced);
}

// The host declares the name after an internal procedure has used it.
TEST_F(symbols_test, a_host_may_declare_the_name_later) {
    push_scope(sr_unit);
    read("LATER");
    symbol *s = lookup_reference();
    pop_scope();
    symbol *in_host = lookup_at_depth(1);
    ASSERT_EQ(s->aux, in_host);
    object *o = new_object();
    set_symbol_kind(in_host, sk_internal_subroutine);
    in_host->entity = o;
    EXPECT_EQ(resolve_candidate(s), in_host);
    EXPECT_EQ(s->kind, sk_host_link);
    EXPECT_TRUE(in_host->flags & sf_referenced);
}

TEST_F(symbols_test, a_name_that_no_host_declares_becomes_local) {
    push_scope(sr_unit);
    read("MINE");
    symbol *s = lookup_reference();
    auto *in_host = static_cast<symbol *>(s->aux);
    EXPECT_EQ(resolve_candidate(s), s);
    EXPECT_EQ(s->kind, sk_undetermined);
    EXPECT_EQ(entity_as<type>(s), default_integer());
    EXPECT_EQ(s->flags, sf_visible | sf_inferred | sf_referenced | sf_typed | sf_type_implicit);
    EXPECT_EQ(s->aux, nullptr);
    EXPECT_EQ(in_host->kind, sk_host_candidate); // the host does not use it
}

TEST_F(symbols_test, a_local_name_without_an_implicit_type) {
    curr_row().implicit_none = true;
    read("NOTYPE");
    symbol *s = resolve_candidate(lookup_reference());
    EXPECT_EQ(s->kind, sk_undetermined);
    EXPECT_EQ(entity_as<type>(s), unknown_type());
    EXPECT_EQ(s->flags, sf_visible | sf_inferred | sf_referenced);
}

// A name that the host uses, too, is the host's by the implicit rules, and is reached from within.
TEST_F(symbols_test, a_name_that_the_host_uses_is_the_hosts) {
    read("SHARED");
    symbol *in_host = lookup_reference();
    push_scope(sr_unit);
    symbol *s = lookup_reference();
    EXPECT_EQ(s->aux, in_host);
    EXPECT_EQ(resolve_candidate(s), in_host);
    EXPECT_EQ(in_host->kind, sk_undetermined);
    EXPECT_EQ(entity_as<type>(in_host), default_real());
    EXPECT_EQ(s->kind, sk_host_link);
}

TEST_F(symbols_test, marks_left_by_inner_scopes_make_no_use_in_the_host) {
    push_scope(sr_unit);
    read("INNER");
    symbol *s = lookup_reference();
    auto *in_host = static_cast<symbol *>(s->aux);
    in_host->aux2 = cf_referenced | cf_used_as_bound;
    EXPECT_EQ(resolve_candidate(in_host), nullptr);
    EXPECT_EQ(in_host->kind, sk_host_candidate);
    EXPECT_EQ(in_host->aux2, cf_referenced | cf_used_as_bound);
    EXPECT_FALSE(in_host->flags & (sf_referenced | sf_used_as_bound));
    EXPECT_EQ(resolve_candidate(s), s);
    // But they count when the host turns out to use the name.
    in_host->flags |= sf_referenced;
    EXPECT_EQ(resolve_candidate(in_host), in_host);
    EXPECT_TRUE(in_host->flags & sf_used_as_bound);
}

TEST_F(symbols_test, an_unused_candidate_stays_one) {
    push_scope(sr_unit);
    push_scope(sr_unit);
    read("UNUSED");
    symbol *s = lookup_reference();
    auto *middle = static_cast<symbol *>(s->aux);
    auto *outer = static_cast<symbol *>(middle->aux);
    EXPECT_EQ(resolve_candidate(middle), nullptr);
    EXPECT_EQ(middle->kind, sk_host_candidate);
    EXPECT_EQ(middle->aux, outer);
    EXPECT_EQ(outer->aux, nullptr);
    EXPECT_EQ(s->aux, middle);
    EXPECT_EQ(resolve_candidate(s), s);
    EXPECT_EQ(middle->kind, sk_host_candidate);
    EXPECT_EQ(middle->aux, outer);
}

TEST_F(symbols_test, a_deep_chain_of_candidates) {
    symbol *host = new_symbol(sk_variable, at("DEEP"), 1);
    constexpr std::int32_t depth = 2000;
    while (curr_scope_depth < depth) {
        push_scope(sr_unit);
    }
    read("DEEP");
    symbol *s = lookup_reference();
    EXPECT_EQ(resolve_candidate(s), host);
    EXPECT_EQ(entity_as<symbol>(s), host);
    while (curr_scope_depth > 1) {
        pop_scope();
    }
    EXPECT_EQ(chain_of(name("DEEP")), symbols{host});
    EXPECT_TRUE(host->flags & sf_referenced);
}

// ---- look-ups that settle the meaning

TEST_F(symbols_test, resolved_names_own_and_of_the_host) {
    symbol *host = new_symbol(sk_variable, at("RH"), 1);
    push_scope(sr_unit);
    EXPECT_EQ(lookup_resolved(name("RH")->first_symbol, 2), host);
    EXPECT_TRUE(host->flags & sf_referenced);
    EXPECT_EQ(chain_of(name("RH")), symbols{host}); // no link was on the way, so none is made
    symbol *local = new_symbol(sk_variable, at("RH"), 2);
    EXPECT_EQ(lookup_resolved(name("RH")->first_symbol, 2), local);
    EXPECT_EQ(lookup_resolved(name("RH")->first_symbol->next_same_name, 2), host);
    EXPECT_EQ(lookup_resolved(nullptr, 2), nullptr);
    EXPECT_EQ(lookup_resolved(name("NOWHERE")->first_symbol, 2), nullptr);
}

TEST_F(symbols_test, operators_resolve_to_the_seeded_generics) {
    symbol *plus = lookup_resolved(name("+")->first_symbol, curr_scope_depth);
    ASSERT_NE(plus, nullptr);
    EXPECT_EQ(plus, seed_symbols[plus_op]);
    EXPECT_TRUE(plus->flags & sf_referenced);
    EXPECT_EQ(chain_of(name("+")), symbols{plus});
    symbol *user = new_symbol(sk_interface, at("+"), 1);
    EXPECT_EQ(lookup_resolved(name("+")->first_symbol, curr_scope_depth), user);
    EXPECT_EQ(lookup_resolved(name("SIN")->first_symbol, 1)->kind, sk_intrinsic_function);
}

TEST_F(symbols_test, resolved_links_are_repeated_within) {
    symbol *target = new_symbol(sk_function, at("RL", {2, 2}), 0);
    symbol *link = new_symbol(sk_host_link, at("RL"), 1);
    link->entity = target;
    push_scope(sr_unit);
    push_scope(sr_unit);
    EXPECT_EQ(lookup_resolved(name("RL")->first_symbol, 3), target);
    EXPECT_TRUE(target->flags & sf_referenced);
    const symbols chain = chain_of(name("RL"));
    ASSERT_EQ(chain.size(), 4u);
    EXPECT_EQ(chain[0]->scope_depth, 3);
    EXPECT_EQ(chain[1]->scope_depth, 2);
    EXPECT_EQ(chain[2], link);
    EXPECT_EQ(chain[3], target);
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(chain[static_cast<std::size_t>(i)]->kind, sk_host_link);
        EXPECT_EQ(entity_as<symbol>(chain[static_cast<std::size_t>(i)]), target);
        EXPECT_EQ(chain[static_cast<std::size_t>(i)]->decl_position, target->decl_position);
    }
    EXPECT_EQ(lookup_resolved(name("RL")->first_symbol, 3), target);
    EXPECT_EQ(chain_of(name("RL")), chain); // once
    // Within the depth asked for nothing is repeated.
    symbol *other = new_symbol(sk_host_link, at("RM"), 1);
    other->entity = new_symbol(sk_function, at("RM"), 0);
    symbol *other_target = entity_as<symbol>(other);
    EXPECT_EQ(lookup_resolved(name("RM")->first_symbol, 0), other_target);
    EXPECT_EQ(chain_of(name("RM")).size(), 2u);
    // The closing of the scopes keeps the marks.
    pop_scope();
    pop_scope();
    EXPECT_TRUE(target->flags & sf_referenced);
    pop_scope();
    EXPECT_TRUE(target->flags & sf_referenced);
    EXPECT_TRUE(other_target->flags & sf_referenced);
}

TEST_F(symbols_test, resolved_candidates) {
    push_scope(sr_unit);
    read("RC");
    symbol *s = lookup_reference();
    EXPECT_EQ(lookup_resolved(name("RC")->first_symbol, 2), s);
    EXPECT_EQ(s->kind, sk_undetermined);
    // A candidate that an inner procedure left in its host is no name of the host, nor of another procedure.
    pop_scope();
    symbol *left = lookup_at_depth(1);
    ASSERT_EQ(left->kind, sk_host_candidate);
    push_scope(sr_unit);
    EXPECT_EQ(lookup_resolved(name("RC")->first_symbol, 2), nullptr);
    EXPECT_EQ(left->kind, sk_host_candidate);
    pop_scope();
    // In its own scope it is one, since it is asked for there.
    EXPECT_EQ(lookup_resolved(name("RC")->first_symbol, 1), left);
    EXPECT_EQ(left->kind, sk_undetermined);
}

TEST_F(symbols_test, a_resolved_candidate_of_a_host_name) {
    symbol *host = new_symbol(sk_variable, at("RD"), 1);
    push_scope(sr_unit);
    read("RD");
    symbol *s = lookup_reference();
    EXPECT_EQ(lookup_resolved(name("RD")->first_symbol, 2), host);
    EXPECT_EQ(s->kind, sk_host_link);
}

TEST_F(symbols_test, forward_types) {
    symbol *host = new_symbol(sk_derived_type, at("FT"), 1);
    type *t = new_type(tk_derived_type);
    host->entity = t;
    push_scope(sr_unit);
    symbol *s = new_symbol(sk_forward_type, at("FT", {3, 8}), 2);
    s->aux = host;
    EXPECT_EQ(lookup_resolved(name("FT")->first_symbol, 1), host);
    EXPECT_EQ(s->kind, sk_host_link);
    EXPECT_EQ(entity_as<symbol>(s), host);
    EXPECT_TRUE(host->flags & sf_referenced);
    symbol *lost = new_symbol(sk_forward_type, at("LOST", {4, 9}), 2);
    type *own = new_type(tk_derived_type);
    lost->entity = own;
    EXPECT_EQ(lookup_resolved(name("LOST")->first_symbol, 2), lost);
    EXPECT_EQ(lost->kind, sk_derived_type);
    EXPECT_EQ(lost->entity, own);
    EXPECT_EQ(lookup_resolved(name("LOST")->first_symbol, 2), lost);
    pop_scope();
    EXPECT_TRUE(host->flags & sf_referenced);
    EXPECT_EQ(times(messages(), msg_component_type_is_not_defined, "LOST"), 1);
}

// ---- uses

TEST_F(symbols_test, a_use_marks_the_entity) {
    for (int kind = 0; kind < symbol_kind_count; ++kind) {
        symbol *s = new_symbol(sk_undetermined, at("U" + std::to_string(kind)), 1);
        set_symbol_kind(s, static_cast<symbol_kind>(kind));
        object *o = new_object();
        o->source_corresp.referenced = false;
        s->entity = o;
        note_use(use_declared, s, {2, 2});
        EXPECT_TRUE(s->flags & sf_referenced);
        const bool marks =
            kind <= 8 || (kind >= 11 && kind <= 15) || (kind >= 22 && kind <= 26) || kind == 28;
        EXPECT_EQ(o->source_corresp.referenced, marks) << kind;
        s->entity = nullptr;
        note_use(use_referenced, s, {2, 2});
    }
    EXPECT_EQ(warning_count, 0u);
}

TEST_F(symbols_test, a_use_marks_the_storage) {
    symbol *s = new_symbol(sk_variable, at("EQ"), 1);
    object *o = new_object();
    object *storage = new_object();
    o->source_corresp.referenced = storage->source_corresp.referenced = false;
    o->storage_class = sc_associated;
    o->assoc.variable = storage;
    s->entity = o;
    note_symbol_use(use_referenced, s, {2, 2});
    EXPECT_TRUE(s->flags & sf_referenced);
    EXPECT_FALSE(o->source_corresp.referenced);
    note_use(use_modified, s, {2, 2});
    EXPECT_TRUE(o->source_corresp.referenced);
    EXPECT_TRUE(storage->source_corresp.referenced);
    storage->source_corresp.referenced = false;
    o->storage_class = sc_local;
    note_use(use_modified, s, {2, 2});
    EXPECT_FALSE(storage->source_corresp.referenced);
}

TEST_F(symbols_test, modifying_a_do_variable) {
    symbol *s = new_symbol(sk_variable, at("I"), 1);
    s->entity = new_object();
    s->var_flags = vf_do_variable;
    note_use(use_referenced, s, {2, 2});
    note_use(use_declared, s, {2, 2});
    EXPECT_EQ(warning_count, 0u);
    note_use(use_modified, s, {2, 2});
    EXPECT_EQ(warning_count, 1u);
    s->var_flags = 0;
    note_use(use_modified, s, {2, 2});
    EXPECT_EQ(warning_count, 1u);
    EXPECT_EQ(times(messages(), msg_do_variable_modified_within_do_loop), 1);
}

TEST_F(symbols_test, noting_a_declaration) {
    symbol *s = new_symbol(sk_variable, at("ND", {2, 2}), 1);
    note_declaration(s, {5, 5}, false);
    EXPECT_EQ(s->decl_position, (source_pos{2, 2}));
    note_declaration(s, {5, 5}, true);
    EXPECT_EQ(s->decl_position, (source_pos{5, 5}));
    EXPECT_FALSE(s->flags & sf_referenced);
}

// ---- the cross-reference file

TEST_F(symbols_test, cross_reference) {
    const std::string source = testing::TempDir() + "zf90_xref_" + std::to_string(::getpid()) + ".f90";
    std::ofstream(source) << "program p\ni = i\nend\n";
    lexer_init();
    il_root = {};
    open_source_file(source.c_str(), include_search_list);
    while (next_statement()) {
    }
    xref_file = std::tmpfile();
    ASSERT_NE(xref_file, nullptr);

    symbol *p = new_symbol(sk_program, at("P"), 0);
    symbol *i = new_symbol(sk_variable, at("I"), 1);
    i->entity = new_object();
    i->var_flags = vf_do_variable;
    note_declaration(p, {1, 9}, true);
    note_use(use_modified, i, {2, 1}); // the line and the warning
    note_use(use_referenced, i, {2, 5});
    note_symbol_use(use_declared, i, {2, 0});
    note_declaration(p, null_pos, false);
    note_use(use_referenced, i, {0, 1});
    note_use(use_referenced, new_symbol(sk_variable, {nullptr, {2, 1}}, 1), {2, 1});

    std::rewind(xref_file);
    std::string text;
    for (int c; (c = std::getc(xref_file)) != EOF;) {
        text += static_cast<char>(c);
    }
    std::fclose(xref_file);
    xref_file = nullptr;
    std::remove(source.c_str());
    const std::string file = source.substr(source.rfind('/') + 1);
    EXPECT_EQ(text, "1 P D " + file + " 1 9\n" + "2 I M " + file + " 2 1\n" + "2 I R " + file + " 2 5\n" +
                        "2 I D " + file + " 2 0\n");
    EXPECT_EQ(times(messages(), msg_do_variable_modified_within_do_loop), 1);
}

TEST_F(symbols_test, no_cross_reference_without_its_file) {
    symbol *s = new_symbol(sk_variable, at("NX"), 1);
    s->entity = new_object();
    entity_as<object>(s)->source_corresp.referenced = false;
    note_use(use_referenced, s, {2, 2});
    EXPECT_TRUE(entity_as<object>(s)->source_corresp.referenced);
    EXPECT_EQ(s->xref_number, 0u);
}
