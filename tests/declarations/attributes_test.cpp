// The table of attributes: every pair that conflicts or requires, as the check reports it.
#include "declarations/attributes.h"

#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "il/entries.h"
#include "il/types.h"
#include "support/front_end.h"

#include <initializer_list>

using namespace zf90;

namespace {

struct AttributesTest : FrontEndTest {
    void SetUp() override {
        FrontEndTest::SetUp();
        push_scope(sr_global);
        push_scope(sr_unit);
        intern_name("X", curr_name.atom);
        curr_name.position = {1, 1};
    }

    // What the check of a name says that states these attributes, one message a line without its place.
    static std::string check(std::initializer_list<unsigned> stated, symbol *s = nullptr) {
        attribute_set set{};
        for (unsigned a : stated) {
            set[a] = true;
        }
        bool good = false;
        std::string lines = messages_of([&] { good = check_attributes(s, set, {1, 1}); });
        EXPECT_EQ(good, lines.empty()) << lines;
        std::string texts;
        for (std::size_t begin = 0; begin < lines.size();) {
            const std::size_t end = lines.find('\n', begin);
            const std::string line = lines.substr(begin, end - begin);
            const std::size_t text = line.find("error:   ");
            texts += text == std::string::npos ? line : line.substr(text + 9);
            texts += '\n';
            begin = end + 1;
        }
        return texts;
    }

