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

TEST(FileTest, ReadingWhatIsNoReadableFileFailsAndNeverHangs) {
    const TemporaryFolder folder;
    writeText(folder / "large", "12345");
    writeText(folder / "file", "x");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    fs::create_symlink("loop", folder / "loop");
    const fs::path cases[] = {folder / "absent", folder / "large", folder / "pipe",      folder / "loop",
                              folder.path(),     "/dev/zero",      folder / "file/inner"};
    for (const fs::path& file : cases) {
        const auto content = readFile(file, 4);
        ASSERT_FALSE(content) << file;
        EXPECT_TRUE(contains(content.error().message, file.native())) << content.error().message;
    }
    EXPECT_EQ(readFile(folder / "large", 5), "12345");
    EXPECT_TRUE(contains(readText("/proc/self/status"), "Name:")) << "a file that tells no size";
}

TEST(FileTest, FailedWriteLeavesTheOldContentAndNothingElse) {
    const TemporaryFolder folder;
    const fs::path file = folder / "file";
    writeText(file, "old");
    {
        const FileSizeLimit full(1000);
        const auto written = writeFileDurably(file, std::string(100'000, 'x'));
        ASSERT_FALSE(written);
        EXPECT_TRUE(contains(written.error().message, file.native()));
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

TEST(FileTest, WritingRefusesWhatIsNoPlainFile) {
    const TemporaryFolder folder;
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    fs::create_directory(folder / "folder");
    fs::create_symlink("loop", folder / "loop");
    writeText(folder / "file", "kept");
    for (const char* name : {"pipe", "folder", "loop", "file/inner"})
        EXPECT_FALSE(writeFileDurably(folder / name, "x")) << name;
    EXPECT_TRUE(fs::is_fifo(folder / "pipe"));
    EXPECT_EQ(readText(folder / "file"), "kept");
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
    {
        std::vector<std::jthread> threads;
        for (int i = 0; i < 4; ++i)
            threads.emplace_back([&] {
                for (int round = 0; round < 20; ++round) {
                    const auto lock = FileLock::acquire(lockFile);
                    ASSERT_TRUE(lock) << lock.error().message;
                    counter = counter + 1; // two steps: without the lock, additions get lost
                }
            });
    }
    EXPECT_EQ(counter, 80);
    const auto held = FileLock::acquire(lockFile);
    ASSERT_TRUE(held);
    const auto refused = FileLock::acquire(lockFile);
    ASSERT_FALSE(refused);
    EXPECT_TRUE(contains(refused.error().message, lockFile.native()));
}

} // namespace
} // namespace tarvik
