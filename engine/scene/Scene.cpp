#include <tarvik/scene/Scene.hpp>

#include <algorithm>
#include <utility>

namespace tarvik {

namespace {

// The columns of lights and cameras grow with the entities, so they are sorted by entity.
template <typename Placed>
const Placed* findPlaced(const std::vector<Placed>& column, std::size_t entity) {
    const auto found = std::ranges::lower_bound(column, entity, {}, &Placed::entity);
    return found != column.end() && found->entity == entity ? &*found : nullptr;
}

} // namespace

Scene::Scene(std::string name) : name_(std::move(name)) {}

std::size_t Scene::add(Entity entity) {
    const std::size_t index = size();
    transforms_.push_back(entity.transform);
    meshes_.push_back(entity.mesh);
    colours_.push_back(entity.colour);
    rest_.push_back({std::move(entity.name), std::move(entity.behaviour)});
    if (entity.light)
        lights_.push_back({index, *entity.light});
    if (entity.camera)
        cameras_.push_back({index, *entity.camera});
    ++meshCounts_[static_cast<std::size_t>(entity.mesh)];
    return index;
}

void Scene::reserve(std::size_t count) {
    transforms_.reserve(count);
    meshes_.reserve(count);
    colours_.reserve(count);
    rest_.reserve(count);
}

Entity Scene::entity(std::size_t index) const {
    Entity entity{rest_[index].name, transforms_[index], meshes_[index],        colours_[index],
                  std::nullopt,      std::nullopt,       rest_[index].behaviour};
    if (const PlacedLight* placed = findPlaced(lights_, index))
        entity.light = placed->light;
    if (const PlacedCamera* placed = findPlaced(cameras_, index))
        entity.camera = placed->camera;
    return entity;
}

} // namespace tarvik
