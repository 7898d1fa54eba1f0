// Diagnostics without positions and counters: the reader reports that a file is not of the format, everything
// else that there is no memory.
#include "library/host.h"

#include "driver/diagnostics.h"
#include "driver/driver.h"

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
    if (file_fault_returns) {
        file_fault_returns = false;
        file_fault_text = text.data();
        std::longjmp(file_fault_exit, 1); // nothing between has a destructor
    }
    std::fprintf(stderr, "%s\n", text.data());
    std::exit(completion_stopped);
}

} // namespace zf90
