#pragma once

#include "GameModule.hpp"
#include "GameWorld.hpp"

#include <cstddef>
#include <memory>
#include <vector>

namespace tarvik::editor {

// One generation of a game's behaviours: one for every entity that names a class that the module has.
class BehaviourSet final {
public:
    // The world is borrowed. What it holds of failures afterwards came from here.
    BehaviourSet(std::unique_ptr<GameModule> module, GameWorld& world);
    BehaviourSet(const BehaviourSet&) = delete;
    BehaviourSet& operator=(const BehaviourSet&) = delete;
    ~BehaviourSet();

    // They get the properties of an older generation, which they have in start() and again after it. Returns
    // how many could not be created or started.
    [[nodiscard]] std::size_t start(const BehaviourSet* older);
    void update(float dt);
    void stop();

    [[nodiscard]] std::size_t size() const { return behaviours_.size(); }

private:
    struct Behaviour {
        script::abi::Entity entity;
        void* object; // of the module
    };

    void create();
    [[nodiscard]] const Behaviour* behaviourOf(script::abi::Entity entity) const;
    void copyProperties(const BehaviourSet& older);
    std::size_t restFailed();

    std::unique_ptr<GameModule> module_;
    GameWorld& world_;
    std::vector<Behaviour> behaviours_; // by entity
    std::vector<void*> running_;        // all but those that failed
};

} // namespace tarvik::editor
