#pragma once

#include "Connection.hpp"

#include <cstdint>

struct zwlr_virtual_pointer_v1;

namespace tarvik::test {

// A mouse for the compositor under test, whose only screen has 1280 x 800 units: a device of its own where
// the compositor offers one, else X's mouse over the window that is its screen, at the origin of an X
// display.
class Mouse final {
public:
    Mouse();
    Mouse(const Mouse&) = delete;
    Mouse& operator=(const Mouse&) = delete;
    // Unplugs the device.
    ~Mouse();

    [[nodiscard]] bool isDevice() const { return pointer_ != nullptr; }
    void moveTo(int x, int y);
    void moveBy(int x, int y);
    // Away from the user; returns how far, in notches. Only a device has a fine wheel.
    float scroll();
    // The right one; the values are the protocol's.
    enum class Button : std::uint8_t { Up, Down };
    void button(Button button);

private:
    void send();

    Connection connection_;
    zwlr_virtual_pointer_v1* pointer_ = nullptr;
};

} // namespace tarvik::test
