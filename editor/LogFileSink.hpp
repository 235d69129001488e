#pragma once

#include <tarvik/core/LogSink.hpp>

#include <QFile>
#include <QString>

#include <mutex>

namespace tarvik::editor {

// Appends every line to a file, at once, so that the last lines before a crash are there.
class LogFileSink final : public LogSink {
public:
    explicit LogFileSink(const QString& file);

    // Empty when the file could be opened.
    [[nodiscard]] const QString& problem() const { return problem_; }

    void write(const LogMessage& msg) override;

private:
    std::mutex lock_;
    QFile file_;
    QString problem_;
};

} // namespace tarvik::editor
