#include <tarvik/app/GameExport.hpp>

#include "LogCapture.hpp"
#include "TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <fmt/ranges.h>

#include <QCoreApplication>

#include <set>
#include <utility>

namespace tarvik::app {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;
using test::writeText;

// Of all in the folder, sorted.
std::string treeOf(const fs::path& root) {
    Names names;
    for (const auto& entry : fs::recursive_directory_iterator(root))
        names.insert(entry.path().lexically_relative(root).string());
    return fmt::format("{}", fmt::join(names, " "));
}

class GameExportTest : public testing::Test {
protected:
    GameExportTest() {
        for (const char* file : {"bin/tarvik-editor", "bin/tarvik-editor.exe", "bin/data/more", "plugins/one",
                                 "LICENSE", "README"})
            writeText(folder_ / "runtime" / file);
        for (const char* file :
             {"project.json", ".git/config", "Saved/Thumbnail.png", "Content/Saved/Main.lscene",
              "Scripts/enemy.lua", "Scripts/Player.cpp", "Scripts/CMakeLists.txt", "Scripts/ai/Ai.hpp",
              "Saved/ScriptBuild/bin/game.so", "Saved/ScriptBuild/obj/game.o"})
            writeText(folder_ / "project" / file);
    }

    [[nodiscard]] GameExport request(std::string platform = "", const fs::path& destination = "out") {
        return {folder_ / "project", "My Game",           folder_ / destination,
                folder_ / "runtime", std::move(platform), &warnings_};
    }

