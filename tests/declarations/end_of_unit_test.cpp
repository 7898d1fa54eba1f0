// The final kinds of names, and the reports of names that are never used.
#include "declarations/end_of_unit.h"

#include "declarations/routines.h"
#include "declarations/units.h"
#include "declarations/units_fixture.h"
#include "declarations/variables.h"

namespace zf90 {
namespace {

class EndOfUnitTest : public UnitsTest {
protected:
    void SetUp() override {
        UnitsTest::SetUp();
        diagnostic_threshold = severity_remark;
        open_text("\n"); // positions on its line are in the primary source
        next_statement();
    }

    static void begin(program_unit_kind kind) {
        begin_construct_state();
        begin_program_unit(kind);
        name_locator name = at("UNIT");
        entry_description *entry;
        if (kind == uk_function) {
            declare_function(nullptr, name, nullptr, false, entry);
        } else {
            declare_subroutine(nullptr, name, false, entry);
        }
        object *routine = curr_routine();
        if (kind == uk_block_data) {
            routine->storage_class = sc_blockdata;
        } else if (kind == uk_program) {
            routine->storage_class = sc_program;
        } else if (kind == uk_module) {
            routine->storage_class = sc_module;
        }
    }

    static symbol *add(symbol_kind kind, const char *name, std::uint32_t flags = 0) {
        symbol *s = new_symbol(kind, at(name), curr_scope_depth);
        s->flags |= flags;
        return s;
    }

    static symbol *variable(const char *name, std::uint32_t flags = 0) {
        symbol *s = add(sk_undetermined, name, flags);
        name_locator locator = at(name);
        return make_variable(s, locator);
    }

    static object *object_of(const symbol *s) { return entity_as<object>(s); }

    // The messages of finishing the unit's names, without their positions.
    std::string finishing() {
        std::string text = messages_of([] { finish_row(curr_scope_depth); });
        std::string result;
        for (std::size_t at_line = 0; at_line < text.size();) {
            const std::size_t end = text.find('\n', at_line);
            result += text.substr(text.find(") ", at_line) + 2, end - text.find(") ", at_line) - 1);
            at_line = end + 1;
        }
        return result;
    }

