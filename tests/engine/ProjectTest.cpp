#include "TemporaryFolder.hpp"

#include <tarvik/core/JsonFile.hpp>
#include <tarvik/project/Project.hpp>

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <ctime>

namespace tarvik {
namespace {

namespace fs = std::filesystem;
using namespace test;

TEST(ProjectTest, OnlyPortableNamesAreValid) {
    for (const char* name : {"a", "My Game-2_x", "COM", "COM10", "Console", "nulled"})
        EXPECT_TRUE(Project::isValidName(name)) << name;
    for (const std::string& name :
         {std::string(), std::string(65, 'a'), std::string(" a"), std::string("a "), std::string("a/b"),
          std::string("a.b"), std::string("M\xc3\xbcller"), std::string("a\nb"), std::string("a\0b", 3),
          std::string("con"), std::string("Lpt9"), std::string("NUL")})
        EXPECT_FALSE(Project::isValidName(name)) << name;
    EXPECT_TRUE(Project::isValidName(std::string(64, 'a')));
}

TEST(ProjectTest, CreatedProjectOpensInFoldersOfAnyName) {
    const TemporaryFolder folder;
    for (const std::string& name : kOddNames) {
        const fs::path root = folder / "new" / name;
        auto created = Project::create(root / "./x/..", "Game");
        ASSERT_TRUE(created) << created.error().message;
        EXPECT_TRUE(fs::is_directory(root / "Content"));
        EXPECT_LE(std::abs(created->createdUnix() - std::time(nullptr)), 60);
        created->setDescription("text \xf0\x9f\x8e\xae");
        created->setDefaultScene("Content/Main.lscene");
        ASSERT_TRUE(created->save());
        const auto opened = Project::open(root);
        ASSERT_TRUE(opened) << opened.error().message;
        EXPECT_EQ(opened->rootDir(), root);
        EXPECT_EQ(opened->name(), "Game");
        EXPECT_EQ(opened->description(), "text \xf0\x9f\x8e\xae");
        EXPECT_EQ(opened->defaultScene(), "Content/Main.lscene");
        EXPECT_EQ(opened->engineVersion(), created->engineVersion());
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
    EXPECT_FALSE(Project::create("", "Game"));
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

TEST(ProjectTest, FileThatCannotBeUnderstoodIsNamedKeptAsideAndUntouched) {
    struct Case {
        std::string content;
        const char* reason;
    };
    const Case cases[] = {
        {"", ":1:1:"},
        {"{\"name\": \"Ga", ":1:13:"},
        {"{}", "\"name\" is missing"},
        {R"({"name": 3})", "\"name\" must be a text, not 3"},
        {R"({"name": "G", "description": ["x"]})", "\"description\" must be a text, not a list"},
        {R"({"name": "G", "defaultScene": null})", "\"defaultScene\""},
        {R"({"name": "G", "engineVersion": 0.1})", "\"engineVersion\""},
        {R"({"name": "G", "created": "yesterday"})", "\"created\""},
        {R"({"name": "G", "created": 1e9})", "\"created\""},
        {R"({"name": "G", "created": 18446744073709551615})", "\"created\""},
    };
    for (const Case& each : cases) {
        const TemporaryFolder folder;
        const fs::path file = folder / "project.json";
        writeText(file, each.content);
        const auto project = Project::open(folder.path());
        ASSERT_FALSE(project) << each.content;
        EXPECT_TRUE(project.error().message.starts_with(file.native())) << project.error().message;
        EXPECT_TRUE(contains(project.error().message, each.reason)) << project.error().message;
        EXPECT_EQ(readText(file), each.content);
        EXPECT_EQ(readText(folder / "project.json.corrupt-1"), each.content);
    }
}

TEST(ProjectTest, WhatIsNoProjectGivesAnErrorAndNoCopies) {
    const TemporaryFolder folder;
    fs::create_directories(folder / "folder/project.json");
    fs::create_directories(folder / "pipe");
    ASSERT_EQ(::mkfifo((folder / "pipe/project.json").c_str(), 0600), 0);
    for (const char* name : {"folder", "pipe", "absent"}) {
        const auto project = Project::open(folder / name);
        ASSERT_FALSE(project) << name;
        EXPECT_TRUE(contains(project.error().message, (folder / name).native())) << project.error().message;
    }
    EXPECT_EQ(namesIn(folder / "pipe").size(), 1U);
}

TEST(ProjectTest, SavingDestroysNeitherDamageNorAbsence) {
    const TemporaryFolder folder;
    auto project = Project::create(folder / "game", "Game").value();
    writeText(folder / "game/project.json", "{ half an edit");
    ASSERT_TRUE(project.save());
    EXPECT_EQ(readText(folder / "game/project.json.corrupt-1"), "{ half an edit");
    EXPECT_TRUE(Project::open(folder / "game"));

    project.setDescription("not UTF-8: \xff");
    EXPECT_FALSE(project.save());
    EXPECT_TRUE(Project::open(folder / "game"));

    fs::remove_all(folder / "game");
    project.setDescription("");
    const auto saved = project.save();
    ASSERT_FALSE(saved);
    EXPECT_TRUE(contains(saved.error().message, (folder / "game").native()));
    EXPECT_FALSE(fs::exists(folder / "game"));
}

} // namespace
} // namespace tarvik
