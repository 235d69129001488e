#include <tarvik/app/RelativeTime.hpp>

#include <QDateTime>

namespace tarvik::app {

namespace {

constexpr qint64 kMinute = 60;
constexpr qint64 kHour = 60 * kMinute;
constexpr qint64 kDay = 24 * kHour;

} // namespace

QString relativeTimeString(qint64 unixSeconds) {
    if (unixSeconds <= 0)
        return "Never opened";
    const qint64 age = QDateTime::currentSecsSinceEpoch() - unixSeconds;
    if (age < kMinute)
        return "Just now";
    if (age < kHour)
        return QString("%1 min ago").arg(age / kMinute);
    if (age < kDay)
        return QString("%1 h ago").arg(age / kHour);
    if (age < 2 * kDay)
        return "Yesterday";
    if (age < 30 * kDay)
        return QString("%1 days ago").arg(age / kDay);
    return QDateTime::fromSecsSinceEpoch(unixSeconds).toString("d MMM yyyy");
}

} // namespace tarvik::app
