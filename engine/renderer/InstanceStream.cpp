#include "InstanceStream.hpp"

namespace tarvik::render {

std::size_t instanceCount(const Scene& scene) {
    return scene.size() - scene.count(Mesh::None);
}

InstanceRanges writeInstances(const Scene& scene, std::span<Instance> instances) {
    InstanceRanges ranges;
    std::array<Instance*, kMeshCount> next{};
    std::uint32_t first = 0;
    for (std::size_t mesh = static_cast<std::size_t>(Mesh::None) + 1; mesh < kMeshCount; ++mesh) {
        const auto count = static_cast<std::uint32_t>(scene.count(static_cast<Mesh>(mesh)));
        ranges[mesh] = {first, count};
        next[mesh] = instances.data() + first;
        first += count;
    }

    const auto meshes = scene.meshes();
    const auto transforms = scene.transforms();
    const auto colours = scene.colours();
    for (std::size_t i = 0; i < meshes.size(); ++i) {
        if (meshes[i] == Mesh::None)
            continue;
        const Transform& transform = transforms[i];
        const Colour colour = colours[i];
        // Written whole and never read: the memory may be the GPU's own.
        *next[static_cast<std::size_t>(meshes[i])]++ = {
            .position = {transform.position.x, transform.position.y, transform.position.z},
            .rotation = {transform.rotation.x, transform.rotation.y, transform.rotation.z,
                         transform.rotation.w},
            .scale = {transform.scale.x, transform.scale.y, transform.scale.z},
            .colour = {colour.red, colour.green, colour.blue, 255},
            .unused = 0};
    }
    return ranges;
}

} // namespace tarvik::render
