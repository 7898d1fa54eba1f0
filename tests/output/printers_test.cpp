#include "il/constants.h"
#include "il/entries.h"
#include "il/il_fixture.h"
#include "il/kind_names.h"
#include "il/types.h"
#include "intrinsics/intrinsic_codes.h"
#include "output/fortran_printer.h"
#include "output/il_dump.h"

#include <cstdlib>
#include <string>

using namespace zf90;

namespace {

class PrintersTest : public il_test {
protected:
    template <class Print> std::string printed(Print print) {
        char *text = nullptr;
        std::size_t size = 0;
        dump_stream = open_memstream(&text, &size);
        print();
        std::fclose(dump_stream);
        std::string result(text, size);
        std::free(text);
        return result;
    }
    std::string expression(const expr_node *e) {
        return printed([&] { print_expression(e); });
    }
    std::string value(const constant *c) {
        return printed([&] { print_constant(c); });
    }
    std::string type_text(const type *t) {
        return printed([&] { print_type(t); });
    }
    std::string dumped(il_entry *entry, entry_kind kind, std::uint32_t size = 0) {
        return printed([&] { dump_entry(entry, kind, size); });
    }
    std::string html_of(il_entry *entry, entry_kind kind) {
        dump_html = true;
        const std::string html = dumped(entry, kind);
        dump_html = false;
        return html;
    }
    static bool has_line(const std::string &text, const std::string &line) {
        return ("\n" + text).find("\n" + line + "\n") != std::string::npos;
    }

