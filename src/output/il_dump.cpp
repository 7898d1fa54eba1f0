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

void print_quoted(const char *text, std::size_t length) {
    print("\"");
    for (std::size_t i = 0; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
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

void print_quoted(const char *text) { print_quoted(text, text ? std::strlen(text) : 0); }

void print_real(const type *t, const unsigned char *bytes) {
    const auto &row = real_kinds[t->kind];
    print("%s", real_text(row.read_value(bytes), row.byte_size == 4 ? 9 : 17));
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

// The fields that the file has earlier than their places in the record.
bool is_late(entry_kind kind, const char *name) {
    const auto is = [name](const char *other) { return std::strcmp(name, other) == 0; };
    switch (kind) {
    case kind_constant: return is("count");
    case kind_type: return is("rank") || is("shape_kind");
    case kind_object: return is("association_offset") || std::strncmp(name, "assoc.", 6) == 0;
    case kind_alloc: return is("rank");
    case kind_namelist_group: return is("original_name") || is("is_public");
    default: return false;
    }
}

struct field_printer {
    static constexpr bool reading = false;
    entry_kind kind;
    bool late = false; // which fields are printed
    const char *indent = "";

    bool is_wanted(const char *name) const { return is_late(kind, name) == late; }

    void begin_group(const char *name) {
        if (is_wanted(name)) {
            print("%s:\n", name);
            indent = "  ";
        }
    }
    void end_group() { indent = ""; }

    template <class T> void reference(const char *name, T *&entry) {
        if (is_wanted(name)) {
            print_label(indent, name);
            print_reference(entry, kind_of<T>);
        }
    }

    void print_reference(const il_entry *entry, entry_kind target) {
        if (target == kind_atom) {
            print_atom(static_cast<const atom *>(entry));
            return;
        }
        print_link(entry, target);
        if (const char *spelling = spelling_of(entry, target)) {
            print(": ");
            print_escaped(spelling);
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
        if (!is_wanted(name)) {
            return;
        }
        print_label(indent, std::strcmp(name, "bound") == 0 ? "bound.info" : name);
        print_link(entry, kind_bound_info_entry);
        print("\n");
    }

    template <class I> void integer(const char *name, I &value) {
        if (!is_wanted(name)) {
            return;
        }
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

    void print_kind(std::uint32_t value) {
        if (value == ANY_KIND) {
            print("ANY_KIND\n");
        } else {
            print("%u\n", value);
        }
    }

    template <class E> void enumeration(const char *name, E &value, unsigned) {
        if (!is_wanted(name)) {
            return;
        }
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
        if (!is_wanted(name)) {
            return;
        }
        std::string label(name);
        print_label(indent, (label + ".seq").c_str());
        print("%lu\n", static_cast<unsigned long>(p.seq));
        print_label(indent, (label + ".column").c_str());
        print("%lu\n", static_cast<unsigned long>(p.column));
    }

    void flag_run() {}
    void flag(const char *name, bool &value) {
        if (*name && is_wanted(name)) {
            print_label(indent, name);
            print(value ? "TRUE\n" : "FALSE\n");
        }
    }

    void string(const char *name, const char *&text) {
        if (!is_wanted(name)) {
            return;
        }
        print_label(indent, name);
        print_quoted(text);
        print("\n");
    }

    void constant_value(constant &c);
    void bound_value(const char *name, bound &b) {
        if (is_wanted(name)) {
            print_label(indent, name);
            print_bound(b);
        }
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

// The value of a constant with its bytes.
void print_value(const type *t, const unsigned char *bytes) {
    switch (t->type_code) {
    case tk_integer: print("%ld", static_cast<long>(integer_kinds[t->kind].read_value(bytes))); break;
    case tk_logical: print(logical_kinds[t->kind].read_value(bytes) != 0 ? ".TRUE." : ".FALSE."); break;
    case tk_float: print_real(t, bytes); break;
    case tk_complex:
        print("(");
        print_real(t, bytes);
        print(", ");
        print_real(t, bytes + real_kinds[t->kind].byte_size);
        print(")");
        break;
    default:
        print_quoted(reinterpret_cast<const char *>(bytes), static_cast<std::size_t>(constant_length(t)));
    }
}

void field_printer::constant_value(constant &c) {
    const char *label = nullptr;
    if (late) {
        return;
    }
    switch (c.type ? c.type->type_code : tk_unknown) {
    case tk_integer: label = "integer_value"; break;
    case tk_logical: label = "logical_value"; break;
    case tk_float: label = "float_value"; break;
    case tk_complex: label = "complex_value"; break;
    case tk_fcharacter: label = "character_value"; break;
    case tk_unknown: print("unknown type constant\n"); return;
    default: print("**BAD CONSTANT TYPE**\n"); return;
    }
    print_label(indent, label);
    print_value(c.type, c.value.bytes);
    print("\n");
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

bool has_printed_value(const constant &c) {
    if ((c.repr_kind != ck_value && c.repr_kind != ck_expression) || !c.type) {
        return false;
    }
    const type_code code = c.type->type_code;
    return code == tk_integer || code == tk_logical || code == tk_float || code == tk_complex ||
           code == tk_fcharacter;
}

void describe_constant(const constant &c) {
    print(": ");
    if (has_printed_value(c)) {
        print_value(c.type, c.value.bytes);
    } else {
        print_constant(&c);
    }
}

void dump_description(il_entry *entry, entry_kind kind) {
    switch (kind) {
    case kind_source_file:
        print(": ");
        print_quoted(static_cast<source_file *>(entry)->file_name);
        break;
    case kind_constant: describe_constant(*static_cast<constant *>(entry)); break;
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

void dump_symbol(symbol &z, field_printer &p) {
    p.reference("name", z.name);
    p.enumeration("kind", z.kind, symbol_kind_count);
    if (p.late) {
        return;
    }
    print_label("", "entity");
    switch (z.kind) {
    case sk_derived_type: p.print_reference(z.entity, kind_type); break;
    case sk_specific_function:
    case sk_specific_subroutine:
    case sk_intrinsic_function:
    case sk_intrinsic_subroutine: p.print_atom(entity_as<named_entry>(&z)->symbol_link->name); break;
    case sk_interface: p.print_reference(z.entity, kind_interface); break;
    case sk_namelist: p.print_reference(z.entity, kind_namelist_group); break;
    default: p.print_reference(z.entity, kind_object); break;
    }
}

template <class T> void dump_record(T &entry, field_printer &p) { describe_fields(entry, p); }
template <> void dump_record(statement &entry, field_printer &p) { dump_statement(entry, p); }

// Those fields whose turn it is.
void dump_fields(il_entry *entry, entry_kind kind, std::uint32_t size, field_printer &p) {
    switch (kind) {
    case kind_bound_info_entry:
        dump_bounds(*static_cast<bound_info_entry *>(entry), bound_info_rank(size), p);
        break;
    case kind_symbol: dump_symbol(*static_cast<symbol *>(entry), p); break;
#define DUMP_FIELDS(name) \
    case kind_##name: dump_record(*static_cast<struct name *>(entry), p); break;
        ZF90_DESCRIBED_RECORDS(DUMP_FIELDS)
#undef DUMP_FIELDS
    default: break;
    }
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
    if (!entry) {
        return;
    }
    field_printer p{kind};
    dump_fields(entry, kind, size, p);
    p.late = true;
    dump_fields(entry, kind, size, p);
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
