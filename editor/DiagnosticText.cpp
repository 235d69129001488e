#include "DiagnosticText.hpp"

namespace tarvik::editor {

QString severityName(app::BuildDiagnostic::Severity severity) {
    switch (severity) {
    case app::BuildDiagnostic::Severity::Error:
        return "error";
    case app::BuildDiagnostic::Severity::Warning:
        return "warning";
    case app::BuildDiagnostic::Severity::Note:
        return "note";
    }
    return "?";
}

QString placeOf(const app::BuildDiagnostic& diagnostic) {
    QString place = diagnostic.file;
    for (const int number : {diagnostic.line, diagnostic.column}) {
        if (place.isEmpty() || number == 0)
            break;
        place += ':' + QString::number(number);
    }
    return place;
}

QString asLine(const app::BuildDiagnostic& diagnostic) {
    const QString place = placeOf(diagnostic);
    return (place.isEmpty() ? QString() : place + ": ") + severityName(diagnostic.severity) + ": " +
           diagnostic.text;
}

} // namespace tarvik::editor
