#include "GamepadPoller.hpp"
#include "InputLog.hpp"

#include <tarvik/app/GamepadReader.hpp>
#include <tarvik/input/InputState.hpp>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <ostream>
#include <string>
#include <vector>

using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

namespace {

struct Call {
    enum class To { Connected, Button, Axis } to;
    int which;
    float value;
    bool operator==(const Call&) const = default;
};

void PrintTo(const Call& call, std::ostream* out) {
    *out << "CBA"[static_cast<int>(call.to)] << call.which << '=' << call.value;
}

std::vector<Call> calls;

} // namespace

// In the place of the real ones: they show every call, in order, and a release is not mistaken for a write.
namespace tarvik {
void InputState::setGamepadConnected(bool connected) {
    calls.push_back({Call::To::Connected, 0, static_cast<float>(connected)});
}
void InputState::setGamepadButton(GamepadButton button, bool pressed) {
    calls.push_back({Call::To::Button, static_cast<int>(button), static_cast<float>(pressed)});
}
void InputState::setGamepadAxis(GamepadAxis axis, float value) {
    calls.push_back({Call::To::Axis, static_cast<int>(axis), value});
}
} // namespace tarvik

// GamepadReader itself stays unused here.
std::unique_ptr<tarvik::app::GamepadSource> tarvik::app::GamepadSource::create() {
    return {};
}

namespace tarvik::app {
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
    GamepadPollerTest() { calls.clear(); }

    std::vector<Call> poll(std::chrono::milliseconds time) {
        poller.poll(input, GamepadPoller::TimePoint{time});
        return std::exchange(calls, {});
    }

    Script script;
    GamepadPoller poller{std::make_unique<ScriptedSource>(script)};
    InputState input;
    test::InputLog log;
};

TEST_F(GamepadPollerTest, AsksIndicesInOrderAndReadsTheFoundOneInTheSamePoll) {
    script.pads[2] = script.pads[3] = GamepadReading{};
    const auto seen = poll(0ms);
    EXPECT_EQ(script.queries, (std::vector{0, 1, 2, 2}));
    ASSERT_EQ(seen.size(), 1U + 14U + 6U);
    EXPECT_EQ(seen.front(), (Call{Call::To::Connected, 0, 1.0F}));
    EXPECT_EQ(log.take(), Lines{"gamepad connected (pad 2)"});
    EXPECT_EQ(poll(1ms).size(), 14U + 6U);
    EXPECT_EQ(script.queries.size(), 5U) << "a connected controller costs one query";
    EXPECT_EQ(log.take(), Lines{});
}

TEST_F(GamepadPollerTest, EachBitPressesItsOwnButtonAndWritesKeepTheirOrder) {
    constexpr struct {
        int button;
        std::uint16_t bit;
    } rows[] = {{0, 0x1000},  {1, 0x2000},  {2, 0x4000},  {3, 0x8000}, {4, 0x0100},
                {5, 0x0200},  {6, 0x0020},  {7, 0x0010},  {9, 0x0040}, {10, 0x0080},
                {11, 0x0001}, {12, 0x0002}, {13, 0x0004}, {14, 0x0008}};
    script.pads[0] = GamepadReading{};
    poll(0ms);
    for (const auto& pressed : rows) {
        std::vector<Call> expected;
        for (const auto& row : rows)
            expected.push_back({Call::To::Button, row.button, row.button == pressed.button ? 1.0F : 0.0F});
        for (int axis = 0; axis < 6; ++axis)
            expected.push_back({Call::To::Axis, axis, 0.0F});
        script.pads[0]->buttons = pressed.bit;
        EXPECT_EQ(poll(1ms), expected);
    }
    script.pads[0]->buttons = 0x0C00; // of no button
    for (const Call& call : poll(1ms))
        EXPECT_EQ(call.value, 0.0F) << testing::PrintToString(call);
}

