// The table of attributes turned into a matrix, and the check of a name's attributes.
#include "declarations/attributes.h"

#include "declarations/implicit.h"
#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "driver/diagnostics.h"
#include "il/types.h"
#include "source/tokens.h"

#include <bit>
#include <string_view>

namespace zf90 {

namespace {

using matrix = std::array<std::array<attribute_relation, attribute_count>, attribute_count>;

enum class repeat : std::uint8_t { allowed, rejected };

struct attribute_row {
    const char *word;
    repeat stated_twice;
    const char *conflicts; // "1 2 3"
    const char *required;  // "12 (3) 31 (2)"
};

constexpr attribute_row attribute_rows[] = {
#define ATTRIBUTE(number, name, word, repeat_rule, conflicts, required) \
    {word, repeat::repeat_rule, conflicts, required},
#include "declarations/attributes.def"
#undef ATTRIBUTE
};
static_assert(std::size(attribute_rows) == 37 && attribute_count == 37);

// Reads a number of a row's text; -1 at its end.
constexpr int next_number(const char *&text) {
    while (*text == ' ' || *text == '(' || *text == ')') {
        ++text;
    }
    int value = *text ? 0 : -1;
    for (; *text >= '0' && *text <= '9'; ++text) {
        value = 10 * value + (*text - '0');
    }
    return value;
}

constexpr matrix make_matrix() {
    matrix m{};
    for (std::size_t i = 0; i < attribute_count; ++i) {
        const attribute_row &row = attribute_rows[i];
        if (row.stated_twice == repeat::rejected) {
            m[i][i] = conflict;
        }
        const char *text = row.conflicts;
        for (int j; (j = next_number(text)) >= 0;) {
            m[i][static_cast<std::size_t>(j)] = conflict;
        }
        text = row.required;
        for (int j; (j = next_number(text)) >= 0;) {
            m[i][static_cast<std::size_t>(j)] = next_number(text) == 2 ? requires_named : requires_unnamed;
        }
    }
    return m;
}

constexpr std::array<const char *, attribute_count> make_names() {
    std::array<const char *, attribute_count> names{};
    for (std::size_t i = 0; i < attribute_count; ++i) {
        names[i] = attribute_rows[i].word;
    }
    return names;
}

// One check: the attributes stated and had, and where messages go.
struct attribute_check {
    symbol *s;
    source_pos position;
    attribute_set all;
    bool good = true;

