#include <tarvik/core/File.hpp>

#include "FilePlatform.hpp"

#include <tarvik/core/Paths.hpp>

#include <system_error>
#include <vector>

namespace tarvik {

namespace fs = std::filesystem;

namespace {

constexpr std::uint64_t kMaxKeptAside = 256ULL << 20U;
constexpr int kMaxLinks = 40;
constexpr int kMaxCopies = 1000;

// The file that a chain of links ends at. It need not exist.
std::expected<fs::path, Error> followLinks(const fs::path& file) {
    fs::path target = file;
    for (int links = 0; links < kMaxLinks; ++links) {
        std::error_code error;
        if (!fs::is_symlink(fs::symlink_status(target, error)))
            return target;
        const fs::path next = fs::read_symlink(target, error);
        if (error)
            return makeError("cannot follow the link {}: {}", paths::toUtf8(target), error.message());
        target = target.parent_path() / next;
    }
    return makeError("cannot follow the link {}: its links form a loop", paths::toUtf8(file));
}

} // namespace

std::expected<void, Error> createFolders(const fs::path& folder) {
    std::vector<fs::path> missing;
    std::error_code error;
    const auto isMissing = [&](const fs::path& path) {
        return path.has_relative_path() && fs::status(path, error).type() == fs::file_type::not_found;
    };
    for (fs::path each = folder; isMissing(each); each = each.parent_path())
        if (each.has_filename())
            missing.push_back(each);
    while (!missing.empty()) {
        fs::create_directory(missing.back(), error);
        if (error)
            return makeError("cannot create the folder {}: {}", paths::toUtf8(missing.back()),
                             error.message());
        if (auto synced = syncFolder(missing.back().parent_path()); !synced)
            return synced;
        missing.pop_back();
    }
    return {};
}

std::expected<void, Error> writeFileDurably(const fs::path& file, std::string_view content) {
    auto target = followLinks(file);
    if (!target)
        return std::unexpected(target.error());
    if (auto created = createFolders(target->parent_path()); !created)
        return created;
    std::error_code error;
    const fs::file_status status = fs::status(*target, error);
    if (fs::exists(status) && !fs::is_regular_file(status))
        return makeError("cannot write {}: it is not a plain file", paths::toUtf8(*target));
    return replaceFile(*target, content);
}

std::expected<fs::path, Error> keepAside(const fs::path& file) {
    const auto content = readFile(file, kMaxKeptAside);
    if (!content)
        return std::unexpected(content.error());
    for (int number = 1; number <= kMaxCopies; ++number) {
        fs::path copy = file;
        copy += ".corrupt-" + std::to_string(number);
        std::error_code error;
        if (fs::exists(fs::symlink_status(copy, error))) {
            if (readFile(copy, content->size()) == *content)
                return copy;
            continue;
        }
        if (auto written = writeFileDurably(copy, *content); !written)
            return std::unexpected(written.error());
        return copy;
    }
    return makeError("cannot keep a copy of {}: there are {} copies already", paths::toUtf8(file),
                     kMaxCopies);
}

} // namespace tarvik
