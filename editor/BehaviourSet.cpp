#include "BehaviourSet.hpp"

#include <tarvik/core/Log.hpp>

#include <algorithm>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace tarvik::editor {

namespace abi = script::abi;

namespace {

// Hands a behaviour's properties straight to its successor.
struct Heir {
    const GameModule& module;
    void* object;

    static void take(void* context, abi::Text name, std::uint32_t type, abi::Text value) noexcept {
        const Heir& heir = *static_cast<const Heir*>(context);
        heir.module->restoreProperty(heir.object, name, type, value);
    }
};

} // namespace

BehaviourSet::BehaviourSet(std::unique_ptr<GameModule> module, GameWorld& world)
    : module_(std::move(module)),
      world_(world) {
    (*module_)->attach(&world.host());
    create();
}

BehaviourSet::~BehaviourSet() {
    for (const Behaviour& behaviour : behaviours_)
        (*module_)->destroy(behaviour.object);
}

void BehaviourSet::create() {
    std::unordered_map<std::string_view, std::size_t> classes;
    for (std::size_t i = 0; i < (*module_)->behaviourCount(); ++i) {
        const abi::Text name = (*module_)->behaviourName(i);
        if (!classes.try_emplace({name.data, name.size}, i).second)
            log::warn("Game", "two behaviours are called {}; one of them is not used",
                      std::string_view(name.data, name.size));
    }
    const Scene& scene = world_.scene();
    for (std::size_t i = 0; i < scene.size(); ++i) {
        const std::string& wanted = scene.behaviour(i);
        if (wanted.empty())
            continue;
        const auto found = classes.find(wanted);
        if (found == classes.end()) {
            log::warn("Game", "there is no behaviour {} for {}", wanted, scene.entityName(i));
            continue;
        }
        const auto entity = static_cast<abi::Entity>(i);
        if (void* object = (*module_)->create(found->second, entity))
            behaviours_.push_back({entity, object});
    }
    running_.reserve(behaviours_.size());
    for (const Behaviour& behaviour : behaviours_)
        running_.push_back(behaviour.object);
}

std::size_t BehaviourSet::start(const BehaviourSet* older) {
    if (older != nullptr)
        copyProperties(*older);
    for (void* object : running_)
        (*module_)->start(object);
    if (older != nullptr)
        copyProperties(*older);
    return restFailed();
}

const BehaviourSet::Behaviour* BehaviourSet::behaviourOf(abi::Entity entity) const {
    const auto found = std::ranges::lower_bound(behaviours_, entity, {}, &Behaviour::entity);
    return found != behaviours_.end() && found->entity == entity ? &*found : nullptr;
}

void BehaviourSet::copyProperties(const BehaviourSet& older) {
    for (const Behaviour& behaviour : behaviours_) {
        if (const Behaviour* old = older.behaviourOf(behaviour.entity)) {
            Heir heir{*module_, behaviour.object};
            (*older.module_)->saveProperties(old->object, &heir, Heir::take);
        }
    }
}

void BehaviourSet::update(float dt) {
    (*module_)->update(running_.data(), running_.size(), dt);
    restFailed();
}

void BehaviourSet::stop() {
    for (void* object : running_)
        (*module_)->stop(object);
    restFailed();
}

std::size_t BehaviourSet::restFailed() {
    const std::vector<abi::Entity> failed = world_.takeFailed();
    for (const abi::Entity entity : failed) {
        if (const Behaviour* behaviour = behaviourOf(entity))
            std::erase(running_, behaviour->object);
    }
    return failed.size();
}

} // namespace tarvik::editor
