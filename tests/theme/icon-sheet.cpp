// icon-sheet PICTURE: saves the sheet of all built-in icons and says which icon is where.
#include "IconSheet.hpp"

#include <QApplication>

#include <cstdio>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    const QString file = application.arguments().value(1);
    tarvik::app::theme::apply(application);
    const tarvik::test::IconSheet sheet;
    if (!sheet.draw().save(file)) {
        std::fprintf(stderr, "icon-sheet: %s cannot be written\n", qUtf8Printable(file));
        return 1;
    }
    int column = 0;
    for (const QStringList& names : sheet.layers())
        std::printf("%s%s", qUtf8Printable(names.join(" + ")), ++column % sheet.kColumns == 0 ? "\n" : ", ");
    return 0;
}
