// How long a changed behaviour takes until its module is built: the script builder, against the two commands
// that it comes down to, run one after the other in a tree of the same kind.
#include "Compare.hpp"

#include <tarvik/app/ScriptBuilder.hpp>

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <stdexcept>

namespace tarvik::bench {
namespace {

constexpr int kPatienceMs = 60'000;

void expect(bool held, const QString& output) {
    if (!held)
        throw std::runtime_error("the build failed: " + output.toStdString());
}

// A project with one behaviour, built once: what is left is what a change makes necessary.
class GameProject final {
public:
    GameProject() : builder_(folder_.path()) {
        QString output;
        expect(builder_.createBehaviour(QStringLiteral("Spinner"), &output), output);
        build();
    }

    double buildChange() {
        change();
        const auto start = Clock::now();
        build();
        return nanoseconds(Clock::now() - start);
    }

    double runCommands() {
        change();
        const QString tree = builder_.buildDir() + QStringLiteral("/obj");
        const auto start = Clock::now();
        runCMake(
            {QStringLiteral("-S"), builder_.buildDir() + QStringLiteral("/src"), QStringLiteral("-B"), tree});
        runCMake({QStringLiteral("--build"), tree});
        return nanoseconds(Clock::now() - start);
    }

private:
    void build() {
        QString output;
        expect(builder_.buildBlocking(&output, kPatienceMs), output);
    }

    void change() {
        QFile source(builder_.scriptsDir() + QStringLiteral("/Spinner.cpp"));
        expect(source.open(QIODevice::Append) && source.write("// another line\n") > 0, source.errorString());
    }

    static void runCMake(const QStringList& arguments) {
        QProcess cmake;
        cmake.start(QStringLiteral("cmake"), arguments);
        expect(cmake.waitForFinished(kPatienceMs) && cmake.exitCode() == 0, cmake.errorString());
    }

    QTemporaryDir folder_;
    app::ScriptBuilder builder_;
};

void behaviourRebuild(benchmark::State& state) {
    try {
        GameProject subject;
        GameProject reference;
        compare(state, 20, 1.1,
                inTurn([&] { return subject.buildChange(); }, [&] { return reference.runCommands(); }));
    } catch (const std::exception& e) {
        state.SkipWithError(e.what());
    }
}
BENCHMARK(behaviourRebuild)->Name("a changed behaviour / bare CMake");

} // namespace
} // namespace tarvik::bench

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    tarvik::bench::run(argc, argv);
}
