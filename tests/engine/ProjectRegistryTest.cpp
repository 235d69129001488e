#include "TemporaryFolder.hpp"

#include <tarvik/core/JsonFile.hpp>
#include <tarvik/project/ProjectRegistry.hpp>

#include <gtest/gtest.h>

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
    EXPECT_EQ(errorOf(registry.load()), "<success>");
    return registry;
}

TEST(ProjectRegistryTest, NewestIsFirstEachPathOnceAndWhatIsPutBackHasItsPlace) {
    const TemporaryFolder folder;
    const fs::path file = folder / "data/recent.json";
    ProjectRegistry registry = loaded(file);
    registry.touch(folder / "here/", "Here");
    for (const std::string& name : kOddNames)
        registry.touch(folder / name, "Gone");
    registry.touch(folder / "here/./x/..", "Here again");
    ASSERT_TRUE(registry.save());
    ProjectRegistry again = loaded(file);
    EXPECT_EQ(pathsOf(again), pathsOf(registry)) << "of any bytes, opened within the same second";
    ASSERT_EQ(again.projects().size(), 1 + std::size(kOddNames));
    EXPECT_EQ(again.projects()[0].path, folder / "here");
    EXPECT_EQ(again.projects()[0].name, "Here again");

    for (const std::int64_t time : {1, 2, 3})
        again.put({fmt::format("/{}", time), "Old", time});
    again.put({"/1", "Old", 3});
    again.put({"/3", "Known to be newer", 1});
    again.remove("/2");
    ASSERT_TRUE(again.save());
    again.put({"/2", "Removed and put back", 2});
    ASSERT_TRUE(again.save());
    const std::vector<fs::path> all = pathsOf(loaded(file));
    EXPECT_EQ(std::vector(all.end() - 3, all.end()), (std::vector<fs::path>{"/1", "/3", "/2"}));
    EXPECT_EQ(pathsOf(again), all);
}

TEST(ProjectRegistryTest, EditorsThatSaveAtOnceLoseNothing) {
    const TemporaryFolder folder;
    const fs::path file = folder / "recent.json";
    writeText(file,
              R"({"version": 7, "projects": [{"path": "/unwanted"}, {"path": "/kept", "pinned": true}]})");
    std::vector<std::jthread> editors;
    for (int editor = 0; editor < 3; ++editor)
        editors.emplace_back([&, editor] {
            ProjectRegistry registry = loaded(file);
            registry.remove("/unwanted");
            for (const int project : {1, 2, 3, 4}) {
                registry.touch(fmt::format("/editor {}/project {}", editor, project), "P");
                EXPECT_EQ(errorOf(registry.save()), "<success>");
            }
        });
    editors.clear();
    ProjectRegistry last = loaded(file);
    last.touch("/kept", "Kept");
    ASSERT_TRUE(last.save());
    const Json saved = readJsonFile(file).value();
    ASSERT_EQ(saved["projects"].size(), 3U * 4U + 1U);
    EXPECT_EQ(saved["projects"].front()["path"], "/kept");
    EXPECT_EQ(saved["projects"].front()["pinned"], true) << "fields of other versions survive";
    EXPECT_EQ(saved["version"], 7);
}

TEST(ProjectRegistryTest, CorruptFileIsKeptAsideAndReplacedByTheNextSave) {
    const std::string contents[] = {
        "",
        R"({"projects": {}})",
        R"({"projects": [{"path": [300]}]})",
        R"({"projects": [{"path": "/a", "lastOpened": "x"}]})",
        R"({"projects": []})" + std::string(4 << 20, ' '),
    };
    for (const std::string& content : contents) {
        const TemporaryFolder folder;
        const fs::path file = folder / "recent.json";
        writeText(file, content);
        ProjectRegistry registry(file);
        EXPECT_TRUE(errorOf(registry.load()).contains(file.native())) << content.substr(0, 80);
        EXPECT_TRUE(registry.projects().empty());
        EXPECT_EQ(readText(file), content);
        registry.touch("/new", "New");
        ASSERT_TRUE(registry.save());
        EXPECT_EQ(readText(folder / "recent.json.corrupt-1"), content);
        EXPECT_FALSE(fs::exists(folder / "recent.json.corrupt-2"));
        EXPECT_EQ(pathsOf(loaded(file)), std::vector<fs::path>{"/new"});
    }
}

} // namespace
} // namespace tarvik
