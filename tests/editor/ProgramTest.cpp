#include <tarvik/app/Paths.hpp>
#include <tarvik/core/JsonFile.hpp>
#include <tarvik/project/Project.hpp>
#include <tarvik/scene/SceneFile.hpp>

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

#include <functional>
#include <optional>
#include <ostream>
#include <utility>

namespace tarvik::editor {
namespace {

struct Ended {
    int status;
    std::string errors;
};

std::optional<QByteArray> content(const QString& file) {
    QFile in(file);
    return in.open(QIODevice::ReadOnly) ? std::optional(in.readAll()) : std::nullopt;
}

// The real program, in a home of its own.
class ProgramTest : public testing::Test {
protected:
    [[nodiscard]] QString path(const QString& name) const { return folder_.filePath(name); }

    [[nodiscard]] Ended run(const QStringList& arguments) const {
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* name : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
            environment.insert(name, path("home"));
        program.setProcessEnvironment(environment);
        program.start(TARVIK_EDITOR, arguments);
        if (!program.waitForFinished(100'000) || program.exitStatus() != QProcess::NormalExit) {
            program.kill();
            program.waitForFinished();
            return {-1, program.errorString().toStdString()};
        }
        return {program.exitCode(), program.readAllStandardError().toStdString()};
    }

    static void write(const QString& file, const QByteArray& content) {
        QFile out(file);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly)) << file.toStdString();
        out.write(content);
    }

