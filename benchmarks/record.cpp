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

constexpr glm::vec3 kEye{0.0F, 5.0F, 220.0F};
constexpr glm::vec4 kDepthRow{0.0F, 0.0F, -1.0F, 220.0F}; // of a camera there that looks along -z
constexpr float kFocalLength = 2.0F;
constexpr double kLinear = 1.25; // caches take their toll
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

    // An entity. A frame of a software driver takes more than one call: it is presented by the one that finds
    // it drawn.
    double record(const Scene& scene) {
        const CameraView view = lookAt(kEye, {0.0F, 0.0F, 0.0F}, 1.0F, 4.0F / 3.0F, 0.1F);
        double cost = 0.0;
        for (int attempt = 0; attempt < kAttempts; ++attempt) {
            auto result = render::FrameResult::Skipped;
            context_.renderer()->waitIdle();
            cost += costOf([&] { result = context_.renderer()->render(*target_, scene, view, {}); });
            if (result == render::FrameResult::Presented)
                return cost / static_cast<double>(scene.size());
        }
        throw std::runtime_error("no frame could be presented");
    }

private:
    static constexpr int kAttempts = 100;

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
BENCHMARK(againstBudget)->Name("recording an entity of 100,000 / 20 ns");

void growth(benchmark::State& state) {
    withRecorder(state, [&](FrameRecorder& recorder) {
        const Scene many = makeScene(kMany);
        const Scene veryMany = makeScene(kVeryMany);
        recorder.record(veryMany);
        compare(state, 20, kLinear,
                inTurn([&] { return recorder.record(veryMany); }, [&] { return recorder.record(many); }));
    });
}
BENCHMARK(growth)->Name("recording an entity of 100,000 / of 10,000");

// The part of a frame that grows. Its buffers stand in for the GPU's.
class Stream final {
public:
    explicit Stream(std::size_t entities)
        : scene_(makeScene(entities)),
          written_(entities),
          copied_(entities) {}

    // An entity.
    double write() {
        return costOf([this] {
                   benchmark::DoNotOptimize(render::writeInstances(
                       scene_, {.depthRow = kDepthRow, .focalLength = kFocalLength}, written_));
               }) /
               static_cast<double>(scene_.size());
    }
    // As many bytes as are written.
    double copy() {
        return costOf([this] {
                   std::memcpy(copied_.data(), written_.data(), written_.size() * sizeof(render::Instance));
                   benchmark::ClobberMemory();
               }) /
               static_cast<double>(scene_.size());
    }

private:
    Scene scene_;
    std::vector<render::Instance> written_;
    std::vector<render::Instance> copied_;
};

void streamGrowth(benchmark::State& state) {
    Stream many(kMany);
    Stream veryMany(kVeryMany);
    compare(state, 200, kLinear, inTurn([&] { return veryMany.write(); }, [&] { return many.write(); }));
}
BENCHMARK(streamGrowth)->Name("writing an instance of 100,000 / of 10,000");

void againstCopy(benchmark::State& state) {
    Stream stream(static_cast<std::size_t>(state.range(0)));
    compare(state, 200, std::nullopt, inTurn([&] { return stream.write(); }, [&] { return stream.copy(); }));
}
BENCHMARK(againstCopy)->Name("writing an instance / memcpy")->ArgName("entities")->Arg(kMany)->Arg(kVeryMany);

} // namespace
} // namespace tarvik::bench

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    tarvik::bench::run(argc, argv);
}
