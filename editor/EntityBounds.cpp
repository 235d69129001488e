#include "EntityBounds.hpp"

#include <glm/common.hpp>
#include <glm/geometric.hpp>
#include <glm/gtc/quaternion.hpp>
#include <glm/mat3x3.hpp>

#include <limits>

namespace tarvik::editor {

namespace {

glm::vec3 sizeOf(const Scene& scene, std::size_t entity) {
    const glm::vec3 scale = glm::abs(scene.transforms()[entity].scale);
    switch (scene.meshes()[entity]) {
    case Mesh::None:
        return glm::vec3(1.0F);
    case Mesh::Plane:
        return {scale.x, 0.0F, scale.z};
    default:
        return scale;
    }
}

// Half the size of the box around a turned box, along the axes of the world.
glm::vec3 reachOf(const Scene& scene, std::size_t entity) {
    const glm::mat3 turned = glm::mat3_cast(scene.transforms()[entity].rotation);
    const glm::vec3 half = 0.5F * sizeOf(scene, entity);
    return glm::abs(turned[0]) * half.x + glm::abs(turned[1]) * half.y + glm::abs(turned[2]) * half.z;
}

} // namespace

Sphere boundsOf(const Scene& scene) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    glm::vec3 low{kInfinity};
    glm::vec3 high{-kInfinity};
    for (std::size_t i = 0; i < scene.size(); ++i) {
        if (scene.meshes()[i] == Mesh::None || scene.meshes()[i] == Mesh::Plane)
            continue;
        const glm::vec3 position = scene.transforms()[i].position;
        const glm::vec3 reach = reachOf(scene, i);
        low = glm::min(low, position - reach);
        high = glm::max(high, position + reach);
    }
    if (low.x > high.x)
        return {};
    return {0.5F * (low + high), 0.5F * glm::length(high - low)};
}

Sphere boundsOf(const Scene& scene, std::size_t entity) {
    return {scene.transforms()[entity].position, 0.5F * glm::length(sizeOf(scene, entity))};
}

} // namespace tarvik::editor
