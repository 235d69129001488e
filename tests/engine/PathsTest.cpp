#include "TemporaryFolder.hpp"

#include <tarvik/core/Paths.hpp>

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace tarvik {

using namespace test;

TEST(PathsTest, ProjectsFolderFollowsTheUsersDocumentsFolder) {
    const TemporaryFolder home;
    ::setenv("HOME", home.path().c_str(), 1);
    ::setenv("XDG_CONFIG_HOME", (home / "config").c_str(), 1);
    const std::string inHome = home.path().native();
    const std::pair<const char*, std::string> cases[] = {
        {"XDG_MUSIC_DIR=\"/no\"\nXDG_DOCUMENTS_DIR=\"$HOME/Do\\\"ku mente\"\n", inHome + "/Do\"ku mente"},
        {"  XDG_DOCUMENTS_DIR=\"/data/docs\"", "/data/docs"},
        {"XDG_DOCUMENTS_DIR=\"relative\"\n", inHome + "/Documents"},
        {"XDG_DOCUMENTS_DIR=\"$HOMER/x\"\n", inHome + "/Documents"},
    };
    for (const auto& [line, documents] : cases) {
        ASSERT_TRUE(writeFileDurably(home / "config/user-dirs.dirs", line));
        EXPECT_EQ(paths::defaultProjectsDir(), documents + "/Tarvik Projects") << line;
    }
}

} // namespace tarvik
