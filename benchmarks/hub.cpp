// What many projects cost the opening of the start window: from the list on disk to the painted window, with
// a thousand projects against ten. Every folder is there and has a picture.
#include "Compare.hpp"

#include "EditorStyle.hpp"
#include "Hub.hpp"
#include "MainWindow.hpp"
#include "Session.hpp"

#include <tarvik/core/Paths.hpp>
#include <tarvik/project/Project.hpp>

#include <QApplication>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

#include <filesystem>

namespace tarvik::bench {
namespace {

namespace fs = std::filesystem;

// Returns the folder of the user's data, with the list.
fs::path makeProjects(const fs::path& folder, int count) {
    fs::path data = folder / fmt::format("data of {}", count);
    qputenv("XDG_DATA_HOME", data.c_str());
    ProjectRegistry registry(ProjectRegistry::defaultStorageFile());
    QImage picture(640, 400, QImage::Format_RGB32);
    picture.fill(Qt::darkCyan);
    for (int i = 0; i < count; ++i) {
        const fs::path root = folder / fmt::format("{} of {}", i, count);
        if (!Project::create(root, fmt::format("Project {}", i)))
            throw std::runtime_error(paths::toUtf8(root) + " could not be made");
        fs::create_directory(root / "Saved");
        picture.save(QString::fromStdString(paths::toUtf8(root / "Saved/Thumbnail.png")));
        registry.put({root, fmt::format("Project {}", i), 1});
    }
    if (const auto saved = registry.save(); !saved)
        throw std::runtime_error(saved.error().message);
    return data;
}

// Which is painted before it is known to be exposed.
void waitFor(QWidget& window) {
    if (!QTest::qWaitForWindowExposed(&window))
        throw std::runtime_error("the window was not shown");
}

double openStartWindow() {
    const auto start = Clock::now();
    editor::Session session({}, {});
    editor::MainWindow window(session);
    window.start();
    waitFor(window);
    return nanoseconds(Clock::now() - start);
}

double openHub() {
    const auto start = Clock::now();
    ProjectRegistry registry(ProjectRegistry::defaultStorageFile());
    if (const auto loaded = registry.load(); !loaded)
        throw std::runtime_error(loaded.error().message);
    editor::Hub hub;
    hub.resize(1280, 800);
    hub.setProjects(registry.projects());
    hub.show();
    waitFor(hub);
    return nanoseconds(Clock::now() - start);
}

void measure(benchmark::State& state, double open()) {
    try {
        const QTemporaryDir folder;
        const fs::path root(folder.path().toStdString());
        const auto openWith = [open](const fs::path& data) {
            return [open, data] {
                qputenv("XDG_DATA_HOME", data.c_str());
                return open();
            };
        };
        compare(state, 30, 1.2, inTurn(openWith(makeProjects(root, 1000)), openWith(makeProjects(root, 10))));
    } catch (const std::exception& e) {
        state.SkipWithError(e.what());
    }
}

void startWindow(benchmark::State& state) {
    measure(state, openStartWindow);
}
BENCHMARK(startWindow)->Name("opening the start window with 1,000 projects / with 10");

void hub(benchmark::State& state) {
    measure(state, openHub);
}
BENCHMARK(hub)->Name("opening the hub alone with 1,000 projects / with 10");

} // namespace
} // namespace tarvik::bench

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    tarvik::editor::applyEditorStyle(application);
    tarvik::bench::run(argc, argv);
}
