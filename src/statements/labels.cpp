// Statement labels: one symbol and one entry for each label of a program unit.
#include "statements/labels.h"

#include "declarations/scopes.h"
#include "il/entries.h"
#include "source/token_helpers.h"
#include "statements/classify.h"
#include "statements/constructs.h"

#include <algorithm>

namespace zf90 {

namespace {

// The row of the program unit: labels don't belong to the derived types and the like within it.
std::int32_t label_depth() {
    std::int32_t depth = curr_scope_depth;
    while (depth > 0 && scope_stack[depth].row_kind != sr_unit) {
        --depth;
    }
    return depth;
}

symbol *enter_label(const name_locator &name, std::int32_t depth) {
    symbol *s = new_symbol(sk_label, name, depth);
    s->branch_construct = 0;
    label *l = new_label();
    s->entity = l;
    tie_to_symbol(l, s);
    if (depth > 0) {
        add_label(scope_stack[depth], l);
    }
    return s;
}

// Whether the label was in error by its digits, which has been reported: nothing can carry it.
bool has_bad_digits(const name_locator &name) {
    if (name.atom->length == 1 && name.atom->spelling[0] == '0') {
        return true;
    }
    return curr_token == tok_label && curr_token_pos == name.position &&
           std::count_if(token_start, line_cursor, [](char c) { return c >= '0' && c <= '9'; }) >
               max_label_digits;
}

// What is wrong with a reference to a defined label of that kind.
error_code mismatch_of_use(label_kind kind, label_use use) {
    switch (kind) {
    case lk_unknown: return error_code{}; // its statement was in error
    case lk_executable:
    case lk_control: return use == label_use_format ? msg_label_must_be_format_label : error_code{};
    case lk_specification:
        return use == label_use_format ? msg_label_must_be_format_label
                                       : msg_label_must_be_executable_statement_label;
    case lk_format:
        return use == label_use_format || use == label_use_assign
                   ? error_code{}
                   : msg_label_must_be_executable_statement_label;
    case lk_else_or_elseif:
        return use == label_use_format   ? msg_label_must_be_format_label
               : use == label_use_branch ? msg_branching_to_else_or_else_if_statement_is_not_allowed
                                         : msg_label_must_be_executable_statement_label;
    case label_kind_count: break;
    }
    return error_code{};
}

// What is wrong with a definition of that kind after earlier references.
error_code mismatch_of_definition(const symbol *s, label_kind kind) {
    const bool executable = kind == lk_executable || kind == lk_control;
    if (kind == lk_unknown) {
        return error_code{};
    }
    if ((s->aux2 & lf_branch) != 0 && !executable) {
        return kind == lk_else_or_elseif ? msg_branching_to_else_or_else_if_statement_is_not_allowed
                                         : msg_use_of_label_is_inconsistent_with_previous_use;
    }
    if ((s->aux2 & lf_format) != 0 && kind != lk_format) {
        return msg_use_of_label_is_inconsistent_with_previous_use;
    }
    return error_code{};
}

} // namespace

symbol *lookup_label(const name_locator &name) {
    const std::int32_t depth = label_depth();
    for (symbol *s = name.atom->first_symbol; s && s->scope_depth >= depth; s = s->next_same_name) {
        if (s->scope_depth == depth && s->kind == sk_label) {
            return s;
        }
    }
    return nullptr;
}

symbol *define_label(const name_locator &name, label_kind kind, source_pos position) {
    const std::int32_t depth = label_depth();
    if (depth < 1) {
        return nullptr;
    }
    symbol *s = lookup_label(name);
    if (!s) {
        s = enter_label(name, depth);
    }
    if (const error_code code = mismatch_of_definition(s, kind); code != error_code{}) {
        error_at(code, position);
    }
    s->aux2 |= lf_defined;
    note_declaration(s, position, true);
    label *l = entity_as<label>(s);
    tie_to_symbol(l, s);
    set_label_kind(l, kind);
    // A label on END IF stands behind the construct, which is still open here.
    if (kind == lk_executable && curr_stmt_kind != stmtk_end_if) {
        note_label_position(s, true, position);
    }
    return s;
}

symbol *refer_to_label(const name_locator &name, label_use use) {
    symbol *s = lookup_label(name);
    if (!s) {
        s = enter_label(name, label_depth());
    }
    if (has_bad_digits(name)) {
        s->aux2 |= lf_reported;
    }
    bool can_be_branched_to = use == label_use_branch;
    if ((s->aux2 & lf_defined) != 0) {
        const label_kind kind = entity_as<label>(s)->kind;
        if (const error_code code = mismatch_of_use(kind, use); code != error_code{}) {
            error_at(code, name.position);
        }
        can_be_branched_to = can_be_branched_to && (kind == lk_executable || kind == lk_else_or_elseif);
    } else if (use == label_use_branch || use == label_use_do) {
        s->aux2 |= lf_branch;
    } else if (use == label_use_format) {
        s->aux2 |= lf_format;
    }
    note_use(use_referenced, s, name.position);
    if (can_be_branched_to) {
        note_label_position(s, false, name.position);
    }
    return s;
}

symbol *read_label_reference(label_use use) {
    if (curr_token != tok_label) {
        syntax_error(msg_expected_label);
        return nullptr;
    }
    symbol *s = refer_to_label(curr_name, use);
    next_token(0);
    return s;
}

void excuse_label(symbol *label) {
    if (label) {
        label->aux2 |= lf_reported;
    }
}

namespace {

// The number of the construct that a label being defined belongs to. One on END SELECT belongs to all
// branches of its construct, whichever of them is the last.
std::uint32_t place_of_definition(const symbol *label) {
    if (const int loop = loop_of_label(label); loop >= 0) {
        return construct_stack[loop].construct_number;
    }
    if (curr_stmt_kind == stmtk_end_select) {
        if (const int select = nearest_construct(cons_select); select >= 0) {
            return construct_stack[select].first_number;
        }
    }
    return top_construct().construct_number;
}

} // namespace

// The number of a construct is greater than those of all constructs around it, and no construct that was
// closed has a number as low as one that is still open around it. So the least number from which a label has
// been referred to tells whether all the references stand within a later construct.
void note_label_position(symbol *label, bool is_definition, source_pos position) {
    if (construct_depth < 0) {
        return;
    }
    const std::uint32_t seen = label->branch_construct;
    if (!is_definition) {
        if ((label->aux2 & lf_defined) == 0) {
            const std::uint32_t here = top_construct().construct_number;
            if (seen == 0 || seen > here) {
                label->branch_construct = here;
            }
        } else if (seen != 0 && construct_of_number(seen) < 0 && !constructs_in_doubt) {
            warning_at(msg_branch_destination_is_within_if_block_or_do, position);
        }
        return;
    }
    const std::uint32_t here = place_of_definition(label);
    if (seen != 0 && seen < here && !constructs_in_doubt) {
        warning_at(msg_label_is_referenced_from_outside_if_block_or_do, position);
    }
    label->branch_construct = here;
}

label *new_loop_label() {
    label *l = new_label();
    set_label_kind(l, lk_control);
    l->source_corresp.decl_position = stmt_pos;
    l->source_corresp.scope_depth = static_cast<std::uint8_t>(curr_scope_depth);
    return l;
}

} // namespace zf90
