// What unit tests need to run a piece of the front end without its command: a fresh start of the state that
// the pieces share, sources from text, and the messages that came.
#pragma once

#include "constants/folding.h"
#include "driver/diagnostics.h"
#include "driver/driver.h"
#include "driver/options.h"
#include "il/entries.h"
#include "intrinsics/seed_table.h"
#include "source/files.h"
#include "source/lines.h"
#include "source/tokens.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <unistd.h>

namespace zf90 {

// A directory for the files of one test, removed at its end; the test runs in it.
class scratch_directory {
public:
    scratch_directory() : before_(std::filesystem::current_path()) {
        std::string pattern = std::filesystem::temp_directory_path() / "zf90testXXXXXX";
        path_ = ::mkdtemp(pattern.data());
        std::filesystem::current_path(path_);
    }
    scratch_directory(const scratch_directory &) = delete;
    scratch_directory &operator=(const scratch_directory &) = delete;
    ~scratch_directory() {
        std::filesystem::current_path(before_);
        std::filesystem::remove_all(path_);
    }

    static void write(const std::string &name, std::string_view text) {
        const std::filesystem::path path(name);
        if (path.has_parent_path()) {
            std::filesystem::create_directories(path.parent_path());
        }
        std::ofstream(path, std::ios::binary) << text;
    }

private:
    std::filesystem::path before_;
    std::filesystem::path path_;
};

// Starts the shared state anew, as the driver does before it opens the source.
inline void restart_front_end(bool fixed_form = false) {
    strict_f77_mode = debug_lines_enabled = retain_constant_exprs = false;
    case_sensitive_names = no_implicit_typing = no_il_output = false;
    fixed_form_input = fixed_form;
    diagnostic_threshold = severity_warning;
    error_limit = 1000000;
    while (search_dir *dir = include_search_list.first) {
        include_search_list.first = dir->next;
        std::free(dir);
    }
    include_search_list = {};
    module_search_list = {};
    error_pos = null_pos;
    remark_count = warning_count = error_count = catastrophe_count = 0;
    for (int region = 0; region_table && region <= highest_region; ++region) {
        free_region(region);
    }
    region_init();
    il_init();
    folding_init();
    init_seed_tables();
    il_root = {};
    lexer_init();
    il_root.primary_scope = new_scope();
}

class FrontEndTest : public testing::Test {
protected:
    void SetUp() override { restart_front_end(); }

    // The text as primary source "t.f90", not yet read.
    void open_text(std::string_view text) {
        scratch_directory::write("t.f90", text);
        add_include_dir("");
        open_source_file("t.f90", include_search_list);
    }

    // The messages that `action` raises, one a line.
    template <class Action> static std::string messages_of(Action action) {
        testing::internal::CaptureStderr();
        action();
        std::fflush(stderr);
        return testing::internal::GetCapturedStderr();
    }

    scratch_directory directory;
};

} // namespace zf90
