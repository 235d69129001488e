#pragma once

#include <tarvik/scene/CameraView.hpp>
#include <tarvik/scene/Export.hpp>
#include <tarvik/scene/Scene.hpp>

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>

#include <cstddef>
#include <optional>

namespace tarvik {

struct Ray {
    glm::vec3 origin{0.0F};
    glm::vec3 direction{0.0F, 0.0F, -1.0F}; // of length one
};

// What lies under a point of the picture, from the near plane on. The point is in normalised device
// coordinates, y downwards.
[[nodiscard]] TARVIK_SCENE_API Ray rayThrough(const CameraView& view, const glm::vec2& ndc);

// The entity whose mesh the ray enters first. As when drawn, only the plane has two sides: a ray that starts
// inside a mesh does not hit it. Entities without a mesh cannot be hit.
[[nodiscard]] TARVIK_SCENE_API std::optional<std::size_t> pick(const Scene& scene, const Ray& ray);

} // namespace tarvik
