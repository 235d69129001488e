#include "Devices.hpp"

#include <QProcess>
#include <QTemporaryFile>

#include <virtual-keyboard.h>
#include <virtual-keyboard.inc>
#include <virtual-pointer.h>
#include <virtual-pointer.inc>
#include <wayland-client.h>

#include <cstring>
#include <string_view>

namespace tarvik::test {
namespace {

constexpr std::uint32_t kRight = 0x111;   // as the kernel numbers it
constexpr std::uint32_t kControlMask = 4; // in the keymap
constexpr std::uint32_t kXOffset = 8;     // X counts keys from here

constexpr std::string_view kKeymap = R"(xkb_keymap {
    xkb_keycodes { include "evdev" };
    xkb_types { include "complete" };
    xkb_compat { include "complete" };
    xkb_symbols { include "pc+us" };
};)";

void x(const QString& command) {
    QProcess::execute("xdotool", command.split(' '));
}

// Where there are several seats, the last one. The others are null where the compositor takes no virtual
// devices.
struct Globals {
    wl_seat* seat = nullptr;
    zwlr_virtual_pointer_manager_v1* pointers = nullptr;
    zwp_virtual_keyboard_manager_v1* keyboards = nullptr;
};

void bindGlobal(void* globals, wl_registry* registry, std::uint32_t name, const char* interface,
                std::uint32_t /*version*/) {
    const auto bind = [&]<typename Object>(Object*& object, const wl_interface& wanted) {
        if (std::strcmp(interface, wanted.name) == 0)
            object = static_cast<Object*>(wl_registry_bind(registry, name, &wanted, 1));
    };
    auto& [seat, pointers, keyboards] = *static_cast<Globals*>(globals);
    bind(seat, wl_seat_interface);
    bind(pointers, zwlr_virtual_pointer_manager_v1_interface);
    bind(keyboards, zwp_virtual_keyboard_manager_v1_interface);
}

void ignoreRemoval(void* /*globals*/, wl_registry* /*registry*/, std::uint32_t /*name*/) {}

} // namespace

Devices::Devices() : display_(wl_display_connect(nullptr)) {
    static constexpr wl_registry_listener listener{.global = bindGlobal, .global_remove = ignoreRemoval};
    Globals globals;
    wl_registry* registry = wl_display_get_registry(display_);
    wl_registry_add_listener(registry, &listener, &globals);
    wl_display_roundtrip(display_);
    wl_registry_destroy(registry);
    if (!globals.pointers) {
        moveTo(1500, 900); // one that missed where X's pointer was learns it when that comes in anew
        return;
    }
    pointer_ = zwlr_virtual_pointer_manager_v1_create_virtual_pointer(globals.pointers, globals.seat);
    keyboard_ = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(globals.keyboards, globals.seat);
    QTemporaryFile keymap;
    if (keymap.open() && keymap.write(kKeymap.data(), kKeymap.size()) > 0 && keymap.flush())
        zwp_virtual_keyboard_v1_keymap(keyboard_, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, keymap.handle(),
                                       kKeymap.size());
    wl_display_roundtrip(display_);
}

Devices::~Devices() {
    release(); // the X display outlives the compositor
    if (areVirtual()) {
        zwlr_virtual_pointer_v1_destroy(pointer_);
        zwp_virtual_keyboard_v1_destroy(keyboard_);
    }
    wl_display_roundtrip(display_);
    wl_display_disconnect(display_); // which lets go of all that is bound
}

void Devices::send() {
    zwlr_virtual_pointer_v1_frame(pointer_);
    wl_display_roundtrip(display_);
}

void Devices::moveTo(std::uint32_t left, std::uint32_t top) {
    if (!areVirtual())
        return x(QString("mousemove %1 %2").arg(left).arg(top));
    zwlr_virtual_pointer_v1_motion_absolute(pointer_, 0, left, top, 1280, 800);
    send();
}

void Devices::moveBy(int right, int down) {
    if (!areVirtual())
        return x(QString("mousemove_relative -- %1 %2").arg(right).arg(down));
    zwlr_virtual_pointer_v1_motion(pointer_, 0, wl_fixed_from_int(right), wl_fixed_from_int(down));
    send();
}

float Devices::scroll() {
    if (!areVirtual()) {
        x("click 4");
        return 1.0F;
    }
    zwlr_virtual_pointer_v1_axis(pointer_, 0, WL_POINTER_AXIS_VERTICAL_SCROLL, wl_fixed_from_double(-2.5));
    send();
    return 0.25F;
}

void Devices::enter() {
    moveTo(600, 400);
    moveTo(601, 401);
}

void Devices::press() {
    enter();
    button(0);
    button(1);
}

void Devices::button(std::uint32_t state) {
    if (!areVirtual())
        return x(state ? "mousedown 3" : "mouseup 3");
    zwlr_virtual_pointer_v1_button(pointer_, 0, kRight, state);
    send();
}

void Devices::send(Key key, std::uint32_t state) {
    const auto code = static_cast<std::uint32_t>(key);
    if (!areVirtual())
        return x(QString(state ? "keydown %1" : "keyup %1").arg(code + kXOffset));
    zwp_virtual_keyboard_v1_key(keyboard_, 0, code, state);
    if (key == Key::Control) // such a device tells of its modifiers itself
        zwp_virtual_keyboard_v1_modifiers(keyboard_, state ? kControlMask : 0, 0, 0, 0);
    wl_display_roundtrip(display_);
}

} // namespace tarvik::test
