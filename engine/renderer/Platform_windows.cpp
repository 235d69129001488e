#include "Platform.hpp"

#include <cstdlib>

namespace tarvik::rhi {

std::string loaderAdvice() {
    return "Install the current driver of your graphics card, which brings it, then start again.";
}

std::string driverAdvice() {
    return "Install the current driver of your graphics card from its maker.";
}

std::string validationAdvice() {
    return "install the Vulkan SDK";
}

std::filesystem::path userCacheDirectory() {
    if (const wchar_t* local = _wgetenv(L"LOCALAPPDATA"); local != nullptr && local[0] != L'\0')
        return std::filesystem::path(local) / L"Tarvik" / L"Cache";
    return {};
}

} // namespace tarvik::rhi
