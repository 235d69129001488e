#include <tarvik/app/GameExport.hpp>

#include "CopyTree.hpp"
#include "ExportPaths.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/core/Log.hpp>

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <fstream>
#include <system_error>
#include <utility>

namespace tarvik::app {

namespace fs = std::filesystem;

namespace {

constexpr const char* kCategory = "Export";

bool isWindows(std::string_view platform) {
    return platform.starts_with("windows");
}

bool isFile(const fs::path& path) {
    std::error_code ignored;
    return fs::is_regular_file(path, ignored);
}

bool isFolder(const fs::path& path) {
    std::error_code ignored;
    return fs::is_directory(path, ignored);
}

// What a valid request comes down to.
struct Plan {
    std::string platform;
    bool isHost = false;
    fs::path runtimeDir;
};

fs::path runtimeFor(std::string_view platform) {
    for (ExportTarget& target : exportTargets({})) {
        if (target.platform == platform)
            return std::move(target.runtimeDir);
    }
    return {};
}

bool isNewOrEmpty(const fs::path& folder) {
    std::error_code error;
    if (!fs::exists(folder, error))
        return true;
    return fs::is_empty(folder, error) && !error;
}

bool liesWithin(const fs::path& path, const fs::path& folder) {
    const fs::path inner = resolved(path);
    const fs::path outer = resolved(folder);
    return !outer.empty() && std::ranges::mismatch(outer, inner).in1 == outer.end();
}

std::expected<Plan, Error> planOf(const GameExport& request) {
    Plan plan;
    plan.platform = request.platform.empty() ? hostPlatform() : request.platform;
    plan.isHost = plan.platform == hostPlatform();
    plan.runtimeDir = request.runtimeDir.empty() ? runtimeFor(plan.platform) : request.runtimeDir;
    if (plan.runtimeDir.empty())
        return makeError("this editor cannot export for {}: add its build support to the editor in the "
                         "Tarvik Hub (Editors)",
                         plan.platform);
    if (!isFile(plan.runtimeDir / playerExecutable(plan.platform)))
        return makeError("no {} runtime at {}", plan.platform, narrow(plan.runtimeDir));
    if (!isNewOrEmpty(request.destination))
        return makeError("{} is not empty: choose an empty or new folder", narrow(request.destination));
    if (liesWithin(request.destination, request.projectDir))
        return makeError("export into a folder outside the project");
    return plan;
}

// A folder to copy, and its place in the exported one.
struct Tree {
    fs::path source;
    fs::path place;
    CopyFilter filter;
};

std::vector<Tree> runtimeTrees(const Plan& plan) {
    std::vector<Tree> trees;
    for (const char* name : {"bin", "lib", "plugins"}) {
        if (isFolder(plan.runtimeDir / name))
            trees.push_back({plan.runtimeDir / name, name, {}});
    }
    return trees;
}

// What a player has no use for: what the editor keeps, the history, and the sources of behaviours.
bool isExcludedFromGame(const fs::path& projectDir, const fs::path& relative) {
    const fs::path top = *relative.begin();
    if (top == "Scripts")
        return relative.extension() != ".lua" && !isFolder(projectDir / relative);
    return top == "Saved" || top == ".git";
}

std::vector<Tree> gameTrees(const GameExport& request, const Plan& plan) {
    const auto excluded = [&projectDir = request.projectDir](const fs::path& relative) {
        return isExcludedFromGame(projectDir, relative);
    };
    std::vector<Tree> trees{{request.projectDir, "Game", excluded}};
    const fs::path module = fs::path("Saved") / "ScriptBuild" / "bin";
    if (plan.isHost && isFolder(request.projectDir / module))
        trees.push_back({request.projectDir / module, "Game" / module, {}});
    return trees;
}

std::expected<void, Error> copyTrees(const std::vector<Tree>& trees, const fs::path& destination,
                                     ExportProgress& progress) {
    for (const Tree& tree : trees) {
        if (auto copied = copyTree(tree.source, destination / tree.place, tree.filter, progress); !copied)
            return copied;
    }
    return {};
}

constexpr std::array kNotices{"LICENSE", "THIRD_PARTY.md", "LICENSE-DejaVu.txt"};

void copyNotices(const fs::path& runtimeDir, const fs::path& destination) {
    std::error_code ignored;
    for (const char* name : kNotices) {
        if (isFile(runtimeDir / name))
            fs::copy_file(runtimeDir / name, destination / name, ignored);
    }
}

std::uint64_t noticesSize(const fs::path& runtimeDir) {
    std::uint64_t sum = 0;
    for (const char* name : kNotices) {
        std::error_code error;
        const std::uintmax_t size = fs::file_size(runtimeDir / name, error);
        sum += error ? 0 : size;
    }
    return sum;
}

bool hasCpp(const fs::path& projectDir) {
    constexpr std::array kExtensions{".cpp", ".cc", ".cxx"};
    std::error_code error;
    fs::recursive_directory_iterator entry(projectDir / "Scripts", error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        if (std::ranges::find(kExtensions, entry->path().extension()) != kExtensions.end())
            return true;
    }
    return false;
}

void warn(const GameExport& request, std::string text) {
    log::warn(kCategory, "{}", text);
    if (request.warnings != nullptr)
        request.warnings->push_back(std::move(text));
}

std::string batchLauncher() {
    return "@echo off\r\n"
           "start \"\" \"%~dp0bin\\tarvik-editor.exe\" --project \"%~dp0Game\" --play %*\r\n";
}

// An archive or a file system without permissions may have lost those of the player and the script.
std::string shellLauncher(const std::string& name) {
    return "#!/bin/sh\n"
           "# Starts " +
           name +
           " (made with the Tarvik engine).\n"
           R"sh(HERE="$(dirname "$(readlink -f "$0")")"
[ -x "$HERE/bin/tarvik-editor" ] || chmod +x "$HERE/bin/tarvik-editor" "$0" 2>/dev/null
exec "$HERE/bin/tarvik-editor" --project "$HERE/Game" --play "$@"
)sh";
}

std::expected<fs::path, Error> writeLauncher(const GameExport& request, std::string_view platform) {
    const bool batch = isWindows(platform);
    const fs::path launcher = request.destination / (batch ? request.name + ".bat" : "run.sh");
    std::ofstream(launcher, std::ios::binary) << (batch ? batchLauncher() : shellLauncher(request.name));
    std::error_code ignored;
    if (!fs::exists(launcher, ignored))
        return makeError("cannot write {}", narrow(launcher));
    return launcher;
}

} // namespace

