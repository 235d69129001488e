#include <tarvik/core/Paths.hpp>

#include <windows.h>

#include <knownfolders.h>
#include <shlobj.h>

namespace tarvik::paths {

namespace fs = std::filesystem;

namespace {

fs::path knownFolder(REFKNOWNFOLDERID id) {
    PWSTR text = nullptr;
    fs::path folder;
    if (SUCCEEDED(SHGetKnownFolderPath(id, KF_FLAG_DONT_VERIFY, nullptr, &text)))
        folder = text;
    CoTaskMemFree(text);
    return folder;
}

} // namespace

fs::path defaultProjectsDir() {
    return knownFolder(FOLDERID_Documents) / L"Tarvik Projects";
}

fs::path userDataDir() {
    return knownFolder(FOLDERID_RoamingAppData) / L"Tarvik";
}

// The conversions of the standard library throw on text that is not valid; these put in a replacement.
std::string toUtf8(const fs::path& path) {
    const std::wstring wide = path.generic_wstring();
    const auto length = static_cast<int>(wide.size());
    const int size = WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
    std::string text(static_cast<std::size_t>(size), '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, text.data(), size, nullptr, nullptr);
    return text;
}

fs::path fromUtf8(std::string_view text) {
    const auto length = static_cast<int>(text.size());
    const int size = MultiByteToWideChar(CP_UTF8, 0, text.data(), length, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(size), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), length, wide.data(), size);
    return wide;
}

} // namespace tarvik::paths
