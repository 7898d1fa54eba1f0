// The inside of the folder: what its files need of each other.
//
// folding.cpp has the walk over the kinds of nodes, operations, constructors and named constants;
// fold_sections.cpp parts of values, by component, subscript, position or section; fold_elementwise.cpp the
// elemental intrinsics; fold_inquiries.cpp those that ask about types and kinds; fold_transforms.cpp those
// that take values as a whole.
#pragma once

#include "constants/folding.h"
#include "il/entries.h"

#include <vector>

namespace zf90 {

// What came of folding a node. The order has no meaning.
enum class fold_outcome : std::uint8_t {
    failed,   // in error; reported
    never,    // no constant
    not_here, // only where it must be a constant
    open,     // it depends on the variable of an implied DO, which has no value now
    folded
};

// Folds a node of any kind. The value is cleared unless the outcome is `folded`.
fold_outcome fold_node(expr_node *node, fold_value &value, bool must_fold);

// The same for what must be a scalar integer to be of use.
fold_outcome fold_integer(expr_node *node, std::int32_t &value, bool must_fold);

// Reports at a node and makes it an error node.
fold_outcome fold_failure(error_code code, expr_node *culprit);

// The outcome for a value that has too many elements to be worked out.
fold_outcome too_large(expr_node *node, bool must_fold);

// The elements that one attempt may make, and the rounds of implied DOs that it may run. An array of a few
// million elements is legal; what is beyond would take all memory, or forever.
inline constexpr std::uint32_t largest_element_count = 1u << 22;
inline constexpr std::uint32_t largest_count_without_need = 1u << 20; // where it need not fold

// All attempts without need together make no more than these, but for short arrays: many statements with
// parts of one large constant would take memory out of all proportion to their text.
inline constexpr std::uint32_t largest_total_without_need = 1u << 22;
inline constexpr std::uint32_t short_array_count = 64;

// Texts and other areas of bytes beyond this size are not worked out.
inline constexpr std::int64_t largest_folded_size = std::int64_t{1} << 24;

inline bool is_present(const expr_node *e) { return e && e->node_kind != enk_empty; }

// ---- aggregates

// An aggregate of the node's type that has no elements yet.
fold_value new_aggregate(const expr_node *node);

// Appends an element. False if the value gets too large, see too_large.
bool append_element(fold_value &aggregate, const fold_value &element);
bool append_copy(fold_value &aggregate, const constant *element);

// All elements of an array value, as copies.
bool append_all(fold_value &aggregate, const fold_value &array);

// A walk over the elements of an aggregate, repeated ones as often as they are repeated.
struct element_cursor {
    const constant *at;
    std::uint32_t taken; // of a repetition
};

inline element_cursor elements_of(const fold_value &aggregate) { return {aggregate.first_constant, 0}; }
const constant *next_element(element_cursor &cursor); // null behind the last one

// Counts up to `limit`.
std::int64_t element_count(const fold_value &aggregate, std::int64_t limit);

// All elements, or some more than an attempt may make.
std::vector<const constant *> element_vector(const fold_value &aggregate);

// The element at an offset in element order, or null. The first access to a long list makes a table of it:
// only lists that stay are to be asked, not the elements of a value in the making.
const constant *nth_element(const constant *list, std::int64_t index);
void forget_element_tables();

// ---- kinds of nodes

fold_outcome fold_field(expr_node *node, fold_value &value, bool must_fold);
fold_outcome fold_subscript(expr_node *node, fold_value &value, bool must_fold);
fold_outcome fold_substring(expr_node *node, fold_value &value, bool must_fold);
fold_outcome fold_section(expr_node *node, fold_value &value, bool must_fold);
fold_outcome fold_intrinsic(expr_node *node, fold_value &value, bool must_fold);

// ---- intrinsics

// `node` is the call; the value has its position and no value yet.
fold_outcome fold_elementwise(expr_node *node, fold_value &value, bool must_fold);
fold_outcome fold_trim(expr_node *node, fold_value &value, bool must_fold);
fold_outcome fold_repeat(expr_node *node, fold_value &value, bool must_fold);
fold_outcome fold_reshape(expr_node *node, fold_value &value, bool must_fold);
fold_outcome fold_transfer(expr_node *node, fold_value &value, bool must_fold);
fold_outcome fold_kind_inquiry(expr_node *node, fold_value &value);
fold_outcome fold_selected_kind(expr_node *node, fold_value &value, bool must_fold);
fold_outcome fold_len(expr_node *node, fold_value &value, bool must_fold);
fold_outcome fold_bounds(expr_node *node, fold_value &value, bool must_fold);

// A default integer as a value of its own.
void set_integer_value(fold_value &value, std::int32_t integer);

// Counts the characters of a text without its trailing blanks.
std::int32_t trimmed_length(const fold_value &text);

// The length of a constant text; a negative one is 0.
std::int32_t text_length(const type *character);

} // namespace zf90
