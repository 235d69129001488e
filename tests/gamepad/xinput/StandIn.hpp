#pragma once

#include <windows.h>

#include <xinput.h>

// What the stand-in library answers, and what it was asked. The test gets at it through the export "standIn".
struct StandIn {
    bool plugged[XUSER_MAX_COUNT];
    XINPUT_GAMEPAD pad;
    DWORD queries[64];
    int queryCount;
};
