#pragma once

#include <tarvik/core/Error.hpp>
#include <tarvik/core/Export.hpp>

#include <chrono>
#include <cstdint>
#include <expected>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace tarvik {

// The whole file. A file larger than maxBytes, a folder, a pipe or a device is an error, never a hang.
[[nodiscard]] TARVIK_CORE_API std::expected<std::string, Error> readFile(const std::filesystem::path& file,
                                                                         std::uint64_t maxBytes);

// Replaces the file's content in one step: written beside it, flushed to the disk, renamed over it. After a
// failure or a power cut the file holds the old content or the new, never a part. A link is written through;
// a write-protected file is left alone. Missing parent folders are created.
[[nodiscard]] TARVIK_CORE_API std::expected<void, Error> writeFileDurably(const std::filesystem::path& file,
                                                                          std::string_view content);

// Makes the folder and its missing parents; a folder that is there already is fine.
[[nodiscard]] TARVIK_CORE_API std::expected<void, Error> createFolders(const std::filesystem::path& folder);

// Copies a file that could not be understood to "<name>.corrupt-<n>" beside it, n being the first free
// number, so that a later save destroys nothing. A copy with the same content that is there already is
// taken instead. Returns the copy's path.
[[nodiscard]] TARVIK_CORE_API std::expected<std::filesystem::path, Error>
keepAside(const std::filesystem::path& file);

// Holds a lock among processes, bound to a lock file, until destroyed. The file stays behind, empty; missing
// parent folders are created.
class TARVIK_CORE_API FileLock final {
public:
    static constexpr std::chrono::seconds kMaxWait{2};

    static std::expected<FileLock, Error> acquire(const std::filesystem::path& lockFile);
    FileLock(FileLock&&) noexcept;
    FileLock& operator=(FileLock&&) noexcept;
    ~FileLock();

private:
    struct State;
    explicit FileLock(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

} // namespace tarvik
