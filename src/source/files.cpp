// The stack of open files, the tree of their records, and the map of positions that grows beside it.
#include "source/files.h"

#include "driver/diagnostics.h"
#include "driver/driver.h"
#include "il/entries.h"
#include "output/listing.h"
#include "source/lines.h"

#include <algorithm>
#include <cstring>

namespace zf90 {

// The bytes read ahead from an open file. Parking a file drops them.
struct input_buffer {
    char bytes[1 << 16];
    std::size_t next;
    std::size_t end;
};

std::uint32_t line_seq;
source_entry *source_stack;
int source_depth = -1;
source_entry *curr_source;

namespace {

constexpr int stack_growth_step = 30;
constexpr int max_open_files = 4; // the outermost ones and the innermost; those between are parked
constexpr std::size_t path_buffer_size = 130;
constexpr std::uint32_t seq_being_read = 0xffffffff;

int source_stack_capacity;
input_buffer *input_buffers[max_open_files]; // the innermost file uses the last one

// Directory prefixes; equal ones share one string.
struct dir_name_entry {
    const char *name;
    std::size_t length;
    dir_name_entry *next;
};
dir_name_entry *dir_name_table;

position_segment *position_segments; // by ascending first_seq
std::size_t position_segment_count;
std::size_t position_segment_capacity;

const char *intern_dir_name(const char *path, std::size_t length) {
    for (dir_name_entry *e = dir_name_table; e; e = e->next) {
        if (e->length == length && std::memcmp(e->name, path, length) == 0) {
            return e->name;
        }
    }
    dir_name_table = new (il_alloc(static_cast<std::int32_t>(sizeof(dir_name_entry))))
        dir_name_entry{il_copy_string(path, length), length, dir_name_table};
    return dir_name_table->name;
}

// From the next line on, lines belong to the current file's current record.
void begin_position_segment() {
    if (position_segment_count == position_segment_capacity) {
        const std::size_t old_bytes = position_segment_capacity * sizeof(position_segment);
        position_segment_capacity = std::max<std::size_t>(64, 2 * position_segment_capacity);
        position_segments = static_cast<position_segment *>(
            sys_realloc(position_segments, old_bytes, position_segment_capacity * sizeof(position_segment)));
    }
    const bool by_directive = curr_source->curr_record != curr_source->file_record;
    new (&position_segments[position_segment_count++])
        position_segment{line_seq + 1, curr_source->last_seq + 1, curr_source->curr_record,
                         source_depth + 1 + (by_directive ? 1 : 0)};
}

// A record of the file or stretch that begins with the next line.
source_file *new_child_record(source_file *parent, const char *file_name, const char *full_name,
                              std::uint32_t first_line_number) {
    source_file *record = new_source_file();
    record->file_name = file_name;
    record->full_name = full_name;
    record->first_seq_number = line_seq + 1;
    record->last_seq_number = seq_being_read;
    record->first_line_number = first_line_number;
    if (parent) {
        (parent->last_child_file ? parent->last_child_file->next : parent->first_child_file) = record;
        parent->last_child_file = record;
    } else if (!il_root.primary_source_file) {
        il_root.primary_source_file = record;
    }
    return record;
}

bool is_relative(const char *name) {
    const bool has_drive =
        ((name[0] >= 'A' && name[0] <= 'Z') || (name[0] >= 'a' && name[0] <= 'z')) && name[1] == ':';
    return name[0] != '/' && name[0] != '\\' && !has_drive;
}

const char *long_lived_path(const char *path) { return il_copy_string(path, std::strlen(path)); }

void free_if_allocated(const char *path, const char *buffer, const char *name) {
    if (path != buffer && path != name) {
        std::free(const_cast<char *>(path));
    }
}

// Tries the directories of the list in order; `path` is what was opened, in long-lived memory. The search
// ends on the first outcome other than a failed open.
opened_file search_input(const char *name, const search_list &list, const char *&path) {
    opened_file file{nullptr, open_outcome::open_failed};
    for (const search_dir *dir = list.first; dir && file.outcome == open_outcome::open_failed;
         dir = dir->next) {
        for (bool with_slash : {false, true}) {
            if (with_slash && !joins_with_backslash(dir->name)) {
                break;
            }
            char buffer[path_buffer_size];
            const char *candidate = with_slash ? make_slash_path(dir->name, name, "", buffer, sizeof buffer)
                                               : make_path(dir->name, name, "", buffer, sizeof buffer);
            // An empty name is refused as it stands, not as the directory that it would make.
            file = open_checked_input(*name ? candidate : name, false);
            if (file.outcome == open_outcome::ok) {
                path = long_lived_path(candidate);
            }
            free_if_allocated(candidate, buffer, name);
            if (file.outcome != open_outcome::open_failed) {
                break;
            }
        }
    }
    return file;
}

[[noreturn]] void report_open_failure(open_outcome outcome, const char *name, bool no_directories) {
    if (outcome == open_outcome::not_regular) {
        catastrophe(msg_is_not_file_containing_source_text, name);
    }
    if (outcome == open_outcome::bad_name) {
        catastrophe(msg_is_not_valid_source_file_name, name);
    }
    if (no_directories) {
        catastrophe(msg_could_not_open_source_file_no_directories_in_search, name);
    }
    catastrophe(msg_could_not_open_source_file, name);
}

// Gives the current file a buffer of its own; its stream needs none beside it.
void attach_input_buffer() {
    input_buffer *&buffer = input_buffers[std::min(source_depth, max_open_files - 1)];
    if (!buffer) {
        buffer = new (sys_alloc(sizeof(input_buffer))) input_buffer;
    }
    buffer->next = buffer->end = 0;
    curr_source->input = buffer;
    if (curr_source->stream != stdin) {
        std::setvbuf(curr_source->stream, nullptr, _IONBF, 0);
    }
}

// Standard input may be a person or a pipe: a line is compiled before the next one is waited for.
std::size_t read_line_bytes(input_buffer &input) {
    std::size_t n = 0;
    for (int c = 0; n < sizeof input.bytes && c != '\n' && (c = std::getc(stdin)) != EOF;) {
        input.bytes[n++] = static_cast<char>(c);
    }
    return n;
}

// Closes the current file's stream for a time, so that few files are open however deep the includes nest.
void park() {
    const std::size_t unread = curr_source->input->end - curr_source->input->next;
    curr_source->saved_offset = std::ftell(curr_source->stream) - static_cast<long>(unread);
    std::fclose(curr_source->stream);
    curr_source->stream = nullptr;
    curr_source->input = nullptr;
}

void unpark() {
    curr_source->stream = reopen_input(curr_source->full_name);
    if (!curr_source->stream) {
        catastrophe(msg_could_not_open_source_file, curr_source->full_name);
    }
    attach_input_buffer();
    if (std::fseek(curr_source->stream, curr_source->saved_offset, SEEK_SET) != 0) {
        catastrophe(msg_could_not_open_source_file, curr_source->full_name);
    }
}

} // namespace

void source_files_init() {
    source_depth = -1;
    curr_source = nullptr;
    line_seq = 0;
    dir_name_table = nullptr;
    position_segment_count = 0;
}

void open_source_file(const char *name, const search_list &list) {
    if (source_depth + 1 >= source_stack_capacity) {
        const auto old_bytes = static_cast<std::size_t>(source_stack_capacity) * sizeof(source_entry);
        source_stack_capacity += stack_growth_step;
        source_stack = static_cast<source_entry *>(sys_realloc(
            source_stack, old_bytes, static_cast<std::size_t>(source_stack_capacity) * sizeof(source_entry)));
        curr_source = source_depth >= 0 ? &source_stack[source_depth] : nullptr;
    }
    if (source_depth >= max_open_files - 1) {
        park();
    }

    const bool is_primary = source_depth < 0;
    const char *path = name;
    opened_file file{nullptr, open_outcome::open_failed};
    bool no_directories = false;
    if (is_primary && std::strcmp(name, "-") == 0) {
        file = {stdin, open_outcome::ok};
    } else if (!is_primary && is_relative(name)) {
        no_directories = !list.first;
        file = search_input(name, list, path);
    } else {
        file = open_checked_input(name, false);
        path = file.outcome == open_outcome::ok ? long_lived_path(name) : name;
    }
    if (file.outcome != open_outcome::ok) {
        report_open_failure(file.outcome, name, no_directories);
    }
    for (int d = source_depth; d >= 0; --d) {
        if (std::strcmp(source_stack[d].full_name, path) == 0) {
            catastrophe(msg_include_file_includes_itself, path);
        }
    }

    source_file *parent = is_primary ? nullptr : curr_source->file_record;
    curr_source = new (&source_stack[++source_depth]) source_entry{};
    curr_source->stream = file.stream;
    attach_input_buffer();
    file_ended = false; // of the file below, whose last line may be the one that includes this file
    curr_source->full_name = path;
    const char *separator = last_path_separator(path);
    curr_source->file_name = separator ? separator + 1 : path;
    curr_source->dir_name = intern_dir_name(path, static_cast<std::size_t>(curr_source->file_name - path));
    curr_source->file_record = new_child_record(parent, curr_source->file_name, path, 1);
    curr_source->curr_record = curr_source->file_record;
    begin_position_segment();
    list_file_line(is_primary ? ' ' : '1');
}

std::string_view unread_input() {
    input_buffer &input = *curr_source->input;
    if (input.next == input.end) {
        input.next = 0;
        input.end = curr_source->stream == stdin
                        ? read_line_bytes(input)
                        : std::fread(input.bytes, 1, sizeof input.bytes, curr_source->stream);
        check_interrupt(); // which may have ended the read
        if (input.end == 0 && std::ferror(curr_source->stream)) {
            catastrophe(msg_could_not_open_source_file, curr_source->full_name);
        }
    }
    return {input.bytes + input.next, input.end - input.next};
}

void consume_input(std::size_t count) { curr_source->input->next += count; }

void pop_source_file() {
    curr_source->file_record->last_seq_number = line_seq;
    curr_source->curr_record->last_seq_number = line_seq;
    std::fclose(curr_source->stream);
    file_ended = false;
    --source_depth;
    if (source_depth < 0) {
        curr_source = nullptr;
        return;
    }
    curr_source = &source_stack[source_depth];
    if (!curr_source->stream) {
        unpark();
    }
    begin_position_segment();
    list_file_line('2');
}

void enter_line_record(std::uint32_t line_number, const char *name) {
    curr_source->file_name = name;
    curr_source->last_seq = line_number - 1;
    if (curr_source->curr_record != curr_source->file_record) {
        curr_source->curr_record->last_seq_number = line_seq;
    }
    curr_source->curr_record = new_child_record(curr_source->file_record, name, nullptr, line_number);
    begin_position_segment();
    list_file_line(' ');
}

found_position find_position(std::uint32_t seq) {
    if (position_segment_count == 0 || seq == 0) {
        return {};
    }
    const std::uint32_t last_seq = position_segments[0].record->last_seq_number;
    const bool at_end = last_seq != seq_being_read && seq - 1 == last_seq;
    const std::uint32_t wanted = at_end ? last_seq : seq;
    const position_segment *end = position_segments + position_segment_count;
    // The last of several segments that begin with one line is the one that has lines.
    const position_segment *s =
        std::upper_bound(static_cast<const position_segment *>(position_segments), end, wanted,
                         [](std::uint32_t value, const position_segment &p) { return value < p.first_seq; });
    if (s == position_segments) {
        return {nullptr, 0, at_end, 0};
    }
    --s;
    return {s->record, wanted - s->first_seq + s->line, at_end, s->depth};
}

position_description describe_position(std::uint32_t seq) {
    const found_position found = find_position(seq);
    if (!found.record) {
        return {"", "", 0, found.at_end};
    }
    const char *full_name = found.record->full_name;
    return {found.record->file_name, full_name ? full_name : "", found.line, found.at_end};
}

} // namespace zf90