    static atom *name(const char *spelling) {
        atom *a = il_new<atom>();
        a->spelling = spelling;
        return a;
    }
    static object *variable(const char *spelling, type *t) {
        object *o = new_object();
        o->source_corresp.name = name(spelling);
        o->storage_class = sc_local;
        o->type = t;
        return o;
    }
    static expr_node *reference(const char *spelling) {
        expr_node *e = new_expr_node(enk_object);
        e->object = variable(spelling, default_integer());
        e->type = e->object->type;
        return e;
    }
    static expr_node *number(std::int32_t n) { return new_integer_constant_node(n, default_integer()); }
    static expr_node *list(expr_node *first, expr_node *second, expr_node *third = nullptr) {
        first->next = second;
        second->next = third;
        return first;
    }
    static expr_node *binary(operation_kind op) {
        return new_operation(op, default_integer(), list(reference("A"), reference("B")));
    }
};

TEST_F(PrintersTest, OperatorsAreThoseOfTheLanguage) {
    const struct {
        operation_kind op;
        const char *text;
    } rows[] = {{eok_not, ".not."},       {eok_inegate, "-"},
                {eok_subtract, "-"},      {eok_concat, "//"},
                {eok_land, ".and."},      {eok_lor, ".or."},
                {eok_neqv, ".neqv."},     {eok_eqv, ".eqv."},
                {eok_lassign, "="},       {eok_sassign, "="},
                {eok_assign, "="},        {eok_xadd, "+"},
                {eok_multiply, "*"},      {eok_idivide, "/"},
                {eok_x_to_x_expon, "**"}, {eok_ceq, "=="},
                {eok_fne, "/="},          {eok_gt, ">"},
                {eok_clt, "<"},           {eok_ige, ">="},
                {eok_le, "<="},           {eok_passign, "=>"},
                {eok_reorder, "reorder"}, {eok_expand, "expand"},
                {eok_reshape, "reshape"}, {eok_cast, ""},
                {eok_spread, ""},         {eok_error, "<error operator>"}};
    for (const auto &row : rows) {
        EXPECT_STREQ(operator_text(row.op), row.text);
    }
}

TEST_F(PrintersTest, ParenthesesAreDroppedAroundComparisonsAndAssignments) {
    EXPECT_EQ(expression(binary(eok_iadd)), "(A + B)");
    EXPECT_EQ(expression(binary(eok_concat)), "(A // B)");
    EXPECT_EQ(expression(binary(eok_ile)), "A <= B");
    EXPECT_EQ(expression(binary(eok_land)), "A .and. B");
    EXPECT_EQ(expression(binary(eok_iassign)), "A = B");
    EXPECT_EQ(expression(binary(eok_passign)), "A => B");
    EXPECT_EQ(expression(new_operation(eok_inegate, default_integer(), reference("A"))), "-A");
    EXPECT_EQ(expression(new_operation(eok_cast, default_real(), reference("A"))), "A");
    EXPECT_EQ(expression(binary(eok_reshape)), "reshape(A, B)");
}

TEST_F(PrintersTest, AnOperationAsASubroutineCallHasItsResultFirst) {
    expr_node *e =
        new_operation(eok_iadd, default_integer(), list(reference("R"), reference("A"), reference("B")));
    e->treated_as_subroutine_call = true;
    EXPECT_EQ(expression(e), "R=(A + B)");
}

TEST_F(PrintersTest, LabelsAreAssigned) {
    expr_node *label_value = new_expr_node(enk_stmt_label_value);
    label_value->stmt_label_value = new_label();
    label_value->stmt_label_value->source_corresp.name = name("10");
    EXPECT_EQ(expression(new_operation(eok_iassign, default_integer(), list(reference("I"), label_value))),
              "assign 10 to I");
}

TEST_F(PrintersTest, NodesOfEveryKind) {
    EXPECT_EQ(expression(new_error_node()), "<error expression>");
    EXPECT_EQ(expression(new_expr_node(enk_empty)), "<empty>");

    expr_node *triplet = new_expr_node(enk_triplet);
    triplet->first = number(1);
    EXPECT_EQ(expression(triplet), "1:");
    triplet->second = reference("N");
    triplet->stride = number(2);
    EXPECT_EQ(expression(triplet), "1:N:2");

    expr_node *element = new_expr_node(enk_subscript);
    element->array_expr = reference("A");
    element->ind_list = list(number(1), number(2));
    EXPECT_EQ(expression(element), "A(1, 2)");
    element->ignore_lbound = true;
    EXPECT_EQ(expression(element), "A[1, 2]");

    expr_node *component = new_expr_node(enk_field);
    component->base_expr = reference("P");
    component->field_var = variable("X", default_real());
    EXPECT_EQ(expression(component), "P%X");

    expr_node *intrinsic = new_expr_node(enk_intrinsic);
    intrinsic->intrinsic = intr_max;
    intrinsic->operands = list(number(1), number(2));
    EXPECT_EQ(expression(intrinsic), "MAX(1, 2)");

    expr_node *loop = new_expr_node(enk_implied_do);
    loop->expr_list = reference("A");
    loop->do_info->variable = reference("I");
    loop->do_info->initial_value = number(1);
    loop->do_info->final_value = number(9);
    EXPECT_EQ(expression(loop), "(A, I = 1, 9)");
    loop->do_info->increment = number(2);
    loop->node_kind = enk_isum;
    EXPECT_EQ(expression(loop), "sum((/(A, I = 1, 9, 2)/))");

    expr_node *array = new_expr_node(enk_constructor);
    array->type = new_array_type(default_integer(), 1);
    array->constructor = list(number(1), number(2));
    EXPECT_EQ(expression(array), "(/1, 2/)");
    array->type = new_type(tk_derived_type);
    array->type->source_corresp.name = name("POINT");
    EXPECT_EQ(expression(array), "POINT (1, 2)");
    EXPECT_EQ(expression(new_ref(array)), "POINT (1, 2)");
}

TEST_F(PrintersTest, WhatComesFromAModuleHasItsNameBefore) {
    expr_node *e = reference("X");
    e->object->storage_class = sc_use_associated;
    e->object->assoc.module = variable("M", new_type(tk_module));
    EXPECT_EQ(expression(e), "M_X");
    expr_node *call = new_expr_node(enk_call);
    call->routine = variable("SUB", new_type(tk_routine));
    call->routine->storage_class = sc_mod_proc;
    call->routine->assoc.module = e->object->assoc.module;
    EXPECT_EQ(expression(call), "M_SUB()");
    statement *s = new_statement(stmk_expr);
    s->expr = call;
    EXPECT_EQ(printed([&] { print_statement(nullptr, s, false); }), "      call M_SUB()\n");
}

TEST_F(PrintersTest, ValuesHaveTheirKindsUnlessTheyAreTheDefault) {
    EXPECT_EQ(value(make_integer_constant(-7, default_integer())), "-7");
    EXPECT_EQ(value(make_integer_constant(7, integer_type(0))), "7_1");
    EXPECT_EQ(value(make_real_constant(2, default_real())), "2.0");
    EXPECT_EQ(value(make_real_constant(1e30, double_precision())), "1e+30_2");
    EXPECT_EQ(value(make_logical_constant(1, default_logical())), ".TRUE.");
    EXPECT_EQ(value(make_logical_constant(0, logical_type(0))), ".FALSE._1");
}

TEST_F(PrintersTest, CharactersThatAreNoneOfPrintHaveTheirNumbers) {
    constant *c = new_constant();
    set_constant_repr(c, ck_value);
    c->type = default_character(4);
    static unsigned char bytes[] = {'a', '"', '\n', '<'};
    c->value.bytes = bytes;
    EXPECT_EQ(value(c), "\"a\"\"\\0au<\"");
    EXPECT_TRUE(has_line(dumped(c, kind_constant), "character_value:         \"a\\\"\\012<\""));
}

TEST_F(PrintersTest, InitialValuesInPiecesShowTheirPlaces) {
    constant *aggregate = new_constant();
    set_constant_repr(aggregate, ck_aggregate);
    constant *position = new_constant();
    set_constant_repr(position, ck_init_position);
    position->position.offset = 8;
    constant *repeat = new_constant();
    set_constant_repr(repeat, ck_init_repeat);
    repeat->repeat.count = 3;
    repeat->repeat.constant = make_integer_constant(5, default_integer());
    constant *index = new_constant();
    set_constant_repr(index, ck_init_index);
    index->index = {1, 9, 2};
    for (constant *c : {position, repeat, index, make_integer_constant(6, default_integer())}) {
        append_to_aggregate(aggregate, c);
    }
    EXPECT_EQ(value(aggregate), "<data> /<from pos 8> <repeat 3> 5, <from index 1> <to 9> <with 2> 6/");
    EXPECT_EQ(value(new_constant()), "<bad constant kind>");
    EXPECT_TRUE(has_line(dumped(repeat, kind_constant), "count:                   3"));
}

TEST_F(PrintersTest, Types) {
    EXPECT_EQ(type_text(default_integer()), "integer(2)");
    EXPECT_EQ(type_text(logical_type(0)), "logical(1)");
    EXPECT_EQ(type_text(default_real()), "real(1)");
    EXPECT_EQ(type_text(double_precision()), "double precision");
    EXPECT_EQ(type_text(complex_type(1)), "complex(2)");
    EXPECT_EQ(type_text(default_character(3)), "character(3, 1)");
    EXPECT_EQ(type_text(assumed_character_type(0)), "character(*, 1)");
    EXPECT_EQ(type_text(error_type()), "error-type");
    EXPECT_EQ(type_text(unknown_type()), "unknown-type");
    type *same = new_type(tk_fcharacter);
    same->character.length.kind = bound_same_as;
    same->character.length.expr = reference("T");
    EXPECT_EQ(type_text(same), "character(len(T), 1)");
    type *any = new_type(tk_integer);
    any->kind = ANY_KIND;
    EXPECT_EQ(type_text(any), "integer(*)");
    EXPECT_TRUE(has_line(dumped(any, kind_type), "kind:                    ANY_KIND"));
    EXPECT_EQ(dumped(any, kind_type).substr(0, 28), "type_0: integer(ANY_KIND)\nso");
}

TEST_F(PrintersTest, ArraysHaveTheirBoundsBeforeTheirRank) {
    type *t = new_array_type(default_integer(), 2);
    set_constant_bound(t->array.bound->bounds[0], 1);
    set_constant_bound(t->array.bound->bounds[2], 8);
    set_constant_bound(t->array.bound->bounds[1], 0);
    t->array.bound->bounds[3].kind = bound_assumed;
    EXPECT_EQ(type_text(t), "integer(2), dimension (1:8, 0:*)");
    const std::string text = dumped(t, kind_type);
    EXPECT_EQ(text.substr(0, text.find('\n')), "type_0: integer(1)[]");
    EXPECT_TRUE(has_line(text, "bound.info:              bound_info_entry_0\n"
                               "rank:                    2\n"
                               "shape_kind:              explicit_shape"));
    t->array.bound->bounds[0].kind = bound_same_as;
    t->array.bound->bounds[0].expr = reference("A");
    t->array.bound->bounds[1].kind = bound_undefined;
    t->array.bound->bounds[2].kind = bound_error;
    t->array.bound->bounds[3].kind = static_cast<bound_kind>(77);
    EXPECT_EQ(dumped(t->array.bound, kind_bound_info_entry, bound_info_size(2)),
              "bound_info_entry_0\n"
              "dimension 1 lower bound: same as for expr_node_0\n"
              "            upper bound: error bound\n"
              "dimension 2 lower bound: undefined bound\n"
              "            upper bound: **BAD BOUND KIND**\n");
}

TEST_F(PrintersTest, AnEntryThatIsMissingIsNull) { EXPECT_EQ(dumped(nullptr, kind_label), "NULL\n"); }

TEST_F(PrintersTest, LongLabelsHaveALineOfTheirOwn) {
    expr_node *e = number(1);
    const std::string text = dumped(e, kind_expr_node);
    EXPECT_TRUE(has_line(text, "treated_as_subroutine_call:\n                         FALSE"));
    EXPECT_TRUE(has_line(text, "argument keyword:        NULL"));
    EXPECT_TRUE(has_line(text, "node_kind:               enk_constant"));
    e->is_specifier = true;
    e->selector = iosk_iostat;
    EXPECT_TRUE(has_line(dumped(e, kind_expr_node), "argument selector:       iosk_iostat"));
}

TEST_F(PrintersTest, ObjectsHaveTheirOffsetBetweenTheirTwoLinks) {
    object *o = variable("I", default_integer());
    o->storage_class = sc_associated;
    o->assoc.variable = variable("BLK", default_integer());
    o->association_offset = 4;
    const std::string text = dumped(o, kind_object);
    EXPECT_EQ(text.substr(0, text.find('\n')), "object_0: \"I\"");
    EXPECT_TRUE(has_line(text, "  scope_depth:           <out of scope>"));
    EXPECT_TRUE(has_line(text, "association_offset:      4\nassoc.variable:          object_0: BLK"));
    o->storage_class = sc_common;
    EXPECT_TRUE(has_line(dumped(o, kind_object), "variant.initializer:     NULL\nassociation_offset:      4\n"
                                                 "assoc.routine:           object_0: BLK"));
}

TEST_F(PrintersTest, HtmlHasAnchorsLinksAndEscapes) {
    object *o = variable("A<B", default_integer());
    o->storage_class = sc_associated;
    o->assoc.variable = variable("BLK", default_integer());
    const std::string text = html_of(o, kind_object);
    EXPECT_EQ(text.substr(0, text.find('\n')), "<A NAME=\"object_0\"></A><B><U>object_0</U></B>: \"A&lt;B\"");
    EXPECT_TRUE(has_line(text, "assoc.variable:          <A HREF=\"#object_0\">object_0</A>: BLK"));
    EXPECT_TRUE(has_line(text, "  scope_depth:           &lt;out of scope&gt;"));
}

TEST_F(PrintersTest, ValuesOutOfRangeHaveTextsOfTheirOwn) {
    input_output_description *j = new_input_output_description();
    j->unit_kind = iou_error;
    EXPECT_TRUE(has_line(dumped(j, kind_input_output_description), "unit_kind:               <error>"));
    j->unit_kind = static_cast<unit_kind>(9);
    j->format_kind = static_cast<format_kind>(9);
    const std::string text = dumped(j, kind_input_output_description);
    EXPECT_TRUE(has_line(text, "unit_kind:               **BAD IO UNIT KIND**"));
    EXPECT_TRUE(has_line(text, "format_kind:             **BAD IO FORMAT KIND**"));
    EXPECT_STREQ(enumerator_name(static_cast<label_kind>(9)), "**BAD LABEL KIND**");
    EXPECT_STREQ(enumerator_name(static_cast<case_range_kind>(9)), "**BAD CASE RANGE KIND**");
    EXPECT_STREQ(enumerator_name(static_cast<source_language>(9)), "**BAD SOURCE LANGUAGE**");
    EXPECT_STREQ(entry_kind_name(99), "**BAD ENTRY KIND**");
    EXPECT_STREQ(enumerator_name(enk_generic_call), "enk_generic_call");
    EXPECT_STREQ(enumerator_name(enk_interface_block), "**BAD EXPR NODE KIND**");
    EXPECT_STREQ(enumerator_name(enk_data_implied_do_var), "enk_data_implied_do_var");
    constant *c = new_constant();
    set_constant_repr(c, ck_value);
    c->type = unknown_type();
    EXPECT_TRUE(has_line(dumped(c, kind_constant), "unknown type constant"));
    c->type = new_type(tk_module);
    EXPECT_TRUE(has_line(dumped(c, kind_constant), "**BAD CONSTANT TYPE**"));
}

TEST_F(PrintersTest, LoopsShowTheirControlInLine) {
    statement *s = new_statement(stmk_ido);
    s->do_loop = new_do_loop();
    s->do_loop->variable = reference("I");
    EXPECT_TRUE(has_line(dumped(s, kind_statement), "loop_statement:          NULL\n"
                                                    "variable:                expr_node_0\n"
                                                    "initial_value:           NULL"));
}

TEST_F(PrintersTest, StatementsFollowTheirLabels) {
    statement *at = new_statement(stmk_label);
    at->label = new_label();
    at->label->source_corresp.name = name("10");
    at->label->kind = lk_executable;
    statement *stop = new_statement(stmk_stop);
    const auto print_both = [&] {
        print_statement(nullptr, at, false);
        print_statement(nullptr, stop, false);
        print_statement(nullptr, stop, false);
    };
    EXPECT_EQ(printed(print_both), "10    stop\n      stop\n");
    at->label->kind = lk_control;
    EXPECT_EQ(printed(print_both), "10:\n      stop\n      stop\n");
}

} // namespace
