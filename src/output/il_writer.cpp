// Two passes of the walker: the first numbers and counts the entries, the second prints one line for each.
// The text goes out through one buffer; a failure of the stream is looked at once, at the end.
#include "output/il_writer.h"

#include "driver/diagnostics.h"
#include "driver/driver.h"
#include "il/fields.h"

#include <array>
#include <charconv>
#include <cstring>
#include <vector>

namespace zf90 {

namespace {

std::FILE *output;
std::array<char, 1 << 16> buffer;
std::size_t buffered;
std::array<std::uint32_t, entry_kind_count> counters;

// The entries of a module file, by kind and number. Some links lead out of what the walk of a module reaches:
// the routine of a COMMON block, the next constant of a list of the compilation.
std::array<std::vector<const il_entry *>, entry_kind_count> members;

// Room for the fields of any record, but for texts and values of arbitrary length.
constexpr std::size_t record_space = 2048;

void flush_buffer() {
    std::fwrite(buffer.data(), 1, buffered, output);
    buffered = 0;
}

void reserve(std::size_t length) {
    if (length > buffer.size() - buffered) {
        flush_buffer();
    }
}

// The caller has reserved the room for these.
void put(char c) { buffer[buffered++] = c; }

template <class I> void put_number(I value) {
    char *const to = buffer.data() + buffered;
    buffered = static_cast<std::size_t>(std::to_chars(to, to + 24, value).ptr - buffer.data());
}

// A text of any length; room for the fields behind it remains.
void put_text(const char *text, std::size_t length) {
    reserve(length + record_space);
    if (length + record_space > buffer.size()) {
        std::fwrite(text, 1, length, output);
        return;
    }
    std::memcpy(buffer.data() + buffered, text, length);
    buffered += length;
}

std::uint32_t number_of(const il_entry &entry) { return entry.il_id & il_number_mask; }

bool is_in_file(const il_entry &entry, entry_kind kind) {
    const std::uint32_t number = number_of(entry);
    return !module_mode || kind == kind_bound_info_entry ||
           (number < members[kind].size() && members[kind][number] == &entry);
}

// Prints the fields of one record.
struct field_writer {
    static constexpr bool reading = false;
    char separator = '=';

    void separate() {
        put(separator);
        separator = ',';
    }

    void link(const il_entry *entry, entry_kind kind) {
        separate();
        if (entry && is_in_file(*entry, kind)) {
            put(entry_kind_letter(kind));
            put_number(number_of(*entry));
        } else {
            put('0');
        }
    }

    template <class T> void reference(const char *, T *&entry) { link(entry, kind_of<T>); }

    void bounds(const char *, bound_info_entry *&entry, unsigned) { link(entry, kind_bound_info_entry); }

    template <class I> void integer(const char *, I &value) {
        separate();
        // A word is signed in the file: the kind that matches any kind is -1. Smaller fields are not.
        put_number(static_cast<std::int32_t>(value));
    }

    template <class E> void enumeration(const char *, E &value, unsigned) {
        separate();
        put_number(static_cast<unsigned>(value));
    }

    void position(const char *, source_pos &p) {
        separate();
        put_number(p.seq);
        put(':');
        put_number(p.column);
    }

    void flag_run() { separate(); }
    void flag(const char *, bool &value) { put(value ? 'Y' : 'N'); }

    void string(const char *, const char *&text) {
        separate();
        const std::size_t length = text ? std::strlen(text) : 0;
        put_number(length);
        put('h');
        if (length > 0) {
            put_text(text, length);
        }
    }

    void constant_value(constant &c) {
        separate();
        const std::uint32_t size = c.type->size;
        put_number(size);
        put('x');
        for (std::uint32_t i = 0; i < size; ++i) {
            static constexpr char hex[] = "0123456789ABCDEF";
            reserve(2 + record_space);
            put(hex[c.value.bytes[i] >> 4]);
            put(hex[c.value.bytes[i] & 15]);
        }
    }

