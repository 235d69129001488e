#include "StagedExport.hpp"

#include "TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <sys/mount.h>

#include <set>

namespace tarvik::editor {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

class StagedExportTest : public testing::Test {
protected:
    StagedExportTest() {
        for (const char* folder : {"project", "runtime/bin", "disk"})
            fs::create_directories(folder_ / folder);
        test::writeText(folder_ / "runtime/bin/tarvik-editor", "");
        test::writeText(folder_ / "project/asset", std::string(100'000, 'x'));
    }

    std::string exportTo(const fs::path& destination) {
        const app::GameExport request{folder_ / "project", "Game",      folder_ / destination,
                                      folder_ / "runtime", "linux-any", nullptr};
        const auto launcher = exportStaged(request, progress_, total_);
        return launcher ? launcher->lexically_relative(fs::canonical(folder_.path())).string()
                        : launcher.error().message;
    }

    test::TemporaryFolder folder_;
    app::ExportProgress progress_;
    std::atomic<std::uint64_t> total_{0};
};

TEST_F(StagedExportTest, TheGameTakesThePlaceOfAMissingOrEmptyFolderAndLeavesNoPart) {
    fs::create_directory(folder_ / "disk/empty");
    fs::create_directory(folder_ / "disk/empty.part"); // somebody's
    fs::create_directory_symlink("disk", folder_ / "link");
    for (const std::string destination : {"disk/empty", "disk/new", "disk/a/b", "disk/slash/"})
        EXPECT_EQ(exportTo(destination), (fs::path(destination) / "run.sh").lexically_normal());
    EXPECT_EQ(exportTo("link/linked"), "disk/linked/run.sh");
    EXPECT_EQ(test::namesIn(folder_ / "disk"), (Names{"empty", "empty.part", "new", "a", "slash", "linked"}));
    EXPECT_EQ(test::namesIn(folder_ / "disk/empty"), (Names{"bin", "Game", "run.sh"}));
    const auto usual = fs::status(folder_ / "project").permissions();
    EXPECT_EQ(fs::status(folder_ / "disk/new").permissions(), usual);
}

TEST_F(StagedExportTest, WhateverFailsNothingIsLeft) {
    const std::string disk = (folder_ / "disk").string();
    test::writeText(folder_ / "disk/file", "");
    fs::create_symlink("loop", folder_ / "loop");
    fs::create_symlink("no/such", folder_ / "nowhere");
    const Names before = test::namesIn(disk);
    EXPECT_EQ(exportTo("disk/file"), disk + "/file is not a folder: choose an empty or new folder");
    EXPECT_TRUE(exportTo("nowhere").ends_with("/nowhere is not a folder: choose an empty or new folder"));
    EXPECT_EQ(exportTo("disk/file/below"), "cannot create " + disk + "/file/below.part: Not a directory");
    EXPECT_TRUE(exportTo("loop/new").ends_with("/loop/new: Too many levels of symbolic links"));
    const auto exportToDiskOf = [&](std::size_t bytes) {
        const test::FileSizeLimit full(bytes);
        return exportTo("disk/full");
    };
    EXPECT_TRUE(exportToDiskOf(50'000).ends_with("asset: File too large"));
    test::writeText(folder_ / "project/asset", "");
    EXPECT_TRUE(exportToDiskOf(0).starts_with("cannot write ")) << "the launcher";
    progress_.cancelled = true;
    EXPECT_TRUE(exportTo("disk/a/b").ends_with("Operation canceled"));
    EXPECT_EQ(test::namesIn(disk), before);
}

TEST_F(StagedExportTest, ADiskWithoutRoomIsNamedBeforeAnythingIsWritten) {
    const std::string disk = (folder_ / "disk").string();
    if (::mount("none", disk.c_str(), "tmpfs", 0, "size=64k,nr_inodes=4") != 0)
        GTEST_SKIP() << "only root can make a small disk, and not everywhere";
    const std::string error = exportTo("disk/new");
    EXPECT_EQ(exportTo("disk"), disk + " is a whole disk: choose a new folder on it");
    const Names names = test::namesIn(disk);
    ::umount(disk.c_str());
    EXPECT_TRUE(error.starts_with(disk + ": the game takes ")) << error;
    EXPECT_EQ(names, Names{});
    EXPECT_EQ(progress_.done, 0U);
}

} // namespace
} // namespace tarvik::editor
