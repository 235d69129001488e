#pragma once

#include <tarvik/renderer/Export.hpp>
#include <tarvik/scene/Scene.hpp>

#include <glm/vec4.hpp>

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
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

// Where the instances of a mesh lie: those near enough to be drawn in full detail, then the others.
struct InstanceRange {
    std::uint32_t first = 0;
    std::uint32_t nearCount = 0;
    std::uint32_t farCount = 0;
};
using InstanceRanges = std::array<InstanceRange, kMeshCount>;

[[nodiscard]] TARVIK_RENDERER_API std::size_t instanceCount(const Scene& scene);

// The share of the picture's half height from which an entity is drawn in full detail, about 40 pixels of a
// usual window: on a circle smaller than that the coarse form's corners do not show.
inline constexpr float kDetailedSize = 0.08F;

// Sizes on the picture, in half heights, are those in the world times the focal length, over what the depth
// row makes of the place.
struct Onlooker {
    glm::vec4 depthRow; // the last row of the view-projection
    float focalLength;
    std::optional<std::size_t> selected = std::nullopt; // the entity that is tinted
};

// Writes the entities that have a mesh, grouped by mesh and detail, in one pass. There is room for
// instanceCount().
TARVIK_RENDERER_API InstanceRanges writeInstances(const Scene& scene, const Onlooker& onlooker,
                                                  std::span<Instance> instances);

} // namespace tarvik::render
