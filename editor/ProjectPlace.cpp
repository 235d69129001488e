#include "ProjectPlace.hpp"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace tarvik::editor {
namespace {

struct PlaceText {
    Q_DECLARE_TR_FUNCTIONS(ProjectPlace)
};

} // namespace

QString problemWithProjectPlace(const QString& root) {
    const QString shown = QDir::toNativeSeparators(root);
    if (!QFileInfo(root).isDir()) { // the name that Qt makes of such a folder is another
        return PlaceText::tr(
                   "%1: there is no such folder. In one whose name is not Unicode text, behaviours cannot be "
                   "built.")
            .arg(shown);
    }
    if (root.contains('[')) // sources would be left out without a word
        return PlaceText::tr(
                   "%1: behaviours cannot be built in a folder whose name has a \"[\", which CMake takes for "
                   "a pattern.")
            .arg(shown);
    return {};
}

} // namespace tarvik::editor
