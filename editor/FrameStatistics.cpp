#include "FrameStatistics.hpp"

#include <algorithm>
#include <cstddef>

namespace tarvik::editor {

void FrameStatistics::frameShown(double atMs) {
    constexpr std::size_t kMostIntervals = 100'000;
    if (frames_ == 0) {
        firstMs_ = atMs;
    } else {
        const double interval = atMs - lastMs_;
        longestMs_ = std::max(longestMs_, interval);
        if (intervals_.size() < kMostIntervals)
            intervals_.push_back(interval);
    }
    lastMs_ = atMs;
    ++frames_;
}

Json FrameStatistics::toJson() const {
    Json json = {{"frames", frames_}};
    if (frames_ > 0)
        json["firstFrameMs"] = firstMs_;
    if (frames_ > 1) {
        std::vector<double> sorted = intervals_;
        const auto middle = sorted.begin() + static_cast<std::ptrdiff_t>(sorted.size() / 2);
        std::nth_element(sorted.begin(), middle, sorted.end());
        json["intervalMs"] = {{"mean", (lastMs_ - firstMs_) / static_cast<double>(frames_ - 1)},
                              {"median", *middle},
                              {"max", longestMs_}};
    }
    return json;
}

} // namespace tarvik::editor
