// What the names of procedures, dummy arguments and results may have been before.
#include "declarations/routines.h"

#include "declarations/units.h"
#include "declarations/units_fixture.h"
#include "declarations/variables.h"

namespace zf90 {
namespace {

class RoutinesTest : public UnitsTest {
protected:
    // The unit around the procedure that is declared.
    static void begin_host(program_unit_kind kind) {
        begin_construct_state();
        begin_program_unit(kind);
        symbol *s = new_symbol(kind == uk_module ? sk_module : sk_program, at("HOST"), 0);
        object *o = new_object();
        tie_to_symbol(o, s);
        o->storage_class = kind == uk_module ? sc_module : sc_program;
        o->type = kind == uk_module ? new_type(tk_module) : new_routine_type(o, void_type());
        s->entity = o;
        new_unit_routine(o);
    }

    static symbol *known(symbol_kind kind, const char *name, il_entry *entity = nullptr) {
        symbol *s = new_symbol(kind, at(name), curr_scope_depth);
        if (entity) {
            s->entity = entity;
        }
        return s;
    }

    static object *routine_object() {
        object *o = new_object();
        o->type = new_routine_type(o, unknown_type());
        o->storage_class = sc_internal;
        return o;
    }

    // Declares a procedure X, whose meaning in the scope around it is `s`.
    std::string declaring(bool is_function, symbol *s, type *result_type = nullptr, bool is_entry = false) {
        if (!is_entry) {
            begin_program_unit(is_function ? uk_function : uk_subroutine);
        }
        name = at("X", 7, 9);
        entry = nullptr;
        return messages_of([&] {
            declared = is_function ? declare_function(s, name, result_type, is_entry, entry)
                                   : declare_subroutine(s, name, is_entry, entry);
        });
    }

    static object *object_of(const symbol *s) { return entity_as<object>(s); }

    static std::string message(error_code code) {
        return "(  0: 9) error:   " + std::string(message_text(code)) + "\n";
    }

    // There is no line 7, so messages have neither a file name nor its number.
    static std::string cut(const std::string &text) {
        const std::size_t place = text.find('(');
        return place == std::string::npos ? text : text.substr(place);
    }

