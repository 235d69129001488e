#include "CopyTree.hpp"

#include "TemporaryFolder.hpp"

#include <tarvik/app/GameExport.hpp>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <utility>
#include <vector>

namespace tarvik::app {
namespace {

namespace fs = std::filesystem;
using test::namesIn;
using test::readText;
using test::writeText;

struct CopyTreeTest : testing::Test {
    std::string copy() { return test::errorOf(copyTree(from, to, {}, progress)); }

    test::TemporaryFolder folder;
    fs::path from = folder / "from";
    fs::path to = folder / "to";
    ExportProgress progress;
};

TEST_F(CopyTreeTest, LinksStayLinksInTheirOwnPlaceWhereverTheyLead) {
    fs::create_directories(from / "a/b");
    writeText(from / "a/file", "inside");
    const std::string notUtf8 = test::kOddNames[4];
    const std::pair<fs::path, fs::path> links[] = {
        {"a/b/to-file", "../file"}, {"to-folder", "a"}, {"outside", folder / "from/../"}, {"a/up", "../.."},
        {"a/nowhere", "no/such"},   {"loop", "loop"},   {"a/" + notUtf8, "\xff\xfe"},
    };
    for (const auto& [place, target] : links)
        fs::create_symlink(target, from / place);
    EXPECT_EQ(copy(), "<success>");
    for (const auto& [place, target] : links)
        EXPECT_EQ(fs::read_symlink(to / place), target);
    EXPECT_EQ(namesIn(to), namesIn(from));
    EXPECT_EQ(namesIn(folder.path()), (std::set<std::string>{"from", "to"}));
    EXPECT_TRUE(copy().ends_with(": File exists"));
}

TEST_F(CopyTreeTest, FailuresNameWhatTheyAreAboutAndNothingBlocks) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can make devices and become somebody whom permissions stop";
    const fs::path file = from / "file";
    const fs::path sub = from / "sub";
    const auto makeNode = [&](mode_t kind) {
        fs::remove(file);
        EXPECT_EQ(::mknod(file.c_str(), kind | 0666U, 0), 0);
    };
    const std::string cannotCopy = "cannot copy " + file.string();
    const std::string cannotCreate = "cannot create " + to.string();
    const std::string cannotRead = "cannot read " + from.string();
    const std::tuple<const char*, std::function<void()>, std::string> cases[] = {
        {"a pipe", [&] { makeNode(S_IFIFO); }, cannotCopy + ": Operation not supported"},
        {"a socket", [&] { makeNode(S_IFSOCK); }, cannotCopy + ": Operation not supported"},
        {"a device", [&] { makeNode(S_IFCHR); }, cannotCopy + ": Operation not supported"},
        {"a file for a destination", [&] { writeText(to, ""); }, cannotCreate + ": Not a directory"},
        {"a folder that is read-only", [&] { fs::permissions(folder.path(), fs::perms(0555)); },
         cannotCreate + ": Permission denied"},
        {"no source", [&] { fs::remove_all(from); }, cannotRead + ": No such file or directory"},
        {"a folder nobody may list", [&] { fs::permissions(sub, {}); }, cannotRead + ": Permission denied"},
        {"a file nobody may read", [&] { fs::permissions(file, {}); }, cannotCopy + ": Permission denied"},
        {"a folder in a file's place", [&] { fs::create_directories(to / "file/sub"); },
         cannotCopy + ": Permission denied"},
        {"a cancelled export", [&] { progress.cancelled = true; }, ": Operation canceled"},
    };
    for (const auto& [name, arrange, message] : cases) {
        SCOPED_TRACE(name);
        fs::permissions(folder.path(), fs::perms::all);
        fs::create_directories(sub);
        writeText(file, "content");
        arrange();
        ASSERT_EQ(::seteuid(65534), 0);
        const std::string error = copy();
        ASSERT_EQ(::seteuid(0), 0);
        EXPECT_TRUE(error.ends_with(message)) << error;
        progress.cancelled = false;
        fs::remove_all(from);
        fs::remove_all(to);
    }
    writeText(file, "content");
    const test::FileSizeLimit fullDisk(3);
    EXPECT_EQ(copy(), cannotCopy + ": File too large");
}

TEST_F(CopyTreeTest, FilesReplaceWhatIsThereAndKeepTheirModeAndContent) {
    const std::pair<std::string, std::string> files[] = {
        {test::kOddNames[1], "x"}, {test::kOddNames[4], std::string(100'000, 'y')}, {"empty", ""}};
    fs::create_directory(to);
    writeText(folder / "victim", "untouched");
    for (const auto& [name, content] : files) {
        writeText(from / name, content);
        fs::permissions(from / name, fs::perms(0547));
        fs::create_symlink("../victim", to / name); // must not be written through
    }
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(copy(), "<success>");
        for (const auto& [name, content] : files) {
            EXPECT_TRUE(readText(to / name) == content);
            EXPECT_EQ(fs::symlink_status(to / name).permissions(), fs::perms(0547));
        }
    }
    EXPECT_EQ(readText(folder / "victim"), "untouched");
    EXPECT_EQ(test::errorOf(copyTree(from, from, {}, progress)).substr(0, 11), "cannot copy");
    EXPECT_EQ(readText(from / files[0].first), "x");
}

TEST_F(CopyTreeTest, ACopyWithinItsSourceDoesNotCopyItself) {
    fs::create_directories(from / "a");
    fs::create_directory_symlink(from, folder / "link");
    EXPECT_EQ(test::errorOf(copyTree(from, folder / "link/a/copy", {}, progress)), "<success>");
    EXPECT_EQ(namesIn(from / "a/copy/a"), std::set<std::string>{});
}

} // namespace
} // namespace tarvik::app
