// Each range is compared with all that come before it, by way of what these cover together, so that a
// construct with many values takes no more than a sorted search for each.
#include "statements/case_ranges.h"

#include "driver/diagnostics.h"
#include "il/constants.h"
#include "il/types.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <set>

namespace zf90 {

namespace {

// ---- values

// Texts compare as if the shorter one were filled with blanks.
int compare_texts(const constant *a, const constant *b) {
    const auto length_a = static_cast<std::size_t>(std::max(constant_length(a->type), 0));
    const auto length_b = static_cast<std::size_t>(std::max(constant_length(b->type), 0));
    const std::size_t common = std::min(length_a, length_b);
    if (common != 0) {
        if (const int order = std::memcmp(a->value.bytes, b->value.bytes, common)) {
            return order;
        }
    }
    const bool a_is_longer = length_a > length_b;
    const constant *const longer = a_is_longer ? a : b;
    for (std::size_t i = common; i < std::max(length_a, length_b); ++i) {
        const int order = int{longer->value.bytes[i]} - int{' '};
        if (order != 0) {
            return a_is_longer ? order : -order;
        }
    }
    return 0;
}

int compare_values(const constant *a, const constant *b) {
    if (a->type->type_code == tk_fcharacter) {
        return compare_texts(a, b);
    }
    const std::int32_t value_a = integer_value_of(a);
    const std::int32_t value_b = integer_value_of(b);
    return value_a < value_b ? -1 : value_a > value_b;
}

struct less_value {
    bool operator()(const constant *a, const constant *b) const { return compare_values(a, b) < 0; }
};

bool at_most(const constant *a, const constant *b) { return compare_values(a, b) <= 0; }

bool is_literal(const constant *c) { return !c || c->repr_kind == ck_value; }

// ---- what the earlier ranges of a construct cover

struct covered_values {
    const constant *lowest_start = nullptr; // of the ranges `low:`
    const constant *highest_end = nullptr;  // of the ranges `:high`
    std::set<const constant *, less_value> values;
    // The ranges `low:high` that are not empty, by `low`. None lies within another one, and none of them
    // meet: a range that meets one is reported, unless it holds it whole, and then takes its place.
    std::map<const constant *, const constant *, less_value> closed;
};

bool meets_open_start(const covered_values &covered, const constant *high) {
    return covered.lowest_start && at_most(covered.lowest_start, high);
}

bool meets_open_end(const covered_values &covered, const constant *low) {
    return covered.highest_end && at_most(low, covered.highest_end);
}

// Whether a value lies within one of the closed ranges.
bool is_in_closed(const covered_values &covered, const constant *value) {
    auto next = covered.closed.upper_bound(value);
    return next != covered.closed.begin() && at_most(value, (--next)->second);
}

// Whether there is a value from `low` to `high`.
bool has_value_within(const covered_values &covered, const constant *low, const constant *high) {
    const auto next = covered.values.lower_bound(low);
    return next != covered.values.end() && at_most(*next, high);
}

bool is_empty(const case_range *r) { return r->range_kind == crk_gl && !at_most(r->low, r->high); }

bool overlaps(const covered_values &covered, const case_range *r) {
    switch (r->range_kind) {
    case crk_le:
        return covered.lowest_start || meets_open_end(covered, r->low) ||
               (!covered.closed.empty() && at_most(r->low, covered.closed.rbegin()->second)) ||
               (!covered.values.empty() && at_most(r->low, *covered.values.rbegin()));
    case crk_ge:
        return covered.highest_end || meets_open_start(covered, r->high) ||
               (!covered.closed.empty() && at_most(covered.closed.begin()->first, r->high)) ||
               (!covered.values.empty() && at_most(*covered.values.begin(), r->high));
    case crk_gl:
        // Only the ends are looked for in closed ranges: a range that holds an earlier one whole is not
        // reported. Intended.
        return !is_empty(r) && (meets_open_start(covered, r->high) || meets_open_end(covered, r->low) ||
                                is_in_closed(covered, r->low) || is_in_closed(covered, r->high) ||
                                has_value_within(covered, r->low, r->high));
    case crk_eq:
        return meets_open_start(covered, r->low) || meets_open_end(covered, r->low) ||
               is_in_closed(covered, r->low) || covered.values.count(r->low) != 0;
    default: return false;
    }
}

void cover(covered_values &covered, const case_range *r) {
    switch (r->range_kind) {
    case crk_le: covered.lowest_start = r->low; break;
    case crk_ge: covered.highest_end = r->high; break;
    case crk_gl:
        if (!is_empty(r)) {
            auto held = covered.closed.lower_bound(r->low);
            while (held != covered.closed.end() && at_most(held->first, r->high)) {
                held = covered.closed.erase(held);
            }
            covered.closed.emplace(r->low, r->high);
        }
        break;
    case crk_eq: covered.values.insert(r->low); break;
    default: break;
    }
}

// ---- the ranges of a construct

bool check_value_type(const constant *value, const type *selector) {
    if (!value || value->type->type_code == tk_error) {
        return true;
    }
    if (value->type->type_code == selector->type_code &&
        (selector->type_code != tk_fcharacter || value->type->kind == selector->kind)) {
        return true;
    }
    error_at(msg_case_value_must_be_of_same_type_as_case, value->source_pos);
    return false;
}

bool check_range_form(const case_range *r, const type *selector) {
    bool good = check_value_type(r->low, selector);
    good &= check_value_type(r->high, selector);
    if (good && selector->type_code == tk_logical && r->range_kind != crk_eq) {
        error_at(msg_colon_must_not_be_used_in_case_expression, (r->low ? r->low : r->high)->source_pos);
        good = false;
    }
    return good;
}

const statement *first_in(const statement *body) {
    return body && body->kind == stmk_block ? body->statements : body;
}

} // namespace

bool check_case_ranges(const statement *select) {
    const type *const selector = select->expr->type;
    covered_values covered;
    bool good = true;
    for (const statement *s = first_in(select->body_statement); s; s = s->next) {
        if (s->kind != stmk_case) {
            continue;
        }
        for (const case_range *r = s->case_range_list; r; r = r->next) {
            good &= check_range_form(r, selector);
            if (!good || !is_literal(r->low) || !is_literal(r->high)) {
                continue;
            }
            if (overlaps(covered, r)) {
                error_at(msg_overlap_of_case_value_for_given_case_construct,
                         (r->low ? r->low : r->high)->source_pos);
                good = false;
            } else {
                cover(covered, r);
            }
        }
    }
    return good;
}

} // namespace zf90
