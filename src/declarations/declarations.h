// Declaration statements: the type declaration and the statements that give names attributes. All follow one
// scheme: collect an `attribute_set`, look each name up, check_attributes, apply_attributes. The handlers are
// declared with all others in statements/handlers.h; what is here serves other statements that declare.
#pragma once

#include "declarations/attributes.h"
#include "declarations/variables.h"

namespace zf90 {

// The entity being declared: its type, and its initial value or null. apply_attributes takes them from here.
extern type *entity_type;
extern expr_node *entity_init;

// Records the attributes of a set on a name in the current scope; a null symbol is made first. Returns it.
symbol *apply_attributes(symbol *s, const attribute_set &set, name_locator &name);

// Reads an array specification, from its "(" on, for elements of that type. Null after an error.
type *read_array_spec(type *element);

// Reads a name and gives it the attributes. Null after an error.
symbol *read_plain_entity(attribute_set set);

// Reads a name with an array specification, which may be required, and required to have explicit bounds.
// `next_mode` is for the token behind a name without one. Null if the attributes conflict, or after an error.
symbol *read_array_entity(attribute_set set, bool require_spec, bool explicit_shape_only,
                          std::uint32_t next_mode);

// Reads "(", IN, OUT or INOUT, ")", and adds the intent to the set.
bool read_intent_spec(attribute_set &set);

} // namespace zf90