TEST_F(GamepadPollerTest, SticksAndTriggersArriveNormalisedOnTheirAxes) {
    const float diagonal = std::sqrt(0.5F);
    const struct {
        const char* what;
        GamepadReading reading;
        std::array<float, 6> axes;
    } rows[] = {
        {"left up", {.leftY = 32767}, {0, -1, 0, 0, 0, 0}},
        {"left down, whose negation is above 1", {.leftY = -32768}, {0, 1, 0, 0, 0, 0}},
        {"left to the left, below -1", {.leftX = -32768}, {-1, 0, 0, 0, 0, 0}},
        {"right up and right", {.rightX = 32767, .rightY = 32767}, {0, 0, diagonal, -diagonal, 0, 0}},
        {"in the dead zone, though not its square", {.leftX = 3277, .leftY = 3277}, {0, 0, 0, 0, 0, 0}},
        {"outside the circle, each axis inside",
         {.rightX = 4500, .rightY = 4500},
         {0, 0, 0.036745F, -0.036745F, 0, 0}},
        {"half of the live range", {.leftX = 18841, .rightY = -18841}, {0.5F, 0, 0, 0.5F, 0, 0}},
        {"left trigger", {.leftTrigger = 255, .rightTrigger = 10}, {0, 0, 0, 0, 1, 0.039216F}},
        {"right trigger", {.rightTrigger = 255}, {0, 0, 0, 0, 0, 1}},
    };
    for (const auto& row : rows) {
        script.pads[0] = row.reading;
        const auto seen = poll(0ms);
        ASSERT_GE(seen.size(), 6U);
        for (std::size_t axis = 0; axis < 6; ++axis) {
            const float value = seen[seen.size() - 6 + axis].value;
            EXPECT_NEAR(value, row.axes[axis], 5e-5) << row.what << ", axis " << axis;
            EXPECT_LE(std::abs(value), 1.0F) << row.what << ", axis " << axis;
        }
    }
}

TEST_F(GamepadPollerTest, SearchingCostsFourQueriesEveryTwoSeconds) {
    for (auto time = 0ms; time < 6s; ++time)
        EXPECT_TRUE(poll(time).empty());
    EXPECT_EQ(script.queries.size(), 12U);
    EXPECT_EQ(log.take(), Lines{});
}

TEST_F(GamepadPollerTest, UnplugOnlyDisconnectsAndTheNextSearchCountsFromThePreviousOne) {
    script.pads[1] = GamepadReading{.buttons = 0x1000};
    poll(0ms);
    log.take();
    script.pads[1].reset();
    EXPECT_EQ(poll(500ms), (std::vector{Call{Call::To::Connected, 0, 0.0F}}));
    EXPECT_EQ(log.take(), Lines{"gamepad disconnected"});
    script.pads[0] = GamepadReading{};
    script.queries.clear();
    EXPECT_TRUE(poll(1999ms).empty());
    EXPECT_TRUE(script.queries.empty());
    EXPECT_EQ(poll(2000ms).size(), 1U + 14U + 6U);
    EXPECT_EQ(log.take(), Lines{"gamepad connected (pad 0)"});

    // After long use the search follows the loss at the very next poll.
    script.pads = {};
    poll(60s);
    script.pads[3] = GamepadReading{};
    EXPECT_FALSE(poll(60s + 1ms).empty());
    EXPECT_EQ(log.take(), (Lines{"gamepad disconnected", "gamepad connected (pad 3)"}));
}

TEST_F(GamepadPollerTest, LosingTheControllerBetweenSearchAndReadIsALoss) {
    struct Flicker final : GamepadSource {
        bool there = false;
        std::optional<GamepadReading> query(int) override {
            there = !there;
            return there ? std::optional{GamepadReading{}} : std::nullopt;
        }
        [[nodiscard]] std::string name(int) const override { return "loose plug"; }
    };
    GamepadPoller flickering{std::make_unique<Flicker>()};
    flickering.poll(input, {});
    EXPECT_EQ(calls, (std::vector{Call{Call::To::Connected, 0, 1.0F}, Call{Call::To::Connected, 0, 0.0F}}));
    EXPECT_EQ(log.take(), (Lines{"gamepad connected (loose plug)", "gamepad disconnected"}));
}

TEST_F(GamepadPollerTest, WithoutASourceNothingIsEverWritten) {
    GamepadPoller inert{nullptr};
    inert.poll(input, GamepadPoller::TimePoint{1h});
    EXPECT_TRUE(calls.empty());
}

TEST(GamepadDeadZone, IsRadialAndCapped) {
    constexpr struct {
        float x, y, deadZone, toX, toY;
    } rows[] = {
        {0.1F, 0.1F, 0.15F, 0, 0},
        {0.15F, 0, 0.15F, 0, 0},
        {0.151F, 0, 0.15F, 0.001176F, 0},
        {0.575F, 0, 0.15F, 0.5F, 0},
        {0, 1, 0.15F, 0, 1},
        {1, 1, 0.15F, 0.707107F, 0.707107F},
        {-0.3F, 0.4F, 0.25F, -0.2F, 0.266667F},
        {0, -2, 0.15F, 0, -1},
        {0, 0, 0, 0, 0},
    };
    for (const auto& row : rows) {
        float x = row.x;
        float y = row.y;
        GamepadReader::applyDeadZone(x, y, row.deadZone);
        EXPECT_NEAR(x, row.toX, 1e-5) << row.x << ", " << row.y;
        EXPECT_NEAR(y, row.toY, 1e-5) << row.x << ", " << row.y;
    }
}

} // namespace
} // namespace tarvik::app
