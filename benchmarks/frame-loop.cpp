// What a frame of the viewport costs when nothing is drawn, against the bare timer loop that it is built on.
#include "Compare.hpp"
#include "IdleClient.hpp"

#include "Script.hpp"

#include <tarvik/app/AppContext.hpp>
#include <tarvik/app/VulkanViewport.hpp>

#include <QApplication>
#include <QEventLoop>
#include <QTimer>

namespace tarvik::bench {
namespace {

constexpr int kWarmUp = 100;
constexpr int kFrames = 2000;

// Tells when a loop has run its frames.
class FrameCounter final {
public:
    void frame() {
        ++frames_;
        if (frames_ == kWarmUp)
            start_ = Clock::now();
        if (frames_ == kWarmUp + kFrames) {
            cost_ = nanoseconds(Clock::now() - start_) / kFrames;
            loop_.quit();
        }
    }
    [[nodiscard]] bool done() const { return frames_ >= kWarmUp + kFrames; }
    double run() {
        loop_.exec();
        return cost_;
    }

private:
    QEventLoop loop_;
    int frames_ = 0;
    Clock::time_point start_;
    double cost_ = 0.0;
};

class CountingClient final : public IdleClient {
public:
    void update(float /*dt*/, const InputState& /*input*/, bool /*windowActive*/) override {
        counter->frame();
    }
    FrameCounter* counter = nullptr;
};

double viewportLoop(app::VulkanViewport& viewport, CountingClient& client) {
    FrameCounter counter;
    client.counter = &counter;
    viewport.show();
    const double cost = counter.run();
    // Rests until it is shown again.
    viewport.hide();
    scripted::script().events.clear();
    return cost;
}

class TimerLoop final : public QObject {
public:
    explicit TimerLoop(FrameCounter& counter) : counter_(counter) {}
    void next() {
        QTimer::singleShot(0, Qt::PreciseTimer, this, [this] {
            counter_.frame();
            if (!counter_.done())
                next();
        });
    }

private:
    FrameCounter& counter_;
};

double timerLoop() {
    FrameCounter counter;
    TimerLoop loop(counter);
    loop.next();
    return counter.run();
}

void frameLoop(benchmark::State& state) {
    app::AppOptions options;
    options.vsync = false;
    app::AppContext context(options);
    CountingClient client;
    app::VulkanViewport viewport(context, client);
    if (viewport.hasFailed()) {
        state.SkipWithError(context.rendererError().toUtf8().constData());
        return;
    }
    compare(state, 100, 1.2, inTurn([&] { return viewportLoop(viewport, client); }, timerLoop));
}
BENCHMARK(frameLoop)->Name("frame loop / bare timer loop");

} // namespace
} // namespace tarvik::bench

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    tarvik::bench::run(argc, argv);
}
