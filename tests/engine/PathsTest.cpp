#include "TemporaryFolder.hpp"

#include <tarvik/core/Paths.hpp>

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace tarvik {
namespace {

using namespace test;

class Environment final {
public:
    Environment(const char* name, const std::string& value) : name_(name) {
        if (const char* old = std::getenv(name))
            old_ = old;
        ::setenv(name, value.c_str(), 1);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment() { old_.empty() ? ::unsetenv(name_) : ::setenv(name_, old_.c_str(), 1); }

private:
    const char* name_;
    std::string old_;
};

TEST(PathsTest, ProjectsFolderFollowsTheUsersDocumentsFolder) {
    const TemporaryFolder home;
    const Environment homeVariable("HOME", home.path());
    const Environment config("XDG_CONFIG_HOME", home / "config");
    const std::string inHome = home.path().native();
    struct Case {
        const char* line;
        std::string documents;
    };
    const Case cases[] = {
        {"", inHome + "/Documents"},
        {"# XDG_DOCUMENTS_DIR=\"/no\"\n", inHome + "/Documents"},
        {"XDG_MUSIC_DIR=\"/no\"\nXDG_DOCUMENTS_DIR=\"$HOME/Do\\\"ku mente\"\n", inHome + "/Do\"ku mente"},
        {"  XDG_DOCUMENTS_DIR=\"/data/docs\"", "/data/docs"},
        {"XDG_DOCUMENTS_DIR=\"$HOME\"\n", inHome},
        {"XDG_DOCUMENTS_DIR=\"relative\"\n", inHome + "/Documents"},
        {"XDG_DOCUMENTS_DIR=\"$HOMER/x\"\n", inHome + "/Documents"},
        {"XDG_DOCUMENTS_DIR=\"/unclosed\n", inHome + "/Documents"},
    };
    for (const Case& each : cases) {
        ASSERT_TRUE(writeFileDurably(home / "config/user-dirs.dirs", each.line));
        EXPECT_EQ(paths::defaultProjectsDir(), each.documents + "/Tarvik Projects") << each.line;
    }
}

TEST(PathsTest, RelativeDataFolderCountsAsUnset) {
    const Environment homeVariable("HOME", "/home/someone");
    const Environment absolute("XDG_DATA_HOME", "/data");
    EXPECT_EQ(paths::userDataDir(), "/data/tarvik");
    const Environment relative("XDG_DATA_HOME", "data");
    EXPECT_EQ(paths::userDataDir(), "/home/someone/.local/share/tarvik");
}

} // namespace
} // namespace tarvik
