// bare_compositor INTERFACE... -- COMMAND...: runs the command against a compositor that shows nothing and
// offers what Qt needs to start, and of what a pointer lock needs the interfaces that are named.
#include <QProcess>

#include <wayland-server.h>

#include <pointer-constraints-unstable-v1.inc>
#include <relative-pointer-unstable-v1.inc>

#include <array>
#include <cstdlib>
#include <thread>

namespace {

int ignore(const void* /*implementation*/, void* /*object*/, std::uint32_t /*number*/,
           const wl_message* /*request*/, wl_argument* /*arguments*/) {
    return 0;
}

struct Offer {
    const wl_interface* interface;
};

void bind(wl_client* client, void* offer, std::uint32_t version, std::uint32_t id) {
    const wl_interface* interface = static_cast<Offer*>(offer)->interface;
    wl_resource* object = wl_resource_create(client, interface, static_cast<int>(version), id);
    wl_resource_set_dispatcher(object, ignore, nullptr, nullptr, nullptr);
}

} // namespace

int main(int argc, char** argv) {
    wl_display* display = wl_display_create();
    qputenv("WAYLAND_DISPLAY", wl_display_add_socket_auto(display));
    qputenv("QT_QPA_PLATFORM", "wayland");
    wl_display_init_shm(display);
    QStringList arguments(argv + 1, argv + argc);
    const QStringList named = arguments.mid(0, arguments.indexOf("--"));
    std::array offers{Offer{&wl_compositor_interface}, Offer{&zwp_pointer_constraints_v1_interface},
                      Offer{&zwp_relative_pointer_manager_v1_interface}};
    for (Offer& offer : offers) {
        if (&offer == &offers.front() || named.contains(offer.interface->name))
            wl_global_create(display, offer.interface, 1, &offer, bind);
    }
    std::thread(wl_display_run, display).detach();
    arguments = arguments.mid(named.size() + 1);
    const QString program = arguments.takeFirst();
    std::_Exit(QProcess::execute(program, arguments));
}
