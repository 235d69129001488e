#include "LogFileSink.hpp"

#include "LogModel.hpp"

#include <QDateTime>

#include <algorithm>

namespace tarvik::editor {

LogFileSink::LogFileSink(const QString& file) : file_(file) {
    if (!file_.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
        problem_ = QString("--log-file: \"%1\" cannot be written: %2").arg(file, file_.errorString());
}

void LogFileSink::write(const LogMessage& msg) {
    const QDateTime time = QDateTime::fromMSecsSinceEpoch(msg.time / 1'000'000);
    // One line of the log is one line of the file.
    std::string text = msg.message;
    std::ranges::replace(text, '\n', ' ');
    const QByteArray line = time.toString(Qt::ISODateWithMs).toUtf8() + ' ' + levelName(msg.level).toUtf8() +
                            " [" + QByteArray::fromStdString(msg.category) + "] " +
                            QByteArray::fromStdString(text) + '\n';
    const std::scoped_lock guard(lock_);
    file_.write(line);
}

} // namespace tarvik::editor
