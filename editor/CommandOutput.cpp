#include "CommandOutput.hpp"

namespace tarvik::editor {

void writeText(std::FILE* stream, const QString& text) {
    const QByteArray bytes = text.toLocal8Bit();
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
    std::fflush(stream);
}

int fail(ExitStatus status, const QString& reason) {
    writeText(stderr, QString("tarvik-editor: %1\n").arg(reason));
    return static_cast<int>(status);
}

} // namespace tarvik::editor
