#pragma once

#include <tarvik/scene/Scene.hpp>

#include <glm/vec3.hpp>

#include <array>
#include <cstdint>
#include <vector>

namespace tarvik::render {

struct Vertex {
    glm::vec3 position;
    glm::vec3 normal;
};

struct MeshRange {
    std::uint32_t firstIndex = 0;
    std::uint32_t indexCount = 0;
};

// Full detail, and a coarser form for far away where that looks the same.
struct MeshDetails {
    MeshRange full;
    MeshRange coarse;
};

// The unit primitives, front faces counter-clockwise, one after the other.
struct Geometry {
    std::vector<Vertex> vertices;
    std::vector<std::uint16_t> indices;
    std::array<MeshDetails, kMeshCount> meshes;
};

[[nodiscard]] Geometry makeGeometry();

} // namespace tarvik::render
