#include "GamepadSource.hpp"

#include <SDL.h>

#include <algorithm>
#include <limits>

namespace tarvik::app {
namespace {

struct SdlButton {
    SDL_GameControllerButton button;
    std::uint16_t bit;
};
constexpr SdlButton kSdlButtons[] = {
    {SDL_CONTROLLER_BUTTON_A, gamepad_bit::kA},
    {SDL_CONTROLLER_BUTTON_B, gamepad_bit::kB},
    {SDL_CONTROLLER_BUTTON_X, gamepad_bit::kX},
    {SDL_CONTROLLER_BUTTON_Y, gamepad_bit::kY},
    {SDL_CONTROLLER_BUTTON_LEFTSHOULDER, gamepad_bit::kLeftShoulder},
    {SDL_CONTROLLER_BUTTON_RIGHTSHOULDER, gamepad_bit::kRightShoulder},
    {SDL_CONTROLLER_BUTTON_BACK, gamepad_bit::kBack},
    {SDL_CONTROLLER_BUTTON_START, gamepad_bit::kStart},
    {SDL_CONTROLLER_BUTTON_LEFTSTICK, gamepad_bit::kLeftThumb},
    {SDL_CONTROLLER_BUTTON_RIGHTSTICK, gamepad_bit::kRightThumb},
    {SDL_CONTROLLER_BUTTON_DPAD_UP, gamepad_bit::kDpadUp},
    {SDL_CONTROLLER_BUTTON_DPAD_DOWN, gamepad_bit::kDpadDown},
    {SDL_CONTROLLER_BUTTON_DPAD_LEFT, gamepad_bit::kDpadLeft},
    {SDL_CONTROLLER_BUTTON_DPAD_RIGHT, gamepad_bit::kDpadRight},
};

constexpr int kAxisMax = std::numeric_limits<std::int16_t>::max();
constexpr int kTriggerMax = std::numeric_limits<std::uint8_t>::max();

// A full push up is -32768, whose negation does not fit: it becomes 32767, the full push up of XInput.
std::int16_t upwards(std::int16_t downwards) {
    return static_cast<std::int16_t>(std::min(-int{downwards}, kAxisMax));
}

// To the nearest step, which gives back the 8 bits that most controllers report.
std::uint8_t trigger(std::int16_t value) {
    return static_cast<std::uint8_t>((std::max<int>(value, 0) * kTriggerMax + kAxisMax / 2) / kAxisMax);
}

GamepadReading read(SDL_GameController* controller) {
    const auto axis = [controller](SDL_GameControllerAxis which) {
        return SDL_GameControllerGetAxis(controller, which);
    };
    GamepadReading reading{.leftTrigger = trigger(axis(SDL_CONTROLLER_AXIS_TRIGGERLEFT)),
                           .rightTrigger = trigger(axis(SDL_CONTROLLER_AXIS_TRIGGERRIGHT)),
                           .leftX = axis(SDL_CONTROLLER_AXIS_LEFTX),
                           .leftY = upwards(axis(SDL_CONTROLLER_AXIS_LEFTY)),
                           .rightX = axis(SDL_CONTROLLER_AXIS_RIGHTX),
                           .rightY = upwards(axis(SDL_CONTROLLER_AXIS_RIGHTY))};
    for (const auto& [button, bit] : kSdlButtons) {
        if (SDL_GameControllerGetButton(controller, button))
            reading.buttons |= bit;
    }
    return reading;
}

struct ControllerCloser {
    void operator()(SDL_GameController* controller) const { SDL_GameControllerClose(controller); }
};
using Controller = std::unique_ptr<SDL_GameController, ControllerCloser>;

Controller openFirst() {
    const int count = SDL_NumJoysticks();
    for (int device = 0; device < count; ++device) {
        if (!SDL_IsGameController(device))
            continue;
        if (Controller controller{SDL_GameControllerOpen(device)})
            return controller;
    }
    return {};
}

// SDL's device numbers change with every plug, so the first controller that can be opened is followed itself,
// at user index 0. SDL counts the users of its subsystem and of each controller: several sources share them.
class SdlSource final : public GamepadSource {
public:
    // Takes over one use of the subsystem.
    SdlSource() = default;
    ~SdlSource() override {
        controller_.reset();
        SDL_QuitSubSystem(SDL_INIT_GAMECONTROLLER);
    }

    std::optional<GamepadReading> query(int userIndex) override {
        if (userIndex != 0)
            return std::nullopt;
        SDL_GameControllerUpdate(); // also notices plugs and unplugs
        if (!controller_)
            controller_ = openFirst();
        else if (!SDL_GameControllerGetAttached(controller_.get()))
            controller_.reset();
        if (!controller_)
            return std::nullopt;
        return read(controller_.get());
    }

    [[nodiscard]] std::string name(int /*userIndex*/) const override {
        const char* name = SDL_GameControllerName(controller_.get());
        return name ? name : "unnamed controller";
    }

private:
    Controller controller_;
};

} // namespace

std::unique_ptr<GamepadSource> GamepadSource::create() {
    SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    SDL_SetHint(SDL_HINT_JOYSTICK_ALLOW_BACKGROUND_EVENTS, "1");
    if (SDL_InitSubSystem(SDL_INIT_GAMECONTROLLER) != 0)
        return {};
    // States are read directly. Events would pile up, as nobody takes them.
    SDL_JoystickEventState(SDL_IGNORE);
    SDL_GameControllerEventState(SDL_IGNORE);
    return std::make_unique<SdlSource>();
}

} // namespace tarvik::app
