// Speed of the tokenizer, in bytes of source a second: reading lines, assembling statements and all their
// tokens. Each source is a megabyte of plain text; it is read from a file each time, as the compiler does.
#include "driver/driver.h"
#include "driver/options.h"
#include "il/entries.h"
#include "intrinsics/seed_table.h"
#include "source/files.h"
#include "source/tokens.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <string>
#include <unistd.h>

namespace zf90 {
namespace {

constexpr std::size_t source_size = 1 << 20;

constexpr const char *fixed_form_piece =
    "C     SOLVE THE TRIANGULAR SYSTEM BY BACK SUBSTITUTION, COLUMN BY COLUMN,\n"
    "C     AND KEEP THE LARGEST RESIDUAL FOR THE TEST OF CONVERGENCE.\n"
    "      SUBROUTINE SOLVE(MATRIX, LDA, N, IPVT, RHS, WORK, RESID, INFO)\n"
    "      INTEGER LDA, N, IPVT(N), INFO, COLUMN, ROW, PIVOT\n"
    "      DOUBLE PRECISION MATRIX(LDA,N), RHS(N), WORK(N), RESID, FACTOR\n"
    "      IF (N .LT. 1 .OR. LDA .LT. N) GO TO 900\n"
    "      DO 200 COLUMN = N, 1, -1\n"
    "         PIVOT = IPVT(COLUMN)\n"
    "         IF (ABS(MATRIX(PIVOT,COLUMN)) .LE. 1.0D-12) GO TO 900\n"
    "         FACTOR = RHS(PIVOT)/MATRIX(PIVOT,COLUMN)\n"
    "         DO 100 ROW = 1, COLUMN - 1\n"
    "            RHS(ROW) = RHS(ROW) - FACTOR*MATRIX(ROW,COLUMN)\n"
    "  100    CONTINUE\n"
    "         WORK(COLUMN) = FACTOR + 0.5D0*(RHS(COLUMN) + RESID)**2 +\n"
    "     1                  RESID*SQRT(FACTOR)\n"
    "  200 CONTINUE\n"
    "      WRITE (6, 950) 'SOLUTION FOUND IN', N, ' STEPS, RESIDUAL =', RESID\n"
    "      RETURN\n"
    "  900 INFO = 1\n"
    "      END\n";

constexpr const char *free_form_piece =
    "! Solve the triangular system by back substitution, column by column,\n"
    "! and keep the largest residual for the test of convergence.\n"
    "subroutine solve(matrix, order, pivots, rhs, work, residual, info)\n"
    "   integer, intent(in) :: order, pivots(order)\n"
    "   double precision, intent(in) :: matrix(:, :)\n"
    "   double precision, intent(inout) :: rhs(:), work(:)\n"
    "   double precision :: factor, residual\n"
    "   if (order < 1 .or. size(matrix, 1) < order) return\n"
    "   columns: do column = order, 1, -1\n"
    "      pivot = pivots(column)\n"
    "      if (abs(matrix(pivot, column)) <= 1.0d-12) exit columns\n"
    "      factor = rhs(pivot)/matrix(pivot, column)   ! may be large\n"
    "      do row = 1, column - 1\n"
    "         rhs(row) = rhs(row) - factor*matrix(row, column)\n"
    "      end do\n"
    "      work(column) = factor + 0.5d0*(rhs(column) + residual)**2 + &\n"
    "                     residual*sqrt(factor)\n"
    "   end do columns\n"
    "   write (*, *) 'solution found in', order, ' steps, residual =', residual\n"
    "   info = 1\n"
    "end subroutine solve\n";

// A temporary file of the piece over and over.
class source_text {
public:
    explicit source_text(const char *piece) {
        std::string text;
        while (text.size() < source_size) {
            text += piece;
        }
        size_ = text.size();
        const int descriptor = ::mkstemp(name_);
        if (descriptor < 0 ||
            ::write(descriptor, text.data(), text.size()) != static_cast<ssize_t>(text.size())) {
            std::abort();
        }
        ::close(descriptor);
    }
    source_text(const source_text &) = delete;
    source_text &operator=(const source_text &) = delete;
    ~source_text() { ::unlink(name_); }
    const char *name() const { return name_; }
    std::int64_t size() const { return static_cast<std::int64_t>(size_); }

private:
    char name_[32] = "/tmp/tokens_benchXXXXXX";
    std::size_t size_;
};

void start_compilation(bool fixed_form) {
    fixed_form_input = fixed_form;
    static bool started;
    if (!started) {
        started = true;
        region_init();
        il_init();
        init_seed_tables();
    }
}

// All tokens in one mode; with `lines_only` none, to know what the reader takes of the time.
void read_tokens(benchmark::State &state, bool fixed_form, std::uint32_t mode, bool lines_only) {
    const source_text text(fixed_form ? fixed_form_piece : free_form_piece);
    start_compilation(fixed_form);
    std::int64_t tokens = 0;
    for (auto _ : state) {
        il_root.primary_source_file = nullptr;
        lexer_init();
        open_source_file(text.name(), {});
        while (next_statement()) {
            if (lines_only) {
                while (fixed_form && next_segment()) {
                }
                continue;
            }
            while (next_token(mode) != tok_eos) {
                ++tokens;
            }
        }
    }
    state.SetBytesProcessed(state.iterations() * text.size());
    state.counters["tokens"] = benchmark::Counter(static_cast<double>(tokens), benchmark::Counter::kIsRate);
}

// What classification asks of most statements: the first word, and whether an "=" follows.
void look_ahead(benchmark::State &state, bool fixed_form) {
    const source_text text(fixed_form ? fixed_form_piece : free_form_piece);
    start_compilation(fixed_form);
    for (auto _ : state) {
        il_root.primary_source_file = nullptr;
        lexer_init();
        open_source_file(text.name(), {});
        while (next_statement()) {
            next_token(lex_peek | lex_keyword);
            benchmark::DoNotOptimize(lookahead_find(tok_assign, tok_comma));
            while (fixed_form && next_segment()) {
            }
        }
    }
    state.SetBytesProcessed(state.iterations() * text.size());
}

BENCHMARK_CAPTURE(read_tokens, fixed_form, true, 0, false);
BENCHMARK_CAPTURE(read_tokens, free_form, false, 0, false);
BENCHMARK_CAPTURE(read_tokens, fixed_form_peeking, true, lex_peek, false);
BENCHMARK_CAPTURE(read_tokens, free_form_peeking, false, lex_peek, false);
BENCHMARK_CAPTURE(read_tokens, fixed_form_lines_only, true, 0, true);
BENCHMARK_CAPTURE(read_tokens, free_form_lines_only, false, 0, true);
BENCHMARK_CAPTURE(look_ahead, fixed_form, true);
BENCHMARK_CAPTURE(look_ahead, free_form, false);

} // namespace
} // namespace zf90

BENCHMARK_MAIN();
