// What many projects cost the opening of the editor's start window: from the list on disk to the painted
// window, with a thousand projects against ten. Every folder is there and has a picture.
#include "Compare.hpp"

#include "EditorStyle.hpp"
#include "Hub.hpp"

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

fs::path makeProjects(const fs::path& folder, int count) {
    const fs::path list = folder / fmt::format("recent-{}.json", count);
    ProjectRegistry registry(list);
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
    return list;
}

double open(const fs::path& list) {
    const auto start = Clock::now();
    ProjectRegistry registry(list);
    if (const auto loaded = registry.load(); !loaded)
        throw std::runtime_error(loaded.error().message);
    editor::Hub hub;
    hub.resize(1280, 800);
    hub.setProjects(registry.projects());
    hub.show();
    if (!QTest::qWaitForWindowExposed(&hub)) // which is painted before this is known
        throw std::runtime_error("the hub was not shown");
    return nanoseconds(Clock::now() - start);
}

void hub(benchmark::State& state) {
    try {
        const QTemporaryDir folder;
        const fs::path root(folder.path().toStdString());
        const fs::path many = makeProjects(root, 1000);
        const fs::path few = makeProjects(root, 10);
        compare(state, 30, 1.2, inTurn([&] { return open(many); }, [&] { return open(few); }));
    } catch (const std::exception& e) {
        state.SkipWithError(e.what());
    }
}
BENCHMARK(hub)->Name("opening the hub with 1,000 projects / with 10");

} // namespace
} // namespace tarvik::bench

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    tarvik::editor::applyEditorStyle(application);
    tarvik::bench::run(argc, argv);
}
