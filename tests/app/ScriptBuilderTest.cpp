#include "LogCapture.hpp"
#include "Pump.hpp"
#include "TemporaryFolder.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/app/ScriptBuilder.hpp>

#include <gtest/gtest.h>

#include <QElapsedTimer>

#include <algorithm>
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

// So that what must not happen gets time to: longer than the end of a burst of changes is waited for.
void pumpQuietly() {
    QElapsedTimer timer;
    timer.start();
    pumpUntil([&] { return timer.hasExpired(600); });
}

void write(const fs::path& file, std::string_view text = "") {
    fs::create_directories(file.parent_path());
    test::writeText(file, text);
}

// A project, its builder and what the builder said.
struct Build {
    fs::path root;
    std::unique_ptr<ScriptBuilder> builder = std::make_unique<ScriptBuilder>(toQString(root));
    int started = 0;
    std::vector<bool> finished;
    std::string output;

    explicit Build(fs::path folder) : root(std::move(folder)) {
        QObject::connect(builder.get(), &ScriptBuilder::buildStarted, builder.get(), [this] { ++started; });
        QObject::connect(builder.get(), &ScriptBuilder::buildFinished, builder.get(),
                         [this](bool ok, auto& text) {
                             finished.push_back(ok);
                             output = text.toStdString();
                         });
    }
    bool run() { return builder->buildBlocking(nullptr, 60'000); }
};

class ScriptBuilderTest : public testing::Test {
protected:
    ScriptBuilderTest() { qputenv("TARVIK_TEST_MARK", home.path().string().c_str()); }
    ~ScriptBuilderTest() override { qputenv("PATH", path); }

    // A stand-in, and no other program than those installed so.
    void install(const char* program, const std::string& script) {
        write(home / "bin" / program, "#!/bin/bash\n" + script + "\n");
        fs::permissions(home / "bin" / program, fs::perms::owner_all);
        qputenv("PATH", (home / "bin").string().c_str());
    }
    // Command lines of all that was started from here and still runs.
    [[nodiscard]] test::Lines running(std::string_view program = "") const {
        test::Lines found;
        for (const auto& entry : fs::directory_iterator("/proc")) {
            const std::string line = readText(entry.path() / "cmdline");
            if (line.contains(program) &&
                readText(entry.path() / "environ").contains("TARVIK_TEST_MARK=" + home.path().string()))
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
};

TEST_F(ScriptBuilderTest, NewBehavioursAreNamedAndWrittenOnce) {
    ScriptBuilder builder(toQString(root));
    QString error;
    const auto refused = [&](const char* name) {
        EXPECT_FALSE(builder.createBehaviour(QString::fromLatin1(name), &error));
        return error.toStdString();
    };
    for (const std::string name : {"1A", "My Behaviour", "a-b", ""})
        EXPECT_EQ(refused(name.c_str()), "'" + name + "' is not a valid C++ class name.");
    EXPECT_FALSE(fs::exists(root));
    ASSERT_TRUE(builder.createBehaviour(QStringLiteral("Spinner"), nullptr));
    const std::string text = readText(scripts / "Spinner.cpp");
    EXPECT_EQ(text.size(), 674U);
    EXPECT_EQ(refused("Spinner"), (scripts / "Spinner.cpp").string() + " already exists.");
    EXPECT_EQ(readText(scripts / "Spinner.cpp"), text);
    const test::FileSizeLimit fullDisk(100);
    EXPECT_TRUE(refused("_tmp").starts_with("cannot write " + (scripts / "_tmp.cpp").string() + ": "))
        << error.toStdString();
}

TEST_F(ScriptBuilderTest, RealBuildsFailAndRecover) {
    Build build(root);
    build.builder->createBehaviour(QStringLiteral("Spinner"), nullptr);
    ASSERT_TRUE(build.run()) << build.output;
    EXPECT_TRUE(build.output.contains("Linking")) << "the second step's output is missing";
    EXPECT_TRUE(fs::exists(toPath(build.builder->libraryPath())));
    EXPECT_EQ(readText(tree / "src/CMakeLists.txt").size(), 1327U);
    EXPECT_EQ(readText(tree / "src/tarvik_module.cpp").size(), 107U);
    const auto written = fs::last_write_time(tree / "src/tarvik_module.cpp");
    write(tree / "src/CMakeLists.txt", "edited");

    write(scripts / "A.cpp", "int twice() { return 1; }\n");
    for (const auto& [text, message] : {std::pair{"#error " + std::string(5000, 'x') + "\n", "#error"},
                                        {"int twice() { return 2; }\n", "multiple definition"}}) {
        write(scripts / "ai/B.cpp", text);
        EXPECT_FALSE(build.run()) << message;
        EXPECT_TRUE(build.output.contains(message)) << build.output;
    }
    const QString line = QString::fromStdString(log.lines(LogLevel::Warn, "Script").front());
    EXPECT_TRUE(line.startsWith(QStringLiteral("script build failed:\n")));
    EXPECT_EQ(line.size(), 4021);

    fs::remove(scripts / "A.cpp");
    EXPECT_TRUE(build.run()) << build.output;
    EXPECT_EQ(readText(tree / "src/CMakeLists.txt").size(), 1327U) << "an edited file was kept";
    EXPECT_EQ(fs::last_write_time(tree / "src/tarvik_module.cpp"), written) << "a current file was written";
}

TEST_F(ScriptBuilderTest, EveryFailureSaysWhatIsWrong) {
    const struct {
        std::function<void()> prepare;
        std::string output;
    } cases[] = {
        {[] {}, "No scripts: add .cpp files to " + scripts.string() + "."},
        {[&] {
             write(scripts / "ai/deep/Enemy.cpp");
             qputenv("PATH", home.path().string().c_str());
         },
         "CMake was not found. Install CMake and a C++20 compiler (GCC, Clang or Visual Studio) to build "
         "scripts."},
        {[&] {
             install("cmake", "/bin/rm $0; echo configured"); // gone before the second step
             write(tree);
         },
         "cannot create " + tree.string()},
        {[&] { fs::remove(tree), fs::create_directories(tree / "src/CMakeLists.txt"); },
         "cannot write " + (tree / "src/CMakeLists.txt").string() + ": "},
        {[&] { fs::remove(tree / "src/CMakeLists.txt"); }, "configured\ncannot start cmake: "},
        {[&] { install("cmake", "kill -9 $$"), write(home / "bin/cmake", "#!/nowhere\n"); },
         "cannot start cmake: "},
        {[&] { install("cmake", "echo oops; kill -9 $$"); }, "oops\n"},
    };
    Build build(root);
    for (const auto& [prepare, output] : cases) {
        prepare();
        build.finished.clear();
        EXPECT_FALSE(build.run()) << output;
        EXPECT_EQ(build.finished, std::vector{false}) << output;
        EXPECT_TRUE(build.output.starts_with(output)) << build.output;
        EXPECT_FALSE(build.builder->busy()) << output;
    }
    EXPECT_EQ(log.lines(LogLevel::Warn, "Script").size(), std::size(cases));
}

TEST_F(ScriptBuilderTest, TheGeneratorIsChosenOncePerTree) {
    install("cmake", "[ $1 = --build ] || echo \"${@:9} \"");
    Build build(root);
    write(scripts / "A.cpp");
    const auto generator = [&] {
        EXPECT_TRUE(build.run());
        return build.output;
    };
    EXPECT_EQ(generator(), " \n") << "without ninja";
    install("ninja", "");
    EXPECT_EQ(generator(), "-G Ninja \n");
    write(tree / "obj/CMakeCache.txt");
    EXPECT_EQ(generator(), " \n") << "in a tree that has one";
}

TEST_F(ScriptBuilderTest, RequestsDuringABuildGiveOneMore) {
    install("cmake", "exit 0");
    Build build(root);
    write(scripts / "A.cpp");
    const auto nested = QObject::connect(build.builder.get(), &ScriptBuilder::buildStarted,
                                         build.builder.get(), &ScriptBuilder::build);
    build.builder->build();
    QObject::disconnect(nested);
    for (int i = 0; i < 10; ++i)
        build.builder->build();
    ASSERT_TRUE(pumpUntil([&] { return build.finished.size() == 2; }));
    pumpQuietly();
    EXPECT_EQ(build.started, 2);
}

// The odd first byte lays a character across every even boundary at which the output can be cut.
TEST_F(ScriptBuilderTest, CharactersCutInTwoComeOutWhole) {
    install("cmake", "[ $1 = -S ] || (printf x; printf '\\303\\274%.0s' {1..99999})");
    Build build(root);
    write(scripts / "A.cpp");
    ASSERT_TRUE(build.run());
    EXPECT_EQ(build.output.size(), 199'999U);
}

TEST_F(ScriptBuilderTest, ABuilderThatGoesLeavesNoProcess) {
    const std::string sleepers = "set -m; trap '' TERM; /bin/sleep 999 & /bin/sleep 999 & trap - TERM; ";
    const struct {
        const char* when;
        std::string cmake; // the real one where empty
        const char* program;
        std::size_t runs; // so often then
    } cases[] = {
        {"before its start", sleepers + "wait", "sleep", 0},
        {"configuring", sleepers + "wait", "sleep", 2},
        {"building", "[ $1 = -S ] && exit; " + sleepers + "wait", "sleep", 2},
        {"compiling", "", "cc1plus", 1},
        {"its leader gone", sleepers, "sleep", 2},
    };
    for (const auto& [when, cmake, program, runs] : cases) {
        SCOPED_TRACE(when);
        qputenv("PATH", path);
        if (!cmake.empty())
            install("cmake", cmake);
        Build build(root);
        write(scripts / "Slow.cpp", "#include <regex>\nstd::regex expression(\"x\");\n");
        build.builder->build();
        // The builder must not hear of its leader's end.
        while (cmake == sleepers && running().size() + running(program).size() != 4)
            continue;
        EXPECT_TRUE(cmake == sleepers || pumpUntil([&] { return running(program).size() == runs; }));
        QElapsedTimer timer;
        timer.start();
        build.builder.reset();
        EXPECT_LT(timer.elapsed(), 3000);
        EXPECT_EQ(running(), test::Lines{});
        EXPECT_TRUE(build.finished.empty());
        EXPECT_EQ(log.lines(LogLevel::Warn), test::Lines{});
    }
}

TEST_F(ScriptBuilderTest, ReceiversMayDestroyTheBuilder) {
    const auto destroy = [this](auto signal) {
        Build build(root);
        QObject::connect(build.builder.get(), signal, build.builder.get(), [&] { build.builder.reset(); });
        EXPECT_FALSE(build.run());
        EXPECT_FALSE(build.builder);
    };
    destroy(&ScriptBuilder::buildFinished); // there are no scripts yet
    write(scripts / "A.cpp");
    destroy(&ScriptBuilder::buildStarted);
    for (const char* cmake : {"exit 0", "exit 1"}) {
        install("cmake", cmake);
        destroy(&ScriptBuilder::buildFinished);
    }
    Build build(root);
    QTimer::singleShot(0, build.builder.get(), [&] { build.builder.reset(); });
    EXPECT_FALSE(build.run()) << "while it is waited for";
    EXPECT_EQ(running(), test::Lines{});
}

TEST_F(ScriptBuilderTest, AWaitEndsAtItsLimitAndTheBuildGoesOn) {
    install("cmake", "[ $1 = --build ] || read < " + (home / "gate").string());
    ASSERT_EQ(::mkfifo((home / "gate").c_str(), 0600), 0);
    Build build(root);
    write(scripts / "A.cpp");
    QString error;
    QTimer::singleShot(0, build.builder.get(), [&] {
        EXPECT_FALSE(build.builder->buildBlocking(&error, 1));
        write(home / "gate", "\n");
    });
    EXPECT_TRUE(build.run());
    EXPECT_EQ(error, QStringLiteral("script build timed out"));
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
        {"source deleted", {"rm Scripts/A.cpp", "echo >Scripts/A.cpp", "echo >Scripts/A.cpp"}},
        {"new folders", {"mkdir -p Scripts/a/b; echo >Scripts/a/b/B.cpp", "", "echo >Scripts/a/b/B.cpp"}},
        {"folder renamed", {"mv Scripts/ai Scripts/bi", "", "echo >Scripts/bi/deep/D.hpp"}},
        {"folder replaced", {"mv Scripts/ai old; mv spare Scripts/ai", "", "echo >Scripts/ai/1.cpp"}},
        {"all replaced", {"mv Scripts old; mv spare Scripts", "", "echo >Scripts/1.cpp"}},
        {"all renamed", {"mv Scripts old", "mv old Scripts", "echo >Scripts/ai/deep/D.hpp"}},
        {"all removed", {"rm -r Scripts", "", "mkdir -p Scripts; echo >Scripts/A.cpp"}},
    };
    std::vector<std::unique_ptr<Build>> builds;
    const auto shell = [&](std::size_t i, const std::string& line) {
        EXPECT_EQ(std::system(("cd '" + builds[i]->root.string() + "' && { " + line + "; }").c_str()), 0)
            << line;
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        builds.push_back(std::make_unique<Build>(home / cases[i].name));
        fs::create_directory(builds[i]->root);
        shell(i,
              "mkdir -p Scripts/ai/deep spare; cd Scripts/ai; touch ../A.cpp deep/D.hpp ../../spare/1.cpp; "
              "seq -f %g.cpp 300 | xargs touch");
        builds[i]->builder->setWatching(true);
    }
    for (std::size_t phase = 0; phase < 4; ++phase) {
        for (std::size_t i = 0; i < builds.size(); ++i) {
            if (phase == 3)
                builds[i]->builder->setWatching(false);
            builds[i]->started = 0;
            const std::string& change = cases[i].changes[std::min<std::size_t>(phase, 2)];
            shell(i, change.empty() ? "mkdir -p Saved; echo >project.json" : change);
        }
        pumpQuietly();
        for (std::size_t i = 0; i < builds.size(); ++i)
            EXPECT_EQ(builds[i]->started, phase < 3 && !cases[i].changes[phase].empty() ? 1 : 0)
                << cases[i].name << phase;
    }
}

TEST_F(ScriptBuilderTest, WhatCannotBeWatchedIsToldOnce) {
    fs::path deep = scripts;
    while (deep.string().size() < 4070)
        deep /= std::string(std::min<std::size_t>(200, 4085 - deep.string().size()), 'x');
    fs::create_directories(deep);
    const fs::path before = fs::current_path();
    fs::current_path(deep);
    test::writeText("longer-than-a-path-can-be.cpp", "");
    fs::current_path(before);
    ScriptBuilder builder(toQString(root));
    builder.setWatching(true);
    builder.setWatching(true);
    EXPECT_EQ(log.lines(LogLevel::Warn, "Script"),
              test::Lines{"cannot watch " + (deep / "longer-than-a-path-can-be.cpp").string()});
}

} // namespace
} // namespace tarvik::app
