#include "GamepadPoller.hpp"
#include "LogCapture.hpp"

#include <tarvik/app/GamepadReader.hpp>
#include <tarvik/input/InputState.hpp>

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <utility>
#include <vector>

using namespace std::chrono_literals;

namespace tarvik::app {
namespace {

struct ScriptedSource final : GamepadSource {
    std::optional<GamepadReading> query(int userIndex) override {
        queries.push_back(userIndex);
        return pads.at(static_cast<std::size_t>(userIndex));
    }
    [[nodiscard]] std::string name(int userIndex) const override {
        return "pad " + std::to_string(userIndex);
    }
    std::array<std::optional<GamepadReading>, 4> pads;
    std::vector<int> queries;
};

struct GamepadPollerTest : testing::Test {
    // Returns the indices that were asked for.
    std::vector<int> poll(std::chrono::milliseconds time) {
        source->queries.clear();
        poller.poll(input, GamepadPoller::TimePoint{time});
        return source->queries;
    }

    ScriptedSource* source = new ScriptedSource;
    GamepadPoller poller{std::unique_ptr<GamepadSource>(source)};
    InputState input;
    test::LogCapture log;
};

TEST_F(GamepadPollerTest, EachBitPressesItsOwnButtonAndNoneWritesTheGuide) {
    constexpr std::uint16_t bits[] = {0x1000, 0x2000, 0x4000, 0x8000, 0x0100, 0x0200, 0x0020, 0x0010,
                                      0,      0x0040, 0x0080, 0x0001, 0x0002, 0x0004, 0x0008};
    constexpr auto guide = static_cast<std::size_t>(GamepadButton::Guide);
    input.setGamepadButton(GamepadButton::Guide, true);
    for (std::size_t pressed = 0; pressed < std::size(bits); ++pressed) {
        source->pads[0] = GamepadReading{.buttons = bits[pressed]};
        poll(0ms);
        for (std::size_t button = 0; button < std::size(bits); ++button)
            EXPECT_EQ(input.isHeld(static_cast<GamepadButton>(button)), button == pressed || button == guide)
                << "button " << button << ", bit " << bits[pressed];
    }
}

TEST_F(GamepadPollerTest, SticksAndTriggersArriveNormalisedOnTheirAxes) {
    const std::pair<GamepadReading, std::array<float, 6>> rows[] = {
        {{.leftX = -32768}, {-1, 0, 0, 0, 0, 0}},
        {{.leftY = -32768}, {0, 1, 0, 0, 0, 0}},
        {{.rightX = 32767, .rightY = 32767}, {0, 0, 0.707107F, -0.707107F, 0, 0}},
        {{.leftX = 3277, .leftY = 3277, .rightX = 4500, .rightY = 4500}, {0, 0, 0.036745F, -0.036745F, 0, 0}},
        {{.leftX = 18841, .rightY = -18841}, {0.5F, 0, 0, 0.5F, 0, 0}},
        {{.leftTrigger = 255, .rightTrigger = 10}, {0, 0, 0, 0, 1, 0.039216F}},
    };
    for (const auto& [reading, axes] : rows) {
        source->pads[0] = reading;
        poll(0ms);
        for (std::size_t axis = 0; axis < axes.size(); ++axis) {
            const float value = input.gamepadAxis(static_cast<GamepadAxis>(axis));
            EXPECT_NEAR(value, axes[axis], 5e-5) << axis << " of " << testing::PrintToString(axes);
            EXPECT_LE(std::abs(value), 1.0F);
        }
    }
}

TEST_F(GamepadPollerTest, SearchesEveryTwoSecondsAndReadsTheFoundOneUntilItGoes) {
    std::size_t queries = 0;
    for (auto time = 0ms; time < 4s; ++time)
        queries += poll(time).size();
    EXPECT_EQ(queries, 8U);
    source->pads[2] = source->pads[3] = GamepadReading{.buttons = 0x1000};
    EXPECT_EQ(poll(4s), (std::vector{0, 1, 2, 2}));
    EXPECT_TRUE(input.gamepadConnected() && input.isHeld(GamepadButton::A)) << "in the same poll";
    EXPECT_EQ(poll(5s), std::vector{2});
    source->pads[2].reset();
    EXPECT_EQ(poll(5500ms), std::vector{2});
    EXPECT_FALSE(input.gamepadConnected());
    EXPECT_EQ(poll(5999ms), std::vector<int>{}) << "the next search counts from the previous one";
    EXPECT_EQ(poll(6s), (std::vector{0, 1, 2, 3, 3}));
    EXPECT_EQ(
        log.lines(LogLevel::Info, "Input"),
        (test::Lines{"gamepad connected (pad 2)", "gamepad disconnected", "gamepad connected (pad 3)"}));
}

} // namespace
} // namespace tarvik::app
