#include "GamepadSource.hpp"

#include <tarvik/core/Log.hpp>

#include <SDL.h>
#include <dlfcn.h>

#include <algorithm>
#include <limits>
#include <type_traits>
#include <utility>

namespace tarvik::app {
namespace {

// What is used of SDL. It brings forty libraries with it, which would slow the start of every program, also
// of those without a viewport, and the search for symbols in each library that is loaded later; so the
// first reader loads it, for itself alone. A machine without it only lacks controllers.
class Sdl final {
public:
    // Null where SDL is not installed. Once loaded it stays: other libraries of the process may use it too.
    static const Sdl* instance() {
        static Sdl sdl;
        static const bool complete = sdl.load();
        return complete ? &sdl : nullptr;
    }

    decltype(&SDL_SetHint) setHint = nullptr;
    decltype(&SDL_InitSubSystem) initSubSystem = nullptr;
    decltype(&SDL_QuitSubSystem) quitSubSystem = nullptr;
    decltype(&SDL_JoystickEventState) joystickEventState = nullptr;
    decltype(&SDL_GameControllerEventState) controllerEventState = nullptr;
    decltype(&SDL_NumJoysticks) numJoysticks = nullptr;
    decltype(&SDL_IsGameController) isController = nullptr;
    decltype(&SDL_GameControllerOpen) open = nullptr;
    decltype(&SDL_GameControllerClose) close = nullptr;
    decltype(&SDL_GameControllerUpdate) update = nullptr;
    decltype(&SDL_GameControllerGetAttached) isAttached = nullptr;
    decltype(&SDL_GameControllerGetAxis) axis = nullptr;
    decltype(&SDL_GameControllerGetButton) button = nullptr;
    decltype(&SDL_GameControllerName) name = nullptr;

private:
    Sdl() = default;

    bool load() {
        void* const library = dlopen("libSDL2-2.0.so.0", RTLD_NOW | RTLD_LOCAL);
        const auto find = [library](auto& function, const char* symbol) {
            function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(dlsym(library, symbol));
            return function != nullptr;
        };
        return library != nullptr && find(setHint, "SDL_SetHint") &&
               find(initSubSystem, "SDL_InitSubSystem") && find(quitSubSystem, "SDL_QuitSubSystem") &&
               find(joystickEventState, "SDL_JoystickEventState") &&
               find(controllerEventState, "SDL_GameControllerEventState") &&
               find(numJoysticks, "SDL_NumJoysticks") && find(isController, "SDL_IsGameController") &&
               find(open, "SDL_GameControllerOpen") && find(close, "SDL_GameControllerClose") &&
               find(update, "SDL_GameControllerUpdate") &&
               find(isAttached, "SDL_GameControllerGetAttached") && find(axis, "SDL_GameControllerGetAxis") &&
               find(button, "SDL_GameControllerGetButton") && find(name, "SDL_GameControllerName");
    }
};

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

GamepadReading read(const Sdl& sdl, SDL_GameController* controller) {
    const auto axis = [&](SDL_GameControllerAxis which) {
        return sdl.axis(controller, which);
    };
    GamepadReading reading{.leftTrigger = trigger(axis(SDL_CONTROLLER_AXIS_TRIGGERLEFT)),
                           .rightTrigger = trigger(axis(SDL_CONTROLLER_AXIS_TRIGGERRIGHT)),
                           .leftX = axis(SDL_CONTROLLER_AXIS_LEFTX),
                           .leftY = upwards(axis(SDL_CONTROLLER_AXIS_LEFTY)),
                           .rightX = axis(SDL_CONTROLLER_AXIS_RIGHTX),
                           .rightY = upwards(axis(SDL_CONTROLLER_AXIS_RIGHTY))};
    for (const auto& [button, bit] : kSdlButtons) {
        if (sdl.button(controller, button))
            reading.buttons |= bit;
    }
    return reading;
}

// SDL's device numbers change with every plug, so the first controller that can be opened is followed itself,
// at user index 0. SDL counts the users of its subsystem and of each controller: several sources share them.
class SdlSource final : public GamepadSource {
public:
    ~SdlSource() override {
        controller_.reset();
        if (sdl_)
            sdl_->quitSubSystem(SDL_INIT_GAMECONTROLLER);
    }

    // Not at the first poll: the frame that follows it is more urgent, and loading SDL would add a tenth to
    // its time. A controller is found one frame later.
    bool isReady() override {
        if (std::exchange(asked_, true) && !std::exchange(started_, true))
            start();
        return started_;
    }

    std::optional<GamepadReading> query(int userIndex) override {
        if (!sdl_ || userIndex != 0)
            return std::nullopt;
        sdl_->update(); // also notices plugs and unplugs
        if (!controller_)
            controller_ = openFirst();
        else if (!sdl_->isAttached(controller_.get()))
            controller_.reset();
        if (!controller_)
            return std::nullopt;
        return read(*sdl_, controller_.get());
    }

    [[nodiscard]] std::string name(int /*userIndex*/) const override {
        const char* name = sdl_->name(controller_.get());
        return name ? name : "unnamed controller";
    }

private:
    using Controller = std::unique_ptr<SDL_GameController, decltype(&SDL_GameControllerClose)>;

    void start() {
        const Sdl* sdl = Sdl::instance();
        if (!sdl) {
            log::debug("Input", "no gamepads: SDL 2 is not installed");
            return;
        }
        sdl->setHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
        sdl->setHint(SDL_HINT_JOYSTICK_ALLOW_BACKGROUND_EVENTS, "1");
        if (sdl->initSubSystem(SDL_INIT_GAMECONTROLLER) != 0)
            return;
        // States are read directly. Events would pile up, as nobody takes them.
        sdl->joystickEventState(SDL_IGNORE);
        sdl->controllerEventState(SDL_IGNORE);
        sdl_ = sdl;
    }

    Controller openFirst() {
        const int count = sdl_->numJoysticks();
        for (int device = 0; device < count; ++device) {
            if (!sdl_->isController(device))
                continue;
            if (Controller controller{sdl_->open(device), sdl_->close})
                return controller;
        }
        return {nullptr, nullptr};
    }

    const Sdl* sdl_ = nullptr; // while it uses the subsystem
    Controller controller_{nullptr, nullptr};
    bool asked_ = false;
    bool started_ = false;
};

} // namespace

std::unique_ptr<GamepadSource> GamepadSource::create() {
    return std::make_unique<SdlSource>();
}

} // namespace tarvik::app