    test::TemporaryFolder folder_;
    const std::string at_ = folder_.path().string() + '/';
    std::vector<std::string> warnings_;
};

TEST_F(GameExportTest, TargetsAreTheHostAndTheUsableRuntimesByName) {
    const fs::path root = folder_ / "editor";
    EXPECT_EQ(exportTargets(root).size(), 1U);
    const std::string host = hostPlatform();
    for (const std::string file :
         {"z/bin/tarvik-editor", "a/bin/tarvik-editor", "B/bin/tarvik-editor", "window/bin/tarvik-editor",
          "windows-x64/bin/tarvik-editor.exe", "windows-arm64/bin/tarvik-editor", "Windows/bin/tarvik-editor",
          "folder/bin/tarvik-editor/file", "empty/bin/file", "file"})
        writeText(root / "platforms" / file);
    writeText(root / "platforms" / host / "bin/tarvik-editor");
    fs::create_symlink("loop", root / "platforms/loop");
    std::string found;
    for (const ExportTarget& target : exportTargets(root))
        found += target.platform + '=' + target.runtimeDir.lexically_relative(root).string() + ' ';
    EXPECT_EQ(found, host +
                         "=. B=platforms/B Windows=platforms/Windows a=platforms/a window=platforms/window "
                         "windows-x64=platforms/windows-x64 z=platforms/z ");
}

TEST_F(GameExportTest, InvalidRequestsAreRefusedWithoutATrace) {
    int count = 1;
    std::string name = "test";
    char* program[] = {name.data(), nullptr};
    const QCoreApplication application(count, program); // whose runtime this is
    EXPECT_EQ(exportTargets({}).front().runtimeDir,
              fs::read_symlink("/proc/self/exe").parent_path().parent_path());
    writeText(folder_ / "full/file");
    fs::create_directory_symlink("project/Content", folder_ / "into");
    fs::create_directory_symlink("loop", folder_ / "loop");
    GameExport unknown = request("amiga", "full");
    unknown.runtimeDir.clear();
    GameExport relative = request();
    relative.destination = fs::relative(folder_ / "project/Content/..", fs::current_path()) / "new";
    GameExport noRuntime = request("", "full");
    noRuntime.runtimeDir = folder_ / "loop";
    const std::pair<GameExport, std::string> cases[] = {
        {unknown,
         "this editor cannot export for amiga: add its build support to the editor in the Tarvik Hub "
         "(Editors)"},
        {noRuntime, "no " + hostPlatform() + " runtime at " + at_ + "loop"},
        {request("", "full"), at_ + "full is not empty: choose an empty or new folder"},
        {request("", "project/new/folder"), "export into a folder outside the project"},
        {request("", "into/new"), "export into a folder outside the project"},
        {relative, "export into a folder outside the project"},
    };
    const std::string before = treeOf(folder_.path());
    for (const auto& [refused, message] : cases) {
        EXPECT_EQ(test::errorOf(exportGame(refused)), message);
        EXPECT_EQ(test::errorOf(exportSize(refused)), message);
    }
    EXPECT_EQ(treeOf(folder_.path()), before);
}

TEST_F(GameExportTest, TheHostGetsTheModuleAndALauncher) {
    const test::LogCapture log;
    const fs::path out = folder_ / ("project" + test::kOddNames[4]); // begins like the project
    const auto size = exportSize(request("", out));
    ExportProgress progress;
    EXPECT_EQ(exportGame(request("", out), progress).value(), out / "run.sh");
    EXPECT_EQ(progress.done, size.value());
    EXPECT_EQ(treeOf(out),
              "Game Game/Content Game/Content/Saved Game/Content/Saved/Main.lscene Game/Saved "
              "Game/Saved/ScriptBuild Game/Saved/ScriptBuild/bin Game/Saved/ScriptBuild/bin/game.so "
              "Game/Scripts Game/Scripts/ai Game/Scripts/enemy.lua Game/project.json LICENSE bin bin/data "
              "bin/data/more bin/tarvik-editor bin/tarvik-editor.exe plugins plugins/one run.sh");
    EXPECT_EQ(test::readText(out / "run.sh"), R"sh(#!/bin/sh
# Starts My Game (made with the Tarvik engine).
HERE="$(dirname "$(readlink -f "$0")")"
[ -x "$HERE/bin/tarvik-editor" ] || chmod +x "$HERE/bin/tarvik-editor" "$0" 2>/dev/null
exec "$HERE/bin/tarvik-editor" --project "$HERE/Game" --play "$@"
)sh");
    EXPECT_TRUE(warnings_.empty());
    EXPECT_EQ(log.lines(LogLevel::Debug, "Export"),
              test::Lines{"exported 'My Game' for " + hostPlatform() + " to " + out.string()});
}

TEST_F(GameExportTest, AnotherPlatformGoesWithoutTheModuleAndWarnsOfSources) {
    const test::LogCapture log;
    const std::vector<std::string> warning{"C++ behaviours are not included: they are compiled for " +
                                           hostPlatform() +
                                           ", not windows-x64. Lua and visual scripts work; to ship C++ "
                                           "behaviours, export from an editor on windows-x64."};
    fs::create_directory(folder_ / "out"); // filled in place
    EXPECT_EQ(exportGame(request("windows-x64")).value(), folder_ / "out/My Game.bat");
    EXPECT_EQ(
        test::readText(folder_ / "out/My Game.bat"),
        "@echo off\r\nstart \"\" \"%~dp0bin\\tarvik-editor.exe\" --project \"%~dp0Game\" --play %*\r\n");
    EXPECT_FALSE(fs::exists(folder_ / "out/Game/Saved"));
    EXPECT_EQ(warnings_, warning);
    EXPECT_EQ(log.lines(LogLevel::Warn, "Export"), warning);
    fs::rename(folder_ / "project/Scripts/Player.cpp", folder_ / "project/Scripts/Tools.CPP");
    GameExport nameless = request("windows-x64", "again");
    nameless.name = "no/such/folder";
    EXPECT_EQ(test::errorOf(exportGame(nameless)), "cannot write " + at_ + "again/no/such/folder.bat");
    EXPECT_EQ(warnings_, warning);
}

} // namespace
} // namespace tarvik::app
