#include "InstanceStream.hpp"

#include <glm/geometric.hpp>

namespace tarvik::render {

namespace {

// Square of size to distance, about 40 pixels of a usual window: no corner shows on a coarse circle of that
// size.
constexpr float kFarRatio = 0.04F * 0.04F;

} // namespace

std::size_t instanceCount(const Scene& scene) {
    return scene.size() - scene.count(Mesh::None);
}

InstanceRanges writeInstances(const Scene& scene, const glm::vec3& eye, std::span<Instance> instances) {
    // A mesh has room for all its instances, so the near ones fill it from the front and the far ones from
    // the back, and they meet.
    enum End : std::size_t { Front, Back, kEnds };
    constexpr std::array<std::ptrdiff_t, kEnds> step{1, -1};
    std::array<std::array<Instance*, kEnds>, kMeshCount> next{};
    InstanceRanges ranges;
    std::uint32_t first = 0;
    for (std::size_t mesh = static_cast<std::size_t>(Mesh::None) + 1; mesh < kMeshCount; ++mesh) {
        ranges[mesh].first = first;
        next[mesh][Front] = instances.data() + first;
        first += static_cast<std::uint32_t>(scene.count(static_cast<Mesh>(mesh)));
        next[mesh][Back] = instances.data() + first - 1;
    }

    const auto meshes = scene.meshes();
    const auto transforms = scene.transforms();
    const auto colours = scene.colours();
    for (std::size_t i = 0; i < meshes.size(); ++i) {
        if (meshes[i] == Mesh::None)
            continue;
        const Transform& transform = transforms[i];
        const Colour colour = colours[i];
        const glm::vec3 offset = transform.position - eye;
        const End end =
            glm::dot(transform.scale, transform.scale) < kFarRatio * glm::dot(offset, offset) ? Back : Front;
        Instance*& place = next[static_cast<std::size_t>(meshes[i])][end];
        // Written whole and never read: the memory may be the GPU's own.
        *place = {.position = {transform.position.x, transform.position.y, transform.position.z},
                  .rotation = {transform.rotation.x, transform.rotation.y, transform.rotation.z,
                               transform.rotation.w},
                  .scale = {transform.scale.x, transform.scale.y, transform.scale.z},
                  .colour = {colour.red, colour.green, colour.blue, 255},
                  .unused = 0};
        place += step[end];
    }

    for (std::size_t mesh = 0; mesh < kMeshCount; ++mesh) {
        const auto count = static_cast<std::uint32_t>(scene.count(static_cast<Mesh>(mesh)));
        if (next[mesh][Front] == nullptr)
            continue;
        ranges[mesh].nearCount =
            static_cast<std::uint32_t>(next[mesh][Front] - instances.data()) - ranges[mesh].first;
        ranges[mesh].farCount = count - ranges[mesh].nearCount;
    }
    return ranges;
}

} // namespace tarvik::render
