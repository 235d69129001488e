#include <gtest/gtest.h>

#include <QApplication>
#include <QSettings>
#include <QTemporaryDir>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // Listing the tests, which the build does, must work without a display.
    if (GTEST_FLAG_GET(list_tests))
        return RUN_ALL_TESTS();
    const QTemporaryDir home;
    qputenv("XDG_DATA_HOME", home.path().toUtf8());
    QCoreApplication::setOrganizationName("Tarvik");
    QCoreApplication::setApplicationName("test");
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, home.path());
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
