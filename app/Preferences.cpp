#include <tarvik/app/Preferences.hpp>

#include <tarvik/app/Paths.hpp>
#include <tarvik/core/Paths.hpp>

#include <QSettings>

namespace tarvik::app {

namespace {

const char* const kGpuKey = "preferences/gpu";
const char* const kValidationKey = "preferences/validation";
const char* const kVsyncKey = "preferences/vsync";
const char* const kProjectsDirectoryKey = "preferences/projectsDirectory";

constexpr int kNoGpu = -1;

} // namespace

Preferences Preferences::load() {
    const QSettings settings;
    Preferences preferences;
    if (const int gpu = settings.value(kGpuKey, kNoGpu).toInt(); gpu >= 0)
        preferences.gpu = static_cast<std::uint32_t>(gpu);
    const auto mode = static_cast<std::uint32_t>(settings.value(kValidationKey, kValidationDefault).toInt());
    preferences.validation = mode <= kValidationOff ? mode : kValidationDefault;
    preferences.vsync = settings.value(kVsyncKey, true).toBool();
    preferences.projectsDirectory = settings.value(kProjectsDirectoryKey).toString();
    return preferences;
}

void Preferences::save() const {
    QSettings settings;
    settings.setValue(kGpuKey, gpu ? static_cast<int>(*gpu) : kNoGpu);
    settings.setValue(kValidationKey, static_cast<int>(validation));
    settings.setValue(kVsyncKey, vsync);
    settings.setValue(kProjectsDirectoryKey, projectsDirectory);
}

void Preferences::applyTo(AppOptions& options) const {
    if (!options.gpu)
        options.gpu = gpu;
    if (!options.validation && validation != kValidationDefault)
        options.validation = validation == kValidationOn;
    if (!options.vsync)
        options.vsync = vsync;
}

QString Preferences::effectiveProjectsDirectory() const {
    return projectsDirectory.isEmpty() ? toQString(paths::defaultProjectsDir()) : projectsDirectory;
}

} // namespace tarvik::app
