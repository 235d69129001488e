#include "CommandLine.hpp"

#include <tarvik/core/LogSink.hpp>

#include <gtest/gtest.h>

#include <QCoreApplication>

#include <ostream>

namespace tarvik::editor {
namespace {

std::expected<app::AppOptions, CommandLineStop> parse(const QStringList& arguments) {
    return parseCommandLine(QStringList{"tarvik-editor"} + arguments);
}

struct WrongCase {
    const char* name;
    QStringList arguments;
    const char* complaint;
};

std::ostream& operator<<(std::ostream& out, const WrongCase& wrong) {
    return out << wrong.arguments.join(' ').toStdString();
}

class WrongCommandLine : public testing::TestWithParam<WrongCase> {};

TEST_P(WrongCommandLine, EndsWithUsageAndNamesWhatIsWrong) {
    const auto parsed = parse(GetParam().arguments);
    ASSERT_FALSE(parsed);
    EXPECT_EQ(parsed.error().status, ExitStatus::Usage);
    EXPECT_TRUE(parsed.error().text.contains(GetParam().complaint)) << parsed.error().text.toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Table, WrongCommandLine,
    testing::Values(
        WrongCase{"Word", {"--frames", "many"}, "--frames: \"many\""},
        WrongCase{"Zero", {"p", "--frames", "0"}, "--frames: \"0\""},
        WrongCase{"TooLarge", {"p", "--frames", "2147483648"}, "--frames: \"2147483648\""},
        WrongCase{"Negative", {"--gpu", "-1"}, "--gpu: \"-1\""},
        WrongCase{"NeitherOnNorOff", {"--vsync", "yes"}, "--vsync: \"yes\""},
        WrongCase{"OptionalValue", {"--validation=maybe"}, "--validation: \"maybe\""},
        WrongCase{"OneSide", {"--size", "800x"}, "--size: \"800x\""},
        WrongCase{"HugeWindow", {"--size", "99999x9"}, "--size: \"99999x9\""},
        WrongCase{"FlatPoint", {"--camera", "1,2"}, "--camera: \"1,2\""},
        WrongCase{"NoNumber", {"--look-at", "1,nan,2"}, "--look-at: \"1,nan,2\""},
        WrongCase{"FarPoint", {"--camera", "1,1e30,2"}, "--camera: \"1,1e30,2\""},
        WrongCase{"SamePoints", {"--camera", "1,2,3", "--look-at", "1,2,3.0"}, "--look-at: \"1,2,3.0\""},
        WrongCase{"NoTime", {"--time-limit", "0"}, "--time-limit: \"0\""},
        WrongCase{"Level", {"--log-level", "loud"}, "--log-level: \"loud\""},
        WrongCase{"EmptyValue", {"--project", ""}, "--project: \"\""},
        WrongCase{"ValueMissing", {"--scene"}, "scene"}, WrongCase{"Unknown", {"--nonsense"}, "nonsense"},
        WrongCase{"SecondFolder", {"one", "two"}, "\"two\""},
        WrongCase{"FolderTwice", {"--project", "one", "two"}, "\"two\""},
        WrongCase{"PlayNew", {"--play", "--project", "one", "--new", "Fresh"}, "--new opens the editor"},
        WrongCase{"PlayNothing", {"--play"}, "--play needs a project"},
        WrongCase{"PictureOfNothing", {"--screenshot", "x.png"}, "need a project"}),
    [](const auto& wrong) { return std::string(wrong.param.name); });

TEST(CommandLineTest, EveryOptionReachesItsField) {
    const auto parsed = parse(
        {"a b",          "--scene",    "s.lscene",  "--play",  "--fullscreen", "--size",    "640x480",
         "--camera",     "-1,2.5,3",   "--look-at", "0,1,0",   "--still",      "--grid",    "off",
         "--vsync",      "off",        "--gpu",     "2",       "--validation", "--frames",  "7",
         "--screenshot", "p.png",      "--stats",   "s.json",  "--time-limit", "1.5",       "--log-level",
         "warn",         "--log-file", "l.txt",     "--quiet", "--list-gpus",  "-platform", "xcb"});
    ASSERT_TRUE(parsed) << parsed.error().text.toStdString();
    const app::AppOptions& options = *parsed;
    EXPECT_EQ(options.projectDir, "a b");
    EXPECT_EQ(options.scene, "s.lscene");
    EXPECT_TRUE(options.play);
    EXPECT_TRUE(options.fullScreen);
    EXPECT_EQ(options.windowWidth, 640);
    EXPECT_EQ(options.windowHeight, 480);
    EXPECT_EQ(parsePoint(options.cameraEye), glm::vec3(-1.0F, 2.5F, 3.0F));
    EXPECT_EQ(parsePoint(options.cameraTarget), glm::vec3(0.0F, 1.0F, 0.0F));
    EXPECT_TRUE(options.still);
    EXPECT_EQ(options.grid, false);
    EXPECT_EQ(options.vsync, false);
    EXPECT_EQ(options.gpu, 2U);
    EXPECT_EQ(options.validation, true);
    EXPECT_EQ(options.frames, 7);
    EXPECT_EQ(options.screenshotFile, "p.png");
    EXPECT_EQ(options.statsFile, "s.json");
    EXPECT_EQ(options.timeLimitMs, 1500);
    EXPECT_EQ(options.logLevel, 3U);
    EXPECT_EQ(options.logFile, "l.txt");
    EXPECT_TRUE(options.quiet);
    EXPECT_TRUE(options.listGpus);
    EXPECT_EQ(options.arguments, QStringList{"a b"});
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

TEST(CommandLineTest, AnOptionsValueMayEqualAnotherOption) {
    const auto parsed = parse({"--validation=off", "--", "--validation"});
    ASSERT_TRUE(parsed);
    EXPECT_EQ(parsed->validation, false);
    EXPECT_EQ(parsed->projectDir, "--validation");
}

TEST(CommandLineTest, HelpTellsTheExitStatuses) {
    int argc = 1;
    char name[] = "tarvik-editor";
    char* argv[] = {name, nullptr};
    const QCoreApplication application(argc, argv);
    const auto parsed = parse({"--help"});
    ASSERT_FALSE(parsed);
    EXPECT_EQ(parsed.error().status, ExitStatus::Done);
    EXPECT_TRUE(parsed.error().text.contains("Exit status:"));
}

} // namespace
} // namespace tarvik::editor
