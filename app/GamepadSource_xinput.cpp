#include "GamepadSource.hpp"

#include <windows.h>

#include <xinput.h>

#include <type_traits>
#include <utility>

namespace tarvik::app {
namespace {

using GetState = decltype(&XInputGetState);

struct ModuleCloser {
    void operator()(HMODULE module) const { FreeLibrary(module); }
};
using Module = std::unique_ptr<std::remove_pointer_t<HMODULE>, ModuleCloser>;

class XInputSource final : public GamepadSource {
public:
    XInputSource(Module module, GetState getState) : module_(std::move(module)), getState_(getState) {}

    std::optional<GamepadReading> query(int userIndex) override {
        XINPUT_STATE state{};
        if (getState_(static_cast<DWORD>(userIndex), &state) != ERROR_SUCCESS)
            return std::nullopt;
        const XINPUT_GAMEPAD& pad = state.Gamepad;
        return GamepadReading{.buttons = pad.wButtons,
                              .leftTrigger = pad.bLeftTrigger,
                              .rightTrigger = pad.bRightTrigger,
                              .leftX = pad.sThumbLX,
                              .leftY = pad.sThumbLY,
                              .rightX = pad.sThumbRX,
                              .rightY = pad.sThumbRY};
    }

    [[nodiscard]] std::string name(int userIndex) const override {
        return "XInput " + std::to_string(userIndex);
    }

private:
    Module module_;
    GetState getState_;
};

// Loaded at run time, because no single version is on every Windows.
Module loadXInput() {
    for (const wchar_t* name : {L"xinput1_4.dll", L"xinput9_1_0.dll", L"xinput1_3.dll"}) {
        if (Module module{LoadLibraryW(name)})
            return module;
    }
    return {};
}

} // namespace

std::unique_ptr<GamepadSource> GamepadSource::create() {
    Module module = loadXInput();
    if (!module)
        return {};
    // Through void*, because the compiler warns of a cast between unlike function types.
    void* const entry = reinterpret_cast<void*>(GetProcAddress(module.get(), "XInputGetState"));
    if (!entry)
        return {};
    return std::make_unique<XInputSource>(std::move(module), reinterpret_cast<GetState>(entry));
}

} // namespace tarvik::app
