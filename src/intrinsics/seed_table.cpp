// Builds the seeded atoms and intrinsics. The forms are read from the notation of seed_table.def.
#include "intrinsics/seed_table.h"

#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "il/entries.h"
#include "il/types.h"

#include <algorithm>
#include <cassert>
#include <cstring>
#include <iterator>
#include <string_view>

namespace zf90 {

atom *seed_atoms[seed_atom_count];
symbol *seed_symbols[seed_symbol_count];

namespace {

// The classes of a row.
constexpr unsigned function = 0;
constexpr unsigned subroutine = 1;
constexpr unsigned elemental = 2;
constexpr unsigned repeating = 4;

struct intrinsic_row {
    const char *code_name;
    const char *name;
    unsigned flags;
    const char *forms;
};

constexpr intrinsic_row intrinsics[] = {
#define INTRINSIC_OPERATOR(code, name, flags, forms) {#code, name, flags, forms},
#define INTRINSIC(code, name, flags, forms) {#code, name, flags, forms},
#include "intrinsics/seed_table.def"
};
static_assert(std::size(intrinsics) == intrinsic_code_count &&
              intrinsic_code_count == intrinsic_vocabulary_size);

struct word_row {
    const char *spelling;
    std::uint8_t token_code;
};

constexpr word_row words[] = {
#define KEYWORD(code, word, name) {word, code},
#define SPECIFIER(code, word, name) {word, code},
#define OPERATOR(code, spelling, name) {spelling, code},
#define OPERATOR_FORM(code, spelling, name) {spelling, code},
#include "source/keywords.def"
};

// The names of arguments that are no words of statements and no intrinsics.
constexpr const char *argument_names[] = {
    "X",        "Y",        "A",     "I",         "STRING",  "Z",        "MASK",       "ARRAY",
    "POS",      "SHIFT",    "DATE",  "TIME",      "ZONE",    "VALUES",   "VECTOR_A",   "VECTOR_B",
    "BOUNDARY", "C",        "J",     "SUBSTRING", "BACK",    "STRING_A", "STRING_B",   "L",
    "MATRIX_A", "MATRIX_B", "A1",    "A2",        "TSOURCE", "FSOURCE",  "P",          "FROM",
    "FROMPOS",  "TOPOS",    "S",     "VECTOR",    "HARVEST", "PUT",      "GET",        "NCOPIES",
    "SOURCE",   "PAD",      "ORDER", "SET",       "R",       "B",        "COUNT_RATE", "COUNT_MAX",
    "MOLD",     "MATRIX",   "FIELD"};

// ---- atoms

std::size_t atom_total;

// An atom that is new goes on the list; an intrinsic may have the name of a keyword.
atom *add_seed_atom(const char *spelling) {
    const std::size_t length = std::strlen(spelling);
    atom *a = find_atom(spelling, length);
    if (!a) {
        intern_name(spelling, length, a);
        a->token_code = 0;
        assert(atom_total < seed_atom_count);
        seed_atoms[atom_total++] = a;
    }
    return a;
}

void build_atoms() {
    atom_total = 0;
    for (const word_row &row : words) {
        add_seed_atom(row.spelling)->token_code = row.token_code;
    }
    for (const intrinsic_row &row : intrinsics) {
        add_seed_atom(row.name);
    }
    for (const char *name : argument_names) {
        add_seed_atom(name);
    }
    assert(atom_total == seed_atom_count);
}

// ---- types: one record for each type as it is written in the table

struct known_type {
    std::string_view notation;
    struct type *type; // null: a free slot
};

known_type known_types[128];

// The slot of a type, to be filled if it is null.
type *&known_type_of(std::string_view notation) {
    std::size_t slot = 0;
    for (const char c : notation) {
        slot = slot * 31 + static_cast<unsigned char>(c);
    }
    for (slot %= std::size(known_types);; slot = (slot + 1) % std::size(known_types)) {
        known_type &known = known_types[slot];
        if (!known.type) {
            known.notation = notation;
        }
        if (known.notation == notation) {
            return known.type;
        }
    }
}

type *any_kind(type_code code) {
    type *t = new_type(code);
    t->kind = ANY_KIND;
    return t;
}

constexpr std::int32_t assumed_length = -1;

type *any_character(std::int32_t length) {
    type *t = any_kind(tk_fcharacter);
    if (length == assumed_length) {
        t->character.length.kind = bound_assumed;
    } else {
        set_constant_bound(t->character.length, length);
    }
    return t;
}

type *scalar_type(char letter, bool is_any_kind, std::int32_t length) {
    switch (letter) {
    case 'I': return is_any_kind ? any_kind(tk_integer) : default_integer();
    case 'L': return is_any_kind ? any_kind(tk_logical) : default_logical();
    case 'R': return is_any_kind ? any_kind(tk_float) : default_real();
    case 'C': return is_any_kind ? any_kind(tk_complex) : default_complex();
    case 'D': return double_precision();
    case 'N': return new_type(tk_any_numerical);
    case 'T': return new_type(tk_any_type);
    case 'V': return new_type(tk_any_derived);
    default:
        assert(letter == 'S');
        if (is_any_kind) {
            return any_character(length);
        }
        return length == assumed_length ? assumed_character_type(default_character_kind)
                                        : default_character(length);
    }
}

// ---- reading a row

struct form_reader {
    const char *next;

