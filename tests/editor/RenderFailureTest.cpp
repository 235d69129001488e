#include "MainWindow.hpp"
#include "Pump.hpp"
#include "RedBoxProject.hpp"
#include "Session.hpp"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QTableView>
#include <QTemporaryDir>
#include <QTreeView>

namespace tarvik::editor {
namespace {

using test::pumpUntil;

TEST(RenderFailureTest, StartingAfreshKeepsProjectSceneAndLog) {
    const QTemporaryDir folder;
    qputenv("XDG_DATA_HOME", folder.filePath("data").toUtf8());
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.filePath("settings"));
    const QString root = folder.filePath("project");
    test::makeRedBoxProject(root.toStdString());

    app::AppOptions options;
    options.projectDir = root;
    QElapsedTimer sinceStart;
    sinceStart.start();
    Session session(options, sinceStart);
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
    const auto* log = window.findChild<QTableView*>();
    ASSERT_TRUE(pumpUntil(reasonShown));
    const auto failuresLogged = [log] {
        int failures = 0;
        for (int row = 0; row < log->model()->rowCount(); ++row)
            failures += log->model()->index(row, 1).data() == "error" ? 1 : 0;
        return failures;
    };
    ASSERT_TRUE(pumpUntil([&] { return failuresLogged() == 1; }));
    EXPECT_TRUE(window.findChild<QLabel*>("advice")->text().contains("xcb"));
    EXPECT_EQ(tree->model()->rowCount(), 1);

    window.findChild<QPushButton*>("restart")->click();
    ASSERT_TRUE(pumpUntil([&] { return contexts == 2; }));
    EXPECT_TRUE(pumpUntil([&] { return failuresLogged() == 2; }));
    EXPECT_TRUE(pumpUntil(reasonShown));
    EXPECT_EQ(tree->model()->rowCount(), 1);
    EXPECT_TRUE(window.windowTitle().contains("Test"));
    EXPECT_EQ(session.context().registry.projects().size(), 1U);
}

} // namespace
} // namespace tarvik::editor
