#pragma once

#include <tarvik/app/Export.hpp>

#include <QList>
#include <QString>
#include <QStringView>

#include <cstdint>

namespace tarvik::app {

struct BuildDiagnostic {
    enum class Severity : std::uint8_t { Error, Warning, Note };

    Severity severity = Severity::Error;
    QString file;   // as the tool wrote it, "/" separators; empty when it named none
    int line = 0;   // from 1; 0 when unknown
    int column = 0; // from 1; 0 when unknown
    QString text;

    bool operator==(const BuildDiagnostic&) const = default;
};

// What the compilers (GCC, Clang, Visual C++), their linkers and CMake complain about in a build's output, in
// the order of the output, each once.
class TARVIK_APPCOMMON_API BuildDiagnostics final {
public:
    explicit BuildDiagnostics(QStringView output);

    [[nodiscard]] QList<BuildDiagnostic> list() const { return list_; }

private:
    QList<BuildDiagnostic> list_;
};

} // namespace tarvik::app
