#include <tarvik/input/InputState.hpp>

#include <gtest/gtest.h>

namespace tarvik {
namespace {

// Games store these values.
static_assert(static_cast<int>(Key::W) == 0 && static_cast<int>(Key::Space) == 11 &&
              static_cast<int>(Key::Backspace) == 18 && static_cast<int>(Key::G) == 21 &&
              static_cast<int>(Key::P) == 30 && static_cast<int>(Key::R) == 31 &&
              static_cast<int>(Key::Z) == 37 && static_cast<int>(Key::Num9) == 47);
static_assert(static_cast<int>(MouseButton::Middle) == 2);
static_assert(static_cast<int>(GamepadButton::DpadRight) == 14 &&
              static_cast<int>(GamepadButton::Guide) == 8);
static_assert(static_cast<int>(GamepadAxis::RightTrigger) == 5);

TEST(InputStateTest, KeyTappedWithinAFrameIsPressedAndReleasedButNotHeld) {
    InputState input;
    input.setKey(Key::Num9, true);
    input.setKey(Key::Num9, false);
    EXPECT_TRUE(input.wasPressed(Key::Num9));
    EXPECT_TRUE(input.wasReleased(Key::Num9));
    EXPECT_FALSE(input.isHeld(Key::Num9));
    input.endFrame();
    EXPECT_FALSE(input.wasPressed(Key::Num9));
    EXPECT_FALSE(input.wasReleased(Key::Num9));
}

TEST(InputStateTest, HeldKeyIsPressedInItsFirstFrameOnly) {
    InputState input;
    input.setKey(Key::W, true);
    input.endFrame();
    input.setKey(Key::W, true); // a repeat
    EXPECT_TRUE(input.isHeld(Key::W));
    EXPECT_FALSE(input.wasPressed(Key::W));
    input.setKey(Key::A, false); // was never down
    EXPECT_FALSE(input.wasReleased(Key::A));
}

TEST(InputStateTest, ReleaseAllSparesTheGamepad) {
    InputState input;
    input.setGamepadConnected(true);
    input.setGamepadButton(GamepadButton::DpadRight, true);
    input.setMouseButton(MouseButton::Right, true);
    input.setKey(Key::Z, true);
    input.endFrame();
    input.releaseAll();
    EXPECT_FALSE(input.isHeld(Key::Z));
    EXPECT_TRUE(input.wasReleased(Key::Z));
    EXPECT_TRUE(input.wasReleased(MouseButton::Right));
    EXPECT_TRUE(input.isHeld(GamepadButton::DpadRight));
}

TEST(InputStateTest, UnpluggedGamepadLetsGoOfEverything) {
    InputState input;
    input.setGamepadConnected(true);
    input.setGamepadButton(GamepadButton::A, true);
    input.setGamepadAxis(GamepadAxis::RightTrigger, 1.0F);
    input.endFrame();
    input.setGamepadConnected(false);
    EXPECT_FALSE(input.isHeld(GamepadButton::A));
    EXPECT_TRUE(input.wasReleased(GamepadButton::A));
    EXPECT_EQ(input.gamepadAxis(GamepadAxis::RightTrigger), 0.0F);
}

TEST(InputStateTest, MotionAddsUpWithinAFrameAndThePositionStays) {
    InputState input;
    input.setMousePosition({3.0F, 4.0F});
    input.addMouseDelta({1.0F, -2.0F});
    input.addMouseDelta({1.5F, 1.0F});
    input.addScroll(0.25F);
    input.addScroll(1.0F);
    EXPECT_EQ(input.mouseDelta(), glm::vec2(2.5F, -1.0F));
    EXPECT_EQ(input.scroll(), 1.25F);
    input.endFrame();
    EXPECT_EQ(input.mouseDelta(), glm::vec2(0.0F));
    EXPECT_EQ(input.scroll(), 0.0F);
    EXPECT_EQ(input.mousePosition(), glm::vec2(3.0F, 4.0F));
}

} // namespace
} // namespace tarvik
