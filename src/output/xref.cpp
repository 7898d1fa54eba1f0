// The cross-reference of -X.
#include "output/xref.h"

#include "driver/driver.h"
#include "source/files.h"

namespace zf90 {

namespace {

constexpr char use_letters[] = {'D', 'M', 'R'};

std::uint32_t symbols_written; // numbers given so far

} // namespace

void xref_write(use_kind use, symbol *s, source_pos position) {
    // Position 0 is that of seeded and made-up uses.
    if (!xref_file || s->name == error_atom || position.seq == 0) {
        return;
    }
    if (s->xref_number == 0) {
        s->xref_number = ++symbols_written;
    }
    const position_description place = describe_position(position.seq);
    // Write errors show when the file is closed.
    std::fprintf(xref_file, "%lu %s %c %s %lu %d\n", static_cast<unsigned long>(s->xref_number),
                 s->name->spelling, use_letters[use], place.name, static_cast<unsigned long>(place.line),
                 static_cast<int>(position.column));
}

} // namespace zf90