    // A project with one red box before the camera.
    void makeProject(const QString& root) const {
        auto project = Project::create(app::toPath(root), "Test");
        ASSERT_TRUE(project) << project.error().message;
        Scene scene("Main");
        Entity box;
        box.mesh = Mesh::Cube;
        box.colour = {220, 20, 20};
        scene.add(std::move(box));
        ASSERT_TRUE(saveScene(scene, project->contentDir() / "Main.lscene"));
        project->setDefaultScene("Content/Main.lscene");
        ASSERT_TRUE(project->save());
    }

private:
    QTemporaryDir folder_;
};

using Damage = std::function<void(const QString& root)>;

struct BadCase {
    const char* name;
    Damage damage;
    const char* file; // that the message must name
    QStringList arguments;
};

std::ostream& operator<<(std::ostream& out, const BadCase& bad) {
    return out << bad.name;
}

Damage put(const char* file, const QByteArray& content) {
    return [=](const QString& root) {
        QFile out(root + '/' + file);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(content);
    };
}

Damage putLong(const char* file, const QByteArray& start, const QByteArray& part, int times) {
    return [=](const QString& root) {
        put(file, start + part.repeated(times))(root);
    };
}

Damage makeFolderOf(const char* file) {
    return [=](const QString& root) {
        QFile::remove(root + '/' + file);
        QDir().mkpath(root + '/' + file);
    };
}

Damage removeFile(const char* file) {
    return [=](const QString& root) {
        QFile::remove(root + '/' + file);
    };
}

constexpr const char* kProject = "project.json";
constexpr const char* kScene = "Content/Main.lscene";

class BadInput : public ProgramTest, public testing::WithParamInterface<BadCase> {};

TEST_P(BadInput, FailsNamingTheFileAndLosesNothing) {
    const BadCase& bad = GetParam();
    const QString root = path(QString::fromUtf8("a \"ü\" 😀\n<b>"));
    ASSERT_NO_FATAL_FAILURE(makeProject(root));
    ASSERT_NO_FATAL_FAILURE(bad.damage(root));
    const auto before = content(root + '/' + bad.file);

    const Ended ended = run(QStringList{"--project", root, "--frames", "1", "--quiet"} + bad.arguments);
    EXPECT_EQ(ended.status, 1) << ended.errors;
    EXPECT_NE(ended.errors.find(bad.file), std::string::npos) << ended.errors;
    EXPECT_TRUE(content(root + '/' + bad.file) == before);
}

INSTANTIATE_TEST_SUITE_P(
    Table, BadInput,
    testing::Values(
        BadCase{"ProjectMissing", removeFile(kProject), kProject, {}},
        BadCase{"ProjectIsFolder", makeFolderOf(kProject), kProject, {}},
        BadCase{"ProjectEmpty", put(kProject, ""), kProject, {}},
        BadCase{"ProjectTruncated", put(kProject, "{\n  \"name\": \"Te"), kProject, {}},
        BadCase{"ProjectOfWrongType", put(kProject, R"({"name": 7})"), kProject, {}},
        BadCase{"ProjectDeeplyNested", putLong(kProject, "{\"a\":", "[", 1'000'000), kProject, {}},
        BadCase{"ProjectOf100MB", putLong(kProject, "{\"name\":\"", "0123456789", 10'000'000), kProject, {}},
        BadCase{"SceneMissing", removeFile(kScene), kScene, {}},
        BadCase{"SceneIsFolder", makeFolderOf(kScene), kScene, {}},
        BadCase{"SceneEmpty", put(kScene, ""), kScene, {}},
        BadCase{"SceneTruncated", put(kScene, "{\"entities\": [{\"na"), kScene, {}},
        BadCase{"SceneOfWrongType", put(kScene, R"({"entities": {"name": []}})"), kScene, {}},
        BadCase{"SceneDeeplyNested", putLong(kScene, "{\"entities\":", "[", 1'000'000), kScene, {}},
        BadCase{"SceneOf100MB", putLong(kScene, "{\"name\":\"", "0123456789", 10'000'000), kScene, {}},
        BadCase{"SceneOutside", [](const QString&) {}, "../../etc/passwd", {"--scene", "../../etc/passwd"}},
        BadCase{"PlayedSceneEmpty", put(kScene, ""), kScene, {"--play"}}),
    [](const auto& bad) { return std::string(bad.param.name); });

TEST_F(ProgramTest, ASceneReachedThroughALinkOutOfTheProjectIsRefused) {
    ASSERT_NO_FATAL_FAILURE(makeProject(path("other")));
    ASSERT_NO_FATAL_FAILURE(makeProject(path("project")));
    ASSERT_TRUE(QFile::link(path("other/Content"), path("project/Linked")));
    const Ended ended = run({path("project"), "--scene", "Linked/Main.lscene", "--frames", "1", "--quiet"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_NE(ended.errors.find("Linked/Main.lscene: the scene lies outside"), std::string::npos)
        << ended.errors;
}

TEST_F(ProgramTest, WritesThePictureAndTheStatisticsOfAGoodProject) {
    ASSERT_NO_FATAL_FAILURE(makeProject(path("project")));
    for (const bool play : {false, true}) {
        QStringList arguments{path("project"), "--frames",    "3",
                              "--screenshot",  path("p.png"), "--stats",
                              path("s.json"),  "--size",      "800x600",
                              "--still",       "--camera",    "0,0,2",
                              "--look-at",     "0,0,0",       "--validation",
                              "--time-limit",  "90"};
        if (play)
            arguments += "--play";
        const Ended ended = run(arguments);
        ASSERT_EQ(ended.status, 0) << ended.errors;
        EXPECT_EQ(ended.errors.find("warn"), std::string::npos) << ended.errors;
        const QImage picture(path("p.png"));
        ASSERT_EQ(picture.size(), QSize(800, 600));
        int red = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) {
                const QColor colour = picture.pixelColor(x, y);
                red += colour.red() > 2 * colour.green() && colour.red() > 60 ? 1 : 0;
            }
        }
        EXPECT_GT(red, 800 * 600 / 30);
        const auto statistics = readJsonFile(app::toPath(path("s.json")));
        ASSERT_TRUE(statistics) << statistics.error().message;
        EXPECT_GE((*statistics)["frames"], 3);
        EXPECT_GT((*statistics)["firstFrameMs"], 0.0);
    }
}

TEST_F(ProgramTest, APictureThatCannotBeWrittenFailsWithTheReason) {
    ASSERT_NO_FATAL_FAILURE(makeProject(path("project")));
    const QString picture = path("no such folder/p.png");
    const Ended ended = run({path("project"), "--screenshot", picture, "--quiet"});
    EXPECT_EQ(ended.status, 1);
    EXPECT_NE(ended.errors.find(picture.toStdString()), std::string::npos) << ended.errors;
}

TEST_F(ProgramTest, ABrokenListOfRecentProjectsIsKeptAsideAndDoesNotStopTheEditor) {
    ASSERT_NO_FATAL_FAILURE(makeProject(path("project")));
    ASSERT_TRUE(QDir().mkpath(path("home/tarvik")));
    const QString list = path("home/tarvik/recent-projects.json");
    ASSERT_NO_FATAL_FAILURE(write(list, "{ \"projects\": [1,"));
    const Ended ended = run({path("project"), "--frames", "1"});
    EXPECT_EQ(ended.status, 0) << ended.errors;
    EXPECT_NE(ended.errors.find("recent-projects.json"), std::string::npos) << ended.errors;
    EXPECT_EQ(content(list + ".corrupt-1"), "{ \"projects\": [1,");
}

TEST_F(ProgramTest, TheTimeLimitEndsARunThatNeverGetsItsFrames) {
    ASSERT_NO_FATAL_FAILURE(makeProject(path("project")));
    const Ended ended = run({path("project"), "--frames", "1000000", "--time-limit", "1", "--quiet"});
    EXPECT_EQ(ended.status, 3);
    EXPECT_NE(ended.errors.find("--time-limit"), std::string::npos) << ended.errors;
}

} // namespace
} // namespace tarvik::editor
