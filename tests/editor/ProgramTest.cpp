#include "RedBoxProject.hpp"
#include "TemporaryFolder.hpp"

#include <tarvik/core/JsonFile.hpp>

#include <gtest/gtest.h>

#include <QDeadlineTimer>
#include <QImage>
#include <QProcess>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <utility>
#include <vector>

namespace tarvik::editor {
namespace {

namespace fs = std::filesystem;
using test::makeRedBoxProject;

// The real program, in a home of its own.
class ProgramTest : public testing::Test {
protected:
    [[nodiscard]] std::string path(const std::string& name) const { return folder_ / name; }

    void start(QProcess& program, const std::vector<std::string>& arguments) const {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
            environment.insert(name, QString::fromStdString(path("home")));
        program.setProcessEnvironment(environment);
        QStringList texts;
        for (const std::string& argument : arguments)
            texts += QString::fromStdString(argument);
        program.start(TARVIK_EDITOR, texts);
    }

    // Its status; -1 for a crash, and when it does not end.
    static int end(QProcess& program) {
        const bool ended = program.waitForFinished(100'000);
        return ended && program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -1;
    }

    // Returns what the run told on standard error. A success warns of nothing.
    std::string expectEnd(const std::vector<std::string>& arguments, int status,
                          const std::string& reason = "") {
        QProcess program;
        start(program, arguments);
        const int actual = end(program);
        std::string errors = program.readAllStandardError().toStdString();
        EXPECT_EQ(actual, status) << errors;
        EXPECT_FALSE(status == 0 && errors.contains("warn")) << errors;
        EXPECT_TRUE(errors.contains(reason)) << errors;
        return errors;
    }

    // In the middle of the picture that a run has left.
    [[nodiscard]] bool showsTheBox() const {
        const QImage picture(QString::fromStdString(path("p.png")));
        EXPECT_EQ(picture.size(), QSize(800, 600));
        const QColor middle = picture.pixelColor(400, 300);
        return middle.red() > 60 && middle.red() > 2 * middle.green();
    }

private:
    test::TemporaryFolder folder_;
};

class BadFile : public ProgramTest, public testing::WithParamInterface<const char*> {};
INSTANTIATE_TEST_SUITE_P(Files, BadFile, testing::Values("project.json", "Content/Main.lscene"));

TEST_P(BadFile, IsNamedAndKept) {
    const std::string root = path("a \"ü\" 😀\n<b>");
    const std::string file = root + '/' + GetParam();
    makeRedBoxProject(root);
    const auto expectRefused = [&](const char* damage, const std::string& mode = "--quiet") {
        SCOPED_TRACE(damage);
        const std::string before = test::readText(file);
        expectEnd({"--project", root, "--frames", "1", mode}, 1, GetParam());
        EXPECT_TRUE(test::readText(file) == before);
    };
    const std::pair<const char*, std::string> damages[] = {
        {"empty", ""},
        {"truncated", "{\n  \"na"},
        {"of wrong type", R"({"name": 7, "entities": 7})"},
        {"deeply nested", "{\"name\":" + std::string(1'000'000, '[')},
        {"of 100 MB", "{\"name\":\"" + std::string(100'000'000, 'x')},
    };
    for (const auto& [damage, content] : damages) {
        test::writeText(file, content);
        expectRefused(damage);
    }
    fs::remove(file);
    expectRefused("missing", "--play");
    fs::create_directory(file);
    expectRefused("a folder");
}

TEST_F(ProgramTest, WritesThePictureAndTheStatisticsOfAGoodProject) {
    makeRedBoxProject(path("project"));
    for (const char* mode : {"--grid=on", "--play"}) {
        expectEnd({path("project"), "--frames", "3", "--screenshot", path("p.png"), "--stats", path("s.json"),
                   "--size", "800x600", "--still", "--camera", "0,0,2", "--look-at", "0,0,0", "--validation",
                   "--time-limit", "90", mode},
                  0);
        EXPECT_TRUE(showsTheBox());
        EXPECT_GE(readJsonFile(path("s.json")).value()["frames"], 3);
        EXPECT_FALSE(fs::exists(path("project/Saved/Thumbnail.png"))) << "nobody closed it";
    }
}

TEST_F(ProgramTest, LeavesThePictureOfTheProjectWhenItIsClosed) {
    makeRedBoxProject(path("project"));
    const QString picture = QString::fromStdString(path("project/Saved/Thumbnail.png"));
    for (const int status : {0, 128 + SIGTERM}) {
        QProcess program;
        start(program, {path("project"), "--still", "--camera", "0,0,2", "--look-at", "0,0,0"});
        QProcess::execute("xdotool", {"search", "--sync", "--onlyvisible", "--name", "Test – Tarvik",
                                      "windowfocus", "--sync", "key", status == 0 ? "ctrl+q" : "shift"});
        if (status != 0)
            program.terminate();
        EXPECT_EQ(end(program), status);
        EXPECT_EQ(QImage(picture).size(), QSize(640, 400)) << status;
        EXPECT_GT(QImage(picture).pixelColor(320, 200).red(), 60);
        fs::remove(path("project/Saved/Thumbnail.png"));
    }
}

TEST_F(ProgramTest, RunsThatCannotSucceedEndWithAReasonAndItsStatus) {
    makeRedBoxProject(path("project"));
    makeRedBoxProject(path("other"));
    fs::create_symlink(path("other/Content"), path("project/Linked"));
    const std::string picture = path("no such folder/p.png");
    expectEnd({path("project"), "--quiet", "--screenshot", picture}, 1, picture);
    expectEnd({path("project"), "--quiet", "--gpu", "99", "--frames", "1"}, 1,
              "there is no GPU with index 99");
    expectEnd({path("project"), "--quiet", "--frames", "1000000", "--time-limit", "1"}, 3, "--time-limit");
    for (const std::string scene : {"Linked/Main.lscene", "../other/Content/Main.lscene"})
        expectEnd({path("project"), "--scene", scene, "--frames", "1", "--quiet"}, 1,
                  scene + ": the scene lies outside");
}

TEST_F(ProgramTest, TheSampleOpensWithoutAComplaint) {
    expectEnd({TARVIK_SAMPLE, "--frames", "1", "--time-limit", "90"}, 0);
}

// Any window would need the platform plug-in that is not there.
class BuildTest : public ProgramTest {
protected:
    BuildTest() {
        makeRedBoxProject(path("project"), "Away");
        test::writeText(path("project/Scripts/A.cpp"), "#include <tarvik/Script.hpp>\n");
    }
    const std::vector<std::string> arguments_{"--build", "--project", path("project"), "-platform", "none"};
};

TEST_F(BuildTest, EndsWithWhetherTheBehavioursCompileAndWithTheDiagnosticsAlone) {
    expectEnd(arguments_, 0);
    EXPECT_TRUE(fs::exists(path("project/Saved/ScriptBuild/bin/game.so")));

    test::writeText(path("project/Scripts/B.cpp"), "int f() {\n    return g;\n}\n");
    const std::string errors = expectEnd(arguments_, 1);
    EXPECT_TRUE(errors.starts_with(path("project/Scripts/B.cpp:2:12: error: "))) << errors;
    EXPECT_EQ(std::ranges::count(errors, '\n'), 1) << errors;

    fs::copy(path("project"), path("[1]"), fs::copy_options::recursive); // CMake would find no sources there
    expectEnd({"--build", "--project", path("[1]"), "-platform", "none"}, 1, "takes for a pattern");

    fs::remove_all(path("project/Scripts"));
    expectEnd(arguments_, 1, "No scripts");
    fs::remove(path("project/project.json"));
    expectEnd(arguments_, 1, "no project can be opened in " + path("project"));
}

TEST_F(BuildTest, AMovedProjectBuildsAndPlaysButNotAgainACrash) {
    std::string root = path("project");
    const auto play = [&](const std::string& body, int status, const std::string& reason = "") {
        test::writeText(root + "/Scripts/A.cpp",
                        "#include <tarvik/Script.hpp>\n#include <cstdlib>\n"
                        "struct Away : tarvik::script::Behaviour { void update(float) override {" +
                            body + "} };\nTARVIK_BEHAVIOUR(Away);\n");
        expectEnd({root, "--play", "--frames", "3", "--screenshot", path("p.png"), "--size", "800x600",
                   "--camera", "0,0,2", "--look-at", "0,0,0", "--time-limit", "90"},
                  status, reason);
    };
    play("", 0);
    EXPECT_TRUE(showsTheBox());

    fs::rename(path("project"), path("moved"));
    root = path("moved");
    play("setPosition({0, 0, 9});", 0);
    EXPECT_FALSE(showsTheBox());

    play("std::_Exit(5);", 5);
    play("std::_Exit(5);", 1, "The behaviours were not loaded");
    play("setScale({2, 2, 2});", 0);
}

TEST_F(BuildTest, ASignalEndsTheCompilerToo) {
    const std::string pipe = path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    test::writeText(path("project/Scripts/A.cpp"), "#include \"" + pipe + "\"\n"); // it waits for more
    const auto openIfRead = [&] {
        return ::open(pipe.c_str(), O_WRONLY | O_NONBLOCK);
    };
    QProcess program;
    start(program, arguments_);
    int held = openIfRead();
    for (const QDeadlineTimer limit(20'000); held < 0 && !limit.hasExpired(); held = openIfRead())
        program.waitForFinished(1);
    ASSERT_GE(held, 0);
    program.terminate();
    EXPECT_EQ(end(program), 128 + SIGTERM);
    EXPECT_LT(openIfRead(), 0) << "the compiler is still there";
    ::close(held);
}

} // namespace
} // namespace tarvik::editor
