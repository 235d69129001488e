#include "InstanceStream.hpp"

#include <glm/geometric.hpp>

#include <algorithm>

namespace tarvik::render {

namespace {

constexpr std::size_t kFirstMesh = static_cast<std::size_t>(Mesh::None) + 1;

// Most of the way to a colour that few things have. Light and shade still show the form.
void tint(Instance& instance, const Colour& colour) {
    constexpr Colour kTint{50, 140, 255};
    const auto mixed = [](std::uint8_t own, std::uint8_t tinted) {
        return static_cast<std::uint8_t>((own + 2 * tinted) / 3);
    };
    instance.colour[0] = mixed(colour.red, kTint.red);
    instance.colour[1] = mixed(colour.green, kTint.green);
    instance.colour[2] = mixed(colour.blue, kTint.blue);
}

} // namespace

std::size_t instanceCount(const Scene& scene) {
    return scene.size() - scene.count(Mesh::None);
}

InstanceRanges writeInstances(const Scene& scene, const Onlooker& onlooker, std::span<Instance> instances) {
    // Makes of a place the size that just shows in full detail there.
    const glm::vec4 detailedSize = onlooker.depthRow * (kDetailedSize / onlooker.focalLength);
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
    const auto put = [&](std::size_t i) -> Instance& {
        const Transform& transform = transforms[i];
        const Colour colour = colours[i];
        const float size = glm::dot(glm::vec3(detailedSize), transform.position) + detailedSize.w;
        const bool far = glm::dot(transform.scale, transform.scale) < size * size;
        Room& room = rooms[static_cast<std::size_t>(meshes[i])];
        // Written whole and never read: the memory may be the GPU's own.
        return *(far ? --room.back : room.front++) = {
                   .position = {transform.position.x, transform.position.y, transform.position.z},
                   .rotation = {transform.rotation.x, transform.rotation.y, transform.rotation.z,
                                transform.rotation.w},
                   .scale = {transform.scale.x, transform.scale.y, transform.scale.z},
                   .colour = {colour.red, colour.green, colour.blue, 255},
                   .unused = 0};
    };
    const auto putAll = [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i)
            if (meshes[i] != Mesh::None)
                put(i);
    };
    // The selected one stands between two loops, so that the others are not asked whether they are it.
    const std::size_t selected = std::min(onlooker.selected.value_or(meshes.size()), meshes.size());
    putAll(0, selected);
    if (selected < meshes.size()) {
        if (meshes[selected] != Mesh::None)
            tint(put(selected), colours[selected]);
        putAll(selected + 1, meshes.size());
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
