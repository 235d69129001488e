#include "CopyTree.hpp"

#include "ExportPaths.hpp"
#include "FileCopy.hpp"

#include <tarvik/app/GameExport.hpp>

#include <system_error>

namespace tarvik::app {

namespace fs = std::filesystem;

namespace {

// What an entry takes beside its content: usually a file's last block is half empty, and its name and
// attributes lie in others.
constexpr std::uint64_t kEntrySize = 4096;

template <typename Visit>
std::expected<void, Error> walk(const fs::path& source, const CopyFilter& filter, Visit visit) {
    // The path of an entry is the source's with names appended, links or no links.
    const std::size_t prefix = (source / "").native().size();
    std::error_code error;
    fs::recursive_directory_iterator entry(source, error);
    for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        const fs::path relative = entry->path().native().substr(prefix);
        if (filter && filter(relative)) {
            entry.disable_recursion_pending();
            continue;
        }
        if (const std::error_code failure = visit(*entry, relative))
            return makeError("cannot copy {}: {}", narrow(entry->path()), failure.message());
    }
    if (error)
        return makeError("cannot read {}: {}", narrow(source), error.message());
    return {};
}

// The listing tells the types on most file systems: asking for them costs nothing then.
std::error_code copyEntry(const fs::directory_entry& entry, const fs::path& target,
                          ExportProgress& progress) {
    if (progress.cancelled)
        return std::make_error_code(std::errc::operation_canceled);
    std::error_code error;
    if (entry.is_symlink(error))
        fs::copy_symlink(entry.path(), target, error);
    else if (!error && entry.is_directory(error))
        fs::create_directory(target, error);
    else if (!error && entry.is_regular_file(error))
        error = copyFile(entry.path(), target, progress);
    else if (!error)
        error = std::make_error_code(std::errc::not_supported);
    if (!error)
        progress.done += kEntrySize;
    return error;
}

} // namespace

std::expected<void, Error> copyTree(const fs::path& source, const fs::path& destination,
                                    const CopyFilter& filter, ExportProgress& progress) {
    std::error_code error;
    fs::create_directories(destination, error);
    if (error)
        return makeError("cannot create {}: {}", narrow(destination), error.message());
    // A copy that lies within its source would go on for ever if it were copied, too.
    const fs::path itself = resolved(destination).lexically_relative(resolved(source));
    const auto leftOut = [&](const fs::path& relative) {
        return relative.native() == itself.native() || (filter && filter(relative));
    };
    return walk(source, leftOut, [&](const fs::directory_entry& entry, const fs::path& relative) {
        return copyEntry(entry, destination / relative, progress);
    });
}

std::expected<std::uint64_t, Error> treeSize(const fs::path& source, const CopyFilter& filter) {
    std::uint64_t size = 0;
    const auto walked = walk(source, filter, [&](const fs::directory_entry& entry, const fs::path&) {
        std::error_code ignored; // what cannot be copied is for the copy to tell
        size += kEntrySize;
        if (!entry.is_symlink(ignored) && entry.is_regular_file(ignored)) {
            const std::uintmax_t content = entry.file_size(ignored);
            size += ignored ? 0 : content;
        }
        return std::error_code();
    });
    if (!walked)
        return std::unexpected(walked.error());
    return size;
}

} // namespace tarvik::app
