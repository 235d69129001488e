#pragma once

#include "GamepadSource.hpp"

#include <chrono>
#include <memory>

namespace tarvik {
class InputState;
}

namespace tarvik::app {

// Finds, follows and loses one controller of a source, and writes what it reads into an InputState. Time
// comes from the caller.
class GamepadPoller final {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    // Without a source nothing is ever written.
    explicit GamepadPoller(std::unique_ptr<GamepadSource> source);

    void poll(InputState& input, TimePoint now);

private:
    void search(InputState& input);

    std::unique_ptr<GamepadSource> source_;
    int userIndex_ = -1;
    TimePoint nextProbe_{};
};

} // namespace tarvik::app
