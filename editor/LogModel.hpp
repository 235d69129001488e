#pragma once

#include <tarvik/app/LogBridge.hpp>

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>

#include <cstdint>
#include <deque>

namespace tarvik::editor {

[[nodiscard]] QString levelName(LogLevel level);

// The newest log lines, LogBridge::kHistory at most, oldest first.
class LogModel final : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column : std::uint8_t { Time, Level, Category, Message, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    void append(std::deque<app::UiLogEntry> batch);
    void clear();
    [[nodiscard]] const app::UiLogEntry& line(int row) const { return lines_[static_cast<std::size_t>(row)]; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    std::deque<app::UiLogEntry> lines_;
};

// The lines of a least level that hold a text.
class LogFilter final : public QSortFilterProxyModel {
    Q_OBJECT

public:
    explicit LogFilter(LogModel& model, QObject* parent = nullptr);

    void setLeastLevel(LogLevel level);
    void setText(const QString& text);
    [[nodiscard]] const app::UiLogEntry& line(const QModelIndex& index) const;

protected:
    [[nodiscard]] bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

private:
    LogModel& model_;
    LogLevel leastLevel_ = LogLevel::Debug;
    QString text_;
};

} // namespace tarvik::editor
