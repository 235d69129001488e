#include "SceneDrop.hpp"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace tarvik::editor {
namespace {

class SceneDropTest : public testing::Test {
protected:
    SceneDropTest() {
        for (const char* folder : {"project", "folder/project.json", "project/folder.lscene"})
            QDir(dir_.path()).mkpath(folder);
        for (const char* name : {"project/project.json", "a b ü.lscene", "Main.lscene.txt", "lscene"}) {
            QFile file(dir_.filePath(name));
            EXPECT_TRUE(file.open(QIODevice::WriteOnly)) << name;
        }
    }

    [[nodiscard]] QUrl url(const QString& name) const { return QUrl::fromLocalFile(dir_.filePath(name)); }

    QTemporaryDir dir_;
};

TEST_F(SceneDropTest, TakesOneProjectFolderOrOneSceneFileAndNothingElse) {
    struct Case {
        QList<QUrl> urls;
        DropKind kind;
    };
    for (const Case& c : std::initializer_list<Case>{
             {{url("project")}, DropKind::Project},
             {{url("project/")}, DropKind::Project},
             {{url("a b ü.lscene")}, DropKind::Scene},
             {{url("folder")}, DropKind::Nothing}, // what is named project.json there is a folder
             {{url("project/project.json")}, DropKind::Nothing},
             {{url("project/folder.lscene")}, DropKind::Nothing}, // a folder
             {{url("Main.lscene.txt")}, DropKind::Nothing},
             {{url("lscene")}, DropKind::Nothing},
             {{url("missing.lscene")}, DropKind::Nothing},
             {{url("project"), url("a b ü.lscene")}, DropKind::Nothing},
             {{QUrl("https://example.org/Main.lscene")}, DropKind::Nothing},
             {{}, DropKind::Nothing},
         }) {
        const SceneDrop drop = sceneDropOf(c.urls);
        EXPECT_EQ(drop.kind, c.kind) << c.urls.value(0).toString().toStdString();
        EXPECT_TRUE(c.kind == DropKind::Nothing || QUrl::fromLocalFile(drop.path) == c.urls.front());
    }
}

TEST_F(SceneDropTest, ADragDoesNotAskTheDiskAtEveryMove) {
    DragMemory drag;
    EXPECT_EQ(drag.kindOf({url("project")}), DropKind::Project);
    ASSERT_TRUE(QFile::remove(dir_.filePath("project/project.json")));
    EXPECT_EQ(drag.kindOf({url("project")}), DropKind::Project);
    EXPECT_EQ(drag.kindOf({url("a b ü.lscene")}), DropKind::Scene) << "another drag";
    EXPECT_EQ(drag.kindOf({url("project")}), DropKind::Nothing) << "and another";
}

} // namespace
} // namespace tarvik::editor
