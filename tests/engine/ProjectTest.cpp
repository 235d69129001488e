#include "TemporaryFolder.hpp"

#include <tarvik/core/JsonFile.hpp>
#include <tarvik/project/Project.hpp>

#include <gtest/gtest.h>

namespace tarvik {

namespace fs = std::filesystem;
using namespace test;

TEST(ProjectTest, OnlyPortableNamesAreValid) {
    for (const std::string& name : {std::string("My Game-2_x"), std::string("COM10"), std::string(64, 'a')})
        EXPECT_TRUE(Project::isValidName(name)) << name;
    for (const std::string& name :
         {std::string(), std::string(65, 'a'), std::string("a "), std::string("a/b"), std::string("a.b"),
          std::string("a\0b", 3), std::string("con")})
        EXPECT_FALSE(Project::isValidName(name)) << name;
}

TEST(ProjectTest, CreatedProjectOpensInFoldersOfAnyName) {
    const TemporaryFolder folder;
    for (const std::string& name : kOddNames) {
        const fs::path root = folder / "new" / name;
        auto created = Project::create(root / "./x/..", "Game");
        ASSERT_TRUE(created) << created.error().message;
        EXPECT_TRUE(fs::is_directory(root / "Content"));
        created->setDescription("text \xf0\x9f\x8e\xae");
        created->setDefaultScene("Content/Main.lscene");
        ASSERT_TRUE(created->save());
        const auto opened = Project::open(root);
        ASSERT_EQ(errorOf(opened), "<success>");
        EXPECT_EQ(opened->rootDir(), root);
        EXPECT_EQ(opened->name(), "Game");
        EXPECT_EQ(opened->description(), "text \xf0\x9f\x8e\xae");
        EXPECT_EQ(opened->defaultScene(), "Content/Main.lscene");
        EXPECT_EQ(opened->createdUnix(), created->createdUnix());
    }
}

TEST(ProjectTest, FailedCreationLeavesNoTrace) {
    const TemporaryFolder folder;
    writeText(folder / "file", "kept");
    fs::create_directory(folder / "empty");
    EXPECT_FALSE(Project::create(folder / "file/game", "Game"));
    EXPECT_FALSE(Project::create(folder.path(), "Game")) << "a folder that holds something";
    EXPECT_FALSE(Project::create(folder / "new", "no/name"));
    {
        const FileSizeLimit full(0);
        EXPECT_FALSE(Project::create(folder / "new/deep/game", "Game"));
        EXPECT_FALSE(Project::create(folder / "empty", "Game"));
    }
    EXPECT_EQ(namesIn(folder.path()), (std::set<std::string>{"empty", "file"}));
    EXPECT_TRUE(fs::is_empty(folder / "empty"));
}

TEST(ProjectTest, UnknownFieldsSurviveASave) {
    const TemporaryFolder folder;
    const fs::path file = folder / "project.json";
    writeText(file, R"({"plugins": {"x": [1, 2.5, null]}, "name": "Game", "z": "last"})");
    auto project = Project::open(folder.path());
    ASSERT_TRUE(project) << project.error().message;
    writeText(file, R"({"plugins": {"x": []}, "name": "Other", "added since": true})");
    project->setName("Renamed");
    ASSERT_TRUE(project->save());
    const Json saved = readJsonFile(file).value();
    EXPECT_EQ(saved.begin().key(), "plugins") << "the order of fields is kept";
    EXPECT_EQ(saved["plugins"], Json::parse(R"({"x": []})"));
    EXPECT_EQ(saved["added since"], true);
    EXPECT_EQ(saved["name"], "Renamed");
}

TEST(ProjectTest, NeitherDamageNorAbsenceIsWrittenOver) {
    const TemporaryFolder folder;
    auto project = Project::create(folder / "game", "Game").value();
    const fs::path file = folder / "game/project.json";
    for (const std::string damage : {R"({"name": "G", "created": 18446744073709551615})", "{ half an edit"}) {
        writeText(file, damage);
        EXPECT_TRUE(errorOf(Project::open(folder / "game")).starts_with(file.native())) << damage;
        EXPECT_EQ(readText(file), damage);
    }
    ASSERT_TRUE(project.save());
    EXPECT_EQ(readText(file.native() + ".corrupt-2"), "{ half an edit");
    EXPECT_TRUE(Project::open(folder / "game"));
    fs::remove_all(folder / "game");
    EXPECT_TRUE(errorOf(project.save()).contains((folder / "game").native()));
    EXPECT_FALSE(fs::exists(folder / "game"));
}

} // namespace tarvik
