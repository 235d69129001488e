#pragma once

#include <cstdint>

struct wl_display;
struct zwlr_virtual_pointer_v1;
struct zwp_virtual_keyboard_v1;

namespace tarvik::test {

// A mouse and a keyboard for the compositor under test, whose only screen has 1280 x 800 units: devices of
// their own where the compositor takes such, else X's over the window that is its screen, at the origin of an
// X display.
class Devices final {
public:
    Devices();
    Devices(const Devices&) = delete;
    Devices& operator=(const Devices&) = delete;
    // Unplugs what is virtual.
    ~Devices();

    [[nodiscard]] bool areVirtual() const { return pointer_ != nullptr; }
    void moveBy(int right, int down);
    // Away from the user; returns how far, in notches. Only a virtual mouse has a fine wheel.
    float scroll();
    // Moves near the middle of the screen, anew. A compositor shows a new window some time after it has been
    // drawn, so that it may take several.
    void enter();
    // The right button, there.
    void press();
    void release() { button(0); }

    // The values are the kernel's.
    enum class Key : std::uint8_t { W = 17, Control = 29, S = 31 };
    void press(Key key) { send(key, 1); }
    void release(Key key) { send(key, 0); }

private:
    void moveTo(std::uint32_t left, std::uint32_t top);
    void button(std::uint32_t state);
    void send();
    void send(Key key, std::uint32_t state);

    wl_display* display_;
    zwlr_virtual_pointer_v1* pointer_ = nullptr;
    zwp_virtual_keyboard_v1* keyboard_ = nullptr;
};

} // namespace tarvik::test
