#include <tarvik/core/ConsoleSink.hpp>

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

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

TEST(ConsoleSinkTest, LinesOfSeveralThreadsStayWhole) {
    testing::internal::CaptureStderr();
    {
        ConsoleSink sink;
        std::vector<std::jthread> threads;
        for (const char letter : {'a', 'b', 'c', 'd'})
            threads.emplace_back([&sink, letter] {
                for (int line = 0; line < 50; ++line)
                    sink.write({LogLevel::Info, "T", std::string(10'000, letter), 0});
            });
    }
    const std::string output = testing::internal::GetCapturedStderr();
    int lines = 0;
    for (std::size_t start = 0; start < output.size(); ++lines) {
        const std::string line = output.substr(start, output.find('\n', start) - start);
        const std::string text = line.substr(line.find("T: ") + 3);
        ASSERT_EQ(text, std::string(10'000, text[0]));
        start += line.size() + 1;
    }
    EXPECT_EQ(lines, 200);
}

} // namespace
} // namespace tarvik
