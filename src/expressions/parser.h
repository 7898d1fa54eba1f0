// Expressions from tokens: an untyped tree in which nothing is classified but the shape of the text. A name
// is an `enk_symbol`, a name with a list an `enk_symbol_call` (an array element, a call, a substring, a
// structure constructor: who knows), and an operator a call of the operator's symbol. What it all means is
// found out by check_expression (expressions/check.h), when everything has been declared.
//
// A reader starts at the current token, which was read with lex_signed where an operand begins, and leaves
// the first token behind what it has read. What is in error becomes an `enk_error`, never a null, and has
// been reported. Depth of the source costs memory here, not stack.
#pragma once

#include "il/records.h"
#include "source/tokens.h"

namespace zf90 {

// False if the node is an `enk_error`. `error_pos` is the start of the expression then and otherwise.
bool parse_expression(expr_node *&node);

// A name and what may follow it as a part of a designator, at a current name. False for an error node.
bool parse_designator(expr_node *&node);

// An expression with an optional KEYWORD= or specifier word in front, read with lex_keyword_arg or
// lex_specifier, which goes into the node. False for an error node.
bool parse_actual_item(expr_node *&node);

// The selector that a specifier word stands for; iosk_last for any other token.
io_specifier specifier_of(token_kind token);

// The list in parentheses behind the name of a symbol: the call of it, at `position`. Next to expressions it
// takes section triplets and alternate return labels.
expr_node *parse_actual_list(symbol *s, source_pos position);

// A complex constant, from its "(". Null if it is in error.
struct constant *parse_complex_constant();

// Reads an element of a list: sets the node, and is false for an error.
using element_parser = bool (*)(expr_node *&element);

// An implied DO, from its "(". In DATA its variable is one of its own, that hides the outer name; an input or
// output list uses the variable of the program. False for an error node.
bool parse_implied_do(element_parser parse_element, expr_node *&node, bool data_context);

// Elements and implied DOs, separated by commas, linked through `next`. False if any is in error.
bool parse_element_list(element_parser parse_element, expr_node *&list, bool data_context);

} // namespace zf90
