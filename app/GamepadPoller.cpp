#include "GamepadPoller.hpp"

#include <tarvik/app/GamepadReader.hpp>
#include <tarvik/core/Log.hpp>
#include <tarvik/input/InputState.hpp>

#include <algorithm>
#include <utility>

namespace tarvik::app {
namespace {

constexpr int kUserIndices = 4;
constexpr std::chrono::seconds kProbeInterval{2};
constexpr float kStickScale = 32767.0F;
constexpr float kTriggerScale = 255.0F;
constexpr float kDeadZone = 0.15F;

struct ButtonBit {
    GamepadButton button;
    std::uint16_t bit;
};
// The guide button is missing: not every source can tell it.
constexpr ButtonBit kButtons[] = {
    {GamepadButton::A, gamepad_bit::kA},
    {GamepadButton::B, gamepad_bit::kB},
    {GamepadButton::X, gamepad_bit::kX},
    {GamepadButton::Y, gamepad_bit::kY},
    {GamepadButton::LeftShoulder, gamepad_bit::kLeftShoulder},
    {GamepadButton::RightShoulder, gamepad_bit::kRightShoulder},
    {GamepadButton::Back, gamepad_bit::kBack},
    {GamepadButton::Start, gamepad_bit::kStart},
    {GamepadButton::LeftThumb, gamepad_bit::kLeftThumb},
    {GamepadButton::RightThumb, gamepad_bit::kRightThumb},
    {GamepadButton::DpadUp, gamepad_bit::kDpadUp},
    {GamepadButton::DpadDown, gamepad_bit::kDpadDown},
    {GamepadButton::DpadLeft, gamepad_bit::kDpadLeft},
    {GamepadButton::DpadRight, gamepad_bit::kDpadRight},
};

struct Stick {
    float x;
    float y;
};

// From y upwards to y downwards. The negation happens in int, where -32768 has a counterpart.
Stick readStick(int x, int y) {
    Stick stick{static_cast<float>(x) / kStickScale, static_cast<float>(-y) / kStickScale};
    GamepadReader::applyDeadZone(stick.x, stick.y, kDeadZone);
    return {std::clamp(stick.x, -1.0F, 1.0F), std::clamp(stick.y, -1.0F, 1.0F)};
}

void write(const GamepadReading& reading, InputState& input) {
    for (const auto& [button, bit] : kButtons)
        input.setGamepadButton(button, (reading.buttons & bit) != 0);
    const Stick left = readStick(reading.leftX, reading.leftY);
    const Stick right = readStick(reading.rightX, reading.rightY);
    input.setGamepadAxis(GamepadAxis::LeftX, left.x);
    input.setGamepadAxis(GamepadAxis::LeftY, left.y);
    input.setGamepadAxis(GamepadAxis::RightX, right.x);
    input.setGamepadAxis(GamepadAxis::RightY, right.y);
    input.setGamepadAxis(GamepadAxis::LeftTrigger, static_cast<float>(reading.leftTrigger) / kTriggerScale);
    input.setGamepadAxis(GamepadAxis::RightTrigger, static_cast<float>(reading.rightTrigger) / kTriggerScale);
}

} // namespace

GamepadPoller::GamepadPoller(std::unique_ptr<GamepadSource> source) : source_(std::move(source)) {}

void GamepadPoller::poll(InputState& input, TimePoint now) {
    if (!source_ || !source_->isReady())
        return;
    if (userIndex_ < 0) {
        if (now < nextProbe_)
            return;
        nextProbe_ = now + kProbeInterval;
        search(input);
        if (userIndex_ < 0)
            return;
    }
    if (const auto reading = source_->query(userIndex_)) {
        write(*reading, input);
        return;
    }
    log::info("Input", "gamepad disconnected");
    userIndex_ = -1;
    input.setGamepadConnected(false);
}

void GamepadPoller::search(InputState& input) {
    for (int index = 0; index < kUserIndices; ++index) {
        if (!source_->query(index))
            continue;
        userIndex_ = index;
        input.setGamepadConnected(true);
        log::info("Input", "gamepad connected ({})", source_->name(index));
        return;
    }
}

} // namespace tarvik::app
