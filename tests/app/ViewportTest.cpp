#include "Client.hpp"
#include "LogCapture.hpp"
#include "Pump.hpp"
#include "Script.hpp"

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
using test::Lines;
using test::pumpUntil;

class ViewportTest : public ::testing::Test {
protected:
    ViewportTest() {
        client_.called = [](const char* operation) {
            script().note(operation);
        };
    }

    // A viewport in a context of its own; the previous ones end.
    VulkanViewport& make(bool vsync = true) {
        viewport_.reset();
        script() = {};
        context_ = std::make_unique<AppContext>(AppOptions{.vsync = vsync});
        failures_.clear();
        viewport_ = std::make_unique<VulkanViewport>(*context_, client_);
        script().events.clear();
        viewport_->resize(104, 61);
        QObject::connect(viewport_.get(), &VulkanViewport::frameRendered, viewport_.get(),
                         [] { script().note("frameRendered"); });
        QObject::connect(viewport_.get(), &VulkanViewport::renderFailed, viewport_.get(),
                         [this](const QString& message) {
                             failures_.push_back(message.toStdString());
                             script().note("renderFailed");
                         });
        return *viewport_;
    }

    void expectFrames(int count = 2) {
        const auto wanted = script().count("frameRendered") + count;
        EXPECT_TRUE(pumpUntil([&] { return script().count("frameRendered") >= wanted; }))
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

    void expectFailure(const std::string& source, const std::function<void()>& error,
                       const std::string& message) {
        SCOPED_TRACE(source + ": " + message);
        VulkanViewport& viewport = make();
        const test::LogCapture log;
        script().on[source] = error;
        viewport.show();
        EXPECT_TRUE(pumpUntil([&] { return !failures_.empty(); }));
        const bool hadTarget = source != "target+";
        EXPECT_TRUE(viewport.hasFailed());
        EXPECT_EQ(callsWhileAsking(viewport, 20), "");
        ASSERT_EQ(failures_.size(), 1U);
        EXPECT_TRUE(failures_[0].starts_with(message)) << failures_[0];
        EXPECT_EQ(log.lines(LogLevel::Warn), failures_);
        EXPECT_TRUE(viewport.captureFrame({8, 8}).isNull());
        viewport_.reset();
        EXPECT_EQ(script().calls(), hadTarget ? "waitIdle target-" : "");
    }

    void actAt(const std::string& moment, const std::function<void()>& act) {
        SCOPED_TRACE(moment);
        VulkanViewport& viewport = make();
        bool done = false;
        script().on[moment] = [&] {
            if (!std::exchange(done, true))
                act();
        };
        if (moment == "renderFailed")
            script().on["render"] = throwing(std::runtime_error("boom"));
        viewport.show();
        EXPECT_TRUE(pumpUntil(
            [&] { return done && (viewport_ || script().count("target+") == script().count("target-")); }));
        viewport_.reset();
        EXPECT_EQ(script().count("target+"), script().count("target-"));
        context_.reset();
        EXPECT_TRUE(script().calls().ends_with("renderer- context-"));
    }

    test::LogCapture log_;
    test::Client client_;
    std::unique_ptr<AppContext> context_;
    std::unique_ptr<VulkanViewport> viewport_;
    Lines failures_;
};

TEST_F(ViewportTest, ShowsFramesInTheDevicePixelsOfTheWindow) {
    VulkanViewport& viewport = make();
    viewport.show();
    expectFrames();
    EXPECT_TRUE(script().calls().starts_with(
        "target+ update activeScene resize renderSettings cameraView render frameRendered update"));
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
    viewport.setVsync(false);
    EXPECT_EQ(script().details("policy"), "NoVsync");
    EXPECT_EQ(script().count("target+"), 1);
}

TEST_F(ViewportTest, KeepsTheRefreshIntervalOnlyWhereVsyncDoesNotBlock) {
    using Milliseconds = std::chrono::duration<double, std::milli>;
    for (const auto& [vsync, blocks] :
         {std::pair(true, false), std::pair(true, true), std::pair(false, false)}) {
        SCOPED_TRACE(::testing::Message() << "vsync " << vsync << ", blocks " << blocks);
        VulkanViewport& viewport = make(vsync);
        script().presentBlocks = blocks;
        std::vector<std::chrono::steady_clock::time_point> starts;
        script().on["update"] = [&] {
            starts.push_back(std::chrono::steady_clock::now());
            // A request while a frame is pending must not start a second timer.
            QEvent request(QEvent::UpdateRequest);
            EXPECT_TRUE(QCoreApplication::sendEvent(&viewport, &request));
        };
        viewport.show();
        expectFrames(20);

        const double rate = viewport.screen()->refreshRate();
        const Milliseconds interval(1000.0 / (rate > 1.0 ? rate : 60.0));
        Milliseconds shortest = interval;
        for (std::size_t i = 1; i < starts.size(); ++i)
            shortest = std::min<Milliseconds>(shortest, starts[i] - starts[i - 1]);
        if (vsync && !blocks)
            EXPECT_GE(starts.back() - starts.front(), 19 * (interval - Milliseconds(1.5)));
        else
            EXPECT_LT(shortest, interval / 2);
    }
}

TEST_F(ViewportTest, RestsWhileHiddenAndBoundsTheStepAfterwards) {
    VulkanViewport& viewport = make();
    viewport.show();
    expectFrames();
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
}

TEST_F(ViewportTest, FirstFailureIsToldOnceAndStopsRendering) {
    const auto gone = throwing(rhi::DeviceLostError("Treiber zurückgesetzt"));
    expectFailure("target+", gone, "Cannot create swapchain: Treiber zurückgesetzt");
    for (const char* source : {"resize", "render", "update", "activeScene", "cameraView", "renderSettings"}) {
        expectFailure(source, gone,
                      "The GPU device was lost (driver reset or hang). Rendering is stopped; save your work "
                      "and restart Tarvik.\n\nTreiber zurückgesetzt");
        expectFailure(source, throwing(rhi::VulkanError("%1 bytes", VK_ERROR_OUT_OF_DEVICE_MEMORY)),
                      "Rendering failed: %1 bytes");
        expectFailure(source, throwing(42), "Rendering failed: ");
    }
}

TEST_F(ViewportTest, LostSurfaceGetsANewTargetEvenWhenIdlingFails) {
    make().show();
    expectFrames();
    script().events.clear();
    script().frameResult = FrameResult::SurfaceLost;
    script().on["waitIdle"] = throwing(std::runtime_error("busy"));
    script().on["target+"] = [] {
        EXPECT_EQ(script().count("frameRendered"), 0);
        script().frameResult = FrameResult::Presented;
    };
    expectFrames();
    EXPECT_TRUE(script().calls().contains("cameraView render waitIdle target- target+ update"));
    EXPECT_EQ(script().count("target+"), 1);
    EXPECT_EQ(log_.lines(LogLevel::Warn),
              (Lines{"surface lost - recreating", "waitIdle failed while releasing swapchain: busy"}));
}

TEST_F(ViewportTest, EveryWayOfHidingReleasesTheTargetOnTheSpot) {
    make();
    auto owner = std::make_unique<QWidget>();
    auto* container = QWidget::createWindowContainer(viewport_.get(), owner.get());
    auto* viewport = viewport_.release(); // the container's from here on
    viewport->setInputContainer(container);
    (new QHBoxLayout(owner.get()))->addWidget(container);
    const auto hiding = [&](const char* way, const std::function<void()>& hide) {
        SCOPED_TRACE(way);
        owner->show();
        container->show();
        viewport->show();
        expectFrames();
        script().events.clear();
        hide();
        EXPECT_EQ(script().calls(), "waitIdle target-");
    };
    hiding("container", [&] { container->hide(); });
    hiding("closing", [&] { owner->close(); });
    hiding("another native window", [&] { owner->setWindowFlag(Qt::WindowStaysOnTopHint); });
    hiding("window", [&] { viewport->hide(); });
    hiding("surface", [&] {
        QPlatformSurfaceEvent gone(QPlatformSurfaceEvent::SurfaceAboutToBeDestroyed);
        QCoreApplication::sendEvent(viewport, &gone);
    });
    hiding("end", [&] { owner.reset(); });
}

TEST_F(ViewportTest, MayBeHiddenOrDestroyedAtAnyTime) {
    // Also from inside the client's calls and the viewport's own signals.
    for (const char* moment :
         {"update", "activeScene", "renderSettings", "cameraView", "frameRendered", "renderFailed"}) {
        actAt(moment, [this] { viewport_.reset(); });
        actAt(moment, [this] { viewport_.release()->deleteLater(); });
        actAt(moment, [this] { viewport_->hide(); });
    }
}

TEST_F(ViewportTest, CapturesTheFinalPictureWithoutTheWindow) {
    VulkanViewport& viewport = make();
    const QImage image = viewport.captureFrame({640, 360});
    EXPECT_EQ(script().details("capture"), "Empty 640x360 final");
    EXPECT_EQ(client_.aspect, 1.7777778F);
    EXPECT_EQ(image.size(), QSize(640, 360));
    constexpr int index = 200 * 640 + 300;
    EXPECT_EQ(image.pixel(300, 200), qRgb(index % 256, index / 256 % 256, 7));
    EXPECT_EQ(client_.dt, -1.0F); // no update

    script().captureError = "beyond the limit";
    for (const QSize size : {QSize(), QSize(0, 10), QSize(10, -1), QSize(10, 10)})
        EXPECT_TRUE(viewport.captureFrame(size).isNull());

    for (const char* source : {"capture", "cameraView", "renderSettings", "activeScene"}) {
        script() = {};
        script().on[source] = throwing(rhi::DeviceLostError("gone"));
        EXPECT_TRUE(viewport.captureFrame({10, 10}).isNull());
        EXPECT_EQ(log_.lines(LogLevel::Error, "Viewport").back(), "capture failed: gone");
    }
    EXPECT_FALSE(viewport.hasFailed());
}

TEST_F(ViewportTest, StatisticsCountPresentedAndSkippedFrames) {
    VulkanViewport& viewport = make(false);
    script().on["render"] = [] {
        const bool third = script().count("render") % 3 == 0;
        script().frameResult = third ? FrameResult::Presented : FrameResult::Skipped;
    };
    viewport.show();
    static const QRegularExpression pattern(
        R"(^(\d+\.\d) frames/s presented, (\d+) skipped \(no swapchain image ready\) in (\d+\.\d) s$)");
    QRegularExpressionMatch match;
    ASSERT_TRUE(pumpUntil([&] {
        const Lines lines = log_.lines(LogLevel::Debug, "Viewport");
        match = pattern.match(QString::fromStdString(lines.empty() ? "" : lines.back()));
        return match.hasMatch();
    }));
    const double presented = match.captured(1).toDouble() * match.captured(3).toDouble();
    EXPECT_NEAR(match.captured(2).toDouble(), presented * 2, 5 + presented / 5);
}

} // namespace
} // namespace tarvik::app
