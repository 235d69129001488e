#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>

namespace tarvik::app {

// What was chosen explicitly when the process was started. An unset or empty field means that nothing was
// chosen: the user's preference or the default applies. The library reads validation, gpu and vsync; the
// rest is the host's own.
struct AppOptions {
    std::int32_t frames = 0; // quit after that many presented frames; 0: never
    QString projectDir;
    bool play = false; // the game alone, no editor around it
    bool fullScreen = false;
    std::optional<bool> validation;
    std::optional<std::uint32_t> gpu; // index as Vulkan lists the GPUs
    std::optional<bool> vsync;
    std::optional<bool> grid;     // the viewport's ground grid
    QString screenshotFile;       // written before quitting by itself
    std::uint32_t logLevel = 2;   // the least LogLevel that is logged
    QString scene;                // instead of the project's default scene, relative to the project
    QString logFile;              // log lines are appended to it
    bool quiet = false;           // no log lines on standard error
    QString newProjectName;       // create the project in projectDir first
    QString cameraEye;            // "x,y,z" in metres: where the camera stands
    QString cameraTarget;         // "x,y,z" in metres: what it looks at
    QString statsFile;            // start-up and frame times, written as JSON before quitting
    std::int32_t windowWidth = 0; // logical pixels; 0: the remembered or default size
    std::int32_t windowHeight = 0;
    bool still = false;           // the camera does not orbit
    std::int64_t timeLimitMs = 0; // give up with a failure after that time; 0: never
    bool listGpus = false;        // print the GPUs and quit
    bool build = false;           // build the behaviours without a window and quit
    QStringList arguments;        // positional: the project folder, where projectDir was not named
};

} // namespace tarvik::app
