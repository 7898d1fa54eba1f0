// The trees that the readers of executable statements build, before anything is checked.
#include "declarations/scopes.h"
#include "statement_tree.h"
#include "statements/constructs.h"
#include "statements/loop.h"
#include "support/front_end.h"

namespace zf90 {
namespace {

class ControlTest : public FrontEndTest {
protected:
    // The bodies of the units of a source, each below its name.
    std::string trees(std::string_view source, bool fixed_form = false) {
        if (fixed_form) {
            restart_front_end(true);
        }
        read(source);
        std::string result;
        put_units(il_root.primary_scope, result);
        return result;
    }

    // Reads all units of a source.
    void read(std::string_view source) {
        scopes_init();
        il_root.primary_scope = push_scope(sr_global);
        end_of_input = false;
        main_program_seen = false;
        open_text(source);
        while (!end_of_input && next_statement()) {
            begin_construct_state();
            set_standard_implicit_types(scope_stack[0]);
            process_program_unit();
        }
        EXPECT_EQ(construct_depth, -1);
        EXPECT_EQ(error_count, 0U);
    }

private:
    static void put_units(const scope *host, std::string &result) {
        for (const object *o = host->objects; o; o = o->next) {
            if (o->type->type_code != tk_routine || !o->variant.assoc_scope) {
                continue;
            }
            const scope *own = o->variant.assoc_scope;
            result += statement_tree::text(own->assoc_block);
            put_units(own, result);
        }
    }
};

} // namespace

TEST_F(ControlTest, IfHoldsOneStatementOrABlock) {
    EXPECT_EQ(trees("if (l) then\n call a\nend if\n"
                    "if (l) then\n call a\n call b\nelse\n call c\n call d\nend if\n"
                    "if (l) then\nelse\n call c\nend if\n"
                    "if (l) then\nend if\n"
                    "if (l) call a\n"
                    "if (l) continue\n"
                    "end\n"),
              "block\n"
              "  if L\n"
              "    expr A()\n"
              "  if L\n"
              "    block\n"
              "      expr A()\n"
              "      expr B()\n"
              "  else\n"
              "    block\n"
              "      expr C()\n"
              "      expr D()\n"
              "  if L\n"
              "  else\n"
              "    expr C()\n"
              "  if L\n"
              "  if L\n"
              "    expr A()\n"
              "  if L\n"
              "  stop\n");
}

TEST_F(ControlTest, ElseIfIsANestOfIfs) {
    EXPECT_EQ(trees("n: if (l) then\n call a\n"
                    "10 else if (m) then n\n call b\n call c\n"
                    "else if (k) then\n"
                    "20 else n\n call d\n"
                    "30 end if n\n"
                    "end\n"),
              "block\n"
              "  label N\n"
              "  if L\n"
              "    expr A()\n"
              "  else\n"
              "    block\n"
              "      label 10\n"
              "      if M\n"
              "        block\n"
              "          expr B()\n"
              "          expr C()\n"
              "      else\n"
              "        if K\n"
              "        else\n"
              "          block\n"
              "            label 20\n"
              "            expr D()\n"
              "  label 30\n"
              "  stop\n");
}

TEST_F(ControlTest, Loops) {
    EXPECT_EQ(trees("do i = 1, n\n call a\nend do\n"
                    "do 10, i = 1, n, 2\n call a\n call b\n10 continue\n"
                    "do\n if (l) exit\n if (m) cycle\nend do\n"
                    "lp: do while (l)\n do\n  if (l) exit lp\n  cycle\n end do\nend do lp\n"
                    "do 20 i = 1, 2\ndo 20 j = 1, 2\n20 call a\n"
                    "do 30 while (l)\n30 end do\n"
                    "do, while (l)\nend do\n"
                    "end\n"),
              "block\n"
              "  label -\n"
              "  ido I=1,N\n"
              "    expr A()\n"
              "  label -\n"
              "  ido I=1,N,2\n"
              "    block\n"
              "      expr A()\n"
              "      expr B()\n"
              "      label 10\n"
              "  label -\n"
              "  ido\n"
              "    block\n"
              "      if L\n"
              "        exit -\n"
              "      if M\n"
              "        cycle -\n"
              "  label LP\n"
              "  while L\n"
              "    block\n"
              "      label -\n"
              "      ido\n"
              "        block\n"
              "          if L\n"
              "            exit LP\n"
              "          cycle -\n"
              "  label -\n"
              "  ido I=1,2\n"
              "    block\n"
              "      label -\n"
              "      ido J=1,2\n"
              "        block\n"
              "          label 20\n"
              "          expr A()\n"
              "  label -\n"
              "  while L\n"
              "    label 30\n"
              "  label -\n"
              "  while L\n"
              "  stop\n");
}

TEST_F(ControlTest, ExitAndCycleLeadToTheLabelOfTheirLoop) {
    trees("do\n do\n  if (l) exit\n end do\n if (l) exit\nend do\nend\n");
    const statement *outer_label =
        il_root.primary_scope->objects->variant.assoc_scope->assoc_block->statements;
    const statement *outer_body = outer_label->next->loop_statement;
    const statement *inner_label = outer_body->statements;
    const statement *inner = inner_label->next;
    ASSERT_EQ(inner->kind, stmk_ido);
    EXPECT_EQ(inner->loop_statement->then_statement->constr_label, inner_label);
    EXPECT_EQ(inner->next->then_statement->constr_label, outer_label);
    EXPECT_EQ(inner_label->label->kind, lk_control);
    EXPECT_EQ(inner_label->label->exec_stmt, inner_label);
}

TEST_F(ControlTest, SelectCase) {
    EXPECT_EQ(trees("select case (k + 1)\n"
                    "call first\n"
                    "case (-1)\n"
                    "case (1, 3:4, :-5, 9:)\n call a\n call b\n"
                    "10 case (n:n)\n"
                    "case default\n call c\n"
                    "end select\n"
                    "select case (k)\n"
                    "20 case (1)\n"
                    "end select\n"
                    "select case (k)\nend select\n"
                    "end\n"),
              "block\n"
              "  select +(K, 1)\n"
              "    block\n"
              "      expr FIRST()\n"
              "      case -1\n"
              "      case 1, 3:4, :-5, 9:\n"
              "        block\n"
              "          expr A()\n"
              "          expr B()\n"
              "          label 10\n"
              "      case N:N\n"
              "      case default\n"
              "        expr C()\n"
              "  select K\n"
              "    block\n"
              "      label 20\n"
              "      case 1\n"
              "  select K\n"
              "  stop\n");
}

TEST_F(ControlTest, Where) {
    EXPECT_EQ(trees("where (m) a = b\n"
                    "where (m)\n a = b\n b = a\n10 elsewhere\n a = c\nend where\n"
                    "where (m)\nend where\n"
                    "if (l) where (m) a = b\n"
                    "end\n"),
              "block\n"
              "  where M\n"
              "    expr =(A, B)\n"
              "  where M\n"
              "    block\n"
              "      expr =(A, B)\n"
              "      expr =(B, A)\n"
              "      label 10\n"
              "  else\n"
              "    expr =(A, C)\n"
              "  where M\n"
              "  if L\n"
              "    where M\n"
              "      expr =(A, B)\n"
              "  stop\n");
}

TEST_F(ControlTest, Jumps) {
    EXPECT_EQ(trees("subroutine s(k, *)\n"
                    "10 goto 20\n"
                    "20 go to (10, 20, 10), k\n"
                    "goto (10), k\n"
                    "30 goto lab, (10, 20, 10)\n"
                    "40 goto lab\n"
                    "50 assign 10 to lab\n"
                    "if (k) 10, 20, 30\n"
                    "60 return\n"
                    "70 return k\n"
                    "80 end\n"),
              "block\n"
              "  label 10\n"
              "  goto 20\n"
              "  label 20\n"
              "  computed_goto K -> 10, 20, 10\n"
              "  computed_goto K -> 10\n"
              "  label 30\n"
              "  assigned_goto LAB -> 10, 20\n"
              "  label 40\n"
              "  assigned_goto LAB -> \n"
              "  label 50\n"
              "  expr operation(LAB, *10)\n"
              "  iarith_if K -> 10, 20, 30\n"
              "  label 60\n"
              "  return\n"
              "  label 70\n"
              "  alt_return K\n"
              "  label 80\n"
              "  return\n");
}

TEST_F(ControlTest, StopAndPause) {
    EXPECT_EQ(trees("if (l) stop\n"
                    "if (l) stop 00123\n"
                    "if (l) stop 'it''s'\n"
                    "if (l) stop 1_'kind'\n"
                    "if (l) pause 7\n"
                    "stop 99999999999\n"
                    "end\n"),
              "block\n"
              "  if L\n"
              "    stop\n"
              "  if L\n"
              "    stop '00123'\n"
              "  if L\n"
              "    stop 'it's'\n"
              "  if L\n"
              "    stop 'kind'\n"
              "  if L\n"
              "    pause '7'\n"
              "  stop '99999999999'\n");
}

TEST_F(ControlTest, FixedForm) {
    EXPECT_EQ(trees("      DO10I=1,3\n"
                    "      IF(L)GO TO 1 0\n"
                    "      IF(M)THEN\n"
                    "      ELSEIF(N)THEN\n"
                    "      STOP1 2\n"
                    "      ENDIF\n"
                    "   10 CONTINUE\n"
                    "      LP:DOWHILE(L)\n"
                    "      CYCLELP\n"
                    "      ENDDOLP\n"
                    "      SELECTCASE(K)\n"
                    "      CASE(1:2)\n"
                    "      CASEDEFAULT\n"
                    "      ENDSELECT\n"
                    "      WHERE(M)\n"
                    "      ELSE WHERE\n"
                    "      A=B\n"
                    "      ENDWHERE\n"
                    "      ASSIGN10TOLAB\n"
                    "      END\n",
                    true),
              "block\n"
              "  label -\n"
              "  ido I=1,3\n"
              "    block\n"
              "      if L\n"
              "        goto 10\n"
              "      if M\n"
              "      else\n"
              "        if N\n"
              "          stop '12'\n"
              "      label 10\n"
              "  label LP\n"
              "  while L\n"
              "    cycle LP\n"
              "  select K\n"
              "    block\n"
              "      case 1:2\n"
              "      case default\n"
              "  where M\n"
              "  else\n"
              "    expr =(A, B)\n"
              "  expr operation(LAB, *10)\n"
              "  stop\n");
}

TEST_F(ControlTest, TheEndReturnsOrStopsWhereItCanBeReached) {
    EXPECT_EQ(trees("subroutine s\nend\n"
                    "subroutine t\nreturn\nend\n"
                    "function f()\nf = 1\nend\n"
                    "program p\ngoto 10\ncontains\nsubroutine inner\nstop\nend subroutine\n10 end program\n"),
              "block\n"
              "  return\n"
              "block\n"
              "  return\n"
              "block\n"
              "  expr =(F, 1)\n"
              "  return\n"
              "block\n"
              "  goto 10\n"
              "  label 10\n"
              "  stop\n"
              "block\n"
              "  stop\n");
}

TEST_F(ControlTest, LabelsHaveTheKindOfTheirStatement) {
    trees("program p\n"
          "10 integer k\n"
          "20 format (i5)\n"
          "assign 20 to k\n"
          "30 if (l) then\n40 else\n50 end if\n"
          "lp: do\n exit lp\nend do lp\n"
          "60 end program\n");
    std::string result;
    const scope *unit = il_root.primary_scope->objects->variant.assoc_scope;
    for (const label *l = unit->labels; l; l = l->next) {
        result += std::string(l->source_corresp.name->spelling) + " " + std::to_string(l->kind) +
                  (l->used_in_assign ? " assigned\n" : "\n");
    }
    EXPECT_EQ(result, "10 2\n20 3 assigned\n30 1\n40 4\n50 1\nLP 5\n60 1\n");
}

// Nesting and numbers of labels cost neither stack nor more than their number.
TEST_F(ControlTest, DepthCostsMemoryOnly) {
    constexpr int depth = 20000;
    std::string source;
    const auto repeat = [&](const char *line) {
        for (int i = 0; i < depth; ++i) {
            source += line;
        }
    };
    repeat("if (l) then\n");
    repeat("do\n");
    for (int i = 1; i <= depth; ++i) {
        source += "if (l) goto " + std::to_string(i) + "\nif (l) exit\n";
    }
    for (int i = 1; i <= depth; ++i) {
        source += std::to_string(i) + " continue\n";
    }
    repeat("end do\n");
    repeat("end if\n");
    repeat("do 99999 i = 1, 2\n");
    source += "99999 continue\nend\n";
    diagnostic_threshold = severity_error;
    read(source);
}

} // namespace zf90
