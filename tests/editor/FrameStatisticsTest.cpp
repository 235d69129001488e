#include "FrameStatistics.hpp"

#include <gtest/gtest.h>

namespace tarvik::editor {
namespace {

TEST(FrameStatisticsTest, ALongFrameMovesMeanAndMaximumButNotTheMedian) {
    FrameStatistics statistics;
    for (const double at : {100.0, 110.0, 120.0, 130.0, 230.0})
        statistics.frameShown(at);
    const Json json = statistics.toJson();
    EXPECT_EQ(json["frames"], 5);
    EXPECT_EQ(json["firstFrameMs"], 100.0);
    EXPECT_EQ(json["intervalMs"]["mean"], 32.5);
    EXPECT_EQ(json["intervalMs"]["median"], 10.0);
    EXPECT_EQ(json["intervalMs"]["max"], 100.0);
}

TEST(FrameStatisticsTest, WithoutFramesNothingIsMadeUp) {
    EXPECT_EQ(FrameStatistics().toJson().dump(), R"({"frames":0})");
}

} // namespace
} // namespace tarvik::editor
