// The constructors' defaults, and the walk: its order, its marks, its depth.
#include "il/entries.h"

#include "declarations/symbols.h"
#include "il/types.h"
#include "support/front_end.h"

#include <cstring>

namespace zf90 {
namespace {

std::string trace;
std::size_t visits;

void note_visit(il_entry *entry, entry_kind kind, std::uint32_t size) {
    if (kind == kind_atom) {
        trace += std::string("'") + static_cast<atom *>(entry)->spelling + "' ";
        return;
    }
    trace += entry_kind_name(kind);
    if (size) {
        trace += std::to_string(size);
    }
    trace += ' ';
}

void count_visit(il_entry *, entry_kind, std::uint32_t) { ++visits; }

// A pass with a visitor flips the marks of names too, so the pass that follows it needs one as well.
void ignore_visit(il_entry *, entry_kind, std::uint32_t) {}

class WalkerTest : public FrontEndTest {
protected:
    // The visits of one pass from an entry.
    static std::string walked(il_entry *root, entry_kind kind, std::uint32_t size = 0) {
        trace.clear();
        walk_il(root, kind, size, nullptr, note_visit, nullptr, ignore_visit);
        return trace;
    }

    static atom *name(const char *text) {
        atom *a = nullptr;
        intern_name(text, a);
        return a;
    }

    static object *named_object(const char *text, storage_class c = sc_local) {
        object *o = new_object();
        o->source_corresp.name = name(text);
        o->storage_class = c;
        return o;
    }

    static expr_node *untyped(expr_node_kind kind) {
        expr_node *e = new_expr_node(kind);
        e->type = nullptr;
        return e;
    }