    // Merges an attribute that the symbol has. False if it was stated again.
    bool state(attribute a) {
        if (all[a] && attr_matrix[a][a] == conflict && !(s->flags & sf_inferred)) {
            error_at(msg_entity_declared_repeatedly, position, s->name->spelling, attr_names[a]);
            good = false;
            return false;
        }
        all[a] = true;
        s->flags &= ~std::uint32_t{sf_inferred};
        return true;
    }
    void state_if(bool holds, attribute a) {
        if (holds) {
            state(a);
        }
    }
};

bool has_constant_bounds(const type *t) {
    for (unsigned i = 0; i < 2u * t->array.rank; ++i) {
        if (t->array.bound->bounds[i].kind != bound_constant) {
            return false;
        }
    }
    return true;
}

void merge_variable(attribute_check &c) {
    const symbol *s = c.s;
    const object *o = entity_as<object>(s);
    c.state(attr_variable);
    c.state_if(o->is_constant, attr_parameter);
    c.state_if(o->is_auto, attr_automatic);
    if (s->var_flags & vf_in_common) {
        c.state(attr_common);
        c.state_if((s->var_flags & vf_blank_common) != 0, attr_blank_common);
        c.state_if(unit_kind_of(1) != uk_block_data, attr_outside_block_data);
    }
    c.state_if(o->is_parameter, attr_dummy);
    c.state_if((s->var_flags & vf_initialized) != 0, attr_initialized);
    c.state_if(o->is_result, attr_result);
    c.state_if(o->is_allocatable, attr_allocatable);
    c.state_if(o->is_pointer, attr_pointer);
    c.state_if(o->is_target, attr_target);
    c.state_if(o->storage_class == sc_type_field, attr_component);
    c.state_if((s->var_flags & vf_equivalenced) != 0, attr_equivalence);
    const object *routine = o->storage_class == sc_local ? o->assoc.routine : nullptr;
    c.state_if(routine && (routine->storage_class == sc_program || routine->storage_class == sc_module),
               attr_unit_variable);
}

// What the symbol's kind says. The type to look at, or null.
type *merge_kind(attribute_check &c) {
    const symbol *s = c.s;
    switch (s->kind) {
    case sk_derived_type:
    case sk_forward_type: c.state(attr_type); return nullptr;
    case sk_variable: merge_variable(c); return type_of_symbol(s);
    case sk_specific_function:
    case sk_specific_subroutine: c.state(attr_intrinsic); [[fallthrough]];
    case sk_subroutine:
    case sk_function:
    case sk_internal_subroutine:
    case sk_internal_function:
    case sk_stmt_function:
    case sk_program:
    case sk_block_data:
    case sk_module:
    case sk_external_unused:
    case sk_dummy_function:
    case sk_dummy_subroutine:
    case sk_dummy_procedure:
        c.state(attr_subprogram);
        c.state_if(entity_as<object>(s)->is_parameter, attr_dummy);
        return entity_as<object>(s)->type;
    case sk_intrinsic_function:
    case sk_intrinsic_subroutine:
        c.state(attr_intrinsic);
        c.state(attr_interface);
        return nullptr;
    case sk_label: c.state(attr_construct_name); return nullptr;
    case sk_undetermined: return type_of_symbol(s);
    case sk_external_pending: c.state(attr_subprogram); return type_of_symbol(s);
    case sk_module_procedure:
        c.state(attr_subprogram);
        c.state(attr_module_procedure);
        return nullptr;
    case sk_dummy: c.state(attr_dummy); return type_of_symbol(s);
    case sk_interface: c.state(attr_interface); return nullptr;
    case sk_namelist: c.state(attr_namelist); return nullptr;
    default: return nullptr;
    }
}

// Whether the symbol is a variable whose size may be settled on entry to its routine.
bool may_be_automatic(const symbol *s) {
    return spec_part_over && s->kind == sk_variable && !entity_as<object>(s)->is_parameter;
}

void merge_type(attribute_check &c, const type *t) {
    c.state(attr_typed);
    c.state_if(t->type_code == tk_fcharacter && t->character.length.kind == bound_assumed,
               attr_assumed_length);
}

// A shape counts whether the name has a type yet or not.
void merge_shape(attribute_check &c, const type *t) {
    if (t->array.shape_kind == explicit_shape) {
        c.state_if(may_be_automatic(c.s) && !has_constant_bounds(t), attr_automatic);
    }
    if (t->array.shape_kind <= as_shaped) {
        c.state(shape_attribute(t->array.shape_kind));
    }
    const type *element = t->array.element_type;
    c.state_if(element->type_code == tk_fcharacter && may_be_automatic(c.s) && has_open_length(element),
               attr_automatic);
}

void merge(attribute_check &c) {
    const symbol *s = c.s;
    if (s->flags & sf_access_given) {
        c.state(s->flags & sf_public ? attr_public : attr_private);
    }
    if (s->from_module && !c.state(attr_module_imported)) {
        return;
    }
    if (!s->from_module) {
        const type *t = merge_kind(c);
        // The implicit rules may still be confirmed by a declaration.
        const bool counts = (s->flags & sf_typed) && (!(s->flags & sf_type_implicit) || spec_part_over);
        if (t && counts && t->type_code != tk_error) {
            merge_type(c, t);
        }
        if (t && is_array(t)) {
            merge_shape(c, t);
        }
    }
    const bool in = (s->flags & sf_intent_in) != 0;
    const bool out = (s->flags & sf_intent_out) != 0;
    c.state_if(in && !out, attr_intent_in);
    c.state_if(!in && out, attr_intent_out);
    c.state_if(in && out, attr_intent_inout);
    c.state_if((s->flags & sf_optional) != 0, attr_optional);
    c.state_if((s->flags & sf_external_attr) != 0, attr_external);
    c.state_if((s->flags & sf_saved) != 0, attr_save);
}

// The words of what an attribute requires, in a text of its own.
class required_words {
public:
    explicit required_words(std::size_t row) {
        for (std::size_t j = 0; j < attribute_count; ++j) {
            if (attr_matrix[row][j] == requires_named) {
                append(size_ > 0 ? ", or " : "");
                append(attr_names[j]);
            }
        }
    }
    std::string_view view() const { return {text_, size_}; }

private:
    void append(std::string_view word) { size_ += word.copy(text_ + size_, sizeof text_ - size_); }

