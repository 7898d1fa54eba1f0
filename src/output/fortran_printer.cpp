// Program units and statements as Fortran. Every line begins with the five columns of a label and a blank.
#include "output/fortran_printer.h"

#include "driver/deep_call.h"
#include "il/kind_names.h"
#include "il/types.h"
#include "output/il_dump.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <vector>

namespace zf90 {

namespace {

constexpr char margin[] = "      ";

il_header *printed_header; // for the look-up of positions
char label_field[6] = "     ";
const source_file *last_file;
std::uint32_t last_line;

const char *name_of(const named_entry *entry) {
    return entry && entry->source_corresp.name ? entry->source_corresp.name->spelling : "";
}

// ---- positions

// What was read of one file without a break.
struct stretch {
    std::uint32_t first; // sequence number
    source_place place;  // of that line
};

std::vector<stretch> stretches; // in the order of their numbers
const il_header *indexed_header;

struct open_file {
    const source_file *file;
    const source_file *next_child;
    std::uint32_t seq; // of the first line behind the children so far
    std::uint32_t line;
};

void add_stretch(const open_file &f) { stretches.push_back({f.seq, {f.file, f.line}}); }

void index_files(const il_header *header) {
    indexed_header = header;
    stretches.clear();
    std::vector<open_file> open;
    const auto enter = [&open](const source_file *f) {
        open.push_back({f, f->first_child_file, f->first_seq_number, f->first_line_number});
        add_stretch(open.back());
    };
    if (header && header->primary_source_file) {
        enter(header->primary_source_file);
    }
    while (!open.empty()) {
        open_file &f = open.back();
        if (const source_file *const child = f.next_child) {
            f.next_child = child->next;
            f.line += child->first_seq_number - f.seq;
            f.seq = child->last_seq_number + 1;
            enter(child);
            continue;
        }
        open.pop_back();
        if (!open.empty()) {
            add_stretch(open.back());
        }
    }
}

} // namespace

source_place find_source_place(const il_header *header, std::uint32_t seq) {
    if (header != indexed_header) {
        index_files(header);
    }
    const auto behind = std::ranges::upper_bound(stretches, seq, {}, &stretch::first);
    if (seq == 0 || behind == stretches.begin()) {
        return {nullptr, 0};
    }
    const stretch &s = behind[-1];
    return {s.place.file, s.place.line + (seq - s.first)};
}

namespace {

void print_line_comment(const statement *s) {
    const source_place where = find_source_place(printed_header, s->source_pos.seq);
    if (!where.file || (where.file == last_file && where.line == last_line)) {
        return;
    }
    print_hook("! #line %lu", static_cast<unsigned long>(where.line));
    if (where.file != last_file) {
        print_hook(" \"%s\"", where.file->file_name);
    }
    print_hook("\n");
    last_file = where.file;
    last_line = where.line;
}

// Labels are printed with what follows, blocks are their statements, and sizes are in the declarations.
bool has_text(const statement *s) {
    return s->kind != stmk_block && s->kind != stmk_label && s->kind != stmk_set_array_shape &&
           s->kind != stmk_set_char_length;
}

// The beginning of a statement: its label, which is used up, and its first word.
void print_keyword(const char *word) {
    print_hook("%s %s", label_field, word);
    std::memset(label_field, ' ', sizeof label_field - 1);
}

// ---- declarations

void print_access(const object *owner, bool is_public) {
    if (owner && owner->storage_class == sc_module) {
        print_hook(", %s", is_public ? "public" : "private");
    }
}

void print_initializer(const object *o) {
    if (!o->is_result && o->variant.initializer) {
        print_hook(" = ");
        print_constant(o->variant.initializer);
    }
}

void print_attributes(const object *o) {
    const struct {
        bool is_set;
        const char *word;
    } attributes[] = {{o->is_target, "target"},
                      {o->is_pointer, "pointer"},
                      {o->is_allocatable, "allocatable"},
                      {o->is_saved, "save"},
                      {o->is_optional, "optional"}};
    for (const auto &a : attributes) {
        if (a.is_set) {
            print_hook(", %s", a.word);
        }
    }
    if (o->intent_in || o->intent_out) {
        const char *const intent = !o->intent_out ? "in" : o->intent_in ? "inout" : "out";
        print_hook(", %s(%s)", "intent", intent);
    }
}

// The storage that variables share, printed once in a unit.
void print_storage_block(object *storage) {
    if (storage->il_id & il_visit_mark) {
        return;
    }
    storage->il_id |= il_visit_mark;
    const char *const name = name_of(storage);
    const auto number = static_cast<int>(storage->il_id & il_number_mask);
    if (*name) {
        print_hook("%scharacter:: %s", margin, name);
    } else {
        print_hook("%scharacter:: assoc_%d", margin, number);
    }
    print_hook("(0:%u)", storage->type ? storage->type->size : 0);
    print_initializer(storage);
    print_hook("\n");
    if (storage->storage_class == sc_common) {
        if (*name) {
            print_hook("%scommon /%s/ %s\n", margin, name, name);
        } else {
            print_hook("%scommon /%s/ assoc_%d\n", margin, name, number);
        }
    }
}

void print_associated(const object *o) {
    object *const storage = o->assoc.variable;
    print_hook(":: %s\n", name_of(o));
    if (!storage) {
        return;
    }
    print_storage_block(storage);
    print_hook("%sequivalence (%s, ", margin, name_of(o));
    if (*name_of(storage)) {
        print_hook("%s", name_of(storage));
    } else {
        print_hook("assoc_%d", static_cast<int>(storage->il_id & il_number_mask));
    }
    print_hook("(%u))\n", static_cast<unsigned>(o->association_offset));
}

bool is_declared(const object *o) {
    if (!o->type || o->storage_class == sc_use_associated || o->storage_class == sc_mod_proc ||
        o->storage_class == sc_internal || o->storage_class == sc_common || o->is_constant) {
        return false;
    }
    const type_code code = o->type->type_code;
    return code != tk_stmt_label && code != tk_association && !(o->is_result && code == tk_unknown);
}

bool is_function(const object *o) {
    return o->type->type_code == tk_routine && o->type->routine.return_type &&
           o->type->routine.return_type->type_code != tk_void;
}

void print_declaration(const object *o, const object *owner) {
    if (!is_declared(o)) {
        return;
    }
    print_hook("%s", margin);
    if (o->storage_class == sc_external && !is_function(o)) {
        print_hook("external %s\n", name_of(o));
        return;
    }
    print_type(o->type);
    print_access(owner, o->is_public);
    print_attributes(o);
    switch (o->storage_class) {
    case sc_associated: print_associated(o); return;
    case sc_external: print_hook(", external:: %s", name_of(o)); break;
    default:
        print_hook(":: %s", name_of(o));
        if (o->storage_class == sc_local) {
            print_initializer(o);
        }
        break;
    }
    print_hook("\n");
}

void print_derived_type(const type *t, const object *owner) {
    print_hook("%stype", margin);
    print_access(owner, t->is_public);
    print_hook(" %s\n", name_of(t));
    if (t->derived.is_seq) {
        print_hook("%ssequence\n", margin);
    }
    if (!t->is_public && owner && owner->storage_class == sc_module) {
        print_hook("%sprivate\n", margin);
    }
    for (const object *field = t->derived.first_field; field; field = field->next) {
        print_declaration(field, nullptr);
    }
    print_hook("%send type %s\n", margin, name_of(t));
}

void print_named_constant(const object *o) {
    print_hook("%s", margin);
    print_type(o->type);
    print_hook(", parameter::");
    print_hook(" %s = ", name_of(o));
    if (o->variant.initializer) {
        print_constant(o->variant.initializer);
    }
    print_hook("\n");
}

// The module that an imported entity comes from; null for one of the unit itself.
const object *module_of(const object *o) {
    return o->storage_class == sc_use_associated || o->storage_class == sc_mod_proc ? o->assoc.module
                                                                                    : nullptr;
}

void print_use(const object *module, const named_entry *entity) {
    print_hook("%suse %s, only: %s_%s\n", margin, name_of(module), name_of(module), name_of(entity));
}

void print_name_list(const object_list_member *list) {
    print_hook("(");
    for (const object_list_member *m = list; m; m = m->next) {
        const bool is_label = m->object->type && m->object->type->type_code == tk_stmt_label;
        print_hook("%s%s", is_label ? "*" : name_of(m->object), m->next ? ", " : "");
    }
    print_hook(")");
}

void print_namelist_group(const namelist_group *group) {
    print_hook("%snamelist /%s/", margin, name_of(group));
    for (const expr_node *e = group->member_list; e; e = e->next) {
        print_hook(" ");
        print_expression(e);
        print_hook("%s", e->next ? "," : "");
    }
    print_hook("\n");
}

void print_format(const label *l) {
    const constant *const c = l->format_constant;
    print_hook("%-5s %s", name_of(l), "format");
    if (!c || c->repr_kind != ck_value || c->type->type_code != tk_fcharacter) {
        print_hook(" ");
        print_bracketed("illegal format");
        print_hook("\n");
        return;
    }
    print_hook(" ");
    for (std::uint32_t i = 0; i < c->type->size; ++i) {
        const unsigned char byte = c->value.bytes[i];
        print_hook(byte >= ' ' && byte < 0x7f ? "%c" : "\\%03o", byte);
    }
    print_hook("\n");
}

const char *unit_word(const object *unit) {
    switch (unit->storage_class) {
    case sc_program: return "program";
    case sc_blockdata: return "block data";
    case sc_module: return "module";
    default: return is_function(unit) ? "function" : "subroutine";
    }
}

// The dummy argument of a routine without a scope of its own, as its scope would have it.
object dummy_of(const param_type *p) {
    object o{};
    o.source_corresp = p->source_corresp;
    o.type = p->type;
    o.storage_class = p->type && p->type->type_code == tk_routine ? sc_external : sc_local;
    o.is_parameter = true;
    o.is_pointer = p->is_pointer;
    o.is_optional = p->is_optional;
    o.intent_in = p->intent_in;
    o.intent_out = p->intent_out;
    return o;
}

const param_type *params_of(const object *routine) {
    return routine->type && routine->type->type_code == tk_routine ? routine->type->routine.param_type_list
                                                                   : nullptr;
}

void print_param_names(const object *routine) {
    print_hook("(");
    for (const param_type *p = params_of(routine); p; p = p->next) {
        const bool is_label = p->type && p->type->type_code == tk_stmt_label;
        print_hook("%s%s", is_label ? "*" : name_of(p), p->next ? ", " : "");
    }
    print_hook(")");
}

void print_result(const object *routine, const object *result) {
    if (result && result->source_corresp.name != routine->source_corresp.name &&
        result->source_corresp.name) {
        print_hook(" result (%s)", name_of(result));
    }
}

void print_unit_head(const object *unit) {
    const scope *const s = unit->variant.assoc_scope;
    print_hook("%s", margin);
    switch (unit->storage_class) {
    case sc_program:
        if (unit->source_corresp.name) {
            print_hook("program %s", name_of(unit));
        } else {
            print_hook("!  unnamed  program");
        }
        break;
    case sc_blockdata:
        print_hook(unit->source_corresp.name ? "block data %s" : "block data", name_of(unit));
        break;
    case sc_intrinsic: print_hook("intrinsic %s", name_of(unit)); break;
    case sc_module: print_hook("module %s", name_of(unit)); break;
    default:
        if (unit->type->type_code == tk_routine && unit->type->routine.is_recursive) {
            print_hook("recursive ");
        }
        print_hook("%s %s", unit_word(unit), name_of(unit));
        if (s) {
            print_name_list(s->parameters);
        } else {
            print_param_names(unit);
        }
        print_result(unit, s ? s->function_result_var : nullptr);
        break;
    }
    print_hook("\n");
}

void print_interface(const interface *i) {
    print_hook("%sinterface", margin);
    if (*name_of(i)) {
        print_hook(" %s", name_of(i));
    }
    print_hook("\n");
    for (const object_list_member *m = i->routine_prototype_list; m; m = m->next) {
        object *const specific = m->object;
        if (const object *module = module_of(specific)) {
            print_hook("%smodule procedure %s_%s\n", margin, name_of(module), name_of(specific));
        } else if (specific->storage_class == sc_internal) {
            print_hook("%smodule procedure %s\n", margin, name_of(specific));
        } else {
            print_unit_head(specific);
            for (const param_type *p = params_of(specific); p; p = p->next) {
                const object dummy = dummy_of(p);
                print_declaration(&dummy, nullptr);
            }
            print_hook("%send %s %s\n", margin, unit_word(specific), name_of(specific));
        }
    }
    print_hook("%send interface\n", margin);
}

void print_declarations(const scope *s, const object *unit) {
    for (const type *t = s->types; t; t = t->next) {
        if (t->derived.module && t->derived.module != unit) {
            print_use(t->derived.module, t);
        }
    }
    for (const object *o = s->objects; o; o = o->next) {
        if (const object *module = module_of(o)) {
            print_use(module, o);
        }
    }
    for (const object *o = s->objects; o; o = o->next) {
        if (o->is_constant && !module_of(o)) {
            print_named_constant(o);
        }
    }
    for (const type *t = s->types; t; t = t->next) {
        if (!t->derived.module || t->derived.module == unit) {
            print_derived_type(t, unit);
        }
    }
    for (const object *o = s->objects; o; o = o->next) {
        print_declaration(o, unit);
    }
    for (const namelist_group *n = s->namelist_groups; n; n = n->next) {
        print_namelist_group(n);
    }
    for (const label *l = s->labels; l; l = l->next) {
        if (l->kind == lk_format) {
            print_format(l);
        }
    }
    for (const interface *i = s->interfaces; i; i = i->next) {
        print_interface(i);
    }
}

void clear_print_marks(const scope *s) {
    for (object *o = s->objects; o; o = o->next) {
        o->il_id &= ~il_visit_mark;
    }
}

// ---- statements

void print_nested(const statement *s) {
    if (s) {
        print_statement(printed_header, s, true);
    }
}

void print_label_alone() {
    if (label_field[0] != ' ') {
        print_keyword("continue\n");
    }
}

// What ends or divides a construct. A label that is left was that of a CONTINUE before it.
void print_end(const char *text) {
    print_label_alone();
    print_hook("%s%s\n", margin, text);
}

void print_expressions(const char *opening, const expr_node *list, const char *closing) {
    print_hook("%s", opening);
    for (const expr_node *e = list; e; e = e->next) {
        print_expression(e);
        print_hook("%s", e->next ? ", " : "");
    }
    print_hook("%s", closing);
}

void print_labels(const label_list_entry *list) {
    for (const label_list_entry *k = list; k; k = k->next) {
        print_hook("%s%s", name_of(k->label), k->next ? ", " : "");
    }
}

void print_case_ranges(const case_range *list) {
    for (const case_range *r = list; r; r = r->next) {
        switch (r->range_kind) {
        case crk_le:
            print_constant(r->low);
            print_hook(":");
            break;
        case crk_ge:
            print_hook(":");
            print_constant(r->high);
            break;
        case crk_gl:
            print_constant(r->low);
            print_hook(":");
            print_constant(r->high);
            break;
        default: print_constant(r->low); break;
        }
        print_hook("%s", r->next ? ", " : "");
    }
}

void print_if(const statement *s, bool recursive) {
    print_keyword("if(");
    print_expression(s->expr);
    print_hook(") then\n");
    if (!recursive) {
        return;
    }
    print_nested(s->then_statement);
    if (s->else_statement) {
        print_end("else");
        print_nested(s->else_statement);
    }
    print_end("end if");
}

void print_loop(const statement *s, bool recursive) {
    print_keyword("do");
    if (const do_loop *control = s->do_loop) {
        print_hook(" ");
        print_expression(control->variable);
        print_hook(" = ");
        print_expression(control->initial_value);
        print_hook(", ");
        print_expression(control->final_value);
        print_hook("%s", control->final_value_excluded ? "-1" : "");
        if (control->increment) {
            print_hook(", ");
            print_expression(control->increment);
        }
    }
    print_hook("\n");
    if (recursive) {
        print_nested(s->loop_statement);
        print_end("end do");
    }
}

void print_while(const statement *s, bool recursive) {
    print_keyword("do while (");
    print_expression(s->expr);
    print_hook(")\n");
    if (recursive) {
        print_nested(s->body_statement);
        print_end("end do");
    }
}

void print_select(const statement *s, bool recursive) {
    print_keyword("select case(");
    print_expression(s->expr);
    print_hook(")\n");
    if (recursive) {
        print_nested(s->body_statement);
        print_end("end select");
    }
}

void print_case(const statement *s, bool recursive) {
    if (s->case_range_list) {
        print_keyword("case (");
        print_case_ranges(s->case_range_list);
        print_hook(")\n");
    } else {
        print_keyword("case default\n");
    }
    if (recursive) {
        print_nested(s->case_statements);
    }
}

void print_where(const statement *s, bool recursive) {
    print_keyword("where (");
    print_expression(s->expr);
    print_hook(")\n");
    if (!recursive) {
        return;
    }
    print_nested(s->where_assignment);
    if (s->elsewhere_assignment) {
        print_end("elsewhere");
        print_nested(s->elsewhere_assignment);
    }
    print_end("end where");
}

void print_allocate(const statement *s) {
    print_keyword("allocate (");
    for (const alloc *q = s->alloc_list; q; q = q->next) {
        print_expression(q->var);
        for (unsigned i = 0; q->bounds && i < q->rank; ++i) {
            const bound &lower = q->bounds->bounds[i];
            const bound &upper = q->bounds->bounds[q->rank + i];
            print_hook(i == 0 ? "(" : ", ");
            if (lower.kind == bound_expression) {
                print_expression(lower.expr);
                print_hook(":");
            } else if (lower.kind == bound_constant && lower.value != 1) {
                print_hook("%i:", lower.value);
            }
            if (upper.kind == bound_expression) {
                print_expression(upper.expr);
            } else if (upper.kind == bound_constant) {
                print_hook("%i", upper.value);
            }
            print_hook(i + 1 == q->rank ? ")" : "");
        }
        print_hook(q->next ? ", " : "");
    }
}

void print_stat(const statement *s) {
    if (s->stat_variable) {
        print_hook(", stat=");
        print_expression(s->stat_variable);
    }
    print_hook(")\n");
}

void print_specifiers(const input_output_description *io, const char *separator) {
    for (const expr_node *e = io->specifier_list; e; e = e->next) {
        print_hook("%s%s=", separator, enumerator_name(e->selector) + std::strlen("iosk_"));
        print_expression(e);
        separator = ", ";
    }
}

void print_unit_and_specifiers(const input_output_description *io) {
    const char *separator = "";
    if (io->unit_kind == iou_external || io->unit_kind == iou_internal) {
        print_hook("unit=");
        print_expression(io->unit_expr);
        separator = ", ";
    } else if (io->unit_kind == iou_default) {
        print_hook("unit=*");
        separator = ", ";
    }
    switch (io->format_kind) {
    case iof_format_label: print_hook("%sfmt=%s", separator, name_of(io->format.label)); break;
    case iof_assigned_var:
    case iof_char_expr:
        print_hook("%sfmt=", separator);
        print_expression(io->format.expr);
        break;
    case iof_list_directed: print_hook("%sfmt=*", separator); break;
    case iof_namelist_directed: print_hook("%snml=%s", separator, name_of(io->format.namelist_group)); break;
    default: print_specifiers(io, separator); return;
    }
    print_specifiers(io, ", ");
}

void print_io(const statement *s, const char *word, const char *initializer_word) {
    print_keyword(s->treated_as_io_initializer ? initializer_word : word);
    if (s->io_descr) {
        print_unit_and_specifiers(s->io_descr);
    }
    print_expressions(s->expr ? ") " : ")", s->expr, "\n");
}

void print_write(const statement *s) {
    const input_output_description *io = s->io_descr;
    if (!s->treated_as_io_initializer && io && io->unit_kind == iou_default && !io->specifier_list &&
        io->format_kind != iof_namelist_directed) {
        print_keyword("print ");
        switch (io->format_kind) {
        case iof_format_label: print_hook("%s", name_of(io->format.label)); break;
        case iof_assigned_var:
        case iof_char_expr: print_expression(io->format.expr); break;
        default: print_hook("*"); break;
        }
        print_expressions(s->expr ? ", " : "", s->expr, "\n");
        return;
    }
    print_io(s, "write (", "init_write(");
}

void print_construct_name(const statement *s) {
    const label *const l = s->constr_label ? s->constr_label->label : nullptr;
    if (l && l->source_corresp.name) {
        print_hook(" %s", name_of(l));
    }
    print_hook("\n");
}

// A label of digits stands before its statement; the name of a construct has a line of its own.
void print_label(const statement *s) {
    const char *const name = name_of(s->label);
    if (s->label->kind == lk_control) {
        if (*name) {
            print_hook("%s:\n", name);
        }
    } else {
        print_label_alone();
        std::snprintf(label_field, sizeof label_field, "%-5s", name);
    }
}

void print_entry(const statement *s) {
    const entry_description *const e = s->entry_descr;
    print_keyword("entry");
    if (e) {
        print_hook(" %s", name_of(e->assoc_routine));
        print_name_list(e->parameters);
        if (e->assoc_routine) {
            print_result(e->assoc_routine, e->function_result_var);
        }
    }
    print_hook("\n");
}

void print_with_constant(const char *word, const constant *c) {
    print_keyword(word);
    if (c) {
        print_hook(" ");
        print_constant(c);
    }
    print_hook("\n");
}

void print_statement_here(const statement *s, bool recursive) {
    switch (s->kind) {
    case stmk_expr: {
        const bool is_call =
            s->expr && (s->expr->node_kind == enk_call || s->expr->node_kind == enk_generic_call);
        print_keyword(is_call ? "call " : "");
        print_expression(s->expr);
        print_hook("\n");
        break;
    }
    case stmk_if: print_if(s, recursive); break;
    case stmk_while: print_while(s, recursive); break;
    case stmk_goto:
        print_keyword("go to ");
        print_hook("%s\n", name_of(s->label));
        break;
    case stmk_label: print_label(s); break;
    case stmk_return:
    case stmk_alt_return:
        print_keyword("return");
        print_expressions(s->expr ? " " : "", s->expr, "\n");
        break;
    case stmk_block:
        for (const statement *t = s->statements; t; t = t->next) {
            print_statement(printed_header, t, recursive);
        }
        break;
    case stmk_fentry: print_entry(s); break;
    case stmk_ido:
    case stmk_fdo: print_loop(s, recursive); break;
    case stmk_iarith_if:
    case stmk_farith_if:
        print_keyword("if (");
        print_expression(s->expr);
        print_hook(") ");
        print_labels(s->label_list);
        print_hook("\n");
        break;
    case stmk_computed_goto:
        print_keyword("go to (");
        print_labels(s->label_list);
        print_hook(") ");
        print_expression(s->expr);
        print_hook("\n");
        break;
    case stmk_assigned_goto:
        print_keyword("go to ");
        print_expression(s->expr);
        if (s->label_list) {
            print_hook(" (");
            print_labels(s->label_list);
            print_hook(")");
        }
        print_hook("\n");
        break;
    case stmk_stop: print_with_constant("stop", s->stop_pause_string); break;
    case stmk_pause: print_with_constant("pause", s->stop_pause_string); break;
    case stmk_select: print_select(s, recursive); break;
    case stmk_case: print_case(s, recursive); break;
    case stmk_exit:
        print_keyword("exit");
        print_construct_name(s);
        break;
    case stmk_cycle:
        print_keyword("cycle");
        print_construct_name(s);
        break;
    case stmk_where: print_where(s, recursive); break;
    case stmk_alloc:
        print_allocate(s);
        print_stat(s);
        break;
    case stmk_dealloc:
        print_keyword("deallocate (");
        print_expressions("", s->dealloc_list, "");
        print_stat(s);
        break;
    case stmk_nullify:
        print_keyword("nullify (");
        print_expressions("", s->expr, ")\n");
        break;
    case stmk_open: print_io(s, "open (", "open ("); break;
    case stmk_close: print_io(s, "close (", "close ("); break;
    case stmk_read: print_io(s, "read (", "init_read("); break;
    case stmk_write: print_write(s); break;
    case stmk_inquire: print_io(s, "inquire (", "inquire ("); break;
    case stmk_backspace: print_io(s, "backspace (", "backspace ("); break;
    case stmk_endfile: print_io(s, "endfile (", "endfile ("); break;
    case stmk_rewind: print_io(s, "rewind (", "rewind ("); break;
    case stmk_io_item:
        print_keyword("io_process(");
        print_expressions("", s->expr, ")\n");
        break;
    case stmk_io_term: print_keyword("finish_io_processing\n"); break;
    default: break;
    }
}

} // namespace

void print_statement(il_header *header, const statement *s, bool recursive) {
    printed_header = header;
    if (recursive && has_text(s)) {
        print_line_comment(s);
    }
    deep_call([&] {
        print_statement_here(s, recursive);
        return true;
    });
}

void print_program_unit(object *unit) {
    if (unit->storage_class == sc_module || unit->storage_class == sc_program ||
        unit->storage_class == sc_external || unit->storage_class == sc_blockdata) {
        printed_unit = unit;
    }
    print_unit_head(unit);
    const scope *const s = unit->variant.assoc_scope;
    if (s) {
        clear_print_marks(s);
        print_declarations(s, unit);
        print_nested(s->assoc_block);
        print_label_alone();
        bool contains = false;
        for (object *o = s->objects; o; o = o->next) {
            if (o->storage_class == sc_internal && o->variant.assoc_scope) {
                if (!contains) {
                    print_end("contains");
                    contains = true;
                }
                print_program_unit(o);
            }
        }
    }
    print_hook("%send %s", margin, unit_word(unit));
    print_hook(unit->source_corresp.name ? " %s\n" : "\n", name_of(unit));
}

namespace {

bool is_unit(const object *o) {
    const enum storage_class c = o->storage_class;
    return c >= sc_external && c <= sc_internal && c != sc_intrinsic && o->variant.assoc_scope &&
           !o->is_fortran_entry;
}

} // namespace

void regenerate_fortran(il_header *header) {
    set_print_hook(nullptr);
    printed_header = header;
    printed_unit = nullptr;
    last_file = nullptr;
    index_files(header);
    const source_file *const primary = header->primary_source_file;
    print_hook("!     Source file %s\n\n", primary && primary->full_name ? primary->full_name : "");
    for (const source_file *f = primary ? primary->first_child_file : nullptr; f; f = f->next) {
        if (f->full_name) {
            print_hook("include '%s'\n", f->full_name);
        }
    }
    scope *const global = header->primary_scope;
    for (const type *t = global->types; t; t = t->next) {
        if (t->type_code == tk_derived_type) {
            print_derived_type(t, nullptr);
        }
    }
    for (const object *o = global->objects; o; o = o->next) {
        if (o->is_constant) {
            print_named_constant(o);
        } else if (o->storage_class == sc_local || o->storage_class == sc_associated) {
            print_declaration(o, nullptr);
        }
    }
    for (object *o = global->objects; o; o = o->next) {
        if (is_unit(o)) {
            clear_print_marks(global);
            print_program_unit(o);
        }
    }
}

} // namespace zf90
