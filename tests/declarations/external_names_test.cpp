// The records of external names: what the second occurrence of a name becomes.
#include "declarations/external_names.h"

#include "declarations/units_fixture.h"

namespace zf90 {
namespace {

class ExternalNamesTest : public UnitsTest {
protected:
    // A procedure's symbol in the row of a unit, as a declaration or a call makes it.
    static symbol *occurrence(symbol_kind kind, type *return_type, std::uint32_t line = 1,
                              const char *name = "X") {
        symbol *s = new_symbol(kind, at(name, line, 7), 0);
        object *o = new_object();
        tie_to_symbol(o, s);
        o->storage_class = kind == sk_block_data ? sc_blockdata
                           : kind == sk_program  ? sc_program
                                                 : sc_external;
        o->type = kind == sk_block_data ? new_type(tk_blockdata) : new_routine_type(o, return_type);
        s->entity = o;
        return s;
    }

    static symbol *subroutine(std::uint32_t line = 1) { return occurrence(sk_subroutine, void_type(), line); }
    static symbol *function(type *t, std::uint32_t line = 1) { return occurrence(sk_function, t, line); }
    static symbol *unused(std::uint32_t line = 1) {
        return occurrence(sk_external_unused, unspec_routine_type(), line);
    }

    static symbol *defined(symbol *s) {
        object *o = object_of(s);
        o->variant.assoc_scope = new_scope();
        o->variant.assoc_scope->assoc_routine = o;
        return s;
    }

    // Makes what is known of the parameters: their types.
    static symbol *with_params(symbol *s, std::initializer_list<type *> types) {
        routine_variant &r = object_of(s)->type->routine;
        r.has_param_info = true;
        param_type **end = &r.param_type_list;
        for (type *t : types) {
            *end = new_param_type();
            (*end)->type = t;
            end = &(*end)->next;
        }
        return s;
    }

    static object *object_of(const symbol *s) { return entity_as<object>(s); }
    static const object *globals() { return scope_stack[0].il_scope->objects; }

    // The message at the second occurrence, which is on line 2.
    static std::string message(error_code code, const char *argument = "X") {
        std::string text = message_text(code);
        if (const std::size_t place = text.find("%s"); place != std::string::npos) {
            text.replace(place, 2, argument);
        }
        return "error:   " + text + "\n";
    }

    std::string entering(symbol *s) {
        std::string text = messages_of([&] { result = enter_external(s); });
        const std::size_t place = text.find("error:");
        return place == std::string::npos ? text : text.substr(place);
    }

