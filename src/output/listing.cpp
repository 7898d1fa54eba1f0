// Write errors are not looked at here: the close of the file at the end of the compilation reports them.
#include "output/listing.h"

#include "driver/driver.h"
#include "source/files.h"

namespace zf90 {

void list_file_line(char mark) {
    if (!raw_listing_file) {
        return;
    }
    std::fprintf(raw_listing_file, "L %lu \"%s\"", static_cast<unsigned long>(curr_source->last_seq + 1),
                 curr_source->file_name);
    if (mark != ' ') {
        std::fprintf(raw_listing_file, " %c", mark);
    }
    std::fputc('\n', raw_listing_file);
}

void list_source_line(char letter, const char *text, std::size_t length) {
    if (!raw_listing_file) {
        return;
    }
    const char head[] = {letter, ' '};
    std::fwrite(head, 1, sizeof head, raw_listing_file);
    std::fwrite(text, 1, length, raw_listing_file);
    std::fputc('\n', raw_listing_file);
}

} // namespace zf90
