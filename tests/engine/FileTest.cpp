#include "TemporaryFolder.hpp"

#include <tarvik/core/File.hpp>

#include <gtest/gtest.h>

#include <sys/stat.h>

namespace tarvik {

namespace fs = std::filesystem;
using namespace test;

TEST(FileTest, WhatIsNoPlainFileIsNeitherReadNorReplacedAndNeverHangs) {
    const TemporaryFolder folder;
    writeText(folder / "file", "12345");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    fs::create_directory(folder / "folder");
    fs::create_symlink("loop", folder / "loop");
    for (const char* name : {"pipe", "folder", "loop", "file/inner", "/dev/zero"}) {
        EXPECT_TRUE(errorOf(readFile(folder / name, 4)).contains((folder / name).native())) << name;
        EXPECT_FALSE(writeFileDurably(folder / name, "x")) << name;
    }
    EXPECT_TRUE(fs::is_fifo(folder / "pipe"));
    EXPECT_FALSE(readFile(folder / "absent", 4));
    EXPECT_FALSE(readFile(folder / "file", 4)) << "larger than allowed";
    EXPECT_EQ(readFile(folder / "file", 5), "12345");
    EXPECT_TRUE(readText("/proc/self/status").contains("Name:")) << "a file that tells no size";
}

TEST(FileTest, AFullDiskOrAReadOnlyFileKeepsTheOldContentAndGetsNothingElse) {
    const TemporaryFolder folder;
    const fs::path file = folder / "file";
    writeText(file, "old");
    {
        const FileSizeLimit full(1000);
        EXPECT_TRUE(errorOf(writeFileDurably(file, std::string(100'000, 'x'))).contains(file.native()));
    }
    fs::permissions(folder.path(), fs::perms::all); // where a new file could take the old one's place
    fs::permissions(file, fs::perms(0444));
    const NoPrivileges user;
    EXPECT_TRUE(errorOf(writeFileDurably(file, "new")).contains(file.native()));
    EXPECT_EQ(readText(file), "old");
    EXPECT_EQ(namesIn(folder.path()), std::set<std::string>{"file"});
}

TEST(FileTest, WritingKeepsPermissionsAndLinks) {
    const TemporaryFolder folder;
    fs::create_directory(folder / "target");
    const fs::path file = folder / "target/file";
    writeText(file, "old");
    fs::permissions(file, fs::perms(0640));
    fs::create_symlink("target/file", folder / "link");
    ASSERT_TRUE(writeFileDurably(folder / "link", "new"));
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(readText(file), "new");
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0640));
}

TEST(FileTest, LockExcludesOthersAndWaitingEnds) {
    const TemporaryFolder folder;
    const fs::path lockFile = folder / "new/lock";
    const auto held = FileLock::acquire(lockFile);
    EXPECT_TRUE(held && errorOf(FileLock::acquire(lockFile)).contains(lockFile.native()));
}

} // namespace tarvik
