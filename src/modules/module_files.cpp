// Writing, finding and reading module files.
#include "modules/module_files.h"

#include "declarations/scopes.h"
#include "driver/diagnostics.h"
#include "driver/driver.h"
#include "driver/options.h"
#include "il/entries.h"
#include "modules/copies.h"
#include "modules/module_check.h"
#include "output/il_reader.h"
#include "output/il_writer.h"

#include <cstring>
#include <sys/stat.h>
#include <unordered_map>

namespace zf90 {

namespace {

constexpr std::size_t path_buffer_size = 130;

using name_index = std::unordered_map<const atom *, symbol *>;

// The names of the modules that single names have been asked of.
std::unordered_map<const symbol *, name_index> indexes;

// ---- writing

// Whether something stands under a name that must not be opened: a pipe, for which opening might never end,
// or a device.
bool is_special_file(const char *path) {
    struct stat s;
    return ::stat(path, &s) == 0 && !S_ISREG(s.st_mode) && !S_ISDIR(s.st_mode);
}

std::FILE *open_for_writing(const object *module) {
    if (!module_search_list.first) {
        catastrophe(msg_no_m_optional_argument_to_set_module_search, module->source_corresp.name->spelling);
    }
    char buffer[path_buffer_size];
    const char *path = make_path(module_search_list.first->name, module->source_corresp.name->spelling,
                                 ".mod", buffer, sizeof buffer);
    if (is_special_file(path)) {
        catastrophe(msg_module_file_has_bad_format, path);
    }
    std::FILE *stream = std::fopen(path, "wb");
    if (!stream) {
        catastrophe(msg_module_file_could_not_be_opened, path);
    }
    return stream;
}

// ---- reading

// The first directory that has the module's file must have a plain one.
std::FILE *open_for_reading(const name_locator &name, char *buffer) {
    if (!module_search_list.first) {
        catastrophe(msg_no_m_optional_argument_to_set_module_search, name.atom->spelling);
    }
    const char *path = "";
    for (const search_dir *dir = module_search_list.first; dir; dir = dir->next) {
        path = make_path(dir->name, name.atom->spelling, ".mod", buffer, path_buffer_size);
        const opened_file file = open_checked_input(path, true);
        if (file.outcome == open_outcome::not_regular) {
            catastrophe(msg_module_file_has_bad_format, path);
        }
        if (file.stream) {
            return file.stream;
        }
    }
    catastrophe(msg_module_file_could_not_be_opened, path);
}

atom *intern_module_name(const char *name) {
    atom *result;
    intern_name(name, result);
    return result;
}

bool is_module_of_name(const object *o, const atom *name) {
    return o && o->storage_class == sc_module && o->source_corresp.name &&
           std::strcmp(o->source_corresp.name->spelling, name->spelling) == 0;
}

// Reads a module's file; its names become the symbols of the current row.
symbol *read_module(const name_locator &name) {
    char buffer[path_buffer_size];
    std::FILE *stream = open_for_reading(name, buffer);
    const il_header *root = read_il_file(stream, intern_module_name, make_module_symbol);
    std::fclose(stream);
    object *module = root->main_routine;
    if (!is_module_of_name(module, name.atom)) {
        catastrophe(msg_module_file_has_bad_format, name.atom->spelling);
    }
    check_module_entries();
    symbol *s = new_further_symbol(sk_module, name, 0);
    s->flags &= ~std::uint32_t{sf_visible};
    s->entity = module;
    s->aux = curr_row().first_symbol;
    module->symbol_link = s;
    return s;
}

// The first module on a list of program units that is defined here; null if there is none.
object *next_module(object *o) {
    while (o && (o->storage_class != sc_module || !o->variant.assoc_scope)) {
        o = o->next;
    }
    return o;
}

} // namespace

void write_module_file(il_header &root, object *module) {
    std::FILE *const outer = il_file;
    il_file = open_for_writing(module);
    if (discard_il_after_errors()) {
        return; // nothing more is written, the IL file neither
    }
    il_header header = root;
    header.primary_scope = nullptr;
    header.main_routine = module;
    module_mode = true;
    module_being_written = module;
    write_il(header);
    module_being_written = nullptr;
    module_mode = false;
    il_file = outer;
}

bool has_module_files(const il_header &root) { return next_module(root.primary_scope->objects) != nullptr; }

void write_module_files(il_header &root) {
    for (object *o = next_module(root.primary_scope->objects); o; o = next_module(o->next)) {
        write_module_file(root, o);
    }
}

void make_module_symbol(atom *name, symbol_kind kind, il_entry *payload) {
    if (!name || name->length == 0 || !payload) {
        reject_il_file();
    }
    if (kind >= sk_specific_function && kind <= sk_intrinsic_subroutine) {
        const symbol *seeded = find_kind(static_cast<atom *>(payload), kind);
        if (!seeded || !seeded->entity) {
            reject_il_file();
        }
        symbol *s = new_further_symbol(kind, {name, null_pos}, curr_scope_depth);
        s->entity = seeded->entity;
        return;
    }
    symbol *s = new_further_symbol(kind, {name, null_pos}, curr_scope_depth);
    auto *entry = static_cast<named_entry *>(payload);
    entry->symbol_link = s;
    s->decl_position = entry->source_corresp.decl_position;
    s->entity = entry;
    if (kind >= sk_variable && kind <= sk_internal_function) {
        s->flags |= sf_typed;
    }
}

symbol *load_module(symbol *module, const name_locator &name) {
    if (!module) {
        // What the file gives away is kept apart from the names of the using scope.
        push_scope(sr_use);
        module = read_module(name);
        pop_scope();
    }
    if (module->kind != sk_module) {
        catastrophe_at(msg_module_name_required, name.position, name.atom->spelling);
    }
    return module;
}

symbol *find_in_module(const symbol *module, const atom *name) {
    const auto [place, is_new] = indexes.try_emplace(module);
    name_index &index = place->second;
    if (is_new) {
        for (auto *s = static_cast<symbol *>(module->aux); s; s = s->next_in_scope) {
            index[s->name] = s;
        }
    }
    const auto found = index.find(name);
    return found == index.end() ? nullptr : found->second;
}

void modules_init() {
    indexes.clear();
    copies_init();
}

} // namespace zf90
