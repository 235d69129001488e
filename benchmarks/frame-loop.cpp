// What a frame of the viewport costs when nothing is drawn, against the bare timer loop that it is built on.
#include "Compare.hpp"
#include "IdleClient.hpp"

#include <tarvik/app/AppContext.hpp>
#include <tarvik/app/VulkanViewport.hpp>

#include <QApplication>
#include <QEventLoop>
#include <QTimer>

#include <cstddef>
#include <utility>
#include <vector>

namespace tarvik::bench {
namespace {

constexpr std::size_t kFrames = 2000;

// Lets a loop run its frames. What they cost is the median from one to the next, so that the moments in which
// another program has the processor do not count.
class FrameCounter final {
public:
    FrameCounter() { frames_.reserve(kFrames); }
    void frame() {
        frames_.push_back(Clock::now());
        if (done())
            loop_.quit();
    }
    [[nodiscard]] bool done() const { return frames_.size() == kFrames; }
    double run() {
        loop_.exec();
        std::vector<double> costs;
        for (std::size_t i = 1; i < frames_.size(); ++i)
            costs.push_back(nanoseconds(frames_[i] - frames_[i - 1]));
        return median(std::move(costs));
    }

private:
    QEventLoop loop_;
    std::vector<Clock::time_point> frames_;
};

class CountingClient final : public IdleClient {
public:
    void update(float /*dt*/, const InputState& /*input*/, bool /*windowActive*/) override {
        if (counter)
            counter->frame();
    }
    FrameCounter* counter = nullptr; // null while the loop comes to rest
};

double viewportLoop(app::VulkanViewport& viewport, CountingClient& client) {
    FrameCounter counter;
    client.counter = &counter;
    viewport.show();
    const double cost = counter.run();
    viewport.hide();
    client.counter = nullptr;
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
    const QApplication application(argc, argv);
    tarvik::bench::run(argc, argv);
}
