#include "ExportDialog.hpp"

#include "ProjectBuild.hpp"
#include "Pump.hpp"
#include "TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <QLabel>
#include <QTest>

#include <memory>

namespace tarvik::editor {
namespace {

namespace fs = std::filesystem;

// In an installation that holds nothing but the runtime of the platform "other".
struct ExportDialogTest : testing::Test {
    ExportDialogTest() {
        fs::create_directories(folder / "project");
        test::writeText(folder / "file", "");
        dialog->setAttribute(Qt::WA_DeleteOnClose, false);
        dialog->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(dialog.get()));
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(dialog->windowHandle(), key, modifiers);
    }
    void exportTo(const fs::path& destination) {
        press(Qt::Key_F, Qt::AltModifier);
        press(Qt::Key_A, Qt::ControlModifier);
        for (const char c : (folder / destination).string())
            QTest::keyClick(dialog->windowHandle(), c);
        press(Qt::Key_Return);
    }
    // Within the time of a test.
    bool says(const std::string& text) {
        return test::pumpUntil([&] {
            QString said;
            for (const auto* label : dialog->findChildren<QLabel*>())
                said += label->text().remove(QChar(0x200b));
            return said.contains(QString::fromStdString(text));
        });
    }

    test::TemporaryFolder folder;
    ProjectBuild build{QString::fromStdString(folder / "project")};
    std::unique_ptr<ExportDialog> dialog = std::make_unique<ExportDialog>(build, "Game");
};

TEST_F(ExportDialogTest, WhatIsInTheWayIsToldUntilTheGameForTheChosenPlatformIsThere) {
    exportTo("new");
    EXPECT_TRUE(says("runtime at ")) << "there is none for this platform";
    press(Qt::Key_P, Qt::AltModifier);
    press(Qt::Key_Down);
    exportTo("");
    EXPECT_TRUE(says("is not empty: choose"));
    exportTo("file/below");
    EXPECT_TRUE(says("cannot create " + (folder / "file/below").string()));
    exportTo("new");
    EXPECT_TRUE(says("The game starts with " + (folder / "new/run.sh").string()));
    EXPECT_TRUE(fs::exists(folder / "new/bin/tarvik-editor"));
    press(Qt::Key_Return);
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(ExportDialogTest, AnExportThatIsCancelledOrWhoseDialogGoesLeavesNoTrace) {
    test::writeText(folder / "project/asset", "");
    fs::resize_file(folder / "project/asset", 1U << 30U); // takes longer than to cancel
    press(Qt::Key_P, Qt::AltModifier);
    press(Qt::Key_Down);
    exportTo("new");
    EXPECT_TRUE(says(" of 1")) << "progress";
    press(Qt::Key_Escape);
    EXPECT_TRUE(says("The export was cancelled."));
    EXPECT_TRUE(dialog->isVisible());
    const std::set<std::string> before{"file", "project"};
    EXPECT_EQ(test::namesIn(folder.path()), before);
    exportTo("new");
    EXPECT_TRUE(says(" of 1")) << "progress";
    dialog.reset();
    EXPECT_EQ(test::namesIn(folder.path()), before);
}

} // namespace
} // namespace tarvik::editor
