#pragma once

#include <tarvik/renderer/Renderer.hpp>

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace tarvik::scripted {

struct Event {
    std::string name;    // "target+" is the making of a present target, "target-" its end
    std::string details; // the arguments in words
};

// What the scripted renderer does, set by the test, and what was asked of it. For one thread.
struct Script {
    std::vector<std::string> extensions{"VK_KHR_surface", "VK_KHR_xcb_surface"};
    render::FrameResult frameResult = render::FrameResult::Presented;
    bool presentBlocks = true;
    std::optional<std::string> captureError;
    // Run by the call of that name once it is in the log. What it throws, the call throws.
    std::map<std::string, std::function<void()>> on;
    std::vector<Event> events;

    void note(const std::string& name, std::string details = {});
    [[nodiscard]] std::string calls() const; // the events' names in one line
    [[nodiscard]] std::ptrdiff_t count(const std::string& name) const;
    // Of the last event of that name; empty when there is none.
    [[nodiscard]] std::string details(const std::string& name) const;
};

Script& script();

// For Script::on.
template <typename Error>
std::function<void()> throwing(const Error& error) {
    return [error] {
        throw error;
    };
}

} // namespace tarvik::scripted
