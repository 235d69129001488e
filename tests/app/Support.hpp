#pragma once

#include <tarvik/app/ViewportClient.hpp>
#include <tarvik/core/Logger.hpp>

#include <QEventLoop>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace tarvik::testing {

using Names = std::vector<std::string>;

// Runs the event loop until done() holds or the time is up; returns whether it holds.
inline bool pumpUntil(const std::function<bool()>& done) {
    QEventLoop loop;
    QTimer look;
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        if (done())
            loop.quit();
    });
    look.start(1);
    QTimer::singleShot(std::chrono::seconds(20), &loop, &QEventLoop::quit);
    loop.exec();
    return done();
}

// Records what is logged while it lives, from the lowest level up.
class LogCapture final {
public:
    LogCapture() {
        Logger::instance().setThreshold(LogLevel::Debug);
        Logger::instance().addSink(sink_);
    }
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;
    ~LogCapture() { Logger::instance().removeSink(sink_); }

    // Lines of at least that level; of every category when that is empty.
    [[nodiscard]] Names lines(LogLevel least, std::string_view category = {}) const {
        const std::scoped_lock guard(sink_->lock);
        Names result;
        for (const LogMessage& message : sink_->messages) {
            if (message.level >= least && (category.empty() || message.category == category))
                result.push_back(message.message);
        }
        return result;
    }

private:
    struct Sink final : LogSink {
        void write(const LogMessage& message) override {
            const std::scoped_lock guard(lock);
            messages.push_back(message);
        }
        std::mutex lock;
        std::vector<LogMessage> messages;
    };
    std::shared_ptr<Sink> sink_ = std::make_shared<Sink>();
};

struct Client : app::ViewportClient {
    std::function<void(const char*)> called = [](const char* /*operation*/) {
    }; // may throw
    const Scene* scene = nullptr;
    render::RenderSettings settings;
    float dt = -1.0F;
    float aspect = 0.0F;

    void update(float step, const InputState& /*input*/, bool /*windowActive*/) override {
        dt = step;
        called("update");
    }
    const Scene* activeScene() override {
        called("activeScene");
        return scene;
    }
    CameraView cameraView(float ratio) override {
        aspect = ratio;
        called("cameraView");
        return lookAt({0.0F, 0.0F, 5.0F}, {0.0F, 0.0F, 0.0F}, 0.9F, ratio, 0.1F);
    }
    render::RenderSettings renderSettings() override {
        called("renderSettings");
        return settings;
    }

    using Keys = Qt::KeyboardModifiers;
    void clicked(glm::vec2 /*ndc*/) override {}
    bool mousePressed(glm::vec2 /*ndc*/, Qt::MouseButton /*button*/, Keys /*held*/) override { return false; }
    void mouseMoved(glm::vec2 /*ndc*/, Keys /*held*/) override {}
    void mouseReleased(glm::vec2 /*ndc*/, Qt::MouseButton /*button*/) override {}
    bool canDrop(const QList<QUrl>& /*urls*/) override { return false; }
    void dropped(const QList<QUrl>& /*urls*/, glm::vec2 /*ndc*/) override {}
    bool keyPressed(int /*key*/, Keys /*held*/) override { return false; }
};

} // namespace tarvik::testing
