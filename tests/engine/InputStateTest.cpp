#include <tarvik/input/InputState.hpp>

#include <gtest/gtest.h>

namespace tarvik {

// Games store these values.
static_assert(static_cast<int>(Key::Space) == 11 && static_cast<int>(Key::G) == 21 &&
              static_cast<int>(Key::R) == 31 && static_cast<int>(Key::Num9) == 47 &&
              static_cast<int>(MouseButton::Middle) == 2 && static_cast<int>(GamepadButton::Guide) == 8 &&
              static_cast<int>(GamepadAxis::RightTrigger) == 5);

TEST(InputStateTest, KeyTappedWithinAFrameIsPressedAndReleasedButNotHeld) {
    InputState input;
    input.setKey(Key::Num9, true);
    input.setKey(Key::Num9, false);
    EXPECT_TRUE(input.wasPressed(Key::Num9) && input.wasReleased(Key::Num9));
    EXPECT_FALSE(input.isHeld(Key::Num9));
    input.setKey(Key::W, true);
    input.endFrame();
    input.setKey(Key::W, true);
    input.setKey(Key::A, false);
    EXPECT_TRUE(input.isHeld(Key::W));
    EXPECT_FALSE(input.wasPressed(Key::Num9) || input.wasReleased(Key::Num9));
    EXPECT_FALSE(input.wasPressed(Key::W) || input.wasReleased(Key::A)) << "no change";
}

TEST(InputStateTest, ReleaseAllSparesTheGamepadAndUnpluggingLetsGoOfIt) {
    InputState input;
    input.setGamepadConnected(true);
    input.setGamepadButton(GamepadButton::DpadRight, true);
    input.setGamepadAxis(GamepadAxis::RightTrigger, 1.0F);
    input.setMouseButton(MouseButton::Right, true);
    input.setKey(Key::Z, true);
    input.endFrame();
    input.releaseAll();
    EXPECT_TRUE(input.wasReleased(Key::Z) && input.wasReleased(MouseButton::Right));
    EXPECT_TRUE(input.isHeld(GamepadButton::DpadRight));
    input.setGamepadConnected(false);
    EXPECT_TRUE(input.wasReleased(GamepadButton::DpadRight));
    EXPECT_EQ(input.gamepadAxis(GamepadAxis::RightTrigger), 0.0F);
}

} // namespace tarvik
