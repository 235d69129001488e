#include <tarvik/app/Paths.hpp>

#include <type_traits>

namespace tarvik::app {

namespace {

// std::filesystem throws where text cannot be converted. Going through the native encoding by Qt's own
// conversions instead puts a replacement character there, which a user interface can live with.
constexpr bool kNativeIsUtf16 = std::is_same_v<std::filesystem::path::value_type, wchar_t>;

} // namespace

std::filesystem::path toPath(const QString& text) {
    if constexpr (kNativeIsUtf16)
        return {text.toStdWString()};
    else
        return {text.toStdString()};
}

QString toQString(const std::filesystem::path& path) {
    if constexpr (kNativeIsUtf16)
        return QString::fromStdWString(path.generic_wstring());
    else
        return QString::fromStdString(path.generic_string());
}

} // namespace tarvik::app
