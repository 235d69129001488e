#include "TemporaryFolder.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/app/Preferences.hpp>
#include <tarvik/core/Paths.hpp>

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QSettings>

namespace tarvik::app {
namespace {

using Gpu = std::optional<std::uint32_t>;

class PreferencesTest : public ::testing::Test {
protected:
    PreferencesTest() {
        QCoreApplication::setOrganizationName("Tarvik");
        QCoreApplication::setApplicationName("preferences-test");
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, toQString(folder_.path()));
    }

private:
    test::TemporaryFolder folder_;
};

TEST_F(PreferencesTest, AFreshStoreChoosesNothingButVerticalSync) {
    const Preferences fresh = Preferences::load();
    AppOptions options;
    fresh.applyTo(options);
    EXPECT_EQ(options.gpu, std::nullopt);
    EXPECT_EQ(options.validation, std::nullopt);
    EXPECT_EQ(options.vsync, true);
    EXPECT_EQ(fresh.effectiveProjectsDirectory(), toQString(paths::defaultProjectsDir()));
}

TEST_F(PreferencesTest, OddStoredValuesAreReadAsTheirKeysSay) {
    const struct {
        const char* key;
        QVariant stored;
        Gpu gpu;
        std::uint32_t validation;
        bool vsync;
    } rows[] = {
        {"preferences/gpu", -7, {}, 0, true},         {"preferences/gpu", 0, 0U, 0, true},
        {"preferences/gpu", "best", 0U, 0, true},     {"preferences/validation", 3, {}, 0, true},
        {"preferences/validation", -1, {}, 0, true},  {"preferences/validation", "2", {}, 2, true},
        {"preferences/vsync", "false", {}, 0, false},
    };
    for (const auto& row : rows) {
        QSettings().clear();
        QSettings().setValue(row.key, row.stored);
        const Preferences loaded = Preferences::load();
        SCOPED_TRACE(row.key + (" = " + row.stored.toString()).toStdString());
        EXPECT_EQ(loaded.gpu, row.gpu);
        EXPECT_EQ(loaded.validation, row.validation);
        EXPECT_EQ(loaded.vsync, row.vsync);
    }
}

TEST_F(PreferencesTest, WhatIsSavedIsLoadedAgain) {
    const Preferences all{.gpu = 0, .validation = 1, .vsync = false, .projectsDirectory = "@/a, \"ü\" 🎮\\"};
    for (const Preferences& saved : {all, Preferences()}) {
        saved.save();
        EXPECT_EQ(QSettings().value("preferences/gpu"), saved.gpu ? "0" : "-1");
        const Preferences loaded = Preferences::load();
        EXPECT_EQ(loaded.gpu, saved.gpu);
        EXPECT_EQ(loaded.validation, saved.validation);
        EXPECT_EQ(loaded.vsync, saved.vsync);
        EXPECT_EQ(loaded.projectsDirectory, saved.projectsDirectory);
    }
    EXPECT_EQ(all.effectiveProjectsDirectory(), all.projectsDirectory);
}

TEST_F(PreferencesTest, AnExplicitChoiceStays) {
    Preferences preferences;
    preferences.gpu = 2;
    preferences.validation = Preferences::kValidationOff;
    preferences.vsync = false;
    AppOptions open;
    preferences.applyTo(open);
    EXPECT_EQ(open.gpu, 2U);
    EXPECT_EQ(open.validation, false);
    EXPECT_EQ(open.vsync, false);

    AppOptions chosen;
    chosen.gpu = 0;
    chosen.validation = true;
    chosen.vsync = true;
    preferences.applyTo(chosen);
    EXPECT_EQ(chosen.gpu, 0U);
    EXPECT_EQ(chosen.validation, true);
    EXPECT_EQ(chosen.vsync, true);
}

} // namespace
} // namespace tarvik::app
