#include "TemporaryFolder.hpp"

#include <tarvik/core/JsonFile.hpp>
#include <tarvik/project/Project.hpp>
#include <tarvik/project/ProjectRegistry.hpp>

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <thread>
#include <vector>

namespace tarvik {
namespace {

namespace fs = std::filesystem;
using namespace test;

std::vector<fs::path> pathsOf(const ProjectRegistry& registry) {
    std::vector<fs::path> all;
    for (const RecentProject& project : registry.projects())
        all.push_back(project.path);
    return all;
}

ProjectRegistry loaded(const fs::path& file) {
    ProjectRegistry registry(file);
    const auto result = registry.load();
    EXPECT_TRUE(result) << result.error().message;
    return registry;
}

TEST(ProjectRegistryTest, NewestIsFirstAndEachPathOnce) {
    const TemporaryFolder folder;
    const fs::path file = folder / "data/recent.json";
    ProjectRegistry registry = loaded(file);
    registry.touch("/a", "A");
    registry.touch("/b", "B");
    registry.touch("/c/", "C");
    registry.touch("/a/./x/..", "A again");
    registry.remove("/b");
    const std::vector<fs::path> expected{"/a", "/c"};
    EXPECT_EQ(pathsOf(registry), expected);
    ASSERT_TRUE(registry.save());
    const ProjectRegistry again = loaded(file);
    EXPECT_EQ(pathsOf(again), expected) << "also when all were opened within the same second";
    EXPECT_EQ(again.projects()[0].name, "A again");
}

TEST(ProjectRegistryTest, FoldersThatAreGoneStayMarked) {
    const TemporaryFolder folder;
    const fs::path file = folder / "recent.json";
    ASSERT_TRUE(Project::create(folder / "here", "Here"));
    ProjectRegistry registry(file);
    for (const std::string& name : kOddNames)
        registry.touch(folder / name, "Gone");
    registry.touch(folder / "here", "Here");
    ASSERT_TRUE(registry.save());
    ProjectRegistry again = loaded(file);
    EXPECT_EQ(pathsOf(again), pathsOf(registry)) << "names of any bytes survive";
    ASSERT_EQ(again.projects().size(), std::size(kOddNames) + 1);
    EXPECT_FALSE(again.projects()[0].missing);
    EXPECT_TRUE(again.projects()[1].missing);
    fs::remove_all(folder / "here");
    again.refreshMissing();
    EXPECT_TRUE(again.projects()[0].missing);
}

TEST(ProjectRegistryTest, EditorsThatSaveAtOnceLoseNothing) {
    const TemporaryFolder folder;
    const fs::path file = folder / "recent.json";
    {
        ProjectRegistry first = loaded(file);
        first.touch("/unwanted", "U");
        first.touch("/wanted", "W");
        ASSERT_TRUE(first.save());
    }
    constexpr int kProjects = 4;
    std::vector<std::jthread> editors;
    for (int editor = 0; editor < 3; ++editor)
        editors.emplace_back([&, editor] {
            ProjectRegistry registry = loaded(file);
            registry.remove("/unwanted");
            for (int project = 0; project < kProjects; ++project) {
                registry.touch(fmt::format("/editor {}/project {}", editor, project), "P");
                const auto saved = registry.save();
                EXPECT_TRUE(saved) << saved.error().message;
            }
        });
    editors.clear();
    const std::vector<fs::path> all = pathsOf(loaded(file));
    EXPECT_EQ(all.size(), 3U * kProjects + 1U);
    EXPECT_NE(std::ranges::find(all, "/wanted"), all.end());
}

TEST(ProjectRegistryTest, RemovalDoesNotUndoALaterOpeningElsewhere) {
    const TemporaryFolder folder;
    const fs::path file = folder / "recent.json";
    writeText(file, R"({"projects": [{"path": "/a", "name": "A", "lastOpened": 5}]})");
    ProjectRegistry registry = loaded(file);
    registry.remove("/a");
    writeText(file, R"({"projects": [{"path": "/a", "name": "A", "lastOpened": 99999999999}]})");
    ASSERT_TRUE(registry.save());
    EXPECT_EQ(pathsOf(loaded(file)), std::vector<fs::path>{"/a"});
}

TEST(ProjectRegistryTest, FieldsOfOtherVersionsSurvive) {
    const TemporaryFolder folder;
    const fs::path file = folder / "recent.json";
    writeText(file, R"({"version": 7, "projects": [{"path": "/a", "pinned": true}]})");
    ProjectRegistry registry = loaded(file);
    registry.touch("/a", "A");
    ASSERT_TRUE(registry.save());
    const Json saved = readJsonFile(file).value();
    EXPECT_EQ(saved["version"], 7);
    EXPECT_EQ(saved["projects"][0]["pinned"], true);
    EXPECT_EQ(saved["projects"][0]["name"], "A");
}

TEST(ProjectRegistryTest, CorruptFileIsKeptAsideAndReplacedByTheNextSave) {
    const char* const cases[] = {"",
                                 "{\"projects\": [",
                                 R"({"projects": {}})",
                                 R"({"projects": [3]})",
                                 R"({"projects": [{"name": "A"}]})",
                                 R"({"projects": [{"path": ""}]})",
                                 R"({"projects": [{"path": [300]}]})",
                                 R"({"projects": [{"path": "/a", "name": 3}]})",
                                 R"({"projects": [{"path": "/a", "lastOpened": "x"}]})"};
    for (const std::string content : cases) {
        const TemporaryFolder folder;
        const fs::path file = folder / "recent.json";
        writeText(file, content);
        ProjectRegistry registry(file);
        const auto result = registry.load();
        ASSERT_FALSE(result) << content;
        EXPECT_TRUE(result.error().message.starts_with(file.native())) << result.error().message;
        EXPECT_TRUE(registry.projects().empty());
        EXPECT_EQ(readText(file), content);
        registry.touch("/new", "New");
        ASSERT_TRUE(registry.save());
        EXPECT_EQ(readText(folder / "recent.json.corrupt-1"), content);
        EXPECT_FALSE(fs::exists(folder / "recent.json.corrupt-2"));
        EXPECT_EQ(pathsOf(loaded(file)), std::vector<fs::path>{"/new"});
    }
}

TEST(ProjectRegistryTest, FileDamagedByOthersCostsThisEditorsListNothing) {
    const TemporaryFolder folder;
    const fs::path file = folder / "recent.json";
    writeText(file, R"({"projects": [{"path": "/old", "name": "Old", "lastOpened": 5}]})");
    ProjectRegistry registry = loaded(file);
    writeText(file, "damaged");
    registry.touch("/new", "New");
    ASSERT_TRUE(registry.save());
    EXPECT_EQ(pathsOf(loaded(file)), (std::vector<fs::path>{"/new", "/old"}));
    EXPECT_EQ(readText(folder / "recent.json.corrupt-1"), "damaged");
}

TEST(ProjectRegistryTest, WhatCannotBeKeptAsideIsNeverReplaced) {
    const TemporaryFolder folder;
    const fs::path file = folder / "recent.json";
    writeText(file, std::string(5000, '{'));
    ProjectRegistry registry(file);
    ASSERT_FALSE(registry.load());
    fs::remove(folder / "recent.json.corrupt-1");
    registry.touch("/new", "New");
    {
        const FileSizeLimit full(1000); // room for the new list, not for the copy
        const auto saved = registry.save();
        ASSERT_FALSE(saved);
        EXPECT_TRUE(contains(saved.error().message, file.native())) << saved.error().message;
    }
    EXPECT_EQ(readText(file), std::string(5000, '{'));
    EXPECT_TRUE(registry.save()) << "with room again";
}

TEST(ProjectRegistryTest, PlacesThatCannotHoldAListGiveAClearError) {
    const TemporaryFolder folder;
    writeText(folder / "file", "");
    fs::create_directory(folder / "folder");
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    for (const fs::path& file : {folder / "file/recent.json", folder / "folder", folder / "pipe"}) {
        ProjectRegistry registry(file);
        registry.touch("/a", "A");
        const auto saved = registry.save();
        ASSERT_FALSE(saved) << file;
        EXPECT_TRUE(contains(saved.error().message, "recent projects")) << saved.error().message;
        EXPECT_TRUE(contains(saved.error().message, (folder / "").native())) << saved.error().message;
    }
}

} // namespace
} // namespace tarvik
