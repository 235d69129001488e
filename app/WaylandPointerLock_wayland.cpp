#include <tarvik/app/WaylandPointerLock.hpp>

#include "TopLevelWindow.hpp"
#include "WaylandHandles.hpp"

#include <QGuiApplication>
#include <QTimer>

#include <pointer-constraints-unstable-v1.h>
#include <relative-pointer-unstable-v1.h>
#include <wayland-client.h>

#include <pointer-constraints-unstable-v1.inc>
#include <relative-pointer-unstable-v1.inc>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <initializer_list>
#include <list>
#include <utility>

namespace tarvik::app {

namespace {

// A compositor does not say that it will never lock on a surface. Some lock on the top level only, some only
// on the embedded window that the pointer is over.
constexpr std::chrono::milliseconds kPatience{200};

constexpr std::uint32_t kSeatVersion = 5; // the first whose objects can all be released

template <auto release>
struct Release {
    void operator()(auto* object) const { release(object); }
};

template <typename Object, auto release>
using Owned = std::unique_ptr<Object, Release<release>>;

void setQueue(void* object, wl_event_queue* queue) {
    if (object)
        wl_proxy_set_queue(static_cast<wl_proxy*>(object), queue);
}

} // namespace

// All Wayland objects are the lock's own, the seat and the pointer included, so that none dies with one of
// Qt's. Their events come with those of Qt, on the GUI thread.
struct WaylandPointerLock::State {
    State();
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() { unlock(); }

    struct Seat {
        State& owner;
        std::uint32_t name;
        Owned<wl_seat, wl_seat_release> object;
        bool hasPointer = false;
    };

    bool connect();
    void bind(std::uint32_t name, const char* interface, std::uint32_t version);
    void disconnect();
    bool lock();
    bool request(QWindow& window);
    void unlock();

    // Who holds the pointer or asks for it. Two requests for one surface are a fatal error.
    static inline State* current = nullptr;

    Owned<wl_registry, wl_registry_destroy> registry;
    Owned<zwp_pointer_constraints_v1, zwp_pointer_constraints_v1_destroy> constraints;
    Owned<zwp_relative_pointer_manager_v1, zwp_relative_pointer_manager_v1_destroy> relativePointers;
    std::list<Seat> seats; // at addresses that their listeners keep

    // From lock() to unlock().
    const Seat* lockedSeat = nullptr;
    Owned<wl_pointer, wl_pointer_release> pointer;
    Owned<zwp_relative_pointer_v1, zwp_relative_pointer_v1_destroy> relativePointer;
    Owned<zwp_locked_pointer_v1, zwp_locked_pointer_v1_destroy> lockedPointer;
    wayland::SurfaceWatch windowWatch{[this] {
        unlock();
    }};
    wayland::SurfaceWatch topWatch{[this] {
        unlock();
    }};
    QPointer<QWindow> embedded;
    QTimer patience;