    symbol *declared = nullptr;
    entry_description *entry = nullptr;
    name_locator name{};
};

// ---- the name of a procedure

TEST_F(RoutinesTest, ANewName) {
    begin_host(uk_program);
    EXPECT_EQ(declaring(false, nullptr), "");
    EXPECT_EQ(declared->kind, sk_internal_subroutine);
    EXPECT_EQ(declared->scope_depth, 1);
    EXPECT_TRUE(declared->flags & sf_typed);
    EXPECT_EQ(object_of(declared)->storage_class, sc_internal);
    EXPECT_EQ(object_of(declared)->assoc.routine, routine_at(1));
    EXPECT_EQ(object_of(declared)->variant.assoc_scope, curr_row().il_scope);
    EXPECT_EQ(scope_stack[1].il_scope->objects, object_of(declared));
    EXPECT_EQ(entry, nullptr);
}

TEST_F(RoutinesTest, ANewFunction) {
    begin_host(uk_program);
    EXPECT_EQ(declaring(true, nullptr), "");
    EXPECT_EQ(declared->kind, sk_internal_function);
    EXPECT_FALSE(declared->flags & sf_typed);
    EXPECT_EQ(routine_of(object_of(declared)).return_type, unknown_type());
    SetUp();
    begin_host(uk_program);
    EXPECT_EQ(declaring(true, nullptr, default_logical()), "");
    EXPECT_TRUE(declared->flags & sf_typed);
    EXPECT_EQ(routine_of(object_of(declared)).return_type, default_logical());
}

TEST_F(RoutinesTest, ANameInError) {
    begin_construct_state();
    begin_program_unit(uk_function);
    name = {nullptr, {7, 9}};
    EXPECT_EQ(messages_of([&] { declared = declare_function(nullptr, name, nullptr, false, entry); }), "");
    EXPECT_EQ(declared->name, error_atom);
    EXPECT_EQ(declared->kind, sk_function);
    EXPECT_EQ(routine_of(object_of(declared)).return_type, error_type());
    EXPECT_EQ(curr_routine(), object_of(declared));
}

TEST_F(RoutinesTest, NamesThatAreSomethingElse) {
    for (unsigned kind = 0; kind < symbol_kind_count; ++kind) {
        switch (kind) {
        case sk_undetermined:
        case sk_module_procedure:
        case sk_interface:
        case sk_host_candidate: continue;
        default: break;
        }
        for (const bool is_function : {false, true}) {
            SetUp();
            begin_host(uk_program);
            symbol *s = known(static_cast<symbol_kind>(kind), "X");
            EXPECT_EQ(cut(declaring(is_function, s)),
                      message(msg_declaration_conflicts_with_previous_specifications))
                << kind;
            EXPECT_NE(declared, s);
            EXPECT_EQ(s->kind, kind);
            EXPECT_EQ(declared->name, error_atom);
            EXPECT_EQ(declared->kind, is_function ? sk_internal_function : sk_internal_subroutine);
            EXPECT_EQ(name.atom, nullptr);
            EXPECT_EQ(curr_routine(), object_of(declared));
            EXPECT_EQ(unit_kind_of(curr_scope_depth), is_function ? uk_function : uk_subroutine);
        }
    }
}

TEST_F(RoutinesTest, NamesWithoutAClass) {
    begin_host(uk_program);
    symbol *s = known(sk_undetermined, "X");
    EXPECT_EQ(declaring(false, s), "");
    EXPECT_EQ(declared, s);
    EXPECT_EQ(declared->kind, sk_internal_subroutine);
    for (const bool is_function : {false, true}) {
        SetUp();
        begin_host(uk_program);
        s = known(sk_undetermined, "X", default_real());
        s->flags |= sf_typed;
        EXPECT_EQ(cut(declaring(is_function, s)),
                  message(msg_declaration_conflicts_with_previous_specifications));
    }
}

TEST_F(RoutinesTest, NamesOfCommonBlocks) {
    begin_construct_state();
    symbol *block = new_symbol(sk_common_block, at("X"), 0);
    block->flags &= ~std::uint32_t{sf_visible};
    EXPECT_EQ(cut(declaring(false, nullptr)),
              message(msg_declaration_conflicts_with_previous_specifications));

    SetUp();
    begin_host(uk_program);
    known(sk_common_block, "X");
    interface_depth = 1;
    EXPECT_EQ(cut(declaring(true, known(sk_undetermined, "X"))),
              message(msg_declaration_conflicts_with_previous_specifications));
    interface_depth = 0;

    SetUp();
    begin_host(uk_program);
    known(sk_common_block, "X");
    EXPECT_EQ(declaring(false, nullptr), ""); // an internal name is no external name
}

TEST_F(RoutinesTest, ModuleProcedures) {
    begin_host(uk_module);
    object *o = routine_object();
    symbol *s = known(sk_module_procedure, "X", o);
    EXPECT_EQ(declaring(true, s, default_logical()), "");
    EXPECT_EQ(declared, s);
    EXPECT_EQ(s->kind, sk_internal_function);
    EXPECT_EQ(s->entity, o);
    EXPECT_EQ(routine_of(o).return_type, default_logical());
    EXPECT_TRUE(s->flags & sf_typed);
    EXPECT_EQ(o->source_corresp.decl_position, (source_pos{7, 9}));
    EXPECT_EQ(scope_stack[1].il_scope->objects, o);

    SetUp();
    begin_host(uk_program);
    s = known(sk_module_procedure, "X", routine_object());
    EXPECT_EQ(cut(declaring(false, s)), message(msg_previously_mentioned_as_module_procedure));
    EXPECT_TRUE(s->aux2 & pf_body_seen); // and no complaint about a missing body
}

TEST_F(RoutinesTest, AGenericAndItsModuleProcedureOfOneName) {
    begin_host(uk_module);
    object *o = routine_object();
    symbol *hidden = known(sk_module_procedure, "X", o);
    hidden->flags &= ~std::uint32_t{sf_visible};
    symbol *generic = known(sk_interface, "X", new_interface());
    EXPECT_EQ(declaring(false, generic), "");
    EXPECT_EQ(declared, hidden);
    EXPECT_EQ(hidden->kind, sk_internal_subroutine);
    EXPECT_FALSE(hidden->flags & sf_visible);
    EXPECT_EQ(hidden->entity, o);
    EXPECT_EQ(generic->kind, sk_interface);

    SetUp();
    begin_host(uk_module);
    generic = known(sk_interface, "X", new_interface());
    EXPECT_EQ(cut(declaring(false, generic)),
              message(msg_declaration_conflicts_with_previous_specifications));
    SetUp();
    begin_host(uk_program);
    generic = known(sk_interface, "X", new_interface());
    EXPECT_EQ(cut(declaring(false, generic)),
              message(msg_declaration_conflicts_with_previous_specifications));
}

TEST_F(RoutinesTest, AGenericAndItsBodyOfOneName) {
    begin_host(uk_program);
    auto *generic = new_interface();
    symbol *s = known(sk_interface, "X", generic);
    add_interface(curr_row(), generic);
    interface_depth = 1;
    EXPECT_EQ(declaring(false, s), "");
    EXPECT_NE(declared, s);
    EXPECT_EQ(declared->kind, sk_subroutine);
    EXPECT_EQ(declared->scope_depth, 1);
    EXPECT_FALSE(declared->flags & sf_visible);
    EXPECT_EQ(s->kind, sk_interface);

    // A block that is opened again is the current one, though not the last.
    SetUp();
    begin_host(uk_program);
    generic = new_interface();
    s = known(sk_interface, "X", generic);
    add_interface(curr_row(), generic);
    add_interface(curr_row(), new_interface());
    curr_row().current_interface = generic;
    interface_depth = 1;
    EXPECT_EQ(declaring(true, s), "");

    SetUp();
    begin_host(uk_program);
    s = known(sk_interface, "X", new_interface());
    add_interface(curr_row(), new_interface());
    interface_depth = 1;
    EXPECT_EQ(cut(declaring(true, s)), message(msg_declaration_conflicts_with_previous_specifications));
    interface_depth = 0;
}

TEST_F(RoutinesTest, DummyArgumentsInInterfaceBodies) {
    begin_host(uk_program);
    object *o = new_object();
    o->type = default_logical();
    o->is_parameter = true;
    symbol *s = known(sk_dummy, "X", o);
    interface_depth = 1;
    EXPECT_EQ(declaring(true, s), "");
    EXPECT_EQ(s->kind, sk_dummy_function);
    EXPECT_EQ(s->entity, o);
    EXPECT_EQ(o->storage_class, sc_external);
    EXPECT_EQ(routine_of(o).return_type, default_logical()); // as it was declared
    EXPECT_TRUE(o->is_parameter);
    EXPECT_EQ(curr_routine(), o);

    SetUp();
    begin_host(uk_program);
    o = new_object();
    o->type = unknown_type();
    s = known(sk_dummy, "X", o);
    interface_depth = 1;
    EXPECT_EQ(declaring(false, s), "");
    EXPECT_EQ(s->kind, sk_dummy_subroutine);
    EXPECT_EQ(routine_of(o).return_type, void_type());
    interface_depth = 0;
}

TEST_F(RoutinesTest, Candidates) {
    begin_host(uk_program);
    symbol *s = known(sk_host_candidate, "X");
    s->aux2 |= cf_referenced;
    EXPECT_EQ(declaring(true, s), "");
    EXPECT_EQ(s->kind, sk_internal_function);
    EXPECT_TRUE(s->flags & sf_referenced);
    EXPECT_FALSE(s->flags & sf_used_as_bound);
}

// ---- ENTRY

TEST_F(RoutinesTest, NamesOfEntries) {
    const auto entry_after = [&](bool is_function, symbol_kind kind) {
        SetUp();
        begin_construct_state();
        begin_program_unit(is_function ? uk_function : uk_subroutine);
        name = at("UNIT");
        if (is_function) {
            declare_function(nullptr, name, nullptr, false, entry);
        } else {
            declare_subroutine(nullptr, name, false, entry);
        }
        if (kind != sk_folded_external) {
            known(kind, "X", kind == sk_variable ? new_object() : nullptr);
        }
        return cut(declaring(is_function, nullptr, nullptr, true));
    };
    const std::string conflict = message(msg_declaration_conflicts_with_previous_specifications);
    EXPECT_EQ(entry_after(false, sk_folded_external), "");
    EXPECT_EQ(declared->kind, sk_subroutine);
    EXPECT_TRUE(object_of(declared)->is_fortran_entry);
    EXPECT_EQ(entry->assoc_routine, object_of(declared));
    EXPECT_EQ(curr_row().il_scope->entries, entry);
    EXPECT_NE(curr_routine(), object_of(declared));
    EXPECT_EQ(entry_after(true, sk_folded_external), "");
    EXPECT_EQ(entry_after(false, sk_undetermined), conflict);
    EXPECT_NE(entry, nullptr);
    EXPECT_EQ(entry_after(true, sk_undetermined), "");
    for (const symbol_kind kind :
         {sk_variable, sk_dummy, sk_external_pending, sk_host_candidate, sk_host_link}) {
        EXPECT_EQ(entry_after(false, kind), conflict);
        EXPECT_EQ(entry_after(true, kind), conflict);
    }
}

TEST_F(RoutinesTest, APointerMayBecomeTheResultOfAnEntry) {
    begin_construct_state();
    begin_program_unit(uk_function);
    name = at("UNIT");
    declare_function(nullptr, name, nullptr, false, entry);
    object *o = new_object();
    o->type = default_real();
    symbol *s = known(sk_variable, "X", o);
    o->is_pointer = true;
    EXPECT_EQ(declaring(true, nullptr, nullptr, true), "");
    o->is_parameter = true;
    unlink_symbol(declared);
    EXPECT_NE(declaring(true, nullptr, nullptr, true), "");
    EXPECT_EQ(s->kind, sk_variable);
}

TEST_F(RoutinesTest, AnEntryKeepsTheTypeThatTheModuleGaveIt) {
    begin_host(uk_module);
    symbol *s = known(sk_undetermined, "X", default_logical());
    s->flags |= sf_typed;
    begin_program_unit(uk_function);
    name = at("UNIT");
    declare_function(nullptr, name, nullptr, false, entry);
    EXPECT_EQ(declaring(true, s, nullptr, true), "");
    EXPECT_EQ(declared->kind, sk_internal_function);
    EXPECT_EQ(routine_of(object_of(declared)).return_type, default_logical());
}

// ---- dummy arguments

class DummiesTest : public RoutinesTest {
protected:
    void SetUp() override {
        RoutinesTest::SetUp();
        begin_construct_state();
        begin_program_unit(uk_subroutine);
        name_locator unit = at("UNIT");
        declare_subroutine(nullptr, unit, false, main_entry);
        name_locator second = at("SECOND");
        declare_subroutine(nullptr, second, true, second_entry);
    }

