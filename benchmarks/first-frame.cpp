// How long a program takes from its start to its first presented frame: a viewport, against Qt's own Vulkan
// window that clears to a colour.
#include "Compare.hpp"
#include "Program.hpp"

#include <QTemporaryDir>

#include <optional>

namespace tarvik::bench {
namespace {

constexpr double kGoal = 1.3;

void firstFrame(benchmark::State& state, const char* program, const char* argument,
                std::optional<double> goal) {
    const auto timeOf = [](const char* name, const QStringList& arguments) {
        return [name = QString::fromLatin1(name), arguments] {
            return runProgram(name, arguments).nanoseconds;
        };
    };
    try {
        compare(state, 20, goal,
                inTurn(timeOf(program, {QString::fromLatin1(argument)}), timeOf("start-plain", {})));
    } catch (const std::exception& e) {
        state.SkipWithError(e.what());
    }
}
BENCHMARK_CAPTURE(firstFrame, empty, "start-viewport", "empty", kGoal)
    ->Name("first frame, empty scene / QVulkanWindow");
// What a scene adds, which the reference has nothing to set against.
BENCHMARK_CAPTURE(firstFrame, scene, "start-viewport", "scene", std::nullopt)
    ->Name("first frame, lit scene / QVulkanWindow");
// What a program pays that has the driver compile two short shaders.
BENCHMARK_CAPTURE(firstFrame, triangle, "start-plain", "triangle", std::nullopt)
    ->Name("first frame, triangle / QVulkanWindow");

} // namespace
} // namespace tarvik::bench

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    // Caches that the unmeasured run of each program fills, as on a machine that ran them before.
    const QTemporaryDir cache;
    qputenv("XDG_CACHE_HOME", cache.path().toLocal8Bit());
    tarvik::bench::run(argc, argv);
}
