#pragma once

#include <tarvik/app/ScriptBuilder.hpp>

#include <QElapsedTimer>
#include <QObject>

#include <chrono>
#include <memory>

namespace tarvik::editor {

// The builds of the open project's behaviours. A build is cancelled by letting its builder go, so that the
// builder is another one afterwards.
class ProjectBuild final : public QObject {
    Q_OBJECT

public:
    explicit ProjectBuild(QString projectRoot, QObject* parent = nullptr);
    ~ProjectBuild() override;

    [[nodiscard]] const QString& root() const { return projectRoot_; }
    // Not to be kept: see above.
    [[nodiscard]] app::ScriptBuilder& builder() { return *builder_; }

    // From when the disk has shown, in the background, that it lists the sources fast enough.
    void watch();
    void build();
    // Forgets the build that is queued, too. Can take as long as the builder's processes need to end.
    void cancel();
    // From started to finished or cancelled, of which receivers see it false.
    [[nodiscard]] bool busy() const { return busy_; }
    // Of the build that runs, else of the last one.
    [[nodiscard]] std::chrono::milliseconds elapsed() const;

    // The path of a file that a build's output names. Relative names are relative to where the tool ran.
    [[nodiscard]] QString sourcePath(const QString& file) const;

Q_SIGNALS:
    void started();
    void finished(bool ok, const QString& output);
    void cancelled();

private:
    void makeBuilder();

    QString projectRoot_;
    bool watching_ = false;
    bool busy_ = false;
    QElapsedTimer clock_;
    std::chrono::milliseconds lastTook_{0};
    std::unique_ptr<app::ScriptBuilder> builder_;
};

} // namespace tarvik::editor
