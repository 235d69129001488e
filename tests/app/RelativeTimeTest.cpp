#include <tarvik/app/RelativeTime.hpp>

#include <gtest/gtest.h>

#include <QDateTime>
#include <QLocale>

#include <limits>

namespace tarvik::app {
namespace {

// Asks again when the clock moved on meanwhile.
std::string textFor(qint64 age) {
    while (true) {
        const qint64 now = QDateTime::currentSecsSinceEpoch();
        const QString text = relativeTimeString(now - age);
        if (QDateTime::currentSecsSinceEpoch() == now)
            return text.toStdString();
    }
}

TEST(RelativeTimeTest, EachTextHoldsUpToItsLimit) {
    const std::pair<qint64, const char*> rows[] = {
        {-3600, "Just now"},    {0, "Just now"},         {59, "Just now"},           {60, "1 min ago"},
        {3599, "59 min ago"},   {3600, "1 h ago"},       {86'399, "23 h ago"},       {86'400, "Yesterday"},
        {172'799, "Yesterday"}, {172'800, "2 days ago"}, {2'591'999, "29 days ago"},
    };
    for (const auto& [age, text] : rows)
        EXPECT_EQ(textFor(age), text) << age;
    EXPECT_FALSE(textFor(2'592'000).ends_with("ago"));
    EXPECT_EQ(relativeTimeString(0), "Never opened");
    EXPECT_EQ(relativeTimeString(std::numeric_limits<qint64>::min()), "Never opened");
    EXPECT_EQ(relativeTimeString(std::numeric_limits<qint64>::max()), "Just now");
}

TEST(RelativeTimeTest, DatesAreEnglishWhateverTheLocale) {
    QLocale::setDefault(QLocale::German);
    EXPECT_EQ(relativeTimeString(1'583'409'600), "5 Mar 2020");
    QLocale::setDefault(QLocale::c());
}

} // namespace
} // namespace tarvik::app
