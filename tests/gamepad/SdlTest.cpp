#include "GamepadSource.hpp"

#include <tarvik/app/GamepadReader.hpp>
#include <tarvik/input/InputState.hpp>

#include <SDL.h>

#include <gtest/gtest.h>

#include <csignal>
#include <memory>
#include <optional>

namespace tarvik::app {
namespace {

// A device that exists inside SDL alone; unplugged when it goes.
class VirtualDevice final {
public:
    explicit VirtualDevice(const char* name) {
        SDL_VirtualJoystickDesc desc{};
        desc.version = SDL_VIRTUAL_JOYSTICK_DESC_VERSION;
        desc.type = SDL_JOYSTICK_TYPE_GAMECONTROLLER;
        desc.naxes = SDL_CONTROLLER_AXIS_MAX;
        desc.nbuttons = 15;
        desc.vendor_id = 0xF055;
        desc.product_id = 1;
        desc.name = name;
        joystick_ = SDL_JoystickOpen(SDL_JoystickAttachVirtualEx(&desc));
        setAxis(SDL_CONTROLLER_AXIS_TRIGGERLEFT, -32768);
        setAxis(SDL_CONTROLLER_AXIS_TRIGGERRIGHT, -32768);
    }
    VirtualDevice(const VirtualDevice&) = delete;
    VirtualDevice& operator=(const VirtualDevice&) = delete;
    ~VirtualDevice() {
        for (int device = 0; device < SDL_NumJoysticks(); ++device) {
            if (SDL_JoystickGetDeviceInstanceID(device) == SDL_JoystickInstanceID(joystick_))
                SDL_JoystickDetachVirtual(device);
        }
        SDL_JoystickClose(joystick_);
    }

    void setAxis(int axis, std::int16_t value) { SDL_JoystickSetVirtualAxis(joystick_, axis, value); }
    void setButton(int button, bool down) { SDL_JoystickSetVirtualButton(joystick_, button, down); }

private:
    SDL_Joystick* joystick_ = nullptr;
};

struct GamepadSdlTest : testing::Test {
    // Real controllers of the machine stay out of the way.
    GamepadSdlTest() {
        SDL_SetHint(SDL_HINT_GAMECONTROLLER_IGNORE_DEVICES_EXCEPT, "0xF055/0x0001");
        EXPECT_FALSE(source->isReady()) << "loads SDL before the first frame";
        EXPECT_TRUE(source->isReady());
    }

    std::unique_ptr<GamepadSource> source = GamepadSource::create();
};

TEST_F(GamepadSdlTest, EveryControlArrivesInXInputsFormAndLeavesNoEvents) {
    std::optional<VirtualDevice> pad{"pad"};
    ASSERT_TRUE(source->query(0));
    EXPECT_EQ(source->name(0), "pad");
    constexpr std::uint16_t bits[] = {0x1000, 0x2000, 0x4000, 0x8000, 0x0020, 0 /* guide */, 0x0010, 0x0040,
                                      0x0080, 0x0100, 0x0200, 0x0001, 0x0002, 0x0004,        0x0008};
    for (int button = 0; button <= SDL_CONTROLLER_BUTTON_DPAD_RIGHT; ++button) {
        pad->setButton(button, true);
        EXPECT_EQ(source->query(0).value_or(GamepadReading{}).buttons, bits[button]) << "button " << button;
        pad->setButton(button, false);
    }
    constexpr std::int16_t axes[] = {-32768, -32768, 12345, 12345, 32767, 0};
    for (int axis = 0; axis < SDL_CONTROLLER_AXIS_MAX; ++axis)
        pad->setAxis(axis, axes[axis]);
    const GamepadReading moved{0, 255, 127, -32768, 32767, 12345, -12345}; // buttons, triggers, sticks
    EXPECT_TRUE(source->query(0) == moved);
    pad.reset();
    EXPECT_FALSE(source->query(0)) << "unplugged";
    EXPECT_EQ(SDL_PeepEvents(nullptr, 0, SDL_PEEKEVENT, SDL_FIRSTEVENT, SDL_LASTEVENT), 0);
}

TEST_F(GamepadSdlTest, ReadersShareAControllerAndTheLastOneEndsTheSubsystem) {
    {
        auto one = std::make_unique<GamepadReader>();
        GamepadReader other;
        InputState input;
        one->poll(input); // takes up SDL at the next
        other.poll(input);
        EXPECT_FALSE(SDL_WasInit(SDL_INIT_VIDEO));
        VirtualDevice pad{"shared pad"};
        pad.setButton(SDL_CONTROLLER_BUTTON_A, true);
        one->poll(input);
        EXPECT_TRUE(input.isHeld(GamepadButton::A));
        one.reset();
        input = {};
        other.poll(input);
        EXPECT_TRUE(input.isHeld(GamepadButton::A));
        source.reset();
        for (const int signal : {SIGINT, SIGTERM})
            EXPECT_EQ(std::signal(signal, SIG_DFL), SIG_DFL) << signal;
    }
    EXPECT_EQ(SDL_WasInit(0), 0U);
}

} // namespace
} // namespace tarvik::app
