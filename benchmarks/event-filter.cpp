// How many instructions viewports add to an event of the application that is none of their business. Counted,
// not timed: the same on every machine, whatever else it does.
#include "Compare.hpp"

#include <QCoreApplication>
#include <QProcess>
#include <QRegularExpression>
#include <QString>

#include <stdexcept>

namespace tarvik::bench {
namespace {

constexpr int kEvents = 20'000;
constexpr double kBudget = 100.0; // instructions

double instructions(int viewports, int events) {
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral("valgrind"),
                  {QStringLiteral("--tool=callgrind"), QStringLiteral("--callgrind-out-file=/dev/null"),
                   QCoreApplication::applicationDirPath() + QStringLiteral("/send-events"),
                   QString::number(viewports), QString::number(events)});
    process.waitForFinished(-1);
    const QString output = QString::fromLocal8Bit(process.readAllStandardError());
    static const QRegularExpression collected(QStringLiteral(R"(Collected : (\d+))"));
    const auto match = collected.match(output);
    if (process.exitCode() != 0 || !match.hasMatch())
        throw std::runtime_error("send-events under valgrind: " +
                                 (process.errorString() + output).right(500).toStdString());
    return match.captured(1).toDouble();
}

// Of one event.
double cost(int viewports, int events) {
    return (instructions(viewports, events) - instructions(viewports, 0)) / events;
}

void perViewport(benchmark::State& state) {
    const auto viewports = static_cast<int>(state.range(0));
    for ([[maybe_unused]] auto _ : state) {
        const double without = cost(0, kEvents);
        const double added = (cost(viewports, kEvents) - without) / viewports;
        state.counters["ratio"] = added / kBudget;
        state.counters["goal"] = 1.0;
        state.counters["instructions_added"] = added;
        state.counters["instructions_without"] = without;
    }
}
BENCHMARK(perViewport)->Name("event filter / 100 instructions")->ArgName("viewports")->Arg(1)->Arg(8);

void growth(benchmark::State& state) {
    for ([[maybe_unused]] auto _ : state) {
        state.counters["ratio"] = cost(1, 10 * kEvents) / cost(1, kEvents);
        state.counters["goal"] = 1.05;
    }
}
BENCHMARK(growth)->Name("an event of 200,000 / of 20,000, with a viewport");

} // namespace
} // namespace tarvik::bench

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    tarvik::bench::run(argc, argv);
}
