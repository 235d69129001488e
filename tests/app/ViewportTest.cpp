#include "Script.hpp"
#include "Support.hpp"

#include <tarvik/app/AppContext.hpp>
#include <tarvik/app/VulkanViewport.hpp>
#include <tarvik/renderer/Errors.hpp>

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QHBoxLayout>
#include <QPlatformSurfaceEvent>
#include <QRegularExpression>
#include <QScreen>

#include <cmath>
#include <new>

namespace tarvik::app {
namespace {

using render::FrameResult;
using scripted::script;
using scripted::throwing;
using testing::Names;
using testing::pumpUntil;

class ViewportTest : public ::testing::Test {
protected:
    ViewportTest() {
        script() = {};
        client_.called = [](const char* operation) {
            script().note(operation);
        };
    }

    // A viewport in a context of its own; the previous ones end.
    VulkanViewport& make(bool vsync = true) {
        viewport_.reset();
        AppOptions options;
        options.vsync = vsync;
        context_ = std::make_unique<AppContext>(options);
        failures_.clear();
        viewport_ = std::make_unique<VulkanViewport>(*context_, client_);
        viewport_->resize(104, 61);
        QObject::connect(viewport_.get(), &VulkanViewport::frameRendered, viewport_.get(),
                         [this] { ++frames_; });
        QObject::connect(viewport_.get(), &VulkanViewport::renderFailed, viewport_.get(),
                         [this](const QString& message) {
                             EXPECT_TRUE(viewport_->hasFailed());
                             failures_.push_back(message.toStdString());
                         });
        return *viewport_;
    }

    VulkanViewport& makeRunning() {
        make().show();
        expectFrames();
        script().events.clear();
        return *viewport_;
    }

    void expectFrames(int count = 2) {
        const int before = frames_;
        EXPECT_TRUE(pumpUntil([&] { return frames_ >= before + count; }))
            << ::testing::PrintToString(log_.lines(LogLevel::Debug));
    }

    // Asks for frames for a while; returns what was called.
    static std::string callsWhileAsking(VulkanViewport& viewport, int milliseconds) {
        script().events.clear();
        const QDeadlineTimer end(milliseconds);
        EXPECT_TRUE(pumpUntil([&] {
            QEvent request(QEvent::UpdateRequest);
            QCoreApplication::sendEvent(&viewport, &request);
            return end.hasExpired();
        }));
        return script().calls();
    }

