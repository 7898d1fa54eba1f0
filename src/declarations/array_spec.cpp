// Array specifications: the bounds of each dimension, and what they make of the shape.
#include "declarations/declarations.h"
#include "declarations/symbols.h"
#include "driver/diagnostics.h"
#include "expressions/parser.h"
#include "il/entries.h"
#include "il/types.h"
#include "source/token_helpers.h"
#include "source/tokens.h"

namespace zf90 {

namespace {

constexpr unsigned max_rank = 7;
constexpr std::uint32_t bound_mode = lex_signed | lex_lone_star;

// Names in a bound are marked as used there, and not as referenced.
class bound_context {
public:
    bound_context() : before_(used_in_bound) { used_in_bound = true; }
    ~bound_context() { used_in_bound = before_; }
    bound_context(const bound_context &) = delete;
    bound_context &operator=(const bound_context &) = delete;

private:
    bool before_;
};

// Whether the list has its ")": if not, attributes and entities may pass for dimensions.
bool is_closed() {
    const saved_place place;
    return skip_to_closing(tok_rparen);
}

struct array_spec {
    bound lower[max_rank];
    bound upper[max_rank];
    unsigned rank = 0;
    enum shape_kind state = deferred_shape; // until a dimension decides
    bool failed = false;
    bool bad_bound = false; // one could not be read: what follows it may belong to it
    bool reported_rank = false;
    bool reported_extras = false;

    // A dimension of another sort than those before it.
    void incompatible() {
        if (!bad_bound && is_closed()) {
            error_at(msg_incompatible_array_shape_specifier, curr_token_pos);
        }
        failed = true;
    }
    // A bound in error says nothing about the shape.
    void make_explicit_unless(const bound &end) {
        if (end.kind == bound_error) {
            failed = bad_bound = true; // how many dimensions were meant is not certain either
            return;
        }
        if (rank > 1 && state != explicit_shape) {
            incompatible();
        }
        state = explicit_shape;
    }
    void make_assumed_size() {
        if (rank > 1 && state != explicit_shape) {
            incompatible();
        }
        state = assumed_size;
    }
    void make_assumed_shape() {
        if (state == explicit_shape) {
            incompatible();
        }
        state = assumed_shape;
    }
};

bound read_bound_expression() {
    bound b{};
    expr_node *expr = nullptr;
    const std::uint32_t errors_before = error_count;
    if (parse_expression(expr) && error_count == errors_before) {
        set_expression_bound(b, expr);
    } else {
        b.kind = bound_error;
    }
    return b;
}

bound bound_of_kind(bound_kind kind) {
    bound b{};
    b.kind = kind;
    return b;
}

// What follows the ":" behind a lower bound.
void read_upper_bound(array_spec &spec, bound &upper) {
    switch (next_token(bound_mode)) {
    case tok_rparen:
    case tok_comma:
        upper = bound_of_kind(bound_undefined);
        spec.make_assumed_shape();
        break;
    case tok_star:
        upper = bound_of_kind(bound_assumed);
        spec.make_assumed_size();
        next_token(0);
        break;
    default:
        upper = read_bound_expression();
        spec.make_explicit_unless(upper);
        break;
    }
}

void read_dimension(array_spec &spec, bound &lower, bound &upper) {
    set_constant_bound(lower, 1);
    if (curr_token == tok_colon) {
        lower = upper = bound_of_kind(bound_undefined);
        if (spec.state == explicit_shape) {
            spec.make_assumed_shape();
        }
        next_token(0);
    } else if (curr_token == tok_star) {
        upper = bound_of_kind(bound_assumed);
        spec.make_assumed_size();
        next_token(0);
    } else {
        {
            const stop_at stop({tok_colon});
            upper = read_bound_expression();
        }
        if (curr_token == tok_colon) {
            lower = upper;
            read_upper_bound(spec, upper);
        } else {
            spec.make_explicit_unless(upper);
        }
    }
}

// One dimension, or an extra one, which is read and thrown away.
void read_next_dimension(array_spec &spec) {
    if (spec.rank < max_rank && spec.state != assumed_size) {
        ++spec.rank;
        read_dimension(spec, spec.lower[spec.rank - 1], spec.upper[spec.rank - 1]);
        return;
    }
    if (spec.state == assumed_size) {
        if (!spec.reported_extras) {
            error_at(msg_assumed_size_dimension_must_be_last_extras_ignored, curr_token_pos);
        }
        spec.reported_extras = true;
    } else {
        if (!spec.reported_rank) {
            error_at(msg_maximum_rank_is_seven, curr_token_pos);
        }
        spec.reported_rank = spec.failed = true;
    }
    array_spec scratch;
    bound lower;
    bound upper;
    read_dimension(scratch, lower, upper);
}

type *make_array_type(const array_spec &spec, type *element, source_pos position) {
    type *t = new_array_type(element, spec.rank);
    t->source_corresp.decl_position = position;
    t->array.shape_kind = spec.state;
    for (unsigned i = 0; i < spec.rank; ++i) {
        t->array.bound->bounds[i] = spec.lower[i];
        t->array.bound->bounds[spec.rank + i] = spec.upper[i];
    }
    complete_type(t);
    return t;
}

} // namespace

type *read_array_spec(type *element) {
    const source_pos position = curr_token_pos;
    array_spec spec;
    {
        const bound_context context;
        const stop_at stop({tok_rparen, tok_comma});
        do {
            next_token(bound_mode);
            read_next_dimension(spec);
        } while (curr_token == tok_comma);
    }
    spec.failed =
        spec.failed || curr_token != tok_rparen; // the rest is unknown, though recovery may find ")"
    if (spec.bad_bound && curr_token != tok_rparen) {
        const stop_at stop({tok_rparen});
        recover_tokens(); // the error has been told
    }
    const bool closed = curr_token == tok_rparen || !spec.bad_bound;
    if (!closed || !accept_token(tok_rparen, msg_expected_rparen, 0) || spec.failed) {
        return nullptr;
    }
    return make_array_type(spec, element, position);
}

} // namespace zf90
