#include "Hub.hpp"
#include "MainWindow.hpp"
#include "Pump.hpp"
#include "RedBoxProject.hpp"
#include "Session.hpp"

#include <gtest/gtest.h>

#include <QAction>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTreeView>

namespace tarvik::editor {

using test::pumpUntil;

TEST(RenderFailureTest, StartingAfreshKeepsProjectAndScene) {
    const QTemporaryDir folder;
    QSettings().clear();
    const QString root = folder.filePath("project");
    test::makeRedBoxProject(root.toStdString());

    Session session({.projectDir = root}, QElapsedTimer());
    int contexts = 1;
    QObject::connect(&session, &Session::contextChanged, &session, [&contexts] { ++contexts; });
    MainWindow window(session);
    window.start();

    const auto reasonShown = [&window] {
        const auto* label = window.findChild<QLabel*>("reason");
        return label != nullptr && label->isVisible() &&
               label->text() == "QVulkanInstance could not adopt the Vulkan instance";
    };
    const auto* tree = window.findChild<QTreeView*>();
    ASSERT_TRUE(pumpUntil(reasonShown));
    EXPECT_TRUE(window.findChild<QLabel*>("advice")->text().contains("xcb"));
    EXPECT_EQ(tree->model()->rowCount(), 1);

    window.findChild<QPushButton*>("restart")->click();
    ASSERT_TRUE(pumpUntil([&] { return contexts == 2; }));
    EXPECT_TRUE(pumpUntil(reasonShown));
    EXPECT_EQ(tree->model()->rowCount(), 1);
    EXPECT_TRUE(window.windowTitle().contains("Test"));

    for (QAction* action : window.findChildren<QAction*>()) {
        if (action->shortcut() == QKeySequence::Close)
            action->trigger();
    }
    Q_EMIT window.findChild<Hub*>()->projectChosen({root.toStdString(), "Test", 1});
    EXPECT_TRUE(pumpUntil([&] { return contexts == 3; })) << "another project inherits the failure";
    EXPECT_TRUE(pumpUntil(reasonShown));
}

} // namespace tarvik::editor
