#include "Script.hpp"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace tarvik::scripted {

void Script::note(std::string name, std::string details) {
    // A copy, because what runs may set up the next call.
    const auto found = on.find(name);
    const auto action = found == on.end() ? std::function<void()>() : found->second;
    events.push_back({std::move(name), std::move(details), std::chrono::steady_clock::now()});
    if (action)
        action();
}

std::vector<std::string> Script::names() const {
    std::vector<std::string> result;
    for (const Event& event : events)
        result.push_back(event.name);
    return result;
}

std::ptrdiff_t Script::count(const std::string& name) const {
    return std::ranges::count(events, name, &Event::name);
}

const Event& Script::last(const std::string& name) const {
    for (auto event = events.rbegin(); event != events.rend(); ++event) {
        if (event->name == name)
            return *event;
    }
    throw std::logic_error("the renderer never noted " + name);
}

Script& script() {
    static Script instance;
    return instance;
}

} // namespace tarvik::scripted
