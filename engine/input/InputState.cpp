#include <tarvik/input/InputState.hpp>

namespace tarvik {

namespace {

template <typename Enum>
constexpr std::size_t indexOf(Enum value) {
    return static_cast<std::size_t>(value);
}

template <typename Enum>
bool isSet(std::uint64_t bits, Enum value) {
    return ((bits >> indexOf(value)) & 1U) != 0;
}

static_assert(indexOf(Key::Num9) + 1 == kKeyCount);
static_assert(indexOf(MouseButton::Middle) + 1 == kMouseButtonCount);
static_assert(indexOf(GamepadButton::DpadRight) + 1 == kGamepadButtonCount);
static_assert(indexOf(GamepadAxis::RightTrigger) + 1 == kGamepadAxisCount);

} // namespace

void InputState::Switches::set(std::size_t index, bool down) {
    const std::uint64_t bit = std::uint64_t{1} << index;
    if (down) {
        pressed |= bit & ~held;
        held |= bit;
    } else {
        released |= bit & held;
        held &= ~bit;
    }
}

void InputState::Switches::releaseAll() {
    released |= held;
    held = 0;
}

void InputState::Switches::endFrame() {
    pressed = 0;
    released = 0;
}

void InputState::setKey(Key key, bool down) {
    keys_.set(indexOf(key), down);
}

void InputState::setMouseButton(MouseButton button, bool down) {
    mouseButtons_.set(indexOf(button), down);
}

void InputState::setMousePosition(glm::vec2 position) {
    mousePosition_ = position;
}

void InputState::addMouseDelta(glm::vec2 delta) {
    mouseDelta_ += delta;
}

void InputState::addScroll(float notches) {
    scroll_ += notches;
}

void InputState::releaseAll() {
    keys_.releaseAll();
    mouseButtons_.releaseAll();
}

void InputState::setGamepadConnected(bool connected) {
    gamepadConnected_ = connected;
    if (connected)
        return;
    gamepadButtons_.releaseAll();
    gamepadAxes_ = {};
}

void InputState::setGamepadButton(GamepadButton button, bool pressed) {
    gamepadButtons_.set(indexOf(button), pressed);
}

void InputState::setGamepadAxis(GamepadAxis axis, float value) {
    gamepadAxes_[indexOf(axis)] = value;
}

void InputState::endFrame() {
    keys_.endFrame();
    mouseButtons_.endFrame();
    gamepadButtons_.endFrame();
    mouseDelta_ = glm::vec2(0.0F);
    scroll_ = 0.0F;
}

bool InputState::isHeld(Key key) const {
    return isSet(keys_.held, key);
}

bool InputState::isHeld(MouseButton button) const {
    return isSet(mouseButtons_.held, button);
}

bool InputState::isHeld(GamepadButton button) const {
    return isSet(gamepadButtons_.held, button);
}

bool InputState::wasPressed(Key key) const {
    return isSet(keys_.pressed, key);
}

bool InputState::wasPressed(MouseButton button) const {
    return isSet(mouseButtons_.pressed, button);
}

bool InputState::wasPressed(GamepadButton button) const {
    return isSet(gamepadButtons_.pressed, button);
}

bool InputState::wasReleased(Key key) const {
    return isSet(keys_.released, key);
}

bool InputState::wasReleased(MouseButton button) const {
    return isSet(mouseButtons_.released, button);
}

bool InputState::wasReleased(GamepadButton button) const {
    return isSet(gamepadButtons_.released, button);
}

glm::vec2 InputState::mousePosition() const {
    return mousePosition_;
}

glm::vec2 InputState::mouseDelta() const {
    return mouseDelta_;
}

float InputState::scroll() const {
    return scroll_;
}

bool InputState::gamepadConnected() const {
    return gamepadConnected_;
}

float InputState::gamepadAxis(GamepadAxis axis) const {
    return gamepadAxes_[indexOf(axis)];
}

} // namespace tarvik
