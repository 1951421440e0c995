#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <tavo/cli/failure.h>
#include <tavo/cli/new_file.h>
#include <tavo/cli/progress_bar.h>
#include <tavo/cli/serial_link.h>

namespace {

namespace fs = std::filesystem;
using namespace TAVO::cli;
using namespace std::chrono_literals;

TEST(ProgressText, ShowsPartAmountAndRate) {
    constexpr std::uint64_t mebi = 1024 * 1024;
    EXPECT_EQ(progressText("writing", 0, 8 * mebi, 0s),
              "writing [--------------------]   0 %, 0.0 of 8.0 MiB");
    EXPECT_EQ(progressText("writing", 2 * mebi, 8 * mebi, 500ms),
              "writing [#####---------------]  25 %, 2.0 of 8.0 MiB, 4.0 MiB/s");
    EXPECT_EQ(progressText("reading", mebi / 2, mebi / 2, 2s),
              "reading [####################] 100 %, 0.5 of 0.5 MiB, 0.2 MiB/s");
    EXPECT_EQ(progressText("reading", 0, 0, 1s), "reading [####################] 100 %, 0.0 of 0.0 MiB");
}

TEST(TextWatch, FindsATextThatComesInPieces) {
    TextWatch watch("login: ");
    EXPECT_FALSE(watch.sees("boot log"));
    EXPECT_FALSE(watch.sees("in"));
    EXPECT_FALSE(watch.sees(":"));
    EXPECT_FALSE(watch.sees(""));
    EXPECT_TRUE(watch.sees(" ..."));
    EXPECT_TRUE(watch.sees(""));
    EXPECT_TRUE(TextWatch("x").sees("axb"));
}

TEST(TextWatch, NeverFindsAnEmptyText) {
    TextWatch watch("");
    EXPECT_FALSE(watch.sees(""));
    EXPECT_FALSE(watch.sees("anything"));
}

class NewFileTest : public testing::Test {
protected:
    NewFileTest()
        : folder(fs::path(testing::TempDir()) /
                 ("new_file_" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()))) {
        fs::remove_all(folder);
        fs::create_directory(folder);
    }
    ~NewFileTest() override { fs::remove_all(folder); }

    static std::string contentOf(const fs::path& path) {
        std::ifstream in(path);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    static void replace(const fs::path& path) {
        const std::vector<std::uint8_t> bytes = {'n', 'e', 'w'};
        NewFile file(path);
        file.write(bytes);
        file.complete();
    }

    fs::path folder;
};

TEST_F(NewFileTest, IsThereOnlyWhenItIsComplete) {
    const auto path = folder / "file";
    {
        NewFile file(path);
        EXPECT_FALSE(fs::exists(path));
    }
    EXPECT_TRUE(fs::is_empty(folder));
    replace(path);
    EXPECT_EQ(contentOf(path), "new");
}

TEST_F(NewFileTest, KeepsPermissionsAndLinks) {
    const auto path = folder / "file";
    std::ofstream(path) << "old content";
    fs::permissions(path, fs::perms(0604));
    fs::create_symlink(path, folder / "link");
    replace(folder / "link");
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(contentOf(path), "new");
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0604));
}

TEST_F(NewFileTest, RefusesWhatIsNoRegularFile) {
    EXPECT_THROW(NewFile(folder.string()), Failure);
    EXPECT_THROW(NewFile("/dev/null"), Failure);
    EXPECT_THROW(NewFile((folder / "no" / "file").string()), Failure);
}

} // namespace
