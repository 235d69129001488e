#pragma once

#include <tarvik/renderer/Export.hpp>
#include <tarvik/scene/Scene.hpp>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

// The only work of a frame that grows with the scene.
namespace tarvik::render {

// What the vertex shader reads of an entity.
struct Instance {
    float position[3];
    float rotation[4]; // x, y, z, w
    float scale[3];
    std::uint8_t colour[4];
    std::uint32_t unused; // keeps instances on 16-byte boundaries
};
static_assert(sizeof(Instance) == 48);

struct InstanceRange {
    std::uint32_t first = 0;
    std::uint32_t count = 0;
};
using InstanceRanges = std::array<InstanceRange, kMeshCount>;

[[nodiscard]] TARVIK_RENDERER_API std::size_t instanceCount(const Scene& scene);

// Writes the entities that have a mesh, grouped by mesh, in one pass. There is room for instanceCount().
TARVIK_RENDERER_API InstanceRanges writeInstances(const Scene& scene, std::span<Instance> instances);

} // namespace tarvik::render
