#include <tarvik/project/ProjectRegistry.hpp>

#include "CorruptFile.hpp"
#include "UnixTime.hpp"

#include <tarvik/core/File.hpp>
#include <tarvik/core/JsonFields.hpp>
#include <tarvik/core/JsonFile.hpp>
#include <tarvik/core/Paths.hpp>
#include <tarvik/core/Utf8.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <set>
#include <system_error>
#include <utility>
#include <vector>

namespace tarvik {

namespace fs = std::filesystem;

namespace {

// Some ten thousand projects. It is read before the first window shows, which is not to wait for minutes.
constexpr std::uint64_t kMaxBytes = 4ULL << 20U;

// An entry of the storage file with all its fields, those of other versions included.
struct Stored {
    RecentProject project;
    Json json = Json::object();
};

// Whether to make the path absolute and normal, which is slow, would change nothing. May say no to one that
// is both, but to none that most people have.
bool isPlain(const fs::path& path) {
    constexpr auto separator = fs::path::preferred_separator;
    const auto& text = path.native();
    if constexpr (separator != '/') {
        if (text.contains('/'))
            return false;
    }
    const auto isOdd = [](auto character, auto next) {
        return character == separator && (next == separator || next == '.');
    };
    return path.is_absolute() && text.back() != separator &&
           std::ranges::adjacent_find(text, isOdd) == text.end();
}

fs::path asListed(fs::path path) {
    if (isPlain(path))
        return path;
    std::error_code error;
    fs::path absolute = fs::absolute(path, error).lexically_normal();
    if (error)
        absolute = path.lexically_normal();
    return absolute.has_filename() ? absolute : absolute.parent_path();
}

// A path is a text; one that is not UTF-8, which JSON cannot hold, is the list of its bytes.
Json toJson(const fs::path& path) {
    const std::string text = paths::toUtf8(path);
    if (isUtf8(text))
        return text;
    Json bytes = Json::array();
    for (const char byte : text)
        bytes.push_back(static_cast<unsigned char>(byte));
    return bytes;
}

fs::path readPath(const JsonFields& fields) {
    const Json* bytes = fields.find("path");
    if (bytes == nullptr || !bytes->is_array())
        return paths::fromUtf8(fields.requiredText("path"));
    std::string text;
    for (const Json& byte : *bytes)
        text += static_cast<char>(fields.number("path", byte, 1, 255));
    return paths::fromUtf8(text);
}

void sortNewestFirst(std::vector<Stored>& entries) {
    const auto opened = [](const Stored& entry) {
        return entry.project.lastOpenedUnix;
    };
    if (!std::ranges::is_sorted(entries, std::ranges::greater{}, opened)) // as the file mostly is
        std::ranges::stable_sort(entries, std::ranges::greater{}, opened);
}

// Moves the entries out of the document.
std::expected<std::vector<Stored>, JsonProblem> readEntries(Json& document) {
    JsonProblem problem;
    std::vector<Stored> entries;
    const JsonFields fields(document, problem);
    const Json* list = fields.find("projects");
    if (list == nullptr)
        return entries;
    if (!list->is_array()) {
        fields.fail("projects", "a list", *list);
        return std::unexpected(problem);
    }
    entries.reserve(list->size());
    for (Json& json : document["projects"]) {
        const JsonFields entry(json, problem);
        RecentProject project{.path = readPath(entry),
                              .name = entry.text("name"),
                              .lastOpenedUnix = entry.integer("lastOpened")};
        if (problem.reason.empty() && project.path.empty())
            problem = {"\"path\" is empty", "path"};
        if (!problem.reason.empty())
            return std::unexpected(
                JsonProblem{fmt::format("projects[{}]: {}", entries.size(), problem.reason),
                            fmt::format("projects/{}/{}", entries.size(), problem.where)});
        project.path = asListed(std::move(project.path));
        entries.push_back({std::move(project), std::move(json)});
    }
    sortNewestFirst(entries);
    std::set<fs::path::string_type> seen; // paths themselves compare slowly, component by component
    std::erase_if(entries,
                  [&](const Stored& entry) { return !seen.insert(entry.project.path.native()).second; });
    return entries;
}

struct Storage {
    Json document = Json::object();
    std::vector<Stored> entries;
};

// An absent file is an empty storage.
std::expected<Storage, Error> readStorage(const fs::path& file) {
    std::error_code error;
    if (fs::status(file, error).type() == fs::file_type::not_found)
        return Storage{};
    auto document = readJsonFile(file, kMaxBytes);
    if (!document)
        return std::unexpected(document.error());
    auto entries = readEntries(*document);
    if (!entries)
        return std::unexpected(errorIn(file, entries.error()));
    return Storage{*std::move(document), *std::move(entries)};
}

} // namespace

struct ProjectRegistry::State {
    fs::path file;
    std::vector<RecentProject> projects;
    // What happened since the last load or save, for save to repeat on what the file holds by then.
    std::set<fs::path> touched;
    std::map<fs::path, std::int64_t> removed; // with the time

