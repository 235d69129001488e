#include <tarvik/app/GamepadReader.hpp>

#include "GamepadPoller.hpp"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace tarvik::app {

struct GamepadReader::Impl {
    GamepadPoller poller{GamepadSource::create()};
};

GamepadReader::GamepadReader() : impl_(std::make_unique<Impl>()) {}

GamepadReader::~GamepadReader() = default;

void GamepadReader::poll(InputState& input) {
    impl_->poller.poll(input, std::chrono::steady_clock::now());
}

void GamepadReader::applyDeadZone(float& x, float& y, float deadZone) {
    const float length = std::sqrt(x * x + y * y);
    if (length <= deadZone) {
        x = 0.0F;
        y = 0.0F;
        return;
    }
    const float scaled = std::min((length - deadZone) / (1.0F - deadZone), 1.0F);
    x = x / length * scaled;
    y = y / length * scaled;
}

} // namespace tarvik::app
