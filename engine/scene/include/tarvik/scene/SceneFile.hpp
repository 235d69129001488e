#pragma once

#include <tarvik/core/Error.hpp>
#include <tarvik/scene/Export.hpp>
#include <tarvik/scene/Scene.hpp>

#include <expected>
#include <filesystem>

namespace tarvik {

// "*.lscene" files: JSON. Every failure names the file, and a wrong value the entity and field it stands in.
[[nodiscard]] TARVIK_SCENE_API std::expected<Scene, Error> loadScene(const std::filesystem::path& file);
[[nodiscard]] TARVIK_SCENE_API std::expected<void, Error> saveScene(const Scene& scene,
                                                                    const std::filesystem::path& file);

} // namespace tarvik
