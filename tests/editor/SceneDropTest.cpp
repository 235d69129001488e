#include "SceneDrop.hpp"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace tarvik::editor {

TEST(SceneDropTest, TakesOneProjectFolderOrOneSceneFileAndNothingElse) {
    const QTemporaryDir dir;
    for (const char* folder : {"project", "folder/project.json", "project/folder.lscene"})
        QDir(dir.path()).mkpath(folder);
    for (const char* name : {"project/project.json", "a b ü.lscene", "Main.lscene.txt"})
        EXPECT_TRUE(QFile(dir.filePath(name)).open(QIODevice::WriteOnly)) << name;
    const auto url = [&](const QString& name) {
        return QUrl::fromLocalFile(dir.filePath(name));
    };
    const std::pair<QList<QUrl>, DropKind> cases[] = {
        {{url("project")}, DropKind::Project},
        {{url("a b ü.lscene")}, DropKind::Scene},
        {{url("folder")}, DropKind::Nothing},                // what is named project.json there is a folder
        {{url("project/folder.lscene")}, DropKind::Nothing}, // a folder
        {{url("Main.lscene.txt")}, DropKind::Nothing},
        {{url("project"), url("a b ü.lscene")}, DropKind::Nothing},
        {{QUrl("https://example.org/Main.lscene")}, DropKind::Nothing},
    };
    for (const auto& [urls, kind] : cases) {
        const SceneDrop drop = sceneDropOf(urls);
        EXPECT_EQ(drop.kind, kind) << urls.value(0).toString().toStdString();
        EXPECT_TRUE(kind == DropKind::Nothing || QUrl::fromLocalFile(drop.path) == urls.front());
    }
}

} // namespace tarvik::editor
