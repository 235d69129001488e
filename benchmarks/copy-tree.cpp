// Exporting a game against "cp -a" of its project, on the file system of the temporary folder: the time for
// many small files and for a few large ones, and the system calls for a file.
#include "Compare.hpp"

#include <tarvik/app/GameExport.hpp>

#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace tarvik::bench {
namespace {

namespace fs = std::filesystem;

void exportProject(const fs::path& project, const fs::path& runtime, const fs::path& destination) {
    const auto exported = app::exportGame({project, "Game", destination, runtime, "", nullptr});
    if (!exported)
        throw std::runtime_error(exported.error().message);
}

QByteArray runProgram(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    if (!process.waitForFinished(-1) || process.exitCode() != 0)
        throw std::runtime_error((program + QStringLiteral(" failed")).toStdString());
    return process.readAllStandardOutput();
}

struct Shape {
    int folders;
    int files; // in each of them
    std::size_t size;
};

class Game final {
public:
    explicit Game(const Shape& shape) {
        fs::create_directories(runtime() / "bin");
        std::ofstream(runtime() / app::playerExecutable(app::hostPlatform())) << "player";
        for (int folder = 0; folder < shape.folders; ++folder) {
            const fs::path place = project() / "Content" / std::to_string(folder);
            fs::create_directories(place);
            // Unlike each other, so that no file system stores them once.
            for (int file = 0; file < shape.files; ++file) {
                std::ofstream out(place / (std::to_string(file) + ".asset"), std::ios::binary);
                std::string block(std::min<std::size_t>(shape.size, 1U << 20U),
                                  static_cast<char>('a' + file));
                for (std::size_t written = 0; written < shape.size; written += block.size()) {
                    block.replace(0, 1, 1, static_cast<char>(written >> 20U));
                    out.write(block.data(), static_cast<std::streamsize>(block.size()));
                }
            }
        }
    }

    [[nodiscard]] fs::path project() const { return root() / "project"; }
    [[nodiscard]] fs::path runtime() const { return root() / "runtime"; }
    [[nodiscard]] fs::path copy() const { return root() / "copy"; }

    // Into a place where nothing is.
    template <typename Copy>
    double timed(const Copy& makeCopy) const {
        fs::remove_all(copy());
        const auto start = Clock::now();
        makeCopy();
        return nanoseconds(Clock::now() - start);
    }

private:
    [[nodiscard]] fs::path root() const { return folder_.path().toStdString(); }

    QTemporaryDir folder_;
};

QStringList cp(const Game& game) {
    return {"cp", "-a", QString::fromStdString(game.project()), QString::fromStdString(game.copy())};
}

void compareTimes(benchmark::State& state, const Shape& shape, int rounds, double goal) {
    try {
        const Game game(shape);
        compare(state, rounds, goal,
                inTurn(
                    [&] {
                        return game.timed(
                            [&] { exportProject(game.project(), game.runtime(), game.copy()); });
                    },
                    [&] { return game.timed([&] { runProgram("cp", cp(game).mid(1)); }); }));
    } catch (const std::exception& e) {
        state.SkipWithError(e.what());
    }
}

void smallFiles(benchmark::State& state) {
    compareTimes(state, {2000, 10, 2000}, 11, 1.0);
}
BENCHMARK(smallFiles)->Name("exporting 20,000 small files in 2,000 folders / cp -a");

void largeFiles(benchmark::State& state) {
    compareTimes(state, {1, 10, 200'000'000}, 3, 1.05);
}
BENCHMARK(largeFiles)->Name("exporting 2 GB in ten files / cp -a");

const char* const kExportOnce = "--export-once";

// A program's system calls, all its start included.
double countCalls(const Game& game, const QStringList& command) {
    fs::remove_all(game.copy());
    const QString counts = QString::fromStdString(game.copy()) + "-calls";
    runProgram("strace", QStringList{"-f", "-c", "-U", "calls,name", "-o", counts} + command);
    std::ifstream lines(counts.toStdString());
    double calls = 0;
    double sum = 0;
    for (std::string name; lines >> name;) {
        if (name == "total")
            sum = calls;
        calls = QByteArray::fromStdString(name).toDouble();
    }
    return sum;
}

void systemCalls(benchmark::State& state) {
    try {
        constexpr int kFiles = 20'000;
        const Game game({2000, 10, 2000});
        const auto text = [](const fs::path& path) {
            return QString::fromStdString(path);
        };
        const QStringList ours{text(fs::read_symlink("/proc/self/exe")), kExportOnce, text(game.project()),
                               text(game.runtime()), text(game.copy())};
        compare(state, 1, 1.0,
                inTurn([&] { return countCalls(game, ours) / kFiles; },
                       [&] { return countCalls(game, cp(game)) / kFiles; }));
    } catch (const std::exception& e) {
        state.SkipWithError(e.what());
    }
}
BENCHMARK(systemCalls)->Name("system calls for a file exported / cp -a");

} // namespace
} // namespace tarvik::bench

int main(int argc, char** argv) {
    using namespace tarvik::bench;
    if (argc == 5 && std::string_view(argv[1]) == kExportOnce)
        exportProject(argv[2], argv[3], argv[4]);
    else
        run(argc, argv);
}
