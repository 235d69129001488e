#include "CommandLine.hpp"

#include <gtest/gtest.h>

#include <QStringList>

namespace tarvik::editor {
TEST(CommandLineTest, WrongArgumentsEndWithUsageAndAreNamed) {
    const std::pair<QStringList, const char*> cases[] = {
        {{"p", "--frames", "2147483648"}, "--frames: \"2147483648\""},
        {{"--gpu", "-1"}, "--gpu: \"-1\""},
        {{"--look-at", "1,nan,2"}, "--look-at: \"1,nan,2\""},
        {{"--log-level", "loud"}, "--log-level: \"loud\""},
        {{"--project", ""}, "--project: \"\""},
        {{"--nonsense"}, "nonsense"},
        {{"--project", "one", "two"}, "\"two\""},
        {{"--play", "--project", "one", "--new", "Fresh"}, "--new opens the editor"},
        {{"--play"}, "--play needs a project"},
        {{"--build", "--quiet"}, "--build needs a project"},
        {{"--build", "one", "--play"}, "does not go with --play"},
        {{"--export", "out"}, "--export needs a project"},
        {{"p", "--export", ""}, "--export: \"\""},
        {{"p", "--export", "out", "--name", "a/b"}, "--name: \"a/b\""},
        {{"p", "--export", "out", "--play"}, "--export shows nothing"},
    };
    for (const auto& [arguments, complaint] : cases) {
        SCOPED_TRACE(arguments.join(' ').toStdString());
        const auto parsed = parseCommandLine(QStringList{"tarvik-editor"} + arguments);
        ASSERT_FALSE(parsed);
        EXPECT_EQ(parsed.error().status, ExitStatus::Usage);
        EXPECT_TRUE(parsed.error().text.contains(complaint)) << parsed.error().text.toStdString();
    }
}

} // namespace tarvik::editor
