#include "NewProjectDialog.hpp"
#include "OpenedProject.hpp"
#include "TemporaryFolder.hpp"

#include <tarvik/app/Paths.hpp>

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QTest>

namespace tarvik::editor {
namespace {

namespace fs = std::filesystem;

TEST(NewProjectDialogTest, EnterInTheNameFieldMakesTheChosenProject) {
    const test::TemporaryFolder folder;
    NewProjectDialog dialog(ProjectTemplate::Empty);
    dialog.setAttribute(Qt::WA_DeleteOnClose, false);
    std::expected<void, Error> created = makeError("not asked for");
    QObject::connect(&dialog, &NewProjectDialog::projectRequested, &dialog,
                     [&](const QString&, const QString& name, ProjectTemplate start) {
                         created = createProject(folder / "deep/project", name, start);
                     });
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    QTest::keyClicks(dialog.focusWidget(), "My Game");
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Down, Qt::Key_Backtab,
                              Qt::Key_Backtab, Qt::Key_Backtab, Qt::Key_Return})
        QTest::keyClick(dialog.windowHandle(), key);
    ASSERT_TRUE(created) << created.error().message;
    EXPECT_FALSE(dialog.isVisible());

    const auto opened = openProject(folder / "deep/project", {});
    ASSERT_TRUE(opened) << opened.error().message;
    EXPECT_EQ(opened->project.name(), "My Game");
    EXPECT_GT(opened->scene->size(), 10U);
    EXPECT_TRUE(fs::exists(folder / "deep/project/Scripts/Ball.cpp"));
    EXPECT_FALSE(fs::exists(folder / "deep/project/Saved"));
    const fs::path scene = folder / "deep/project/Content/Main.lscene";
    EXPECT_NE(fs::status(scene).permissions() & fs::perms::owner_write, fs::perms::none);

    EXPECT_FALSE(createProject(folder / "deep/project", "My Game", ProjectTemplate::Sample));
    EXPECT_TRUE(fs::exists(scene));
}

} // namespace
} // namespace tarvik::editor
