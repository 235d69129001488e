#pragma once

#include <tarvik/ScriptAbi.hpp>
#include <tarvik/input/InputState.hpp>
#include <tarvik/scene/Scene.hpp>

#include <glm/vec3.hpp>

#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace tarvik::editor {

// What the behaviours of a game see and move: a copy of the scene, and the player's input. Stays where it is,
// because the behaviours' code keeps its address.
class GameWorld final {
public:
    explicit GameWorld(Scene scene);
    GameWorld(const GameWorld&) = delete;
    GameWorld& operator=(const GameWorld&) = delete;
    ~GameWorld() = default;

    [[nodiscard]] const Scene& scene() const { return scene_; }
    [[nodiscard]] const script::abi::Host& host() const { return host_; }
    void setInput(const InputState& input) { input_ = input; }

    // The entities whose behaviours failed since the last call; why is in the log.
    [[nodiscard]] std::vector<script::abi::Entity> takeFailed();

    // Where everything is.
    struct Placement {
        std::vector<Transform> transforms;
        std::vector<glm::vec3> rotations;
    };
    [[nodiscard]] Placement placement() const;
    void restore(const Placement& placement);

private:
    struct Functions;

    Scene scene_;
    InputState input_;
    // As behaviours set them: an angle read back is the angle that was set, whatever the turn it makes.
    std::vector<glm::vec3> rotations_;
    std::unordered_map<std::string_view, std::size_t> byName_;
    std::vector<script::abi::Entity> failed_;
    script::abi::Host host_;
};

} // namespace tarvik::editor
