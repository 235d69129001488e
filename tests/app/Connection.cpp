#include "Connection.hpp"

#include <virtual-keyboard.h>
#include <virtual-keyboard.inc>
#include <virtual-pointer.h>
#include <virtual-pointer.inc>
#include <wayland-client.h>

#include <cstdint>
#include <cstring>

namespace tarvik::test {

Connection::Connection() : display(wl_display_connect(nullptr)) {
    static constexpr wl_registry_listener listener{
        .global =
            [](void* data, wl_registry* registry, std::uint32_t name, const char* interface,
               std::uint32_t /*version*/) {
                const auto bind = [&]<typename Object>(Object*& object, const wl_interface& wanted) {
                    if (std::strcmp(interface, wanted.name) == 0)
                        object = static_cast<Object*>(wl_registry_bind(registry, name, &wanted, 1));
                };
                auto& self = *static_cast<Connection*>(data);
                bind(self.seat, wl_seat_interface);
                bind(self.pointers, zwlr_virtual_pointer_manager_v1_interface);
                bind(self.keyboards, zwp_virtual_keyboard_manager_v1_interface);
            },
        .global_remove = [](void* /*data*/, wl_registry* /*registry*/, std::uint32_t /*name*/) {},
    };
    wl_registry* registry = wl_display_get_registry(display);
    wl_registry_add_listener(registry, &listener, this);
    wl_display_roundtrip(display);
    wl_registry_destroy(registry);
}

Connection::~Connection() {
    wl_display_roundtrip(display);
    wl_display_disconnect(display); // which lets go of all that is bound
}

} // namespace tarvik::test
