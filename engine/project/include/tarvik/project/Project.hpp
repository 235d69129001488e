#pragma once

#include <tarvik/core/Error.hpp>
#include <tarvik/project/Export.hpp>

#include <cstdint>
#include <expected>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace tarvik {

// An open project: a folder with the project file "project.json", and "Content" for its scenes. The file's
// fields that this version does not know survive a save.
class TARVIK_PROJECT_API Project final {
public:
    static constexpr std::string_view kFileName = "project.json";

    // Makes the folder, or uses an empty one, with a project file, a Content folder and an empty default
    // scene name. Fails when the name is not valid, or the folder holds anything.
    static std::expected<Project, Error> create(const std::filesystem::path& rootDir, std::string name);

    // A project file that cannot be understood is copied aside and left as it is.
    static std::expected<Project, Error> open(const std::filesystem::path& rootDir);

    // Whether the folder has a project file. As slow as the folder's file system.
    [[nodiscard]] static bool isIn(const std::filesystem::path& rootDir);

    // 1 to 64 characters: letters and digits of ASCII, space, '-', '_'; no space at either end; no name that
    // Windows reserves for a device.
    [[nodiscard]] static bool isValidName(std::string_view name);

    Project(Project&&) noexcept;
    Project& operator=(Project&&) noexcept;
    ~Project();

    [[nodiscard]] const std::filesystem::path& rootDir() const; // absolute
    [[nodiscard]] std::filesystem::path contentDir() const;

    [[nodiscard]] const std::string& name() const;
    void setName(std::string name);
    [[nodiscard]] const std::string& description() const;
    void setDescription(std::string description);
    // Relative to the root, with "/", such as Content/Main.lscene; empty for none.
    [[nodiscard]] const std::string& defaultScene() const;
    void setDefaultScene(std::string scene);
    [[nodiscard]] const std::string& engineVersion() const;
    [[nodiscard]] std::int64_t createdUnix() const; // seconds since 1970-01-01 UTC; 0 when unknown

    [[nodiscard]] std::expected<void, Error> save();

private:
    struct State;
    explicit Project(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

} // namespace tarvik
