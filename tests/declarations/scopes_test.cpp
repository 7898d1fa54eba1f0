// The rows of the scope stack.
#include "declarations/units_fixture.h"

namespace zf90 {
namespace {

class ScopesTest : public UnitsTest {
protected:
    // A unit's row with a routine of that class.
    static object *push_unit(storage_class sc, symbol_kind kind, const char *name) {
        push_scope(sr_unit);
        symbol *s = new_symbol(kind, at(name), curr_scope_depth - 1);
        object *o = new_object();
        tie_to_symbol(o, s);
        o->storage_class = sc;
        o->type = sc == sc_module      ? new_type(tk_module)
                  : sc == sc_blockdata ? new_type(tk_blockdata)
                                       : new_routine_type(o, void_type());
        s->entity = o;
        o->variant.assoc_scope = curr_row().il_scope;
        curr_row().il_scope->assoc_routine = o;
        return o;
    }

    static symbol *add(symbol_kind kind, const char *name, std::uint32_t flags = sf_public) {
        symbol *s = new_symbol(kind, at(name), curr_scope_depth);
        s->flags |= flags;
        return s;
    }
};

TEST_F(ScopesTest, RowZero) {
    EXPECT_EQ(curr_scope_depth, 0);
    EXPECT_EQ(curr_row().row_kind, sr_global);
    EXPECT_EQ(curr_row().il_scope, il_root.primary_scope);
    EXPECT_TRUE(curr_row().names_public);
    EXPECT_EQ(curr_row().implicit_types['H' - 'A'], default_real());
    EXPECT_EQ(curr_row().implicit_types['I' - 'A'], default_integer());
    EXPECT_EQ(curr_row().implicit_types['N' - 'A'], default_integer());
    EXPECT_EQ(curr_row().implicit_types['O' - 'A'], default_real());
    EXPECT_EQ(curr_routine(), nullptr);
    EXPECT_EQ(unit_kind_of(0), uk_none);
}

TEST_F(ScopesTest, KindsOfRows) {
    EXPECT_NE(push_scope(sr_unit), nullptr);
    EXPECT_NE(push_scope(sr_derived_type), nullptr);
    EXPECT_NE(push_scope(sr_stmt_function), nullptr);
    EXPECT_EQ(push_scope(sr_use), nullptr);
    EXPECT_FALSE(curr_row().names_public);
    EXPECT_EQ(curr_scope_depth, 4);
    EXPECT_EQ(scope_stack[2].row_kind, sr_derived_type);
}

TEST_F(ScopesTest, TheStackGrows) {
    for (int i = 0; i < 1000; ++i) {
        push_scope(sr_unit)->parameters = new_object_list_member();
    }
    EXPECT_EQ(curr_scope_depth, 1000);
    for (int i = 1; i <= 1000; ++i) {
        ASSERT_NE(scope_stack[i].il_scope->parameters, nullptr);
    }
}

TEST_F(ScopesTest, ImplicitRulesComeFromTheHost) {
    push_scope(sr_unit);
    curr_row().implicit_types['A' - 'A'] = default_logical();
    curr_row().implicit_none = true;
    implicit_letter_set = 5;
    push_scope(sr_unit);
    EXPECT_EQ(curr_row().implicit_types['A' - 'A'], default_logical());
    EXPECT_FALSE(curr_row().implicit_none);
    EXPECT_EQ(implicit_letter_set, 0u);
    curr_row().implicit_types['B' - 'A'] = nullptr;
    interface_depth = 1;
    push_scope(sr_unit);
    EXPECT_EQ(curr_row().implicit_types['A' - 'A'], default_real());
    EXPECT_EQ(curr_row().implicit_types['B' - 'A'], default_real());
    interface_depth = 0;
}

TEST_F(ScopesTest, KindsOfUnits) {
    struct {
        storage_class sc;
        program_unit_kind kind;
    } const expected[] = {
        {sc_local, uk_subroutine},       {sc_external, uk_subroutine},  {sc_internal, uk_subroutine},
        {sc_unspecified, uk_subroutine}, {sc_stmt_func, uk_function},   {sc_module, uk_module},
        {sc_program, uk_program},        {sc_blockdata, uk_block_data}, {sc_intrinsic, uk_none}};
    for (const auto &[sc, kind] : expected) {
        object *o = push_unit(sc, sk_internal_subroutine, "S");
        EXPECT_EQ(unit_kind_of(1), kind);
        EXPECT_EQ(curr_routine(), o);
        if (kind == uk_subroutine) {
            o->type->routine.return_type = unknown_type();
            EXPECT_EQ(unit_kind_of(1), uk_function);
        }
        push_scope(sr_derived_type); // without a routine of its own
        EXPECT_EQ(curr_routine(), o);
        EXPECT_EQ(unit_kind_of(3), uk_none);
        pop_scope();
        pop_scope();
    }
    EXPECT_EQ(unit_kind_of(-1), uk_none);
    push_scope(sr_unit);
    EXPECT_EQ(unit_kind_of(1), uk_none);
}

TEST_F(ScopesTest, ListsAreInOrder) {
    push_scope(sr_unit);
    for (const char *name : {"A", "B", "C"}) {
        object *o = new_object();
        tie_to_symbol(o, add(sk_variable, name));
        add_object(curr_row(), o);
    }
    EXPECT_EQ(names(curr_row().il_scope->objects), "A B C");
    EXPECT_EQ(name_of(curr_row().last_object), "C");
    label *first = new_label();
    label *second = new_label();
    add_label(curr_row(), first);
    add_label(curr_row(), second);
    EXPECT_EQ(curr_row().il_scope->labels, first);
    EXPECT_EQ(first->next, second);
    EXPECT_EQ(curr_row().last_label, second);
}

TEST_F(ScopesTest, ObjectsLeaveTheGlobalList) {
    object *o[5];
    for (object *&each : o) {
        each = new_object();
        add_object(scope_stack[0], each);
    }
    const auto list = [&] {
        std::string result;
        for (const object *each = il_root.primary_scope->objects; each; each = each->next) {
            result += static_cast<char>('0' + (std::find(o, o + 5, each) - o));
        }
        return result;
    };
    EXPECT_EQ(list(), "01234");
    remove_global_object(o[2]); // in the middle, at the ends, next to where one has been
    EXPECT_EQ(list(), "0134");
    remove_global_object(o[3]);
    EXPECT_EQ(list(), "014");
    remove_global_object(o[0]);
    EXPECT_EQ(list(), "14");
    remove_global_object(o[4]);
    EXPECT_EQ(list(), "1");
    EXPECT_EQ(scope_stack[0].last_object, o[1]);
    add_object(scope_stack[0], o[3]);
    add_object(scope_stack[0], o[0]);
    EXPECT_EQ(list(), "130");
    remove_global_object(o[4]); // not there
    remove_global_object(o[3]);
    remove_global_object(o[1]);
    remove_global_object(o[0]);
    EXPECT_EQ(list(), "");
    EXPECT_EQ(scope_stack[0].last_object, nullptr);
}

// ---- closing a row

TEST_F(ScopesTest, NamesAreGoneWithTheirRow) {
    push_scope(sr_unit);
    add(sk_variable, "A");
    add(sk_undetermined, "A");
    new_symbol(sk_variable, {nullptr, {1, 1}}, curr_scope_depth);
    pop_scope();
    EXPECT_EQ(curr_scope_depth, 0);
    EXPECT_EQ(atom_of("A")->first_symbol, nullptr);
}

TEST_F(ScopesTest, InvisibleGlobalNamesStay) {
    push_scope(sr_unit);
    symbol *record = new_symbol(sk_subroutine, at("S"), 0);
    record->flags &= ~std::uint32_t{sf_visible};
    add(sk_subroutine, "S");
    pop_scope();
    EXPECT_EQ(global_symbol(atom_of("S")), record);
    EXPECT_EQ(atom_of("S")->first_symbol, record);
}

TEST_F(ScopesTest, MarksOfALinkReplaceThoseOfItsTarget) {
    push_scope(sr_unit);
    symbol *target = add(sk_variable, "A", sf_referenced);
    push_scope(sr_unit);
    symbol *link = add(sk_host_link, "A", sf_used_as_bound);
    link->entity = target;
    pop_scope();
    EXPECT_FALSE(target->flags & sf_referenced);
    EXPECT_TRUE(target->flags & sf_used_as_bound);
    EXPECT_EQ(atom_of("A")->first_symbol, target);
}

TEST_F(ScopesTest, CommonBlocksBecomeGlobal) {
    push_scope(sr_unit);
    symbol *block = add(sk_common_block, "C");
    pop_scope();
    EXPECT_EQ(global_symbol(atom_of("C")), block);
    EXPECT_EQ(block->scope_depth, 0);
    EXPECT_FALSE(block->flags & sf_visible);

    // The next unit takes the record over for its duration, deeper than the names around it.
    push_scope(sr_unit);
    add(sk_variable, "C");
    push_scope(sr_unit);
    block->scope_depth = 2;
    block->next_in_scope = nullptr;
    curr_row().first_symbol = curr_row().last_symbol = block;
    pop_scope();
    EXPECT_EQ(block->scope_depth, 0);
    for (const symbol *s = atom_of("C")->first_symbol; s->next_same_name; s = s->next_same_name) {
        EXPECT_GE(s->scope_depth, s->next_same_name->scope_depth);
    }
    pop_scope();
    EXPECT_EQ(atom_of("C")->first_symbol, block);

    // A second one of the name finds the record taken.
    push_scope(sr_unit);
    add(sk_common_block, "C");
    pop_scope();
    EXPECT_EQ(atom_of("C")->first_symbol, block);
    EXPECT_EQ(block->next_same_name, nullptr);
}

TEST_F(ScopesTest, ExternalsThatAreOnlyDeclaredSurvive) {
    push_scope(sr_unit);
    const auto declare = [](const char *name, std::uint32_t flags, storage_class sc) {
        symbol *s = add(sk_external_unused, name, flags);
        object *o = new_object();
        o->source_corresp.referenced = false;
        o->storage_class = sc;
        s->entity = o;
        return o;
    };
    const object *unspecified = declare("A", 0, sc_unspecified);
    const object *referenced = declare("B", sf_referenced, sc_unspecified);
    const object *external = declare("C", 0, sc_external);
    pop_scope();
    EXPECT_TRUE(unspecified->source_corresp.referenced);
    EXPECT_FALSE(referenced->source_corresp.referenced);
    EXPECT_FALSE(external->source_corresp.referenced);
}

TEST_F(ScopesTest, PublicListOfAModule) {
    object *module = push_unit(sc_module, sk_module, "M");
    symbol *record = new_further_symbol(sk_module, at("M"), 0);
    record->flags &= ~std::uint32_t{sf_visible};
    constexpr symbol_kind given_away[] = {sk_derived_type,        sk_variable,
                                          sk_subroutine,          sk_function,
                                          sk_internal_subroutine, sk_internal_function,
                                          sk_specific_function,   sk_specific_subroutine,
                                          sk_intrinsic_function,  sk_intrinsic_subroutine,
                                          sk_interface,           sk_namelist};
    for (unsigned kind = 0; kind < symbol_kind_count; ++kind) {
        if (kind != sk_host_link && kind != sk_external_unused) {
            add(static_cast<symbol_kind>(kind), ("K" + std::to_string(kind)).c_str());
        }
    }
    add(sk_variable, "PRIVATE")->flags &= ~std::uint32_t{sf_public};
    add(sk_variable, "HIDDEN")->flags &= ~std::uint32_t{sf_visible};
    add(sk_variable, "INFERRED", sf_public | sf_inferred);
    add(sk_variable, "LAST");
    pop_scope();
    std::string expected;
    for (const symbol_kind kind : given_away) {
        expected += "K" + std::to_string(kind) + " ";
    }
    std::string listed;
    for (auto *s = static_cast<symbol *>(module->symbol_link->aux); s; s = s->next_in_scope) {
        listed += s->name->spelling + std::string(" ");
    }
    EXPECT_EQ(listed, expected + "LAST ");
    EXPECT_EQ(record->aux, module->symbol_link->aux);
}

TEST_F(ScopesTest, OnlyAModuleHasAPublicList) {
    object *o = push_unit(sc_program, sk_program, "P");
    add(sk_variable, "A");
    pop_scope();
    EXPECT_EQ(o->symbol_link->aux, nullptr);

    symbol *present = alloc_symbol(sk_variable);
    object *module = push_unit(sc_module, sk_module, "M");
    module->symbol_link->aux = present; // it has come in by USE
    add(sk_variable, "A");
    pop_scope();
    EXPECT_EQ(module->symbol_link->aux, present);
}

} // namespace
} // namespace zf90
