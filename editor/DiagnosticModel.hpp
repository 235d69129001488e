#pragma once

#include <tarvik/app/BuildDiagnostics.hpp>

#include <QAbstractTableModel>

#include <cstdint>

namespace tarvik::editor {

// The diagnostics of a build in the order of its output.
class DiagnosticModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column : std::uint8_t { Severity, Place, Text, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    void setDiagnostics(const QList<app::BuildDiagnostic>& diagnostics);
    [[nodiscard]] const app::BuildDiagnostic& diagnostic(int row) const { return diagnostics_[row]; }
    [[nodiscard]] int count(app::BuildDiagnostic::Severity severity) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QList<app::BuildDiagnostic> diagnostics_;
};

} // namespace tarvik::editor
