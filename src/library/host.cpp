// Diagnostics without positions and counters: the reader reports that a file is not of the format, everything
// else that there is no memory.
#include "library/host.h"

#include "driver/diagnostics.h"
#include "driver/driver.h"
#include "il/arena.h"

#include <iterator>

namespace zf90 {

std::jmp_buf file_fault_exit;
bool file_fault_returns;
const char *file_fault_text;

std::uint32_t error_count, catastrophe_count;
source_pos error_pos;
const char *il_file_name;
std::FILE *il_file;

const char *message_text(unsigned code) {
    static constexpr const char *texts[] = {
#define MESSAGE(number, name, text) text,
#include "driver/messages.def"
    };
    return texts[code < std::size(texts) ? code : 0];
}

void report(std::string_view text, source_pos, severity, std::span<const std::string_view>) {
    if (file_fault_returns && text.data() != message_text(msg_out_of_memory)) {
        file_fault_returns = false;
        file_fault_text = text.data();
        std::longjmp(file_fault_exit, 1); // nothing between has a destructor
    }
    // Files are written to memory, so a failure to write is the same.
    std::fprintf(stderr, "%s\n", message_text(msg_out_of_memory));
    std::exit(completion_stopped);
}

std::FILE *open_memory_stream(char *&text, std::size_t &size) {
    std::FILE *const stream = open_memstream(&text, &size);
    if (!stream) {
        out_of_memory();
    }
    return stream;
}

void check_memory_stream_text(const char *text) {
    if (!text) { // the only trace of a failure to give the text its final size
        out_of_memory();
    }
}

} // namespace zf90