    // What the table says of two attributes that are stated together.
    static std::string conflict_of(unsigned i, unsigned j) {
        const std::string first = attr_names[i];
        const std::string second = attr_names[j];
        return first == second ? "entity \"X\" declared " + first + " repeatedly\n"
                               : first + " entity should not be " + second + "\n";
    }
};

TEST_F(AttributesTest, EveryPair) {
    for (unsigned i = 0; i < attribute_count; ++i) {
        for (unsigned j = i + 1; j < attribute_count; ++j) {
            const bool excluded = attr_matrix[i][j] == conflict;
            EXPECT_EQ(check({i, j}), excluded ? conflict_of(i, j) : "") << i << ' ' << j;
            EXPECT_NE(attr_matrix[j][i], conflict) << "in the row of the greater number: " << j << ' ' << i;
        }
    }
}

TEST_F(AttributesTest, EveryRequirement) {
    spec_part_over = true;
    for (unsigned i = 0; i < attribute_count; ++i) {
        std::string words;
        bool requires_some = false;
        for (unsigned j = 0; j < attribute_count; ++j) {
            const attribute_relation relation = attr_matrix[i][j];
            if (j == i || (relation != requires_named && relation != requires_unnamed)) {
                continue;
            }
            requires_some = true;
            if (relation == requires_named) {
                words += (words.empty() ? "" : ", or ") + std::string(attr_names[j]);
            }
            // Any one of them will do, though it may have wants of its own.
            EXPECT_EQ(check({i, j}).find(std::string(attr_names[i]) + " entity should be"), std::string::npos)
                << i << ' ' << j;
        }
        EXPECT_EQ(check({i}),
                  requires_some ? std::string(attr_names[i]) + " entity should be " + words + "\n" : "");
    }
}

TEST_F(AttributesTest, NothingIsRequiredWhileTheSpecificationsGoOn) {
    for (unsigned i = 0; i < attribute_count; ++i) {
        EXPECT_EQ(check({i}), "") << i;
    }
}

// One pair of each row at least, written by hand.
TEST_F(AttributesTest, PairsByHand) {
    const struct {
        unsigned first, second;
        const char *message;
    } pairs[] = {
        {attr_module_imported, attr_variable, "module imported entity should not be variable"},
        {attr_module_imported, attr_interface, "module imported entity should not be interface"},
        {attr_module_imported, attr_parameter, "module imported entity should not be parameter"},
        {attr_module_imported, attr_private, ""},
        {attr_subprogram, attr_variable, "subprogram entity should not be variable"},
        {attr_subprogram, attr_target, "subprogram entity should not be target"},
        {attr_subprogram, attr_pointer, ""},
        {attr_variable, attr_namelist, "variable entity should not be namelist"},
        {attr_variable, attr_construct_name, "variable entity should not be construct name"},
        {attr_namelist, attr_type, "namelist entity should not be type"},
        {attr_type, attr_interface, "type entity should not be interface"},
        {attr_interface, attr_module_procedure, "interface entity should not be module procedure"},
        {attr_module_procedure, attr_parameter, "module procedure entity should not be parameter"},
        {attr_construct_name, attr_private, "construct name entity should not be private"},
        {attr_construct_name, attr_public, "construct name entity should not be public"},
        {attr_equivalence, attr_dummy, "equivalence entity should not be dummy argument"},
        {attr_equivalence, attr_allocatable, "equivalence entity should not be allocatable"},
        {attr_common, attr_automatic, "common block associated entity should not be automatic object"},
        {attr_common, attr_save, "common block associated entity should not be save attributed"},
        {attr_blank_common, attr_initialized,
         "blank common block associated entity should not be initialized"},
        {attr_outside_block_data, attr_initialized,
         "out of blockdata common block associated entity should not be initialized"},
        {attr_dummy, attr_save, "dummy argument entity should not be save attributed"},
        {attr_dummy, attr_public, "dummy argument entity should not be public"},
        {attr_result, attr_assumed_size, "function result entity should not be assumed size array"},
        {attr_component, attr_external, "derived type component entity should not be external"},
        {attr_component, attr_assumed_length,
         "derived type component entity should not be assumed length string"},
        {attr_unit_variable, attr_automatic, "program/module variable entity should not be automatic object"},
        {attr_automatic, attr_save, "automatic object entity should not be save attributed"},
        {attr_typed, attr_external, ""},
        {attr_initialized, attr_pointer, "initialized entity should not be pointer"},
        {attr_initialized, attr_deferred_shape, "initialized entity should not be deferred shape array"},
        {attr_explicit_shape, attr_allocatable, "explicit shape array entity should not be allocatable"},
        {attr_deferred_shape, attr_assumed_shape,
         "deferred shape array entity should not be assumed shape array"},
        {attr_assumed_shape, attr_save, "assumed shape array entity should not be save attributed"},
        {attr_assumed_size, attr_target, "assumed size array entity should not be target"},
        {attr_assumed_length, attr_external, ""},
        {attr_external, attr_intrinsic, "external entity should not be intrinsic"},
        {attr_external, attr_pointer, "external entity should not be pointer"},
        {attr_intent_in, attr_intent_out, "entity \"X\" declared intent attributed repeatedly"},
        {attr_intent_in, attr_pointer, "intent attributed entity should not be pointer"},
        {attr_intent_out, attr_intent_inout, "entity \"X\" declared intent attributed repeatedly"},
        {attr_intent_inout, attr_private, "intent attributed entity should not be private"},
        {attr_intrinsic, attr_save, "intrinsic entity should not be save attributed"},
        {attr_optional, attr_pointer, ""},
        {attr_parameter, attr_allocatable, "parameter entity should not be allocatable"},
        {attr_parameter, attr_target, "parameter entity should not be target"},
        {attr_allocatable, attr_pointer, "allocatable entity should not be pointer"},
        {attr_allocatable, attr_target, ""},
        {attr_pointer, attr_target, "pointer entity should not be target"},
        {attr_private, attr_public, "private entity should not be public"},
        {attr_public, attr_save, ""},
        {attr_save, attr_target, ""},
    };
    for (const auto &pair : pairs) {
        const std::string expected = *pair.message ? std::string(pair.message) + "\n" : "";
        EXPECT_EQ(check({pair.first, pair.second}), expected);
    }
}

TEST_F(AttributesTest, RequirementsByHand) {
    spec_part_over = true;
    const struct {
        unsigned stated;
        const char *message;
    } wants[] = {
        {attr_deferred_shape, "deferred shape array entity should be allocatable, or pointer\n"},
        {attr_assumed_shape, "assumed shape array entity should be dummy argument\n"},
        {attr_assumed_size, "assumed size array entity should be dummy argument\n"},
        {attr_intent_in, "intent attributed entity should be dummy argument\n"},
        {attr_intent_out, "intent attributed entity should be dummy argument\n"},
        {attr_intent_inout, "intent attributed entity should be dummy argument\n"},
        {attr_optional, "optional attributed entity should be dummy argument\n"},
        {attr_allocatable, "allocatable entity should be deferred shape array\n"},
        {attr_pointer, ""},
        {attr_explicit_shape, ""},
    };
    for (const auto &want : wants) {
        EXPECT_EQ(check({want.stated}), want.message);
    }
    EXPECT_EQ(check({attr_deferred_shape, attr_dummy}), "");
    EXPECT_EQ(check({attr_deferred_shape, attr_pointer}), "");
    EXPECT_EQ(check({attr_deferred_shape, attr_allocatable}), "");
}

TEST_F(AttributesTest, WhatMayBeStatedTwice) {
    constexpr attribute once[] = {
        attr_type,     attr_construct_name, attr_common,         attr_dummy,         attr_result,
        attr_typed,    attr_explicit_shape, attr_deferred_shape, attr_assumed_shape, attr_assumed_size,
        attr_external, attr_intent_in,      attr_intent_out,     attr_intent_inout,  attr_intrinsic,
        attr_optional, attr_parameter,      attr_allocatable,    attr_pointer,       attr_private,
        attr_public,   attr_save,           attr_target,
    };
    attribute_set rejected{};
    for (attribute a : once) {
        rejected[a] = true;
    }
    for (unsigned i = 0; i < attribute_count; ++i) {
        EXPECT_EQ(attr_matrix[i][i] == conflict, rejected[i]) << attr_names[i];
    }
}

TEST_F(AttributesTest, StatedAgain) {
    const struct {
        std::uint32_t flags;
        attribute stated;
        const char *message;
    } states[] = {
        {sf_external_attr, attr_external, "external"},
        {sf_intent_in, attr_intent_in, "intent attributed"},
        {sf_intent_out, attr_intent_out, "intent attributed"},
        {sf_intent_in | sf_intent_out, attr_intent_inout, "intent attributed"},
        {sf_optional, attr_optional, "optional attributed"},
        {sf_access_given, attr_private, "private"},
        {sf_access_given | sf_public, attr_public, "public"},
        {sf_saved, attr_save, "save attributed"},
    };
    for (const auto &state : states) {
        symbol *s = new_symbol(sk_undetermined, curr_name, curr_scope_depth);
        s->flags |= state.flags;
        EXPECT_EQ(check({state.stated}, s),
                  "entity \"X\" declared " + std::string(state.message) + " repeatedly\n");
        // A name that has only been used so far takes any first declaration.
        s->flags |= sf_inferred;
        EXPECT_EQ(check({state.stated}, s), "");
        EXPECT_EQ(s->flags & sf_inferred, 0u);
    }
}

TEST_F(AttributesTest, WhatConflictsIsTakenOut) {
    attribute_set set{};
    set[attr_pointer] = set[attr_target] = true;
    messages_of([&] { check_attributes(nullptr, set, {1, 1}); });
    EXPECT_TRUE(set[attr_pointer]);
    EXPECT_FALSE(set[attr_target]);
}

} // namespace
