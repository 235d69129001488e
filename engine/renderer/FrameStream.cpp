#include "FrameStream.hpp"

#include "Result.hpp"

#include <glm/geometric.hpp>
#include <glm/gtc/matrix_access.hpp>
#include <glm/gtc/quaternion.hpp>
#include <glm/mat4x4.hpp>
#include <glm/matrix.hpp>
#include <glm/vec4.hpp>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>

namespace tarvik::render {

namespace {

constexpr std::size_t kDirectionalLights = 4;
constexpr std::size_t kPointLights = 16;

struct GpuLight {
    glm::vec4 place;
    glm::vec4 colour;
};

// The layout is that of shaders/frame.glsl.
struct FrameData {
    glm::mat4 viewProjection;
    glm::mat4 rayFromClip;
    glm::vec3 eye;
    float gridReach;
    std::array<std::uint32_t, 4> counts;
    std::array<GpuLight, kDirectionalLights> directional;
    std::array<GpuLight, kPointLights> points;
};
static_assert(sizeof(FrameData) == 160 + 32 * (kDirectionalLights + kPointLights));

constexpr VkDeviceSize kInstanceOffset = (sizeof(FrameData) + 255) / 256 * 256;

float toLinear(std::uint8_t srgb) {
    const float value = static_cast<float>(srgb) / 255.0F;
    return value <= 0.04045F ? value / 12.92F : std::pow((value + 0.055F) / 1.055F, 2.4F);
}

glm::vec4 colourOf(const Light& light) {
    const glm::vec3 linear{toLinear(light.colour.red), toLinear(light.colour.green),
                           toLinear(light.colour.blue)};
    return {linear * light.intensity, 0.0F};
}

// Of more point lights than fit, those nearest to the eye. Fixed storage: this runs every frame.
class NearestPoints final {
public:
    explicit NearestPoints(const glm::vec3& eye) : eye_(eye) {}

    void add(const glm::vec3& position, const Light& light) {
        const glm::vec3 offset = position - eye_;
        const float squared = glm::dot(offset, offset);
        std::size_t slot = count_;
        if (count_ < kPointLights) {
            ++count_;
        } else {
            slot = static_cast<std::size_t>(std::ranges::max_element(squaredDistances_) -
                                            squaredDistances_.begin());
            if (squared >= squaredDistances_[slot])
                return;
        }
        squaredDistances_[slot] = squared;
        const float range = std::max(light.range, 1e-3F);
        lights_[slot] = {{position, 1.0F / (range * range)}, colourOf(light)};
    }

