#include "PreferencesDialog.hpp"

#include <gtest/gtest.h>

#include <QDir>
#include <QMessageBox>
#include <QSettings>
#include <QTest>

namespace tarvik::editor {

using app::Preferences;

TEST(PreferencesDialogTest, AllIsReachedByKeyboardAndAFailedSaveIsToldAndTriedAgain) {
    Preferences{3, 0, true, ""}.save();
    const QString file = QSettings().fileName();
    PreferencesDialog dialog(std::vector<rhi::Gpu>{{0, "Fast", "discrete"}, {1, "Slow", "other"}});
    dialog.setAttribute(Qt::WA_DeleteOnClose, false);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    // GPU 3, which is gone, stands below GPU 1.
    for (const Qt::Key key : {Qt::Key_Up, Qt::Key_Tab, Qt::Key_Down, Qt::Key_Tab, Qt::Key_Space, Qt::Key_Tab,
                              Qt::Key_P, Qt::Key_Tab, Qt::Key_Tab})
        QTest::keyClick(dialog.windowHandle(), key);
    const auto save = [&] {
        QTest::keyClick(dialog.windowHandle(), Qt::Key_Return);
        const std::unique_ptr<QMessageBox> box(dialog.findChild<QMessageBox*>());
        return box ? box->text() : QString();
    };
    EXPECT_TRUE(save().contains("whole path"));
    for (const Qt::Key key : {Qt::Key_Backtab, Qt::Key_Backtab, Qt::Key_Home, Qt::Key_Slash})
        QTest::keyClick(dialog.windowHandle(), key);
    ASSERT_TRUE(QFile::remove(file) && QDir().mkpath(file + "/in the way"));
    EXPECT_TRUE(save().contains(file));
    EXPECT_TRUE(dialog.isVisible());
    ASSERT_TRUE(QDir(file).removeRecursively());
    EXPECT_EQ(save(), "");
    const Preferences saved = Preferences::load();
    EXPECT_EQ(saved.gpu, 1U);
    EXPECT_EQ(saved.validation, Preferences::kValidationOn);
    EXPECT_FALSE(saved.vsync);
    EXPECT_EQ(saved.projectsDirectory, "/p");
}

} // namespace tarvik::editor
