// The reader of the file format. The counts at the head of the file say how many entries of each kind there
// are, so that each has its address before the first record is read and references may lead forward.
#include "output/il_reader.h"

#include "driver/diagnostics.h"
#include "il/arena.h"
#include "il/fields.h"
#include "output/il_writer.h"

#include <cstdlib>
#include <limits>
#include <string_view>
#include <type_traits>
#include <vector>

namespace zf90 {

std::FILE *il_input;
intern_atom_callback intern_atom_fn;
symbol_callback symbol_fn;
std::array<std::uint64_t, entry_kind_count> entry_counts;
std::array<void *, entry_kind_count> entry_arrays;
std::string_view il_text;
std::size_t il_text_place;

void reject_il_file() { catastrophe(msg_invalid_intermediate_language_file); }

namespace {

// ---- the text

char field_separator;

std::array<std::uint64_t, entry_kind_count> tallies;
std::uint64_t string_fill;
std::uint64_t value_fill;

// What can be compared only when all records have been read.
struct bounds_use {
    const bound_info_entry *entry;
    unsigned rank;
    std::size_t place;
};
struct value_use {
    const constant *value;
    std::uint64_t length;
    std::size_t place;
};
struct name_use { // of a name further down
    atom **name;
    atom *const *element;
    std::size_t place;
};
std::vector<name_use> names_to_come;
std::vector<bounds_use> bounds_in_use;
std::vector<value_use> values_in_use;

// Where the record of each entry begins; 0 while it has not been read.
std::array<std::vector<std::size_t>, entry_kind_count> record_places;
std::vector<std::uint8_t> ranks; // of the bounds at each place

char get_char() {
    if (il_text_place == il_text.size()) {
        reject_il_file();
    }
    return il_text[il_text_place++];
}

void require_char(char wanted) {
    if (get_char() != wanted) {
        reject_il_file();
    }
}

bool is_space(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool is_digit(char c) { return c >= '0' && c <= '9'; }

// A number, with white space and a sign before it.
std::int64_t read_number() {
    constexpr std::int64_t limit = std::int64_t{1} << 40; // beyond what any number of a file can be
    while (il_text_place < il_text.size() && is_space(il_text[il_text_place])) {
        ++il_text_place;
    }
    char c = get_char();
    const bool negative = c == '-';
    if (c == '-' || c == '+') {
        c = get_char();
    }
    std::int64_t value = 0;
    for (;; c = get_char()) {
        if (!is_digit(c) || value > limit) {
            reject_il_file();
        }
        value = 10 * value + (c - '0');
        if (il_text_place == il_text.size() || !is_digit(il_text[il_text_place])) {
            return negative ? -value : value;
        }
    }
}

std::uint64_t read_count() {
    const std::int64_t n = read_number();
    if (n < 0) {
        reject_il_file();
    }
    return static_cast<std::uint64_t>(n);
}

unsigned kind_of_letter(char letter) {
    static constexpr auto table = [] {
        std::array<std::uint8_t, 256> kinds{};
        kinds.fill(entry_kind_count);
#define KIND_OF_LETTER(name, text, file_letter, named) kinds[file_letter] = kind_##name;
        ZF90_ENTRY_KINDS(KIND_OF_LETTER)
#undef KIND_OF_LETTER
        return kinds;
    }();
    return table[static_cast<unsigned char>(letter)];
}

// An item of the count line or a reference: a letter and a number, or "0" alone.
struct item {
    unsigned kind;
    std::uint64_t number;
};

item read_item() {
    const unsigned kind = kind_of_letter(get_char());
    if (kind == kind_end) {
        return {kind, 0};
    }
    if (kind == entry_kind_count) {
        reject_il_file();
    }
    return {kind, read_count()};
}

// ---- the arrays

constexpr std::uint64_t bounds_granule = 8; // all sizes of bound_info_entry records are multiples of it

std::size_t element_size(unsigned kind) {
    switch (kind) {
#define SIZE_OF_RECORD(name) \
    case kind_##name: return sizeof(struct name);
        ZF90_DESCRIBED_RECORDS(SIZE_OF_RECORD)
#undef SIZE_OF_RECORD
    case kind_atom: return sizeof(atom *);
    case kind_bound_info_entry: return sizeof(bound_info_entry);
    case kind_string_area:
    case kind_value_area: return 1;
    default: return 0;
    }
}

std::uint64_t element_count(unsigned kind) {
    return kind == kind_bound_info_entry ? entry_counts[kind] / bounds_granule : entry_counts[kind];
}

void *zeroed_memory(std::size_t bytes) { return bytes > 0 ? il_alloc(region_size(bytes)) : nullptr; }

// A record takes some bytes of the file, and so do texts, values and bounds: counts that the file has no room
// for would only waste memory.
void check_counts() {
    constexpr std::uint64_t shortest_record = 6;
    constexpr std::uint64_t bounds_bytes_of_character = 8;
    std::uint64_t records = 0;
    for (unsigned kind = kind_il_header; kind <= kind_symbol; ++kind) {
        records += kind == kind_bound_info_entry ? 0 : entry_counts[kind];
    }
    const std::uint64_t size = il_text.size();
    if (records > size / shortest_record || entry_counts[kind_string_area] > size ||
        entry_counts[kind_value_area] > size ||
        entry_counts[kind_bound_info_entry] > size * bounds_bytes_of_character) {
        reject_il_file();
    }
}

void read_count_line() {
    entry_counts = {};
    for (unsigned k = 0; k < entry_kind_count; ++k) {
        if (k > 0) {
            require_char(',');
        }
        const item i = read_item();
        entry_counts[i.kind] = i.number;
    }
    require_char('\n');
    entry_counts[kind_end] = 1;
    check_counts();
    for (unsigned kind = 0; kind < entry_kind_count; ++kind) {
        entry_arrays[kind] = zeroed_memory(element_count(kind) * element_size(kind));
        record_places[kind].assign(kind <= kind_symbol ? element_count(kind) : 0, 0);
    }
    ranks.assign(element_count(kind_bound_info_entry), 0);
    tallies = {};
    string_fill = value_fill = 0;
    names_to_come.clear();
    bounds_in_use.clear();
    values_in_use.clear();
}

// The place of an entry in its array.
std::uint64_t place_of(item i) {
    if (i.kind == kind_bound_info_entry) {
        if (i.number % bounds_granule != 0) {
            reject_il_file();
        }
        i.number /= bounds_granule;
    }
    if (i.number >= element_count(i.kind)) {
        reject_il_file();
    }
    return i.number;
}

void *address_of(item i) {
    const std::uint64_t place = place_of(i);
    return static_cast<char *>(entry_arrays[i.kind]) + place * element_size(i.kind);
}

// ---- the fields

void require_separator() {
    require_char(field_separator);
    field_separator = ',';
}

void *read_reference(entry_kind kind) {
    require_separator();
    const item i = read_item();
    if (i.kind == kind_end) {
        return nullptr;
    }
    if (i.kind != kind) {
        reject_il_file();
    }
    return address_of(i);
}

// The names of symbols count at once: a reference ahead of the name's record is an error.
atom *read_atom_reference() {
    atom *const *element = static_cast<atom **>(read_reference(kind_atom));
    if (element && !*element) {
        reject_il_file();
    }
    return element ? *element : nullptr;
}

// That of a NAMELIST group in its module may come after the group.
void read_atom_reference(atom *&name) {
    atom *const *element = static_cast<atom **>(read_reference(kind_atom));
    name = element ? *element : nullptr;
    if (element && !name) {
        names_to_come.push_back({&name, element, il_text_place});
    }
}

std::int64_t read_integer() {
    require_separator();
    return read_number();
}

template <class I> I in_range(std::int64_t value, std::int64_t lowest, std::int64_t highest) {
    if (value < lowest || value > highest) {
        reject_il_file();
    }
    return static_cast<I>(value);
}

const char *read_string() {
    const std::int64_t length = read_integer();
    require_char('h');
    if (length == 0) {
        return nullptr;
    }
    const std::uint64_t room = entry_counts[kind_string_area] - string_fill;
    if (length < 0 || static_cast<std::uint64_t>(length) >= room ||
        static_cast<std::uint64_t>(length) > il_text.size() - il_text_place) {
        reject_il_file();
    }
    const auto size = static_cast<std::size_t>(length);
    const std::string_view text = il_text.substr(il_text_place, size);
    if (text.find('\0') != std::string_view::npos) {
        reject_il_file();
    }
    char *copy = static_cast<char *>(entry_arrays[kind_string_area]) + string_fill;
    text.copy(copy, size); // the NUL is there
    string_fill += size + 1;
    il_text_place += size;
    return copy;
}

unsigned read_hex_digit() {
    const char c = get_char();
    if (c >= '0' && c <= '9') {
        return static_cast<unsigned>(c - '0');
    }
    const char letter = static_cast<char>(c & ~0x20);
    if (letter < 'A' || letter > 'F') {
        reject_il_file();
    }
    return static_cast<unsigned>(letter - 'A') + 10;
}

// Fills the fields of one record.
struct field_reader {
    static constexpr bool reading = true;

    template <class T> void reference(const char *, T *&entry) {
        if constexpr (std::is_same_v<T, atom>) {
            read_atom_reference(entry);
        } else {
            entry = static_cast<T *>(read_reference(kind_of<T>));
        }
    }

    void bounds(const char *, bound_info_entry *&entry, unsigned rank) {
        entry = static_cast<bound_info_entry *>(read_reference(kind_bound_info_entry));
        if (entry) {
            bounds_in_use.push_back({entry, rank, il_text_place});
        }
    }

    // A word may stand in the file as a negative number.
    template <class I> void integer(const char *, I &value) {
        constexpr std::int64_t lowest = sizeof(I) < sizeof(std::int32_t)
                                            ? std::int64_t{std::numeric_limits<I>::min()}
                                            : std::int64_t{std::numeric_limits<std::int32_t>::min()};
        value = in_range<I>(read_integer(), lowest, std::int64_t{std::numeric_limits<I>::max()});
    }

    template <class E> void enumeration(const char *, E &value, unsigned count) {
        value = in_range<E>(read_integer(), 0, std::int64_t{count} - 1);
    }

    void position(const char *, source_pos &p) {
        require_separator();
        p.seq = in_range<std::uint32_t>(read_number(), 0, std::numeric_limits<std::uint32_t>::max());
        require_char(':');
        p.column = in_range<std::uint16_t>(read_number(), 0, std::numeric_limits<std::uint16_t>::max());
    }

    void flag_run() { require_separator(); }
    void flag(const char *, bool &value) { value = get_char() != 'N'; }

    void string(const char *, const char *&text) { text = read_string(); }

    void constant_value(constant &c) {
        const std::uint64_t length = in_range<std::uint64_t>(
            read_integer(), 0, static_cast<std::int64_t>(entry_counts[kind_value_area] - value_fill));
        require_char('x');
        if (length > 0) {
            c.value.bytes = static_cast<unsigned char *>(entry_arrays[kind_value_area]) + value_fill;
            value_fill += length;
        }
        for (std::uint64_t i = 0; i < length; ++i) {
            const unsigned high = read_hex_digit();
            c.value.bytes[i] = static_cast<unsigned char>(16 * high + read_hex_digit());
        }
        values_in_use.push_back({&c, length, il_text_place});
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

// ---- the records

std::uint64_t read_bounds(bound_info_entry &b, std::uint64_t place, field_reader &r) {
    constexpr unsigned most_dimensions = 7;
    std::uint32_t size = 0;
    r.integer("size", size);
    const unsigned rank = size < bound_info_size(0) ? most_dimensions + 1 : bound_info_rank(size);
    if (rank > most_dimensions || size != bound_info_size(rank)) {
        reject_il_file();
    }
    ranks[place] = static_cast<std::uint8_t>(rank);
    b.bounds = il_new_array<bound>(std::size_t{2} * rank);
    for (unsigned i = 0; i < 2 * rank; ++i) {
        r.bound_value("", b.bounds[i]);
    }
    return size;
}

void read_name(atom *&element, std::uint32_t number) {
    const char *name = read_string();
    element = intern_atom_fn(name ? name : "");
    element->il_id = number;
}

entry_kind payload_kind(symbol_kind kind) {
    switch (kind) {
    case sk_derived_type: return kind_type;
    case sk_variable:
    case sk_subroutine:
    case sk_function:
    case sk_internal_subroutine:
    case sk_internal_function: return kind_object;
    case sk_specific_function:
    case sk_specific_subroutine:
    case sk_intrinsic_function:
    case sk_intrinsic_subroutine: return kind_atom;
    case sk_interface: return kind_interface;
    case sk_namelist: return kind_namelist_group;
    default: return kind_end;
    }
}

il_entry *read_payload(entry_kind kind) {
    switch (kind) {
    case kind_type: return static_cast<type *>(read_reference(kind));
    case kind_object: return static_cast<object *>(read_reference(kind));
    case kind_atom: return read_atom_reference();
    case kind_interface: return static_cast<interface *>(read_reference(kind));
    case kind_namelist_group: return static_cast<namelist_group *>(read_reference(kind));
    default: return nullptr;
    }
}

void read_symbol(field_reader &r) {
    atom *const name = read_atom_reference();
    symbol_kind kind{};
    r.enumeration("kind", kind, symbol_kind_count);
    il_entry *payload = read_payload(payload_kind(kind));
    symbol_fn(name, kind, payload);
}

// Reads the rest of a record; returns how much of the kind's count it is.
std::uint64_t read_fields(item i, std::uint64_t place) {
    field_separator = '=';
    field_reader r;
    void *address = address_of(i);
    const auto number = static_cast<std::uint32_t>(i.number & il_number_mask);
    switch (i.kind) {
#define READ_FIELDS(name)                                  \
    case kind_##name: {                                    \
        auto *entry = static_cast<struct name *>(address); \
        entry->il_id = number;                             \
        describe_fields(*entry, r);                        \
        return 1;                                          \
    }
        ZF90_DESCRIBED_RECORDS(READ_FIELDS)
#undef READ_FIELDS
    case kind_atom: read_name(*static_cast<atom **>(address), number); return 1;
    case kind_bound_info_entry: {
        auto *entry = static_cast<bound_info_entry *>(address);
        entry->il_id = number;
        return read_bounds(*entry, place, r);
    }
    case kind_symbol: read_symbol(r); return 1;
    default: reject_il_file(); // an area is no record
    }
}

// One record. False at the one that ends the file.
bool read_record() {
    const std::size_t begin = il_text_place;
    const item i = read_item();
    if (i.kind == kind_end) {
        require_char('\n');
        tallies[kind_end] = 1;
        return false;
    }
    const std::uint64_t place = place_of(i);
    if (i.kind > kind_symbol || record_places[i.kind][place] != 0) {
        reject_il_file(); // a second record of an entry leaves another one empty
    }
    record_places[i.kind][place] = begin;
    tallies[i.kind] += read_fields(i, place);
    require_char('\n');
    return true;
}

// ---- the file

void read_banner() {
    static constexpr std::string_view banner_head = "ZENKO IL file (v";
    static constexpr std::string_view banner_tail = ")\f\f\n";
    for (std::string_view part : {banner_head, std::string_view(il_format_version), banner_tail}) {
        for (char c : part) {
            require_char(c);
        }
    }
}

// What an entry says of another one that may stand further down.
void complete_uses() {
    for (const name_use &use : names_to_come) {
        il_text_place = use.place;
        *use.name = *use.element;
        if (!*use.name) {
            reject_il_file();
        }
    }
    const auto *first_bounds = entries_of<bound_info_entry>(kind_bound_info_entry);
    for (const bounds_use &use : bounds_in_use) {
        il_text_place = use.place;
        const auto place = static_cast<std::size_t>(use.entry - first_bounds);
        if (record_places[kind_bound_info_entry][place] == 0 || ranks[place] != use.rank) {
            reject_il_file();
        }
    }
    for (const value_use &use : values_in_use) {
        il_text_place = use.place;
        if (!use.value->type || use.value->type->size != use.length) {
            reject_il_file();
        }
    }
}

void read_whole_file() {
    std::size_t capacity = 1 << 16;
    std::size_t size = 0;
    char *text = static_cast<char *>(sys_alloc(capacity));
    for (std::size_t n; (n = std::fread(text + size, 1, capacity - size, il_input)) > 0;) {
        size += n;
        if (size == capacity) {
            text = static_cast<char *>(sys_realloc(text, capacity, 2 * capacity));
            capacity *= 2;
        }
    }
    drop_il_text();
    il_text = {text, size};
    il_text_place = 0;
}

} // namespace

void drop_il_text() {
    std::free(const_cast<char *>(il_text.data()));
    il_text = {};
}

std::size_t record_place(const il_entry *entry, entry_kind kind) {
    if (kind == kind_atom || kind == kind_symbol) { // made by the callbacks, elsewhere
        return record_places[kind][entry->il_id & il_number_mask];
    }
    const auto offset =
        reinterpret_cast<std::uintptr_t>(entry) - reinterpret_cast<std::uintptr_t>(entry_arrays[kind]);
    return record_places[kind][offset / element_size(kind)];
}

il_header *read_il_file(std::FILE *input, intern_atom_callback intern, symbol_callback make_symbol) {
    il_input = input;
    intern_atom_fn = intern;
    symbol_fn = make_symbol;
    read_whole_file();
    read_banner();
    read_count_line();
    while (read_record()) {
    }
    tallies[kind_string_area] = string_fill;
    tallies[kind_value_area] = value_fill;
    if (il_text_place != il_text.size()) {
        ++il_text_place;
        reject_il_file();
    }
    if (tallies != entry_counts || entry_counts[kind_il_header] == 0) {
        il_text_place = il_text.find('\n') + 2; // the count line
        reject_il_file();
    }
    complete_uses();
    return entries_of<il_header>(kind_il_header);
}

} // namespace zf90
