// Classification: what each first word can turn out to be, in both source forms, where the handler of the
// statement begins, and the messages of text that is no statement.
#include "statements/classify.h"

#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "il/types.h"
#include "statements/constructs.h"
#include "statements/loop.h"
#include "support/front_end.h"

#include <chrono>
#include <initializer_list>
#include <random>

namespace zf90 {
namespace {

struct statement_row {
    const char *text;   // a whole statement, without its indentation
    const char *kind;   // its kind without "stmtk_"
    const char *resume; // what its handler begins with; null for the statement's beginning
};

class ClassifyTest : public FrontEndTest {
protected:
    // Makes the statement the current one. In fixed form it begins in column 7, and so do further lines.
    static void start(const std::string &text) {
        std::string source = text;
        if (fixed_form_input && !text.starts_with(' ')) {
            source = "      " + text;
        }
        scratch_directory::write("t.f90", source + "\n");
        il_root.primary_source_file = nullptr;
        lexer_init();
        open_source_file("t.f90", include_search_list);
        ASSERT_TRUE(next_statement());
    }

    static void use_fixed_form() { restart_front_end(true); }

    // The kind of the statement and the text that its handler begins with.
    static std::string classified(const std::string &text) {
        start(text);
        classify_statement();
        EXPECT_EQ(line_cursor, stmt_resume) << text;
        return std::string(statement_kind_name(curr_stmt_kind)) + " [" + stmt_resume + "]";
    }

    static std::string kind_of(const std::string &text) {
        start(text);
        classify_statement();
        return statement_kind_name(curr_stmt_kind);
    }

    static void expect_rows(std::initializer_list<statement_row> rows) {
        for (const statement_row &row : rows) {
            const std::string expected =
                std::string(row.kind) + " [" + (row.resume ? row.resume : row.text) + "]";
            std::string result;
            EXPECT_EQ(messages_of([&] { result = classified(row.text); }), "") << row.text;
            EXPECT_EQ(result, expected) << row.text;
        }
    }

    // The statement is bad, and that is reported, once, at its beginning.
    static void expect_bad(std::initializer_list<const char *> texts,
                           error_code code = msg_unrecognized_statement) {
        const int column = fixed_form_input ? 7 : 1;
        for (const char *text : texts) {
            char expected[200];
            std::snprintf(expected, sizeof expected, "t.f90 (  1:%2d) error:   %s\n", column,
                          message_text(code));
            std::string result;
            EXPECT_EQ(messages_of([&] { result = classified(text); }), expected) << text;
            EXPECT_EQ(result, std::string("bad [") + text + "]") << text;
        }
    }

    // Opens the scope of a program unit, in the phase of its declarations.
    static void open_unit() {
        if (curr_scope_depth < 0) {
            push_scope(sr_global);
        }
        push_scope(sr_unit);
        stmt_phase = ph_specification;
    }

    static symbol *declare(const char *name, symbol_kind kind) {
        name_locator locator{};
        intern_name(name, locator.atom);
        return new_symbol(kind, locator, curr_scope_depth);
    }

    static void declare_array(const char *name) {
        symbol *s = declare(name, sk_variable);
        object *o = new_object();
        o->type = new_type(tk_farray);
        s->entity = o;
    }

