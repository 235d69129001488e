#include "TemporaryFolder.hpp"

#include <tarvik/core/File.hpp>

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <atomic>
#include <thread>
#include <vector>

namespace tarvik {
namespace {

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

TEST(FileTest, FailedWriteLeavesTheOldContentAndNothingElse) {
    const TemporaryFolder folder;
    const fs::path file = folder / "file";
    writeText(file, "old");
    {
        const FileSizeLimit full(1000);
        EXPECT_TRUE(errorOf(writeFileDurably(file, std::string(100'000, 'x'))).contains(file.native()));
    }
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
    fs::create_symlink("link", folder / "second");
    ASSERT_TRUE(writeFileDurably(folder / "second", "new"));
    EXPECT_TRUE(fs::is_symlink(folder / "second"));
    EXPECT_EQ(readText(file), "new");
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0640));
}

TEST(FileTest, EachDifferentContentIsKeptAsideOnce) {
    const TemporaryFolder folder;
    const fs::path file = folder / "file";
    writeText(file, "first");
    EXPECT_EQ(keepAside(file).value(), folder / "file.corrupt-1");
    EXPECT_EQ(keepAside(file).value(), folder / "file.corrupt-1");
    writeText(file, "second");
    EXPECT_EQ(keepAside(file).value(), folder / "file.corrupt-2");
    EXPECT_EQ(readText(folder / "file.corrupt-1"), "first");
    EXPECT_EQ(readText(file), "second");
}

TEST(FileTest, LockExcludesOthersAndWaitingEnds) {
    const TemporaryFolder folder;
    const fs::path lockFile = folder / "new/lock";
    std::atomic<int> counter = 0;
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            for (int round = 0; round < 20; ++round) {
                const auto lock = FileLock::acquire(lockFile);
                ASSERT_TRUE(lock) << lock.error().message;
                counter = counter + 1; // two steps: without the lock, additions get lost
            }
        });
    threads.clear();
    EXPECT_EQ(counter, 80);
    const auto held = FileLock::acquire(lockFile);
    EXPECT_TRUE(held && errorOf(FileLock::acquire(lockFile)).contains(lockFile.native()));
}

} // namespace
} // namespace tarvik
