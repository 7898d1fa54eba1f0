// Names and their meanings. Every spelling is interned as one `atom`; every meaning of a name is one `symbol`
// on its atom's chain, innermost scope first, so that a look-up is a short walk along one list. There are no
// tables per scope. This file owns the atom table, the special atoms, the chains and the `next_in_scope`
// lists; declarations/scopes.h owns the rows that symbols belong to.
#pragma once

#include "il/records.h"
#include "source/lines.h"

#include <cstddef>

namespace zf90 {

inline constexpr std::uint32_t max_name_length = 31;
inline constexpr std::uint32_t max_operator_length = 33; // the two dots of a user's operator don't count

// ---- atoms

// A letter in upper case, any other character as it is.
constexpr char char_fold(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

// The number from which a spelling's place in the table is made. It does not depend on the case of letters.
std::uint32_t hash_name(const char *text, std::size_t length);

// Finds or makes the atom of a spelling, without regard to case unless `case_sensitive_names` is set, and
// returns the head of its chain of symbols, null if it has none. A new atom is in upper case unless
// `case_sensitive_names` is set, and its `token_code` is 10 if it begins with a period, else 0. The second
// form takes NUL-terminated text.
symbol *intern_name(const char *text, std::size_t length, atom *&result);
symbol *intern_name(const char *text, atom *&result);

// The same search without making an atom: null if there is none.
atom *find_atom(const char *text, std::size_t length);

// What a name that could not be read is replaced by, "<error>". A symbol of this name is on no list, and
// every check that would give a second message about it tests for it. It is in no table; programs cannot
// write it.
extern atom *error_atom;

// The names of the unnamed main program, the unnamed BLOCK DATA and blank COMMON: empty, in no table, told
// apart by identity. `block_data_atom` is null until the first unnamed BLOCK DATA makes it by new_empty_atom.
extern atom *main_atom;
extern atom *block_data_atom;
extern atom *blank_common_atom;

atom *new_empty_atom();

// Empties the atom table and makes the special atoms. Only the seeding (intrinsics/seed_table.h) calls it, at
// the start of a compilation.
void symbols_init();

// ---- symbols

// A record of the kind, with no name, on no list, at depth -1 and `error_pos`.
symbol *alloc_symbol(symbol_kind kind);

// Makes a symbol for a name: visible, on the chain of its atom, and on the list of the scope row `depth` if
// that is above 0. With depth -1 it is invisible and belongs to no scope. A null atom in the locator means
// `error_atom`: then the symbol is on no list at all. A name over the limit of length is error 318.
symbol *new_symbol(symbol_kind kind, const name_locator &locator, std::int32_t depth);

// The same for a further symbol of one occurrence of a name (a host link beside the name of a unit, a
// candidate in an outer scope): the length is not checked again.
symbol *new_further_symbol(symbol_kind kind, const name_locator &locator, std::int32_t depth);

// Stores the kind and resets what belongs to the old one: `entity`, and by kind `aux`, `aux2` and
// `var_flags`.
void set_symbol_kind(symbol *s, symbol_kind kind);

// Brings a symbol of another depth, on no row's list, into the scope of a row above 0.
void move_to_scope(symbol *s, std::int32_t depth);

// Puts a symbol on its atom's chain, ahead of all symbols that are not deeper. It must be on no chain.
void link_symbol(symbol *s);

// Takes a symbol off its atom's chain; does nothing if it is not on it. The list of its scope row is left
// alone.
void unlink_symbol(symbol *s);

// The record of a name that is global to the compilation: the first invisible symbol of depth 0, or null.
symbol *global_symbol(const atom *name);

// The first symbol of that kind on the chain, visible or not, or null.
symbol *find_kind(const atom *name, symbol_kind kind);

// The intrinsic procedure with the name of a symbol, the generic before the specific, or null.
symbol *find_intrinsic_function(const symbol *s);
symbol *find_intrinsic_subroutine(const symbol *s);

// The type that the implicit rules of the symbol's own scope give to its name, or null.
type *implicit_type_of(const symbol *s);

// Ties an entry to its declaration: name, position, depth and mark of reference are those of the symbol. The
// empty names give no name.
inline void tie_to_symbol(named_entry *entry, symbol *s) {
    entry->symbol_link = s;
    entry->source_corresp.name = s->name->length != 0 ? s->name : nullptr;
    entry->source_corresp.decl_position = s->decl_position;
    entry->source_corresp.referenced = (s->flags & sf_referenced) != 0;
    const bool has_depth = s->scope_depth >= 0 && s->scope_depth < depth_out_of_scope;
    entry->source_corresp.scope_depth =
        has_depth ? static_cast<std::uint8_t>(s->scope_depth) : depth_out_of_scope;
}

// ---- look-ups of `curr_name`. All skip invisible symbols and common blocks, whose names are a space apart.

// Set while an array bound or another specification expression is read: names used in it are marked
// `sf_used_as_bound` instead of `sf_referenced`. (array_spec.cpp and type_spec.cpp)
extern bool used_in_bound;

// The innermost meaning if it belongs to the current scope (or is an implied-DO variable, which lies above
// all scopes), else null.
symbol *lookup_current();

// For a declaration: the meaning in the current scope, or null. A host's name that this scope has already
// used is error 112, and its symbol is returned as an undetermined name of this scope.
symbol *lookup_for_declaration();

// The meaning in the scope of that depth, or null.
symbol *lookup_at_depth(std::int32_t depth);

// For a name in an expression: its meaning in this scope, never null and never a host link. A name that is
// not known here becomes an `sk_host_candidate`, and one in each scope further out up to where it is known,
// since a host may declare it later.
symbol *lookup_reference();

// For declaring code that needs the meaning of a name at once (constant expressions, DATA, NAMELIST,
// statement functions, TYPE, operators): the innermost meaning from `first_symbol` on, own or host
// associated, marked as referenced, with candidates and forward types settled; null if there is none. Where
// the meaning was reached through a host link, links are made in the scopes from `min_depth` outward.
symbol *lookup_resolved(symbol *first_symbol, std::int32_t min_depth);

// A declaration of this scope reaches a name that is a candidate so far, because it has been used in a bound:
// it is a name of this scope, whatever a host has. Leaves symbols of all other kinds alone.
void claim_candidate(symbol *s);

// Two modules give a name to different entities: that is an error only where it is used. `module` is the
// second one.
void mark_ambiguous(symbol *s, const atom *module);

// Whether a statement has given the name its type, not the implicit rules.
inline bool has_explicit_type(const symbol *s) {
    return (s->flags & (sf_typed | sf_type_implicit)) == sf_typed;
}

// A name that something is wrong with, which has been reported: it stands for data of the error type from now
// on, and nothing further is said about it.
void make_quiet(symbol *s);
bool is_quiet(const symbol *s);

// Settles a host candidate: a host link if a host has the name by now, an implicitly declared local name if
// not. Returns the meaning. Null, leaving the candidate, if no host has the name and this scope does not use
// it.
symbol *resolve_candidate(symbol *s);

// The marks of uses that inner scopes have left in a candidate, as flags.
std::uint32_t marks_from_within(const symbol *candidate);

// Settles a forward type: a host link if the host has a type of that name, else error 455 and a derived type.
void finish_forward_type(symbol *s);

// Makes a forward type that is not there, which has been reported, a derived type in error.
void give_up_forward_type(symbol *s);

// ---- implied-DO variables: in force for the extent of their list, above every scope

extern std::int32_t implied_do_depth; // of the innermost variable, -1 if there is none

// Makes a variable in force, and takes the innermost one out of force again. They nest.
symbol *push_implied_do_variable(const name_locator &locator);
void pop_implied_do_variable(symbol *s);

// ---- uses

enum use_kind : std::uint8_t { use_declared, use_modified, use_referenced };

// Writes the cross-reference line of a declaration and, if `update` is set, moves `decl_position`.
void note_declaration(symbol *s, source_pos position, bool update);

// Writes the cross-reference line and marks the symbol as referenced.
void note_symbol_use(use_kind use, symbol *s, source_pos position);

// Marks the entity of a symbol, and the storage that it lies in, as referenced.
void mark_entity(const symbol *s);

// The same, and marks the entity; a modification of an active DO variable is warning 3.
void note_use(use_kind use, symbol *s, source_pos position);

} // namespace zf90
