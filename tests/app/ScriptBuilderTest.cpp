#include "LogCapture.hpp"
#include "Pump.hpp"
#include "TemporaryFolder.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/app/ScriptBuilder.hpp>

#include <gtest/gtest.h>

#include <QElapsedTimer>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace tarvik::app {
namespace {

namespace fs = std::filesystem;
using test::pumpUntil;
using test::readText;
using test::writeText;

// So that what must not happen gets time to: longer than the end of a burst of changes is waited for, in
// passes of the event loop, of which a busy machine makes fewer.
void pumpQuietly() {
    int passes = 0;
    pumpUntil([&] { return ++passes == 600; });
}

// A project's builder and what it said.
struct Build {
    explicit Build(const fs::path& root) : builder(std::make_unique<ScriptBuilder>(toQString(root))) {
        on(&ScriptBuilder::buildStarted, [this] { ++started; });
        on(&ScriptBuilder::buildFinished,
           [this](bool, const QString& text) { output = text.toStdString(), ++finished; });
    }
    void on(auto signal, auto slot) { QObject::connect(builder.get(), signal, builder.get(), slot); }
    bool run() { return builder->buildBlocking(nullptr, 60'000); }

    std::unique_ptr<ScriptBuilder> builder;
    int started = 0;
    int finished = 0;
    std::string output;
};

struct ScriptBuilderTest : testing::Test {
    ScriptBuilderTest() { qputenv("TARVIK_TEST_MARK", home.path().string().c_str()); }
    ~ScriptBuilderTest() override { qputenv("PATH", path); }

    // A stand-in, and no other program than those installed so.
    void install(const char* program, const std::string& script) {
        writeText(home / "bin" / program, "#!/bin/bash\n" + script + "\n");
        fs::permissions(home / "bin" / program, fs::perms::owner_all);
        qputenv("PATH", (home / "bin").string().c_str());
    }
    // Command lines of all that was started from here and still runs.
    [[nodiscard]] test::Lines running(std::string_view program = "") const {
        test::Lines found;
        for (const auto& entry : fs::directory_iterator("/proc")) {
            const std::string line = readText(entry.path() / "cmdline");
            if (line.contains(program) && readText(entry.path() / "environ").contains(home.path().string()))
                found.push_back(line);
        }
        return found;
    }

    test::TemporaryFolder home;
    test::LogCapture log;
    QByteArray path = qgetenv("PATH");
    fs::path root = home / "M\xc3\xbcllers Spiel (2)" / "proj";
    fs::path scripts = root / "Scripts";
    fs::path tree = root / "Saved/ScriptBuild";
    Build build{root};
};

TEST_F(ScriptBuilderTest, NewBehavioursAreNamedAndWrittenOnce) {
    const auto make = [&](const char* name) {
        QString error;
        return build.builder->createBehaviour(name, &error) ? "made" : error.toStdString();
    };
    EXPECT_EQ(make("My Behaviour"), "'My Behaviour' is not a valid C++ class name.");
    EXPECT_FALSE(fs::exists(root));
    EXPECT_EQ(make("Spinner"), "made");
    EXPECT_EQ(make("Spinner"), (scripts / "Spinner.cpp").string() + " already exists.");
    const test::FileSizeLimit fullDisk(100);
    EXPECT_TRUE(make("_tmp").starts_with("cannot write " + (scripts / "_tmp.cpp").string() + ": "));
}

TEST_F(ScriptBuilderTest, RealBuildsFailAndRecover) {
    build.builder->createBehaviour(QStringLiteral("Spinner"), nullptr);
    writeText(scripts / "A.cpp", "int twice() { return 1; }\n");
    ASSERT_TRUE(build.run()) << build.output;
    EXPECT_TRUE(fs::exists(toPath(build.builder->libraryPath())));
    const auto written = fs::last_write_time(tree / "src/tarvik_module.cpp");
    writeText(tree / "src/CMakeLists.txt", "edited");
    for (const auto& [text, message] : {std::pair{"#error " + std::string(5000, 'x') + "\n", "#error"},
                                        {"int twice() { return 2; }\n", "multiple definition"}}) {
        writeText(scripts / "ai/B.cpp", text);
        EXPECT_FALSE(build.run());
        EXPECT_TRUE(build.output.contains(message)) << build.output;
    }
    EXPECT_EQ(QString::fromStdString(log.lines(LogLevel::Warn).front()).size(), 21 + 4000);
    fs::remove(scripts / "A.cpp");
    EXPECT_TRUE(build.run()) << build.output;
    EXPECT_NE(readText(tree / "src/CMakeLists.txt"), "edited");
    EXPECT_EQ(fs::last_write_time(tree / "src/tarvik_module.cpp"), written) << "a current file was written";
}

TEST_F(ScriptBuilderTest, EveryFailureSaysWhatIsWrong) {
    const fs::path list = tree / "src/CMakeLists.txt";
    const std::pair<std::function<void()>, std::string> cases[] = {
        {[] {}, "No scripts: add .cpp files to " + scripts.string() + "."},
        {[&] { writeText(scripts / "ai/Enemy.cpp"), qputenv("PATH", "/nowhere"); },
         "CMake was not found. Install CMake and a C++20 compiler (GCC, Clang or Visual Studio) to build "
         "scripts."},
        {[&] { writeText(tree), install("cmake", "exit 1"); }, "cannot create " + tree.string()},
        {[&] { fs::remove(tree), fs::create_directories(list); }, "cannot write " + list.string() + ": "},
        {[&] { fs::remove(list), writeText(home / "bin/cmake", "#!/nowhere\n"); }, "cannot start cmake: "},
        {[&] { install("cmake", "/bin/rm $0; echo configured"); }, "configured\ncannot start cmake: "},
        {[&] { install("cmake", "echo oops; kill -9 $$"); }, "oops\n"},
    };
    for (const auto& [prepare, output] : cases) {
        prepare();
        EXPECT_FALSE(build.run());
        EXPECT_TRUE(build.output.starts_with(output)) << build.output << "instead of " << output;
    }
    EXPECT_EQ(build.finished, static_cast<int>(std::size(cases)));
}

TEST_F(ScriptBuilderTest, TheGeneratorIsChosenOncePerTree) {
    install("cmake", "[ $1 = --build ] || echo \"${@:9}.\"");
    writeText(scripts / "A.cpp");
    EXPECT_TRUE(build.run());
    EXPECT_EQ(build.output, ".\n") << "without ninja";
    install("ninja", "");
    EXPECT_TRUE(build.run());
    EXPECT_EQ(build.output, "-G Ninja.\n");
    writeText(tree / "obj/CMakeCache.txt");
    EXPECT_TRUE(build.run());
    EXPECT_EQ(build.output, ".\n") << "in a tree that has one";
}

TEST_F(ScriptBuilderTest, RequestsDuringABuildGiveOneMore) {
    // An odd number of bytes lays a character across every even place at which the output can be cut.
    install("cmake", R"sh([ $1 = -S ] || printf x%s "$(printf '\303\274%.0s' {1..99999})")sh");
    writeText(scripts / "A.cpp");
    build.on(&ScriptBuilder::buildStarted, [this] {
        for (int i = 0; i < 10 && build.started == 1; ++i)
            build.builder->build();
    });
    build.builder->build();
    build.builder->build();
    ASSERT_TRUE(pumpUntil([&] { return build.finished == 2; }));
    EXPECT_EQ(build.output.size(), 199'999U) << "a character cut in two was lost";
    pumpQuietly();
    EXPECT_EQ(build.started, 2);
}

TEST_F(ScriptBuilderTest, ABuilderThatGoesLeavesNoProcess) {
    const std::string sleepers = "set -m; trap '' TERM; /bin/sleep 999 & /bin/sleep 999 & trap - TERM; ";
    // When it goes, what cmake does (really, where empty), what it runs then and at least how often.
    const std::tuple<const char*, std::string, const char*, std::size_t> cases[] = {
        {"before its start", sleepers + "wait", "sleep", 0},
        {"building", "[ $1 = -S ] && exit; " + sleepers + "wait", "sleep", 2},
        {"really configuring", "", "cc1plus", 1},
        {"its leader gone", sleepers, "sleep", 2},
    };
    writeText(scripts / "A.cpp");
    for (const auto& [when, cmake, program, runs] : cases) {
        SCOPED_TRACE(when);
        qputenv("PATH", path);
        if (!cmake.empty())
            install("cmake", cmake);
        Build cancelled(root);
        cancelled.builder->build();
        // The builder must not hear of its leader's end.
        while (cmake == sleepers && running().size() + running(program).size() != 4)
            continue;
        EXPECT_TRUE(cmake == sleepers || pumpUntil([&] { return running(program).size() >= runs; }));
        QElapsedTimer timer;
        timer.start();
        cancelled.builder.reset();
        EXPECT_LT(timer.elapsed(), 3000);
        ASSERT_EQ(running(), test::Lines{});
        EXPECT_EQ(log.lines(LogLevel::Warn), test::Lines{});
    }
}

TEST_F(ScriptBuilderTest, ReceiversMayDestroyTheBuilder) {
    const auto destroy = [this](auto signal) {
        Build destroyed(root);
        destroyed.on(signal, [&] { destroyed.builder.reset(); });
        EXPECT_FALSE(destroyed.run());
        EXPECT_FALSE(destroyed.builder);
    };
    destroy(&ScriptBuilder::buildFinished); // there are no scripts yet
    writeText(scripts / "A.cpp");
    destroy(&ScriptBuilder::buildStarted);
    install("cmake", "exit 0");
    destroy(&ScriptBuilder::buildFinished);
    QTimer::singleShot(0, build.builder.get(), [this] { build.builder.reset(); });
    EXPECT_FALSE(build.run()) << "while it is waited for";
    EXPECT_EQ(running(), test::Lines{});
}

TEST_F(ScriptBuilderTest, AWaitEndsAtItsLimitAndTheBuildGoesOn) {
    install("cmake", "[ $1 = --build ] || read < " + (home / "gate").string());
    ASSERT_EQ(::mkfifo((home / "gate").c_str(), 0600), 0);
    writeText(scripts / "A.cpp");
    QTimer::singleShot(0, build.builder.get(), [&] {
        QString error;
        EXPECT_FALSE(build.builder->buildBlocking(&error, 1));
        EXPECT_EQ(error, QStringLiteral("script build timed out"));
        writeText(home / "gate", "\n");
    });
    EXPECT_TRUE(build.run());
}

TEST_F(ScriptBuilderTest, EveryChangeOfSourcesIsBuiltOnce) {
    install("cmake", "exit 0");
    qputenv("PATH", qgetenv("PATH") + ":" + path);
    // A change, one that follows it, and an edit of a file that is there then; where empty, one of no source.
    const struct {
        const char* name;
        std::string changes[3];
    } cases[] = {
        {"300 files", {"echo >Scripts/A.cpp", "echo >Scripts/ai/299.cpp", "echo >Scripts/A.cpp"}},
        {"atomic save",
         {"echo >Scripts/ai/new; mv Scripts/ai/new Scripts/ai/1.cpp", "", "echo >Scripts/ai/1.cpp"}},
        {"source new and gone", {"echo >Scripts/ai/B.cpp", "rm Scripts/ai/B.cpp", "echo >Scripts/A.cpp"}},
        {"new folders", {"mkdir -p Scripts/a/b; echo >Scripts/a/b/B.cpp", "", "echo >Scripts/a/b/B.cpp"}},
        {"folder renamed", {"mv Scripts/ai Scripts/bi", "", "echo >Scripts/bi/deep/D.hpp"}},
        {"folder replaced", {"mv Scripts/ai old; mv spare Scripts/ai", "", "echo >Scripts/ai/1.cpp"}},
        {"all replaced", {"mv Scripts old; mv spare Scripts", "", "echo >Scripts/1.cpp"}},
        {"all renamed", {"mv Scripts old", "mv old Scripts", "echo >Scripts/ai/deep/D.hpp"}},
        {"all removed", {"rm -r Scripts", "", "mkdir -p Scripts; echo >Scripts/A.cpp"}},
    };
    const auto shell = [this](const std::string& folder, const std::string& line) {
        EXPECT_EQ(std::system(("cd '" + (home / folder).string() + "' && { " + line + "; }").c_str()), 0)
            << line;
    };
    std::vector<std::unique_ptr<Build>> builds;
    for (const auto& row : cases) {
        builds.push_back(std::make_unique<Build>(home / row.name));
        builds.back()->builder->setWatching(true);
        shell(row.name,
              "mkdir -p Scripts/ai/deep spare; touch Scripts/A.cpp Scripts/ai/deep/D.hpp spare/1.cpp; "
              "cd Scripts/ai; seq -f %g.cpp 300 | xargs touch");
    }
    pumpQuietly();
    for (std::size_t phase = 0; phase < 4; ++phase) {
        for (std::size_t i = 0; i < builds.size(); ++i) {
            if (phase == 3)
                builds[i]->builder->setWatching(false);
            builds[i]->started = 0;
            const std::string& change = cases[i].changes[std::min<std::size_t>(phase, 2)];
            shell(cases[i].name, change.empty() ? "mkdir -p Saved; echo >project.json" : change);
        }
        pumpQuietly();
        for (std::size_t i = 0; i < builds.size(); ++i)
            EXPECT_EQ(builds[i]->started, phase < 3 && !cases[i].changes[phase].empty() ? 1 : 0)
                << cases[i].name << phase;
    }
}

} // namespace
} // namespace tarvik::app
