#include "TemporaryFolder.hpp"

#include <tarvik/app/ProjectSettingsDialog.hpp>
#include <tarvik/project/Project.hpp>

#include <gtest/gtest.h>

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>

namespace tarvik::app {
namespace {

namespace fs = std::filesystem;

struct DialogUnderTest {
    explicit DialogUnderTest(Project& project) : dialog(project, nullptr) {
        dialog.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
    }
    // What the dialog then says, with its title.
    std::string save(const QString& name) {
        dialog.findChild<QLineEdit*>()->setText(name);
        const auto& buttons = *dialog.findChild<QDialogButtonBox*>();
        QTest::mouseClick(buttons.button(QDialogButtonBox::Save), Qt::LeftButton);
        const std::unique_ptr<QMessageBox> box(dialog.findChild<QMessageBox*>());
        return box ? (box->windowTitle() + ": " + box->text()).toStdString() : "";
    }
    ProjectSettingsDialog dialog;
};

TEST(ProjectSettingsDialogTest, OffersTheScenesAndSavesAllThatIsEditedByKeyboard) {
    const test::TemporaryFolder folder;
    Project project = Project::create(folder / "new", "Old").value();
    fs::create_directories(project.contentDir() / "Levels/ü");
    for (const char* name : {"Content/Levels/ü/B.lscene", "C.lscene", "Content/A.txt"})
        test::writeText(project.rootDir() / name, "");
    for (const char* current : {"", "Content/Gone.lscene"}) {
        project.setDefaultScene(current);
        const DialogUnderTest shown(project);
        const auto& scenes = *shown.dialog.findChild<QComboBox*>();
        EXPECT_EQ(scenes.currentText(), current);
        EXPECT_EQ(scenes.count(), 2);
        QTest::keyClick(shown.dialog.windowHandle(), Qt::Key_A, Qt::ControlModifier);
        for (const QChar c : "  " + QString(64, 'n') + " ")
            QTest::keyClick(shown.dialog.windowHandle(), c.toLatin1());
        for (const Qt::Key key :
             {Qt::Key_Tab, Qt::Key_Space, Qt::Key_Tab, Qt::Key_Up, Qt::Key_Tab, Qt::Key_Return})
            QTest::keyClick(shown.dialog.windowHandle(), key);
        EXPECT_FALSE(shown.dialog.isVisible());
        const Project stored = Project::open(project.rootDir()).value();
        EXPECT_EQ(stored.name(), std::string(64, 'n'));
        EXPECT_TRUE(stored.description().starts_with(' '));
        EXPECT_EQ(stored.defaultScene(), "Content/Levels/ü/B.lscene");
    }
}

TEST(ProjectSettingsDialogTest, WhatCannotBeSavedIsToldAndCanBeTriedAgain) {
    const test::TemporaryFolder folder;
    Project project = Project::create(folder / "<b>odd</b>", "Old").value();
    const fs::path file = project.rootDir() / Project::kFileName;
    for (const auto& each : {folder.path(), project.rootDir()})
        fs::permissions(each, fs::perms::all);
    fs::permissions(file, fs::perms(0444));
    DialogUnderTest shown(project);
    for (const QString& name : {QString("   "), QString(10'000, 'n'), QString("🎮"), QString("שלום")}) {
        EXPECT_EQ(shown.save(name),
                  "Invalid name: Use letters, digits, spaces, '-' or '_' (max 64 characters).");
    }
    EXPECT_EQ(project.name(), "Old");
    {
        const test::NoPrivileges user;
        const std::string said = shown.save("New");
        EXPECT_TRUE(said.starts_with("Save failed: ") && said.contains(file.native())) << said;
    }
    EXPECT_EQ(project.name(), "New");
    EXPECT_EQ(Project::open(project.rootDir()).value().name(), "Old");
    EXPECT_TRUE(shown.dialog.isVisible());
    fs::permissions(file, fs::perms(0644));
    EXPECT_EQ(shown.save("New"), "");
    EXPECT_EQ(Project::open(project.rootDir()).value().name(), "New");
}

} // namespace
} // namespace tarvik::app
