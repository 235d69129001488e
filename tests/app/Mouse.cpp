#include "Mouse.hpp"

#include <QProcess>

#include <virtual-pointer.h>
#include <wayland-client.h>

namespace tarvik::test {
namespace {

constexpr std::uint32_t kRight = 0x111; // as the kernel numbers it

void x(const QStringList& arguments) {
    QProcess::execute("xdotool", arguments);
}

} // namespace

Mouse::Mouse() {
    if (connection_.pointers)
        pointer_ =
            zwlr_virtual_pointer_manager_v1_create_virtual_pointer(connection_.pointers, connection_.seat);
    else // A compositor that misses where X's pointer is at its start, learns it when that comes in anew.
        moveTo(1500, 900);
}

Mouse::~Mouse() {
    button(Button::Up); // the X display outlives the compositor
    if (pointer_)
        zwlr_virtual_pointer_v1_destroy(pointer_);
}

void Mouse::send() {
    zwlr_virtual_pointer_v1_frame(pointer_);
    wl_display_roundtrip(connection_.display);
}

void Mouse::moveTo(int left, int top) {
    if (!pointer_)
        return x({"mousemove", QString::number(left), QString::number(top)});
    zwlr_virtual_pointer_v1_motion_absolute(pointer_, 0, static_cast<std::uint32_t>(left),
                                            static_cast<std::uint32_t>(top), 1280, 800);
    send();
}

void Mouse::moveBy(int right, int down) {
    if (!pointer_)
        return x({"mousemove_relative", "--", QString::number(right), QString::number(down)});
    zwlr_virtual_pointer_v1_motion(pointer_, 0, wl_fixed_from_int(right), wl_fixed_from_int(down));
    send();
}

float Mouse::scroll() {
    if (!pointer_) {
        x({"click", "4"});
        return 1.0F;
    }
    zwlr_virtual_pointer_v1_axis(pointer_, 0, WL_POINTER_AXIS_VERTICAL_SCROLL, wl_fixed_from_double(-2.5));
    send();
    return 0.25F;
}

void Mouse::button(Button button) {
    if (!pointer_)
        return x({button == Button::Down ? "mousedown" : "mouseup", "3"});
    zwlr_virtual_pointer_v1_button(pointer_, 0, kRight, static_cast<std::uint32_t>(button));
    send();
}

} // namespace tarvik::test