    bool active = false;
    double unitsPerPixel = 1.0;
    glm::dvec2 motion{0.0};
};

WaylandPointerLock::State::State() {
    patience.setSingleShot(true);
    patience.setInterval(kPatience);
    QObject::connect(&patience, &QTimer::timeout, &patience, [this] {
        lockedPointer.reset();
        if (!embedded || !request(*embedded))
            unlock();
    });
}

// False where the compositor cannot lock.
bool WaylandPointerLock::State::connect() {
    static constexpr wl_registry_listener listener{
        .global = [](void* data, wl_registry* /*registry*/, std::uint32_t name, const char* interface,
                     std::uint32_t version) { static_cast<State*>(data)->bind(name, interface, version); },
        .global_remove =
            [](void* data, wl_registry* /*registry*/, std::uint32_t name) {
                auto& state = *static_cast<State*>(data);
                if (state.lockedSeat && state.lockedSeat->name == name)
                    state.unlock();
                state.seats.remove_if([name](const Seat& seat) { return seat.name == name; });
            },
    };

    wl_display* display = wayland::display();
    if (!display)
        return false;
    // Qt's connection ends with the application.
    QObject::connect(qGuiApp, &QObject::destroyed, &patience, [this] { disconnect(); });
    // A queue of its own, so that waiting for the answers runs none of Qt's handlers.
    const Owned<wl_event_queue, wl_event_queue_destroy> queue(wl_display_create_queue(display));
    const Owned<wl_display, wl_proxy_wrapper_destroy> wrapper(
        static_cast<wl_display*>(wl_proxy_create_wrapper(display)));
    setQueue(wrapper.get(), queue.get());
    registry.reset(wl_display_get_registry(wrapper.get()));
    wl_registry_add_listener(registry.get(), &listener, this);
    // The second answer holds what the seats have.
    for (int answers = 0; answers < 2; ++answers) {
        if (wl_display_roundtrip_queue(display, queue.get()) < 0)
            disconnect();
    }
    for (void* object :
         std::initializer_list<void*>{registry.get(), constraints.get(), relativePointers.get()})
        setQueue(object, nullptr);
    for (const Seat& seat : seats)
        setQueue(seat.object.get(), nullptr);
    wl_display_dispatch_queue_pending(display, queue.get());
    return constraints && relativePointers;
}

void WaylandPointerLock::State::bind(std::uint32_t name, const char* interface, std::uint32_t version) {
    static constexpr wl_seat_listener listener{
        .capabilities =
            [](void* data, wl_seat* /*seat*/, std::uint32_t capabilities) {
                auto& seat = *static_cast<Seat*>(data);
                seat.hasPointer = capabilities & WL_SEAT_CAPABILITY_POINTER;
                if (!seat.hasPointer && seat.owner.lockedSeat == &seat)
                    seat.owner.unlock();
            },
        .name = [](void* /*data*/, wl_seat* /*seat*/, const char* /*name*/) {},
    };
    const auto bindAs = [&](const wl_interface& wanted, std::uint32_t least) -> void* {
        if (std::strcmp(interface, wanted.name) != 0 || version < least)
            return nullptr;
        return wl_registry_bind(registry.get(), name, &wanted, least);
    };

    if (void* bound = bindAs(zwp_pointer_constraints_v1_interface, 1)) {
        constraints.reset(static_cast<zwp_pointer_constraints_v1*>(bound));
    } else if (bound = bindAs(zwp_relative_pointer_manager_v1_interface, 1); bound) {
        relativePointers.reset(static_cast<zwp_relative_pointer_manager_v1*>(bound));
    } else if (bound = bindAs(wl_seat_interface, kSeatVersion); bound) {
        Seat& seat = seats.emplace_back(*this, name, decltype(Seat::object)(static_cast<wl_seat*>(bound)));
        wl_seat_add_listener(seat.object.get(), &listener, &seat);
    }
}

void WaylandPointerLock::State::disconnect() {
    unlock();
    seats.clear();
    relativePointers.reset();
    constraints.reset();
    registry.reset();
}

bool WaylandPointerLock::State::lock() {
    static constexpr zwp_relative_pointer_v1_listener listener{
        .relative_motion =
            [](void* data, zwp_relative_pointer_v1* /*relative*/, std::uint32_t /*timeHigh*/,
               std::uint32_t /*timeLow*/, wl_fixed_t dx, wl_fixed_t dy, wl_fixed_t /*rawX*/,
               wl_fixed_t /*rawY*/) {
                auto& state = *static_cast<State*>(data);
                if (state.active) // it moves without a lock, too
                    state.motion +=
                        glm::dvec2(wl_fixed_to_double(dx), wl_fixed_to_double(dy)) / state.unitsPerPixel;
            },
    };

    if (lockedPointer)
        return true;
    QWindow* window = wayland::windowUnderPointer();
    const auto seat = std::ranges::find_if(seats, &Seat::hasPointer);
    if (!window || seat == seats.end())
        return false;
    if (current)
        current->unlock();
    current = this;
    motion = {};
    lockedSeat = &*seat;
    pointer.reset(wl_seat_get_pointer(seat->object.get()));
    relativePointer.reset(
        zwp_relative_pointer_manager_v1_get_relative_pointer(relativePointers.get(), pointer.get()));
    zwp_relative_pointer_v1_add_listener(relativePointer.get(), &listener, this);

    QWindow& top = topLevelOf(*window);
    if (!request(top)) {
        unlock();
        return false;
    }
    // Whichever of them is locked: with either, the view that the user turns is gone.
    windowWatch.watch(*window);
    topWatch.watch(top);
    if (window != &top) {
        embedded = window;
        patience.start();
    }
    return true;
}

// A lock that ends is not taken up again without the user: its lifetime is one shot.
bool WaylandPointerLock::State::request(QWindow& window) {
    static constexpr zwp_locked_pointer_v1_listener listener{
        .locked =
            [](void* data, zwp_locked_pointer_v1* /*locked*/) {
                auto& state = *static_cast<State*>(data);
                state.active = true;
                state.patience.stop();
            },
        .unlocked = [](void* data,
                       zwp_locked_pointer_v1* /*locked*/) { static_cast<State*>(data)->unlock(); },
    };

    wl_surface* surface = wayland::surface(window);
    if (!surface)
        return false;
    unitsPerPixel = wayland::surfaceUnitsPerPixel(window);
    lockedPointer.reset(zwp_pointer_constraints_v1_lock_pointer(
        constraints.get(), surface, pointer.get(), nullptr, ZWP_POINTER_CONSTRAINTS_V1_LIFETIME_ONESHOT));
    zwp_locked_pointer_v1_add_listener(lockedPointer.get(), &listener, this);
    return true;
}

void WaylandPointerLock::State::unlock() {
    patience.stop();
    active = false;
    lockedPointer.reset();
    relativePointer.reset();
    pointer.reset();
    lockedSeat = nullptr;
    if (current == this)
        current = nullptr;
}

WaylandPointerLock::WaylandPointerLock(std::unique_ptr<State> state) : state_(std::move(state)) {}

WaylandPointerLock::~WaylandPointerLock() = default;

std::unique_ptr<WaylandPointerLock> WaylandPointerLock::create() {
    auto state = std::make_unique<State>();
    if (!state->connect())
        return {};
    return std::unique_ptr<WaylandPointerLock>(new WaylandPointerLock(std::move(state)));
}

bool WaylandPointerLock::lock() {
    return state_->lock();
}

void WaylandPointerLock::unlock() {
    state_->unlock();
}

bool WaylandPointerLock::isActive() const {
    return state_->active;
}

glm::vec2 WaylandPointerLock::takeMotion() {
    return std::exchange(state_->motion, {});
}

} // namespace tarvik::app
