// The dump is one visitor of the walk over all entries, and prints the fields that il/fields.h describes.
#include "output/il_dump.h"

#include "il/constants.h"
#include "il/fields.h"
#include "il/kind_names.h"
#include "il/types.h"
#include "intrinsics/intrinsic_codes.h"
#include "output/fortran_printer.h"

#include <cstdarg>
#include <cstring>
#include <string>

namespace zf90 {

std::FILE *dump_stream;
bool dump_html;

namespace {

constexpr int value_column = 25;

void print(const char *format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    std::vfprintf(dump_stream, format, arguments);
    va_end(arguments);
}

void print_bracketed(const char *text) { print(dump_html ? "&lt;%s&gt;" : "<%s>", text); }

void print_quoted(const char *text) {
    print("\"");
    for (const char *c = text; c && *c; ++c) {
        const auto byte = static_cast<unsigned char>(*c);
        if (byte == '"' || byte == '\\') {
            print("\\%c", byte);
        } else if (dump_html && (byte == '<' || byte == '>')) {
            print(byte == '<' ? "&lt;" : "&gt;");
        } else {
            print(byte >= ' ' && byte < 0x7f ? "%c" : "\\%03o", byte);
        }
    }
    print("\"");
}

// ---- names of entries

struct entry_name {
    char text[48];
};

entry_name name_of_entry(const il_entry *entry, entry_kind kind) {
    entry_name name;
    if (entry) {
        std::snprintf(name.text, sizeof name.text, "%s_%ld", entry_kind_name(kind),
                      static_cast<long>(entry->il_id & il_number_mask));
    } else {
        std::snprintf(name.text, sizeof name.text, "NULL");
    }
    return name;
}

const char *spelling_of(const il_entry *entry, entry_kind kind) {
    if (!entry || !carries_source_corresp(kind)) {
        return nullptr;
    }
    const atom *const name = static_cast<const named_entry *>(entry)->source_corresp.name;
    return name ? name->spelling : nullptr;
}

void print_link(const il_entry *entry, entry_kind kind) {
    const entry_name name = name_of_entry(entry, kind);
    if (dump_html && entry) {
        print("<A HREF=\"#%s\">%s</A>", name.text, name.text);
    } else {
        print("%s", name.text);
    }
}

// ---- field lines

void print_label(const char *indent, const char *label) {
    const int width = static_cast<int>(std::strlen(indent) + std::strlen(label)) + 1;
    print("%s%s:", indent, label);
    if (width >= value_column) {
        print("\n%*c", value_column, ' ');
    } else {
        print("%*c", value_column - width, ' ');
    }
}

struct field_printer {
    static constexpr bool reading = false;
    const char *indent = "";

    void begin_group(const char *name) {
        print("%s:\n", name);
        indent = "  ";
    }
    void end_group() { indent = ""; }

    template <class T> void reference(const char *name, T *&entry) {
        print_label(indent, name);
        print_reference(entry, kind_of<T>);
    }

    void print_reference(const il_entry *entry, entry_kind kind) {
        if (kind == kind_atom) {
            print_atom(static_cast<const atom *>(entry));
            return;
        }
        print_link(entry, kind);
        if (const char *spelling = spelling_of(entry, kind)) {
            print(": %s", spelling);
        }
        print("\n");
    }

    void print_atom(const atom *a) {
        if (a) {
            print_quoted(a->spelling);
        } else {
            print("NULL");
        }
        print("\n");
    }

    void bounds(const char *name, bound_info_entry *&entry, unsigned) {
        print_label(indent, std::strcmp(name, "bound") == 0 ? "bound.info" : name);
        print_link(entry, kind_bound_info_entry);
        print("\n");
    }

    template <class I> void integer(const char *name, I &value) {
        print_label(indent, name);
        if (std::strcmp(name, "kind") == 0) {
            print_kind(static_cast<std::uint32_t>(value));
        } else if (std::strcmp(name, "scope_depth") == 0 && value >= depth_out_of_scope) {
            print_bracketed("out of scope");
            print("\n");
        } else if constexpr (std::is_signed_v<I>) {
            print("%ld\n", static_cast<long>(value));
        } else {
            print("%lu\n", static_cast<unsigned long>(value));
        }
    }

