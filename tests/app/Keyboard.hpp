#pragma once

#include "Connection.hpp"

#include <cstdint>

struct zwp_virtual_keyboard_v1;

namespace tarvik::test {

// A keyboard for the compositor under test: a device of its own where the compositor offers one, else X's.
class Keyboard final {
public:
    Keyboard();
    Keyboard(const Keyboard&) = delete;
    Keyboard& operator=(const Keyboard&) = delete;
    // Unplugs the device.
    ~Keyboard();

    // The values are the kernel's.
    enum class Key : std::uint8_t { W = 17, Control = 29, S = 31 };
    void press(Key key) { send(key, 1); }
    void release(Key key) { send(key, 0); }

private:
    void send(Key key, std::uint32_t state);

    Connection connection_;
    zwp_virtual_keyboard_v1* keyboard_ = nullptr;
};

} // namespace tarvik::test