    void SetUp() override {
        FrontEndTest::SetUp();
        stmt_phase = ph_execution;
    }
};

// ---- the words that need no look ahead

TEST_F(ClassifyTest, PlainWordsFree) {
    expect_rows({
        {"allocatable a", "allocatable", " a"},
        {"allocate (a(3))", "allocate", " (a(3))"},
        {"assign 10 to k", "assign", " 10 to k"},
        {"backspace 5", "backspace", " 5"},
        {"blockdata b", "block_data", " b"},
        {"block data", "block_data", ""},
        {"call s(x)", "call", " s(x)"},
        {"case (1:3)", "case", " (1:3)"},
        {"close (5)", "close", " (5)"},
        {"common /c/ x", "common", " /c/ x"},
        {"contains", "contains", ""},
        {"continue", "continue", ""},
        {"cycle", "cycle", ""},
        {"data x /1/", "data", " x /1/"},
        {"deallocate (a)", "deallocate", " (a)"},
        {"dimension a(3)", "dimension", " a(3)"},
        {"elseif (x) then", "else_if", " (x) then"},
        {"elsewhere", "elsewhere", ""},
        {"endblockdata", "end_block_data", ""},
        {"endblock data", "end_block_data", ""},
        {"enddo", "end_do", ""},
        {"endfile 1", "endfile", " 1"},
        {"endfunction f", "end_function", " f"},
        {"endif", "end_if", ""},
        {"endinterface", "end_interface", ""},
        {"endmodule m", "end_module", " m"},
        {"endprogram", "end_program", ""},
        {"endselect", "end_select", ""},
        {"endsubroutine s", "end_subroutine", " s"},
        {"endtype t", "end_type", " t"},
        {"endwhere", "end_where", ""},
        {"entry e(x)", "entry", " e(x)"},
        {"equivalence (a, b)", "equivalence", " (a, b)"},
        {"exit outer", "exit", " outer"},
        {"external f", "external", " f"},
        {"format (1x, i5)", "format", " (1x, i5)"},
        {"format (5h)=(=, i5)", "format", " (5h)=(=, i5)"},
        {"inquire (5, exist=l)", "inquire", " (5, exist=l)"},
        {"intent (in) x", "intent", " (in) x"},
        {"interface", "interface", ""},
        {"interface operator (.x.)", "interface", " operator (.x.)"},
        {"interface assignment (=)", "interface", " assignment (=)"},
        {"intrinsic sin", "intrinsic", " sin"},
        {"namelist /n/ x", "namelist", " /n/ x"},
        {"nullify (p)", "nullify", " (p)"},
        {"open (5)", "open", " (5)"},
        {"optional x", "optional", " x"},
        {"parameter (n = 5)", "parameter", " (n = 5)"},
        {"pause", "pause", ""},
        {"pointer p", "pointer", " p"},
        {"pointer :: p", "pointer", " :: p"},
        {"print *, x", "print", " *, x"},
        {"print *", "print", " *"},
        {"private", "private", ""},
        {"program p", "program", " p"},
        {"public :: x", "public", " :: x"},
        {"read (5, *) x", "read", " (5, *) x"},
        {"read 10, x", "read", " 10, x"},
        {"return", "return", ""},
        {"rewind (5)", "rewind", " (5)"},
        {"save", "save", ""},
        {"selectcase (i)", "select_case", " (i)"},
        {"select case (i)", "select_case", " (i)"},
        {"sequence", "sequence", ""},
        {"stop 'x'", "stop", " 'x'"},
        {"target t", "target", " t"},
        {"use m, only: a => b", "use", " m, only: a => b"},
        {"write (6, 10) x", "write", " (6, 10) x"},
        {"WRITE (6, '(''='')') x", "write", " (6, '(''='')') x"},
        {"Read (unit = 5) x", "read", " (unit = 5) x"},
    });
}

TEST_F(ClassifyTest, PlainWordsFixed) {
    use_fixed_form();
    expect_rows({
        {"ALLOCATABLEA", "allocatable", "A"},
        {"ALLOCATE(A(3))", "allocate", "(A(3))"},
        {"ASSIGN10TOK", "assign", "10TOK"},
        {"BACKSPACE5", "backspace", "5"},
        {"BLOCKDATAB", "block_data", "B"},
        {"B LOCK D ATA", "block_data", ""},
        {"CALLS(X)", "call", "S(X)"},
        {"CASE(1:3)", "case", "(1:3)"},
        {"CASEDEFAULT", "case", "DEFAULT"},
        {"CLOSE(5)", "close", "(5)"},
        {"COMMON/C/X", "common", "/C/X"},
        {"CONTAINS", "contains", ""},
        {"CONTINUE", "continue", ""},
        {"CYCLE", "cycle", ""},
        {"DATAX/1/", "data", "X/1/"},
        {"DEALLOCATE(A)", "deallocate", "(A)"},
        {"DIMENSIONA(3)", "dimension", "A(3)"},
        {"ENTRYE(X)", "entry", "E(X)"},
        {"EQUIVALENCE(A,B)", "equivalence", "(A,B)"},
        {"EXITOUTER", "exit", "OUTER"},
        {"EXTERNALF", "external", "F"},
        {"FORMAT(1X,I5)", "format", "(1X,I5)"},
        {"INQUIRE(5,EXIST=L)", "inquire", "(5,EXIST=L)"},
        {"IN QUI RE(5)", "inquire", "(5)"},
        {"INTENT(IN)X", "intent", "(IN)X"},
        {"INTERFACE", "interface", ""},
        {"INTERFACEOPERATOR(+)", "interface", "OPERATOR(+)"},
        {"INTRINSICSIN", "intrinsic", "SIN"},
        {"NAMELIST/N/X", "namelist", "/N/X"},
        {"NULLIFY(P)", "nullify", "(P)"},
        {"OPEN(5)", "open", "(5)"},
        {"OPTIONALX", "optional", "X"},
        {"PARAMETER(N=5)", "parameter", "(N=5)"},
        {"PAUSE", "pause", ""},
        {"POINTERP", "pointer", "P"},
        {"PRINT*,X", "print", "*,X"},
        {"PRIVATE", "private", ""},
        {"PROGRAMP", "program", "P"},
        {"PUBLICX", "public", "X"},
        {"READ(5,*)X", "read", "(5,*)X"},
        {"READ10,X", "read", "10,X"},
        {"RETURN", "return", ""},
        {"REWIND5", "rewind", "5"},
        {"SAVE", "save", ""},
        {"SELECTCASE(I)", "select_case", "(I)"},
        {"SEQUENCE", "sequence", ""},
        {"STOP'X'", "stop", "'X'"},
        {"TARGETT", "target", "T"},
        {"USEM,A=>B", "use", "M,A=>B"},
        {"UNSEM", "use", "M"},
        {"WRITE(6,10)X", "write", "(6,10)X"},
    });
}

TEST_F(ClassifyTest, AssignmentsToNamesLikeWords) {
    expect_rows({
        {"rewind = 1", "assignment", nullptr},
        {"read(1) = 2", "assignment", nullptr},
        {"read(1)(2:3) = 'ab'", "assignment", nullptr},
        {"call%x = 1", "assignment", nullptr},
        {"call%x => y", "pointer_assignment", nullptr},
        {"call(1)%x(2)%y = 1", "assignment", nullptr},
        {"call(1)%x => y", "pointer_assignment", nullptr},
        {"save => y", "pointer_assignment", nullptr},
        {"print: do", "construct_name", nullptr},
        {"block = 1", "assignment", nullptr},
        {"select = 1", "assignment", nullptr},
        {"select(1) = 1", "assignment", nullptr},
        {"endblock = 1", "assignment", nullptr},
        {"go = 1", "assignment", nullptr},
        {"in = 1", "assignment", nullptr},
        {"then = 1", "assignment", nullptr},
        {"none = 1", "assignment", nullptr},
        {"a = b == c", "assignment", nullptr},
        {"a(i, f(')')) = 1", "assignment", nullptr},
        {"data = 1; data x /1/", "assignment", nullptr},
    });
    use_fixed_form();
    expect_rows({
        {"REWIND=1", "assignment", nullptr},
        {"READ(1)=2", "assignment", nullptr},
        {"READY=4.", "assignment", nullptr},
        {"CALLS%X=>Y", "pointer_assignment", nullptr},
        {"CALL=>Y", "pointer_assignment", nullptr},
        {"ASSIGNMENT=5", "assignment", nullptr},
        {"UBLE=9.", "assignment", nullptr},
        {"TEGER=1.", "assignment", nullptr},
        {"UNSET=9.", "assignment", nullptr},
        {"INDEX=5", "assignment", nullptr},
        {"BLOCKS=8.", "assignment", nullptr},
        {"SELECT=3.", "assignment", nullptr},
        {"TOTAL=1.", "assignment", nullptr},
        {"THENX=8.", "assignment", nullptr},
        {"PRINT:DO", "construct_name", nullptr},
    });
}

TEST_F(ClassifyTest, NoStatement) {
    expect_bad({"x",
                "x + 1",
                "foo bar",
                "flush(6)",
                "then",
                "10 20",
                "(x) = 1",
                "x, y = 2",
                "a(1 = 2",
                "a(1)b = 2",
                "a(1)(2 = 3",
                "a(1)(2)(3) = 3",
                "a%b",
                "a%b == 1",
                "'abc'",
                "block x",
                "select x",
                "endblock x",
                "go x",
                "in x",
                "none",
                "to 5",
                "=",
                "a$b = 1",
                "recursive",
                "double x",
                "recursive integer subroutine s",
                "recursive foo",
                "type 5",
                "end x",
                "end block"});
    expect_bad({";", "; x = 1"}, msg_expected_statement);
    use_fixed_form();
    expect_bad({"X", "X+1", "FOOBAR", "GOX", "INX", "BLOCKX", "SELECTX", "ENDX", "RECURSIVEFOO", "DOUBLEX"});
    expect_bad({";"}, msg_expected_statement);
}

// ---- type words

TEST_F(ClassifyTest, TypeWordsFree) {
    for (const statement_phase phase : {ph_start, ph_header, ph_specification, ph_execution}) {
        stmt_phase = phase;
        expect_rows({
            {"real x", "type_declaration", nullptr},
            {"real(4) x", "type_declaration", nullptr},
            {"real (kind = 2), dimension(3) :: x = 1", "type_declaration", nullptr},
            {"real, parameter :: x = 1, y = 2", "type_declaration", nullptr},
            {"real*8 x", "type_declaration", nullptr},
            {"integer i", "type_declaration", nullptr},
            {"logical (2) l", "type_declaration", nullptr},
            {"complex c", "type_declaration", nullptr},
            {"character c", "type_declaration", nullptr},
            {"character(5) c", "type_declaration", nullptr},
            {"character (len=*) c", "type_declaration", nullptr},
            {"character*5 c", "type_declaration", nullptr},
            {"character*(*) c", "type_declaration", nullptr},
            {"character * (n + 1) c", "type_declaration", nullptr},
            {"double precision x", "type_declaration", nullptr},
            {"doubleprecision x", "type_declaration", nullptr},
            {"double precision, save :: x = 1, y", "type_declaration", nullptr},
            {"double precision = 2", "type_declaration", nullptr},
            {"type (t) x", "type_declaration", nullptr},
            {"type (t), pointer :: x", "type_declaration", nullptr},
            {"real subroutine", "type_declaration", nullptr},
        });
        expect_rows({
            {"real = 1", "assignment", nullptr},
            {"real(1) = 2", "assignment", nullptr},
            {"integer(1)%x = 2", "assignment", nullptr},
            {"character = 1", "assignment", nullptr},
            {"doubleprecision = 2", "assignment", nullptr},
            {"double = 2", "assignment", nullptr},
            {"double(1) = 2", "assignment", nullptr},
            {"type(1) = 2", "assignment", nullptr},
            {"type = 2", "assignment", nullptr},
            {"type%x = 2", "assignment", nullptr},
            {"complex => x", "pointer_assignment", nullptr},
            {"logical: do", "construct_name", nullptr},
        });
    }
    stmt_phase = ph_execution;
    expect_rows({
        {"type t", "type_definition", " t"},
        {"type :: t", "type_definition", " :: t"},
        {"type, public :: t", "type_definition", ", public :: t"},
    });
}

TEST_F(ClassifyTest, TypeWordsFixed) {
    use_fixed_form();
    expect_rows({
        {"REALX", "type_declaration", nullptr},
        {"REAL(4)X", "type_declaration", nullptr},
        {"INTEGERI,J", "type_declaration", nullptr},
        {"IN TE GER I", "type_declaration", nullptr},
        {"LOGICALL", "type_declaration", nullptr},
        {"COMPLEXC", "type_declaration", nullptr},
        {"CHARACTER*5S", "type_declaration", nullptr},
        {"CHARACTER*5HELLO", "type_declaration", nullptr},
        {"CHARACTER*5E3", "type_declaration", nullptr},
        {"CHARACTER*(*)S", "type_declaration", nullptr},
        {"DOUBLEPRECISIOND", "type_declaration", nullptr},
        {"D OUB LE PRE CISION D", "type_declaration", nullptr},
        {"DOUBLEPRECISION,SAVE::X=1,Y", "type_declaration", nullptr},
        {"TYPE(T)X", "type_declaration", nullptr},
        {"TYPET", "type_definition", "T"},
        {"TYPE::T", "type_definition", "::T"},
        {"TYPE,PRIVATE::T", "type_definition", ",PRIVATE::T"},
        {"REALX=1", "assignment", nullptr},
        {"INTEGERS(1)=2", "assignment", nullptr},
        {"DOUBLEPRECISION=2.", "assignment", nullptr},
        {"DOUBLE=2.5", "assignment", nullptr},
        {"TYPEX=4.", "assignment", nullptr},
        {"TYPE(1)=4.", "assignment", nullptr},
    });
}

TEST_F(ClassifyTest, FunctionPrefix) {
    stmt_phase = ph_start;
    const std::initializer_list<statement_row> prefixed = {
        {"real function f()", "subprogram", nullptr},
        {"integer (2) function f()", "subprogram", nullptr},
        {"complex recursive function f()", "subprogram", nullptr},
        {"character*5 function f()", "subprogram", nullptr},
        {"character*(*) function f()", "subprogram", nullptr},
        {"character (len=5) recursive function f()", "subprogram", nullptr},
        {"double precision function f()", "subprogram", nullptr},
        {"doubleprecision function f()", "subprogram", nullptr},
        {"type (t) function f()", "subprogram", nullptr},
    };
    const std::initializer_list<statement_row> bare = {
        {"function f(x)", "subprogram", nullptr},
        {"subroutine s", "subprogram", nullptr},
        {"recursive function f(x)", "subprogram", nullptr},
        {"recursive subroutine s", "subprogram", nullptr},
        {"recursive integer function f(x)", "subprogram", nullptr},
        {"recursive character*5 function f(x)", "subprogram", nullptr},
        {"recursive character(5) function f(x)", "subprogram", nullptr},
        {"recursive complex(2) function f(x)", "subprogram", nullptr},
        {"recursive logical function f(x)", "subprogram", nullptr},
        {"recursive real function f(x)", "subprogram", nullptr},
        {"recursive type(t) function f(x)", "subprogram", nullptr},
        {"recursive double precision function f(x)", "subprogram", nullptr},
        {"recursive doubleprecision function f(x)", "subprogram", nullptr},
    };
    const std::initializer_list<statement_row> names = {
        {"function = 1", "assignment", nullptr},
        {"subroutine(1) = 1", "assignment", nullptr},
        {"recursive = 1", "assignment", nullptr},
        {"recursive(1) = 1", "assignment", nullptr},
    };
    expect_rows(prefixed);
    expect_rows(bare);
    stmt_phase = ph_specification;
    expect_rows(bare);
    for (const statement_row &row : prefixed) {
        EXPECT_EQ(kind_of(row.text), "type_declaration") << row.text;
    }
    stmt_phase = ph_execution;
    expect_rows(names);
    use_fixed_form();
    stmt_phase = ph_start;
    expect_rows({
        {"FUNCTIONF(X)", "subprogram", nullptr},
        {"SUBROUTINES", "subprogram", nullptr},
        {"REALFUNCTIONF(X)", "subprogram", nullptr},
        {"INTEGERFUNCTIONF(X)", "subprogram", nullptr},
        {"INTEGERRECURSIVEFUNCTIONF(X)", "subprogram", nullptr},
        {"DOUBLEPRECISIONFUNCTIONF(X)", "subprogram", nullptr},
        {"CHARACTER*5FUNCTIONF(X)", "subprogram", nullptr},
        {"TYPE(T)FUNCTIONF(X)", "subprogram", nullptr},
        {"RECURSIVEINTEGERFUNCTIONF(X)", "subprogram", nullptr},
        {"RECURSIVEDOUBLEPRECISIONFUNCTIONF(X)", "subprogram", nullptr},
        {"RECURSIVEFUNCTIONF(X)", "subprogram", nullptr},
        {"RECURSIVESUBROUTINES", "subprogram", nullptr},
        {"FUNCTIONS=1", "assignment", nullptr},
        {"RECURSIVES=1", "assignment", nullptr},
    });
}

TEST_F(ClassifyTest, SelectorsInError) {
    const std::string unrecognized = "t.f90 (  1: 1) error:   unrecognized statement\n";
    const auto expect = [&](const char *text, const char *position, const char *message) {
        EXPECT_EQ(messages_of([&] { EXPECT_EQ(kind_of(text), "bad"); }),
                  std::string("t.f90 (  1:") + position + ") error:   " + message + "\n" + unrecognized)
            << text;
    };
    expect("integer (kind=2 i", "18", "expected a \")\"");
    expect("character (len=2 c", "19", "expected a \")\"");
    expect("character*(2 c", "15", "expected a \")\"");
    expect("character*c x", "11", "expected an integer constant");
    expect("character*", "11", "expected an integer constant");
    expect("type (t x", "10", "expected a \")\"");
    expect("recursive real(2 function f", "28", "expected a \")\"");
    expect("recursive type function f", "16", "expected a \"(\"");
}

// ---- END

TEST_F(ClassifyTest, EndFree) {
    expect_rows({
        {"end", "end", ""},
        {"end ! comment", "end", " ! comment"},
        {"end; x = 1", "end", "; x = 1"},
        {"end block data", "end_block_data", ""},
        {"end blockdata b", "end_block_data", " b"},
        {"end do", "end_do", ""},
        {"end file 1", "endfile", " 1"},
        {"end file (1)", "endfile", " (1)"},
        {"end function f", "end_function", " f"},
        {"end if", "end_if", ""},
        {"end interface", "end_interface", ""},
        {"end module m", "end_module", " m"},
        {"end program p", "end_program", " p"},
        {"end select", "end_select", ""},
        {"end subroutine s", "end_subroutine", " s"},
        {"end type t", "end_type", " t"},
        {"end where", "end_where", ""},
        {"end = 1", "assignment", nullptr},
        {"end(1) = 1", "assignment", nullptr},
        {"end%do = 1", "assignment", nullptr},
        {"end: do", "construct_name", nullptr},
        {"endif = 1", "assignment", nullptr},
        {"enddo(1) = 1", "assignment", nullptr},
        {"end if = 1", "end_if", " = 1"},
    });
    EXPECT_EQ(kind_of("end &\n! comment\n  if"), "end_if");
    EXPECT_EQ(kind_of("end &\n& "), "end");
}

TEST_F(ClassifyTest, EndFixed) {
    use_fixed_form();
    expect_rows({
        {"END", "end", ""},
        {"E N D", "end", ""},
        {"END;X=1", "end", ";X=1"},
        {"ENDBLOCKDATAB", "end_block_data", "B"},
        {"ENDDO", "end_do", ""},
        {"ENDFILE 1", "endfile", " 1"},
        {"END FILE 1", "endfile", " 1"},
        {"ENDFILE(1)", "endfile", "(1)"},
        {"ENDFUNCTIONF", "end_function", "F"},
        {"ENDIF", "end_if", ""},
        {"ENDINTERFACE", "end_interface", ""},
        {"ENDMODULEM", "end_module", "M"},
        {"ENDPROGRAMP", "end_program", "P"},
        {"ENDSELECT", "end_select", ""},
        {"ENDSUBROUTINES", "end_subroutine", "S"},
        {"ENDTYPET", "end_type", "T"},
        {"ENDWHERE", "end_where", ""},
        {"END=6.", "assignment", nullptr},
        {"ENDX=6.", "assignment", nullptr},
        {"ENDIF=6.", "assignment", nullptr},
        {"ENDFILE(1)=6.", "assignment", nullptr},
    });
    EXPECT_EQ(kind_of("END\n     1IF"), "end_if");
    EXPECT_EQ(kind_of("EN\n     1DIF"), "end_if");
    EXPECT_EQ(kind_of("END\n      X = 1"), "end");
    EXPECT_EQ(kind_of("END\nC     COMMENT\n      X = 1"), "end");
    for (const char *text : {"END\n     1", "EN\n     1D", "END\nC\n     1  ", "END\n     1 ; X = 1"}) {
        EXPECT_EQ(messages_of([&] { EXPECT_EQ(kind_of(text), "bad"); }),
                  "t.f90 (  1: 7) error:   invalid END statement\n")
            << text;
    }
}

// ---- DO

TEST_F(ClassifyTest, DoFree) {
    expect_rows({
        {"do", "do", ""},
        {"do i = 1, 5", "do", " i = 1, 5"},
        {"do 10 i = 1, 5", "do", " 10 i = 1, 5"},
        {"do 10, i = 1, 5", "do", " 10, i = 1, 5"},
        {"do 10i = 1, 3", "do", " 10i = 1, 3"},
        {"do 10", "do", " 10"},
        {"do x = a(1, 2), b", "do", " x = a(1, 2), b"},
        {"do x = 'h,', b", "do", " x = 'h,', b"},
        {"do while = 1, 3", "do", " while = 1, 3"},
        {"do while (x)", "do_while", " while (x)"},
        {"do 10 while (x == y)", "do_while", " 10 while (x == y)"},
        {"do 10, while (x)", "do_while", " 10, while (x)"},
        {"do while(1)=2,3", "do", " while(1)=2,3"},
        {"do while (x", "do_while", " while (x"},
        {"do while (1) = 2", "do_while", " while (1) = 2"},
        {"do do = 1, 3", "do", " do = 1, 3"},
        {"do integer = 1, 3", "do", " integer = 1, 3"},
        {"do = 1", "assignment", nullptr},
        {"do = 1, 2", "assignment", nullptr},
        {"do(1) = 2", "assignment", nullptr},
        {"do%x = 2", "assignment", nullptr},
        {"do => x", "pointer_assignment", nullptr},
        {"do: do i = 1, 2", "construct_name", nullptr},
        {"do 10 i = 1.5", "do", " 10 i = 1.5"},
        {"do i", "do", " i"},
        {"do10i = 1.5", "assignment", nullptr},
    });
}

TEST_F(ClassifyTest, DoFixed) {
    use_fixed_form();
    expect_rows({
        {"DO", "do", ""},
        {"DO10I=1,5", "do", "10I=1,5"},
        {"DO 10 I = 1, 5", "do", " 10 I = 1, 5"},
        {"D O 1 0 I = 1 , 5", "do", " 1 0 I = 1 , 5"},
        {"DO10I=1.5", "assignment", nullptr},
        {"DO 10 I = 1. 5", "assignment", nullptr},
        {"DO10I=MAX(1.5,X)", "assignment", nullptr},
        {"DO10HELLO=1,5", "do", "10HELLO=1,5"},
        {"DO10E5=1,5", "do", "10E5=1,5"},
        {"DO10E5=1.5", "assignment", nullptr},
        {"DO,I=1,5", "do", ",I=1,5"},
        {"DO70,I=3,1,-1", "do", "70,I=3,1,-1"},
        {"DOI=1,5", "do", "I=1,5"},
        {"DOI=1.5", "assignment", nullptr},
        {"DOT=2.", "assignment", nullptr},
        {"DO10WHILE(X)", "do_while", "10WHILE(X)"},
        {"DOWHILE(J.LT.3)", "do_while", "WHILE(J.LT.3)"},
        {"DOWHILE(1)=2,3", "do", "WHILE(1)=2,3"},
        {"DOWHILE(1)=2", "assignment", nullptr},
        {"DOWHILEX=1,5", "do", "WHILEX=1,5"},
        {"DOWHILE=1,5", "do", "WHILE=1,5"},
        {"DOWHILE=1", "assignment", nullptr},
        {"DO:DOI=1,2", "construct_name", nullptr},
        {"DOUBLE=1,3", "do", "UBLE=1,3"},
        {"DOUBLE(1)=1,3", "do", "UBLE(1)=1,3"},
        {"DOUBLE=2.5", "assignment", nullptr},
        {"DOUBLEPRECISION=2.5", "assignment", nullptr},
        {"DOUBLEX=1,3", "do", "UBLEX=1,3"},
        {"DO(1)=2", "assignment", nullptr},
        {"DO10I=1,5;DO20I=1.5", "do", "10I=1,5;DO20I=1.5"},
        {"DO10I=1;X=1,5", "assignment", nullptr},
    });
    EXPECT_EQ(kind_of("DO 10 I = 1\n     1,5"), "do");
    EXPECT_EQ(kind_of("DO 10 I = 1\n     1.5"), "assignment");
}

// ---- IF and ELSE

TEST_F(ClassifyTest, IfForms) {
    expect_rows({
        {"if (x) y = 1", "if", " (x) y = 1"},
        {"if (x) call s", "if", " (x) call s"},
        {"if (x) then", "if_then", " (x) then"},
        {"if (x) then = 1", "if", " (x) then = 1"},
        {"if (x) then(1) = 1", "if", " (x) then(1) = 1"},
        {"if (x) then y = 1", "if", " (x) then y = 1"},
        {"if (i) 10, 20, 30", "arithmetic_if", " (i) 10, 20, 30"},
        {"if (i) = 1", "assignment", nullptr},
        {"if (i)%x = 1", "assignment", nullptr},
        {"if (i)(1:2) = 'a'", "assignment", nullptr},
        {"if = 1", "assignment", nullptr},
        {"if%x => y", "pointer_assignment", nullptr},
        {"if: do", "construct_name", nullptr},
        {"if (x", "if", " (x"},
        {"if (x)", "if", " (x)"},
        {"if x == 1", "if", " x == 1"},
        {"if (x == ')') y = 1", "if", " (x == ')') y = 1"},
    });
    use_fixed_form();
    expect_rows({
        {"IF(X)Y=1", "if", "(X)Y=1"},
        {"IF(L)THEN", "if_then", "(L)THEN"},
        {"IF(L)THEN=1", "if", "(L)THEN=1"},
        {"IF(L)THENX=1", "if", "(L)THENX=1"},
        {"IF(I)1,2,3", "arithmetic_if", "(I)1,2,3"},
        {"IF(I)=1", "assignment", nullptr},
        {"IFX=1", "assignment", nullptr},
        {"IF(X)IF(2)=3", "if", "(X)IF(2)=3"},
    });
    EXPECT_EQ(kind_of("IF (X)\n     1 THEN"), "if_then");
}

TEST_F(ClassifyTest, ElseForms) {
    expect_rows({
        {"else", "else", ""},
        {"else name", "else", " name"},
        {"else if (x) then", "else_if", " (x) then"},
        {"elseif (x) then", "else_if", " (x) then"},
        {"else if", "else", " if"},
        {"else where", "else", " where"},
        {"else if (x) = 1", "else_if", " (x) = 1"},
        {"else = 1", "assignment", nullptr},
        {"else(1) = 1", "assignment", nullptr},
        {"elseif = 1", "assignment", nullptr},
        {"elseif (x) = 1", "assignment", nullptr},
        {"elsewhere = 1", "assignment", nullptr},
    });
    use_fixed_form();
    expect_rows({
        {"ELSE", "else", ""},
        {"ELSENAME", "else", "NAME"},
        {"ELSEIF(X)THEN", "else_if", "(X)THEN"},
        {"ELSE IF (X) = 1", "assignment", nullptr},
        {"ELSEIF=7.", "assignment", nullptr},
        {"ELSEX=7.", "assignment", nullptr},
        {"ELSEIFX", "else", "IFX"},
        {"ELSEWHERE", "else", "WHERE"},
        {"ELSEWHERE=1", "assignment", nullptr},
    });
}

TEST_F(ClassifyTest, ElsewhereInFixedForm) {
    use_fixed_form();
    statement where{};
    where.kind = stmk_where;
    begin_construct_state();
    push_construct(cons_where, &where);
    expect_rows({
        {"ELSEWHERE", "elsewhere", ""},
        {"ELSE WHERE", "elsewhere", ""},
        {"ELSEWHEREX", "else", "WHEREX"},
        {"ELSEWHERE=1", "assignment", nullptr},
        {"ELSE", "else", ""},
    });
    push_construct(cons_block_if, &where);
    expect_rows({{"ELSEWHERE", "else", "WHERE"}});
    begin_construct_state();
}

// ---- the other words with a look ahead

TEST_F(ClassifyTest, GoTo) {
    expect_rows({
        {"goto 10", "goto", " 10"},
        {"go to 10", "goto", " 10"},
        {"goto i", "assigned_goto", " i"},
        {"go to i, (10, 20)", "assigned_goto", " i, (10, 20)"},
        {"goto (10, 20), i", "computed_goto", " (10, 20), i"},
        {"goto (10, 20) i", "computed_goto", " (10, 20) i"},
        {"goto = 1", "assignment", nullptr},
        {"goto(1) = 2", "assignment", nullptr},
        {"go(1) = 2", "assignment", nullptr},
        {"goto", "goto", ""},
    });
    use_fixed_form();
    expect_rows({
        {"GOTO10", "goto", "10"},
        {"G O T O 1 0", "goto", " 1 0"},
        {"GOTOI", "assigned_goto", "I"},
        {"GOTO(10,20),I", "computed_goto", "(10,20),I"},
        {"GOTO10=3.", "assignment", nullptr},
        {"GOTOP=7.", "assignment", nullptr},
        {"GOTO(1)=7.", "assignment", nullptr},
    });
}

TEST_F(ClassifyTest, ImplicitAndModule) {
    expect_rows({
        {"implicit none", "implicit_none", ""},
        {"implicit none more", "implicit_none", " more"},
        {"implicit real (a-h)", "implicit", " real (a-h)"},
        {"implicit = 1", "assignment", nullptr},
        {"module m", "module", " m"},
        {"module procedure", "module", " procedure"},
        {"module procedure a, b", "module_procedure", " a, b"},
        {"module = 1", "assignment", nullptr},
        {"module(1) = 1", "assignment", nullptr},
        {"module procedure = 1", "module_procedure", " = 1"},
    });
    use_fixed_form();
    expect_rows({
        {"IMPLICITNONE", "implicit_none", ""},
        {"IMPLICITREAL(A-H)", "implicit", "REAL(A-H)"},
        {"IMPLICITNONE=9", "assignment", nullptr},
        {"MODULEM", "module", "M"},
        {"MODULEPROCEDURE", "module", "PROCEDURE"},
        {"MODULEPROCEDUREA,B", "module_procedure", "A,B"},
        {"MODULES=6", "assignment", nullptr},
        {"MODULEPROCEDURE=6", "assignment", nullptr},
    });
}

TEST_F(ClassifyTest, Where) {
    expect_rows({
        {"where (m)", "where_construct", " (m)"},
        {"where (m) a = b", "where_stmt", " (m) a = b"},
        {"where (m", "where_stmt", " (m"},
        {"where", "where_stmt", ""},
        {"where = 1", "assignment", nullptr},
        {"where(1) = 1", "assignment", nullptr},
        {"where(1)(2:3) = 'a'", "assignment", nullptr},
    });
    use_fixed_form();
    expect_rows({
        {"WHERE(M)", "where_construct", "(M)"},
        {"WHERE(M)A=B", "where_stmt", "(M)A=B"},
        {"WHEREX=2.", "assignment", nullptr},
        {"WHERE(1)=2.", "assignment", nullptr},
    });
}

TEST_F(ClassifyTest, Include) {
    const std::initializer_list<const char *> bad_free = {
        "include 'x' y", "include 'x'; y = 1", "include x",       "include",      "include 'x",
        "include k_'x'", "include 'x' &\n",    "include &\n 'x'", "include 'x'y", "include 'it''s",
    };
    expect_rows({
        {"include 'x'", "include", " 'x'"},
        {"include \"x y\" ! comment", "include", " \"x y\" ! comment"},
        {"include 'it''s'", "include", " 'it''s'"},
        {"include 'x';", "include", " 'x';"},
        {"include'x' ; ;", "include", "'x' ; ;"},
        {"include = 1", "assignment", nullptr},
        {"include(1) = 1", "assignment", nullptr},
        {"include: do", "construct_name", nullptr},
    });
    for (const char *text : bad_free) {
        EXPECT_EQ(messages_of([&] { EXPECT_EQ(kind_of(text), "bad"); }),
                  "t.f90 (  1: 1) error:   invalid INCLUDE statement\n")
            << text;
    }
    use_fixed_form();
    expect_rows({
        {"INCLUDE'X'", "include", "'X'"},
        {"IN CLU DE 'X'", "include", " 'X'"},
        {"INCLUDEX=5", "assignment", nullptr},
    });
    for (const char *text : {"INCLUDE 'X' Y", "INCLUDE X", "INCLUDE\n     1'X'", "INCLUDE '\n     1X'"}) {
        EXPECT_EQ(messages_of([&] { EXPECT_EQ(kind_of(text), "bad"); }),
                  "t.f90 (  1: 7) error:   invalid INCLUDE statement\n")
            << text;
    }
}

// The lines of an included file come next, so the line behind INCLUDE must not have been fetched.
TEST_F(ClassifyTest, IncludeFetchesNoFurtherLine) {
    for (const bool fixed : {false, true}) {
        restart_front_end(fixed);
        EXPECT_EQ(kind_of("INCLUDE 'X'\n      Y = 1"), "include");
        EXPECT_EQ(line_kind, line_none);
        EXPECT_EQ(line_seq, 1U);
        EXPECT_EQ(kind_of("INCLUDE 'X' ! comment\n     1 Y = 1"), "include");
        EXPECT_EQ(line_kind, line_none);
    }
}

// ---- statement functions

TEST_F(ClassifyTest, StatementFunctionOrAssignment) {
    open_unit();
    expect_rows({
        {"f(x) = x", "stmt_function", nullptr},
        {"f(x, y) = x", "stmt_function", nullptr},
        {"f() = 1", "stmt_function", nullptr},
        {"f(x, 1) = 1", "stmt_function", nullptr},
        {"f(1) = 2", "assignment", nullptr},
        {"f(x + 1) = 2", "assignment", nullptr},
        {"f(x(1)) = 2", "assignment", nullptr},
        {"f(:) = 2", "assignment", nullptr},
        {"f(i:j) = 'a'", "assignment", nullptr},
        {"f(x)(1:2) = 'a'", "assignment", nullptr},
        {"f(x)%y = 1", "assignment", nullptr},
        {"f = 1", "assignment", nullptr},
        {"read(x) = x", "stmt_function", nullptr},
    });
    for (const statement_phase phase : {ph_start, ph_header, ph_use, ph_implicit, ph_specification}) {
        stmt_phase = phase;
        EXPECT_EQ(kind_of("f(x) = x"), "stmt_function") << phase;
    }
    for (const statement_phase phase : {ph_execution, ph_contains, ph_end}) {
        stmt_phase = phase;
        EXPECT_EQ(kind_of("f(x) = x"), "assignment") << phase;
    }
}

TEST_F(ClassifyTest, StatementFunctionOfKnownNames) {
    open_unit();
    declare_array("A");
    declare("U", sk_undetermined);
    declare("W", sk_undetermined)->entity = new_type(tk_farray);
    declare("D", sk_dummy)->entity = new_object();
    declare("C", sk_common_block);
    EXPECT_EQ(kind_of("a(i) = 1"), "assignment");
    EXPECT_EQ(kind_of("u(i) = 1"), "stmt_function");
    EXPECT_EQ(kind_of("w(i) = 1"), "assignment");
    EXPECT_EQ(kind_of("d(i) = 1"), "assignment");
    EXPECT_EQ(kind_of("c(i) = 1"), "stmt_function");
    EXPECT_EQ(kind_of("sin(i) = 1"), "stmt_function");
}

// An array of the host is what the name means, other names of the host give way to a new function.
TEST_F(ClassifyTest, StatementFunctionOrArrayOfHost) {
    open_unit();
    declare_array("A");
    declare("V", sk_variable)->entity = new_object();
    push_scope(sr_unit);
    EXPECT_EQ(kind_of("a(i) = 1"), "assignment");
    EXPECT_EQ(kind_of("v(i) = 1"), "stmt_function");
    interface_depth = 1;
    EXPECT_EQ(kind_of("a(i) = 1"), "stmt_function");
    interface_depth = 0;
}

// ---- in general

TEST_F(ClassifyTest, PositionIsThatOfTheFirstCharacter) {
    kind_of("\t x = 1");
    EXPECT_EQ(stmt_pos, (source_pos{1, 3}));
    use_fixed_form();
    kind_of("        X = 1");
    EXPECT_EQ(stmt_pos, (source_pos{1, 9}));
}

TEST_F(ClassifyTest, KeywordsInAnyCase) {
    case_sensitive_names = true;
    expect_rows({
        {"Call s", "call", " s"},
        {"End If", "end_if", ""},
        {"do WHILE (x)", "do_while", " WHILE (x)"},
    });
}

TEST_F(ClassifyTest, NamesOfKinds) {
    EXPECT_STREQ(statement_kind_name(0), "assignment");
    EXPECT_STREQ(statement_kind_name(83), "bad");
    EXPECT_STREQ(statement_kind_name(84), "?");
    EXPECT_EQ(static_cast<int>(statement_kind_count), 84);
}

// Statements as long as they can be: each is looked through a few times, not once for each of its parts.
TEST_F(ClassifyTest, LongStatements) {
    const char *const heads[] = {"if (", "do while (", "call s(", "real (", "where (", "type (", "x("};
    const auto begin = std::chrono::steady_clock::now();
    for (const char *head : heads) {
        std::string text = head;
        for (int line = 0; line < 38; ++line) {
            text += std::string(60, '(') + "'h'&\n&";
        }
        messages_of([&] {
            start(text);
            for (int i = 0; i < 1000; ++i) {
                line_cursor = line_segments[0].text;
                classify_statement();
            }
        });
    }
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(30));
}

// Whatever the text, a statement gets a kind, and its handler begins within it.
TEST_F(ClassifyTest, AnyText) {
    const char *const pieces[] = {"do",        "if",        "end",   "else",    "where", "type",  "character",
                                  "recursive", "double",    "real",  "include", "goto",  "(",     ")",
                                  "=",         "=>",        ",",     "::",      ":",     "%",     "*",
                                  "(/",        "/)",        "10",    "1.5",     "'",     "\"x\"", "5h",
                                  "b'1'",      ".eq.",      ";",     "&\n",     "&",     "!",     "function",
                                  "while",     "x",         "then",  "\t",      "$",     "\x80",  " ",
                                  "precision", "procedure", "module"};
    std::minstd_rand random(7);
    for (const bool fixed : {false, true}) {
        restart_front_end(fixed);
        std::string text;
        for (int i = 0; i < 20000; ++i) {
            text += fixed ? "      " : "";
            for (auto n = 1 + random() % 12; n > 0; --n) {
                text += pieces[random() % std::size(pieces)];
                text += random() % 2 ? " " : "";
            }
            text += "\n";
        }
        scratch_directory::write("t.f90", text);
        open_source_file("t.f90", include_search_list);
        messages_of([&] {
            while (next_statement()) {
                stmt_phase = static_cast<statement_phase>(random() % 9);
                classify_statement();
                EXPECT_LT(curr_stmt_kind, statement_kind_count);
                EXPECT_GE(stmt_resume, stmt_start);
                EXPECT_LT(stmt_resume, stmt_write_pos);
                EXPECT_EQ(line_cursor, stmt_resume);
                skip_line();
            }
        });
    }
}

} // namespace
} // namespace zf90
