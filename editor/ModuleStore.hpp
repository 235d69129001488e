#pragma once

#include <tarvik/core/Error.hpp>

#include <QByteArray>
#include <QString>

#include <expected>

namespace tarvik::editor {

// The folder of the copies through which modules are loaded: the build may write the original at any time,
// and a name that was loaded before would bring the old code back. It also remembers a module whose code
// ended the program.
class ModuleStore final {
public:
    // Where nothing can be written, as in a game that is installed, another folder of the user's does.
    explicit ModuleStore(const QString& folder);

    // Removes the copies that earlier processes left.
    void sweep() const;

    // Under a name that was never used before.
    [[nodiscard]] std::expected<QString, Error> copy(const QString& library) const;

    // Between the two, the end of the process is blamed on the module.
    void beginTrial(const QByteArray& fingerprint) const;
    void endTrial() const;
    // The process ended within the module's last trial.
    [[nodiscard]] bool hasCrashed(const QByteArray& fingerprint) const;

    // Of its content; empty when it cannot be read.
    [[nodiscard]] static QByteArray fingerprint(const QString& library);

private:
    [[nodiscard]] QString trialFile() const;

    QString folder_;
};

} // namespace tarvik::editor
