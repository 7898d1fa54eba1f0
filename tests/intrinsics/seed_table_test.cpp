// The table of intrinsics against a second copy of it: what is built is printed back in its notation.
#include "intrinsics/seed_table.h"

#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "driver/options.h"
#include "il/entries.h"
#include "il/types.h"
#include "source/tokens.h"

#include <chrono>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <string>
#include <vector>

using namespace zf90;

namespace {

// clang-format off
constexpr const char *expected_keywords =
    "ALLOCATABLE ALLOCATE ASSIGN ASSIGNMENT BACKSPACE BLOCK BLOCKDATA CALL CASE CHARACTER CLOSE "
    "COMMON COMPLEX CONTAINS CONTINUE CYCLE DATA DEALLOCATE DEFAULT DIMENSION DO DOUBLE "
    "DOUBLEPRECISION ELSE ELSEIF ELSEWHERE END ENDBLOCK ENDBLOCKDATA ENDDO ENDFILE ENDFUNCTION ENDIF "
    "ENDINTERFACE ENDMODULE ENDPROGRAM ENDSELECT ENDSUBROUTINE ENDTYPE ENDWHERE ENTRY EQUIVALENCE "
    "EXIT EXTERNAL FILE FORMAT FUNCTION GO GOTO IF IMPLICIT IN INCLUDE INOUT INQUIRE INTEGER INTENT "
    "INTERFACE INTRINSIC LOGICAL MODULE NAMELIST NONE NULLIFY ONLY OPEN OPERATOR OPTIONAL OUT "
    "PARAMETER PAUSE POINTER PRECISION PRINT PRIVATE PROCEDURE PROGRAM PUBLIC READ REAL RECURSIVE "
    "RESULT RETURN REWIND SAVE SELECT SELECTCASE SEQUENCE STOP SUBROUTINE TARGET THEN TO TYPE USE "
    "WHERE WHILE WRITE";

constexpr const char *expected_specifiers =
    "ACCESS= ACTION= ADVANCE= BLANK= DELIM= DIRECT= END= EOR= ERR= EXIST= FILE= FMT= FORM= FORMATTED= "
    "IOLENGTH= IOSTAT= KIND= LEN= NAME= NAMED= NEXTREC= NML= NUMBER= OPENED= PAD= POSITION= READ= "
    "WRITE= READWRITE= REC= RECL= SEQUENTIAL= SIZE= STAT= STATUS= UNFORMATTED= UNIT=";

constexpr const char *expected_operators = "** / * - + // < <= == /= > >= .NOT. .AND. .OR. .EQV. .NEQV. =";
constexpr const char *expected_older_forms = ".LT. .GT. .LE. .GE. .EQ. .NE.";
constexpr int older_form_codes[] = {28, 32, 29, 33, 30, 31};

constexpr const char *expected_argument_names =
    "X Y A I STRING Z MASK ARRAY POS SHIFT DATE TIME ZONE VALUES VECTOR_A VECTOR_B BOUNDARY C J "
    "SUBSTRING BACK STRING_A STRING_B L MATRIX_A MATRIX_B A1 A2 TSOURCE FSOURCE P FROM FROMPOS TOPOS "
    "S VECTOR HARVEST PUT GET NCOPIES SOURCE PAD ORDER SET R B COUNT_RATE COUNT_MAX MOLD MATRIX FIELD";

constexpr const char *expected_specifics =
    "IABS DABS CABS DACOS AIMAG DINT AINT DNINT ANINT DASIN ASIN DATAN ATAN DATAN2 ATAN2 CONJG DCOS "
    "CCOS COS DCOSH COSH IDIM DDIM DIM DPROD DEXP CEXP EXP INDEX LEN ALOG DLOG CLOG ALOG10 DLOG10 "
    "AMOD DMOD MOD IDNINT NINT ISIGN DSIGN SIGN DSIN CSIN SIN DSINH SINH DSQRT CSQRT SQRT DTAN TAN "
    "DTANH TANH";

constexpr const char *expected_intrinsics =
    "0 = subroutine, elemental: (X: N[] out, Y: N[]); (X: L*[] out, Y: L*[]); (X: S*[] out, Y: S*[]); "
    "(X: V[] out, Y: V[])\n"
    "1 + function, elemental: (X: N[]) N[]; (X: N[], Y: N[]) N[]\n"
    "2 - function, elemental: (X: N[]) N[]; (X: N[], Y: N[]) N[]\n"
    "3 * function, elemental: (X: N[], Y: N[]) N[]\n"
    "4 / function, elemental: (X: N[], Y: N[]) N[]\n"
    "5 ** function, elemental: (X: N[], Y: N[]) N[]\n"
    "6 // function, elemental: (X: S*[], Y: S*[]) S*[]\n"
    "7 == function, elemental: (X: N[], Y: N[]) L*[]; (X: S*[], Y: S*[]) L*[]\n"
    "8 /= function, elemental: (X: N[], Y: N[]) L*[]; (X: S*[], Y: S*[]) L*[]\n"
    "9 > function, elemental: (X: I*[], Y: I*[]) L*[]; (X: R*[], Y: I*[]) L*[]; (X: I*[], Y: R*[]) L*[]; "
    "(X: R*[], Y: R*[]) L*[]; (X: S*[], Y: S*[]) L*[]\n"
    "10 >= function, elemental: (X: I*[], Y: I*[]) L*[]; (X: R*[], Y: I*[]) L*[]; (X: I*[], Y: R*[]) "
    "L*[]; (X: R*[], Y: R*[]) L*[]; (X: S*[], Y: S*[]) L*[]\n"
    "11 < function, elemental: (X: I*[], Y: I*[]) L*[]; (X: R*[], Y: I*[]) L*[]; (X: I*[], Y: R*[]) "
    "L*[]; (X: R*[], Y: R*[]) L*[]; (X: S*[], Y: S*[]) L*[]\n"
    "12 <= function, elemental: (X: I*[], Y: I*[]) L*[]; (X: R*[], Y: I*[]) L*[]; (X: I*[], Y: R*[]) "
    "L*[]; (X: R*[], Y: R*[]) L*[]; (X: S*[], Y: S*[]) L*[]\n"
    "13 .NOT. function, elemental: (X: L*[]) L*[]\n"
    "14 .AND. function, elemental: (X: L*[], Y: L*[]) L*[]\n"
    "15 .OR. function, elemental: (X: L*[], Y: L*[]) L*[]\n"
    "16 .EQV. function, elemental: (X: L*[], Y: L*[]) L*[]\n"
    "17 .NEQV. function, elemental: (X: L*[], Y: L*[]) L*[]\n"
    "18 IABS function, elemental: (A: I*[]) I[] named\n"
    "19 DABS function, elemental: (A: R*[]) D[] named\n"
    "20 CABS function, elemental: (A: C*[]) R[] named\n"
    "21 ABS function, elemental: (A: N[]) R*[]\n"
    "22 ACHAR function, elemental: (I: I*[]) S(1)[]\n"
    "23 DACOS function, elemental: (X: R*[]) D[] named\n"
    "24 ACOS function, elemental: (X: R*[]) R*[]\n"
    "25 ADJUSTL function, elemental: (STRING: S*[]) S*[]\n"
    "26 ADJUSTR function, elemental: (STRING: S*[]) S*[]\n"
    "27 AIMAG function, elemental: (Z: C[]) R[] named; (Z: C*[]) R*[]\n"
    "28 DINT function, elemental: (A: R*[]) D[] named\n"
    "29 AINT function, elemental: (A: R[]) R[] named; (A: R*[], KIND: I*?) R*[]\n"
    "30 ALL function: (MASK: L*[], DIM: I*?) L*[]\n"
    "31 ALLOCATED function: (ARRAY: T[]!) L\n"
    "32 DNINT function, elemental: (A: R*[]) D[] named\n"
    "33 ANINT function, elemental: (A: R[]) R[] named; (A: R*[], KIND: I*?) R*[]\n"
    "34 ANY function: (MASK: L*[], DIM: I*?) L*[]\n"
    "35 DASIN function, elemental: (X: R*[]) D[] named\n"
    "36 ASIN function, elemental: (X: R[]) R[] named; (X: R*[]) R*[]\n"
    "37 ASSOCIATED function: (POINTER: T[] ptr, TARGET: T[]?!) L\n"
    "38 DATAN function, elemental: (X: R*[]) D[] named\n"
    "39 ATAN function, elemental: (X: R[]) R[] named; (X: R*[]) R*[]\n"
    "40 DATAN2 function, elemental: (Y: R*[], X: R*[]) D[] named\n"
    "41 ATAN2 function, elemental: (Y: R[], X: R[]) R[] named; (Y: R*[], X: R*[]) R*[]\n"
    "42 BIT_SIZE function: (I: I*[?]!) I\n"
    "43 BTEST function, elemental: (I: I*[], POS: I*[]) L[]\n"
    "44 CEILING function, elemental: (A: R*[]) I[]\n"
    "45 CHAR function, elemental: (I: I*[], KIND: I*?) S*(1)[]\n"
    "46 CMPLX function, elemental: (X: I*[], Y: I*[]?, KIND: I*?) C*[]; (X: I*[], Y: R*[]?, KIND: I*?) "
    "C*[]; (X: R*[], Y: I*[]?, KIND: I*?) C*[]; (X: R*[], Y: R*[]?, KIND: I*?) C*[]; (X: C*[], KIND: "
    "I*?) C*[]\n"
    "47 CONJG function, elemental: (Z: C[]) C[] named; (Z: C*[]) C*[]\n"
    "48 DCOS function, elemental: (X: R*[]) D[] named\n"
    "49 CCOS function, elemental: (X: C*[]) C[] named\n"
    "50 COS function, elemental: (X: R[]) R[] named; (X: R*[]) R*[]; (X: C*[]) C*[]\n"
    "51 DCOSH function, elemental: (X: R*[]) D[] named\n"
    "52 COSH function, elemental: (X: R[]) R[] named; (X: R*[]) R*[]\n"
    "53 COUNT function: (MASK: L*[], DIM: I*?) I[]\n"
    "54 CSHIFT function: (ARRAY: T[], SHIFT: I*[], DIM: I*?) T[]\n"
    "55 DATE_AND_TIME subroutine: (DATE: S(8)? out, TIME: S(10)? out, ZONE: S(5)? out, VALUES: I*[1]? "
    "out)\n"
    "56 DBLE function, elemental: (A: N[]) D[]\n"
    "57 DIGITS function: (X: I*[?]!) I; (X: R*[?]!) I\n"
    "58 IDIM function, elemental: (X: I*[], Y: I*[]) I[] named\n"
    "59 DDIM function, elemental: (X: R*[], Y: R*[]) D[] named\n"
    "60 DIM function, elemental: (X: R[], Y: R[]) R[] named; (X: I*[], Y: I*[]) I*[]; (X: R*[], Y: R*[]) "
    "R*[]\n"
    "61 DOT_PRODUCT function: (VECTOR_A: N[1], VECTOR_B: N[1]) N; (VECTOR_A: L*[1], VECTOR_B: L*[1]) L*\n"
    "62 DPROD function, elemental: (X: R*[], Y: R*[]) D[] named\n"
    "63 EOSHIFT function: (ARRAY: T[], SHIFT: I*[], BOUNDARY: T[]?, DIM: I*?) T[]\n"
    "64 EPSILON function: (X: R*[?]!) R*\n"
    "65 DEXP function, elemental: (X: R*[]) D[] named\n"
    "66 CEXP function, elemental: (X: C*[]) C[] named\n"
    "67 EXP function, elemental: (X: R[]) R[] named; (X: R*[]) R*[]; (X: C*[]) C*[]\n"
    "68 EXPONENT function, elemental: (X: R*[]) I[]\n"
    "69 FLOOR function, elemental: (A: R*[]) I[]\n"
    "70 FRACTION function, elemental: (X: R*[]) R*[]\n"
    "71 HUGE function: (X: I*[?]!) I*; (X: R*[?]!) R*\n"
    "72 IACHAR function, elemental: (C: S(1)[]) I[]\n"
    "73 IAND function, elemental: (I: I*[], J: I*[]) I*[]\n"
    "74 IBCLR function, elemental: (I: I*[], POS: I*[]) I*[]\n"
    "75 IBITS function, elemental: (I: I*[], POS: I*[], LEN: I*[]) I*[]\n"
    "76 IBSET function, elemental: (I: I*[], POS: I*[]) I*[]\n"
    "77 ICHAR function, elemental: (C: S*(1)[]) I[]\n"
    "78 IEOR function, elemental: (I: I*[], J: I*[]) I*[]\n"
    "79 INDEX function, elemental: (STRING: S[], SUBSTRING: S[]) I[] named; (STRING: S*[], SUBSTRING: "
    "S*[], BACK: L*[]?) I[]\n"
    "80 INT function, elemental: (A: N[], KIND: I*?) I*[]\n"
    "81 IFIX function, elemental: (A: R*[]) I[]\n"
    "82 IDINT function, elemental: (A: R*[]) I[]\n"
    "83 IOR function, elemental: (I: I*[], J: I*[]) I*[]\n"
    "84 ISHFT function, elemental: (I: I*[], SHIFT: I*[]) I*[]\n"
    "85 ISHFTC function, elemental: (I: I*[], SHIFT: I*[], SIZE: I*[]?) I*[]\n"
    "86 KIND function: (X: N[?]!) I; (X: L*[?]!) I; (X: S*[?]!) I\n"
    "87 LBOUND function: (ARRAY: T[?]!, DIM: I*?) I[]\n"
    "88 LEN function: (STRING: S!) I named; (STRING: S*[?]!) I\n"
    "89 LEN_TRIM function, elemental: (STRING: S*[]) I[]\n"
    "90 LGE function, elemental: (STRING_A: S[]!, STRING_B: S[]!) L[]\n"
    "91 LGT function, elemental: (STRING_A: S[]!, STRING_B: S[]!) L[]\n"
    "92 LLE function, elemental: (STRING_A: S[]!, STRING_B: S[]!) L[]\n"
    "93 LLT function, elemental: (STRING_A: S[]!, STRING_B: S[]!) L[]\n"
    "94 ALOG function, elemental: (X: R*[]) R[] named\n"
    "95 DLOG function, elemental: (X: R*[]) D[] named\n"
    "96 CLOG function, elemental: (X: C*[]) C[] named\n"
    "97 LOG function, elemental: (X: R*[]) R*[]; (X: C*[]) C*[]\n"
    "98 ALOG10 function, elemental: (X: R*[]) R[] named\n"
    "99 DLOG10 function, elemental: (X: R*[]) D[] named\n"
    "100 LOG10 function, elemental: (X: R*[]) R*[]\n"
    "101 LOGICAL function, elemental: (L: L*[], KIND: I*?) L*[]\n"
    "102 MATMUL function: (MATRIX_A: N[2], MATRIX_B: N[2]) N[2]; (MATRIX_A: N[2], MATRIX_B: N[1]) N[1]; "
    "(MATRIX_A: N[1], MATRIX_B: N[2]) N[1]; (MATRIX_A: L*[2], MATRIX_B: L*[2]) L*[2]; (MATRIX_A: L*[2], "
    "MATRIX_B: L*[1]) L*[1]; (MATRIX_A: L*[1], MATRIX_B: L*[2]) L*[1]\n"
    "103 MAX function, elemental, repeating: (A1: I*[], A2: I*[]) I*[]; (A1: R*[], A2: R*[]) R*[]\n"
    "104 AMAX0 function, elemental, repeating: (A1: I*[], A2: I*[]) R[]\n"
    "105 AMAX1 function, elemental, repeating: (A1: R*[], A2: R*[]) R[]\n"
    "106 DMAX1 function, elemental, repeating: (A1: R*[], A2: R*[]) D[]\n"
    "107 MAX0 function, elemental, repeating: (A1: I*[], A2: I*[]) I[]\n"
    "108 MAX1 function, elemental, repeating: (A1: R*[], A2: R*[]) I[]\n"
    "109 MAXEXPONENT function: (X: R*[?]!) I\n"
    "110 MAXLOC function: (ARRAY: I*[], MASK: L*[]?) I[1]; (ARRAY: R*[], MASK: L*[]?) I[1]\n"
    "111 MAXVAL function: (ARRAY: I*[], DIM: I*?, MASK: L*[]?) I*[]; (ARRAY: R*[], DIM: I*?, MASK: "
    "L*[]?) R*[]\n"
    "112 MERGE function, elemental: (TSOURCE: T[], FSOURCE: T[], MASK: L*[]) T[]\n"
    "113 MIN function, elemental, repeating: (A1: I*[], A2: I*[]) I*[]; (A1: R*[], A2: R*[]) R*[]\n"
    "114 AMIN0 function, elemental, repeating: (A1: I*[], A2: I*[]) R[]\n"
    "115 AMIN1 function, elemental, repeating: (A1: R*[], A2: R*[]) R[]\n"
    "116 DMIN1 function, elemental, repeating: (A1: R*[], A2: R*[]) D[]\n"
    "117 MIN0 function, elemental, repeating: (A1: I*[], A2: I*[]) I[]\n"
    "118 MIN1 function, elemental, repeating: (A1: R*[], A2: R*[]) I[]\n"
    "119 MINEXPONENT function: (X: R*[?]!) I\n"
    "120 MINLOC function: (ARRAY: I*[], MASK: L*[]?) I[1]; (ARRAY: R*[], MASK: L*[]?) I[1]\n"
    "121 MINVAL function: (ARRAY: I*[], DIM: I*?, MASK: L*[]?) I*[]; (ARRAY: R*[], DIM: I*?, MASK: "
    "L*[]?) R*[]\n"
    "122 AMOD function, elemental: (A: R*[], P: R*[]) R[] named\n"
    "123 DMOD function, elemental: (A: R*[], P: R*[]) D[] named\n"
    "124 MOD function, elemental: (A: I[], P: I[]) I[] named; (A: I*[], P: I*[]) I*[]; (A: R*[], P: "
    "R*[]) R*[]\n"
    "125 MODULO function, elemental: (A: I*[], P: I*[]) I*[]; (A: R*[], P: R*[]) R*[]\n"
    "126 MVBITS subroutine, elemental: (FROM: I*[], FROMPOS: I*[], LEN: I*[], TO: I*[] inout, TOPOS: "
    "I*[])\n"
    "127 NEAREST function, elemental: (X: R*[], S: R*[]) R*[]\n"
    "128 IDNINT function, elemental: (A: R*[]) I[] named\n"
    "129 NINT function, elemental: (A: R[]) I[] named; (A: R*[], KIND: I*?) I*[]\n"
    "130 NOT function, elemental: (I: I*[]) I*[]\n"
    "131 PACK function: (ARRAY: T[], MASK: L*[], VECTOR: T[1]?) T[1]\n"
    "132 PRECISION function: (X: R*[]) I; (X: C*[]) I\n"
    "133 PRESENT function: (A: T[?]!) L\n"
    "134 PRODUCT function: (ARRAY: N[], DIM: I*?, MASK: L*[]?) N[]\n"
    "135 RADIX function: (X: I*[?]!) I; (X: R*[?]!) I\n"
    "136 RANDOM_NUMBER subroutine: (HARVEST: R*[] out)\n"
    "137 RANDOM_SEED subroutine: (SIZE: I*? out, PUT: I*[1]?, GET: I*[1]? out)\n"
    "138 RANGE function: (X: N[?]!) I\n"
    "139 REAL function, elemental: (A: N[], KIND: I*?) R*[]\n"
    "140 FLOAT function, elemental: (A: I*[]) R[]\n"
    "141 SNGL function, elemental: (A: R*[]) R[]\n"
    "142 REPEAT function: (STRING: S*, NCOPIES: I*) S*\n"
    "143 RESHAPE function: (SOURCE: T[], SHAPE: I*[1], PAD: T[]?, ORDER: I*[1]?) T[]\n"
    "144 RRSPACING function, elemental: (X: R*[]) R*[]\n"
    "145 SCALE function, elemental: (X: R*[], I: I*[]) R*[]\n"
    "146 SCAN function, elemental: (STRING: S*[], SET: S*[], BACK: L*[]?) I[]\n"
    "147 SELECTED_INT_KIND function: (R: I*) I\n"
    "148 SELECTED_REAL_KIND function: (P: I*?, R: I*?) I\n"
    "149 SET_EXPONENT function, elemental: (X: R*[], I: I*[]) R*[]\n"
    "150 SHAPE function: (SOURCE: T[]!) I[1]\n"
    "151 ISIGN function, elemental: (A: I*[], B: I*[]) I[] named\n"
    "152 DSIGN function, elemental: (A: R*[], B: R*[]) D[] named\n"
    "153 SIGN function, elemental: (A: R[], B: R[]) R[] named; (A: I*[], B: I*[]) I*[]; (A: R*[], B: "
    "R*[]) R*[]\n"
    "154 DSIN function, elemental: (X: R*[]) D[] named\n"
    "155 CSIN function, elemental: (X: C*[]) C[] named\n"
    "156 SIN function, elemental: (X: R[]) R[] named; (X: R*[]) R*[]; (X: C*[]) C*[]\n"
    "157 DSINH function, elemental: (X: R*[]) D[] named\n"
    "158 SINH function, elemental: (X: R[]) R[] named; (X: R*[]) R*[]\n"
    "159 SIZE function: (ARRAY: T[?]!, DIM: I*?) I\n"
    "160 SPACING function, elemental: (X: R*[]) R*[]\n"
    "161 SPREAD function: (SOURCE: T[], DIM: I*, NCOPIES: I*) T[]\n"
    "162 DSQRT function, elemental: (X: R*[]) D[] named\n"
    "163 CSQRT function, elemental: (X: C*[]) C[] named\n"
    "164 SQRT function, elemental: (X: R[]) R[] named; (X: R*[]) R*[]; (X: C*[]) C*[]\n"
    "165 SUM function: (ARRAY: N[], DIM: I*?, MASK: L*[]?) N[]\n"
    "166 SYSTEM_CLOCK subroutine: (COUNT: I*? out, COUNT_RATE: I*? out, COUNT_MAX: I*? out)\n"
    "167 DTAN function, elemental: (X: R*[]) D[] named\n"
    "168 TAN function, elemental: (X: R[]) R[] named; (X: R*[]) R*[]\n"
    "169 DTANH function, elemental: (X: D[]) D[] named\n"
    "170 TANH function, elemental: (X: R[]) R[] named; (X: R*[]) R*[]\n"
    "171 TINY function: (X: R*[?]!) R*\n"
    "172 TRANSFER function: (SOURCE: T[], MOLD: T[]!, SIZE: I*?) T[]\n"
    "173 TRANSPOSE function: (MATRIX: T[2]) T[2]\n"
    "174 TRIM function: (STRING: S*) S*\n"
    "175 UBOUND function: (ARRAY: T[?]!, DIM: I*?) I[]\n"
    "176 UNPACK function: (VECTOR: T[1], MASK: L*[], FIELD: T[]) T[]\n"
    "177 VERIFY function, elemental: (STRING: S*[], SET: S*[], BACK: L*[]?) I[]\n";
// clang-format on

std::vector<std::string> words_of(const std::string &text) {
    std::istringstream stream(text);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}

std::vector<std::string> lines_of(const std::string &text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

void start() {
    region_init();
    il_init();
    init_seed_tables();
}

std::string spelled(const atom *a) { return {a->spelling, a->length}; }

std::string printed_length(const type *t) {
    const bound &length = t->character.length;
    return length.kind == bound_assumed ? "" : "(" + std::to_string(length.value) + ")";
}

std::string printed_class(const char *letter, const type *t, type *default_type) {
    if (t->kind == ANY_KIND) {
        return std::string(letter) + "*";
    }
    EXPECT_EQ(t, default_type);
    return letter;
}

std::string printed_type(const type *t) {
    switch (t->type_code) {
    case tk_integer: return printed_class("I", t, default_integer());
    case tk_logical: return printed_class("L", t, default_logical());
    case tk_float: return t == double_precision() ? "D" : printed_class("R", t, default_real());
    case tk_complex: return printed_class("C", t, default_complex());
    case tk_fcharacter:
        EXPECT_TRUE(t->kind == ANY_KIND || t->kind == default_character_kind);
        return (t->kind == ANY_KIND ? "S*" : "S") + printed_length(t);
    case tk_any_numerical: return "N";
    case tk_any_type: return "T";
    case tk_any_derived: return "V";
    case tk_farray: {
        const std::string element = printed_type(t->array.element_type);
        if (t->array.shape_kind == as_shaped) {
            EXPECT_EQ(t->array.rank, 0);
            return element + "[?]";
        }
        EXPECT_EQ(t->array.shape_kind, deferred_shape);
        for (int i = 0; i < 2 * t->array.rank; ++i) {
            EXPECT_EQ(t->array.bound->bounds[i].kind, bound_undefined);
        }
        return element + (t->array.rank == 0 ? "[]" : "[" + std::to_string(t->array.rank) + "]");
    }
    default: return "bad type";
    }
}

std::string printed_parameter(const param_type *p) {
    std::string text = spelled(p->source_corresp.name) + ": " + printed_type(p->type);
    text += p->is_optional ? "?" : "";
    if (p->is_pointer) {
        EXPECT_FALSE(p->intent_in || p->intent_out);
        return text + " ptr";
    }
    if (p->intent_in && p->intent_out) {
        return text + " inout";
    }
    return text + (p->intent_out ? " out" : p->intent_in ? "" : "!");
}

std::string printed_form(const object *form, bool is_subroutine) {
    const routine_variant &routine = form->type->routine;
    std::string text;
    for (const param_type *p = routine.param_type_list; p; p = p->next) {
        text += (text.empty() ? "(" : ", ") + printed_parameter(p);
    }
    text += ")";
    if (is_subroutine) {
        EXPECT_EQ(routine.return_type, void_type());
    } else {
        text += " " + printed_type(routine.return_type);
    }
    return text + (form->source_corresp.name ? " named" : "");
}

std::string printed_intrinsic(unsigned code) {
    const symbol *s = seed_symbols[code];
    const bool is_subroutine = s->kind == sk_intrinsic_subroutine;
    const interface *generic = entity_as<interface>(s);
    std::string forms;
    std::set<std::string> flags;
    for (const object_list_member *m = generic->routine_prototype_list; m; m = m->next) {
        const routine_variant &routine = m->object->type->routine;
        flags.insert(std::string(routine.is_elemental ? ", elemental" : "") +
                     (routine.has_ellipsis ? ", repeating" : ""));
        forms += (forms.empty() ? "" : "; ") + printed_form(m->object, is_subroutine);
    }
    EXPECT_EQ(flags.size(), 1u); // all forms have those of the row
    return std::to_string(code) + " " + spelled(s->name) + (is_subroutine ? " subroutine" : " function") +
           *flags.begin() + ": " + forms;
}

} // namespace

TEST(seed_table, atoms_in_order_with_their_token_codes) {
    start();
    std::size_t i = 0;
    const auto expect_atom = [&i](const std::string &spelling, int token_code) {
        ASSERT_LT(i, seed_atom_count);
        EXPECT_EQ(spelled(seed_atoms[i]), spelling);
        EXPECT_EQ(seed_atoms[i]->token_code, token_code) << spelling;
        atom *found = nullptr;
        intern_name(spelling.c_str(), found);
        EXPECT_EQ(found, seed_atoms[i]);
        ++i;
    };
    int code = 40;
    for (const std::string &word : words_of(expected_keywords)) {
        expect_atom(word, code++);
    }
    EXPECT_EQ(code, 138);
    code = 147;
    for (const std::string &word : words_of(expected_specifiers)) {
        expect_atom(word, code++);
    }
    EXPECT_EQ(code, 184);
    code = 22;
    for (const std::string &word : words_of(expected_operators)) {
        expect_atom(word, code++);
    }
    EXPECT_EQ(code, 40);
    code = 0;
    for (const std::string &word : words_of(expected_older_forms)) {
        expect_atom(word, older_form_codes[code++]);
    }
    expect_atom(".TRUE.", 5);
    expect_atom(".FALSE.", 5);
    const std::size_t before_names = i;
    for (const std::string &line : lines_of(expected_intrinsics)) {
        const std::string name = words_of(line)[1];
        const std::set<std::string> keywords{"REAL", "PRECISION", "LOGICAL"};
        if ((name[0] >= 'A' && name[0] <= 'Z') && !keywords.count(name)) {
            expect_atom(name, 0);
        }
    }
    EXPECT_EQ(i - before_names, 157u);
    EXPECT_EQ(words_of(expected_argument_names).size(), 51u);
    for (const std::string &name : words_of(expected_argument_names)) {
        EXPECT_EQ(seed_atoms[i]->first_symbol, nullptr) << name;
        expect_atom(name, 0);
    }
    EXPECT_EQ(i, 369u);
}

TEST(seed_table, every_row) {
    start();
    const std::vector<std::string> rows = lines_of(expected_intrinsics);
    ASSERT_EQ(rows.size(), 178u);
    for (unsigned code = 0; code < rows.size(); ++code) {
        EXPECT_EQ(printed_intrinsic(code), rows[code]);
    }
}

TEST(seed_table, records_of_the_forms) {
    start();
    int forms = 0;
    for (unsigned code = 0; code < intrinsic_code_count; ++code) {
        const interface *generic = seed_interface(static_cast<intrinsic_code>(code));
        EXPECT_EQ(generic->symbol_link, seed_symbols[code]);
        EXPECT_EQ(generic->source_corresp.name, seed_symbols[code]->name);
        EXPECT_EQ(generic->next, nullptr);
        EXPECT_EQ(generic->inherited, nullptr);
        EXPECT_FALSE(generic->is_public);
        for (const object_list_member *m = generic->routine_prototype_list; m; m = m->next, ++forms) {
            const object *form = m->object;
            EXPECT_EQ(form->storage_class, sc_intrinsic);
            EXPECT_EQ(handler_index(form), code);
            EXPECT_EQ(form->type->type_code, tk_routine);
            EXPECT_TRUE(form->type->routine.has_param_info);
            EXPECT_FALSE(form->type->routine.is_recursive);
            EXPECT_EQ(form->type->routine.assoc_routine, form);
            EXPECT_EQ(form->source_corresp.decl_position, null_pos);
            EXPECT_EQ(form->source_corresp.scope_depth, depth_out_of_scope);
        }
    }
    EXPECT_EQ(forms, 253);
}

TEST(seed_table, symbols) {
    start();
    int functions = 0;
    std::vector<std::string> subroutines;
    for (unsigned code = 0; code < intrinsic_code_count; ++code) {
        const symbol *s = seed_symbols[code];
        EXPECT_EQ(s->scope_depth, -1);
        EXPECT_EQ(s->flags, sf_visible);
        EXPECT_EQ(s->decl_position, null_pos);
        EXPECT_EQ(s->next_in_scope, nullptr);
        if (s->kind == sk_intrinsic_function) {
            ++functions;
        } else {
            EXPECT_EQ(s->kind, sk_intrinsic_subroutine);
            subroutines.push_back(spelled(s->name));
        }
    }
    EXPECT_EQ(functions, 172);
    EXPECT_EQ(subroutines, words_of("= DATE_AND_TIME MVBITS RANDOM_NUMBER RANDOM_SEED SYSTEM_CLOCK"));

    std::vector<std::string> specifics;
    for (std::size_t i = intrinsic_code_count; i < seed_symbol_count; ++i) {
        const symbol *s = seed_symbols[i];
        const std::string name = spelled(s->name);
        specifics.push_back(name);
        EXPECT_EQ(s->kind, sk_specific_function);
        EXPECT_EQ(s->flags, 0u);
        EXPECT_EQ(s->scope_depth, -1);
        EXPECT_EQ(s->aux2, pf_type_declared | pf_body_seen);
        EXPECT_EQ(entity_as<object>(s)->source_corresp.name, s->name);
        EXPECT_EQ(entity_as<object>(s)->symbol_link, s);
        // Ahead of the generic of its name, which is the last of the chain.
        EXPECT_EQ(s->name->first_symbol, s) << name;
        ASSERT_NE(s->next_same_name, nullptr) << name;
        EXPECT_EQ(s->next_same_name, seed_symbols[handler_index(entity_as<object>(s))]) << name;
        EXPECT_EQ(s->next_same_name->next_same_name, nullptr) << name;
    }
    EXPECT_EQ(specifics, words_of(expected_specifics));
}

TEST(seed_table, older_operator_forms_have_no_symbol) {
    start();
    for (const std::string &word : words_of(expected_older_forms)) {
        atom *a = nullptr;
        EXPECT_EQ(intern_name(word.c_str(), a), nullptr);
    }
}

TEST(seed_table, keywords_that_are_intrinsics) {
    start();
    for (const auto &[word, code] : {std::pair{"REAL", tok_kw_real}, std::pair{"PRECISION", tok_kw_precision},
                                     std::pair{"LOGICAL", tok_kw_logical}}) {
        atom *a = nullptr;
        const symbol *s = intern_name(word, a);
        ASSERT_NE(s, nullptr);
        EXPECT_EQ(s->kind, sk_intrinsic_function);
        EXPECT_EQ(a->token_code, code);
    }
}

TEST(seed_table, numbers_and_printed_names) {
    EXPECT_EQ(intrinsic_code_count, 178);
    EXPECT_EQ(assign_op, 0);
    EXPECT_EQ(neqv_op, 17);
    EXPECT_EQ(intr_iabs, 18);
    EXPECT_EQ(intr_abs, 21);
    EXPECT_EQ(intr_achar, 22);
    EXPECT_EQ(intr_verify, 177);
    EXPECT_STREQ(intrinsic_code_name(assign_op), "assign_op");
    EXPECT_STREQ(intrinsic_code_name(expon_op), "expon_op");
    EXPECT_STREQ(intrinsic_code_name(intr_iabs), "iabs");
    EXPECT_STREQ(intrinsic_code_name(intr_not), "not");
    EXPECT_STREQ(intrinsic_code_name(178), "**BAD INTRINSIC**");
    start();
    for (unsigned code = intr_iabs; code < intrinsic_code_count; ++code) {
        std::string upper;
        for (const char *c = intrinsic_code_name(code); *c; ++c) {
            upper += char_fold(*c);
        }
        EXPECT_EQ(spelled(seed_symbols[code]->name), upper);
    }
}

// Types are shared by their notation: no more records than there are types.
TEST(seed_table, types_are_shared) {
    start();
    std::set<std::string> texts;
    std::set<const type *> types;
    for (unsigned code = 0; code < intrinsic_code_count; ++code) {
        const interface *generic = seed_interface(static_cast<intrinsic_code>(code));
        for (const object_list_member *m = generic->routine_prototype_list; m; m = m->next) {
            for (const param_type *p = m->object->type->routine.param_type_list; p; p = p->next) {
                texts.insert(printed_type(p->type));
                types.insert(p->type);
            }
        }
    }
    EXPECT_EQ(texts.size(), types.size());
}

TEST(seed_table, case_sensitive_names_leave_the_words_in_upper_case) {
    case_sensitive_names = true;
    start();
    atom *upper = nullptr;
    atom *lower = nullptr;
    EXPECT_NE(intern_name("SIN", upper), nullptr);
    EXPECT_EQ(intern_name("sin", lower), nullptr);
    EXPECT_NE(upper, lower);
    case_sensitive_names = false;
}

TEST(seed_table, a_compilation_starts_from_the_pristine_state) {
    start();
    atom *a = nullptr;
    symbol *s = intern_name("SIN", a);
    s->flags |= sf_referenced;
    new_symbol(sk_folded_external, {a, null_pos}, -1);
    atom *other = nullptr;
    intern_name("NOT_SEEDED", other);
    init_seed_tables();
    s = intern_name("SIN", a);
    EXPECT_EQ(s->kind, sk_specific_function);
    EXPECT_EQ(s->next_same_name->flags, sf_visible);
    EXPECT_EQ(find_atom("NOT_SEEDED", 10), nullptr);
    EXPECT_EQ(curr_scope_depth, -1);
}

// Start-up is felt at each run of the command; the limit leaves room for slow machines and for sanitizers.
TEST(seed_table, is_built_in_no_time) {
    start();
    const auto from = std::chrono::steady_clock::now();
    constexpr int rounds = 20;
    for (int i = 0; i < rounds; ++i) {
        init_seed_tables();
    }
    const std::chrono::duration<double, std::micro> took = std::chrono::steady_clock::now() - from;
    EXPECT_LT(took.count() / rounds, 20000.0);
    RecordProperty("microseconds", static_cast<int>(took.count() / rounds));
}
