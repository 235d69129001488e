// What the theme costs the start of the editor: installing it, then showing and painting the window, against
// the same window without it.
#include "Compare.hpp"
#include "Program.hpp"

#include <QTemporaryDir>

namespace tarvik::bench {
namespace {

double firstPaint(const QStringList& arguments) {
    return runProgram(QStringLiteral("start-window"), arguments).line.toDouble();
}

void theme(benchmark::State& state) {
    try {
        compare(state, 30, 1.3,
                inTurn([] { return firstPaint({QStringLiteral("theme")}); }, [] { return firstPaint({}); }));
    } catch (const std::exception& e) {
        state.SkipWithError(e.what());
    }
}
BENCHMARK(theme)->Name("theme and first paint of the editor / without theme");

} // namespace
} // namespace tarvik::bench

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    const QTemporaryDir home;
    for (const char* name : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"})
        qputenv(name, home.path().toLocal8Bit());
    tarvik::bench::run(argc, argv);
}
