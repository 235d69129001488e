#include "TemporaryFolder.hpp"

#include <tarvik/app/BuildDiagnostics.hpp>

#include <gtest/gtest.h>

#include <QString>

#include <string>
#include <string_view>

namespace tarvik::app {
namespace {

QString asText(const BuildDiagnostic& found) {
    return QString("%1 %2:%3:%4 %5\n")
        .arg(QString("EWN").mid(static_cast<int>(found.severity), 1), found.file, QString::number(found.line),
             QString::number(found.column), found.text);
}

// What the tools printed, shortened, and below the line what is found in it; of Visual C++ as it is
// documented.
TEST(BuildDiagnosticsTest, FindsWhatEachToolComplainsAboutAndNothingElse) {
    constexpr std::string_view line = "==== expected ====\n";
    int tools = 0;
    for (const auto& file : std::filesystem::directory_iterator(TARVIK_DIAGNOSTICS)) {
        const std::string text = test::readText(file.path());
        const std::size_t end = text.find(line);
        ASSERT_NE(end, std::string::npos) << file.path();
        QString found;
        for (const auto& diagnostic : BuildDiagnostics(QString::fromStdString(text.substr(0, end))).list())
            found += asText(diagnostic);
        EXPECT_EQ(found.toStdString(), text.substr(end + line.size())) << file.path();
        ++tools;
    }
    EXPECT_EQ(tools, 8);
}

// Each would take minutes in time that grows with the square.
TEST(BuildDiagnosticsTest, HostileOutputTakesNoLongerThanOtherOutput) {
    for (const char* part :
         {": error: ", "1", ":1: note:", "\x1b[", "\x1b]", "a(1,", "((", " ^", ">>> x\n", "  \n"}) {
        QString output("ld.lld: error: a\nCMake Error:\n  a\n");
        output += QString(part).repeated(1'000'000);
        output += ": undefined reference to `x'): error: x";
        EXPECT_LT(BuildDiagnostics(output).list().size(), 10) << part;
    }
}

} // namespace
} // namespace tarvik::app
