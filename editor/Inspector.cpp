#include "Inspector.hpp"

#include "DisplayText.hpp"
#include "EditorStyle.hpp"

#include <tarvik/scene/Rotation.hpp>

#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QRegularExpression>
#include <QTextDocumentFragment>
#include <QVBoxLayout>

#include <glm/trigonometric.hpp>

#include <algorithm>
#include <utility>

namespace tarvik::editor {
namespace {

QString number(float value) {
    return QLocale().toString(value, 'g', 6);
}

QString vector(const glm::vec3& value, const QString& unit = {}) {
    return QString("%1   %2   %3 %4").arg(number(value.x), number(value.y), number(value.z), unit).trimmed();
}

// With a patch of the colour, which no theme or selection changes.
QString colour(const Colour& value) {
    const QString name =
        QString("#%1").arg(value.red << 16U | value.green << 8U | value.blue, 6, 16, QLatin1Char('0'));
    return QString("<span style='background-color:%1'>&nbsp;&nbsp;&nbsp;&nbsp;</span> %1").arg(name);
}

// With places to wrap it between its words: PlayerMovement, Wall_North.
QString wrappableName(QString name) {
    static const QRegularExpression ends(R"((_|\p{Ll}(?=[\p{Lu}\d])))");
    return name.replace(ends, QStringLiteral("\\1\u200b"));
}

// The rows of one entity, in sections.
class Sheet final {
public:
    explicit Sheet(QWidget& page) : page_(page), form_(new QFormLayout(&page)) {
        form_->setContentsMargins(12, 12, 12, 12);
        form_->setHorizontalSpacing(16);
        form_->setVerticalSpacing(6);
        form_->setRowWrapPolicy(QFormLayout::WrapLongRows);
    }

    void heading(const QString& text) {
        QLabel* label = nameLabel(text);
        styleText(*label, TextRole::Heading);
        form_->addRow(label);
    }

    void section(const QString& text) {
        auto* label = new QLabel(text, &page_);
        label->setContentsMargins(0, 10, 0, 0);
        styleText(*label, TextRole::Section);
        form_->addRow(label);
    }

    void row(const QString& name, const QString& value, Qt::TextFormat format = Qt::PlainText) {
        auto* label = new QLabel(value, &page_);
        label->setTextFormat(format);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        // An accessible name stands in for the text: it has to say the value too.
        const bool isRich = format == Qt::RichText;
        label->setAccessibleName(QString("%1: %2").arg(
            name, isRich ? QTextDocumentFragment::fromHtml(value).toPlainText().trimmed() : value));
        label->setWordWrap(true);
        addRow(name, label);
    }

    // Not to be copied: it would come with the places to wrap it.
    void nameRow(const QString& caption, const QString& name) {
        QLabel* label = nameLabel(name);
        label->setAccessibleName(QString("%1: %2").arg(caption, name));
        addRow(caption, label);
    }

private:
    QLabel* nameLabel(const QString& name) {
        QLabel* label = plainLabel(wrappableName(name), &page_);
        label->setAccessibleName(name);
        label->setToolTip("<qt>" + name.toHtmlEscaped() + "</qt>");
        label->setMinimumWidth(1); // a long name must not widen the sheet
        return label;
    }
    void addRow(const QString& name, QLabel* value) {
        auto* caption = new QLabel(name, &page_);
        caption->setAlignment(Qt::AlignLeft | Qt::AlignTop); // beside the first line of the value
        styleText(*caption, TextRole::Muted);
        form_->addRow(caption, value);
    }

    QWidget& page_;
    QFormLayout* form_;
};

QString meshName(Mesh mesh) {
    switch (mesh) {
    case Mesh::None:
        return Inspector::tr("None");
    case Mesh::Cube:
        return Inspector::tr("Cube");
    case Mesh::Sphere:
        return Inspector::tr("Sphere");
    case Mesh::Cylinder:
        return Inspector::tr("Cylinder");
    case Mesh::Plane:
        return Inspector::tr("Plane");
    }
    return {};
}

void describe(Sheet& sheet, const Entity& entity) {
    const QString name = oneLine(QString::fromStdString(entity.name));
    sheet.heading(name.isEmpty() ? Inspector::tr("Unnamed") : name);
    sheet.section(Inspector::tr("Transform"));
    sheet.row(Inspector::tr("Position"), vector(entity.transform.position, "m"));
    sheet.row(Inspector::tr("Rotation"), vector(degreesFromQuat(entity.transform.rotation), "°"));
    sheet.row(Inspector::tr("Scale"), vector(entity.transform.scale));
    if (entity.mesh != Mesh::None) {
        sheet.section(Inspector::tr("Mesh"));
        sheet.row(Inspector::tr("Shape"), meshName(entity.mesh));
        sheet.row(Inspector::tr("Colour"), colour(entity.colour), Qt::RichText);
    }
    if (entity.light) {
        const bool isPoint = entity.light->kind == LightKind::Point;
        sheet.section(Inspector::tr("Light"));
        sheet.row(Inspector::tr("Kind"), isPoint ? Inspector::tr("Point") : Inspector::tr("Directional"));
        sheet.row(Inspector::tr("Colour"), colour(entity.light->colour), Qt::RichText);
        sheet.row(Inspector::tr("Intensity"), number(entity.light->intensity));
        if (isPoint)
            sheet.row(Inspector::tr("Range"), number(entity.light->range) + " m");
    }
    if (entity.camera) {
        sheet.section(Inspector::tr("Camera"));
        sheet.row(Inspector::tr("Field of view"), number(glm::degrees(entity.camera->fovY)) + "°");
        sheet.row(Inspector::tr("Near plane"), number(entity.camera->nearPlane) + " m");
    }
    if (!entity.behaviour.empty()) {
        sheet.section(Inspector::tr("Script"));
        sheet.nameRow(Inspector::tr("Behaviour"), oneLine(QString::fromStdString(entity.behaviour)));
    }
}

} // namespace

Inspector::Inspector(QWidget* parent) : QScrollArea(parent) {
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMinimumWidth(200);
    setAccessibleName(tr("Inspector"));
    inspect(std::nullopt);
}

void Inspector::setScene(std::shared_ptr<const Scene> scene) {
    scene_ = std::move(scene);
    inspect(std::nullopt);
}

void Inspector::inspect(std::optional<std::size_t> entity) {
    if (!scene_ || !entity || *entity >= scene_->size()) {
        showHint(tr("Select an entity in the scene to see what it is made of."));
        return;
    }
    auto* page = new QWidget(viewport());
    Sheet sheet(*page);
    describe(sheet, scene_->entity(*entity));
    setWidget(page);
}

void Inspector::showHint(const QString& text) {
    auto* page = new QWidget(viewport());
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(16, 16, 16, 16);
    QLabel* hint = plainLabel(text, page);
    hint->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    styleText(*hint, TextRole::Muted);
    layout->addWidget(hint);
    layout->addStretch();
    setWidget(page);
}

} // namespace tarvik::editor