    void print_kind(std::uint32_t kind) {
        if (kind == ANY_KIND) {
            print("ANY_KIND\n");
        } else {
            print("%u\n", kind);
        }
    }

    template <class E> void enumeration(const char *name, E &value, unsigned) {
        print_label(indent, name);
        if constexpr (std::is_same_v<E, enum unit_kind>) {
            if (value == iou_error) {
                print_bracketed("error");
                print("\n");
                return;
            }
        }
        if constexpr (std::is_same_v<E, enum intrinsic_code>) {
            print("%s\n", intrinsic_code_name(value));
        } else {
            print("%s\n", enumerator_name(value));
        }
    }

    void position(const char *name, source_pos &p) {
        std::string label(name);
        print_label(indent, (label + ".seq").c_str());
        print("%lu\n", static_cast<unsigned long>(p.seq));
        print_label(indent, (label + ".column").c_str());
        print("%lu\n", static_cast<unsigned long>(p.column));
    }

    void flag_run() {}
    void flag(const char *name, bool &value) {
        if (*name) {
            print_label(indent, name);
            print(value ? "TRUE\n" : "FALSE\n");
        }
    }

    void string(const char *name, const char *&text) {
        print_label(indent, name);
        print_quoted(text);
        print("\n");
    }

    void constant_value(constant &c);
    void bound_value(const char *name, bound &b) {
        print_label(indent, name);
        print_bound(b);
    }

