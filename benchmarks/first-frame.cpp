// How long a program takes from its start to its first presented frame: a lit scene in a viewport, against
// Qt's own Vulkan window that clears to a colour.
#include "Compare.hpp"
#include "Program.hpp"

#include <QTemporaryDir>

namespace tarvik::bench {
namespace {

void firstFrame(benchmark::State& state) {
    const auto program = [](const QString& name) {
        return [name] {
            return runProgram(name).nanoseconds;
        };
    };
    try {
        compare(state, 20, 1.3,
                inTurn(program(QStringLiteral("start-viewport")), program(QStringLiteral("start-plain"))));
    } catch (const std::exception& e) {
        state.SkipWithError(e.what());
    }
}
BENCHMARK(firstFrame)->Name("first frame / QVulkanWindow");

} // namespace
} // namespace tarvik::bench

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    // Caches that the unmeasured run of each program fills, as on a machine that ran them before.
    const QTemporaryDir cache;
    qputenv("XDG_CACHE_HOME", cache.path().toLocal8Bit());
    tarvik::bench::run(argc, argv);
}
