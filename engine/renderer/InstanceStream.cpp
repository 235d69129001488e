#include "InstanceStream.hpp"

#include <glm/geometric.hpp>

namespace tarvik::render {

namespace {

constexpr std::size_t kFirstMesh = static_cast<std::size_t>(Mesh::None) + 1;

} // namespace

std::size_t instanceCount(const Scene& scene) {
    return scene.size() - scene.count(Mesh::None);
}

InstanceRanges writeInstances(const Scene& scene, const glm::vec4& depthRow, float focalLength,
                              std::span<Instance> instances) {
    // Makes of a place the size that just shows in full detail there.
    const glm::vec4 detailedSize = depthRow * (kDetailedSize / focalLength);
    // A mesh has room for all its instances, so the near ones fill it from the front and the far ones from
    // the back, and they meet.
    struct Room {
        Instance* front = nullptr;
        Instance* back = nullptr;
    };
    std::array<Room, kMeshCount> rooms;
    InstanceRanges ranges;
    std::uint32_t first = 0;
    for (std::size_t mesh = kFirstMesh; mesh < kMeshCount; ++mesh) {
        ranges[mesh].first = first;
        rooms[mesh].front = instances.data() + first;
        first += static_cast<std::uint32_t>(scene.count(static_cast<Mesh>(mesh)));
        rooms[mesh].back = instances.data() + first;
    }

    const auto meshes = scene.meshes();
    const auto transforms = scene.transforms();
    const auto colours = scene.colours();
    for (std::size_t i = 0; i < meshes.size(); ++i) {
        if (meshes[i] == Mesh::None)
            continue;
        const Transform& transform = transforms[i];
        const Colour colour = colours[i];
        const float size = glm::dot(glm::vec3(detailedSize), transform.position) + detailedSize.w;
        const bool far = glm::dot(transform.scale, transform.scale) < size * size;
        Room& room = rooms[static_cast<std::size_t>(meshes[i])];
        // Written whole and never read: the memory may be the GPU's own.
        *(far ? --room.back : room.front++) = {
            .position = {transform.position.x, transform.position.y, transform.position.z},
            .rotation = {transform.rotation.x, transform.rotation.y, transform.rotation.z,
                         transform.rotation.w},
            .scale = {transform.scale.x, transform.scale.y, transform.scale.z},
            .colour = {colour.red, colour.green, colour.blue, 255},
            .unused = 0};
    }

    for (std::size_t mesh = kFirstMesh; mesh < kMeshCount; ++mesh) {
        const auto count = static_cast<std::uint32_t>(scene.count(static_cast<Mesh>(mesh)));
        const auto end = static_cast<std::uint32_t>(rooms[mesh].front - instances.data());
        ranges[mesh].nearCount = end - ranges[mesh].first;
        ranges[mesh].farCount = count - ranges[mesh].nearCount;
    }
    return ranges;
}

} // namespace tarvik::render
