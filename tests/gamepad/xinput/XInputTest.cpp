// usage: xinput_test <the XInput library that has to be taken, or "none">
#include "GamepadPoller.hpp"
#include "LogCapture.hpp"
#include "StandIn.hpp"

#include <tarvik/app/GamepadReader.hpp>
#include <tarvik/input/InputState.hpp>

#undef NDEBUG // the checks are assertions
#include <cassert>
#include <string>
#include <string_view>
#include <vector>

using namespace std::chrono_literals;
using namespace tarvik;
using namespace tarvik::app;

namespace {

constexpr const char* kLibraries[] = {"xinput1_4.dll", "xinput9_1_0.dll", "xinput1_3.dll"};

std::string loadedLibraries() {
    std::string names;
    for (const char* library : kLibraries) {
        if (GetModuleHandleA(library))
            names += library;
    }
    return names;
}

StandIn& standIn(const char* library) {
    const FARPROC entry = GetProcAddress(GetModuleHandleA(library), "standIn");
    return *reinterpret_cast<StandIn* (*)()>(reinterpret_cast<void*>(entry))();
}

// Unplugged, plugged again, with the library let go at the end.
void testLife(const char* library) {
    test::LogCapture log;
    InputState input;
    {
        GamepadPoller poller{GamepadSource::create()};
        assert(loadedLibraries() == library);
        StandIn& pads = standIn(library);
        const auto pollAt = [&](std::chrono::milliseconds time) {
            pads.queryCount = 0;
            poller.poll(input, GamepadPoller::TimePoint{time});
            return std::vector<DWORD>(pads.queries, pads.queries + pads.queryCount);
        };
        pads.plugged[2] = true;
        pads.pad = {XINPUT_GAMEPAD_Y, 0, 51, -32768, 0, 0, 32767}; // buttons, triggers, sticks
        assert((pollAt(0ms) == std::vector<DWORD>{0, 1, 2, 2}));
        assert(input.isHeld(GamepadButton::Y) && !input.isHeld(GamepadButton::A));
        assert(input.gamepadAxis(GamepadAxis::LeftX) == -1.0F);
        assert(input.gamepadAxis(GamepadAxis::RightY) == -1.0F);
        assert(input.gamepadAxis(GamepadAxis::RightTrigger) == 0.2F);

        pads.plugged[2] = false;
        assert((pollAt(32ms) == std::vector<DWORD>{2}));
        assert(!input.gamepadConnected());
        pads.plugged[3] = true;
        assert((pollAt(2000ms) == std::vector<DWORD>{0, 1, 2, 3, 3}));
        assert(log.lines(LogLevel::Info, "Input").back() == "gamepad connected (XInput 3)");
    }
    assert(loadedLibraries().empty());
}

} // namespace

int main(int argc, char** argv) {
    const char* library = argc > 1 ? argv[1] : "none";
    if (std::string_view{library} == "none")
        assert(!GamepadSource::create() && loadedLibraries().empty());
    else
        testLife(library);
}
