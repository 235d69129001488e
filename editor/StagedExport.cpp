#include "StagedExport.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/core/Paths.hpp>

#include <QLocale>
#include <QStorageInfo>

#include <string>
#include <system_error>

namespace tarvik::editor {

namespace fs = std::filesystem;
using paths::toUtf8;

namespace {

std::string sizeText(std::uintmax_t bytes) {
    return QLocale().formattedDataSize(static_cast<qint64>(bytes)).toStdString();
}

// Where links lead, so that the part lies on the destination's own disk.
std::expected<fs::path, Error> placeOf(const fs::path& destination) {
    std::error_code error;
    fs::path place = fs::absolute(destination, error);
    if (!error)
        place = fs::weakly_canonical(place, error);
    if (error)
        return makeError("cannot create {}: {}", toUtf8(destination), error.message());
    return place.has_filename() ? place : place.parent_path();
}

fs::path existingFolderAbove(const fs::path& path) {
    std::error_code ignored;
    fs::path folder = path.parent_path();
    while (!fs::exists(folder, ignored) && folder.has_relative_path())
        folder = folder.parent_path();
    return folder;
}

std::expected<void, Error> checkRoom(const fs::path& folder, std::uint64_t needed) {
    std::error_code error;
    const fs::space_info space = fs::space(folder, error);
    if (!error && space.available < needed)
        return makeError("{}: the game takes {}, and {} are free on this disk", toUtf8(folder),
                         sizeText(needed), sizeText(space.available));
    return {};
}

// A folder that is removed unless it gets its name.
class Part final {
public:
    static std::expected<Part, Error> make(const fs::path& place) {
        const fs::path folder = existingFolderAbove(place);
        for (int number = 1;; ++number) {
            fs::path name = place.filename();
            name += number == 1 ? std::string(".part") : ".part-" + std::to_string(number);
            std::error_code error;
            if (fs::create_directory(folder / name, error))
                return Part(folder / name);
            if (error)
                return makeError("cannot create {}: {}", toUtf8(folder / name), error.message());
        }
    }
    Part(Part&& other) noexcept : path_(std::move(other.path_)) { other.path_.clear(); }
    Part& operator=(Part&&) = delete;
    ~Part() {
        std::error_code ignored;
        if (!path_.empty())
            fs::remove_all(path_, ignored);
    }

    [[nodiscard]] const fs::path& path() const { return path_; }

    std::expected<void, Error> rename(const fs::path& place) {
        std::error_code error;
        fs::create_directories(place.parent_path(), error);
        if (!error && fs::is_directory(place, error))
            fs::remove(place, error); // an empty folder, or it stays and is an error
        else
            error.clear();
        if (!error)
            fs::rename(path_, place, error);
        if (error)
            return makeError("cannot create {}: {}", toUtf8(place), error.message());
        path_.clear();
        return {};
    }

private:
    explicit Part(fs::path path) : path_(std::move(path)) {}

    fs::path path_;
};

} // namespace

std::expected<fs::path, Error> exportStaged(const app::GameExport& request, app::ExportProgress& progress,
                                            std::atomic<std::uint64_t>& total) {
    const auto size = app::exportSize(request);
    if (!size)
        return std::unexpected(size.error());
    total = *size;
    const auto resolved = placeOf(request.destination);
    if (!resolved)
        return std::unexpected(resolved.error());
    const fs::path& place = *resolved;
    std::error_code error;
    const fs::file_status there = fs::symlink_status(place, error);
    if (fs::exists(there) && !fs::is_directory(there))
        return makeError("{} is not a folder: choose an empty or new folder", toUtf8(place));
    // Nothing beside it is on its disk, and nothing can take its name.
    const QString disk = QStorageInfo(app::toQString(place)).rootPath();
    if (app::toPath(disk) == place)
        return makeError("{} is a whole disk: choose a new folder on it", toUtf8(place));
    if (auto room = checkRoom(existingFolderAbove(place), *size); !room)
        return std::unexpected(room.error());

    auto part = Part::make(place);
    if (!part)
        return std::unexpected(part.error());
    app::GameExport staged = request;
    staged.destination = part->path();
    const auto launcher = app::exportGame(staged, progress);
    if (!launcher)
        return std::unexpected(launcher.error());
    // A disk that became full in the last moment left it empty.
    if (fs::file_size(*launcher, error) == 0 || error)
        return makeError("cannot write {}", toUtf8(*launcher));
    if (progress.cancelled)
        return makeError("{}: the export was cancelled", toUtf8(place));
    if (auto renamed = part->rename(place); !renamed)
        return std::unexpected(renamed.error());
    return place / launcher->filename();
}

} // namespace tarvik::editor
