#include "CommandLine.hpp"

#include <tarvik/core/LogSink.hpp>

#include <gtest/gtest.h>

#include <QStringList>

namespace tarvik::editor {
namespace {

std::expected<app::AppOptions, CommandLineStop> parse(const QStringList& arguments) {
    return parseCommandLine(QStringList{"tarvik-editor"} + arguments);
}

TEST(CommandLineTest, WrongArgumentsEndWithUsageAndAreNamed) {
    const std::pair<QStringList, const char*> cases[] = {
        {{"--frames", "many"}, "--frames: \"many\""},
        {{"p", "--frames", "2147483648"}, "--frames: \"2147483648\""},
        {{"--gpu", "-1"}, "--gpu: \"-1\""},
        {{"--vsync", "yes"}, "--vsync: \"yes\""},
        {{"--validation=maybe"}, "--validation: \"maybe\""},
        {{"--size", "800x"}, "--size: \"800x\""},
        {{"--look-at", "1,nan,2"}, "--look-at: \"1,nan,2\""},
        {{"--camera", "1,2,3", "--look-at", "1,2,3.0"}, "--look-at: \"1,2,3.0\""},
        {{"--log-level", "loud"}, "--log-level: \"loud\""},
        {{"--project", ""}, "--project: \"\""},
        {{"--nonsense"}, "nonsense"},
        {{"--project", "one", "two"}, "\"two\""},
        {{"--play", "--project", "one", "--new", "Fresh"}, "--new opens the editor"},
        {{"--play"}, "--play needs a project"},
        {{"--screenshot", "x.png"}, "need a project"},
    };
    for (const auto& [arguments, complaint] : cases) {
        SCOPED_TRACE(arguments.join(' ').toStdString());
        const auto parsed = parse(arguments);
        ASSERT_FALSE(parsed);
        EXPECT_EQ(parsed.error().status, ExitStatus::Usage);
        EXPECT_TRUE(parsed.error().text.contains(complaint)) << parsed.error().text.toStdString();
    }
}

// A preference may fill only what was not chosen.
TEST(CommandLineTest, WhatIsNotGivenStaysUnset) {
    const auto parsed = parse({"--project", "folder", "--new", "Fresh"});
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->projectDir, "folder");
    EXPECT_EQ(parsed->newProjectName, "Fresh");
    EXPECT_FALSE(parsed->validation || parsed->gpu || parsed->vsync || parsed->grid);
    EXPECT_EQ(parsed->frames, 0);
    EXPECT_EQ(parsed->logLevel, static_cast<std::uint32_t>(LogLevel::Info));
}

} // namespace
} // namespace tarvik::editor