    [[nodiscard]] auto find(const fs::path& path) {
        return std::ranges::find(projects, path, &RecentProject::path);
    }

    // Takes the project off the list and gives the time of what is done to it now. Not before its last
    // opening: a clock that was wrong once must not make an entry stronger than what the user does.
    std::int64_t take(const fs::path& root) {
        std::int64_t now = nowUnix();
        if (const auto known = find(root); known != projects.end()) {
            now = std::max(now, known->lastOpenedUnix);
            projects.erase(known);
        }
        return now;
    }

    void mergeInto(std::vector<Stored>& entries) const {
        std::erase_if(entries, [&](const Stored& entry) {
            const auto found = removed.find(entry.project.path);
            return found != removed.end() && entry.project.lastOpenedUnix <= found->second;
        });
        std::vector<Stored> merged;
        for (const RecentProject& project : projects) {
            if (!touched.contains(project.path))
                continue;
            const auto known =
                std::ranges::find(entries, project.path,
                                  [](const Stored& entry) -> const fs::path& { return entry.project.path; });
            if (known == entries.end()) {
                merged.push_back({project, Json{{"path", toJson(project.path)}}});
            } else if (known->project.lastOpenedUnix <= project.lastOpenedUnix) {
                merged.push_back({project, std::move(known->json)});
                entries.erase(known);
            }
        }
        // Ours first: among entries of the same second the sort keeps this order.
        std::ranges::move(entries, std::back_inserter(merged));
        sortNewestFirst(merged);
        entries = std::move(merged);
    }
};

fs::path ProjectRegistry::defaultStorageFile() {
    return paths::userDataDir() / "recent-projects.json";
}

ProjectRegistry::ProjectRegistry(fs::path storageFile) : state_(std::make_unique<State>()) {
    state_->file = std::move(storageFile);
}

ProjectRegistry::ProjectRegistry(ProjectRegistry&&) noexcept = default;
ProjectRegistry& ProjectRegistry::operator=(ProjectRegistry&&) noexcept = default;
ProjectRegistry::~ProjectRegistry() = default;

std::expected<void, Error> ProjectRegistry::load() {
    state_->projects.clear();
    state_->touched.clear();
    state_->removed.clear();
    auto storage = readStorage(state_->file);
    if (!storage)
        return std::unexpected(keepCorrupt(state_->file, storage.error()));
    state_->projects.reserve(storage->entries.size());
    for (Stored& entry : storage->entries)
        state_->projects.push_back(std::move(entry.project));
    return {};
}

std::expected<void, Error> ProjectRegistry::save() const {
    fs::path lockFile = state_->file;
    lockFile += ".lock";
    const auto lock = FileLock::acquire(lockFile);
    if (!lock)
        return makeError("cannot save the recent projects: {}", lock.error().message);
    auto storage = readStorage(state_->file);
    if (!storage) {
        if (auto copy = keepAside(state_->file); !copy)
            return makeError("cannot save the recent projects: {}, and {}", storage.error().message,
                             copy.error().message);
        storage = Storage{};
        // What the file held is set aside; all that this object knows makes up the new one.
        for (const RecentProject& project : state_->projects)
            state_->touched.insert(project.path);
    }
    state_->mergeInto(storage->entries);
    Json list = Json::array();
    for (Stored& entry : storage->entries) {
        entry.json["name"] = entry.project.name;
        entry.json["lastOpened"] = entry.project.lastOpenedUnix;
        list.push_back(std::move(entry.json));
    }
    storage->document["projects"] = std::move(list);
    if (auto written = writeJsonFile(state_->file, storage->document); !written)
        return makeError("cannot save the recent projects: {}", written.error().message);
    state_->touched.clear();
    state_->removed.clear();
    return {};
}

std::span<const RecentProject> ProjectRegistry::projects() const {
    return state_->projects;
}

void ProjectRegistry::touch(const fs::path& path, std::string name) {
    if (path.empty())
        return;
    const fs::path root = asListed(path);
    const std::int64_t now = state_->take(root);
    state_->projects.insert(state_->projects.begin(), {root, std::move(name), now});
    state_->touched.insert(root);
    state_->removed.erase(root);
}

void ProjectRegistry::remove(const fs::path& path) {
    const fs::path root = asListed(path);
    state_->removed[root] = state_->take(root);
    state_->touched.erase(root);
}

void ProjectRegistry::put(RecentProject project) {
    project.path = asListed(std::move(project.path));
    if (const auto known = state_->find(project.path); known != state_->projects.end()) {
        if (known->lastOpenedUnix > project.lastOpenedUnix)
            return;
        state_->projects.erase(known);
    }
    state_->touched.insert(project.path);
    state_->removed.erase(project.path);
    const auto older = std::ranges::find_if(state_->projects, [&](const RecentProject& each) {
        return each.lastOpenedUnix <= project.lastOpenedUnix;
    });
    state_->projects.insert(older, std::move(project));
}

} // namespace tarvik
