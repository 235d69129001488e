#include <tarvik/core/Paths.hpp>

#include <tarvik/core/File.hpp>

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <optional>

namespace tarvik::paths {

namespace fs = std::filesystem;

namespace {

// A relative value counts as unset, as the XDG base directory rules ask.
std::optional<fs::path> absoluteFromEnvironment(const char* variable) {
    const char* value = std::getenv(variable);
    if (value == nullptr || *value != '/')
        return std::nullopt;
    return fs::path(value);
}

fs::path homeDir() {
    if (auto home = absoluteFromEnvironment("HOME"))
        return *home;
    std::array<char, 4096> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr)
        return found->pw_dir;
    return "/";
}

// The value of XDG_DOCUMENTS_DIR="..." in a line of user-dirs.dirs: an absolute path, or one below $HOME.
std::optional<fs::path> documentsDirIn(std::string_view line) {
    constexpr std::string_view kKey = "XDG_DOCUMENTS_DIR=\"";
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    if (!line.starts_with(kKey))
        return std::nullopt;
    line.remove_prefix(kKey.size());
    constexpr std::string_view kHome = "$HOME";
    const bool belowHome = line.starts_with("$HOME/") || line.starts_with("$HOME\"");
    if (belowHome)
        line.remove_prefix(kHome.size());
    else if (!line.starts_with('/'))
        return std::nullopt;
    std::string value;
    for (std::size_t index = 0; index < line.size(); ++index) {
        if (line[index] == '"')
            return fs::path(belowHome ? homeDir().native() + value : value);
        if (line[index] == '\\' && index + 1 < line.size())
            ++index;
        value += line[index];
    }
    return std::nullopt;
}

fs::path documentsDir() {
    constexpr std::uint64_t kMaxBytes = 1U << 20U;
    const fs::path config = absoluteFromEnvironment("XDG_CONFIG_HOME").value_or(homeDir() / ".config");
    fs::path documents = homeDir() / "Documents";
    const auto content = readFile(config / "user-dirs.dirs", kMaxBytes);
    for (std::string_view rest = content ? *content : std::string_view(); !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        if (auto found = documentsDirIn(line))
            documents = *found;
    }
    return documents;
}

} // namespace

fs::path defaultProjectsDir() {
    return documentsDir() / "Tarvik Projects";
}

fs::path userDataDir() {
    return absoluteFromEnvironment("XDG_DATA_HOME").value_or(homeDir() / ".local" / "share") / "tarvik";
}

std::string toUtf8(const fs::path& path) {
    return path.generic_string();
}

fs::path fromUtf8(std::string_view text) {
    return fs::path(text);
}

} // namespace tarvik::paths
