#pragma once

#include <tarvik/input/Export.hpp>

#include <glm/vec2.hpp>

#include <array>
#include <cstddef>
#include <cstdint>

namespace tarvik {

// The values of these enumerations are stored by games; they never change. In groups, the order is easier to
// check.
// clang-format off
enum class Key : std::uint8_t {
    W, A, S, D, Q, E, F, Up, Down, Left, Right, Space,
    Shift, Control, Alt, Escape, Enter, Tab, Backspace,
    B, C, G, H, I, J, K, L, M, N, O, P, R, T, U, V, X, Y, Z,
    Num0, Num1, Num2, Num3, Num4, Num5, Num6, Num7, Num8, Num9,
};
inline constexpr std::size_t kKeyCount = 48;

enum class MouseButton : std::uint8_t { Left, Right, Middle };
inline constexpr std::size_t kMouseButtonCount = 3;

enum class GamepadButton : std::uint8_t {
    A, B, X, Y, LeftShoulder, RightShoulder, Back, Start, Guide,
    LeftThumb, RightThumb, DpadUp, DpadDown, DpadLeft, DpadRight,
};
// clang-format on
inline constexpr std::size_t kGamepadButtonCount = 15;

// Sticks run from -1 to 1, x to the right and y downwards; triggers from 0 to 1.
enum class GamepadAxis : std::uint8_t { LeftX, LeftY, RightX, RightY, LeftTrigger, RightTrigger };
inline constexpr std::size_t kGamepadAxisCount = 6;

// What a viewport's keyboard, mouse and gamepad do. "Pressed" and "released" speak of the frame being
// gathered: a key that went down and up within one frame is both pressed and released, and not held.
class TARVIK_INPUT_API InputState final {
public:
    void setKey(Key key, bool down);
    void setMouseButton(MouseButton button, bool down);
    void setMousePosition(glm::vec2 position);
    void addMouseDelta(glm::vec2 delta);
    void addScroll(float notches);
    // Keys and mouse buttons go up; the gamepad is left to its reader.
    void releaseAll();

    // Going false releases every gamepad button and centres every axis.
    void setGamepadConnected(bool connected);
    void setGamepadButton(GamepadButton button, bool pressed);
    void setGamepadAxis(GamepadAxis axis, float value);

    // Starts the next frame: delta, scroll, pressed and released begin anew; what is held stays held.
    void endFrame();

    [[nodiscard]] bool isHeld(Key key) const;
    [[nodiscard]] bool isHeld(MouseButton button) const;
    [[nodiscard]] bool isHeld(GamepadButton button) const;
    [[nodiscard]] bool wasPressed(Key key) const;
    [[nodiscard]] bool wasPressed(MouseButton button) const;
    [[nodiscard]] bool wasPressed(GamepadButton button) const;
    [[nodiscard]] bool wasReleased(Key key) const;
    [[nodiscard]] bool wasReleased(MouseButton button) const;
    [[nodiscard]] bool wasReleased(GamepadButton button) const;
    [[nodiscard]] glm::vec2 mousePosition() const; // logical pixels from the viewport's top left corner
    [[nodiscard]] glm::vec2 mouseDelta() const;    // logical pixels, this frame
    [[nodiscard]] float scroll() const;            // notches, this frame; positive away from the user
    [[nodiscard]] bool gamepadConnected() const;
    [[nodiscard]] float gamepadAxis(GamepadAxis axis) const;

private:
    // One bit for each key or button.
    struct Switches {
        std::uint64_t held = 0;
        std::uint64_t pressed = 0;
        std::uint64_t released = 0;
        void set(std::size_t index, bool down);
        void releaseAll();
        void endFrame();
    };

    Switches keys_;
    Switches mouseButtons_;
    Switches gamepadButtons_;
    std::array<float, kGamepadAxisCount> gamepadAxes_{};
    glm::vec2 mousePosition_{0.0F};
    glm::vec2 mouseDelta_{0.0F};
    float scroll_ = 0.0F;
    bool gamepadConnected_ = false;
};

} // namespace tarvik
