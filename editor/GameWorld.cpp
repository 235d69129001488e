#include "GameWorld.hpp"

#include <tarvik/Script.hpp>
#include <tarvik/core/Log.hpp>
#include <tarvik/scene/Rotation.hpp>

#include <algorithm>
#include <string>
#include <utility>

namespace tarvik::editor {

namespace abi = script::abi;

// The numbers that behaviours are compiled with are the engine's.
static_assert(static_cast<std::size_t>(script::Key::Num9) == static_cast<std::size_t>(Key::Num9));
static_assert(static_cast<std::size_t>(script::GamepadButton::DpadRight) ==
              static_cast<std::size_t>(GamepadButton::DpadRight));
static_assert(static_cast<std::size_t>(script::GamepadAxis::RightTrigger) ==
              static_cast<std::size_t>(GamepadAxis::RightTrigger));

namespace {

GameWorld& worldOf(void* game) {
    return *static_cast<GameWorld*>(game);
}

std::string_view view(abi::Text text) {
    return {text.data, text.size};
}

template <typename Button>
std::uint32_t switches(const InputState& input, std::uint32_t index, std::size_t count) {
    if (index >= count)
        return 0;
    const auto button = static_cast<Button>(index);
    return (input.isHeld(button) ? abi::kHeld : 0U) | (input.wasPressed(button) ? abi::kPressed : 0U) |
           (input.wasReleased(button) ? abi::kReleased : 0U);
}

} // namespace

// Called from a module's code, through which nothing may be thrown.
struct GameWorld::Functions {
    static bool exists(const GameWorld& world, abi::Entity entity) { return entity < world.scene_.size(); }

    static void log(void* game, abi::Entity entity, abi::Text message) noexcept {
        const GameWorld& world = worldOf(game);
        if (exists(world, entity))
            log::info("Game", "{}: {}", world.scene_.entityName(entity), view(message));
    }

    static void failed(void* game, abi::Entity entity, abi::Text reason) noexcept {
        GameWorld& world = worldOf(game);
        if (!exists(world, entity))
            return;
        world.failed_.push_back(entity);
        log::error("Game", "{} on {}: {}; it rests until the behaviours are built again",
                   world.scene_.behaviour(entity), world.scene_.entityName(entity), view(reason));
    }

    static abi::Text name(void* game, abi::Entity entity) noexcept {
        const GameWorld& world = worldOf(game);
        if (!exists(world, entity))
            return {"", 0};
        const std::string& name = world.scene_.entityName(entity);
        return {name.data(), name.size()};
    }

    static abi::Entity find(void* game, abi::Text name) noexcept {
        const GameWorld& world = worldOf(game);
        const auto found = world.byName_.find(view(name));
        return found == world.byName_.end() ? abi::kNoEntity : static_cast<abi::Entity>(found->second);
    }

    static void read(void* game, abi::Entity entity, std::uint32_t quantity, float* xyz) noexcept {
        const GameWorld& world = worldOf(game);
        if (!exists(world, entity))
            return;
        const Transform& transform = world.scene_.transforms()[entity];
        const glm::vec3& value = quantity == abi::kPosition   ? transform.position
                                 : quantity == abi::kRotation ? world.rotations_[entity]
                                                              : transform.scale;
        std::copy_n(&value.x, 3, xyz);
    }

    static void write(void* game, abi::Entity entity, std::uint32_t quantity, const float* xyz) noexcept {
        GameWorld& world = worldOf(game);
        if (!exists(world, entity))
            return;
        Transform& transform = world.scene_.transforms()[entity];
        const glm::vec3 value(xyz[0], xyz[1], xyz[2]);
        if (quantity == abi::kPosition) {
            transform.position = value;
        } else if (quantity == abi::kRotation) {
            world.rotations_[entity] = value;
            transform.rotation = quatFromDegrees(value);
        } else {
            transform.scale = value;
        }
    }

    static std::uint32_t key(void* game, std::uint32_t key) noexcept {
        return switches<Key>(worldOf(game).input_, key, kKeyCount);
    }

    static std::uint32_t gamepadButton(void* game, std::uint32_t button) noexcept {
        return switches<GamepadButton>(worldOf(game).input_, button, kGamepadButtonCount);
    }

    static float gamepadAxis(void* game, std::uint32_t axis) noexcept {
        return axis < kGamepadAxisCount ? worldOf(game).input_.gamepadAxis(static_cast<GamepadAxis>(axis))
                                        : 0.0F;
    }

    static std::uint32_t gamepadConnected(void* game) noexcept {
        return worldOf(game).input_.gamepadConnected() ? 1 : 0;
    }
};

GameWorld::GameWorld(Scene scene)
    : scene_(std::move(scene)),
      host_{.game = this,
            .log = Functions::log,
            .failed = Functions::failed,
            .name = Functions::name,
            .find = Functions::find,
            .read = Functions::read,
            .write = Functions::write,
            .key = Functions::key,
            .gamepadButton = Functions::gamepadButton,
            .gamepadAxis = Functions::gamepadAxis,
            .gamepadConnected = Functions::gamepadConnected} {
    rotations_.reserve(scene_.size());
    for (std::size_t i = 0; i < scene_.size(); ++i) {
        rotations_.push_back(degreesFromQuat(scene_.transforms()[i].rotation));
        byName_.try_emplace(scene_.entityName(i), i);
    }
}

std::vector<abi::Entity> GameWorld::takeFailed() {
    return std::exchange(failed_, {});
}

GameWorld::Placement GameWorld::placement() const {
    return {{scene_.transforms().begin(), scene_.transforms().end()}, rotations_};
}

void GameWorld::restore(const Placement& placement) {
    std::ranges::copy(placement.transforms, scene_.transforms().begin());
    rotations_ = placement.rotations;
}

} // namespace tarvik::editor
