#include "Game.hpp"

#include "LogCapture.hpp"
#include "TemporaryFolder.hpp"

#include <gtest/gtest.h>

#include <malloc.h>

#include <fstream>
#include <string>

namespace tarvik::editor {
namespace {

constexpr float kFrame = 0.125F;

QString module(const char* name) {
    return QString(TARVIK_TEST_MODULES) + '/' + name + TARVIK_MODULE_SUFFIX;
}

// The copies that are in memory.
std::set<std::string> mapped() {
    std::ifstream maps("/proc/self/maps");
    std::set<std::string> names;
    for (std::string line; std::getline(maps, line);) {
        if (const std::size_t at = line.find("/loaded/game-"); at != std::string::npos)
            names.insert(line.substr(at));
    }
    return names;
}

class GameTest : public testing::Test {
protected:
    GameTest() {
        scene_.add({.name = "Actor", .behaviour = "Counter"});
        scene_.add({.name = "Target"});
        scene_.add({.name = "Careless", .behaviour = "Thrower"});
        scene_.add({.name = "Orphan", .behaviour = "Nobody"});
    }

    [[nodiscard]] QString loadDir() const { return QString::fromStdString(folder_ / "loaded"); }
    [[nodiscard]] std::set<std::string> copies() const { return test::namesIn(folder_ / "loaded"); }

    test::TemporaryFolder folder_;
    Scene scene_{"Test"};
    InputState input_;
};

TEST_F(GameTest, ANewGenerationGoesOnWhereTheOldOneWas) {
    Game game(scene_, loadDir());
    const Transform& actor = game.scene().transforms()[0];
    ASSERT_TRUE(game.load(module("generation1")));
    game.update(kFrame, input_);
    EXPECT_EQ(actor.position, glm::vec3(6.0F, 2.0F, kFrame));
    ASSERT_TRUE(game.load(module("generation2")));
    EXPECT_EQ(actor.position, glm::vec3(6.0F, 2.0F, kFrame)); // the old one's stop() changes nothing
    EXPECT_EQ(actor.scale, glm::vec3(1.0F, 2.0F, 1.0F));      // the new one's start() saw the properties
    game.update(kFrame, input_);
    EXPECT_EQ(actor.position, glm::vec3(13.0F, 4.0F, 2.0F * kFrame)); // and start() did not take them away
    ASSERT_TRUE(game.load(module("generation2")));
    EXPECT_EQ(actor.scale, glm::vec3(1.0F, 2.0F, 1.0F)); // the same code is not started again
    EXPECT_EQ(scene_.transforms()[0].position, glm::vec3(0.0F));
}

TEST_F(GameTest, BehavioursReadTheInputReachOtherEntitiesAndTurn) {
    Game game(scene_, loadDir());
    ASSERT_TRUE(game.load(module("generation1")));
    input_.setKey(Key::W, true);
    input_.setGamepadConnected(true);
    input_.setGamepadButton(GamepadButton::DpadRight, true);
    input_.setGamepadAxis(GamepadAxis::RightTrigger, 0.75F);
    game.update(kFrame, input_);
    EXPECT_EQ(game.scene().transforms()[1].position, glm::vec3(0.75F, 0.0F, 7.0F));
    // 100 degrees of pitch are 80 with yaw and roll turned round: what is added next must not undo the turn.
    for (int i = 1; i < 36; ++i)
        game.update(kFrame, input_);
    EXPECT_NEAR(std::abs(game.scene().transforms()[0].rotation.w), 1.0F, 1e-3F); // ten whole turns
}

TEST_F(GameTest, AThrowingBehaviourRestsAndIsNamed) {
    const test::LogCapture log;
    Game game(scene_, loadDir());
    ASSERT_TRUE(game.load(module("generation1")));
    for (int i = 0; i < 3; ++i)
        game.update(kFrame, input_);
    EXPECT_EQ(game.scene().transforms()[2].position.x, 1.0F);
    EXPECT_EQ(log.lines(LogLevel::Warn, "Game"),
              (test::Lines{
                  "there is no behaviour Nobody for Orphan",
                  "Thrower on Careless: an exception that is no std::exception in update(); it rests until "
                  "the behaviours are built again"}));
    EXPECT_GT(game.scene().transforms()[0].position.x, 18.0F); // the others go on
    ASSERT_TRUE(game.load(module("generation2")));
    game.update(kFrame, input_);
    EXPECT_EQ(game.scene().transforms()[2].position.x, 2.0F);
}

TEST_F(GameTest, TheOldGenerationRunsOnWhenTheNewOneFails) {
    Game game(scene_, loadDir());
    test::writeText(folder_ / "cut.so", "\177ELF");
    const std::pair<QString, const char*> bad[] = {
        {QString::fromStdString(folder_ / "cut.so"), "cannot load"},
        {QString::fromStdString(folder_ / "missing.so"), "missing.so"},
        {module("wrong_version"), "version 65535"},
        {module("generation3"), "failed to start"},
    };
    ASSERT_TRUE(game.load(module("generation1")));
    float x = 0.0F;
    for (const auto& [library, reason] : bad) {
        const auto loaded = game.load(library);
        EXPECT_TRUE(test::errorOf(loaded).contains(reason)) << test::errorOf(loaded);
        EXPECT_EQ(game.scene().transforms()[0].scale.y, 1.0F);
        game.update(kFrame, input_);
        EXPECT_GT(game.scene().transforms()[0].position.x, x);
        x = game.scene().transforms()[0].position.x;
    }
    EXPECT_EQ(copies().size(), 1); // the one that runs
}

TEST_F(GameTest, AGameThatLiesWhereNothingCanBeWrittenRuns) {
    qputenv("XDG_CACHE_HOME", (folder_ / "cache").c_str());
    test::writeText(folder_ / "file");
    const auto loaded =
        Game(scene_, QString::fromStdString(folder_ / "file/loaded")).load(module("generation1"));
    EXPECT_TRUE(loaded) << test::errorOf(loaded);
}

TEST_F(GameTest, AThousandGenerationsLeaveNothingBehind) {
    {
        Game game(scene_, loadDir());
        const auto run = [&](int generations) {
            for (int i = 0; i < generations; ++i) {
                ASSERT_TRUE(game.load(module(i % 2 == 0 ? "generation1" : "generation2")));
                game.update(kFrame, input_);
            }
        };
        run(20);
        const auto before = ::mallinfo2().uordblks;
        run(1000);
        EXPECT_LT(::mallinfo2().uordblks, before + 32'000);
        EXPECT_EQ(mapped().size(), 1U);
    }
    EXPECT_TRUE(mapped().empty());
    EXPECT_TRUE(copies().empty());
}

TEST_F(GameTest, ACrashInTheFirstUpdateIsRememberedForThatModuleOnly) {
    const auto hasCrashed = [this](const char* name) {
        return ModuleStore(loadDir()).hasCrashed(ModuleStore::fingerprint(module(name)));
    };
    EXPECT_EXIT(::_exit(Game(scene_, loadDir()).load(module("generation1")) ? 7 : 1),
                testing::ExitedWithCode(7), "");
    EXPECT_TRUE(hasCrashed("generation1"));
    EXPECT_FALSE(hasCrashed("generation2"));
    EXPECT_EQ(copies().size(), 2);
    Game game(scene_, loadDir());
    EXPECT_EQ(copies().size(), 1); // the dead process's copy is gone, its trial is not
    ASSERT_TRUE(game.load(module("generation1")));
    game.update(kFrame, input_);
    EXPECT_FALSE(hasCrashed("generation1"));
}

} // namespace
} // namespace tarvik::editor