    char text_[128];
    std::size_t size_ = 0;
};

// The name being declared, which may have no symbol yet.
const char *name_of(const attribute_check &c) {
    const atom *name = c.s ? c.s->name : curr_name.atom;
    return name ? name->spelling : "";
}

// The rules of one attribute against all others.
bool check_one(const attribute_check &c, std::size_t i, attribute_set &set) {
    enum { nothing_needed, unmet, met } need = nothing_needed;
    bool good = true;
    for (std::size_t j = 0; j < attribute_count; ++j) {
        const attribute_relation relation = attr_matrix[i][j];
        if (j == i || relation == no_relation) {
            continue;
        }
        if (!c.all[j]) {
            if (relation != conflict && spec_part_over && need == nothing_needed) {
                need = unmet;
            }
            continue;
        }
        if (relation != conflict) {
            need = met;
            continue;
        }
        if (std::string_view(attr_names[i]) != attr_names[j]) {
            error_at(msg_entity_should_not_be, c.position, attr_names[i], attr_names[j]);
        } else {
            error_at(msg_entity_declared_repeatedly, c.position, name_of(c), attr_names[i]);
        }
        set[set[j] ? j : i] = false; // the one that is stated now
        good = false;
    }
    if (need == unmet) {
        error_at(msg_entity_should_be, c.position, attr_names[i], required_words(i).view());
        good = false;
    }
    return good;
}

// A row of the matrix as bits, so that attributes that don't concern each other are passed over.
struct row_bits {
    std::uint64_t conflicts;
    std::uint64_t required;
};

constexpr std::array<row_bits, attribute_count> make_row_bits() {
    constexpr matrix m = make_matrix();
    std::array<row_bits, attribute_count> rows{};
    for (std::size_t i = 0; i < attribute_count; ++i) {
        for (std::size_t j = 0; j < attribute_count; ++j) {
            const std::uint64_t bit = std::uint64_t{1} << j;
            if (j != i && m[i][j] != no_relation) {
                (m[i][j] == conflict ? rows[i].conflicts : rows[i].required) |= bit;
            }
        }
    }
    return rows;
}

constinit const std::array<row_bits, attribute_count> attr_row_bits = make_row_bits();

} // namespace

constinit const matrix attr_matrix = make_matrix();
constinit const std::array<const char *, attribute_count> attr_names = make_names();

attribute shape_attribute(enum shape_kind kind) {
    switch (kind) {
    case explicit_shape: return attr_explicit_shape;
    case assumed_size: return attr_assumed_size;
    case assumed_shape: return attr_assumed_shape;
    default: return attr_deferred_shape;
    }
}

bool has_open_length(const type *text) {
    const bound &length = text->character.length;
    return length.kind != bound_constant &&
           (length.kind != bound_expression || length.expr->node_kind != enk_error);
}

bool keeps_shape(const attribute_set &set, const type *array) {
    return array->array.shape_kind == explicit_shape && set[attr_explicit_shape];
}

bool check_attributes(symbol *s, attribute_set &set, source_pos position) {
    attribute_check c{s, position, set};
    if (s) {
        merge(c);
    }
    const std::uint64_t all = c.all.to_ullong();
    for (std::uint64_t rest = all; rest != 0; rest &= rest - 1) {
        const auto i = static_cast<std::size_t>(std::countr_zero(rest));
        const row_bits &row = attr_row_bits[i];
        const bool concerned = (row.conflicts & all) != 0 || (row.required != 0 && spec_part_over);
        if (concerned && !check_one(c, i, set)) {
            c.good = false;
        }
    }
    return c.good;
}

} // namespace zf90
