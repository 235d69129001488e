#pragma once

#include <tarvik/core/Error.hpp>
#include <tarvik/project/Export.hpp>

#include <cstdint>
#include <expected>
#include <filesystem>
#include <memory>
#include <span>
#include <string>

namespace tarvik {

struct RecentProject {
    std::filesystem::path path; // absolute, without a trailing separator
    std::string name;
    std::int64_t lastOpenedUnix = 0; // seconds since 1970-01-01 UTC
};

// The list of recent projects, newest first. The folders themselves are never looked at: one may lie on a
// server that does not answer. Not safe for concurrent use; several processes may share one storage file.
class TARVIK_PROJECT_API ProjectRegistry final {
public:
    // "recent-projects.json" in paths::userDataDir().
    [[nodiscard]] static std::filesystem::path defaultStorageFile();

    // Empty and bound to the file; reading happens in load().
    explicit ProjectRegistry(std::filesystem::path storageFile);
    ProjectRegistry(ProjectRegistry&&) noexcept;
    ProjectRegistry& operator=(ProjectRegistry&&) noexcept;
    ~ProjectRegistry();

    // A missing file is an empty list. After a failure the list is empty, the file was copied aside, and the
    // next save starts a new one. A file that could not be copied aside is never replaced: saving fails.
    [[nodiscard]] std::expected<void, Error> load();

    // Merges what this object added, touched or removed since it loaded or saved into what the file holds
    // now, under a lock among processes, so that two editors do not lose each other's entries.
    [[nodiscard]] std::expected<void, Error> save() const;

    [[nodiscard]] std::span<const RecentProject> projects() const;
    // Puts the project first, with the present time; one entry a path.
    void touch(const std::filesystem::path& path, std::string name);
    void remove(const std::filesystem::path& path);
    // Puts the project where its time says, in place of one with the same path, unless that one is newer.
    void put(RecentProject project);

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace tarvik
