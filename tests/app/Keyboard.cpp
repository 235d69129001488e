#include "Keyboard.hpp"

#include <QProcess>
#include <QTemporaryFile>

#include <virtual-keyboard.h>
#include <wayland-client.h>

#include <string_view>

namespace tarvik::test {
namespace {

constexpr std::uint32_t kControlMask = 4; // in the keymap
constexpr std::uint32_t kXOffset = 8;     // X counts keys from here

constexpr std::string_view kKeymap = R"(xkb_keymap {
    xkb_keycodes { include "evdev" };
    xkb_types { include "complete" };
    xkb_compat { include "complete" };
    xkb_symbols { include "pc+us" };
};)";

} // namespace

Keyboard::Keyboard() {
    if (!connection_.keyboards)
        return;
    keyboard_ =
        zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(connection_.keyboards, connection_.seat);
    QTemporaryFile keymap;
    if (keymap.open() && keymap.write(kKeymap.data(), kKeymap.size()) > 0 && keymap.flush())
        zwp_virtual_keyboard_v1_keymap(keyboard_, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, keymap.handle(),
                                       kKeymap.size());
    wl_display_roundtrip(connection_.display);
}

Keyboard::~Keyboard() {
    if (keyboard_)
        zwp_virtual_keyboard_v1_destroy(keyboard_);
}

void Keyboard::send(Key key, std::uint32_t state) {
    const auto code = static_cast<std::uint32_t>(key);
    if (!keyboard_) {
        QProcess::execute("xdotool", {state ? "keydown" : "keyup", QString::number(code + kXOffset)});
        return;
    }
    zwp_virtual_keyboard_v1_key(keyboard_, 0, code, state);
    if (key == Key::Control) // such a device tells of its modifiers itself
        zwp_virtual_keyboard_v1_modifiers(keyboard_, state ? kControlMask : 0, 0, 0, 0);
    wl_display_roundtrip(connection_.display);
}

} // namespace tarvik::test