    symbol *result = nullptr;
};

TEST_F(ExternalNamesTest, TheFirstOccurrenceMakesTheRecord) {
    symbol *s = subroutine();
    EXPECT_EQ(entering(s), "");
    EXPECT_EQ(result, global_symbol(s->name));
    EXPECT_NE(result, s);
    EXPECT_EQ(result->kind, sk_subroutine);
    EXPECT_EQ(result->scope_depth, 0);
    EXPECT_FALSE(result->flags & sf_visible);
    EXPECT_EQ(result->entity, s->entity);
    EXPECT_EQ(globals(), object_of(s));
    EXPECT_EQ(entering(s), ""); // once more, at the end of its host
    EXPECT_EQ(result, global_symbol(s->name));
    EXPECT_EQ(globals()->next, nullptr);
}

TEST_F(ExternalNamesTest, CallsOfOneProcedureShareItsObject) {
    symbol *first = subroutine();
    symbol *second = subroutine(2);
    enter_external(first);
    EXPECT_EQ(entering(second), "");
    EXPECT_EQ(second->entity, first->entity);
    EXPECT_EQ(result, global_symbol(first->name));
    EXPECT_EQ(names(globals()), "X");
}

TEST_F(ExternalNamesTest, ADefinitionTakesThePlaceOfTheCall) {
    symbol *call = subroutine();
    enter_external(call);
    symbol *other = occurrence(sk_subroutine, void_type(), 1, "Y");
    enter_external(other);
    symbol *definition = defined(with_params(subroutine(2), {default_real()}));
    object *d = object_of(definition);
    d->is_pointer = d->is_host = true;
    scope *b = d->variant.assoc_scope;
    const auto own = [&](storage_class sc) {
        object *o = new_object();
        o->storage_class = sc;
        o->assoc.routine = d;
        o->next = b->objects;
        b->objects = o;
        return o;
    };
    object *result_var = own(sc_associated);
    result_var->is_result = true;
    result_var->variant.result_var_function = d;
    for (const storage_class sc : {sc_local, sc_internal, sc_stmt_func, sc_external}) {
        own(sc);
    }
    EXPECT_EQ(entering(definition), "");
    object *o = object_of(call);
    EXPECT_EQ(definition->entity, o);
    EXPECT_EQ(names(globals()), "Y X");
    EXPECT_EQ(o->source_corresp.decl_position.seq, 2u);
    EXPECT_EQ(o->symbol_link, definition);
    EXPECT_EQ(o->variant.assoc_scope, b);
    EXPECT_EQ(b->assoc_routine, o);
    EXPECT_TRUE(o->is_pointer);
    EXPECT_TRUE(o->is_host);
    EXPECT_TRUE(o->type->routine.has_param_info);
    EXPECT_EQ(o->type->routine.assoc_routine, o);
    EXPECT_EQ(o->type->routine.param_type_list->type, default_real());
    for (const object *each = b->objects; each != result_var; each = each->next) {
        EXPECT_EQ(each->assoc.routine, o);
    }
    EXPECT_EQ(result_var->assoc.routine, d); // its storage object, as it were
    EXPECT_EQ(result_var->variant.result_var_function, o);
}

TEST_F(ExternalNamesTest, ACallOfADefinedProcedure) {
    symbol *definition = defined(with_params(subroutine(), {}));
    enter_external(definition);
    symbol *call = subroutine(2);
    EXPECT_EQ(entering(call), "");
    EXPECT_EQ(call->entity, definition->entity);
    EXPECT_EQ(object_of(call)->source_corresp.decl_position.seq, 1u);
}

TEST_F(ExternalNamesTest, TwoBodies) {
    enter_external(defined(subroutine()));
    EXPECT_EQ(entering(defined(subroutine(2))),
              message(msg_inconsistent_use_of_previously_specified_external_name_named));
    EXPECT_EQ(result, nullptr);
    EXPECT_EQ(global_symbol(atom_of("X")), nullptr);
    EXPECT_EQ(entering(defined(subroutine(3))), ""); // anew
    EXPECT_NE(result, nullptr);
}

TEST_F(ExternalNamesTest, AnEntryThatWasCalledBefore) {
    symbol *call = subroutine();
    enter_external(call);
    object *o = object_of(call);
    symbol *entry = subroutine(2);
    object *e = object_of(entry);
    e->is_fortran_entry = true;
    scope *b = new_scope();
    e->variant.assoc_scope = b;
    EXPECT_EQ(entering(entry), "");
    EXPECT_EQ(entry->entity, o);
    EXPECT_TRUE(o->is_fortran_entry);
    EXPECT_EQ(o->variant.assoc_scope, b);
    EXPECT_EQ(b->assoc_routine, nullptr); // the unit's own routine is another
}

// ---- kinds

TEST_F(ExternalNamesTest, AnExternalThatIsOnlyDeclared) {
    symbol *declared = unused();
    enter_external(declared);
    object *o = object_of(declared);

    symbol *again = unused(2);
    EXPECT_EQ(entering(again), "");
    EXPECT_EQ(again->entity, o);

    symbol *call = function(default_integer(), 3);
    EXPECT_EQ(entering(call), "");
    EXPECT_EQ(call->entity, o);
    EXPECT_EQ(o->type->routine.return_type, default_integer());
    EXPECT_EQ(o->type->routine.assoc_routine, o);
    EXPECT_EQ(result->kind, sk_function);
    EXPECT_EQ(result, global_symbol(atom_of("X")));

    symbol *later = unused(4); // and now the other way round
    EXPECT_EQ(entering(later), "");
    EXPECT_EQ(later->kind, sk_function);
    EXPECT_EQ(later->entity, o);
    EXPECT_EQ(names(globals()), "X");
}

TEST_F(ExternalNamesTest, AnExternalThatIsDefinedLater) {
    symbol *declared = unused();
    enter_external(declared);
    enter_external(occurrence(sk_subroutine, void_type(), 1, "Y"));
    symbol *definition = defined(subroutine(2));
    scope *b = object_of(definition)->variant.assoc_scope;
    EXPECT_EQ(entering(definition), "");
    EXPECT_EQ(definition->entity, declared->entity);
    EXPECT_EQ(object_of(declared)->variant.assoc_scope, b);
    EXPECT_EQ(b->assoc_routine, object_of(declared));
    EXPECT_EQ(names(globals()), "Y X");
    EXPECT_EQ(entering(defined(subroutine(3))),
              message(msg_inconsistent_use_of_previously_specified_external_name_named));
}

TEST_F(ExternalNamesTest, AnExternalThatIsBlockData) {
    symbol *declared = unused();
    enter_external(declared);
    symbol *definition = defined(occurrence(sk_block_data, nullptr, 2));
    EXPECT_EQ(entering(definition), "");
    EXPECT_EQ(object_of(declared)->storage_class, sc_blockdata);
    EXPECT_EQ(object_of(declared)->type->type_code, tk_blockdata);
    symbol *later = unused(3);
    EXPECT_EQ(entering(later), "");
    EXPECT_EQ(later->kind, sk_block_data);
    EXPECT_EQ(later->entity, declared->entity);
}

TEST_F(ExternalNamesTest, KindsThatContradictEachOther) {
    constexpr symbol_kind kinds[] = {sk_subroutine, sk_function, sk_program,
                                     sk_block_data, sk_module,   sk_external_unused};
    const auto is_procedure = [](symbol_kind k) {
        return k == sk_subroutine || k == sk_function || k == sk_block_data;
    };
    for (const symbol_kind first : kinds) {
        for (const symbol_kind second : kinds) {
            SetUp();
            const bool fits = (first == second && (first == sk_subroutine || first == sk_function ||
                                                   first == sk_external_unused)) ||
                              (first == sk_external_unused && is_procedure(second)) ||
                              (second == sk_external_unused && is_procedure(first));
            enter_external(occurrence(first, unknown_type()));
            EXPECT_EQ(entering(occurrence(second, unknown_type(), 2)),
                      fits ? "" : message(msg_inconsistent_use_of_previously_specified_external_name_named))
                << first << " " << second;
            EXPECT_EQ(result != nullptr, fits);
        }
    }
}

TEST_F(ExternalNamesTest, ACommonBlockOfTheName) {
    symbol *block = new_symbol(sk_common_block, at("X"), 0);
    EXPECT_TRUE(common_block_exists(block->name));
    EXPECT_EQ(entering(subroutine(2)),
              message(msg_common_block_name_is_not_allowed_as_a_procedure_name_named));
    EXPECT_EQ(result, nullptr);
    unlink_symbol(block);
    EXPECT_FALSE(common_block_exists(block->name));
    new_symbol(sk_common_block, at("Y"), -1);
    EXPECT_FALSE(common_block_exists(atom_of("Y")));
}

// ---- types

TEST_F(ExternalNamesTest, ReturnTypes) {
    type *const c3 = default_character(3);
    type *const c4 = default_character(4);
    type *const any = assumed_character_type(default_character_kind);
    type *const by_expression = new_type(tk_fcharacter);
    set_expression_bound(by_expression->character.length, new_expr_node(enk_empty));
    type *const other_expression = new_type(tk_fcharacter);
    set_expression_bound(other_expression->character.length, new_expr_node(enk_empty));
    struct {
        type *first, *second, *joined; // no joined type: an error
    } const cases[] = {
        {default_real(), default_real(), default_real()},
        {default_real(), default_integer(), nullptr},
        {unknown_type(), default_real(), default_real()},
        {default_real(), unknown_type(), default_real()},
        {unspec_routine_type(), default_real(), default_real()},
        {default_real(), void_type(), default_real()},
        {void_type(), default_real(), default_real()},
        {default_real(), error_type(), default_real()},
        {c3, c3, c3},
        {c3, c4, nullptr},
        {any, c3, c3},
        {c3, any, c3},
        {c3, default_real(), nullptr},
        {by_expression, other_expression, by_expression},
        {new_array_type(default_real(), 1), default_real(), nullptr},
    };
    for (const auto &c : cases) {
        symbol *first = function(c.first);
        enter_external(first);
        const std::string expected =
            c.joined
                ? ""
                : message(msg_return_type_inconsistent_for_a_previous_specification_of_the_function_named);
        EXPECT_EQ(entering(function(c.second, 2)), expected);
        if (c.joined) {
            EXPECT_EQ(object_of(first)->type->routine.return_type, c.joined);
            unlink_symbol(result);
        } else {
            EXPECT_EQ(global_symbol(atom_of("X")), nullptr);
        }
    }
}

TEST_F(ExternalNamesTest, Parameters) {
    const auto array = [](unsigned rank, std::int32_t extent, shape_kind shape = explicit_shape) {
        type *t = new_array_type(default_real(), rank);
        t->array.shape_kind = shape;
        for (unsigned i = 0; i < rank; ++i) {
            set_constant_bound(t->array.bound->bounds[i], 1);
            if (extent > 0) {
                set_constant_bound(t->array.bound->bounds[rank + i], extent);
            }
        }
        if (shape == assumed_size) {
            t->array.bound->bounds[2 * rank - 1].kind = bound_assumed;
        }
        return t;
    };
    const auto procedure = [](type *return_type, std::initializer_list<type *> types) {
        type *t = new_routine_type(nullptr, return_type);
        t->routine.has_param_info = true;
        param_type **end = &t->routine.param_type_list;
        for (type *p : types) {
            *end = new_param_type();
            (*end)->type = p;
            end = &(*end)->next;
        }
        return t;
    };
    type *const untold = new_routine_type(nullptr, unspec_routine_type());
    struct {
        std::initializer_list<type *> first, second;
        bool fits;
    } const cases[] = {
        {{}, {}, true},
        {{default_real()}, {default_real()}, true},
        {{default_real()}, {}, false},
        {{}, {default_real()}, false},
        {{default_real()}, {default_integer()}, false},
        {{default_real(), default_integer()}, {default_integer(), default_real()}, false},
        {{unknown_type()}, {default_integer()}, true},
        {{default_character(3)}, {default_character(3)}, true},
        {{default_character(3)}, {default_character(4)}, false},
        {{assumed_character_type(0)}, {assumed_character_type(0)}, true},
        {{assumed_character_type(0)}, {default_character(4)}, false},
        {{array(1, 3)}, {array(1, 3)}, true},
        {{array(1, 3)}, {array(1, 4)}, false},
        {{array(1, 3)}, {array(2, 3)}, false},
        {{array(1, 3)}, {default_real()}, false},
        {{array(1, 0, assumed_size)}, {array(1, 0, assumed_size)}, true},
        {{array(1, 0, assumed_size)}, {array(1, 3)}, false},
        {{procedure(default_real(), {default_real()})}, {procedure(default_real(), {default_real()})}, true},
        {{procedure(default_real(), {default_real()})}, {procedure(default_real(), {})}, false},
        {{procedure(default_real(), {})}, {procedure(default_integer(), {})}, false},
        {{procedure(void_type(), {})}, {procedure(default_integer(), {})}, false},
        {{procedure(void_type(), {default_real()})}, {untold}, true},
        {{procedure(void_type(), {})}, {default_real()}, false},
        {{procedure(void_type(), {procedure(void_type(), {default_real()})})},
         {procedure(void_type(), {procedure(void_type(), {default_integer()})})},
         false},
    };
    int number = 0;
    for (const auto &c : cases) {
        enter_external(with_params(subroutine(), c.first));
        EXPECT_EQ(entering(with_params(subroutine(2), c.second)),
                  c.fits ? "" : message(msg_parameters_conflict_with_previous_specification_of_procedure))
            << "case " << number;
        ++number;
        if (result) {
            unlink_symbol(result);
        }
    }
}

TEST_F(ExternalNamesTest, TheDefinitionsParametersCount) {
    symbol *prototype = with_params(subroutine(), {default_real()});
    object_of(prototype)->type->routine.param_type_list->source_corresp.name = atom_of("A");
    enter_external(prototype);
    symbol *definition = defined(with_params(subroutine(2), {default_real()}));
    object_of(definition)->type->routine.param_type_list->source_corresp.name = atom_of("B");
    object_of(definition)->type->routine.is_recursive = true;
    EXPECT_EQ(entering(definition), "");
    EXPECT_EQ(names(object_of(prototype)->type->routine.param_type_list), "B");
    EXPECT_TRUE(object_of(prototype)->type->routine.is_recursive);
}

TEST_F(ExternalNamesTest, AttributesCountForAFunctionWithANamedResult) {
    const auto define = [&](const char *result_name) {
        symbol *s = with_params(function(default_real(), 2), {default_real()});
        defined(s);
        object *r = new_object();
        r->source_corresp.name = atom_of(result_name);
        object_of(s)->variant.assoc_scope->function_result_var = r;
        return s;
    };
    for (const auto &[name, fits] : {std::pair{"R", false}, {"X", true}}) {
        symbol *prototype = with_params(function(default_real()), {default_real()});
        object_of(prototype)->type->routine.param_type_list->intent_in = true;
        enter_external(prototype);
        EXPECT_EQ(entering(define(name)),
                  fits ? "" : message(msg_parameters_conflict_with_previous_specification_of_procedure));
        if (result) {
            unlink_symbol(result);
        }
    }
}

// ---- names that differ by case

TEST_F(ExternalNamesTest, NamesThatDifferByCase) {
    case_sensitive_names = true;
    EXPECT_EQ(entering(occurrence(sk_subroutine, void_type(), 1, "Foo")), "");
    EXPECT_EQ(entering(occurrence(sk_subroutine, void_type(), 2, "FOO")),
              message(msg_name_conflicts_with_previously_used_external_name, "Foo"));
    EXPECT_EQ(entering(occurrence(sk_subroutine, void_type(), 2, "Foo")), "");
    EXPECT_EQ(entering(occurrence(sk_subroutine, void_type(), 2, "Bar")), "");
    const symbol *shadow = find_kind(atom_of("FOO"), sk_folded_external);
    ASSERT_NE(shadow, nullptr);
    EXPECT_EQ(shadow->scope_depth, -1);
    EXPECT_EQ(shadow->entity, atom_of("Foo"));
    case_sensitive_names = false;
}

TEST_F(ExternalNamesTest, WithoutCaseThereAreNoShadows) {
    check_folded_name(at("FOO"));
    EXPECT_EQ(find_kind(atom_of("FOO"), sk_folded_external), nullptr);
}

} // namespace
} // namespace zf90
