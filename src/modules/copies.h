// Copies of a module's entities in the scope that uses them. An entity arrives in a scope once, however many
// USE statements and renames lead to it. `level` is the row of the using scope.
#pragma once

#include "il/records.h"

namespace zf90 {

// The module in the global scope: the one that this source defines, or the one copy of it.
object *use_module_object(object *module);

// The type of this compilation that equals an intrinsic type of a file; other types are returned as they are.
type *type_of_this_compilation(type *t);

// Intrinsic types are those of this compilation; of a derived type there is one copy in a scope. If
// `existing` is not null, it becomes the copy.
type *use_type(type *source, type *existing, std::int32_t level);

object *use_routine(object *source, std::int32_t level);
object *use_variable(object *source, std::int32_t level);
constant *use_constant(constant *source, std::int32_t level);
namelist_group *use_namelist(namelist_group *source, std::int32_t level);

// A new generic in the scope, with copies of the specific procedures.
interface *use_interface(interface *source, std::int32_t level);

// Adds a procedure to a generic, once.
void add_member(interface *generic, object *routine, std::int32_t level);

// Adds copies of the specific procedures of one generic to another, each once.
void extend_interface(interface *generic, const interface *source, std::int32_t level);

// Whether a symbol of the using scope stands for the entity of a module's symbol already.
bool stands_for(const symbol *local, const symbol *module_symbol, std::int32_t level);

// Whether a module's symbol has been imported into the scope, under whatever name.
bool is_imported(const symbol *module_symbol, std::int32_t level);
void note_import(const symbol *module_symbol, std::int32_t level);

void copies_init();

} // namespace zf90
