#pragma once

#include <tarvik/app/Export.hpp>

#include <memory>

namespace tarvik {
class InputState;
}

namespace tarvik::app {

// Reads the first game controller that answers into an InputState. Without one it looks for one every two
// seconds. Use it on one thread.
class TARVIK_APPCOMMON_API GamepadReader final {
public:
    // Never fails: a machine without controller support gives a reader that does nothing.
    GamepadReader();
    GamepadReader(const GamepadReader&) = delete;
    GamepadReader& operator=(const GamepadReader&) = delete;
    ~GamepadReader();

    void poll(InputState& input);

    // Radial dead zone of one stick, in place: the direction stays, the length from deadZone to 1 becomes 0
    // to 1 and never more.
    static void applyDeadZone(float& x, float& y, float deadZone);

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace tarvik::app