    static expr_node *reference(object *o) {
        expr_node *e = untyped(enk_object);
        e->object = o;
        return e;
    }
};

TEST_F(WalkerTest, ConstructorsStartFromTheSentinel) {
    const object *o = new_object();
    EXPECT_EQ(o->source_corresp.name, nullptr);
    EXPECT_TRUE(o->source_corresp.referenced);
    EXPECT_FALSE(o->source_corresp.host_associated);
    EXPECT_EQ(o->source_corresp.scope_depth, 255);
    EXPECT_EQ(o->storage_class, sc_unspecified);
    EXPECT_EQ(new_label()->kind, lk_unknown);
    EXPECT_EQ(new_case_range()->range_kind, crk_eq);
    EXPECT_EQ(null_constant.repr_kind, ck_error);
    EXPECT_EQ(null_constant.type, unknown_type());
    const input_output_description *j = new_input_output_description();
    EXPECT_EQ(j->unit_kind, iou_none);
    EXPECT_EQ(j->format_kind, iof_none);
    stmt_pos = {7, 9};
    EXPECT_EQ(new_statement(stmk_goto)->source_pos, (source_pos{7, 9}));
    error_pos = {3, 4};
    const expr_node *e = new_expr_node(enk_implied_do);
    EXPECT_EQ(e->source_pos, (source_pos{3, 4}));
    EXPECT_EQ(e->type, unknown_type());
    EXPECT_TRUE(e->allow_reordering);
    EXPECT_FALSE(e->intent_in);
    EXPECT_NE(e->do_info, nullptr);
    EXPECT_EQ(new_expr_node(enk_operation)->op_kind, eok_error);
    EXPECT_EQ(new_error_node()->type, error_type());
    const bound_info_entry *b = new_bound_info_entry(2);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(b->bounds[i].kind, bound_undefined);
    }
}

TEST_F(WalkerTest, ControlLabelsStartUnreferenced) {
    label *l = new_label();
    set_label_kind(l, lk_executable);
    EXPECT_TRUE(l->source_corresp.referenced);
    set_label_kind(l, lk_control);
    EXPECT_FALSE(l->source_corresp.referenced);
}

TEST_F(WalkerTest, RefsNeverPointAtRefs) {
    expr_node *target = new_expr_node(enk_object);
    expr_node *first = new_ref(target);
    expr_node *second = new_ref(first);
    EXPECT_EQ(second->reference, target);
    EXPECT_TRUE(target->multiply_referenced);
    EXPECT_FALSE(first->multiply_referenced);
    EXPECT_TRUE(second->intent_in);
}

TEST_F(WalkerTest, NamesComeBeforeTheirEntriesAndEntriesBeforeTheirChildren) {
    object *a = named_object("A");
    object *b = named_object("B");
    expr_node *sum = untyped(enk_operation);
    sum->operands = reference(a);
    sum->operands->keyword = name("X");
    sum->operands->next = reference(b);
    sum->operands->next->next = reference(a);
    EXPECT_EQ(walked(sum, kind_expr_node),
              "expr_node 'X' expr_node 'A' object expr_node 'B' object expr_node ");
}

TEST_F(WalkerTest, EachPassVisitsEverythingOnce) {
    object *a = named_object("A");
    a->assoc.routine = a; // a cycle
    const std::string once = walked(a, kind_object);
    EXPECT_EQ(once, "'A' object ");
    EXPECT_EQ(walked(a, kind_object), once);
    trace.clear();
    walk_il(a, kind_object, 0, note_visit, note_visit, note_visit, note_visit);
    EXPECT_EQ(trace, "object 'A' object object 'A' object ");
}

TEST_F(WalkerTest, WithoutAVisitorMarksFlipAllTheSame) {
    object *a = named_object("A");
    const std::uint32_t before = a->il_id;
    walk_il(a, kind_object, 0, nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ(a->il_id, before);
}

TEST_F(WalkerTest, SpecifierNodesHaveNoKeyword) {
    expr_node *e = reference(named_object("A"));
    e->is_specifier = true;
    e->selector = iosk_iostat;
    EXPECT_EQ(walked(e, kind_expr_node), "expr_node 'A' object ");
}

TEST_F(WalkerTest, ChildrenOfExpressionNodes) {
    object *a = named_object("A");
    object *r = named_object("R", sc_intrinsic);
    interface *g = new_interface();
    g->source_corresp.name = name("G");
    expr_node *call = untyped(enk_call);
    call->operands = reference(a);
    call->routine = r;
    call->interface = g;
    EXPECT_EQ(walked(call, kind_expr_node), "expr_node expr_node 'A' object 'R' object 'G' interface ");

    expr_node *generic = untyped(enk_generic_call);
    generic->generic = g;
    generic->operands = reference(a);
    EXPECT_EQ(walked(generic, kind_expr_node), "expr_node 'G' interface expr_node 'A' object ");

    expr_node *triplet = untyped(enk_triplet);
    triplet->first = reference(a);
    triplet->stride = reference(r);
    EXPECT_EQ(walked(triplet, kind_expr_node), "expr_node expr_node 'A' object expr_node 'R' object ");

    expr_node *element = untyped(enk_subscript);
    element->array_expr = reference(a);
    element->ind_list = reference(r);
    EXPECT_EQ(walked(element, kind_expr_node), "expr_node expr_node 'A' object expr_node 'R' object ");

    expr_node *loop = untyped(enk_implied_do);
    loop->expr_list = reference(a);
    loop->do_info->variable = reference(r);
    EXPECT_EQ(walked(loop, kind_expr_node), "expr_node expr_node 'A' object do_loop expr_node 'R' object ");

    expr_node *field = untyped(enk_field);
    field->base_expr = reference(a);
    field->field_var = r;
    EXPECT_EQ(walked(field, kind_expr_node), "expr_node expr_node 'A' object 'R' object ");
}

TEST_F(WalkerTest, ChildrenOfTypes) {
    type *array = new_type(tk_farray);
    array->array.element_type = new_type(tk_integer);
    array->array.rank = 2;
    array->array.bound = new_bound_info_entry(2);
    array->array.bound->bounds[3].kind = bound_expression;
    array->array.bound->bounds[3].expr = reference(named_object("N"));
    EXPECT_EQ(walked(array, kind_type), "type type bound_info_entry40 expr_node 'N' object ");

    type *same = new_type(tk_farray);
    same->array.shape_kind = same_shape;
    same->array.args = reference(named_object("M"));
    EXPECT_EQ(walked(same, kind_type), "type expr_node 'M' object ");

    type *text = new_type(tk_fcharacter);
    text->character.length.kind = bound_same_as;
    text->character.length.expr = reference(named_object("C"));
    EXPECT_EQ(walked(text, kind_type), "type expr_node 'C' object ");

    type *routine = new_type(tk_routine);
    routine->routine.return_type = new_type(tk_void);
    routine->routine.param_type_list = new_param_type();
    routine->routine.param_type_list->source_corresp.name = name("P");
    routine->routine.param_type_list->next = new_param_type();
    routine->routine.assoc_routine = named_object("F", sc_intrinsic);
    EXPECT_EQ(walked(routine, kind_type), "type type 'P' param_type param_type 'F' object ");
}

TEST_F(WalkerTest, PrivateComponentsAreLeftOutOfModules) {
    type *t = new_type(tk_derived_type);
    t->source_corresp.name = name("T");
    t->derived.first_field = named_object("X", sc_type_field);
    t->derived.module = named_object("M", sc_intrinsic);
    EXPECT_EQ(walked(t, kind_type), "'T' type 'X' object 'M' object ");
    module_mode = true;
    EXPECT_EQ(walked(t, kind_type), "'T' type 'M' object ");
    t->derived.first_field->is_public = true;
    EXPECT_EQ(walked(t, kind_type), "'T' type 'X' object 'M' object ");
    module_mode = false;
}

TEST_F(WalkerTest, ChildrenOfObjectsByStorageClass) {
    object *other = named_object("O", sc_intrinsic);
    struct scope *u = new_scope();
    const auto children = [&](storage_class c) {
        object *o = named_object("A", c);
        o->variant.assoc_scope = nullptr;
        o->assoc.routine = nullptr;
        switch (c) {
        case sc_local:
        case sc_common:
            o->variant.initializer = &null_constant;
            o->assoc.routine = other;
            break;
        case sc_associated: o->assoc.variable = other; break;
        case sc_implied_do_var: o->assoc.implied_do = untyped(enk_empty); break;
        case sc_use_associated:
            o->variant.initializer = &null_constant;
            o->assoc.module = other;
            break;
        case sc_type_field: o->assoc.derived_type = new_type(tk_derived_type); break;
        case sc_mod_proc: o->assoc.module = other; break;
        default:
            o->variant.assoc_scope = u;
            o->assoc.routine = other;
            break;
        }
        return walked(o, kind_object).substr(std::strlen("'A' object "));
    };
    null_constant.type = nullptr;
    EXPECT_EQ(children(sc_local), "constant 'O' object ");
    EXPECT_EQ(children(sc_common), "constant ");
    EXPECT_EQ(children(sc_associated), "'O' object ");
    EXPECT_EQ(children(sc_implied_do_var), "expr_node ");
    EXPECT_EQ(children(sc_use_associated), "constant 'O' object ");
    EXPECT_EQ(children(sc_type_field), "type ");
    EXPECT_EQ(children(sc_mod_proc), "'O' object ");
    EXPECT_EQ(children(sc_intrinsic), "");
    for (storage_class c : {sc_external, sc_program, sc_blockdata, sc_module}) {
        EXPECT_EQ(children(c), "scope ");
    }
    for (storage_class c : {sc_internal, sc_stmt_func, sc_unspecified}) {
        EXPECT_EQ(children(c), "'O' object scope ");
    }
    module_mode = true;
    for (storage_class c : {sc_external, sc_program, sc_blockdata, sc_module}) {
        EXPECT_EQ(children(c), "");
    }
    for (storage_class c : {sc_internal, sc_stmt_func, sc_unspecified}) {
        EXPECT_EQ(children(c), "'O' object ");
    }
    module_mode = false;

    object *result = named_object("A");
    result->is_result = true;
    result->variant.result_var_function = other;
    EXPECT_EQ(walked(result, kind_object), "'A' object 'O' object ");
}

TEST_F(WalkerTest, ScopesAreWalkedInOrderAndKnownWhileInside) {
    static struct scope *seen_inside;
    static const object *wanted;
    struct scope *u = new_scope();
    u->assoc_routine = named_object("S", sc_intrinsic);
    u->parameters = new_object_list_member();
    u->parameters->object = named_object("P");
    u->function_result_var = named_object("R");
    u->types = new_type(tk_derived_type);
    u->objects = named_object("A");
    u->objects->next = named_object("B");
    u->labels = new_label();
    u->entries = new_entry_description();
    u->namelist_groups = new_namelist_group();
    u->interfaces = new_interface();
    u->assoc_block = new_statement(stmk_block);
    EXPECT_EQ(walked(u, kind_scope),
              "scope object_list_member 'P' object 'R' object type 'A' object 'B' object "
              "label entry_description namelist_group interface 'S' object statement ");
    wanted = u->objects->next;
    walk_il(
        u, kind_scope, 0, nullptr,
        [](il_entry *entry, entry_kind, std::uint32_t) {
            if (entry == wanted) {
                seen_inside = walking_scope;
            }
        },
        nullptr, ignore_visit);
    EXPECT_EQ(seen_inside, u);
    EXPECT_EQ(walking_scope, nullptr);

    u->assoc_routine = nullptr; // the global scope: its types are reached through their users
    EXPECT_EQ(walked(u, kind_scope).find("type"), std::string::npos);
}

TEST_F(WalkerTest, ChildrenOfStatements) {
    const auto block = [] { return new_statement(stmk_block); };
    statement *s = new_statement(stmk_if);
    s->expr = untyped(enk_empty);
    s->then_statement = block();
    s->else_statement = block();
    EXPECT_EQ(walked(s, kind_statement), "statement expr_node statement statement ");

    s = block();
    s->statements = new_statement(stmk_return);
    s->statements->next = s->last_statement = new_statement(stmk_return);
    EXPECT_EQ(walked(s, kind_statement), "statement statement statement ");
    EXPECT_EQ(walked(s->statements, kind_statement), "statement ") << "`next` belongs to the owner";

    s = new_statement(stmk_ido);
    s->loop_statement = block();
    s->do_loop = new_do_loop();
    EXPECT_EQ(walked(s, kind_statement), "statement statement do_loop ");

    s = new_statement(stmk_goto);
    s->label = new_label();
    set_label_kind(s->label, lk_format);
    s->label->format_constant = &null_constant;
    null_constant.type = nullptr;
    EXPECT_EQ(walked(s, kind_statement), "statement label constant ");

    s = new_statement(stmk_case);
    s->case_range_list = new_case_range();
    s->case_range_list->next = new_case_range();
    s->case_statements = block();
    EXPECT_EQ(walked(s, kind_statement), "statement case_range case_range statement ");

    s = new_statement(stmk_alloc);
    s->alloc_list = new_alloc();
    s->alloc_list->var = untyped(enk_empty);
    s->alloc_list->bounds = new_bound_info_entry(1);
    s->alloc_list->rank = 1;
    s->stat_variable = untyped(enk_empty);
    EXPECT_EQ(walked(s, kind_statement), "statement alloc expr_node bound_info_entry24 expr_node ");

    s = new_statement(stmk_read);
    s->io_descr = new_input_output_description();
    s->io_descr->unit_kind = iou_external;
    s->io_descr->unit_expr = untyped(enk_empty);
    s->io_descr->format_kind = iof_namelist_directed;
    s->io_descr->format.namelist_group = new_namelist_group();
    s->io_descr->specifier_list = untyped(enk_empty);
    EXPECT_EQ(walked(s, kind_statement),
              "statement input_output_description expr_node namelist_group expr_node ");

    // EXIT leads to the statement of its construct, and that back to it.
    statement *loop = new_statement(stmk_while);
    loop->body_statement = new_statement(stmk_exit);
    loop->body_statement->constr_label = loop;
    EXPECT_EQ(walked(loop, kind_statement), "statement statement ");
}

TEST_F(WalkerTest, DepthCostsNoStack) {
    constexpr int depth = 200000;
    statement *nest = nullptr;
    expr_node *deep = reference(named_object("A"));
    for (int i = 0; i < depth; ++i) {
        statement *outer = new_statement(stmk_if);
        outer->then_statement = nest;
        nest = outer;
        expr_node *negated = untyped(enk_operation);
        negated->operands = deep;
        deep = negated;
    }
    nest->expr = deep;
    visits = 0;
    walk_il(nest, kind_statement, 0, nullptr, count_visit, nullptr, ignore_visit);
    EXPECT_EQ(visits, 2u * depth + 3);

    object *chain = named_object("B");
    object *tail = chain;
    for (int i = 0; i < depth; ++i) {
        tail->next = new_object();
        tail->assoc.routine = tail->next; // a chain of links beside the list
        tail = tail->next;
        tail->storage_class = sc_local;
    }
    visits = 0;
    struct scope *u = new_scope();
    u->objects = chain;
    walk_il(u, kind_scope, 0, nullptr, count_visit, nullptr, ignore_visit);
    EXPECT_EQ(visits, depth + 3u);
}

} // namespace
} // namespace zf90
