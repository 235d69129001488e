#include "TemporaryFolder.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/app/Preferences.hpp>

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QSettings>

namespace tarvik::app {
namespace {

TEST(PreferencesTest, OddOrMissingValuesAreReadAsTheirKeysSayAndFillOnlyWhatIsOpen) {
    const test::TemporaryFolder folder;
    QCoreApplication::setOrganizationName("Tarvik");
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, toQString(folder.path()));
    using Options = std::tuple<std::optional<std::uint32_t>, std::optional<bool>, std::optional<bool>>;
    const std::tuple<const char*, QVariant, Options> rows[] = {
        {"fresh", 1, {{}, {}, true}},
        {"preferences/gpu", -7, {{}, {}, true}},
        {"preferences/gpu", "best", {0U, {}, true}},
        {"preferences/validation", 1, {{}, true, true}},
        {"preferences/validation", 2, {{}, false, true}},
        {"preferences/validation", 3, {{}, {}, true}},
        {"preferences/validation", -1, {{}, {}, true}},
        {"preferences/vsync", "false", {{}, {}, false}},
    };
    for (const auto& [key, stored, filled] : rows) {
        QSettings().clear();
        QSettings().setValue(key, stored);
        AppOptions open;
        Preferences::load().applyTo(open);
        EXPECT_EQ(Options(open.gpu, open.validation, open.vsync), filled) << key << stored.toInt();
        AppOptions chosen;
        std::tie(chosen.gpu, chosen.validation, chosen.vsync) = Options(9U, true, true);
        Preferences::load().applyTo(chosen);
        EXPECT_EQ(Options(chosen.gpu, chosen.validation, chosen.vsync), Options(9U, true, true));
    }
    Preferences{0U, 2, false, "@/a, \"ü\" 🎮\\"}.save();
    EXPECT_EQ(Preferences::load().gpu, 0U);
    EXPECT_EQ(Preferences::load().effectiveProjectsDirectory(), "@/a, \"ü\" 🎮\\");
    Preferences().save();
    EXPECT_EQ(QSettings().value("preferences/gpu"), "-1");
}

} // namespace
} // namespace tarvik::app
