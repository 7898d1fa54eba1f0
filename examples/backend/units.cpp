// Lists the program units of a .cil file: their variables with sizes and offsets, and the procedures that
// they call. This is all that a back end needs to begin.
#include "il/entries.h"
#include "il/kind_names.h"
#include "library/il_file.h"

#include <cstdio>
#include <set>
#include <utility>
#include <vector>

using namespace zf90;

// Who calls whom, in the order of the calls, and which of these have been noted.
static std::vector<std::pair<const scope *, const object *>> calls;
static std::set<std::pair<const scope *, const object *>> noted;

static const char *name_of(const named_entry *entry) {
    return entry->source_corresp.name ? entry->source_corresp.name->spelling : "(unnamed)";
}

// Visits every entry; of a call it notes the unit that it stands in.
static void note_call(il_entry *entry, entry_kind kind, std::uint32_t) {
    if (kind != kind_expr_node) {
        return;
    }
    const expr_node *e = static_cast<expr_node *>(entry);
    if (e->node_kind == enk_call) {
        const std::pair<const scope *, const object *> call(walking_scope, e->routine);
        if (noted.insert(call).second) {
            calls.push_back(call);
        }
    }
}

static void list_variable(const object *o) {
    std::printf("    %-12s %-10s %6u bytes", name_of(o), enumerator_name(o->storage_class) + 3,
                o->type->size);
    if (o->storage_class == sc_associated) { // a part of a COMMON block or of an EQUIVALENCE group
        std::printf(", %d in %s", o->association_offset, name_of(o->assoc.variable));
    }
    std::printf("\n");
}

static void list_unit(const object *unit) {
    const scope *contents = unit->variant.assoc_scope;
    std::printf("%s %s\n", enumerator_name(unit->storage_class) + 3, name_of(unit));
    for (const object *o = contents->objects; o; o = o->next) {
        if (o->storage_class == sc_local || o->storage_class == sc_associated) {
            list_variable(o);
        }
    }
    for (const auto &[caller, routine] : calls) {
        if (caller == contents) {
            std::printf("    calls %s\n", name_of(routine));
        }
    }
    for (const object *o = contents->objects; o; o = o->next) {
        if (o->storage_class == sc_internal && o->variant.assoc_scope) {
            list_unit(o);
        }
    }
}

int main(int argc, char **argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: units FILE.cil\n");
        return 4;
    }
    loaded_il file = load_il_file(argv[1]);
    if (file.failure.text) {
        std::fprintf(stderr, "%s: line %llu: %s\n", argv[1],
                     static_cast<unsigned long long>(file.failure.line), file.failure.text);
        return 2;
    }
    if (file.is_module) {
        std::fprintf(stderr, "%s: a module file has no units\n", argv[1]);
        return 2;
    }
    walk_il(file.header, kind_il_header, 0, nullptr, note_call, nullptr, nullptr);
    for (const object *unit = file.header->primary_scope->objects; unit; unit = unit->next) {
        if (unit->storage_class >= sc_external && unit->storage_class <= sc_blockdata &&
            unit->variant.assoc_scope && !unit->is_fortran_entry) {
            list_unit(unit);
        }
    }
    return 0;
}
