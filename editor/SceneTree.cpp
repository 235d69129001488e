#include "SceneTree.hpp"

#include "DisplayText.hpp"
#include "EditorStyle.hpp"

#include <QAbstractTableModel>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QSortFilterProxyModel>
#include <QTreeView>
#include <QVBoxLayout>

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

namespace tarvik::editor {

// Reads the scene in place: ten thousand entities cost a list of kinds, not copies.
class SceneModel final : public QAbstractTableModel {
public:
    enum Column : std::uint8_t { Name, Kind, ColumnCount };

    using QAbstractTableModel::QAbstractTableModel;

    void setScene(std::shared_ptr<const Scene> scene) {
        beginResetModel();
        scene_ = std::move(scene);
        kinds_.clear();
        if (scene_)
            collectKinds();
        endResetModel();
    }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : static_cast<int>(kinds_.size());
    }
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override {
        return parent.isValid() ? 0 : ColumnCount;
    }

    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (orientation == Qt::Vertical || role != Qt::DisplayRole)
            return QAbstractTableModel::headerData(section, orientation, role);
        return section == Name ? QObject::tr("Name") : QObject::tr("Kind");
    }

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override {
        const auto row = static_cast<std::size_t>(index.row());
        if (role == Qt::ForegroundRole && index.column() == Kind)
            return logLevelColour(LogLevel::Debug);
        if (role == Qt::ToolTipRole && !scene_->behaviour(row).empty())
            return QObject::tr("Behaviour: %1").arg(oneLine(QString::fromStdString(scene_->behaviour(row))));
        if (role != Qt::DisplayRole)
            return {};
        return index.column() == Kind ? kinds_[row]
                                      : oneLine(QString::fromStdString(scene_->entityName(row)));
    }

private:
    void collectKinds() {
        const QString meshes[kMeshCount] = {QObject::tr("Empty"), QObject::tr("Cube"), QObject::tr("Sphere"),
                                            QObject::tr("Cylinder"), QObject::tr("Plane")};
        for (const Mesh mesh : scene_->meshes())
            kinds_.push_back(meshes[static_cast<std::size_t>(mesh)]);
        for (const auto& [entity, light] : scene_->lights()) {
            kinds_[entity] = light.kind == LightKind::Point ? QObject::tr("Point light")
                                                            : QObject::tr("Directional light");
        }
        for (const auto& camera : scene_->cameras())
            kinds_[camera.entity] = QObject::tr("Camera");
    }

    std::shared_ptr<const Scene> scene_;
    std::vector<QString> kinds_;
};

SceneTree::SceneTree(QWidget* parent)
    : QWidget(parent),
      model_(new SceneModel(this)),
      filtered_(new QSortFilterProxyModel(this)),
      view_(new QTreeView(this)) {
    filtered_->setSourceModel(model_);
    filtered_->setFilterCaseSensitivity(Qt::CaseInsensitive);
    setMinimumWidth(160);

    auto* filter = new QLineEdit(this);
    filter->setPlaceholderText(tr("Filter by name"));
    filter->setAccessibleName(tr("Filter entities by name"));
    filter->setClearButtonEnabled(true);
    connect(filter, &QLineEdit::textChanged, this, [this](const QString& text) {
        const QScopedValueRollback guard(showing_, true);
        filtered_->setFilterFixedString(text);
        showChosen();
    });

    view_->setModel(filtered_);
    view_->setAccessibleName(tr("Entities of the scene"));
    view_->setRootIsDecorated(false);
    view_->setUniformRowHeights(true);
    view_->setAlternatingRowColors(true);
    view_->setFrameShape(QFrame::NoFrame);
    view_->header()->setStretchLastSection(false);
    view_->header()->setSectionResizeMode(SceneModel::Name, QHeaderView::Stretch);
    view_->header()->setSectionResizeMode(SceneModel::Kind, QHeaderView::Fixed);
    view_->header()->resizeSection(SceneModel::Kind,
                                   view_->fontMetrics().horizontalAdvance(tr("Directional light")) + 16);
    setTabOrder(filter, view_);
    connect(view_->selectionModel(), &QItemSelectionModel::selectionChanged, this, &SceneTree::takeChosen);
    connect(view_, &QTreeView::activated, this, &SceneTree::entityActivated);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->setSpacing(6);
    layout->addWidget(filter);
    layout->addWidget(view_);
}

void SceneTree::setScene(std::shared_ptr<const Scene> scene) {
    chosen_.reset();
    const QScopedValueRollback guard(showing_, true);
    model_->setScene(std::move(scene));
}

void SceneTree::choose(std::optional<std::size_t> entity) {
    chosen_ = entity;
    showChosen();
}

void SceneTree::showChosen() {
    const QScopedValueRollback guard(showing_, true);
    const QModelIndex index =
        chosen_ ? filtered_->mapFromSource(model_->index(static_cast<int>(*chosen_), 0)) : QModelIndex();
    if (index.isValid())
        view_->setCurrentIndex(index);
    else
        view_->selectionModel()->clear();
}

void SceneTree::takeChosen() {
    if (showing_)
        return;
    const QModelIndexList rows = view_->selectionModel()->selectedRows();
    chosen_.reset();
    if (!rows.isEmpty())
        chosen_ = static_cast<std::size_t>(filtered_->mapToSource(rows.front()).row());
    Q_EMIT entityChosen(chosen_);
}

} // namespace tarvik::editor
