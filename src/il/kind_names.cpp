// The names of the enumerators, from the lists that make the enumerations.
#include "il/kind_names.h"

#include "il/constants.h"
#include "il/types.h"

#include <cstddef>
#include <iterator>

namespace zf90 {

namespace {

struct entry_kind_row {
    const char *name;
    char letter;
    bool carries_source_corresp;
};

constexpr entry_kind_row entry_kinds[] = {
#define ENTRY_ROW(name, text, letter, named) {text, letter, named},
    ZF90_ENTRY_KINDS(ENTRY_ROW)
#undef ENTRY_ROW
};
static_assert(std::size(entry_kinds) == entry_kind_count);

#define NAME(enumerator) #enumerator,

constexpr const char *type_codes[] = {ZF90_TYPE_CODES(NAME)};
constexpr const char *constant_kinds[] = {ZF90_CONSTANT_KINDS(NAME)};
constexpr const char *storage_classes[] = {ZF90_STORAGE_CLASSES(NAME)};
constexpr const char *expr_node_kinds[] = {ZF90_EXPR_NODE_KINDS(NAME)};
constexpr const char *operations[] = {ZF90_OPERATIONS(NAME)};
constexpr const char *io_specifiers[] = {ZF90_IO_SPECIFIERS(NAME)};
constexpr const char *statement_kinds[] = {ZF90_IL_STATEMENT_KINDS(NAME)};
constexpr const char *label_kinds[] = {ZF90_LABEL_KINDS(NAME)};
constexpr const char *case_range_kinds[] = {ZF90_CASE_RANGE_KINDS(NAME)};
constexpr const char *shape_kinds[] = {ZF90_SHAPE_KINDS(NAME)};
constexpr const char *bound_kinds[] = {ZF90_BOUND_KINDS(NAME)};
constexpr const char *unit_kinds[] = {ZF90_UNIT_KINDS(NAME)};
constexpr const char *format_kinds[] = {ZF90_FORMAT_KINDS(NAME)};
constexpr const char *symbol_kinds[] = {ZF90_SYMBOL_KINDS(NAME)};
constexpr const char *languages[] = {"sl_C", "sl_Fortran"};

template <std::size_t count>
const char *name_of(const char *const (&names)[count], unsigned value, const char *unknown) {
    return value < count ? names[value] : unknown;
}

} // namespace

const char *entry_kind_name(unsigned kind) {
    return kind < entry_kind_count ? entry_kinds[kind].name : "**BAD ENTRY KIND**";
}

char entry_kind_letter(entry_kind kind) { return entry_kinds[kind].letter; }

bool carries_source_corresp(entry_kind kind) { return entry_kinds[kind].carries_source_corresp; }

const char *type_code_name(unsigned code) { return name_of(type_codes, code, "**BAD TYPE CODE**"); }
const char *constant_kind_name(unsigned kind) {
    return name_of(constant_kinds, kind, "**BAD CONSTANT REPR KIND**");
}

const char *enumerator_name(enum type_code value) { return type_code_name(value); }
const char *enumerator_name(enum storage_class value) {
    return name_of(storage_classes, value, "**BAD STORAGE CLASS**");
}
const char *enumerator_name(expr_node_kind value) {
    // The others do not stand for a value.
    const bool is_named = value <= enk_generic_call || value == enk_data_implied_do_var;
    return name_of(expr_node_kinds, is_named ? value : expr_node_kind_count, "**BAD EXPR NODE KIND**");
}
const char *enumerator_name(operation_kind value) { return name_of(operations, value, "**BAD OPERATION**"); }
const char *enumerator_name(io_specifier value) { return name_of(io_specifiers, value, "**BAD SPECIFIER**"); }
const char *enumerator_name(il_statement_kind value) {
    return name_of(statement_kinds, value, "**BAD STATEMENT KIND**");
}
const char *enumerator_name(constant_kind value) { return constant_kind_name(value); }
const char *enumerator_name(label_kind value) { return name_of(label_kinds, value, "**BAD LABEL KIND**"); }
const char *enumerator_name(case_range_kind value) {
    return name_of(case_range_kinds, value, "**BAD CASE RANGE KIND**");
}
const char *enumerator_name(enum shape_kind value) {
    return name_of(shape_kinds, value, "**BAD SHAPE KIND**");
}
const char *enumerator_name(bound_kind value) { return name_of(bound_kinds, value, "**BAD BOUND KIND**"); }
const char *enumerator_name(enum unit_kind value) {
    return value == iou_error ? "error" : name_of(unit_kinds, value, "**BAD IO UNIT KIND**");
}
const char *enumerator_name(enum format_kind value) {
    return name_of(format_kinds, value, "**BAD IO FORMAT KIND**");
}
const char *enumerator_name(source_language value) {
    return name_of(languages, value, "**BAD SOURCE LANGUAGE**");
}
const char *enumerator_name(symbol_kind value) { return name_of(symbol_kinds, value, "**BAD SYMBOL KIND**"); }

#undef NAME

} // namespace zf90
