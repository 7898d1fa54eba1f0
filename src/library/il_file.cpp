// Loading and checking of files.
#include "library/il_file.h"

#include "driver/diagnostics.h"
#include "driver/driver.h"
#include "il/arena.h"
#include "il/entries.h"
#include "library/check_records.h"
#include "library/host.h"
#include "output/il_dump.h"
#include "output/il_reader.h"
#include "output/il_writer.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

namespace zf90 {

namespace {

symbol *first_symbol;
symbol **symbol_end;
std::uint32_t symbol_number;

// The records of names in a file differ, so that each is an atom of its own.
atom *make_atom(const char *name) {
    const std::size_t length = std::strlen(name);
    atom *a = il_new<atom>();
    a->spelling = il_copy_string(name, length);
    a->length = static_cast<std::uint32_t>(length);
    return a;
}

void make_symbol(atom *name, symbol_kind kind, il_entry *payload) {
    symbol *s = il_new<symbol>();
    s->name = name;
    s->kind = kind;
    s->entity = payload;
    s->flags = sf_visible | sf_public;
    if (kind >= sk_specific_function && kind <= sk_intrinsic_subroutine) {
        // The name of an intrinsic procedure: the writer finds it through the procedure.
        symbol *intrinsic = il_new<symbol>();
        intrinsic->name = static_cast<atom *>(payload);
        object *procedure = il_new<object>();
        procedure->storage_class = sc_intrinsic;
        procedure->symbol_link = intrinsic;
        s->entity = procedure;
    }
    s->il_id = symbol_number++;
    *symbol_end = s;
    symbol_end = &s->next_in_scope;
}

// The line of a place of the text; the first is 1.
std::uint64_t line_at(std::size_t place) {
    return 1 + static_cast<std::uint64_t>(std::ranges::count(il_text.substr(0, place), '\n'));
}

void start_region() {
    static bool started;
    if (!started) {
        region_init();
        il_region = new_region();
        started = true;
    }
}

il_failure unreadable() { return {std::strerror(errno), 0}; }

// Reads the records. The result has a failure if the file is not of the format.
il_failure read_records(std::FILE *stream, il_header *&header) {
    file_fault_text = nullptr;
    if (setjmp(file_fault_exit)) {
        return {file_fault_text, line_at(il_text_place > 0 ? il_text_place - 1 : 0)};
    }
    file_fault_returns = true;
    header = read_il_file(stream, make_atom, make_symbol);
    file_fault_returns = false;
    return {nullptr, 0};
}

// A module file leads from the module to its symbols as the compiler does when it writes one.
void link_symbols(loaded_il &file) {
    object *const module = file.header->main_routine;
    file.public_symbols = first_symbol;
    file.is_module = !file.header->primary_scope;
    if (module) {
        module->symbol_link = il_new<symbol>();
        module->symbol_link->aux = first_symbol;
        module->symbol_link->entity = module;
    }
}

// What the compiler sets before it walks the entries of a file of this form.
void enter_walk(const loaded_il &file) {
    module_mode = file.is_module;
    module_being_written = file.is_module ? file.header->main_routine : nullptr;
    if (module_being_written) {
        error_pos = module_being_written->source_corresp.decl_position;
    }
}

// ---- comparison with what the writer writes

std::string_view line_from(std::string_view text, std::size_t begin) {
    return text.substr(begin, text.find('\n', begin) - begin);
}

// The first line in which two texts differ. The second line counts the entries: a difference below it says
// more.
std::uint64_t differing_line(std::string_view a, std::string_view b) {
    std::size_t begin = 0;
    std::uint64_t found = 0;
    for (std::uint64_t line = 1;; ++line) {
        if (begin >= a.size() || begin >= b.size()) {
            return a.size() != b.size() ? line : found;
        }
        const std::string_view one = line_from(a, begin);
        const std::string_view other = line_from(b, begin);
        if (one != other) {
            found = line;
            if (line != 2) {
                return found;
            }
            // The records begin at different places if the counts have different lengths.
            a.remove_prefix(begin + one.size());
            b.remove_prefix(begin + other.size());
            begin = 1;
            continue;
        }
        begin += one.size() + 1;
    }
}

} // namespace

loaded_il load_il_file(const char *path) {
    start_region();
    loaded_il file{};
    first_symbol = nullptr;
    symbol_end = &first_symbol;
    symbol_number = 0;
    std::FILE *const stream = std::fopen(path, "rb");
    if (!stream) {
        file.failure = unreadable();
        return file;
    }
    il_header *header = nullptr;
    errno = 0;
    file.failure = read_records(stream, header);
    if (std::ferror(stream)) {
        file.failure = unreadable();
    }
    std::fclose(stream);
    if (file.failure.text) {
        return file;
    }
    file.header = header;
    link_symbols(file);
    const record_fault fault = check_records(first_symbol);
    if (fault.text) {
        file.header = nullptr;
        file.failure = {fault.text, line_of(fault.entry, fault.kind)};
    }
    return file;
}

std::uint64_t line_of(const il_entry *entry, entry_kind kind) { return line_at(record_place(entry, kind)); }

il_failure check_il_file(const loaded_il &file) {
    if (file.failure.text) {
        return file.failure;
    }
    char *text = nullptr;
    std::size_t size = 0;
    enter_walk(file);
    il_file = open_memory_stream(text, size);
    write_il(*file.header);
    check_memory_stream_text(text);
    module_mode = false;
    const std::uint64_t line = differing_line(il_text, {text, size});
    std::free(text);
    return line > 0 ? il_failure{"not what the writer of the format writes for these records", line}
                    : il_failure{nullptr, 0};
}

void dump_il_file(const loaded_il &file) {
    enter_walk(file);
    dump_il(file.header);
    module_mode = false;
}

namespace {

// Appends an entry to a list.
template <class T> void append(T **&end, T *entry) {
    entry->next = nullptr;
    *end = entry;
    end = &entry->next;
}

} // namespace

void add_scope_of_module(loaded_il &file) {
    object *const module = file.header->main_routine;
    if (!file.is_module || !module) {
        return;
    }
    scope *const inner = il_new<scope>();
    type **types = &inner->types;
    object **objects = &inner->objects;
    interface **interfaces = &inner->interfaces;
    namelist_group **groups = &inner->namelist_groups;
    inner->assoc_routine = module;
    for (symbol *s = file.public_symbols; s; s = s->next_in_scope) {
        switch (s->kind) {
        case sk_derived_type: append(types, entity_as<type>(s)); break;
        case sk_variable:
        case sk_subroutine:
        case sk_function:
        case sk_internal_subroutine:
        case sk_internal_function: append(objects, entity_as<object>(s)); break;
        case sk_interface: append(interfaces, entity_as<interface>(s)); break;
        case sk_namelist: append(groups, entity_as<namelist_group>(s)); break;
        default: break;
        }
    }
    module->variant.assoc_scope = inner;
    scope *const global = il_new<scope>();
    global->objects = module;
    file.header->primary_scope = global;
}

} // namespace zf90
