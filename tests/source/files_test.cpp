// The stack of files, the tree of records, and positions mapped back to files and lines.
#include "source/files.h"

#include "support/front_end.h"

namespace zf90 {
namespace {

class FilesTest : public FrontEndTest {
protected:
    void SetUp() override {
        FrontEndTest::SetUp();
        add_include_dir("");
    }

    void open(const char *name) { open_source_file(name, include_search_list); }

    // Reads `count` lines of the current file.
    static void read_lines(int count) {
        for (int i = 0; i < count; ++i) {
            read_source_line();
            ASSERT_EQ(line_kind, line_initial);
            line_kind = line_none;
        }
    }

    static void end_file() {
        read_source_line();
        ASSERT_EQ(line_kind, line_end_of_file);
        line_kind = line_none;
        pop_source_file();
    }

    static std::string where(std::uint32_t seq) {
        const position_description p = describe_position(seq);
        return std::string(p.name) + ":" + std::to_string(p.line) + (p.at_end ? " end" : "");
    }
};

TEST_F(FilesTest, LinesOfIncludedFilesDoNotCount) {
    scratch_directory::write("main.f90", "a\nb\nc\nd\n");
    scratch_directory::write("one.inc", "p\nq\n");
    scratch_directory::write("two.inc", "x\n");
    open("main.f90");
    read_lines(2);
    open("one.inc");
    read_lines(1);
    open("two.inc");
    read_lines(1);
    end_file();
    read_lines(1);
    end_file();
    read_lines(2);
    EXPECT_EQ(where(1), "main.f90:1");
    EXPECT_EQ(where(2), "main.f90:2");
    EXPECT_EQ(where(3), "one.inc:1");
    EXPECT_EQ(where(4), "two.inc:1");
    EXPECT_EQ(where(5), "one.inc:2");
    EXPECT_EQ(where(6), "main.f90:3");
    EXPECT_EQ(where(7), "main.f90:4");
    end_file();
    EXPECT_EQ(where(7), "main.f90:4");
    EXPECT_EQ(where(8), "main.f90:4 end");
    EXPECT_EQ(find_position(3).depth, 2);
    EXPECT_EQ(find_position(4).depth, 3);
    EXPECT_EQ(find_position(7).depth, 1);

    const source_file *root = il_root.primary_source_file;
    EXPECT_STREQ(root->file_name, "main.f90");
    EXPECT_EQ(root->first_seq_number, 1u);
    EXPECT_EQ(root->last_seq_number, 7u);
    const source_file *one = root->first_child_file;
    ASSERT_NE(one, nullptr);
    EXPECT_EQ(one, root->last_child_file);
    EXPECT_EQ(one->first_seq_number, 3u);
    EXPECT_EQ(one->last_seq_number, 5u);
    EXPECT_EQ(one->first_child_file->first_seq_number, 4u);
}

TEST_F(FilesTest, NullPositionHasNoFile) {
    scratch_directory::write("main.f90", "a\n");
    EXPECT_EQ(find_position(1).record, nullptr);
    open("main.f90");
    EXPECT_EQ(find_position(0).record, nullptr);
    EXPECT_EQ(find_position(0).line, 0u);
    EXPECT_FALSE(find_position(0).at_end);
}

TEST_F(FilesTest, LineDirectivesAndIncludesMix) {
    scratch_directory::write("main.f90", "a\n#line 100 \"gen.src\"\nb\nc\n#line 7\nd\n");
    scratch_directory::write("one.inc", "p\nq\n");
    open("main.f90");
    read_lines(2); // a, b; the directive is read on the way
    open("one.inc");
    read_lines(2);
    end_file();
    read_lines(2); // c, d
    end_file();
    EXPECT_EQ(where(1), "main.f90:1");
    EXPECT_EQ(where(2), "main.f90:2"); // the directive itself
    EXPECT_EQ(where(3), "gen.src:100");
    EXPECT_EQ(where(4), "one.inc:1");
    EXPECT_EQ(where(5), "one.inc:2");
    EXPECT_EQ(where(6), "gen.src:101");
    EXPECT_EQ(where(8), "gen.src:7");
    EXPECT_EQ(find_position(8).depth, 2);
    EXPECT_STREQ(describe_position(8).full_name, "");

    // The records of the directives hang under the file that holds them.
    const source_file *gen = il_root.primary_source_file->first_child_file;
    EXPECT_EQ(gen->full_name, nullptr);
    EXPECT_EQ(gen->first_seq_number, 3u);
    EXPECT_EQ(gen->first_line_number, 100u);
    EXPECT_EQ(gen->last_seq_number, 7u);
    EXPECT_STREQ(gen->next->file_name, "one.inc");
    EXPECT_EQ(gen->next->next->first_line_number, 7u);
    EXPECT_EQ(gen->next->next->last_seq_number, 8u);
}

TEST_F(FilesTest, DeepIncludesAreParkedAndResumed) {
    constexpr int depth = 1000;
    for (int i = 0; i <= depth; ++i) {
        scratch_directory::write("f" + std::to_string(i), "first\nsecond\n");
    }
    static std::string names[depth + 1];
    for (int i = 0; i <= depth; ++i) {
        names[i] = "f" + std::to_string(i);
        open(names[i].c_str());
        read_lines(1);
    }
    int streams = 0;
    for (int i = 0; i <= depth; ++i) {
        streams += source_stack[i].stream != nullptr;
    }
    EXPECT_EQ(streams, 4);
    for (int i = depth; i >= 0; --i) {
        ASSERT_EQ(names[i], curr_source->file_name);
        read_lines(1);
        EXPECT_STREQ(line_buffer, "second");
        end_file();
    }
    EXPECT_EQ(curr_source, nullptr);
}

TEST_F(FilesTest, TheLastLineMayOpenAFileThoughItHasNoNewline) {
    scratch_directory::write("main.f90", "a\nb");
    scratch_directory::write("one.inc", "p\nq\n");
    open("main.f90");
    testing::internal::CaptureStderr();
    read_lines(2);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "main.f90 (  2: 2) warning: last line of file ends without a newline\n");
    open("one.inc");
    read_lines(2);
    end_file();
    end_file();
    EXPECT_EQ(curr_source, nullptr);
}

TEST_F(FilesTest, DirectoryNamesAreStrippedAndShared) {
    scratch_directory::write("sub/dir/main.f90", "a\n");
    scratch_directory::write("sub/dir/one.inc", "a\n");
    prepend_include_dir("sub/dir/");
    open("sub/dir/main.f90");
    const char *dir = curr_source->dir_name;
    EXPECT_STREQ(dir, "sub/dir/");
    EXPECT_STREQ(curr_source->file_name, "main.f90");
    EXPECT_STREQ(curr_source->full_name, "sub/dir/main.f90");
    open("one.inc");
    EXPECT_EQ(curr_source->dir_name, dir);
    EXPECT_STREQ(curr_source->full_name, "sub/dir/one.inc");
}

TEST_F(FilesTest, LongPathsTakeFreshMemory) {
    const std::string dir(200, 'd');
    scratch_directory::write(dir + "/x.inc", "a\n");
    scratch_directory::write("main.f90", "a\n");
    open("main.f90");
    const std::string slash = dir + "/";
    prepend_include_dir(slash.c_str());
    open("x.inc");
    EXPECT_EQ(slash + "x.inc", curr_source->full_name);
}

TEST_F(FilesTest, DirectoryWithoutASlashIsTriedWithBackslashThenSlash) {
    scratch_directory::write("main.f90", "a\n");
    scratch_directory::write("inc/x.inc", "slash\n");
    prepend_include_dir("inc");
    open("main.f90");
    open("x.inc");
    EXPECT_STREQ(curr_source->full_name, "inc/x.inc");
    pop_source_file();
    scratch_directory::write("inc\\x.inc", "backslash\n");
    open("x.inc");
    EXPECT_STREQ(curr_source->full_name, "inc\\x.inc");
    EXPECT_STREQ(curr_source->file_name, "x.inc");
}

TEST_F(FilesTest, FailuresAreCatastrophic) {
    scratch_directory::write("main.f90", "a\n");
    std::filesystem::create_directory("folder");
    EXPECT_EXIT(open("none.f90"), testing::ExitedWithCode(4), "could not open source file \"none.f90\"\n$");
    EXPECT_EXIT(open("folder"), testing::ExitedWithCode(4),
                "\"folder\" is not a file containing source text");
    EXPECT_EXIT(open(""), testing::ExitedWithCode(4), "\"\" is not a valid source file name");
    open("main.f90");
    EXPECT_EXIT(open(""), testing::ExitedWithCode(4), "\"\" is not a valid source file name");
    EXPECT_EXIT(open("/none.inc"), testing::ExitedWithCode(4), "could not open source file \"/none.inc\"\n$");
    EXPECT_EXIT(open("main.f90"), testing::ExitedWithCode(4), "INCLUDE file \"main.f90\" includes itself");
    EXPECT_EXIT(open_source_file("x.inc", search_list{}), testing::ExitedWithCode(4),
                "could not open source file \"x.inc\" .no directories in search list.");
    EXPECT_STREQ(message_text(msg_could_not_open_source_file_no_directories_in_search),
                 "could not open source file \"%s\" (no directories in search list)");
}

TEST_F(FilesTest, AParkedFileThatVanishesIsCatastrophic) {
    for (const char *name : {"f0", "f1", "f2", "f3", "f4"}) {
        scratch_directory::write(name, "a\n");
        open(name);
    }
    std::filesystem::remove("f3");
    EXPECT_EXIT(pop_source_file(), testing::ExitedWithCode(4), "could not open source file \"f3\"");
}

TEST_F(FilesTest, IncludeThroughAnotherFileIsCaught) {
    scratch_directory::write("a", "x\n");
    scratch_directory::write("b", "x\n");
    open("a");
    open("b");
    EXPECT_EXIT(open("a"), testing::ExitedWithCode(4), "INCLUDE file \"a\" includes itself");
}

} // namespace
} // namespace zf90