std::string hostPlatform() {
    return TARVIK_HOST_PLATFORM;
}

fs::path playerExecutable(std::string_view platform) {
    return fs::path("bin") / (isWindows(platform) ? "tarvik-editor.exe" : "tarvik-editor");
}

std::vector<ExportTarget> exportTargets(const fs::path& editorRoot) {
    const fs::path root =
        editorRoot.empty() ? toPath(QCoreApplication::applicationDirPath()).parent_path() : editorRoot;
    std::vector<ExportTarget> targets{{hostPlatform(), root}};
    std::error_code error;
    fs::directory_iterator entry(root / "platforms", error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        std::string name = narrow(entry->path().filename());
        if (name != hostPlatform() && isFile(entry->path() / playerExecutable(name)))
            targets.push_back({std::move(name), entry->path()});
    }
    std::ranges::sort(targets.begin() + 1, targets.end(), {}, &ExportTarget::platform);
    return targets;
}

std::expected<fs::path, Error> exportGame(const GameExport& request) {
    ExportProgress unwatched;
    return exportGame(request, unwatched);
}

std::expected<fs::path, Error> exportGame(const GameExport& request, ExportProgress& progress) {
    const auto plan = planOf(request);
    if (!plan)
        return std::unexpected(plan.error());
    const fs::path& destination = request.destination;
    if (auto copied = copyTrees(runtimeTrees(*plan), destination, progress); !copied)
        return std::unexpected(copied.error());
    copyNotices(plan->runtimeDir, destination);
    progress.done += noticesSize(plan->runtimeDir);
    if (auto copied = copyTrees(gameTrees(request, *plan), destination, progress); !copied)
        return std::unexpected(copied.error());
    if (!plan->isHost && hasCpp(request.projectDir))
        warn(request,
             fmt::format("C++ behaviours are not included: they are compiled for {}, not {}. Lua and visual "
                         "scripts work; to ship C++ behaviours, export from an editor on {}.",
                         hostPlatform(), plan->platform, plan->platform));
    auto launcher = writeLauncher(request, plan->platform);
    if (launcher)
        log::info(kCategory, "exported '{}' for {} to {}", request.name, plan->platform, narrow(destination));
    return launcher;
}

std::expected<std::uint64_t, Error> exportSize(const GameExport& request) {
    const auto plan = planOf(request);
    if (!plan)
        return std::unexpected(plan.error());
    std::uint64_t size = noticesSize(plan->runtimeDir);
    for (const auto& trees : {runtimeTrees(*plan), gameTrees(request, *plan)}) {
        for (const Tree& tree : trees) {
            const auto part = treeSize(tree.source, tree.filter);
            if (!part)
                return std::unexpected(part.error());
            size += *part;
        }
    }
    return size;
}

} // namespace tarvik::app
