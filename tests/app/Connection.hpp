#pragma once

struct wl_display;
struct wl_seat;
struct zwlr_virtual_pointer_manager_v1;
struct zwp_virtual_keyboard_manager_v1;

namespace tarvik::test {

// To the compositor under test, apart from the windows' own. Where there are several seats, it has the last
// one.
struct Connection final {
    Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection();

    wl_display* display;
    wl_seat* seat = nullptr;
    // Null where the compositor takes no devices made of requests.
    zwlr_virtual_pointer_manager_v1* pointers = nullptr;
    zwp_virtual_keyboard_manager_v1* keyboards = nullptr;
};

} // namespace tarvik::test
