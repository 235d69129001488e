#include "TemporaryFolder.hpp"

#include <tarvik/core/JsonFile.hpp>

#include <gtest/gtest.h>

#include <string>

namespace tarvik {
namespace {

using namespace test;

std::string repeated(std::string_view text, std::size_t count) {
    std::string result;
    result.reserve(text.size() * count);
    while (count-- > 0)
        result += text;
    return result;
}

TEST(JsonFileTest, BadContentIsReportedWithItsPlace) {
    struct Case {
        std::string content;
        std::string place;
        std::string reason;
    };
    constexpr std::size_t k100Megabytes = 100'000'000;
    const Case cases[] = {
        {"", ":1:1: ", "unexpected end of input"},
        {"[1]", ":1:1: ", "an object is expected, not a"},
        {"{\n  \"a\": 1,\n  b\n}", ":3:3: ", ""},
        {"{\n  \"a\": [1,", ":2:11: ", "unexpected end of input"},
        {"{\"\xc3\xa4\xc3\xb6\": x}", ":1:8: ", "invalid literal"},
        {"{\"a\": \"\xe4\"}", ":1:9: ", "UTF-8"},
        {"{\"a\": 1e999}", ":1:1: ", "1e999"},
        {"{} {}", ":1:4: ", "expected end of input"},
        {std::string("{\"a\": 1}\0", 9), ":1:9: ", "NUL"},
        {"{\n\"a\": " + repeated("[", 64) + repeated("]", 64) + "}", ":2:69: ", "deeper than 64"},
        {repeated("{\"a\":", 100'000), ":1:321: ", "deeper than 64"},
        {"{\"a\": \"" + std::string(k100Megabytes, 'x'), ":1:7: ", "more than 4194304 bytes"},
        {"{\"a\": [" + repeated("1,", 10'000'000) + "1]}", ":1:", "more than 10000000 values"},
        {"{" + repeated("\"a\":1,", 257) + "\"b\":1}", ":1:", "more than 256 fields"},
    };
    const TemporaryFolder folder;
    for (const Case& each : cases) {
        const auto file = folder / "M\xc3\xbcll\n.json";
        writeText(file, each.content);
        const auto value = readJsonFile(file);
        ASSERT_FALSE(value) << each.reason;
        const std::string& message = value.error().message;
        EXPECT_TRUE(message.starts_with(file.native() + each.place)) << message.substr(0, 500);
        EXPECT_TRUE(contains(message, each.reason)) << message.substr(0, 500);
        EXPECT_LT(message.size(), 500U);
        EXPECT_FALSE(contains(message, "json.exception")) << message;
    }
}

TEST(JsonFileTest, DeepestAllowedContentSurvivesReadingAndWriting) {
    const TemporaryFolder folder;
    const auto file = folder / "deep.json";
    writeText(file, "{\"z\": {\"b\": \"]]{{\\\"\", \"a\": " + repeated("[", 62) + repeated("]", 62) + "}}");
    const auto value = readJsonFile(file);
    ASSERT_TRUE(value) << value.error().message;
    ASSERT_TRUE(writeJsonFile(file, *value));
    EXPECT_EQ(readJsonFile(file).value(), *value);
    EXPECT_TRUE(readText(file).starts_with("{\n  \"z\": {\n    \"b\": \"]]{{\\\"\",\n"))
        << "order and indentation";
}

} // namespace
} // namespace tarvik
