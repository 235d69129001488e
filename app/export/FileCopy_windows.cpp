#include "FileCopy.hpp"

#include <tarvik/app/GameExport.hpp>

namespace tarvik::app {

namespace fs = std::filesystem;

std::error_code copyFile(const fs::path& source, const fs::path& target, ExportProgress& progress) {
    std::error_code error;
    fs::copy_file(source, target, fs::copy_options::overwrite_existing, error);
    if (error)
        return error;
    const std::uintmax_t size = fs::file_size(target, error);
    if (!error)
        progress.done += size;
    return error;
}

} // namespace tarvik::app
