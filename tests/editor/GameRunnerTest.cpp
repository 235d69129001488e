#include "GameRunner.hpp"

#include "FakeCMake.hpp"
#include "ProjectBuild.hpp"
#include "Pump.hpp"
#include "Session.hpp"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QWidget>

namespace tarvik::editor {

TEST(GameRunnerTest, ABuildThatBeganBeforeTheRequestDecidesNothing) {
    const test::FakeCMake cmake;
    const std::string folder = cmake.folder().path().string();
    // The first one fails when it is let go.
    cmake.does("cd '" + folder +
               "'; test -e run && exit 0; touch run; until test -e go; do sleep 0.01; done; exit 1");
    const Session session({}, QElapsedTimer());
    QWidget window;
    ProjectBuild build(cmake.project());
    GameRunner runner(session, window);
    runner.setBuild(&build);
    const QSignalSpy started(&runner, &GameRunner::started);
    const QSignalSpy failed(&runner, &GameRunner::buildFailed);
    build.build();
    ASSERT_TRUE(test::pumpUntil([&] { return std::filesystem::exists(cmake.folder() / "run"); }));
    runner.play(std::make_shared<const Scene>("Test"));
    test::writeText(cmake.folder() / "go", "");
    EXPECT_TRUE(test::pumpUntil([&] { return !started.empty() || !failed.empty(); }));
    EXPECT_EQ(started.size(), 1);
}

} // namespace tarvik::editor