    static std::string text(const char *level, error_code code, const char *argument = "X") {
        std::string result = message_text(code);
        result.replace(result.find("%s"), 2, argument);
        return level + result + "\n";
    }
    static std::string remark(error_code code, const char *argument = "X") {
        return text("remark:  ", code, argument);
    }
    static std::string warning(error_code code, const char *argument = "X") {
        return text("warning: ", code, argument);
    }
    static std::string error(error_code code, const char *argument = "X") {
        return text("error:   ", code, argument);
    }
};

// ---- final kinds

TEST_F(EndOfUnitTest, NamesWithoutAClassBecomeVariables) {
    begin(uk_subroutine);
    const symbol *x = add(sk_undetermined, "X", sf_referenced);
    const symbol *i = add(sk_undetermined, "I", sf_referenced | sf_typed);
    const_cast<symbol *>(i)->entity = default_logical();
    EXPECT_EQ(finishing(), "");
    EXPECT_EQ(x->kind, sk_variable);
    EXPECT_EQ(object_of(x)->type, default_real());
    EXPECT_EQ(object_of(x)->storage_class, sc_local);
    EXPECT_EQ(object_of(x)->assoc.routine, curr_routine());
    EXPECT_EQ(object_of(i)->type, default_logical());
    EXPECT_EQ(names(curr_row().il_scope->objects), "X I");
}

TEST_F(EndOfUnitTest, CalledNamesBecomeProcedures) {
    begin(uk_subroutine);
    const symbol *f = add(sk_undetermined, "F", sf_referenced | sf_called);
    const symbol *s = add(sk_undetermined, "S", sf_referenced | sf_called | sf_called_as_subroutine);
    symbol *i = add(sk_undetermined, "I", sf_referenced | sf_called | sf_typed);
    i->entity = default_logical();
    symbol *a = add(sk_undetermined, "A", sf_referenced | sf_called | sf_typed);
    a->entity = new_array_type(default_real(), 1);
    EXPECT_EQ(finishing(), "");
    EXPECT_EQ(f->kind, sk_function);
    EXPECT_EQ(object_of(f)->type->routine.return_type, default_real());
    EXPECT_EQ(object_of(f)->storage_class, sc_external);
    EXPECT_EQ(object_of(f)->source_corresp.scope_depth, 0);
    EXPECT_FALSE(object_of(f)->type->routine.has_param_info);
    EXPECT_EQ(object_of(f)->assoc.routine, nullptr);
    EXPECT_EQ(s->kind, sk_subroutine);
    EXPECT_EQ(object_of(s)->type->routine.return_type, void_type());
    EXPECT_EQ(object_of(i)->type->routine.return_type, default_logical());
    EXPECT_EQ(a->kind, sk_variable);
    EXPECT_EQ(global_symbol(f->name)->entity, f->entity);
    EXPECT_EQ(names(scope_stack[0].il_scope->objects), "F S I");
}

TEST_F(EndOfUnitTest, CalledNamesOfIntrinsics) {
    begin(uk_subroutine);
    const symbol *f = add(sk_undetermined, "SIN", sf_referenced | sf_called);
    const symbol *s = add(sk_undetermined, "MVBITS", sf_referenced | sf_called | sf_called_as_subroutine);
    const symbol *c = add(sk_undetermined, "COS", sf_referenced | sf_called | sf_called_as_subroutine);
    EXPECT_EQ(finishing(), "");
    EXPECT_TRUE(f->kind == sk_intrinsic_function || f->kind == sk_specific_function);
    EXPECT_EQ(s->kind, sk_intrinsic_subroutine);
    EXPECT_EQ(c->kind, sk_subroutine);
}

TEST_F(EndOfUnitTest, ExternalNames) {
    begin(uk_subroutine);
    const symbol *unused = add(sk_external_pending, "A", sf_referenced);
    symbol *typed = add(sk_external_pending, "B", sf_referenced | sf_typed);
    typed->entity = default_logical();
    const symbol *function = add(sk_external_pending, "C", sf_referenced | sf_called);
    const symbol *subroutine =
        add(sk_external_pending, "D", sf_referenced | sf_called | sf_called_as_subroutine);
    symbol *both =
        add(sk_external_pending, "E", sf_referenced | sf_called | sf_called_as_subroutine | sf_typed);
    both->entity = default_logical();
    EXPECT_EQ(finishing(), "");
    EXPECT_EQ(unused->kind, sk_external_unused);
    EXPECT_EQ(object_of(unused)->type->routine.return_type, unknown_type());
    EXPECT_EQ(object_of(unused)->storage_class, sc_external);
    EXPECT_EQ(typed->kind, sk_function);
    EXPECT_EQ(object_of(typed)->type->routine.return_type, default_logical());
    EXPECT_EQ(function->kind, sk_function);
    EXPECT_EQ(object_of(function)->type->routine.return_type, default_real());
    EXPECT_EQ(subroutine->kind, sk_subroutine);
    EXPECT_EQ(both->kind, sk_subroutine);
    EXPECT_EQ(object_of(both)->type->routine.return_type, void_type());
    EXPECT_EQ(names(scope_stack[0].il_scope->objects), "A B C D E");
}

TEST_F(EndOfUnitTest, UnusedExternalsOnSecondSight) {
    begin(uk_subroutine);
    symbol *a = add(sk_external_pending, "A", sf_referenced);
    symbol *b = add(sk_external_pending, "B", sf_referenced);
    symbol *c = add(sk_external_pending, "C", sf_referenced);
    finishing();
    b->flags |= sf_called;
    c->flags |= sf_called | sf_called_as_subroutine;
    EXPECT_EQ(finishing(), "");
    EXPECT_EQ(a->kind, sk_external_unused);
    EXPECT_EQ(object_of(a)->type->routine.return_type, unspec_routine_type());
    EXPECT_EQ(b->kind, sk_function);
    EXPECT_EQ(object_of(b)->type->routine.return_type, default_real());
    EXPECT_EQ(c->kind, sk_subroutine);
    EXPECT_EQ(object_of(c)->type->routine.return_type, void_type());
    EXPECT_EQ(names(scope_stack[0].il_scope->objects), "A B C");
}

TEST_F(EndOfUnitTest, DummyArguments) {
    begin(uk_subroutine);
    dummy_list list = begin_dummy_list(nullptr);
    const auto dummy = [&](const char *name, std::uint32_t flags) {
        name_locator locator = at(name);
        declare_dummy(list, nullptr, locator);
        symbol *s = atom_of(name)->first_symbol;
        s->flags |= sf_referenced | flags;
        return s;
    };
    const symbol *data = dummy("A", 0);
    const symbol *function = dummy("B", sf_called);
    const symbol *subroutine = dummy("C", sf_called | sf_called_as_subroutine);
    symbol *typed = dummy("D", sf_called | sf_called_as_subroutine | sf_typed);
    object_of(typed)->type = default_logical();
    symbol *array = dummy("E", sf_called | sf_typed);
    object_of(array)->type = new_array_type(default_real(), 1);
    end_dummy_list(list);
    EXPECT_EQ(finishing(), "");
    EXPECT_EQ(data->kind, sk_variable);
    EXPECT_EQ(object_of(data)->type, default_real());
    EXPECT_EQ(function->kind, sk_dummy_function);
    EXPECT_EQ(object_of(function)->storage_class, sc_external);
    EXPECT_EQ(object_of(function)->type->routine.return_type, default_real());
    EXPECT_EQ(subroutine->kind, sk_dummy_subroutine);
    EXPECT_EQ(object_of(subroutine)->type->routine.return_type, void_type());
    EXPECT_EQ(typed->kind, sk_dummy_function);
    EXPECT_EQ(object_of(typed)->type->routine.return_type, default_logical());
    EXPECT_EQ(array->kind, sk_variable);
    EXPECT_EQ(scope_stack[0].il_scope->objects, nullptr); // they are no external names
}

TEST_F(EndOfUnitTest, ExternalDummyArguments) {
    begin(uk_subroutine);
    dummy_list list = begin_dummy_list(nullptr);
    const auto dummy = [&](const char *name, std::uint32_t flags) {
        symbol *s = add(sk_external_pending, name, sf_referenced | flags);
        name_locator locator = at(name);
        declare_dummy(list, s, locator);
        return s;
    };
    const symbol *unused = dummy("A", 0);
    const symbol *function = dummy("B", sf_called);
    const symbol *subroutine = dummy("C", sf_called | sf_called_as_subroutine);
    symbol *typed = add(sk_external_pending, "D", sf_referenced | sf_typed);
    typed->entity = default_logical();
    name_locator locator = at("D");
    declare_dummy(list, typed, locator);
    EXPECT_EQ(unused->kind, sk_dummy_procedure);
    EXPECT_EQ(typed->kind, sk_dummy_function);
    EXPECT_EQ(finishing(), "");
    EXPECT_EQ(unused->kind, sk_dummy_procedure);
    EXPECT_EQ(object_of(unused)->type->routine.return_type, unspec_routine_type());
    EXPECT_EQ(function->kind, sk_dummy_function);
    EXPECT_EQ(object_of(function)->type->routine.return_type, default_real());
    EXPECT_EQ(subroutine->kind, sk_dummy_subroutine);
    EXPECT_EQ(object_of(subroutine)->type->routine.return_type, void_type());
    EXPECT_EQ(object_of(typed)->type->routine.return_type, default_logical());
    EXPECT_EQ(names(curr_row().il_scope->parameters), "A B C D");
}

TEST_F(EndOfUnitTest, ImpliedDoVariables) {
    begin(uk_subroutine);
    symbol *s = add(sk_implied_do_var, "I", sf_referenced);
    s->entity = default_integer();
    EXPECT_EQ(finishing(), "");
    EXPECT_EQ(s->kind, sk_variable);
    EXPECT_EQ(object_of(s)->storage_class, sc_implied_do_var);
    EXPECT_EQ(object_of(s)->type, default_integer());
    EXPECT_EQ(object_of(s)->assoc.implied_do, nullptr);
}

TEST_F(EndOfUnitTest, MarksGoOutward) {
    begin(uk_program);
    symbol *real = variable("A");
    symbol *outer = add(sk_host_candidate, "B");
    push_scope(sr_unit);
    symbol *a = add(sk_host_candidate, "A", sf_referenced | sf_called);
    a->aux = real;
    symbol *b = add(sk_host_candidate, "B", sf_used_as_bound | sf_called_as_subroutine);
    b->aux = outer;
    b->aux2 |= cf_referenced;
    add(sk_host_candidate, "C", sf_referenced);
    EXPECT_EQ(finishing(), "");
    EXPECT_TRUE(real->flags & sf_referenced);
    EXPECT_TRUE(real->flags & sf_called);
    EXPECT_FALSE(real->flags & sf_used_as_bound);
    EXPECT_EQ(outer->aux2, std::uint32_t{cf_referenced | cf_used_as_bound});
    EXPECT_FALSE(outer->flags & (sf_referenced | sf_used_as_bound));
    EXPECT_TRUE(outer->flags & sf_called_as_subroutine);
}

TEST_F(EndOfUnitTest, SaveReachesLocalVariables) {
    begin(uk_function);
    symbol *local = variable("A", sf_referenced);
    symbol *dummy = variable("B", sf_referenced);
    symbol *constant = variable("C", sf_referenced);
    symbol *automatic = variable("D", sf_referenced);
    symbol *result = variable("E", sf_referenced);
    symbol *late = add(sk_undetermined, "F", sf_referenced);
    object_of(dummy)->is_parameter = true;
    object_of(constant)->is_constant = true;
    object_of(automatic)->is_auto = true;
    object_of(result)->is_result = true;
    global_save = true;
    EXPECT_EQ(finishing(), "");
    EXPECT_TRUE(object_of(local)->is_saved);
    EXPECT_FALSE(object_of(dummy)->is_saved);
    EXPECT_FALSE(object_of(constant)->is_saved);
    EXPECT_FALSE(object_of(automatic)->is_saved);
    EXPECT_FALSE(object_of(result)->is_saved);
    EXPECT_EQ(late->kind, sk_variable);
    EXPECT_TRUE(object_of(late)->is_saved);
}

TEST_F(EndOfUnitTest, AssumedLengthNeedsADummyArgument) {
    begin(uk_subroutine);
    type *any = assumed_character_type(default_character_kind);
    const auto declare = [&](const char *name, type *t) {
        symbol *s = variable(name, sf_referenced | sf_typed);
        object_of(s)->type = t;
        return object_of(s);
    };
    declare("X", any);
    declare("D", any)->is_parameter = true;
    declare("R", any)->is_result = true;
    declare("C", any)->is_constant = true;
    declare("A", new_array_type(any, 1));
    EXPECT_EQ(finishing(), error(msg_variable_is_character_and_is_not_dummy_argument) +
                               error(msg_variable_is_character_and_is_not_dummy_argument, "A"));
}

TEST_F(EndOfUnitTest, LabelsAndModuleProcedures) {
    begin(uk_subroutine);
    const auto add_label_symbol = [](const char *name, std::uint32_t aux2) {
        symbol *s = add(sk_label, name, sf_referenced);
        s->entity = new_label();
        s->aux2 |= aux2;
    };
    add_label_symbol("10", 0);
    add_label_symbol("20", lf_defined);
    add_label_symbol("30", lf_reported); // its loop has been reported
    add(sk_module_procedure, "S", sf_referenced);
    add(sk_module_procedure, "T", sf_referenced)->aux2 |= pf_body_seen;
    EXPECT_EQ(finishing(), error(msg_label_was_referenced_but_not_defined, "10") +
                               error(msg_module_procedure_is_referenced_but_not_declared, "S"));
}

TEST_F(EndOfUnitTest, LocalNamesInBlockData) {
    begin(uk_block_data);
    curr_row().names_public = true;
    const auto declare = [](const char *name, std::uint32_t var_flags, bool has_value = false) {
        symbol *s = variable(name);
        s->var_flags |= var_flags;
        if (has_value) {
            object_of(s)->variant.initializer = &null_constant;
        }
        return object_of(s);
    };
    declare("X", 0);
    const object *y = declare("Y", vf_initialized, true);
    declare("Z", vf_initialized);
    declare("A", vf_in_common);
    declare("B", vf_equivalenced);
    declare("C", 0)->is_constant = true;
    declare("ID", 0)->symbol_link->flags |= sf_implied_do;
    EXPECT_EQ(finishing(), warning(msg_declaration_of_local_variable_ignored) +
                               warning(msg_data_initialization_of_local_variable_ignored, "Y"));
    EXPECT_EQ(y->variant.initializer, nullptr);
}

TEST_F(EndOfUnitTest, AccessOfTheUnitReachesAllNames) {
    begin(uk_module);
    symbol *given = variable("A", sf_access_given);
    given->flags &= ~std::uint32_t{sf_public};
    symbol *type_name = add(sk_derived_type, "T");
    type_name->entity = new_type(tk_derived_type);
    symbol *generic = add(sk_interface, "G");
    generic->entity = new_interface();
    symbol *group = add(sk_namelist, "N");
    group->entity = new_namelist_group();
    curr_row().names_public = true;
    EXPECT_EQ(finishing(), warning(msg_variable_declared_and_never_referenced, "A"));
    EXPECT_FALSE(given->flags & sf_public);
    EXPECT_TRUE(entity_as<type>(type_name)->is_public);
    EXPECT_TRUE(entity_as<interface>(generic)->is_public);
    EXPECT_TRUE(entity_as<namelist_group>(group)->is_public);
    curr_row().names_public = false; // PRIVATE behind the declarations
    finishing();
    EXPECT_FALSE(entity_as<type>(type_name)->is_public);
    EXPECT_FALSE(entity_as<interface>(generic)->is_public);
    EXPECT_FALSE(entity_as<namelist_group>(group)->is_public);
}

// ---- names that are never used

TEST_F(EndOfUnitTest, UnusedNamesByKind) {
    begin(uk_subroutine);
    const auto report = [&](symbol_kind kind, il_entry *entity = nullptr) {
        symbol *s = add(kind, "X", sf_typed);
        if (entity) {
            s->entity = entity;
        }
        s->aux2 |= kind == sk_label ? lf_defined : 0u;
        curr_row().first_symbol = curr_row().last_symbol = s;
        const std::string messages = finishing();
        unlink_symbol(s);
        if (symbol *record = global_symbol(s->name)) {
            unlink_symbol(record);
        }
        curr_row().first_symbol = curr_row().last_symbol = nullptr;
        return messages;
    };
    const auto routine_object = [](storage_class sc = sc_external) {
        object *o = new_object();
        o->type = new_routine_type(o, default_real());
        o->storage_class = sc;
        return o;
    };
    const auto dummy = [&] {
        object *o = routine_object();
        o->is_parameter = true;
        return o;
    };
    label *branch = new_label();
    set_label_kind(branch, lk_executable);
    label *specification = new_label();
    set_label_kind(specification, lk_specification);
    label *else_label = new_label();
    set_label_kind(else_label, lk_else_or_elseif);
    EXPECT_EQ(report(sk_derived_type, new_type(tk_derived_type)),
              remark(msg_type_declared_and_never_referenced));
    for (const symbol_kind kind :
         {sk_subroutine, sk_function, sk_internal_subroutine, sk_internal_function, sk_external_unused}) {
        EXPECT_EQ(report(kind, routine_object()), remark(msg_routine_declared_and_never_referenced)) << kind;
    }
    EXPECT_EQ(report(sk_function, curr_routine()), "");
    EXPECT_EQ(report(sk_external_pending, default_real()), remark(msg_routine_declared_and_never_referenced));
    EXPECT_EQ(report(sk_stmt_function, routine_object()),
              warning(msg_statement_function_declared_and_never_referenced));
    for (const symbol_kind kind :
         {sk_specific_function, sk_specific_subroutine, sk_intrinsic_function, sk_intrinsic_subroutine}) {
        EXPECT_EQ(report(kind), remark(msg_intrinsic_declared_and_never_referenced)) << kind;
    }
    EXPECT_EQ(report(sk_label, branch), remark(msg_label_defined_and_never_referenced));
    EXPECT_EQ(report(sk_label, specification), "");
    EXPECT_EQ(report(sk_label, else_label), "");
    EXPECT_EQ(report(sk_undetermined, default_real()), warning(msg_variable_declared_and_never_referenced));
    for (const symbol_kind kind : {sk_dummy_function, sk_dummy_subroutine, sk_dummy_procedure}) {
        EXPECT_EQ(report(kind, dummy()), remark(msg_dummy_argument_declared_and_never_referenced)) << kind;
    }
    EXPECT_EQ(report(sk_interface, new_interface()), remark(msg_interface_declared_and_never_referenced));
    EXPECT_EQ(report(sk_namelist, new_namelist_group()), remark(msg_namelist_declared_and_never_referenced));
    EXPECT_EQ(report(sk_host_candidate), "");
    EXPECT_EQ(report(sk_host_link), "");
    EXPECT_EQ(report(sk_common_block), "");
}

TEST_F(EndOfUnitTest, UnusedVariables) {
    begin(uk_function);
    const auto report = [&](auto change) {
        symbol *s = variable("X");
        change(s, object_of(s));
        curr_row().first_symbol = curr_row().last_symbol = s;
        const std::string messages = finishing();
        unlink_symbol(s);
        curr_row().first_symbol = curr_row().last_symbol = nullptr;
        return messages;
    };
    const std::string unused = warning(msg_variable_declared_and_never_referenced);
    object *storage = new_object();
    EXPECT_EQ(report([](symbol *, object *) {}), unused);
    EXPECT_EQ(report([](symbol *, object *o) { o->is_constant = true; }), unused);
    EXPECT_EQ(report([](symbol *, object *o) { o->is_parameter = true; }),
              remark(msg_dummy_argument_declared_and_never_referenced));
    EXPECT_EQ(report([](symbol *s, object *) { s->var_flags |= vf_in_common; }), "");
    const auto equivalenced = [&](bool referenced) {
        return report([&](symbol *s, object *o) {
            s->var_flags |= vf_equivalenced;
            o->storage_class = sc_associated;
            o->assoc.variable = storage;
            storage->source_corresp.referenced = referenced;
        });
    };
    EXPECT_EQ(equivalenced(true), "");
    EXPECT_EQ(equivalenced(false), unused);
    const auto result = [&](const char *function_name) {
        return report([&](symbol *, object *o) {
            o->is_result = true;
            o->variant.result_var_function = new_object();
            o->variant.result_var_function->source_corresp.name = atom_of(function_name);
        });
    };
    EXPECT_EQ(result("F"), warning(msg_result_variable_never_referenced));
    EXPECT_EQ(result("X"), "");
    for (const std::uint32_t flag : {sf_referenced, sf_used_as_bound}) {
        EXPECT_EQ(report([&](symbol *s, object *o) {
                      s->flags |= flag | sf_typed;
                      o->type = default_integer();
                  }),
                  "");
    }
    EXPECT_EQ(report([](symbol *s, object *) { s->flags |= sf_public | sf_access_given; }), "");
}

TEST_F(EndOfUnitTest, InterfaceBodiesReportNothing) {
    begin(uk_subroutine);
    interface_depth = 1;
    begin(uk_subroutine);
    variable("X");
    EXPECT_EQ(finishing(), "");
    interface_depth = 0;
}

TEST_F(EndOfUnitTest, InAnIncludedFileAllIsARemark) {
    UnitsTest::SetUp();
    diagnostic_threshold = severity_remark;
    scratch_directory::write("inc.h", "implicit none\n");
    EXPECT_EQ(compile("subroutine s\ninclude 'inc.h'\nend\n"), "");
    begin(uk_subroutine);
    symbol *s = variable("X");
    s->decl_position = {3, 5}; // the line of the included file
    variable("Y")->decl_position = {1, 1};
    EXPECT_EQ(finishing(), remark(msg_variable_declared_and_never_referenced) +
                               warning(msg_variable_declared_and_never_referenced, "Y"));
}

} // namespace
} // namespace zf90
