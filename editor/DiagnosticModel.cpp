#include "DiagnosticModel.hpp"

#include "DiagnosticText.hpp"
#include "DisplayText.hpp"
#include "EditorStyle.hpp"

#include <algorithm>

namespace tarvik::editor {
namespace {

LogLevel levelOf(app::BuildDiagnostic::Severity severity) {
    switch (severity) {
    case app::BuildDiagnostic::Severity::Error:
        return LogLevel::Error;
    case app::BuildDiagnostic::Severity::Warning:
        return LogLevel::Warn;
    case app::BuildDiagnostic::Severity::Note:
        break;
    }
    return LogLevel::Debug;
}

QString shortPlace(app::BuildDiagnostic diagnostic) {
    diagnostic.file = diagnostic.file.section('/', -1);
    diagnostic.column = 0;
    return oneLine(placeOf(diagnostic));
}

// Markup, because a plain text that looks like markup would be taken for it, and to be wrapped.
QString toolTip(const app::BuildDiagnostic& diagnostic) {
    constexpr qsizetype kLongest = 2000;
    QString text = diagnostic.text.left(kLongest);
    if (const QString place = placeOf(diagnostic); !place.isEmpty())
        text.prepend(place + '\n');
    return "<p style=\"white-space: pre-wrap\">" + text.toHtmlEscaped() + "</p>";
}

} // namespace

void DiagnosticModel::setDiagnostics(const QList<app::BuildDiagnostic>& diagnostics) {
    beginResetModel();
    diagnostics_ = diagnostics;
    endResetModel();
}

int DiagnosticModel::count(app::BuildDiagnostic::Severity severity) const {
    return static_cast<int>(std::ranges::count(diagnostics_, severity, &app::BuildDiagnostic::severity));
}

int DiagnosticModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(diagnostics_.size());
}

int DiagnosticModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant DiagnosticModel::data(const QModelIndex& index, int role) const {
    const app::BuildDiagnostic& shown = diagnostic(index.row());
    if (role == Qt::ForegroundRole && index.column() != Text)
        return logLevelColour(index.column() == Severity ? levelOf(shown.severity) : LogLevel::Debug);
    if (role == Qt::ToolTipRole)
        return toolTip(shown);
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case Severity:
        return severityName(shown.severity);
    case Place:
        return shortPlace(shown);
    default:
        return oneLine(shown.text);
    }
}

QVariant DiagnosticModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section) {
    case Severity:
        return tr("Severity");
    case Place:
        return tr("Place");
    default:
        return tr("Problem");
    }
}

} // namespace tarvik::editor