    void bound_value(const char *, bound &b) {
        enumeration("", b.kind, bound_kind_count);
        if (b.kind == bound_constant) {
            integer("", b.value);
        } else if (b.kind == bound_expression || b.kind == bound_same_as) {
            reference("", b.expr);
        }
    }
};

// ---- the first pass: numbers and counts

std::uint32_t string_area(const char *text) {
    const std::size_t length = text ? std::strlen(text) : 0;
    return length > 0 ? static_cast<std::uint32_t>(length + 1) : 0;
}

void clear_counters(il_entry *, entry_kind, std::uint32_t) { counters = {}; }

void number_entry(il_entry *entry, entry_kind kind, std::uint32_t size) {
    entry->il_id = (entry->il_id & ~il_number_mask) | (counters[kind] & il_number_mask);
    counters[kind] += kind == kind_bound_info_entry ? size : 1;
    if (module_mode) {
        members[kind].push_back(entry);
    }
    switch (kind) {
    case kind_il_header: {
        const auto *h = static_cast<il_header *>(entry);
        counters[kind_string_area] += string_area(h->compiler_version) + string_area(h->time_of_compilation);
        break;
    }
    case kind_source_file: {
        const auto *f = static_cast<source_file *>(entry);
        counters[kind_string_area] += string_area(f->file_name) + string_area(f->full_name);
        break;
    }
    case kind_atom: counters[kind_string_area] += string_area(static_cast<atom *>(entry)->spelling); break;
    case kind_constant: {
        const auto *c = static_cast<constant *>(entry);
        if (c->repr_kind == ck_value || c->repr_kind == ck_expression) {
            counters[kind_value_area] += c->type->size;
        }
        break;
    }
    default: break;
    }
}

// ---- the second pass: the text

void write_head(il_entry *, entry_kind, std::uint32_t) {
    static constexpr char banner_head[] = "ZENKO IL file (v";
    static constexpr char banner_tail[] = ")\f\f\n";
    put_text(banner_head, sizeof banner_head - 1);
    put_text(il_format_version, std::strlen(il_format_version));
    put_text(banner_tail, sizeof banner_tail - 1);
    put('0');
    for (unsigned kind = kind_il_header; kind < entry_kind_count; ++kind) {
        put(',');
        put(entry_kind_letter(static_cast<entry_kind>(kind)));
        put_number(counters[kind]);
    }
    put('\n');
}

void write_bounds(bound_info_entry &b, std::uint32_t size, field_writer &w) {
    w.integer("size", size);
    for (unsigned i = 0; i < 2 * bound_info_rank(size); ++i) {
        w.bound_value("", b.bounds[i]);
    }
}

// What a symbol of a module's public list stands for.
void write_symbol(symbol &s, field_writer &w) {
    w.reference("name", s.name);
    w.enumeration("kind", s.kind, symbol_kind_count);
    switch (s.kind) {
    case sk_derived_type: w.link(s.entity, kind_type); break;
    case sk_variable:
    case sk_subroutine:
    case sk_function:
    case sk_internal_subroutine:
    case sk_internal_function: w.link(s.entity, kind_object); break;
    case sk_specific_function:
    case sk_specific_subroutine:
    case sk_intrinsic_function:
    case sk_intrinsic_subroutine: w.reference("", entity_as<named_entry>(&s)->symbol_link->name); break;
    case sk_interface: w.link(s.entity, kind_interface); break;
    case sk_namelist: w.link(s.entity, kind_namelist_group); break;
    default: break;
    }
}

void write_record(il_entry *entry, entry_kind kind, std::uint32_t size) {
    reserve(record_space);
    put(entry_kind_letter(kind));
    put_number(number_of(*entry));
    field_writer w;
    switch (kind) {
#define WRITE_FIELDS(name) \
    case kind_##name: describe_fields(*static_cast<struct name *>(entry), w); break;
        ZF90_DESCRIBED_RECORDS(WRITE_FIELDS)
#undef WRITE_FIELDS
    case kind_atom: w.string("name", static_cast<atom *>(entry)->spelling); break;
    case kind_bound_info_entry: write_bounds(*static_cast<bound_info_entry *>(entry), size, w); break;
    case kind_symbol: write_symbol(*static_cast<symbol *>(entry), w); break;
    default: break;
    }
    put('\n');
}

// Writes everything reachable from the root, and closes the stream. False on failure.
bool write_records(il_header &root, std::FILE *stream) {
    output = stream;
    buffered = 0;
    walk_il(&root, kind_il_header, 0, clear_counters, number_entry, write_head, write_record);
    for (auto &list : members) {
        list.clear();
    }
    put_text("0\n", 2);
    flush_buffer();
    const bool flushed = std::fflush(stream) == 0;
    const bool clean = std::ferror(stream) == 0;
    const bool closed = std::fclose(stream) == 0;
    return flushed && clean && closed;
}

} // namespace

bool discard_il_after_errors() {
    if (error_count + catastrophe_count == 0) {
        return false;
    }
    const char *const name = il_file_name;
    std::fclose(il_file);
    il_file = nullptr;
    il_file_name = nullptr;
    if (name && std::remove(name) != 0) {
        catastrophe(msg_error_while_deleting_file, "intermediate language");
    }
    return true;
}

void write_il(il_header &root) {
    std::FILE *const stream = il_file;
    il_file = nullptr;
    if (!write_records(root, stream)) {
        catastrophe(msg_error_while_writing_file, "intermediate language");
    }
}

void write_il_file(il_header &root) {
    if (il_file && !discard_il_after_errors()) {
        module_mode = false;
        write_il(root);
    }
}

} // namespace zf90
