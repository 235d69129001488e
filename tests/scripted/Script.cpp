#include "Script.hpp"

#include <algorithm>
#include <ranges>
#include <utility>

namespace tarvik::scripted {

void Script::note(const std::string& name, std::string details) {
    events.push_back({name, std::move(details)});
    // A copy, because what runs may set up the next call.
    if (const auto action = on[name])
        action();
}

std::string Script::calls() const {
    std::string result;
    for (const Event& event : events)
        result += (result.empty() ? "" : " ") + event.name;
    return result;
}

std::ptrdiff_t Script::count(const std::string& name) const {
    return std::ranges::count(events, name, &Event::name);
}

std::string Script::details(const std::string& name) const {
    const auto latestFirst = events | std::views::reverse;
    const auto event = std::ranges::find(latestFirst, name, &Event::name);
    return event == latestFirst.end() ? std::string() : event->details;
}

Script& script() {
    static Script instance;
    return instance;
}

} // namespace tarvik::scripted
