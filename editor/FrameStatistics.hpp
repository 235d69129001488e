#pragma once

#include <tarvik/core/JsonFile.hpp>

#include <cstdint>
#include <vector>

namespace tarvik::editor {

// When frames were shown, in milliseconds since the process started.
class FrameStatistics final {
public:
    void frameShown(double atMs);

    [[nodiscard]] std::int64_t frames() const { return frames_; }
    [[nodiscard]] Json toJson() const;

private:
    std::int64_t frames_ = 0;
    double firstMs_ = 0.0;
    double lastMs_ = 0.0;
    double longestMs_ = 0.0;
    std::vector<double> intervals_; // of the first frames, for the median
};

} // namespace tarvik::editor
