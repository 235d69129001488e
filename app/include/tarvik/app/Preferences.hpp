#pragma once

#include <tarvik/app/AppOptions.hpp>
#include <tarvik/app/Export.hpp>

#include <QString>

#include <cstdint>
#include <optional>

namespace tarvik::app {

// What the user chose for every start, kept in the settings store of the application: its organisation and
// name must be set before load and save.
struct TARVIK_APPCOMMON_API Preferences {
    static constexpr std::uint32_t kValidationDefault = 0; // whatever the start says, else off
    static constexpr std::uint32_t kValidationOn = 1;
    static constexpr std::uint32_t kValidationOff = 2;

    std::optional<std::uint32_t> gpu; // index as Vulkan lists the GPUs; unset: the renderer chooses
    std::uint32_t validation = kValidationDefault;
    bool vsync = true;
    QString projectsDirectory; // empty: the engine's default

    // What is missing or makes no sense is as in a default-constructed record.
    [[nodiscard]] static Preferences load();
    // Reports no failure: the store's status tells.
    void save() const;

    // Fills what was left open; an explicit choice stays.
    void applyTo(AppOptions& options) const;

    // May not exist.
    [[nodiscard]] QString effectiveProjectsDirectory() const;
};

} // namespace tarvik::app