    testing::LogCapture log_;
    testing::Client client_;
    std::unique_ptr<AppContext> context_;
    std::unique_ptr<VulkanViewport> viewport_;
    int frames_ = 0;
    Names failures_;
};

TEST_F(ViewportTest, ShowsFramesInTheDevicePixelsOfTheWindow) {
    VulkanViewport& viewport = make();
    script().events.clear();
    viewport.show();
    expectFrames();
    EXPECT_TRUE(script().calls().starts_with(
        "target+ update activeScene resize renderSettings cameraView render update"));

    const auto width = std::lround(viewport.width() * viewport.devicePixelRatio());
    const auto height = std::lround(viewport.height() * viewport.devicePixelRatio());
    const auto extent = std::to_string(width) + "x" + std::to_string(height);
    EXPECT_EQ(script().details("target+"), extent + " Vsync");
    EXPECT_EQ(script().details("resize"), extent);
    EXPECT_EQ(script().details("render"), "Empty");
    EXPECT_EQ(client_.aspect, static_cast<float>(width) / static_cast<float>(height));

    const Scene scene("Cubes");
    client_.scene = &scene;
    viewport.resize(1, 1);
    EXPECT_TRUE(pumpUntil([] { return script().details("resize") == "1x1"; }));
    expectFrames();
    EXPECT_EQ(script().details("render"), "Cubes");
    for (const auto& event : script().events)
        EXPECT_TRUE(event.name != "resize" || (event.details[0] != '0' && !event.details.ends_with("x0")));
}

TEST_F(ViewportTest, KeepsTheRefreshIntervalOnlyWhereVsyncDoesNotBlock) {
    using Milliseconds = std::chrono::duration<double, std::milli>;
    constexpr int intervals = 20;
    for (const auto& [vsync, blocks] :
         {std::pair(true, false), std::pair(true, true), std::pair(false, false)}) {
        SCOPED_TRACE(::testing::Message() << "vsync " << vsync << ", blocks " << blocks);
        script() = {};
        script().presentBlocks = blocks;
        // Requests while a frame is pending must not start a second timer.
        script().on["update"] = script().on["render"] = [this] {
            QEvent request(QEvent::UpdateRequest);
            EXPECT_TRUE(QCoreApplication::sendEvent(viewport_.get(), &request));
        };
        VulkanViewport& viewport = make(vsync);
        viewport.show();
        expectFrames(intervals + 1);

        const double rate = viewport.screen()->refreshRate();
        const Milliseconds interval(1000.0 / (rate > 1.0 ? rate : 60.0));
        // The target is made just before the first frame starts.
        const Milliseconds whole =
            script().events.back().time -
            std::ranges::find(script().events, "target+", &scripted::Event::name)->time;
        Milliseconds shortest = whole;
        std::optional<std::chrono::steady_clock::time_point> previous;
        for (const auto& event : script().events) {
            if (event.name != "update")
                continue;
            if (previous)
                shortest = std::min<Milliseconds>(shortest, event.time - *previous);
            previous = event.time;
        }
        if (vsync && !blocks)
            EXPECT_GE(whole, intervals * (interval - Milliseconds(1.5)));
        else
            EXPECT_LT(shortest, interval / 2);
    }
}

TEST_F(ViewportTest, RestsWhileHiddenAndBoundsTheStepAfterwards) {
    VulkanViewport& viewport = makeRunning();
    viewport.hide();
    EXPECT_TRUE(pumpUntil([&] { return !viewport.isExposed(); }));
    EXPECT_EQ(callsWhileAsking(viewport, 300), "");

    std::vector<float> steps;
    script().on["update"] = [&] {
        EXPECT_FLOAT_EQ(static_cast<float>(viewport.frameIntervalMs()), client_.dt * 1000.0F);
        steps.push_back(client_.dt);
    };
    viewport.show();
    expectFrames(30);
    EXPECT_EQ(steps.at(0), 0.25F);
    EXPECT_LT(std::ranges::min(steps), 0.25F);
    EXPECT_GE(std::ranges::count(log_.lines(LogLevel::Debug, "Viewport"), "expose: visible"), 2);
}

TEST_F(ViewportTest, FirstFailureIsToldOnceAndStopsRendering) {
    const auto gone = throwing(rhi::DeviceLostError("Treiber zurückgesetzt"));
    const auto other = throwing(rhi::VulkanError("%1 bytes", VK_ERROR_OUT_OF_DEVICE_MEMORY));
    struct Case {
        std::string source;
        std::function<void()> error;
        std::string message; // the beginning
    };
    std::vector<Case> cases = {
        {"target+", other, "Cannot create swapchain: %1 bytes"},
        {"target+", gone, "Cannot create swapchain: Treiber zurückgesetzt"},
        {"render", throwing(std::bad_alloc()), "Rendering failed: std::bad_alloc"},
        {"update", throwing(42), "Rendering failed: "},
        {"cameraView", throwing(42), "Rendering failed: "},
    };
    for (const char* source : {"resize", "render", "update", "activeScene", "cameraView", "renderSettings"}) {
        cases.push_back({source, other, "Rendering failed: %1 bytes"});
        cases.push_back(
            {source, gone,
             "The GPU device was lost (driver reset or hang). Rendering is stopped; save your work "
             "and restart Tarvik.\n\nTreiber zurückgesetzt"});
    }
    for (const Case& c : cases) {
        SCOPED_TRACE(c.source + ": " + c.message);
        script() = {};
        const testing::LogCapture log;
        script().on["render"] = [&] {
            script().on[c.source] = c.error;
        };
        if (c.source == "target+")
            script().on["target+"] = c.error;
        VulkanViewport& viewport = make();
        viewport.show();
        EXPECT_TRUE(pumpUntil([&] { return !failures_.empty(); }));
        const int frames = frames_;
        EXPECT_EQ(callsWhileAsking(viewport, 20), "");
        EXPECT_EQ(frames_, frames);
        ASSERT_EQ(failures_.size(), 1U);
        EXPECT_TRUE(failures_[0].starts_with(c.message)) << failures_[0];
        EXPECT_TRUE(viewport.captureFrame({8, 8}).isNull());
        viewport_.reset();
        EXPECT_EQ(script().calls(), c.source == "target+" ? "" : "waitIdle target-");
        EXPECT_EQ(log.lines(LogLevel::Warn), failures_);
    }
}

TEST_F(ViewportTest, WithoutRendererItHasFailedSilently) {
    script().extensions.clear();
    VulkanViewport& viewport = make();
    EXPECT_TRUE(viewport.hasFailed());
    EXPECT_TRUE(viewport.captureFrame({8, 8}).isNull());
    viewport.show();
    EXPECT_EQ(callsWhileAsking(viewport, 50), "");
    EXPECT_TRUE(failures_.empty());
    EXPECT_EQ(log_.lines(LogLevel::Warn).size(), 1U); // the context's
}

TEST_F(ViewportTest, LostSurfaceGetsANewTargetEvenWhenIdlingFails) {
    makeRunning();
    frames_ = 0;
    script().frameResult = FrameResult::SurfaceLost;
    script().on["waitIdle"] = throwing(std::runtime_error("busy"));
    script().on["target+"] = [this] {
        EXPECT_EQ(frames_, 0);
        script().frameResult = FrameResult::Presented;
    };
    expectFrames();
    EXPECT_TRUE(script().calls().find("cameraView render waitIdle target- target+ update") !=
                std::string::npos);
    EXPECT_EQ(script().count("target+"), 1);
    EXPECT_EQ(log_.lines(LogLevel::Warn),
              (Names{"surface lost - recreating", "waitIdle failed while releasing swapchain: busy"}));
}

TEST_F(ViewportTest, EveryWayOfHidingReleasesTheTargetOnTheSpot) {
    make();
    auto owner = std::make_unique<QWidget>();
    auto* container = QWidget::createWindowContainer(viewport_.get(), owner.get());
    auto* viewport = viewport_.release(); // the container's from here on
    viewport->setInputContainer(container);
    (new QHBoxLayout(owner.get()))->addWidget(container);
    owner->show();
    expectFrames();

    using Act = std::function<void()>;
    const Act showOwner = [&] {
        owner->show();
    };
    const Act showWindow = [&] {
        viewport->show();
    };
    const std::vector<std::pair<Act, Act>> hidings = {
        {[&] { container->hide(); },
         [&] {
             container->show();
         }},
        {[&] { owner->hide(); }, showOwner},
        {[&] { owner->close(); }, showOwner},
        {[&] { owner->setWindowFlag(Qt::WindowStaysOnTopHint); }, showOwner},
        {[&] { viewport->hide(); }, showWindow},
        {[&] {
             QPlatformSurfaceEvent gone(QPlatformSurfaceEvent::SurfaceAboutToBeDestroyed);
             QCoreApplication::sendEvent(viewport, &gone);
         },
         showWindow},
    };
    for (const auto& [hide, show] : hidings) {
        SCOPED_TRACE(&hide - &hidings[0].first);
        script().events.clear();
        hide();
        EXPECT_EQ(script().calls(), "waitIdle target-");
        show();
        expectFrames();
    }
    script().events.clear();
    owner.reset();
    EXPECT_EQ(script().calls(), "waitIdle target-");
}

TEST_F(ViewportTest, MayBeHiddenOrDestroyedAtAnyTime) {
    const auto end = [this] {
        viewport_.reset();
    };
    const auto endLater = [this] {
        if (viewport_)
            viewport_.release()->deleteLater();
    };
    const auto hide = [this] {
        viewport_->hide();
    };
    // Also from inside the client's calls and the viewport's own signals.
    for (const char* moment : {"never shown", "running", "update", "activeScene", "renderSettings",
                               "cameraView", "frameRendered", "renderFailed"}) {
        for (const std::function<void()>& act :
             {std::function<void()>(end), std::function<void()>(endLater), std::function<void()>(hide)}) {
            SCOPED_TRACE(moment);
            script() = {};
            VulkanViewport& viewport = make();
            const std::string when(moment);
            bool done = false;
            const auto once = [&] {
                if (!std::exchange(done, true))
                    act();
            };
            if (when == "running")
                script().on["render"] = [&] {
                    QTimer::singleShot(0, context_->logBridge.get(), once);
                };
            else if (when == "renderFailed")
                script().on["render"] = throwing(std::runtime_error("boom"));
            else
                script().on[when] = once;
            QObject::connect(&viewport, &VulkanViewport::frameRendered, &viewport,
                             [&] { script().note("frameRendered"); });
            QObject::connect(&viewport, &VulkanViewport::renderFailed, &viewport, once);
            if (when == "never shown")
                once();
            else
                viewport.show();
            EXPECT_TRUE(pumpUntil([&] {
                return done && (viewport_ || script().count("target+") == script().count("target-"));
            }));
            viewport_.reset();
            EXPECT_EQ(script().count("target+"), script().count("target-"));
            EXPECT_EQ(script().count("waitIdle"), script().count("target-"));
            context_.reset();
            EXPECT_TRUE(script().calls().ends_with("renderer- context-"));
        }
    }
}

TEST_F(ViewportTest, VsyncReachesThePresentTargetAndTheNext) {
    VulkanViewport& viewport = make();
    viewport.setVsync(false);
    EXPECT_EQ(script().count("policy"), 0);
    viewport.show();
    expectFrames();
    EXPECT_TRUE(script().details("target+").ends_with(" NoVsync"));
    viewport.setVsync(true);
    EXPECT_EQ(script().details("policy"), "Vsync");
    viewport.setVsync(false);
    EXPECT_EQ(script().details("policy"), "NoVsync");
    EXPECT_EQ(script().count("target+"), 1);
}

TEST_F(ViewportTest, CapturesTheFinalPictureWithoutTheWindow) {
    VulkanViewport& viewport = make();
    const QImage image = viewport.captureFrame({640, 360});
    EXPECT_EQ(script().details("capture"), "Empty 640x360 final");
    EXPECT_EQ(client_.aspect, 1.7777778F);
    EXPECT_EQ(image.size(), QSize(640, 360));
    EXPECT_EQ(image.format(), QImage::Format_RGBA8888);
    constexpr int index = 200 * 640 + 300;
    EXPECT_EQ(image.pixel(300, 200), qRgb(index % 256, index / 256 % 256, 7));
    EXPECT_EQ(client_.dt, -1.0F); // no update

    script().captureError = "beyond the limit";
    for (const QSize size : {QSize(), QSize(0, 10), QSize(10, -1), QSize(10, 10)})
        EXPECT_TRUE(viewport.captureFrame(size).isNull());
    EXPECT_EQ(log_.lines(LogLevel::Info), Names{});

    for (const char* source : {"capture", "cameraView", "renderSettings", "activeScene"}) {
        SCOPED_TRACE(source);
        script() = {};
        script().on[source] = throwing(rhi::DeviceLostError("gone"));
        EXPECT_TRUE(viewport.captureFrame({10, 10}).isNull());
        EXPECT_EQ(log_.lines(LogLevel::Info, "Viewport").back(), "capture failed: gone");
        script().on[source] = throwing(42);
        EXPECT_NO_THROW(EXPECT_TRUE(viewport.captureFrame({10, 10}).isNull()));
    }
    EXPECT_EQ(log_.lines(LogLevel::Error, "Viewport").size(), 8U);
    EXPECT_FALSE(viewport.hasFailed());
    EXPECT_TRUE(failures_.empty());
}

TEST_F(ViewportTest, StatisticsCountPresentedAndSkippedFrames) {
    script().on["render"] = [] {
        const bool third = script().count("render") % 3 == 0;
        script().frameResult = third ? FrameResult::Presented : FrameResult::Skipped;
    };
    make(false).show();
    static const QRegularExpression pattern(
        R"(^(\d+\.\d) frames/s presented, (\d+) skipped \(no swapchain image ready\) in (\d+\.\d) s$)");
    QRegularExpressionMatch match;
    ASSERT_TRUE(pumpUntil([&] {
        return std::ranges::any_of(log_.lines(LogLevel::Debug, "Viewport"), [&](const auto& line) {
            match = pattern.match(QString::fromStdString(line));
            return match.hasMatch();
        });
    }));
    const double seconds = match.captured(3).toDouble();
    const double presented = match.captured(1).toDouble() * seconds;
    EXPECT_GE(seconds, 1.0);
    EXPECT_NEAR(match.captured(2).toDouble(), presented * 2, 5 + presented / 5);
}

} // namespace
} // namespace tarvik::app
