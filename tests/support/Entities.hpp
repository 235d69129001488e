#pragma once

#include <tarvik/scene/Scene.hpp>

namespace tarvik::test {

inline Entity entityOf(Mesh mesh, Colour colour, const glm::vec3& position = {},
                       const glm::vec3& scale = glm::vec3(1.0F)) {
    Entity entity;
    entity.mesh = mesh;
    entity.colour = colour;
    entity.transform.position = position;
    entity.transform.scale = scale;
    return entity;
}

} // namespace tarvik::test
