#include "SceneDrop.hpp"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace tarvik::editor {
namespace {

TEST(SceneDropTest, TakesOneProjectFolderOrOneSceneFileAndNothingElse) {
    const QTemporaryDir dir;
    for (const char* folder : {"project", "folder/project.json", "project/folder.lscene"})
        QDir(dir.path()).mkpath(folder);
    for (const char* name : {"project/project.json", "a b ü.lscene", "Main.lscene.txt"})
        EXPECT_TRUE(QFile(dir.filePath(name)).open(QIODevice::WriteOnly)) << name;
    const auto url = [&](const QString& name) {
        return QUrl::fromLocalFile(dir.filePath(name));
    };
    struct Case {
        QList<QUrl> urls;
        DropKind kind;
    };
    for (const Case& c : std::initializer_list<Case>{
             {{url("project")}, DropKind::Project},
             {{url("a b ü.lscene")}, DropKind::Scene},
             {{url("folder")}, DropKind::Nothing}, // what is named project.json there is a folder
             {{url("project/folder.lscene")}, DropKind::Nothing}, // a folder
             {{url("Main.lscene.txt")}, DropKind::Nothing},
             {{url("project"), url("a b ü.lscene")}, DropKind::Nothing},
             {{QUrl("https://example.org/Main.lscene")}, DropKind::Nothing},
         }) {
        const SceneDrop drop = sceneDropOf(c.urls);
        EXPECT_EQ(drop.kind, c.kind) << c.urls.value(0).toString().toStdString();
        EXPECT_TRUE(c.kind == DropKind::Nothing || QUrl::fromLocalFile(drop.path) == c.urls.front());
    }
}

} // namespace
} // namespace tarvik::editor
