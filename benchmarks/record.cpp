// What the calling thread computes to record, submit and present a frame, an entity, and how that grows with
// the scene. Waiting and what the driver's own threads do is not counted.
#include "Compare.hpp"
#include "InstanceStream.hpp"

#include <tarvik/app/AppContext.hpp>
#include <tarvik/renderer/PresentTarget.hpp>
#include <tarvik/renderer/Renderer.hpp>
#include <tarvik/scene/CameraView.hpp>
#include <tarvik/scene/Scene.hpp>

#include <QGuiApplication>
#include <QVulkanInstance>
#include <QWindow>

#include <cstring>
#include <ctime>
#include <memory>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace tarvik::bench {
namespace {

constexpr std::size_t kMany = 10'000;
constexpr std::size_t kVeryMany = 100'000;

double threadNanoseconds() {
    std::timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

template <typename Work>
double costOf(Work work) {
    const double start = threadNanoseconds();
    work();
    return threadNanoseconds() - start;
}

// Meshes in no order, mostly the two that are quickly drawn: the drawing is not what is measured.
Scene makeScene(std::size_t entities) {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> place(-200.0F, 200.0F);
    std::discrete_distribution<int> mesh({0.0, 49.0, 1.0, 1.0, 49.0}); // none, cube, sphere, cylinder, plane
    Scene scene(std::to_string(entities));
    scene.reserve(entities);
    for (std::size_t i = 0; i < entities; ++i) {
        Entity entity;
        entity.transform.position = {place(random), place(random), place(random)};
        entity.mesh = static_cast<Mesh>(mesh(random));
        scene.add(std::move(entity));
    }
    return scene;
}

class FrameRecorder final {
public:
    FrameRecorder() : context_({}) {
        window_.setSurfaceType(QSurface::VulkanSurface);
        window_.setVulkanInstance(context_.vulkanInstance());
        window_.resize(320, 240);
        window_.create();
        window_.show();
        const VkSurfaceKHR surface = QVulkanInstance::surfaceForWindow(&window_);
        if (context_.renderer() == nullptr || surface == VK_NULL_HANDLE)
            throw std::runtime_error("no renderer: " + context_.rendererError().toStdString());
        target_ = std::make_unique<render::PresentTarget>(*context_.renderContext(), surface,
                                                          VkExtent2D{320, 240}, rhi::PresentPolicy::NoVsync);
    }
    FrameRecorder(const FrameRecorder&) = delete;
    FrameRecorder& operator=(const FrameRecorder&) = delete;
    ~FrameRecorder() {
        context_.renderer()->waitIdle();
        target_.reset();
    }

    // An entity.
    double record(const Scene& scene) {
        const CameraView view = lookAt({0.0F, 5.0F, 220.0F}, {0.0F, 0.0F, 0.0F}, 1.0F, 4.0F / 3.0F, 0.1F);
        auto result = render::FrameResult::Skipped;
        double cost = 0.0;
        while (result != render::FrameResult::Presented) {
            context_.renderer()->waitIdle();
            cost = costOf([&] { result = context_.renderer()->render(*target_, scene, view, {}); });
        }
        return cost / static_cast<double>(scene.size());
    }

private:
    app::AppContext context_;
    QWindow window_;
    std::unique_ptr<render::PresentTarget> target_;
};

template <typename Run>
void withRecorder(benchmark::State& state, Run run) {
    try {
        FrameRecorder recorder;
        run(recorder);
    } catch (const std::exception& e) {
        state.SkipWithError(e.what());
    }
}

void againstBudget(benchmark::State& state) {
    constexpr double budget = 20.0;
    withRecorder(state, [&](FrameRecorder& recorder) {
        const Scene scene = makeScene(kVeryMany);
        recorder.record(scene);
        compare(state, 20, 1.0,
                [&] { return Costs{.subject = recorder.record(scene), .reference = budget}; });
    });
}
BENCHMARK(againstBudget)->Name("frame of 100,000, an entity / 20 ns");

void growth(benchmark::State& state) {
    withRecorder(state, [&](FrameRecorder& recorder) {
        const Scene many = makeScene(kMany);
        const Scene veryMany = makeScene(kVeryMany);
        recorder.record(veryMany);
        compare(state, 20, 1.25,
                inTurn([&] { return recorder.record(veryMany); }, [&] { return recorder.record(many); }));
    });
}
BENCHMARK(growth)->Name("frame of 100,000, an entity / of 10,000");

// The part that grows, against a plain copy of as many bytes as it reads and writes.
void againstCopy(benchmark::State& state) {
    const Scene scene = makeScene(static_cast<std::size_t>(state.range(0)));
    const auto entities = static_cast<double>(scene.size());
    std::vector<render::Instance> written(scene.size());
    const std::vector<render::Instance> source(scene.size());
    std::vector<render::Instance> copied(scene.size());
    const auto write = [&] {
        return costOf([&] { benchmark::DoNotOptimize(render::writeInstances(scene, written)); }) / entities;
    };
    const auto copy = [&] {
        return costOf([&] {
                   std::memcpy(copied.data(), source.data(), source.size() * sizeof(render::Instance));
                   benchmark::ClobberMemory();
               }) /
               entities;
    };
    compare(state, 200, std::nullopt, inTurn(write, copy));
}
BENCHMARK(againstCopy)
    ->Name("instances of a frame / memcpy")
    ->ArgName("entities")
    ->Arg(kMany)
    ->Arg(kVeryMany);

} // namespace
} // namespace tarvik::bench

int main(int argc, char** argv) {
    QGuiApplication application(argc, argv);
    tarvik::bench::run(argc, argv);
}
