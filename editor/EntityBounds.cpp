#include "EntityBounds.hpp"

#include <glm/common.hpp>
#include <glm/geometric.hpp>

#include <algorithm>

namespace tarvik::editor {

Sphere boundsOf(const Scene& scene) {
    glm::vec3 low{0.0F};
    glm::vec3 high{0.0F};
    bool any = false;
    for (std::size_t i = 0; i < scene.size(); ++i) {
        const Mesh mesh = scene.meshes()[i];
        if (mesh == Mesh::None || mesh == Mesh::Plane)
            continue;
        const Transform& transform = scene.transforms()[i];
        const glm::vec3 reach(0.5F * glm::length(transform.scale));
        low = any ? glm::min(low, transform.position - reach) : transform.position - reach;
        high = any ? glm::max(high, transform.position + reach) : transform.position + reach;
        any = true;
    }
    if (!any)
        return {};
    return {0.5F * (low + high), std::max(0.5F * glm::length(high - low), 0.5F)};
}

Sphere boundsOf(const Scene& scene, std::size_t entity) {
    const Transform& transform = scene.transforms()[entity];
    const Mesh mesh = scene.meshes()[entity];
    glm::vec3 size = mesh == Mesh::None ? glm::vec3(1.0F) : transform.scale;
    if (mesh == Mesh::Plane)
        size.y = 0.0F;
    return {transform.position, 0.5F * glm::length(size)};
}

} // namespace tarvik::editor
