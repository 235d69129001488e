#pragma once

#include <tarvik/scene/Scene.hpp>

#include <glm/vec3.hpp>

#include <cstddef>

namespace tarvik::editor {

struct Sphere {
    glm::vec3 centre{0.0F};
    float radius = 4.0F; // metres
};

// Around the things that one wants to see. Planes are left out: a wide ground would push the camera away.
[[nodiscard]] Sphere boundsOf(const Scene& scene);

// An entity without a mesh is taken for as large as a unit primitive.
[[nodiscard]] Sphere boundsOf(const Scene& scene, std::size_t entity);

} // namespace tarvik::editor