    std::string adding(dummy_list &list, symbol *s, const char *dummy_name = "X") {
        name = at(dummy_name, 7, 9);
        return cut(messages_of([&] { declare_dummy(list, s, name); }));
    }

    entry_description *main_entry = nullptr;
    entry_description *second_entry = nullptr;
};

TEST_F(DummiesTest, NewNames) {
    dummy_list list = begin_dummy_list(nullptr);
    EXPECT_EQ(adding(list, nullptr), "");
    const symbol *s = atom_of("X")->first_symbol;
    EXPECT_EQ(s->kind, sk_dummy);
    EXPECT_EQ(object_of(s)->type, unknown_type());
    EXPECT_TRUE(object_of(s)->is_parameter);
    EXPECT_EQ(object_of(s)->storage_class, sc_local);
    EXPECT_EQ(object_of(s)->assoc.routine, curr_routine());
    EXPECT_EQ(names(curr_row().il_scope->objects), "X");
    EXPECT_EQ(names(curr_row().il_scope->parameters), "X");
}

TEST_F(DummiesTest, NamesInErrorKeepTheirPlace) {
    dummy_list list = begin_dummy_list(nullptr);
    name = {nullptr, {7, 9}};
    declare_dummy(list, nullptr, name);
    EXPECT_EQ(curr_row().il_scope->parameters->object->type, error_type());
    EXPECT_EQ(curr_row().il_scope->objects, nullptr);
}

TEST_F(DummiesTest, RepeatedNames) {
    const std::string repeated = message(msg_variable_already_specified_in_dummy_argument_list);
    for (const symbol_kind kind :
         {sk_variable, sk_dummy, sk_dummy_function, sk_dummy_subroutine, sk_dummy_procedure}) {
        SetUp();
        object *o = new_object();
        o->type = default_real();
        o->is_parameter = true;
        symbol *s = known(kind, "X", o);
        tie_to_symbol(o, s);
        dummy_list list = begin_dummy_list(nullptr);
        EXPECT_EQ(adding(list, s), repeated);
        EXPECT_EQ(name.atom, nullptr);
        list = begin_dummy_list(second_entry);
        EXPECT_EQ(adding(list, s), "");
        EXPECT_EQ(adding(list, nullptr, "Y"), "");
        EXPECT_EQ(adding(list, s), repeated);
        end_dummy_list(list);
        name_locator third = at("THIRD");
        declare_subroutine(nullptr, third, true, main_entry);
        list = begin_dummy_list(main_entry);
        EXPECT_EQ(adding(list, s), "");
        EXPECT_EQ(names(second_entry->parameters), "X Y <error>");
        EXPECT_EQ(names(main_entry->parameters), "X");
    }
}

TEST_F(DummiesTest, NamesWithATypeOnly) {
    dummy_list list = begin_dummy_list(second_entry);
    const auto become = [&](symbol_kind kind, type *t, symbol_kind expected) {
        symbol *s = known(kind, "X", t);
        EXPECT_EQ(adding(list, s), "");
        EXPECT_EQ(s->kind, expected);
        EXPECT_TRUE(object_of(s)->is_parameter);
        EXPECT_EQ(curr_row().last_object, object_of(s));
        unlink_symbol(s);
        return object_of(s);
    };
    EXPECT_EQ(become(sk_undetermined, default_logical(), sk_dummy)->type, default_logical());
    EXPECT_EQ(become(sk_data_name, default_logical(), sk_dummy)->type, default_logical());
    const object *function = become(sk_external_pending, default_logical(), sk_dummy_function);
    EXPECT_EQ(routine_of(function).return_type, default_logical());
    EXPECT_EQ(function->storage_class, sc_external);
    const object *procedure = become(sk_external_pending, unknown_type(), sk_dummy_procedure);
    EXPECT_EQ(routine_of(procedure).return_type, unknown_type());
    EXPECT_EQ(procedure->storage_class, sc_external);
}

TEST_F(DummiesTest, CandidatesKeepTheirMarks) {
    dummy_list list = begin_dummy_list(second_entry);
    symbol *s = known(sk_host_candidate, "X", default_logical());
    s->aux2 |= cf_used_as_bound;
    EXPECT_EQ(adding(list, s), "");
    EXPECT_EQ(s->kind, sk_dummy);
    EXPECT_EQ(object_of(s)->type, unknown_type());
    EXPECT_TRUE(s->flags & sf_used_as_bound);
}

TEST_F(DummiesTest, NamesThatAreNoVariables) {
    for (unsigned kind = 0; kind < symbol_kind_count; ++kind) {
        switch (kind) {
        case sk_variable:
        case sk_dummy:
        case sk_dummy_function:
        case sk_dummy_subroutine:
        case sk_dummy_procedure:
        case sk_undetermined:
        case sk_data_name:
        case sk_external_pending:
        case sk_host_candidate: continue;
        default: break;
        }
        dummy_list list = begin_dummy_list(second_entry);
        symbol *s = known(static_cast<symbol_kind>(kind), "X");
        EXPECT_EQ(adding(list, s), message(msg_identifier_is_not_variable)) << kind;
        EXPECT_EQ(list.last->object->type, error_type());
        unlink_symbol(s);
    }
}

TEST_F(DummiesTest, VariablesThatCannotBeDummyArguments) {
    const auto dummy_after = [&](auto change) {
        dummy_list list = begin_dummy_list(second_entry);
        object *o = new_object();
        o->type = default_real();
        o->storage_class = sc_associated;
        o->is_auto = true;
        symbol *s = known(sk_variable, "X", o);
        change(s, o);
        const std::string text = adding(list, s);
        unlink_symbol(s);
        EXPECT_EQ(o->is_parameter, text.empty());
        if (text.empty()) {
            EXPECT_FALSE(o->is_auto);
            EXPECT_EQ(o->storage_class, sc_local);
            EXPECT_EQ(o->assoc.routine, curr_routine());
            EXPECT_EQ(o->source_corresp.decl_position, (source_pos{7, 9}));
        }
        return text;
    };
    EXPECT_EQ(dummy_after([](symbol *, object *) {}), "");
    EXPECT_EQ(dummy_after([](symbol *s, object *) {
                  s->flags |= sf_referenced | sf_saved;
                  s->var_flags |= vf_in_common;
              }),
              message(msg_prior_use_is_inconsistent_with_specification_as_dummy));
    EXPECT_EQ(dummy_after([](symbol *s, object *) { s->var_flags |= vf_in_common | vf_equivalenced; }),
              message(msg_variable_declared_in_common_is_not_allowed));
    EXPECT_EQ(dummy_after([](symbol *s, object *) { s->var_flags |= vf_equivalenced | vf_initialized; }),
              message(msg_variable_appearing_in_equivalence_is_not_allowed));
    EXPECT_EQ(dummy_after([](symbol *s, object *) {
                  s->var_flags |= vf_initialized;
                  s->flags |= sf_saved;
              }),
              message(msg_data_initialized_variable_is_not_allowed));
    EXPECT_EQ(dummy_after([](symbol *s, object *) {
                  s->flags |= sf_saved;
                  s->var_flags |= vf_in_namelist;
              }),
              message(msg_saved_variable_is_not_allowed));
    EXPECT_EQ(dummy_after([](symbol *s, object *o) {
                  s->var_flags |= vf_in_namelist;
                  o->is_result = true;
              }),
              message(msg_member_of_namelist_group_is_not_allowed));
    EXPECT_EQ(dummy_after([](symbol *, object *o) { o->is_result = true; }),
              message(msg_function_result_name_is_not_allowed));
}

// ---- results

TEST_F(RoutinesTest, ResultsThatAreDummyArguments) {
    for (const symbol_kind kind :
         {sk_variable, sk_dummy, sk_dummy_function, sk_dummy_subroutine, sk_dummy_procedure}) {
        SetUp();
        begin_construct_state();
        EXPECT_EQ(declaring(true, nullptr), "");
        object *o = new_object();
        o->type = default_real();
        o->is_parameter = true;
        symbol *s = known(kind, "R", o);
        name = at("R", 7, 9);
        EXPECT_EQ(cut(messages_of([&] { declare_result(s, name, nullptr); })),
                  message(msg_declaration_conflicts_with_previous_specifications));
        EXPECT_EQ(name.atom, nullptr);
        EXPECT_NE(curr_row().il_scope->function_result_var, nullptr);
    }
}

TEST_F(RoutinesTest, ResultsNamedAsAnEntry) {
    begin_construct_state();
    EXPECT_EQ(declaring(true, nullptr), "");
    name = at("X");
    declare_result(nullptr, name, nullptr);
    name = at("G");
    entry_description *first;
    declare_function(nullptr, name, nullptr, true, first);
    name = at("G");
    declare_result(nullptr, name, first);
    name = at("H");
    entry_description *second;
    declare_function(nullptr, name, nullptr, true, second);
    for (const char *taken : {"X", "G"}) {
        name = at(taken, 7, 9);
        curr_name = name;
        symbol *s = lookup_current();
        EXPECT_EQ(cut(messages_of([&] { declare_result(s, name, second); })),
                  message(msg_result_name_must_not_be_same_as_entry));
    }
}

TEST_F(RoutinesTest, TypesOfResults) {
    begin_construct_state();
    EXPECT_EQ(declaring(true, nullptr, default_logical()), "");
    name = at("R");
    declare_result(nullptr, name, nullptr);
    EXPECT_EQ(curr_row().il_scope->function_result_var->type, default_logical());

    SetUp();
    begin_construct_state();
    EXPECT_EQ(declaring(true, nullptr), "");
    symbol *s = known(sk_undetermined, "R", default_logical());
    s->flags |= sf_typed;
    name = at("R");
    declare_result(s, name, nullptr);
    EXPECT_EQ(s->kind, sk_variable);
    EXPECT_EQ(routine_of(curr_routine()).return_type, default_logical());
    EXPECT_TRUE(declared->flags & sf_typed);
}

// ---- names that must be variables

TEST_F(RoutinesTest, MakeVariable) {
    begin_host(uk_program);
    name = at("X", 7, 9);
    symbol *s = make_variable(nullptr, name);
    EXPECT_EQ(s->kind, sk_variable);
    EXPECT_EQ(make_variable(s, name), s);
    EXPECT_EQ(object_of(s)->type, unknown_type()); // the implicit type waits for the end of the declarations
    EXPECT_EQ(object_of(s)->assoc.routine, curr_routine());

    spec_part_over = true;
    name = at("Y");
    EXPECT_EQ(object_of(make_variable(nullptr, name))->type, default_real());
    EXPECT_EQ(names(curr_row().il_scope->objects), "X Y");

    object *o = new_object();
    o->type = unknown_type();
    symbol *dummy = known(sk_dummy, "N", o);
    name = at("N");
    EXPECT_EQ(make_variable(dummy, name), dummy);
    EXPECT_EQ(dummy->kind, sk_variable);
    EXPECT_EQ(dummy->entity, o);
    EXPECT_EQ(o->type, default_integer());

    symbol *candidate = known(sk_host_candidate, "Z", default_logical());
    name = at("Z");
    EXPECT_EQ(make_variable(candidate, name), candidate);
    EXPECT_EQ(candidate->kind, sk_variable);

    symbol *used = known(sk_host_candidate, "W", default_logical());
    used->flags |= sf_referenced;
    name = at("W");
    EXPECT_EQ(make_variable(used, name), used);
    EXPECT_EQ(object_of(used)->type, default_logical());
}

TEST_F(RoutinesTest, NamesThatAreNoVariable) {
    begin_host(uk_program);
    const auto making = [&](symbol_kind kind) {
        name = at("X", 7, 9);
        symbol *s = known(kind, "X");
        const std::string text = cut(messages_of([&] { declared = make_variable(s, name); }));
        EXPECT_EQ(declared->name, error_atom);
        EXPECT_EQ(declared->kind, sk_variable);
        EXPECT_EQ(object_of(declared)->type, error_type());
        EXPECT_EQ(name.atom, nullptr);
        unlink_symbol(s);
        return text;
    };
    EXPECT_EQ(making(sk_implied_do_var), message(msg_invalid_use_of_implied_do_variable));
    EXPECT_EQ(making(sk_subroutine), message(msg_identifier_is_not_variable));
    EXPECT_EQ(making(sk_namelist), message(msg_identifier_is_not_variable));
    EXPECT_EQ(curr_row().il_scope->objects, nullptr);
}

} // namespace
} // namespace zf90
