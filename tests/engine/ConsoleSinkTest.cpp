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
    struct Case {
        std::string message;
        std::string shown;
    };
    const Case cases[] = {
        {"plain \xc3\xa4 \xf0\x9f\x8e\xae\ttab", "plain \xc3\xa4 \xf0\x9f\x8e\xae\ttab"},
        {"\x1b[2J", "\\x1b[2J"},
        {"two\nlines\r", "two\\nlines\\x0d"},
        {std::string("nul\0!", 5), "nul\\x00!"},
        {"\x7f", "\\x7f"},
        {"C1 \xc2\x9b", "C1 \\xc2\\x9b"},
        {"stray \x9b\xc3", "stray \\x9b\\xc3"},
        {"over-long \xc0\x9b \xe0\x80\x9b", "over-long \\xc0\\x9b \\xe0\\x80\\x9b"},
        {"surrogate \xed\xa0\x80", "surrogate \\xed\\xa0\\x80"},
        {"beyond \xf4\x90\x80\x80", "beyond \\xf4\\x90\\x80\\x80"},
    };
    for (const Case& each : cases)
        EXPECT_EQ(shown(each.message), "warn  Test: " + each.shown + "\n");
}

} // namespace
} // namespace tarvik
