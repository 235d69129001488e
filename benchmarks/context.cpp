// What constructing the application context adds to the start of a program, against the QApplication that the
// same process constructs before it.
#include "Compare.hpp"
#include "Program.hpp"

#include <tarvik/project/ProjectRegistry.hpp>

#include <QTemporaryDir>

#include <fmt/format.h>

namespace tarvik::bench {
namespace {

constexpr int kRecentProjects = 20;

// A context of a user who has worked with the program reads a list of recent projects.
void writeRecentProjects() {
    const auto file = ProjectRegistry::defaultStorageFile();
    std::filesystem::create_directories(file.parent_path());
    ProjectRegistry registry(file);
    for (int i = 0; i < kRecentProjects; ++i)
        registry.touch(fmt::format("/projects/number {}", i), fmt::format("Number {}", i));
    if (const auto saved = registry.save(); !saved)
        throw std::runtime_error(saved.error().message);
}

void context(benchmark::State& state) {
    try {
        compare(state, 30, 0.1, [] {
            const QList<QByteArray> words =
                runProgram(QStringLiteral("start-context")).line.trimmed().split(' ');
            return Costs{.subject = words.value(1).toDouble(), .reference = words.value(0).toDouble()};
        });
    } catch (const std::exception& e) {
        state.SkipWithError(e.what());
    }
}
BENCHMARK(context)->Name("AppContext / QApplication construction");

} // namespace
} // namespace tarvik::bench

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QTemporaryDir data;
    qputenv("XDG_DATA_HOME", data.path().toLocal8Bit());
    tarvik::bench::writeRecentProjects();
    tarvik::bench::run(argc, argv);
}
