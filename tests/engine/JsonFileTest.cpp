#include "TemporaryFolder.hpp"

#include <tarvik/core/JsonFile.hpp>

#include <gtest/gtest.h>

#include <string>
#include <tuple>

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
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"", ":1:1: ", "unexpected end of input"},
        {"[1]", ":1:1: ", "an object is expected, not a"},
        {"{\"\xc3\xa4\xc3\xb6\": x}", ":1:8: ", "invalid literal"},
        {"{\"a\": \"\xe4\"}", ":1:9: ", "UTF-8"},
        {std::string("{\"a\": 1}\0", 9), ":1:9: ", "NUL"},
        {"{\n\"a\": " + repeated("[", 64) + repeated("]", 64) + "}", ":2:69: ", "deeper than 64"},
        {repeated("{\"a\":", 100'000), ":1:321: ", "deeper than 64"},
        {"{\"a\": \"" + std::string(100'000'000, 'x'), ":1:7: ", "more than 4194304 bytes"},
        {"{\"a\": [" + repeated("1,", 10'000'000) + "1]}", ":1:", "more than 10000000 values"},
        {"{" + repeated("\"a\":1,", 257) + "\"b\":1}", ":1:", "more than 256 fields"},
    };
    const TemporaryFolder folder;
    for (const auto& [content, place, reason] : cases) {
        const auto file = folder / "M\xc3\xbcll\n.json";
        writeText(file, content);
        const std::string message = errorOf(readJsonFile(file));
        EXPECT_TRUE(message.starts_with(file.native() + place)) << message.substr(0, 500);
        EXPECT_TRUE(message.contains(reason)) << message.substr(0, 500);
        EXPECT_LT(message.size(), 500U);
    }
}

TEST(JsonFileTest, BracketsInTextsAreNoDepth) {
    const TemporaryFolder folder;
    const std::string lists = std::string(62, '[') + std::string(62, ']');
    writeText(folder / "deep.json", R"({"z": {"b": "]]{{\"[[", "a": )" + lists + "}}");
    EXPECT_EQ(errorOf(readJsonFile(folder / "deep.json")), "<success>");
}

} // namespace
} // namespace tarvik
