// The records that program units leave behind.
#include "declarations/units_fixture.h"

#include "declarations/routines.h"
#include "declarations/type_spec.h"
#include "declarations/units.h"
#include "statements/handlers.h"

namespace zf90 {
namespace {

TEST_F(UnitsTest, ASubroutine) {
    EXPECT_EQ(compile("subroutine s(a, n)\nend\n"), "");
    const object *s = routine("S");
    ASSERT_NE(s, nullptr);
    EXPECT_EQ(s->storage_class, sc_external);
    EXPECT_EQ(s->source_corresp.scope_depth, 0);
    EXPECT_EQ(s->source_corresp.decl_position, (source_pos{1, 12}));
    EXPECT_TRUE(s->source_corresp.referenced);
    EXPECT_EQ(s->assoc.routine, nullptr);
    EXPECT_FALSE(s->is_fortran_entry);
    ASSERT_EQ(s->type->type_code, tk_routine);
    const routine_variant &r = s->type->routine;
    EXPECT_EQ(r.return_type, void_type());
    EXPECT_EQ(r.assoc_routine, s);
    EXPECT_TRUE(r.has_param_info);
    EXPECT_FALSE(r.is_recursive);
    const scope *b = s->variant.assoc_scope;
    EXPECT_EQ(b->assoc_routine, s);
    EXPECT_EQ(names(b->parameters), "A N");
    EXPECT_EQ(names(b->objects), "A N");
    EXPECT_EQ(b->function_result_var, nullptr);
    EXPECT_EQ(b->entries, nullptr);
    EXPECT_EQ(curr_scope_depth, 0);
    EXPECT_EQ(construct_depth, -1);
    EXPECT_EQ(atom_of("A")->first_symbol, nullptr);
    EXPECT_EQ(global_symbol(atom_of("S"))->entity, s);
    EXPECT_EQ(atom_of("S")->first_symbol, global_symbol(atom_of("S")));
}

TEST_F(UnitsTest, DummyArgumentsAndTheirPrototype) {
    EXPECT_EQ(compile("subroutine s(a, n, *)\nend\n"), "");
    const object *a = local("S", "A");
    EXPECT_EQ(a->storage_class, sc_local);
    EXPECT_TRUE(a->is_parameter);
    EXPECT_EQ(a->assoc.routine, routine("S"));
    EXPECT_EQ(a->source_corresp.scope_depth, 1);
    EXPECT_EQ(a->source_corresp.decl_position, (source_pos{1, 14}));
    EXPECT_EQ(a->type, default_real());
    const object *star = local("S", "-");
    EXPECT_EQ(star->type, stmt_label_type());
    EXPECT_EQ(star->source_corresp.decl_position, (source_pos{1, 20}));
    EXPECT_TRUE(star->is_parameter);
    const param_type *p = routine_of(routine("S")).param_type_list;
    EXPECT_EQ(names(p), "A N -");
    EXPECT_EQ(p->type, default_real());
    EXPECT_EQ(p->source_corresp.decl_position, a->source_corresp.decl_position);
    EXPECT_EQ(p->next->type, default_integer());
    EXPECT_EQ(p->next->next->type, stmt_label_type());
}

TEST_F(UnitsTest, ThePrototypeHasTheFlagsOfTheDummy) {
    const std::string text = "subroutine s(a, b, c, d)\nend\n";
    messages_of([&] {
        open_text(text);
        next_statement();
        begin_construct_state();
        classify_statement();
        curr_token = tok_none;
        stmt_subprogram();
        find(curr_row().il_scope->objects, "A")->is_optional = true;
        find(curr_row().il_scope->objects, "B")->intent_in = true;
        find(curr_row().il_scope->objects, "C")->intent_out = true;
        find(curr_row().il_scope->objects, "D")->is_pointer = true;
        end_program_unit();
    });
    const param_type *p = routine_of(routine("S")).param_type_list;
    const auto flags = [](const param_type *q) {
        return std::string() + (q->is_optional ? 'o' : '-') + (q->intent_in ? 'i' : '-') +
               (q->intent_out ? 'u' : '-') + (q->is_pointer ? 'p' : '-');
    };
    EXPECT_EQ(flags(p), "o---");
    EXPECT_EQ(flags(p->next), "-i--");
    EXPECT_EQ(flags(p->next->next), "--u-");
    EXPECT_EQ(flags(p->next->next->next), "---p");
}

TEST_F(UnitsTest, ASubroutineWithoutParentheses) {
    EXPECT_EQ(compile("subroutine s\nend\n"), "");
    EXPECT_EQ(routine_of(routine("S")).param_type_list, nullptr);
    EXPECT_TRUE(routine_of(routine("S")).has_param_info);
}

TEST_F(UnitsTest, AFunctionAndItsResult) {
    EXPECT_EQ(compile("function f(x)\nend\n"), "");
    const object *f = routine("F");
    const object *result = body("F")->function_result_var;
    ASSERT_NE(result, nullptr);
    EXPECT_EQ(name_of(result), "F");
    EXPECT_NE(result, f);
    EXPECT_TRUE(result->is_result);
    EXPECT_EQ(result->storage_class, sc_local);
    EXPECT_EQ(result->variant.result_var_function, f);
    EXPECT_EQ(result->type, default_real());
    EXPECT_EQ(f->type->routine.return_type, default_real());
    EXPECT_EQ(names(body("F")->objects), "X F");
}

TEST_F(UnitsTest, AResultOfItsOwnName) {
    EXPECT_EQ(compile("function f() result(k)\nend\n"), "");
    EXPECT_EQ(name_of(body("F")->function_result_var), "K");
    EXPECT_EQ(routine("F")->type->routine.return_type, default_integer());
    EXPECT_EQ(names(body("F")->objects), "K");
}

TEST_F(UnitsTest, WithRESULTTheNameLeadsToTheFunction) {
    messages_of([&] {
        open_text("function f() result(k)\nend\n");
        next_statement();
        begin_construct_state();
        classify_statement();
        stmt_subprogram();
    });
    const symbol *link = atom_of("F")->first_symbol;
    EXPECT_EQ(link->kind, sk_host_link);
    EXPECT_EQ(link->scope_depth, 1);
    EXPECT_EQ(entity_as<symbol>(link), link->next_same_name);
    EXPECT_EQ(link->next_same_name->kind, sk_function);
    EXPECT_EQ(link->next_same_name->scope_depth, 0);
    EXPECT_TRUE(link->next_same_name->aux2 & pf_body_seen);
}

TEST_F(UnitsTest, RecursivePrefixes) {
    EXPECT_EQ(compile("recursive subroutine s\nend\nrecursive function f()\nend\n"), "");
    EXPECT_TRUE(routine_of(routine("S")).is_recursive);
    EXPECT_TRUE(routine_of(routine("F")).is_recursive);
}

TEST_F(UnitsTest, PrefixesThatClassificationKeepsOut) {
    const auto prefix = [&](const char *text) {
        SetUp();
        return messages_of([&] {
            open_text(text);
            next_statement();
            begin_construct_state();
            curr_token = tok_none;
            EXPECT_FALSE(stmt_subprogram());
            EXPECT_EQ(curr_unit_kind, uk_function);
            EXPECT_EQ(curr_row().il_scope->assoc_routine->symbol_link->name, error_atom);
            EXPECT_NE(curr_row().il_scope->function_result_var, nullptr);
            end_program_unit();
        });
    };
    EXPECT_NE(prefix("recursive x\n").find(message_text(msg_expected_type_keyword)), std::string::npos);
    EXPECT_NE(prefix("double x\n").find(message_text(msg_expected_type_keyword)), std::string::npos);
    EXPECT_NE(prefix("double precision x\n").find(message_text(msg_expected_function_keyword)),
              std::string::npos);
}

TEST_F(UnitsTest, RecursiveTwice) {
    const std::string messages = messages_of([&] {
        open_text("recursive recursive function f()\n");
        next_statement();
        begin_construct_state();
        curr_token = tok_none;
        EXPECT_FALSE(stmt_subprogram());
        end_program_unit();
    });
    EXPECT_EQ(messages, "t.f90 (  1:11) error:   " +
                            std::string(message_text(msg_attribute_specifier_appears_repeatedly)) + "\n");
    EXPECT_TRUE(routine_of(routine("F")).is_recursive);
}

TEST_F(UnitsTest, PrefixesInPieces) {
    for (const char *text : {"double precision function f()", "doubleprecision function f()"}) {
        SetUp();
        EXPECT_EQ(compile(std::string(text) + "\nend\n"), "");
        EXPECT_EQ(routine("F")->type->routine.return_type, double_precision());
    }
    for (const char *text : {"      doubleprecisionfunctionf()", "      DO UBLE PREC ISION FUNC TION F()"}) {
        SetUp();
        fixed_form_input = true;
        lexer_init();
        EXPECT_EQ(compile(std::string(text) + "\n      end\n"), "");
        EXPECT_EQ(routine("F")->type->routine.return_type, double_precision());
    }
    SetUp();
    fixed_form_input = true;
    lexer_init();
    EXPECT_EQ(compile("      integerfunctionf()\n      end\n"), "");
    EXPECT_EQ(routine("F")->type->routine.return_type, default_integer());
    EXPECT_EQ(body("F")->function_result_var->type, default_integer());
}

// ---- program, module, block data

TEST_F(UnitsTest, AMainProgram) {
    EXPECT_EQ(compile("program p\nend\n"), "");
    const object *p = routine("P");
    EXPECT_EQ(p->storage_class, sc_program);
    EXPECT_EQ(p->type->routine.return_type, void_type());
    EXPECT_EQ(p->source_corresp.decl_position, (source_pos{1, 9}));
    EXPECT_EQ(il_root.main_routine, p);
    EXPECT_TRUE(main_program_seen);
    EXPECT_EQ(global_symbol(atom_of("P"))->kind, sk_program);
}

TEST_F(UnitsTest, ANamelessMainProgram) {
    EXPECT_EQ(compile("continue\nend\n"), "");
    const object *p = routine("-");
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->storage_class, sc_program);
    EXPECT_EQ(p->source_corresp.name, nullptr);
    EXPECT_EQ(il_root.main_routine, p);
    EXPECT_EQ(main_atom->first_symbol, nullptr);
    EXPECT_EQ(p->symbol_link->name, main_atom);
}

TEST_F(UnitsTest, ASecondMainProgramIsCompiledToo) {
    compile("program p\nend\nprogram p\nend\nprogram q\nend\n");
    EXPECT_EQ(names(scope_stack[0].il_scope->objects), "P P Q");
    EXPECT_EQ(il_root.main_routine, routine("P"));
    EXPECT_EQ(error_count, 2u);
}

TEST_F(UnitsTest, AModule) {
    EXPECT_EQ(compile("module m\nend\n"), "");
    const object *m = routine("M");
    EXPECT_EQ(m->storage_class, sc_module);
    EXPECT_EQ(m->type->type_code, tk_module);
    EXPECT_EQ(m->variant.assoc_scope->assoc_block, nullptr);
    EXPECT_EQ(global_symbol(atom_of("M"))->kind, sk_module);
}

TEST_F(UnitsTest, BlockData) {
    EXPECT_EQ(compile("block data b\nend\nblock data\nend\n"), "");
    const object *b = routine("B");
    EXPECT_EQ(b->storage_class, sc_blockdata);
    EXPECT_EQ(b->type->type_code, tk_blockdata);
    EXPECT_EQ(global_symbol(atom_of("B"))->kind, sk_block_data);
    EXPECT_EQ(routine("-")->storage_class, sc_blockdata);
    EXPECT_EQ(names(scope_stack[0].il_scope->objects), "B -");
    EXPECT_NE(b->variant.assoc_scope->assoc_block, nullptr);
    EXPECT_EQ(b->variant.assoc_scope->assoc_block->statements, nullptr);
}

TEST_F(UnitsTest, ASecondNamelessBlockDataIsCompiledToo) {
    compile("block data\nend\nblock data\nend\n");
    EXPECT_EQ(error_count, 1u);
    EXPECT_EQ(names(scope_stack[0].il_scope->objects), "- <error>");
}

TEST_F(UnitsTest, NamesOfUnitsAreKnownInside) {
    for (const char *text : {"program p\n", "module p\n"}) {
        SetUp();
        messages_of([&] {
            open_text(text);
            next_statement();
            begin_construct_state();
            classify_statement();
            dispatch_statement();
        });
        const symbol *link = atom_of("P")->first_symbol;
        EXPECT_EQ(link->kind, sk_host_link);
        EXPECT_EQ(link->scope_depth, 1);
        EXPECT_EQ(entity_as<symbol>(link)->scope_depth, 0);
        end_program_unit();
    }
}

// ---- the bodies

std::string kinds_of(const statement *block) {
    std::string result;
    for (const statement *s = block->statements; s; s = s->next) {
        result += std::to_string(s->kind) + " ";
    }
    return result;
}

TEST_F(UnitsTest, TheEndOfABodyStopsOrReturns) {
    EXPECT_EQ(compile("program p\nend\nsubroutine s\nend\nfunction f()\nend\n"), "");
    EXPECT_EQ(kinds_of(body("P")->assoc_block), std::to_string(stmk_stop) + " ");
    EXPECT_EQ(kinds_of(body("S")->assoc_block), std::to_string(stmk_return) + " ");
    EXPECT_EQ(kinds_of(body("F")->assoc_block), std::to_string(stmk_return) + " ");
    EXPECT_EQ(body("P")->assoc_block->kind, stmk_block);
    EXPECT_EQ(body("P")->assoc_block->last_statement, body("P")->assoc_block->statements);
}

TEST_F(UnitsTest, AnEndThatIsNotReachedAddsNothing) {
    EXPECT_EQ(
        compile("program p\nstop\nend\nsubroutine s\nreturn\nend\nsubroutine t\n10 continue\ngoto 10\nend\n"),
        "");
    EXPECT_EQ(kinds_of(body("P")->assoc_block), std::to_string(stmk_stop) + " ");
    EXPECT_EQ(kinds_of(body("S")->assoc_block), std::to_string(stmk_return) + " ");
    EXPECT_EQ(kinds_of(body("T")->assoc_block),
              std::to_string(stmk_label) + " " + std::to_string(stmk_goto) + " ");
}

TEST_F(UnitsTest, ALabelledEndIsReached) {
    EXPECT_EQ(compile("subroutine s\ngoto 10\n10 end\n"), "");
    EXPECT_EQ(kinds_of(body("S")->assoc_block), std::to_string(stmk_goto) + " " + std::to_string(stmk_label) +
                                                    " " + std::to_string(stmk_return) + " ");
}

TEST_F(UnitsTest, AHostsEndIsJudgedByItsOwnBody) {
    EXPECT_EQ(compile("program p\nstop\ncontains\nsubroutine s\nend subroutine\nend\n"
                      "subroutine t\ncontinue\ncontains\nsubroutine u\nreturn\nend subroutine\nend\n"),
              "");
    EXPECT_EQ(kinds_of(body("P")->assoc_block), std::to_string(stmk_stop) + " ");
    EXPECT_EQ(kinds_of(body("T")->assoc_block), std::to_string(stmk_return) + " ");
}

// ---- internal procedures, interface bodies

TEST_F(UnitsTest, InternalProcedures) {
    EXPECT_EQ(compile("program p\ncontains\nsubroutine s\nend subroutine\nfunction f()\nend function\nend\n"),
              "");
    EXPECT_EQ(names(body("P")->objects), "S F");
    const object *s = routine("P/S");
    EXPECT_EQ(s->storage_class, sc_internal);
    EXPECT_EQ(s->source_corresp.scope_depth, 1);
    EXPECT_EQ(s->assoc.routine, routine("P"));
    EXPECT_EQ(s->association_offset, 1);
    EXPECT_EQ(routine("P/F")->association_offset, 2);
    EXPECT_EQ(body("P/F")->function_result_var->source_corresp.scope_depth, 2);
    EXPECT_EQ(global_symbol(atom_of("S")), nullptr);
    EXPECT_EQ(atom_of("S")->first_symbol, nullptr);
}

TEST_F(UnitsTest, AnInternalProcedureThatIsCalledAhead) {
    messages_of([&] {
        open_text("program p\ncontains\nsubroutine s\nend subroutine\nend\n");
        next_statement();
        begin_construct_state();
        classify_statement();
        dispatch_statement();
    });
    curr_name = at("S", 2, 6);
    symbol *called = lookup_reference();
    called->flags |= sf_called;
    called->aux2 |= cf_used_as_bound;
    ASSERT_EQ(called->kind, sk_host_candidate);
    name_locator name = at("S", 3, 12);
    push_scope(sr_unit);
    entry_description *entry;
    const symbol *s = declare_subroutine(called, name, false, entry);
    EXPECT_EQ(s, called);
    EXPECT_EQ(s->kind, sk_internal_subroutine);
    EXPECT_TRUE(s->flags & sf_referenced);
    EXPECT_TRUE(s->flags & sf_used_as_bound);
    EXPECT_TRUE(s->flags & sf_called);
    EXPECT_TRUE(s->flags & sf_typed);
    EXPECT_EQ(s->decl_position, (source_pos{3, 12}));
    EXPECT_EQ(entity_as<object>(s)->source_corresp.decl_position, (source_pos{3, 12}));
}

TEST_F(UnitsTest, AnInterfaceBodyLeavesAPrototype) {
    EXPECT_EQ(
        compile(
            "program p\ninterface\nsubroutine s(a)\nend subroutine\nfunction f(i) result(k)\nend function\n"
            "end interface\nend\n"),
        "");
    EXPECT_EQ(names(scope_stack[0].il_scope->objects), "S F P");
    const object *s = routine("S");
    EXPECT_EQ(s->storage_class, sc_external);
    EXPECT_EQ(s->variant.assoc_scope, nullptr);
    EXPECT_TRUE(s->type->routine.has_param_info);
    EXPECT_EQ(names(s->type->routine.param_type_list), "A");
    EXPECT_EQ(routine("F")->type->routine.return_type, default_integer());
    EXPECT_TRUE(s->source_corresp.referenced);
    EXPECT_EQ(body("P")->objects, nullptr);
}

TEST_F(UnitsTest, AnInterfaceBodyOfADummyArgument) {
    EXPECT_EQ(
        compile(
            "subroutine t(s, f)\ninterface\nsubroutine s(a)\nend subroutine\nfunction f(i)\nend function\n"
            "end interface\nend\n"),
        "");
    EXPECT_EQ(names(scope_stack[0].il_scope->objects), "T");
    const object *s = local("T", "S");
    EXPECT_EQ(s->storage_class, sc_external);
    EXPECT_TRUE(s->is_parameter);
    EXPECT_EQ(s->variant.assoc_scope, nullptr);
    EXPECT_EQ(s->type->routine.return_type, void_type());
    EXPECT_EQ(names(s->type->routine.param_type_list), "A");
    EXPECT_EQ(local("T", "F")->type->routine.return_type, default_real());
    EXPECT_EQ(names(routine("T")->type->routine.param_type_list), "S F");
    EXPECT_EQ(routine("T")->type->routine.param_type_list->type, s->type);
}

TEST_F(UnitsTest, TheStateOfAUnitIsItsOwn) {
    messages_of([&] {
        open_text("subroutine s\n");
        next_statement();
        begin_construct_state();
        classify_statement();
        dispatch_statement();
    });
    global_save = any_save = true;
    curr_unit.equiv_groups = reinterpret_cast<equiv_group *>(&curr_unit);
    interface_depth = 1;
    begin_program_unit(uk_subroutine);
    EXPECT_FALSE(global_save || any_save || spec_part_over || has_automatic);
    EXPECT_EQ(curr_unit.equiv_groups, nullptr);
    EXPECT_TRUE(is_interface_body());
    name_locator name = at("T");
    entry_description *entry;
    declare_subroutine(nullptr, name, false, entry);
    spec_part_over = true;
    end_program_unit();
    EXPECT_TRUE(global_save && any_save);
    EXPECT_FALSE(spec_part_over);
    EXPECT_NE(curr_unit.equiv_groups, nullptr);
    EXPECT_FALSE(is_interface_body());
}

TEST_F(UnitsTest, NamesInModulesAndBlockDataArePublic) {
    for (const auto &[kind, is_public] : {std::pair{uk_program, false},
                                          {uk_subroutine, false},
                                          {uk_function, false},
                                          {uk_block_data, true},
                                          {uk_module, true}}) {
        begin_program_unit(kind);
        EXPECT_EQ(curr_row().names_public, is_public);
        EXPECT_EQ(curr_row().il_scope->assoc_block == nullptr, kind == uk_module);
        EXPECT_EQ(curr_unit_kind, kind);
    }
}

// ---- ENTRY

TEST_F(UnitsTest, AnEntryOfASubroutine) {
    EXPECT_EQ(compile("subroutine s(a, *)\nentry e(*, b, a, *)\nentry d\nend\n"), "");
    EXPECT_EQ(names(scope_stack[0].il_scope->objects), "S E D");
    const object *e = routine("E");
    EXPECT_TRUE(e->is_fortran_entry);
    EXPECT_EQ(e->storage_class, sc_external);
    EXPECT_EQ(e->variant.assoc_scope, body("S"));
    EXPECT_TRUE(e->source_corresp.referenced);
    const entry_description *d = body("S")->entries;
    EXPECT_EQ(d->assoc_routine, e);
    EXPECT_EQ(names(d->parameters), "- B A -");
    EXPECT_EQ(d->function_result_var, nullptr);
    EXPECT_EQ(names(e->type->routine.param_type_list), "- B A -");
    EXPECT_EQ(d->entry_point->kind, stmk_fentry);
    EXPECT_EQ(d->entry_point->entry_descr, d);
    EXPECT_EQ(d->next->assoc_routine, routine("D"));
    EXPECT_EQ(d->next->parameters, nullptr);
    EXPECT_TRUE(routine("D")->type->routine.has_param_info);
    EXPECT_EQ(d->next->next, nullptr);
    EXPECT_EQ(body("S")->assoc_block->statements, d->entry_point);
    EXPECT_EQ(atom_of("E")->first_symbol, global_symbol(atom_of("E")));

    // One object for each dummy argument, and for the nth "*" of all lists.
    EXPECT_EQ(names(body("S")->objects), "A - B -");
    EXPECT_EQ(d->parameters->object, body("S")->parameters->next->object);
    EXPECT_EQ(d->parameters->next->next->object, local("S", "A"));
    EXPECT_NE(d->parameters->next->next->next->object, d->parameters->object);
}

TEST_F(UnitsTest, AlternateReturnsAreSharedWithEarlierEntries) {
    EXPECT_EQ(compile("subroutine s\nentry e(*, *)\nentry d(*)\nentry c(*, *, *)\nend\n"), "");
    const auto nth = [&](int entry, int star) {
        const entry_description *e = body("S")->entries;
        for (; entry > 0; --entry) {
            e = e->next;
        }
        const object_list_member *m = e->parameters;
        for (; star > 0; --star) {
            m = m->next;
        }
        return m->object;
    };
    EXPECT_EQ(nth(0, 0), nth(1, 0));
    EXPECT_EQ(nth(0, 0), nth(2, 0));
    EXPECT_EQ(nth(0, 1), nth(2, 1));
    EXPECT_EQ(names(body("S")->objects), "- - -");
}

TEST_F(UnitsTest, ResultsOfEntriesOverlay) {
    EXPECT_EQ(compile("function f(x)\nentry k(x)\nentry g(y) result(m)\nend\n"), "");
    EXPECT_EQ(names(body("F")->objects), "X F K - Y M");
    const object *storage = local("F", "-");
    EXPECT_EQ(storage->type->type_code, tk_association);
    EXPECT_EQ(storage->storage_class, sc_local);
    EXPECT_EQ(storage->assoc.routine, routine("F"));
    EXPECT_EQ(storage->type->size, 4u);
    EXPECT_EQ(storage->type->alignment, 4u);
    for (const char *name : {"F", "K", "M"}) {
        EXPECT_EQ(local("F", name)->storage_class, sc_associated);
        EXPECT_EQ(local("F", name)->assoc.variable, storage);
        EXPECT_EQ(local("F", name)->association_offset, 0);
        EXPECT_TRUE(local("F", name)->is_result);
    }
    EXPECT_EQ(body("F")->function_result_var, local("F", "F"));
    EXPECT_EQ(body("F")->entries->function_result_var, local("F", "K"));
    EXPECT_EQ(local("F", "K")->variant.result_var_function, routine("K"));
    EXPECT_EQ(local("F", "M")->variant.result_var_function, routine("G"));
    EXPECT_EQ(routine("K")->type->routine.return_type, default_integer());
    EXPECT_EQ(routine("G")->type->routine.return_type, default_integer());
}

TEST_F(UnitsTest, TheStorageOfResultsIsThatOfTheLargest) {
    EXPECT_EQ(compile("integer function f(x)\nentry g(x)\nend\n"), "");
    object *g = local("F", "G");
    g->type = double_precision();
    raise_result_storage(g);
    EXPECT_EQ(local("F", "-")->type->size, 8u);
    EXPECT_EQ(local("F", "-")->type->alignment, 8u);
    g->type = default_integer();
    raise_result_storage(g);
    EXPECT_EQ(local("F", "-")->type->size, 8u);
    raise_result_storage(local("F", "X")); // no result
    EXPECT_EQ(local("F", "X")->storage_class, sc_local);
}

TEST_F(UnitsTest, AnEntryMayHaveTheResultOfItsFunction) {
    EXPECT_EQ(compile("function f() result(r)\nentry g() result(r)\nend\n"), "");
    EXPECT_EQ(names(body("F")->objects), "R");
    EXPECT_EQ(body("F")->entries->function_result_var, body("F")->function_result_var);
    EXPECT_EQ(body("F")->function_result_var->variant.result_var_function, routine("F"));
    EXPECT_EQ(body("F")->function_result_var->storage_class, sc_local);
}

TEST_F(UnitsTest, ResultsAreTypedByTheRulesOfTheirUnit) {
    messages_of([&] {
        open_text("function f()\n");
        next_statement();
        begin_construct_state();
        classify_statement();
        dispatch_statement();
    });
    curr_row().implicit_types['G' - 'A'] = default_logical();
    spec_part_over = true;
    messages_of([&] {
        scratch_directory::write("t.f90", "entry g()\n");
        lexer_init();
        open_source_file("t.f90", include_search_list);
        next_statement();
        classify_statement();
        EXPECT_TRUE(stmt_entry());
        end_program_unit();
    });
    EXPECT_EQ(local("F", "G")->type, default_logical());
    EXPECT_EQ(routine("G")->type->routine.return_type, default_logical());
    EXPECT_EQ(routine("F")->type->routine.return_type, default_real());
}

TEST_F(UnitsTest, AnEntryOfAModuleProcedure) {
    EXPECT_EQ(compile("module m\ncontains\nfunction f(x)\nentry g(x)\nend function\nsubroutine s\nentry e\n"
                      "end subroutine\nend\n"),
              "");
    EXPECT_EQ(names(body("M")->objects), "F G S E");
    EXPECT_EQ(routine("M/G")->storage_class, sc_internal);
    EXPECT_TRUE(routine("M/G")->is_fortran_entry);
    EXPECT_EQ(routine("M/G")->variant.assoc_scope, body("M/F"));
    EXPECT_EQ(routine("M/G")->association_offset, 2);
}

TEST_F(UnitsTest, EntryInAnInternalProcedure) {
    // The statement loop refuses it for both; here it is an error for a subroutine only.
    for (const auto &[unit, message] :
         {std::pair{"subroutine s\n", "t.f90 (  1: 7) error:   ENTRY statement is not allowed\n"},
          {"function f()\n", ""}}) {
        const char *const text = unit;
        SetUp();
        const std::string messages = messages_of([&] {
            begin_construct_state();
            begin_program_unit(uk_program);
            name_locator name = at("P");
            entry_description *entry;
            declare_subroutine(nullptr, name, false, entry);
            open_text(text);
            next_statement();
            classify_statement();
            dispatch_statement();
            scratch_directory::write("t.f90", "entry e\n");
            lexer_init();
            open_source_file("t.f90", include_search_list);
            next_statement();
            classify_statement();
            EXPECT_TRUE(stmt_entry());
        });
        EXPECT_EQ(messages, message);
    }
}

TEST_F(UnitsTest, EntryOutsideOfProcedures) {
    const std::string messages = messages_of([&] {
        begin_construct_state();
        begin_program_unit(uk_program);
        open_text("entry e\n");
        next_statement();
        classify_statement();
        EXPECT_FALSE(stmt_entry());
    });
    EXPECT_EQ(messages, "t.f90 (  1: 1) error:   " +
                            std::string(message_text(msg_entry_statement_is_not_allowed)) + "\n");
}

// ---- the end of the source

TEST_F(UnitsTest, AnUnexpectedEndClosesAllUnits) {
    EXPECT_EQ(compile("module m\ncontains\nsubroutine s(a)\ninterface\nfunction f(x)\n"),
              "At end of source: error:   unexpected end of file\n");
    EXPECT_EQ(curr_scope_depth, 0);
    EXPECT_EQ(interface_depth, 0);
    EXPECT_EQ(construct_depth, -1);
    EXPECT_EQ(names(scope_stack[0].il_scope->objects), "F M");
    EXPECT_EQ(names(body("M")->objects), "S");
    EXPECT_EQ(routine("F")->variant.assoc_scope, nullptr);
    EXPECT_EQ(curr_unit_kind, uk_none);
}

TEST_F(UnitsTest, FramesAreLaidOut) {
    EXPECT_EQ(compile("integer function f(x)\nend\n"), "");
    EXPECT_EQ(local("F", "X")->association_offset, 0); // by reference
    EXPECT_EQ(local("F", "F")->association_offset, 4);
}

} // namespace
} // namespace zf90
