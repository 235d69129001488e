#include "PipelineCache.hpp"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace tarvik::rhi {
namespace {

VkPhysicalDeviceProperties gpu() {
    VkPhysicalDeviceProperties properties{};
    properties.vendorID = 1;
    properties.deviceID = 2;
    properties.pipelineCacheUUID[15] = 3;
    return properties;
}

std::string driverData() {
    const VkPipelineCacheHeaderVersionOne header{
        .headerSize = sizeof header,
        .headerVersion = VK_PIPELINE_CACHE_HEADER_VERSION_ONE,
        .vendorID = 1,
        .deviceID = 2,
        .pipelineCacheUUID = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 3}};
    std::string data(sizeof header, '\0');
    std::memcpy(data.data(), &header, sizeof header);
    return data + "compiled pipelines";
}

TEST(PipelineCacheTest, HandsTheDriverItsOwnIntactDataOnly) {
    const std::string file = cacheFileOf(driverData());
    EXPECT_EQ(cacheDataOf(file, gpu()), driverData());

    for (std::size_t size = 0; size < file.size(); ++size)
        EXPECT_EQ(cacheDataOf(file.substr(0, size), gpu()), "") << "cut to " << size;
    for (std::size_t at = 0; at < file.size(); ++at) {
        std::string damaged = file;
        damaged[at] = static_cast<char>(damaged[at] ^ 1);
        EXPECT_EQ(cacheDataOf(damaged, gpu()), "") << "damaged at " << at;
    }
    auto updated = gpu();
    updated.pipelineCacheUUID[0] = 1;
    EXPECT_EQ(cacheDataOf(file, updated), "");
}

} // namespace
} // namespace tarvik::rhi
