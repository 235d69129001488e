#include <tarvik/core/ConsoleSink.hpp>

#include <gtest/gtest.h>

#include <string>

namespace tarvik {
namespace {

// The line without its time.
std::string shown(const std::string& message) {
    testing::internal::CaptureStderr();
    ConsoleSink().write({LogLevel::Warn, "Test", message, 0});
    const std::string line = testing::internal::GetCapturedStderr();
    return line.substr(line.find(' ') + 1);
}

TEST(ConsoleSinkTest, NothingInALineDrivesTheTerminal) {
    const std::pair<std::string, std::string> cases[] = {
        {"plain \xc3\xa4 \xf0\x9f\x8e\xae\ttab", "plain \xc3\xa4 \xf0\x9f\x8e\xae\ttab"},
        {"\x1b[2J two\nlines\r", "\\x1b[2J two\\nlines\\x0d"},
        {std::string("nul\0!", 5), "nul\\x00!"},
        {"C1 \xc2\x9b", "C1 \\xc2\\x9b"},
        {"stray \x9b\xc3", "stray \\x9b\\xc3"},
        {"over-long \xc0\x9b \xe0\x80\x9b", "over-long \\xc0\\x9b \\xe0\\x80\\x9b"},
    };
    for (const auto& [message, line] : cases)
        EXPECT_EQ(shown(message), "warn  Test: " + line + "\n");
}

} // namespace
} // namespace tarvik
