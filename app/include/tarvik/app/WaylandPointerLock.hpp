#pragma once

#include <tarvik/app/Export.hpp>

#include <glm/vec2.hpp>

#include <memory>

namespace tarvik::app {

// Relative pointer motion where the cursor cannot be warped. Lives as long as its viewport. GUI thread only.
class TARVIK_APPCOMMON_API WaylandPointerLock final {
public:
    // Empty where no lock can be had.
    static std::unique_ptr<WaylandPointerLock> create();
    WaylandPointerLock(const WaylandPointerLock&) = delete;
    WaylandPointerLock& operator=(const WaylandPointerLock&) = delete;
    ~WaylandPointerLock();

    // Asks for the pointer over the window that it is over, in place of any other lock of the application.
    // False where there is nothing to ask for. Whether and when the lock is had, isActive() says; it ends by
    // itself with the window's focus, with the window and with the mouse.
    bool lock();
    // Harmless when not locked.
    void unlock();
    // While true, motion comes from takeMotion() and not from pointer moves.
    [[nodiscard]] bool isActive() const;
    // Logical pixels since the previous call.
    glm::vec2 takeMotion();

private:
    struct State;
    explicit WaylandPointerLock(std::unique_ptr<State> state);
    std::unique_ptr<State> state_;
};

} // namespace tarvik::app
