// usage: xinput_test <the XInput library that has to be taken, or "none">
#include "GamepadPoller.hpp"
#include "LogCapture.hpp"
#include "StandIn.hpp"

#include <tarvik/app/GamepadReader.hpp>
#include <tarvik/input/InputState.hpp>

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

using namespace std::chrono_literals;
using namespace tarvik;
using namespace tarvik::app;

namespace {

int failures = 0;

void check(bool condition, const char* text, int line) {
    if (condition)
        return;
    std::printf("line %d: not so: %s\n", line, text);
    ++failures;
}
#define CHECK(condition) check(condition, #condition, __LINE__)

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
        CHECK(loadedLibraries() == library);
        if (loadedLibraries() != library)
            return;
        StandIn& pads = standIn(library);
        const auto pollAt = [&](std::chrono::milliseconds time) {
            pads.queryCount = 0;
            poller.poll(input, GamepadPoller::TimePoint{time});
            return std::vector<DWORD>(pads.queries, pads.queries + pads.queryCount);
        };
        pads.plugged[2] = true;
        pads.pad = {XINPUT_GAMEPAD_Y, 0, 51, -32768, 0, 0, 32767}; // buttons, triggers, sticks
        CHECK((pollAt(0ms) == std::vector<DWORD>{0, 1, 2, 2}));
        CHECK(input.isHeld(GamepadButton::Y) && !input.isHeld(GamepadButton::A));
        CHECK(input.gamepadAxis(GamepadAxis::LeftX) == -1.0F);
        CHECK(input.gamepadAxis(GamepadAxis::RightY) == -1.0F);
        CHECK(input.gamepadAxis(GamepadAxis::RightTrigger) == 0.2F);

        pads.plugged[2] = false;
        CHECK((pollAt(32ms) == std::vector<DWORD>{2}));
        CHECK(!input.gamepadConnected());
        pads.plugged[3] = true;
        CHECK((pollAt(2000ms) == std::vector<DWORD>{0, 1, 2, 3, 3}));
        CHECK(log.lines(LogLevel::Info, "Input").back() == "gamepad connected (XInput 3)");
    }
    CHECK(loadedLibraries().empty());
}

} // namespace

int main(int argc, char** argv) {
    const char* library = argc > 1 ? argv[1] : "none";
    if (std::string_view{library} == "none")
        CHECK(!GamepadSource::create() && loadedLibraries().empty());
    else
        testLife(library);
    std::printf("%d failures\n", failures);
    return failures == 0 ? 0 : 1;
}