    bool accept(std::string_view text) {
        if (std::strncmp(next, text.data(), text.size()) != 0) {
            return false;
        }
        next += text.size();
        return true;
    }

    std::string_view since(const char *start) const {
        return {start, static_cast<std::size_t>(next - start)};
    }

    std::int32_t read_number() {
        std::int32_t n = 0;
        while (*next >= '0' && *next <= '9') {
            n = 10 * n + (*next++ - '0');
        }
        return n;
    }

    std::string_view read_name() {
        const char *start = next;
        next += std::strspn(next, "ABCDEFGHIJKLMNOPQRSTUVWXYZ_0123456789");
        return since(start);
    }

    type *read_scalar_type() {
        const char *start = next;
        const char letter = *next++;
        const bool is_any_kind = accept("*");
        std::int32_t length = assumed_length;
        if (accept("(")) {
            length = read_number();
            accept(")");
        }
        type *&known = known_type_of(since(start));
        if (!known) {
            known = scalar_type(letter, is_any_kind, length);
        }
        return known;
    }

    type *read_type() {
        const char *start = next;
        type *element = read_scalar_type();
        if (!accept("[")) {
            return element;
        }
        const bool is_inquiry = accept("?");
        const auto rank = static_cast<unsigned>(read_number());
        accept("]");
        type *&known = known_type_of(since(start));
        if (!known) {
            known = new_array_type(element, rank);
            known->array.shape_kind = is_inquiry ? as_shaped : deferred_shape;
        }
        return known;
    }

    param_type *read_parameter() {
        param_type *p = new_param_type();
        const std::string_view name = read_name();
        p->source_corresp.name = find_atom(name.data(), name.size());
        assert(p->source_corresp.name);
        accept(": ");
        p->type = read_type();
        p->is_optional = accept("?");
        if (accept("!")) {
            return p;
        }
        if (accept(" ptr")) {
            p->is_pointer = true;
        } else if (accept(" inout")) {
            p->intent_in = true;
            p->intent_out = true;
        } else if (accept(" out")) {
            p->intent_out = true;
        } else {
            p->intent_in = true;
        }
        return p;
    }
};

// ---- the records of an intrinsic

symbol *new_seed_symbol(symbol_kind kind, atom *name, named_entry *entity) {
    symbol *s = alloc_symbol(kind);
    s->name = name;
    s->decl_position = null_pos;
    s->entity = entity;
    entity->symbol_link = s;
    entity->source_corresp.name = name;
    link_symbol(s);
    return s;
}

// The form at the reader, without what marks it as named.
object *build_form(form_reader &reader, intrinsic_code code, unsigned flags) {
    object *form = new_object();
    form->storage_class = sc_intrinsic;
    form->association_offset = code;
    type *t = new_routine_type(form, void_type());
    form->type = t;
    t->routine.has_param_info = true;
    t->routine.has_ellipsis = (flags & repeating) != 0;
    t->routine.is_elemental = (flags & elemental) != 0;
    reader.accept("(");
    param_type **tail = &t->routine.param_type_list;
    do {
        *tail = reader.read_parameter();
        tail = &(*tail)->next;
    } while (reader.accept(", "));
    reader.accept(")");
    if (!(flags & subroutine)) {
        reader.accept(" ");
        t->routine.return_type = reader.read_type();
    }
    return form;
}

// Builds the generic of a row and its forms. Returns the form that is named, or null.
object *build_generic(const intrinsic_row &row, intrinsic_code code) {
    interface *generic = new_interface();
    const symbol_kind kind = row.flags & subroutine ? sk_intrinsic_subroutine : sk_intrinsic_function;
    symbol *s = new_seed_symbol(kind, find_atom(row.name, std::strlen(row.name)), generic);
    s->flags |= sf_visible;
    seed_symbols[code] = s;

    object *named = nullptr;
    object_list_member **tail = &generic->routine_prototype_list;
    form_reader reader{row.forms};
    do {
        *tail = new_object_list_member();
        (*tail)->object = build_form(reader, code, row.flags);
        if (reader.accept(" named")) {
            named = (*tail)->object;
        }
        tail = &(*tail)->next;
    } while (reader.accept("; "));
    assert(*reader.next == '\0');
    return named;
}

// The second symbol of a name, for use as an actual argument: hidden, and ahead of the generic on the chain.
symbol *build_specific(object *form, atom *name) {
    symbol *s = new_seed_symbol(sk_specific_function, name, form);
    s->aux2 = pf_type_declared | pf_body_seen;
    return s;
}

void build_intrinsics() {
    std::fill(std::begin(known_types), std::end(known_types), known_type{});
    std::size_t symbol_total = intrinsic_code_count;
    for (std::size_t i = 0; i < intrinsic_code_count; ++i) {
        if (object *named = build_generic(intrinsics[i], static_cast<intrinsic_code>(i))) {
            assert(symbol_total < seed_symbol_count);
            seed_symbols[symbol_total++] = build_specific(named, seed_symbols[i]->name);
        }
    }
    assert(symbol_total == seed_symbol_count);
}

} // namespace

void init_seed_tables() {
    symbols_init();
    scopes_init();
    build_atoms();
    build_intrinsics();
}

} // namespace zf90
