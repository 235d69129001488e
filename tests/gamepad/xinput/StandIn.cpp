#include "StandIn.hpp"

namespace {
StandIn state;
} // namespace

extern "C" __declspec(dllexport) StandIn* standIn() {
    return &state;
}

extern "C" __declspec(dllexport) DWORD WINAPI XInputGetState(DWORD userIndex, XINPUT_STATE* out) {
    if (state.queryCount < 64)
        state.queries[state.queryCount++] = userIndex;
    if (userIndex >= XUSER_MAX_COUNT || !state.plugged[userIndex])
        return ERROR_DEVICE_NOT_CONNECTED;
    *out = {.dwPacketNumber = 1, .Gamepad = state.pad};
    return ERROR_SUCCESS;
}
