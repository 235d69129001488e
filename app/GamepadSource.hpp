#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace tarvik::app {

// What a controller reports, in the form of XInput's XINPUT_GAMEPAD: its button bits, full triggers at 255,
// and sticks from -32768 to 32767 with y positive upwards.
struct GamepadReading final {
    std::uint16_t buttons = 0;
    std::uint8_t leftTrigger = 0;
    std::uint8_t rightTrigger = 0;
    std::int16_t leftX = 0;
    std::int16_t leftY = 0;
    std::int16_t rightX = 0;
    std::int16_t rightY = 0;

    bool operator==(const GamepadReading&) const = default;
};

namespace gamepad_bit {
inline constexpr std::uint16_t kDpadUp = 0x0001;
inline constexpr std::uint16_t kDpadDown = 0x0002;
inline constexpr std::uint16_t kDpadLeft = 0x0004;
inline constexpr std::uint16_t kDpadRight = 0x0008;
inline constexpr std::uint16_t kStart = 0x0010;
inline constexpr std::uint16_t kBack = 0x0020;
inline constexpr std::uint16_t kLeftThumb = 0x0040;
inline constexpr std::uint16_t kRightThumb = 0x0080;
inline constexpr std::uint16_t kLeftShoulder = 0x0100;
inline constexpr std::uint16_t kRightShoulder = 0x0200;
inline constexpr std::uint16_t kA = 0x1000;
inline constexpr std::uint16_t kB = 0x2000;
inline constexpr std::uint16_t kX = 0x4000;
inline constexpr std::uint16_t kY = 0x8000;
} // namespace gamepad_bit

// The platform's controllers, at the user indices 0 to 3.
class GamepadSource {
public:
    // Empty where the platform has no controller support at hand.
    static std::unique_ptr<GamepadSource> create();

    GamepadSource() = default;
    GamepadSource(const GamepadSource&) = delete;
    GamepadSource& operator=(const GamepadSource&) = delete;
    virtual ~GamepadSource() = default;

    // While false, nothing else is asked of it: it is still starting, and is asked again at the next poll.
    virtual bool isReady() { return true; }
    // Empty when no controller answers at the index.
    virtual std::optional<GamepadReading> query(int userIndex) = 0;
    // For people, of a controller that has just answered.
    [[nodiscard]] virtual std::string name(int userIndex) const = 0;
};

} // namespace tarvik::app
