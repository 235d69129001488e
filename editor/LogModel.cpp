#include "LogModel.hpp"

#include "DisplayText.hpp"
#include "EditorStyle.hpp"

#include <algorithm>
#include <iterator>

namespace tarvik::editor {

QString levelName(LogLevel level) {
    switch (level) {
    case LogLevel::Debug:
        return "debug";
    case LogLevel::Info:
        return "info";
    case LogLevel::Warn:
        return "warning";
    case LogLevel::Error:
        return "error";
    }
    return "?";
}

void LogModel::append(std::deque<app::UiLogEntry> batch) {
    if (batch.empty())
        return;
    constexpr auto kMost = app::LogBridge::kHistory;
    if (batch.size() >= kMost) {
        beginResetModel();
        lines_ = std::move(batch);
        lines_.erase(lines_.begin(), lines_.end() - static_cast<std::ptrdiff_t>(kMost));
        endResetModel();
        return;
    }
    if (lines_.size() + batch.size() > kMost) {
        const auto surplus = static_cast<std::ptrdiff_t>(lines_.size() + batch.size() - kMost);
        beginRemoveRows({}, 0, static_cast<int>(surplus) - 1);
        lines_.erase(lines_.begin(), lines_.begin() + surplus);
        endRemoveRows();
    }
    const int first = rowCount();
    beginInsertRows({}, first, first + static_cast<int>(batch.size()) - 1);
    std::ranges::move(batch, std::back_inserter(lines_));
    endInsertRows();
}

void LogModel::clear() {
    beginResetModel();
    lines_.clear();
    endResetModel();
}

int LogModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(lines_.size());
}

int LogModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant LogModel::data(const QModelIndex& index, int role) const {
    const app::UiLogEntry& entry = line(index.row());
    if (role == Qt::ForegroundRole)
        return logLevelColour(entry.level);
    if (role != Qt::DisplayRole)
        return {};
    switch (index.column()) {
    case Time:
        return entry.time.toString("HH:mm:ss.zzz");
    case Level:
        return levelName(entry.level);
    case Category:
        return oneLine(entry.category);
    default:
        return oneLine(entry.message);
    }
}

QVariant LogModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation == Qt::Vertical || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    switch (section) {
    case Time:
        return tr("Time");
    case Level:
        return tr("Level");
    case Category:
        return tr("Category");
    default:
        return tr("Message");
    }
}

LogFilter::LogFilter(LogModel& model, QObject* parent) : QSortFilterProxyModel(parent), model_(model) {
    setSourceModel(&model);
}

void LogFilter::setLeastLevel(LogLevel level) {
    leastLevel_ = level;
    invalidateFilter();
}

void LogFilter::setText(const QString& text) {
    text_ = text;
    invalidateFilter();
}

const app::UiLogEntry& LogFilter::line(const QModelIndex& index) const {
    return model_.line(mapToSource(index).row());
}

bool LogFilter::filterAcceptsRow(int row, const QModelIndex&) const {
    const app::UiLogEntry& entry = model_.line(row);
    return entry.level >= leastLevel_ &&
           (text_.isEmpty() || entry.message.contains(text_, Qt::CaseInsensitive) ||
            entry.category.contains(text_, Qt::CaseInsensitive));
}

} // namespace tarvik::editor
