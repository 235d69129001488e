#include <tarvik/app/WaylandPointerLock.hpp>

#include <utility>

namespace tarvik::app {

struct WaylandPointerLock::State {};

WaylandPointerLock::WaylandPointerLock(std::unique_ptr<State> state) : state_(std::move(state)) {}

WaylandPointerLock::~WaylandPointerLock() = default;

// Without Wayland at build time there is no lock: viewports follow the cursor's own moves.
std::unique_ptr<WaylandPointerLock> WaylandPointerLock::create() {
    return {};
}

bool WaylandPointerLock::lock() {
    return false;
}

void WaylandPointerLock::unlock() {}

bool WaylandPointerLock::isActive() const {
    return false;
}

glm::vec2 WaylandPointerLock::takeMotion() {
    return glm::vec2{0.0F};
}

} // namespace tarvik::app
