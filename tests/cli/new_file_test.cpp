#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <tavo/cli/failure.h>
#include <tavo/cli/new_file.h>

namespace {

/// What else happens in a call of fsync().
std::function<void(int)> onSync;

} // namespace

/// Takes the place of the C library's in this program.
extern "C" int fsync(int file) {
    if (onSync)
        onSync(file);
    return static_cast<int>(::syscall(SYS_fsync, file));
}

namespace {

namespace fs = std::filesystem;
using namespace TAVO::cli;
using testing::HasSubstr;

constexpr uid_t someone = 12345;
constexpr uid_t somebodyElse = 12346;

class NewFileTest : public testing::Test {
protected:
    NewFileTest()
        : folder(fs::path(testing::TempDir()) /
                 ("new_file_" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()))) {
        fs::remove_all(folder);
        fs::create_directory(folder);
        fs::permissions(folder, fs::perms::all);
    }
    ~NewFileTest() override { fs::remove_all(folder); }

    static std::string contentOf(const fs::path& path) {
        std::ifstream in(path);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    fs::path fileWith(const std::string& content, mode_t mode = 0644) const {
        const auto path = folder / "file";
        std::ofstream(path) << content;
        EXPECT_EQ(::chmod(path.c_str(), mode), 0);
        return path;
    }
    static mode_t modeOf(const fs::path& path) {
        struct stat found {};
        EXPECT_EQ(::stat(path.c_str(), &found), 0);
        return found.st_mode & mode_t{07777};
    }
    static void replace(const fs::path& path) {
        const std::vector<std::uint8_t> bytes = {'n', 'e', 'w'};
        NewFile file(path);
        file.write(bytes);
        file.complete();
    }
    /// The message of the refusal, empty when the file was replaced.
    static std::string refusalOf(const fs::path& path) {
        try {
            replace(path);
            return "";
        } catch (const Failure& failure) {
            EXPECT_EQ(failure.code, ExitCode::usage);
            return failure.what();
        }
    }
    /// Whether a process of that user can replace the file.
    static bool canReplace(uid_t user, const fs::path& path) {
        const auto child = ::fork();
        if (child == 0) {
            if (::setuid(user) != 0)
                ::_exit(2);
            ::_exit(refusalOf(path).empty() ? 0 : 1);
        }
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) < 2) << status;
        return status == 0;
    }
    std::ptrdiff_t entries() const {
        return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
    }

    fs::path folder;
};

/// Files of several users need root.
class NewFileOfSomeone : public NewFileTest {
protected:
    void SetUp() override {
        if (::geteuid() != 0)
            GTEST_SKIP() << "needs root";
    }
    static void give(const fs::path& path, uid_t user) { EXPECT_EQ(::lchown(path.c_str(), user, user), 0); }
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

TEST_F(NewFileTest, GetsItsNameOnlyWhenItsContentIsOnTheDisk) {
    const auto path = fileWith("old content");
    struct Seen {
        std::int64_t size = 0;
        std::string content;
    };
    std::vector<Seen> syncs;
    onSync = [&](int file) {
        struct stat found {};
        EXPECT_EQ(::fstat(file, &found), 0);
        syncs.push_back({found.st_size, contentOf(path)});
    };
    replace(path);
    onSync = nullptr;
    ASSERT_EQ(syncs.size(), 1u);
    EXPECT_EQ(syncs[0].size, 3) << "all is written before";
    EXPECT_EQ(syncs[0].content, "old content") << "the name is given behind it";
    EXPECT_EQ(contentOf(path), "new");
}

TEST_F(NewFileTest, KeepsThePermissionsOfWhatItReplacesAndNothingBeyond) {
    for (const mode_t mode : {0604u, 0777u, 0400u, 06777u, 04755u, 02755u, 01777u}) {
        const auto path = fileWith("old content", 0600);
        ASSERT_EQ(::chmod(path.c_str(), mode), 0);
        replace(path);
        EXPECT_EQ(contentOf(path), "new");
        EXPECT_EQ(modeOf(path), mode & 0777u) << std::oct << mode;
        fs::remove(path);
    }
}

TEST_F(NewFileTest, FollowsTheUsersOwnLinksAndLeavesThemLinks) {
    const auto path = fileWith("old content");
    fs::create_symlink("file", folder / "near");
    fs::create_symlink(folder / "near", folder / "far");
    replace(folder / "far");
    EXPECT_TRUE(fs::is_symlink(folder / "near"));
    EXPECT_TRUE(fs::is_symlink(folder / "far"));
    EXPECT_FALSE(fs::is_symlink(path));
    EXPECT_EQ(contentOf(path), "new");

    fs::create_symlink("absent", folder / "dangling");
    replace(folder / "dangling");
    EXPECT_EQ(contentOf(folder / "absent"), "new");
    fs::create_symlink("loop", folder / "loop");
    EXPECT_THAT(refusalOf(folder / "loop"), HasSubstr("symbolic links"));
}

TEST_F(NewFileTest, RefusesWhatIsNoRegularFile) {
    EXPECT_THROW(NewFile(folder.string()), Failure);
    EXPECT_THROW(NewFile("/dev/null"), Failure);
    EXPECT_THROW(NewFile((folder / "no" / "file").string()), Failure);
}

TEST_F(NewFileOfSomeone, IsRefused) {
    const auto path = fileWith("old content", 06777);
    give(path, someone);
    ASSERT_EQ(::chmod(path.c_str(), 06777), 0);
    EXPECT_THAT(refusalOf(path), HasSubstr("it belongs to another user"));
    EXPECT_FALSE(canReplace(somebodyElse, path));
    EXPECT_EQ(contentOf(path), "old content");
    EXPECT_EQ(modeOf(path), 06777u);
    EXPECT_EQ(entries(), 1);
    EXPECT_TRUE(canReplace(someone, path));
    EXPECT_EQ(modeOf(path), 0777u);
    give(path, 0);
    EXPECT_FALSE(canReplace(someone, path)) << "root's file";
}

TEST_F(NewFileOfSomeone, IsNotReachedByALinkOfSomebodyElse) {
    const auto path = fileWith("old content");
    fs::create_symlink("file", folder / "link");
    fs::create_symlink("link", folder / "first");

    give(path, someone);
    give(folder / "link", somebodyElse);
    give(folder / "first", someone);
    EXPECT_FALSE(canReplace(someone, folder / "link"));
    EXPECT_FALSE(canReplace(someone, folder / "first")) << "a link of the user's own that leads to it";
    EXPECT_EQ(contentOf(path), "old content");

    give(folder / "link", someone);
    EXPECT_TRUE(canReplace(someone, folder / "first"));
    give(folder / "link", 0);
    EXPECT_TRUE(canReplace(someone, folder / "link")) << "a link of root's";
    EXPECT_TRUE(fs::is_symlink(folder / "link"));

    give(folder / "link", someone);
    give(path, 0);
    EXPECT_THAT(refusalOf(folder / "link"), HasSubstr("it is a link owned by another user"));
}

} // namespace
