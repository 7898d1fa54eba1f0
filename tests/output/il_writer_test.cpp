// What becomes of the IL file where it is not written.
#include "output/il_writer.h"
#include "support/front_end.h"

namespace zf90 {
namespace {

class IlWriterTest : public FrontEndTest {
protected:
    static void open_il(const char *name) {
        il_file_name = name;
        il_file = std::fopen(name, "w");
    }
};

TEST_F(IlWriterTest, AFileIsDeletedAfterErrors) {
    open_il("t.cil");
    EXPECT_FALSE(discard_il_after_errors());
    EXPECT_NE(il_file, nullptr);
    error_count = 1;
    write_il_file(il_root);
    EXPECT_EQ(il_file, nullptr);
    EXPECT_EQ(il_file_name, nullptr);
    EXPECT_FALSE(std::filesystem::exists("t.cil"));
}

TEST_F(IlWriterTest, AFileThatCannotBeDeletedEndsTheRun) {
    open_il("t.cil");
    std::filesystem::remove("t.cil");
    error_count = 1;
    EXPECT_STREQ(message_text(msg_error_while_deleting_file), "error while deleting %s file");
    EXPECT_EXIT(discard_il_after_errors(), testing::ExitedWithCode(4),
                "error while deleting intermediate language file\n$");
}

} // namespace
} // namespace zf90