    void write(FrameData& data) const {
        data.points = lights_;
        data.counts[1] = static_cast<std::uint32_t>(count_);
    }

private:
    glm::vec3 eye_;
    std::size_t count_ = 0;
    std::array<float, kPointLights> squaredDistances_{};
    std::array<GpuLight, kPointLights> lights_{};
};

void writeLights(const Scene& scene, const glm::vec3& eye, FrameData& data) {
    if (scene.lights().empty()) { // a sun, so that a scene without lights can be seen
        data.directional[0] = {{glm::normalize(glm::vec3(0.45F, 0.8F, 0.4F)), 0.0F},
                               {0.95F, 0.92F, 0.86F, 0.0F}};
        data.counts[0] = 1;
        return;
    }
    NearestPoints points(eye);
    for (const auto& [entity, light] : scene.lights()) {
        const Transform& transform = scene.transforms()[entity];
        if (light.kind == LightKind::Point)
            points.add(transform.position, light);
        else if (data.counts[0] < kDirectionalLights)
            data.directional[data.counts[0]++] = {{transform.rotation * glm::vec3(0.0F, 0.0F, 1.0F), 0.0F},
                                                  colourOf(light)};
    }
    points.write(data);
}

FrameData describe(const Scene& scene, const CameraView& view) {
    FrameData data{};
    data.viewProjection = view.projection * view.view;
    data.rayFromClip = glm::inverse(view.projection * glm::mat4(glm::mat3(view.view)));
    // From higher up, more of the ground is seen.
    data.gridReach = std::clamp(std::abs(view.position.y) * 20.0F, 80.0F, 4000.0F);
    data.eye = view.position;
    writeLights(scene, view.position, data);
    return data;
}

} // namespace

VkDeviceSize FrameStream::instanceOffset() {
    return kInstanceOffset;
}

rhi::UniqueDescriptorSetLayout makeFrameSetLayout(const rhi::Device& device) {
    const VkDescriptorSetLayoutBinding binding{.descriptorType = VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER,
                                               .descriptorCount = 1,
                                               .stageFlags =
                                                   VK_SHADER_STAGE_VERTEX_BIT | VK_SHADER_STAGE_FRAGMENT_BIT};
    const VkDescriptorSetLayoutCreateInfo info{.sType = VK_STRUCTURE_TYPE_DESCRIPTOR_SET_LAYOUT_CREATE_INFO,
                                               .bindingCount = 1,
                                               .pBindings = &binding};
    VkDescriptorSetLayout layout = VK_NULL_HANDLE;
    rhi::check(device.vk.vkCreateDescriptorSetLayout(device.handle, &info, nullptr, &layout),
               "creating a descriptor set layout");
    return {device, layout};
}

FrameStream::FrameStream(const rhi::Device& device) : device_(device), layout_(makeFrameSetLayout(device)) {
    const VkDescriptorPoolSize size{VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER, 1};
    const VkDescriptorPoolCreateInfo poolInfo{.sType = VK_STRUCTURE_TYPE_DESCRIPTOR_POOL_CREATE_INFO,
                                              .maxSets = 1,
                                              .poolSizeCount = 1,
                                              .pPoolSizes = &size};
    VkDescriptorPool pool = VK_NULL_HANDLE;
    rhi::check(device.vk.vkCreateDescriptorPool(device.handle, &poolInfo, nullptr, &pool),
               "creating a descriptor pool");
    pool_ = {device, pool};
    const VkDescriptorSetLayout layout = layout_.get();
    const VkDescriptorSetAllocateInfo info{.sType = VK_STRUCTURE_TYPE_DESCRIPTOR_SET_ALLOCATE_INFO,
                                           .descriptorPool = pool,
                                           .descriptorSetCount = 1,
                                           .pSetLayouts = &layout};
    rhi::check(device.vk.vkAllocateDescriptorSets(device.handle, &info, &set_),
               "allocating a descriptor set");
}

void FrameStream::grow(VkDeviceSize size) {
    buffer_ = rhi::Buffer(device_, size, rhi::BufferUse::Upload);
    const VkDescriptorBufferInfo frame{.buffer = buffer_.get(), .range = sizeof(FrameData)};
    const VkWriteDescriptorSet write{.sType = VK_STRUCTURE_TYPE_WRITE_DESCRIPTOR_SET,
                                     .dstSet = set_,
                                     .descriptorCount = 1,
                                     .descriptorType = VK_DESCRIPTOR_TYPE_UNIFORM_BUFFER,
                                     .pBufferInfo = &frame};
    device_.vk.vkUpdateDescriptorSets(device_.handle, 1, &write, 0, nullptr);
}

void FrameStream::write(const Scene& scene, const CameraView& view, const RenderSettings& settings) {
    const std::size_t count = instanceCount(scene);
    // Never none: a vertex buffer cannot be bound at its end.
    const VkDeviceSize needed = kInstanceOffset + std::max<std::size_t>(count, 1) * sizeof(Instance);
    if (buffer_.size() < needed)
        grow(std::bit_ceil(needed));

    const FrameData data = describe(scene, view);
    std::memcpy(buffer_.data(), &data, sizeof data);
    const Onlooker onlooker{.depthRow = glm::row(data.viewProjection, 3),
                            .focalLength = std::abs(view.projection[1][1]),
                            .selected = settings.finalPicture ? std::nullopt : settings.selected};
    ranges_ = writeInstances(scene, onlooker,
                             {reinterpret_cast<Instance*>(buffer_.data() + kInstanceOffset), count});
}

} // namespace tarvik::render
