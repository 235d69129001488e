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
    explicit Game(const Shape& shape) : shape_(shape) {
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
    // A place where nothing is. What was copied before is removed if it is large. Removing many small files
    // would keep the disk busy while the next are copied: they stay until the end.
    [[nodiscard]] fs::path nextCopy() {
        if (shape_.size > 1'000'000)
            fs::remove_all(copy());
        ++copies_;
        return copy();
    }

private:
    [[nodiscard]] fs::path root() const { return folder_.path().toStdString(); }

    [[nodiscard]] fs::path copy() const { return root() / std::to_string(copies_); }

    Shape shape_;
    int copies_ = 0;
    QTemporaryDir folder_;
};

QString text(const fs::path& path) {
    return QString::fromStdString(path);
}

QStringList cp(const Game& game, const fs::path& copy) {
    return {"-a", text(game.project()), text(copy)};
}

void compareTimes(benchmark::State& state, const Shape& shape, int rounds, double goal) {
    try {
        Game game(shape);
        const auto timed = [&game](const auto& makeCopy) {
            const fs::path copy = game.nextCopy();
            const auto start = Clock::now();
            makeCopy(copy);
            return nanoseconds(Clock::now() - start);
        };
        const auto ours = [&](const fs::path& copy) {
            exportProject(game.project(), game.runtime(), copy);
        };
        const auto theirs = [&](const fs::path& copy) {
            runProgram("cp", cp(game, copy));
        };
        compare(state, rounds, goal, inTurn([&] { return timed(ours); }, [&] { return timed(theirs); }));
    } catch (const std::exception& e) {
        state.SkipWithError(e.what());
    }
}

void smallFiles(benchmark::State& state) {
    compareTimes(state, {2000, 10, 2000}, 11, 1.0);
}
BENCHMARK(smallFiles)->Name("exporting 20,000 small files in 2,000 folders / cp -a");

void largeFiles(benchmark::State& state) {
    compareTimes(state, {1, 10, 200'000'000}, 7, 1.05);
}
BENCHMARK(largeFiles)->Name("exporting 2 GB in ten files / cp -a");

const char* const kExportOnce = "--export-once";

// A program's system calls, all its start included.
double countCalls(const fs::path& copy, const QStringList& command) {
    const QString counts = text(copy) + "-calls";
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
        Game game({2000, 10, 2000});
        const auto ours = [&] {
            const fs::path copy = game.nextCopy();
            return countCalls(copy, {text(fs::read_symlink("/proc/self/exe")), kExportOnce,
                                     text(game.project()), text(game.runtime()), text(copy)});
        };
        const auto theirs = [&] {
            const fs::path copy = game.nextCopy();
            return countCalls(copy, QStringList{"cp"} + cp(game, copy));
        };
        compare(state, 1, 1.0, inTurn([&] { return ours() / kFiles; }, [&] { return theirs() / kFiles; }));
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
