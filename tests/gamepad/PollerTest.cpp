#include "GamepadPoller.hpp"
#include "InputLog.hpp"

#include <tarvik/app/GamepadReader.hpp>
#include <tarvik/input/InputState.hpp>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

namespace {
// What was called, by the value of the button or axis, and with which argument.
using Call = std::pair<std::string, float>;
std::vector<Call> calls;
} // namespace

// In the place of the real ones: they show every call, in order, and a release is not mistaken for a write.
namespace tarvik {
void InputState::setGamepadConnected(bool connected) {
    calls.emplace_back("connected", connected);
}
void InputState::setGamepadButton(GamepadButton button, bool pressed) {
    calls.emplace_back("button " + std::to_string(static_cast<int>(button)), pressed);
}
void InputState::setGamepadAxis(GamepadAxis axis, float value) {
    calls.emplace_back("axis " + std::to_string(static_cast<int>(axis)), value);
}
} // namespace tarvik

namespace tarvik::app {

std::unique_ptr<GamepadSource> GamepadSource::create() {
    return {};
}

namespace {

struct Script {
    std::array<std::optional<GamepadReading>, 4> pads;
    std::vector<int> queries;
};

class ScriptedSource final : public GamepadSource {
public:
    explicit ScriptedSource(Script& script) : script_(script) {}
    std::optional<GamepadReading> query(int userIndex) override {
        script_.queries.push_back(userIndex);
        return script_.pads.at(static_cast<std::size_t>(userIndex));
    }
    [[nodiscard]] std::string name(int userIndex) const override {
        return "pad " + std::to_string(userIndex);
    }

private:
    Script& script_;
};

class GamepadPollerTest : public testing::Test {
protected:
    std::vector<Call> poll(std::chrono::milliseconds time) {
        calls.clear();
        script.queries.clear();
        poller.poll(input, GamepadPoller::TimePoint{time});
        return calls;
    }

    Script script;
    GamepadPoller poller{std::make_unique<ScriptedSource>(script)};
    InputState input;
    test::InputLog log;
};

TEST_F(GamepadPollerTest, EachBitPressesItsOwnButtonAndWritesKeepTheirOrder) {
    constexpr std::pair<int, std::uint16_t> rows[] = {
        {0, 0x1000}, {1, 0x2000}, {2, 0x4000},  {3, 0x8000},  {4, 0x0100},  {5, 0x0200},  {6, 0x0020},
        {7, 0x0010}, {9, 0x0040}, {10, 0x0080}, {11, 0x0001}, {12, 0x0002}, {13, 0x0004}, {14, 0x0008}};
    script.pads[0] = GamepadReading{};
    poll(0ms);
    for (const auto& [pressed, bit] : rows) {
        std::vector<Call> expected;
        for (const auto& row : rows)
            expected.emplace_back("button " + std::to_string(row.first), row.first == pressed);
        for (int axis = 0; axis < 6; ++axis)
            expected.emplace_back("axis " + std::to_string(axis), 0.0F);
        script.pads[0]->buttons = bit;
        EXPECT_EQ(poll(1ms), expected);
    }
}

TEST_F(GamepadPollerTest, SticksAndTriggersArriveNormalisedOnTheirAxes) {
    const float diagonal = std::sqrt(0.5F);
    const std::pair<GamepadReading, std::array<float, 6>> rows[] = {
        {{.leftX = -32768}, {-1, 0, 0, 0, 0, 0}},
        {{.leftY = 32767}, {0, -1, 0, 0, 0, 0}},
        {{.leftY = -32768}, {0, 1, 0, 0, 0, 0}},
        {{.rightX = 32767, .rightY = 32767}, {0, 0, diagonal, -diagonal, 0, 0}},
        {{.leftX = 3277, .leftY = 3277, .rightX = 4500, .rightY = 4500}, {0, 0, 0.036745F, -0.036745F, 0, 0}},
        {{.leftX = 18841, .rightY = -18841}, {0.5F, 0, 0, 0.5F, 0, 0}},
        {{.leftTrigger = 255, .rightTrigger = 10}, {0, 0, 0, 0, 1, 0.039216F}},
    };
    for (const auto& [reading, axes] : rows) {
        script.pads[0] = reading;
        poll(0ms);
        ASSERT_GE(calls.size(), 6U);
        for (std::size_t axis = 0; axis < 6; ++axis) {
            const float value = calls[calls.size() - 6 + axis].second;
            EXPECT_NEAR(value, axes[axis], 5e-5)
                << "axis " << axis << ", expected " << testing::PrintToString(axes);
            EXPECT_LE(std::abs(value), 1.0F);
        }
    }
}

TEST_F(GamepadPollerTest, SearchesFourIndicesEveryTwoSecondsAndReadsTheFoundOneInTheSamePoll) {
    std::size_t queries = 0;
    for (auto time = 0ms; time < 4s; ++time) {
        EXPECT_TRUE(poll(time).empty());
        queries += script.queries.size();
    }
    EXPECT_EQ(queries, 8U);
    script.pads[2] = script.pads[3] = GamepadReading{};
    EXPECT_EQ(poll(4s).size(), 1U + 14U + 6U);
    EXPECT_EQ(calls.front(), Call("connected", 1.0F));
    EXPECT_EQ(script.queries, (std::vector{0, 1, 2, 2}));
    poll(5s);
    EXPECT_EQ(script.queries, std::vector{2});
    EXPECT_EQ(log.take(), Lines{"gamepad connected (pad 2)"});
}

TEST_F(GamepadPollerTest, UnplugOnlyDisconnectsAndTheNextSearchCountsFromThePreviousOne) {
    script.pads[1] = GamepadReading{.buttons = 0x1000};
    poll(0ms);
    script.pads[1].reset();
    EXPECT_EQ(poll(500ms), (std::vector{Call("connected", 0.0F)}));
    script.pads[0] = GamepadReading{};
    EXPECT_TRUE(poll(1999ms).empty());
    EXPECT_TRUE(script.queries.empty());
    EXPECT_FALSE(poll(2000ms).empty());
    EXPECT_EQ(log.take(),
              (Lines{"gamepad connected (pad 1)", "gamepad disconnected", "gamepad connected (pad 0)"}));
}

TEST(GamepadDeadZone, IsRadialAndCapped) {
    constexpr struct {
        float x, y, deadZone, toX, toY;
    } rows[] = {
        {0.15F, 0, 0.15F, 0, 0},
        {0.151F, 0, 0.15F, 0.001176F, 0},
        {-0.3F, 0.4F, 0.25F, -0.2F, 0.266667F},
        {1, 1, 0.15F, 0.707107F, 0.707107F},
        {0, -2, 0.15F, 0, -1},
        {0, 0, 0, 0, 0},
    };
    for (auto [x, y, deadZone, toX, toY] : rows) {
        GamepadReader::applyDeadZone(x, y, deadZone);
        EXPECT_NEAR(x, toX, 1e-5);
        EXPECT_NEAR(y, toY, 1e-5);
    }
}

} // namespace
} // namespace tarvik::app