    void print_bound(const bound &b) {
        switch (b.kind) {
        case bound_error: print("error bound\n"); break;
        case bound_constant: print("%d\n", b.value); break;
        case bound_expression: print_reference(b.expr, kind_expr_node); break;
        case bound_assumed: print("*\n"); break;
        case bound_undefined: print("undefined bound\n"); break;
        case bound_same_as:
            print("same as for ");
            print_reference(b.expr, kind_expr_node);
            break;
        default: print("**BAD BOUND KIND**\n"); break;
        }
    }
};

void field_printer::constant_value(constant &c) {
    const unsigned char *const bytes = c.value.bytes;
    const type *const t = c.type;
    switch (t->type_code) {
    case tk_integer:
        print_label(indent, "integer_value");
        print("%ld\n", static_cast<long>(integer_kinds[t->kind].read_value(bytes)));
        break;
    case tk_logical:
        print_label(indent, "logical_value");
        print(logical_kinds[t->kind].read_value(bytes) != 0 ? ".TRUE.\n" : ".FALSE.\n");
        break;
    case tk_float:
        print_label(indent, "float_value");
        print_constant(&c);
        print("\n");
        break;
    case tk_complex:
        print_label(indent, "complex_value");
        print_constant(&c);
        print("\n");
        break;
    case tk_fcharacter:
        print_label(indent, "character_value");
        print_constant(&c);
        print("\n");
        break;
    case tk_unknown: print("unknown type constant\n"); break;
    default: print("**BAD CONSTANT TYPE**\n"); break;
    }
}

// ---- descriptions on the title line

void print_length(const bound &length) {
    if (length.kind == bound_constant) {
        print("%lu", static_cast<unsigned long>(length.value));
    } else if (length.kind == bound_assumed) {
        print("*");
    } else if (length.kind == bound_expression || length.kind == bound_same_as) {
        print_expression(length.expr);
    }
}

void print_type_kind(const char *word, std::uint32_t kind) {
    print(": %s(", word);
    if (kind == ANY_KIND) {
        print("ANY_KIND)");
    } else {
        print("%u)", kind);
    }
}

void describe_type(const type *t) {
    const auto bracketed = [](const char *text) {
        print(": ");
        print_bracketed(text);
    };
    switch (t->type_code) {
    case tk_void: print(": void"); break;
    case tk_integer: print_type_kind("integer", t->kind); break;
    case tk_logical: print_type_kind("logical", t->kind); break;
    case tk_float: print_type_kind("float", t->kind); break;
    case tk_complex: print_type_kind("complex", t->kind); break;
    case tk_routine:
        if (t->routine.return_type) {
            describe_type(t->routine.return_type);
        }
        print("()");
        break;
    case tk_fcharacter:
        print(": character(");
        print_length(t->character.length);
        print(")");
        break;
    case tk_farray:
        describe_type(t->array.element_type);
        print("[]");
        break;
    case tk_association: print(": association(%lu)", static_cast<unsigned long>(t->size)); break;
    case tk_stmt_label: bracketed("stmt label"); break;
    case tk_format: bracketed("format"); break;
    case tk_unspec_routine: bracketed("unspecified routine"); break;
    case tk_blockdata: bracketed("blockdata"); break;
    case tk_module: bracketed("module"); break;
    case tk_derived_type:
        print(": %s", t->source_corresp.name ? t->source_corresp.name->spelling : "");
        break;
    case tk_error: bracketed("error type"); break;
    case tk_any_type: bracketed("any type"); break;
    case tk_any_derived: bracketed("any derived type"); break;
    case tk_any_numerical: bracketed("any numeric"); break;
    case tk_unknown: bracketed("unknown type"); break;
    default: print(": **BAD TYPE SPECIFIER KIND**"); break;
    }
}

void dump_description(il_entry *entry, entry_kind kind) {
    switch (kind) {
    case kind_source_file:
        print(": ");
        print_quoted(static_cast<source_file *>(entry)->file_name);
        break;
    case kind_constant:
        print(": ");
        print_constant(static_cast<constant *>(entry));
        break;
    case kind_type: describe_type(static_cast<type *>(entry)); break;
    case kind_expr_node:
        print(": ");
        print_expression(static_cast<expr_node *>(entry));
        break;
    case kind_statement: {
        const auto *s = static_cast<statement *>(entry);
        if (s->kind == stmk_expr) {
            print(": ");
            print_expression(s->expr);
        }
        break;
    }
    default:
        if (const char *spelling = spelling_of(entry, kind)) {
            print(": ");
            print_quoted(spelling);
        }
        break;
    }
}

void print_title(const il_entry *entry, entry_kind kind) {
    const entry_name name = name_of_entry(entry, kind);
    if (dump_html) {
        print("<A NAME=\"%s\"></A><B><U>%s</U></B>", name.text, name.text);
    } else {
        print("%s", name.text);
    }
}

void dump_bounds(const bound_info_entry &table, unsigned rank, field_printer &p) {
    for (unsigned i = 0; i < rank; ++i) {
        char label[40];
        std::snprintf(label, sizeof label, "dimension %u lower bound", i + 1);
        p.bound_value(label, const_cast<bound_info_entry &>(table).bounds[i]);
        p.bound_value("            upper bound", const_cast<bound_info_entry &>(table).bounds[rank + i]);
    }
}

// A loop prints the fields of its control in line.
void dump_statement(statement &s, field_printer &p) {
    if ((s.kind != stmk_ido && s.kind != stmk_fdo) || !s.do_loop) {
        describe_fields(s, p);
        return;
    }
    p.position("source_pos", s.source_pos);
    p.reference("next", s.next);
    p.enumeration("kind", s.kind, il_statement_kind_count);
    p.reference("expr", s.expr);
    p.reference("loop_statement", s.loop_statement);
    describe_fields(*s.do_loop, p);
}

void leave_entry(il_entry *, entry_kind, std::uint32_t) {}

} // namespace

void dump_entry(il_entry *entry, entry_kind kind, std::uint32_t size) {
    if (kind == kind_atom) {
        return;
    }
    print_title(entry, kind);
    if (entry) {
        dump_description(entry, kind);
    }
    print("\n");
    field_printer p;
    if (kind == kind_statement) {
        dump_statement(*static_cast<statement *>(entry), p);
        return;
    }
    switch (kind) {
    case kind_bound_info_entry:
        dump_bounds(*static_cast<bound_info_entry *>(entry), bound_info_rank(size), p);
        break;
#define DUMP_FIELDS(name) \
    case kind_##name: describe_fields(*static_cast<struct name *>(entry), p); break;
        ZF90_DESCRIBED_RECORDS(DUMP_FIELDS)
#undef DUMP_FIELDS
    default: break;
    }
}

void dump_il(il_header *header) {
    if (dump_html) {
        print("<PRE>\n");
    }
    set_print_hook(nullptr);
    walk_il(header, kind_il_header, 0, nullptr, dump_entry, nullptr, leave_entry);
    if (dump_html) {
        print("</PRE>\n");
    }
}

} // namespace zf90
