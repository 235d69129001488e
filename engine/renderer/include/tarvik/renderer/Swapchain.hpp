#pragma once

#include <tarvik/renderer/Export.hpp>

#include <cstdint>
#include <memory>

namespace tarvik::rhi {

enum class PresentPolicy : std::uint8_t { Vsync = 0, NoVsync = 1 };

// The images of one surface. Made and remade by its render::PresentTarget.
class TARVIK_RENDERER_API Swapchain final {
public:
    Swapchain(const Swapchain&) = delete;
    Swapchain& operator=(const Swapchain&) = delete;
    ~Swapchain();

    // Whether presenting waits for the display (FIFO and FIFO_RELAXED). False while the surface has no size.
    [[nodiscard]] bool presentBlocks() const;

    struct Impl;
    explicit Swapchain(std::unique_ptr<Impl> impl);
    [[nodiscard]] Impl& impl() { return *impl_; }

private:
    std::unique_ptr<Impl> impl_;
};

} // namespace tarvik::rhi
