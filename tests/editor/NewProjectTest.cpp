#include "NewProjectDialog.hpp"
#include "OpenedProject.hpp"
#include "Pump.hpp"
#include "TemporaryFolder.hpp"

#include <tarvik/app/Paths.hpp>

#include <gtest/gtest.h>

#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include <algorithm>

namespace tarvik::editor {
namespace {

namespace fs = std::filesystem;

TEST(NewProjectDialogTest, AFailureIsToldAndEnterMakesTheChosenProject) {
    const test::TemporaryFolder folder;
    const fs::path made = folder / "deep/My Game";
    fs::create_directories(made);
    test::writeText(made / "mine.txt", "not of a project");
    NewProjectDialog dialog(ProjectTemplate::Empty);
    dialog.setAttribute(Qt::WA_DeleteOnClose, false);
    QString created;
    QObject::connect(&dialog, &NewProjectDialog::created, &dialog,
                     [&](const QString& place) { created = place; });
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    QLineEdit* name = qobject_cast<QLineEdit*>(dialog.focusWidget());
    QTest::keyClicks(name, "My Game");
    QTest::keyClick(dialog.windowHandle(), Qt::Key_Tab);
    qobject_cast<QLineEdit*>(dialog.focusWidget())->setText(QString::fromStdString(folder / "deep"));
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Down, Qt::Key_Backtab, Qt::Key_Backtab,
                              Qt::Key_Backtab, Qt::Key_Return})
        QTest::keyClick(dialog.windowHandle(), key);
    EXPECT_TRUE(test::pumpUntil([&] { return name->hasFocus(); }));
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_TRUE(std::ranges::any_of(dialog.findChildren<QLabel*>(), [](const QLabel* label) {
        return label->text().contains("it is not an empty folder");
    }));
    EXPECT_TRUE(fs::exists(made / "mine.txt"));

    fs::remove(made / "mine.txt");
    QTest::keyClick(name, Qt::Key_Return);
    EXPECT_FALSE(name->isEnabled());
    ASSERT_TRUE(test::pumpUntil([&] { return !dialog.isVisible(); }));
    EXPECT_EQ(app::toPath(created), made);

    const auto opened = openProject(made, {});
    ASSERT_TRUE(opened) << opened.error().message;
    EXPECT_EQ(opened->project.name(), "My Game");
    EXPECT_GT(opened->scene->size(), 10U);
    EXPECT_TRUE(fs::exists(made / "Scripts/Ball.cpp"));
    EXPECT_FALSE(fs::exists(made / "Saved"));
    const fs::path scene = made / "Content/Main.lscene";
    EXPECT_NE(fs::status(scene).permissions() & fs::perms::owner_write, fs::perms::none);
}

} // namespace
} // namespace tarvik::editor
