// What the tests of program units share: a text is compiled up to the end of its last unit, and the records
// are looked at. Routines are named by paths such as "HOST/INNER".
#pragma once

#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "il/types.h"
#include "statements/constructs.h"
#include "statements/loop.h"
#include "support/front_end.h"

#include <string>
#include <string_view>

namespace zf90 {

class UnitsTest : public FrontEndTest {
protected:
    void SetUp() override {
        FrontEndTest::SetUp();
        if (curr_scope_depth < 0) {
            il_root.primary_scope = push_scope(sr_global);
        }
        set_standard_implicit_types(scope_stack[0]);
        end_of_input = main_program_seen = false;
        diagnostic_threshold = severity_error;
        block_data_atom = nullptr;
    }

    // The messages of the text, one a line.
    std::string compile(const std::string &text) {
        return messages_of([&] {
            open_text(text);
            while (!end_of_input && next_statement()) {
                begin_construct_state();
                process_program_unit();
            }
        });
    }

    static std::string_view name_of(const named_entry *entry) {
        return entry->source_corresp.name ? entry->source_corresp.name->spelling : "-";
    }

    // The object of that name on a list, or null; "-" is the first nameless one.
    static object *find(object *list, std::string_view name) {
        while (list && name_of(list) != name) {
            list = list->next;
        }
        return list;
    }

    static object *routine(std::string_view path) {
        object *list = scope_stack[0].il_scope->objects;
        for (;;) {
            const std::size_t slash = path.find('/');
            object *o = find(list, path.substr(0, slash));
            if (!o || slash == std::string_view::npos) {
                return o;
            }
            list = o->variant.assoc_scope->objects;
            path.remove_prefix(slash + 1);
        }
    }

    static scope *body(std::string_view path) { return routine(path)->variant.assoc_scope; }

    static object *local(std::string_view path, std::string_view name) {
        return find(body(path)->objects, name);
    }

    static std::string names(const object *list) {
        std::string result;
        for (; list; list = list->next) {
            result += (result.empty() ? "" : " ") + std::string(name_of(list));
        }
        return result;
    }

    static std::string names(const object_list_member *list) {
        std::string result;
        for (; list; list = list->next) {
            result += (result.empty() ? "" : " ") + std::string(name_of(list->object));
        }
        return result;
    }

    static std::string names(const param_type *list) {
        std::string result;
        for (; list; list = list->next) {
            result += (result.empty() ? "" : " ") + std::string(name_of(list));
        }
        return result;
    }

    static atom *atom_of(const char *name) {
        atom *a;
        intern_name(name, a);
        return a;
    }

    static name_locator at(const char *name, std::uint32_t line = 1, std::uint16_t column = 1) {
        return {atom_of(name), {line, column}};
    }
};

} // namespace zf90
