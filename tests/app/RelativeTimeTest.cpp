#include <tarvik/app/RelativeTime.hpp>

#include <gtest/gtest.h>

#include <QDateTime>
#include <QLocale>

namespace tarvik::app {
namespace {

TEST(RelativeTimeTest, EachTextHoldsUpToItsLimitAndIsEnglish) {
    const std::pair<qint64, const char*> rows[] = {
        {-3600, "Just now"},     {59, "Just now"},           {60, "1 min ago"},     {3599, "59 min ago"},
        {3600, "1 h ago"},       {86'399, "23 h ago"},       {86'400, "Yesterday"}, {172'799, "Yesterday"},
        {172'800, "2 days ago"}, {2'591'999, "29 days ago"},
    };
    for (const auto& [age, text] : rows) {
        qint64 now = 0;
        QString told;
        do { // again if the clock moves on meanwhile
            now = QDateTime::currentSecsSinceEpoch();
            told = relativeTimeString(now - age);
        } while (QDateTime::currentSecsSinceEpoch() != now);
        EXPECT_EQ(told, text) << age;
    }
    QLocale::setDefault(QLocale::German);
    EXPECT_EQ(relativeTimeString(1'583'409'600), "5 Mar 2020");
    QLocale::setDefault(QLocale::c());
    EXPECT_EQ(relativeTimeString(0), "Never opened");
}

} // namespace
} // namespace tarvik::app
