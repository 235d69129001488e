#include <tarvik/project/Project.hpp>

#include "CorruptFile.hpp"
#include "UnixTime.hpp"

#include <tarvik/core/File.hpp>
#include <tarvik/core/JsonFields.hpp>
#include <tarvik/core/JsonFile.hpp>
#include <tarvik/core/Paths.hpp>

#include <algorithm>
#include <array>
#include <cstddef>
#include <system_error>
#include <utility>
#include <vector>

namespace tarvik {

namespace fs = std::filesystem;

struct Project::State {
    fs::path rootDir;
    Json document = Json::object(); // as last read, for the fields that this version does not know
    std::string name;
    std::string description;
    std::string defaultScene;
    std::string engineVersion;
    std::int64_t createdUnix = 0;

    [[nodiscard]] fs::path file() const { return rootDir / kFileName; }

    JsonProblem readDocument() {
        JsonProblem problem;
        const JsonFields fields(document, problem);
        name = fields.requiredText("name");
        description = fields.text("description");
        defaultScene = fields.text("defaultScene");
        engineVersion = fields.text("engineVersion");
        createdUnix = fields.integer("created");
        return problem;
    }

    void writeDocument() {
        document["name"] = name;
        document["description"] = description;
        document["defaultScene"] = defaultScene;
        document["engineVersion"] = engineVersion;
        document["created"] = createdUnix;
    }
};

namespace {

constexpr std::size_t kMaxNameLength = 64;

char toUpper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool isNameCharacter(char c) {
    return (toUpper(c) >= 'A' && toUpper(c) <= 'Z') || (c >= '0' && c <= '9') || c == ' ' || c == '-' ||
           c == '_';
}

bool isDeviceOfWindows(std::string_view name) {
    std::string upper(name);
    std::ranges::transform(upper, upper.begin(), toUpper);
    constexpr std::array<std::string_view, 4> kPlain{"CON", "PRN", "AUX", "NUL"};
    const bool numbered = upper.size() == 4 && (upper.starts_with("COM") || upper.starts_with("LPT")) &&
                          upper[3] >= '0' && upper[3] <= '9';
    return numbered || std::ranges::find(kPlain, upper) != kPlain.end();
}

std::expected<fs::path, Error> normalised(const fs::path& folder) {
    if (folder.empty())
        return makeError("a project needs a folder, and none was given");
    std::error_code error;
    const fs::path absolute = fs::absolute(folder, error).lexically_normal();
    if (error)
        return makeError("cannot find the folder {}: {}", paths::toUtf8(folder), error.message());
    return absolute.has_filename() ? absolute : absolute.parent_path();
}

// What a creation that fails takes back, so that it can be tried again.
class Undo final {
public:
    Undo() = default;
    Undo(const Undo&) = delete;
    Undo& operator=(const Undo&) = delete;
    ~Undo() {
        std::error_code ignored; // a folder that is not empty belongs to somebody else by now
        for (auto each = made_.rbegin(); each != made_.rend(); ++each)
            fs::remove(*each, ignored);
    }
    void willMake(const fs::path& path) {
        std::vector<fs::path> missing;
        std::error_code error;
        const auto isMissing = [&](const fs::path& each) {
            return each.has_relative_path() && fs::status(each, error).type() == fs::file_type::not_found;
        };
        for (fs::path each = path; isMissing(each); each = each.parent_path())
            missing.push_back(each);
        made_.insert(made_.end(), missing.rbegin(), missing.rend());
    }
    void keepAll() { made_.clear(); }

private:
    std::vector<fs::path> made_;
};

} // namespace

Project::Project(std::unique_ptr<State> state) : state_(std::move(state)) {}
Project::Project(Project&&) noexcept = default;
Project& Project::operator=(Project&&) noexcept = default;
Project::~Project() = default;

std::expected<Project, Error> Project::create(const fs::path& rootDir, std::string name) {
    if (!isValidName(name))
        return makeError("\"{}\" is no valid project name: use letters, digits, spaces, '-' or '_' (max {} "
                         "characters)",
                         name, kMaxNameLength);
    const auto root = normalised(rootDir);
    if (!root)
        return std::unexpected(root.error());
    Undo undo;
    undo.willMake(*root);
    if (auto created = createFolders(*root); !created)
        return std::unexpected(created.error());
    std::error_code error;
    const bool empty = fs::is_directory(*root, error) && fs::is_empty(*root, error);
    if (!empty)
        return makeError("cannot create a project in {}: {}", paths::toUtf8(*root),
                         error ? error.message() : "it is not an empty folder");

    auto state = std::make_unique<State>();
    state->rootDir = *root;
    state->name = std::move(name);
    state->engineVersion = TARVIK_VERSION;
    state->createdUnix = nowUnix();
    Project project(std::move(state));
    undo.willMake(project.contentDir());
    undo.willMake(project.state_->file());
    if (auto content = createFolders(project.contentDir()); !content)
        return std::unexpected(content.error());
    if (auto saved = project.save(); !saved)
        return std::unexpected(saved.error());
    undo.keepAll();
    return project;
}

std::expected<Project, Error> Project::open(const fs::path& rootDir) {
    const auto root = normalised(rootDir);
    if (!root)
        return std::unexpected(root.error());
    auto state = std::make_unique<State>();
    state->rootDir = *root;
    const fs::path file = state->file();
    auto document = readJsonFile(file);
    if (!document)
        return std::unexpected(keepCorrupt(file, document.error()));
    state->document = *std::move(document);
    if (const JsonProblem problem = state->readDocument(); !problem.reason.empty())
        return std::unexpected(keepCorrupt(file, errorIn(file, problem)));
    return Project(std::move(state));
}

bool Project::isIn(const fs::path& rootDir) {
    std::error_code error;
    return fs::is_regular_file(rootDir / kFileName, error);
}

bool Project::isValidName(std::string_view name) {
    return !name.empty() && name.size() <= kMaxNameLength && std::ranges::all_of(name, isNameCharacter) &&
           name.front() != ' ' && name.back() != ' ' && !isDeviceOfWindows(name);
}

const fs::path& Project::rootDir() const {
    return state_->rootDir;
}

fs::path Project::contentDir() const {
    return state_->rootDir / "Content";
}

const std::string& Project::name() const {
    return state_->name;
}

void Project::setName(std::string name) {
    state_->name = std::move(name);
}

const std::string& Project::description() const {
    return state_->description;
}

void Project::setDescription(std::string description) {
    state_->description = std::move(description);
}

const std::string& Project::defaultScene() const {
    return state_->defaultScene;
}

void Project::setDefaultScene(std::string scene) {
    state_->defaultScene = std::move(scene);
}

const std::string& Project::engineVersion() const {
    return state_->engineVersion;
}

std::int64_t Project::createdUnix() const {
    return state_->createdUnix;
}

std::expected<void, Error> Project::save() {
    std::error_code error;
    // The folder is not made anew: what was in it is gone, and a lone project file would hide that.
    if (!fs::is_directory(state_->rootDir, error))
        return makeError("cannot save the project: its folder {} is gone", paths::toUtf8(state_->rootDir));
    const fs::path file = state_->file();
    if (fs::exists(file, error)) {
        // Fields that others have added since survive too; what they have broken is kept aside.
        if (auto current = readJsonFile(file))
            state_->document = *std::move(current);
        else if (auto copy = keepAside(file); !copy)
            return std::unexpected(copy.error());
    }
    state_->writeDocument();
    return writeJsonFile(file, state_->document);
}

} // namespace tarvik
