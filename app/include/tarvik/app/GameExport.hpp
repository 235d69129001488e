#pragma once

#include <tarvik/app/Export.hpp>
#include <tarvik/core/Error.hpp>

#include <atomic>
#include <cstdint>
#include <expected>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace tarvik::app {

struct ExportTarget {
    std::string platform;             // such as "windows-x64"; its runtime's folder has this name
    std::filesystem::path runtimeDir; // the host's is the editor's installation
};

// What this library was built for.
[[nodiscard]] TARVIK_APPCOMMON_API std::string hostPlatform();

// Within a runtime's folder.
[[nodiscard]] TARVIK_APPCOMMON_API std::filesystem::path playerExecutable(std::string_view platform);

// The host first, unchecked, then the runtimes in the "platforms" folder of an editor's installation by
// name. An empty path is this installation, which takes a QCoreApplication. What cannot be read is left out.
[[nodiscard]] TARVIK_APPCOMMON_API std::vector<ExportTarget>
exportTargets(const std::filesystem::path& editorRoot);

struct GameExport {
    std::filesystem::path projectDir;
    std::string name;                             // becomes part of a file's name: see Project::isValidName
    std::filesystem::path destination;            // new or empty, outside the project
    std::filesystem::path runtimeDir;             // empty: the one that exportTargets has for the platform
    std::string platform;                         // empty: the host's
    std::vector<std::string>* warnings = nullptr; // appended to
};

// Between the thread that exports and those that watch it.
struct ExportProgress {
    std::atomic<std::uint64_t> done{0}; // grows to what exportSize told, unless files change
    std::atomic<bool> cancelled{false}; // set by a watcher; the export then fails soon
};

// Makes a folder in which the game starts by itself; returns its launcher. Behaviours are not built here, and
// are left out with a warning when the platform is not the host's. Nothing is written when the request is
// not valid; what any other failure has left in the destination stays there.
[[nodiscard]] TARVIK_APPCOMMON_API std::expected<std::filesystem::path, Error>
exportGame(const GameExport& request);
[[nodiscard]] TARVIK_APPCOMMON_API std::expected<std::filesystem::path, Error>
exportGame(const GameExport& request, ExportProgress& progress);

// The room that the export takes on a disk, in bytes; or why the request is not valid. Writes nothing.
[[nodiscard]] TARVIK_APPCOMMON_API std::expected<std::uint64_t, Error> exportSize(const GameExport& request);

} // namespace tarvik::app
