#include "IdleClient.hpp"
#include "Pump.hpp"
#include "Script.hpp"

#include <tarvik/app/AppContext.hpp>
#include <tarvik/app/Snapshot.hpp>
#include <tarvik/app/VulkanViewport.hpp>

#include <gtest/gtest.h>

#include <QWidget>

#include <array>

namespace tarvik::app {
namespace {

using scripted::script;
using test::pumpUntil;

struct Pane final : QWidget {
    Pane(QWidget* parent, const QRect& place, AppContext& context)
        : QWidget(parent),
          viewport(context, client) {
        setGeometry(place);
        registerViewportContainer(this, &viewport);
    }
    bench::IdleClient client;
    VulkanViewport viewport;
};

class SnapshotTest : public ::testing::Test {
protected:
    SnapshotTest() {
        script() = {};
        window_.setGeometry(0, 0, 400, 300);
        window_.setStyleSheet("background: #0000ff");
    }

    // The scripted renderer numbers a picture's pixels in red and green.
    static QRgb numbered(int index) { return qRgb(index % 256, index / 256 % 256, 7); }

    AppContext context_{AppOptions{}};
    QWidget window_;
};

// At every ratio the tests run with, odd places and sizes fall between pixels.
TEST_F(SnapshotTest, FramesFillTheirContainersPixelByPixel) {
    const std::array places{QRect(10, 20, 320, 180), QRect(301, 61, 77, 63)};
    QWidget between(&window_);
    between.setGeometry(0, 0, 400, 300);
    const Pane first(&between, places[0], context_);
    const Pane second(&between, places[1], context_);
    window_.show();
    ASSERT_TRUE(pumpUntil([&] { return first.isVisible(); }));

    const double ratio = window_.devicePixelRatio();
    const QImage image = snapshotWidget(&window_);
    EXPECT_EQ(image.size(), QSize(qRound(400 * ratio), qRound(300 * ratio)));
    EXPECT_EQ(image.devicePixelRatio(), ratio);

    for (const QRect& place : places) {
        SCOPED_TRACE(::testing::Message() << place.x() << ", ratio " << ratio);
        const int left = qRound(place.x() * ratio);
        const int top = qRound(place.y() * ratio);
        const int right = qRound((place.x() + place.width()) * ratio) - 1;
        const int bottom = qRound((place.y() + place.height()) * ratio) - 1;
        const int width = right + 1 - left;
        EXPECT_EQ(image.pixel(left, top), numbered(0));
        EXPECT_EQ(image.pixel(left + 2, top), numbered(2));
        EXPECT_EQ(image.pixel(left, top + 2), numbered(2 * width));
        EXPECT_EQ(image.pixel(right, bottom - 1), numbered(width * (bottom - top) - 1));
        EXPECT_EQ(image.pixel(right + 1, bottom), qRgb(0, 0, 255));
        EXPECT_EQ(image.pixel(right, bottom + 1), qRgb(0, 0, 255));
    }
}

TEST_F(SnapshotTest, WhatCannotBeDrawnIsLeftAsGrabbed) {
    Pane hidden(&window_, {0, 0, 50, 50}, context_);
    QWidget odd(&window_);
    odd.setProperty("tarvikViewport", QVariant::fromValue<QObject*>(&window_));
    script().captureError = "no memory";
    const Pane failing(&window_, {100, 100, 50, 50}, context_);
    window_.show();
    hidden.hide();
    ASSERT_TRUE(pumpUntil([&] { return failing.isVisible(); }));
    EXPECT_EQ(snapshotWidget(&window_), window_.grab().toImage());
    EXPECT_EQ(script().count("capture"), 1);
}

} // namespace
} // namespace tarvik::app
