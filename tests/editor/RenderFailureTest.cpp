#include "Support.hpp"

#include "MainWindow.hpp"
#include "RenderFailurePanel.hpp"
#include "Session.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/project/Project.hpp>
#include <tarvik/scene/SceneFile.hpp>

#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QTableView>
#include <QTemporaryDir>
#include <QTreeView>

namespace tarvik::editor {
namespace {

using testing::pumpUntil;

TEST(RenderFailureAdviceTest, FitsTheReason) {
    const struct {
        const char* reason;
        const char* platform;
        const char* word;
    } cases[] = {
        {"QVulkanInstance could not adopt the Vulkan instance", "offscreen", "xcb"},
        {"there is no Vulkan loader (libvulkan.so.1)", "xcb", "mesa-vulkan-drivers"},
        {"the Vulkan loader offers no VK_KHR_surface; cannot present to windows", "xcb",
         "mesa-vulkan-drivers"},
        {"The GPU device was lost (driver reset or hang).", "xcb", "reset"},
        {"Cannot create swapchain: out of memory", "wayland", "log"},
    };
    for (const auto& [reason, platform, word] : cases)
        EXPECT_TRUE(renderFailureAdvice(reason, platform).contains(word)) << reason;
}

TEST(RenderFailureTest, StartingAfreshKeepsProjectSceneAndLog) {
    const QTemporaryDir folder;
    qputenv("XDG_DATA_HOME", folder.filePath("data").toUtf8());
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, folder.filePath("settings"));
    const QString root = folder.filePath("project");
    auto project = Project::create(app::toPath(root), "Kept");
    ASSERT_TRUE(project);
    Scene scene("Main");
    scene.add({});
    ASSERT_TRUE(saveScene(scene, project->contentDir() / "Main.lscene"));
    project->setDefaultScene("Content/Main.lscene");
    ASSERT_TRUE(project->save());

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
    EXPECT_TRUE(window.windowTitle().contains("Kept"));
    EXPECT_EQ(session.context().registry.projects().size(), 1U);
}

} // namespace
} // namespace tarvik::editor
