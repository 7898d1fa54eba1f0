// The inside of the expression parser. What is open around the operand being read stands on a stack of
// `pending` entries; the machine stack does not grow with the depth of the source. Every construct has two
// functions: start_X reads its front, and continue_X(value) goes on behind the operand that it waited for.
// Both return the finished node, or null when an operand is to be read next for the entry on top.
//
// parser.cpp has the machine, the operators, groups and literals; designators.cpp names and what may follow
// them; constructors.cpp array constructors and implied DOs.
#pragma once

#include "expressions/parser.h"
#include "source/token_helpers.h"

#include <cstddef>

namespace zf90 {

enum pending_kind : std::uint8_t {
    pending_result, // the bottom of one call of the parser
    pending_prefix,
    pending_binary,
    pending_group, // parentheses
    pending_list,  // name(...)
    pending_subscripts,
    pending_substring,
    pending_constructor,
    pending_implied_do
};

// What the operand is to the construct that waits for it.
enum operand_part : std::uint8_t {
    part_whole, // it is all of it
    part_first, // of a list item or a substring
    part_second,
    part_stride,
    part_element, // of an array constructor or implied DO
    part_initial,
    part_final,
    part_increment
};

// The binding levels of operators. An operand is read at a level: what binds weaker ends it.
inline constexpr std::uint8_t level_any = 0;
inline constexpr std::uint8_t level_none = 255; // not even operators

struct pending {
    pending_kind kind;
    operand_part part;
    std::uint8_t level;         // of the operand that is being read
    bool in_designator : 1;     // components may follow
    bool failed : 1;            // in error; of pending_result, a construct was not closed
    bool keyword_seen : 1;      // pending_list
    bool keyword_missed : 1;    // pending_list: reported
    bool has_triplet : 1;       // pending_list
    bool waits_for_comma : 1;   // its stop count is raised
    bool data_context : 1;      // pending_implied_do
    bool variable_in_force : 1; // pending_implied_do: pushed by push_implied_do_variable
    int rank;                   // pending_subscripts: the count that is due, -1 if it is not known
    int count;                  // pending_subscripts: so far
    source_pos position;        // of the construct, or of the operator
    source_pos item_pos;        // pending_list: of the item; pending_implied_do: of the variable
    struct symbol *symbol;      // of the operator, the name, the variable
    expr_node *node;            // left operand, base, implied DO
    expr_node *item;            // of a list, while it is read
    expr_node *first_item;      // of a list
    expr_node *last_item;
    struct atom *keyword;  // of the item
    io_specifier selector; // of the item, if `is_specifier`
    bool is_specifier;
    element_parser parse_element; // pending_implied_do: null for expressions
};

// References to entries last until the next push.
pending &push_pending(pending_kind kind, source_pos position);
pending pop_pending();
pending &top_pending();

// Whether an implied DO that is open has this control variable.
bool controls_implied_do(const symbol *s);

expr_node *new_node(expr_node_kind kind, source_pos position);
expr_node *new_error_at(source_pos position);
void append_item(pending &list, expr_node *item);

// Whether a "," or "=" stands directly within the parentheses that the current "(" opens.
bool group_has(token_kind token);

// Reports at the current token, unless the place within the expression has been lost.
void report_parse_error(error_code code);
void parse_error(error_code code); // and recovers

// Expects the token that closes a construct, and reads the next one. If it is missing, goes on behind the one
// that would fit; false, with the place lost, if there is none.
bool close_with(token_kind token, error_code code);
bool skip_behind(token_kind token); // the same without a message, behind an error that was reported

// The keyword or specifier word in front of an item, if there is one.
void read_keyword(pending &item);
void give_keyword(const pending &item, expr_node *node);

expr_node *start_primary();

// designators.cpp
expr_node *start_name();
expr_node *start_list(symbol *s, source_pos position, bool in_designator);
expr_node *continue_list(expr_node *value);
expr_node *continue_subscripts(expr_node *value);
expr_node *start_substring(expr_node *base, bool in_designator);
expr_node *continue_substring(expr_node *value);

// constructors.cpp
expr_node *start_element();
expr_node *start_constructor();
expr_node *continue_constructor(expr_node *value);
expr_node *start_implied_do(element_parser parse_element, bool data_context);
expr_node *continue_implied_do(expr_node *value);

} // namespace zf90
