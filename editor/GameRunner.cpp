#include "GameRunner.hpp"

#include "Game.hpp"
#include "ProjectBuild.hpp"
#include "Session.hpp"

#include <tarvik/app/Paths.hpp>
#include <tarvik/app/ScriptBuilder.hpp>
#include <tarvik/core/Log.hpp>
#include <tarvik/core/Paths.hpp>

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>

#include <utility>

namespace tarvik::editor {
namespace {

// A scene whose behaviours are not there is a picture.
void warnOfIdle(const Scene& scene) {
    std::size_t idle = 0;
    for (std::size_t i = 0; i < scene.size(); ++i)
        idle += scene.behaviour(i).empty() ? 0 : 1;
    if (idle > 0)
        log::warn("Game", "played without behaviours, which {} of the entities have", idle);
}

} // namespace

GameRunner::GameRunner(const Session& session, QWidget& window) : session_(session), window_(window) {}

GameRunner::~GameRunner() {
    stop();
}

void GameRunner::setBuild(ProjectBuild* build) {
    stop();
    if (build_ != nullptr)
        build_->disconnect(this);
    build_ = build;
    if (build_ == nullptr)
        return;
    connect(build_, &ProjectBuild::finished, this, &GameRunner::buildEnded);
    connect(build_, &ProjectBuild::cancelled, this, &GameRunner::giveUp);
}

void GameRunner::play(std::shared_ptr<const Scene> scene) {
    stop();
    scene_ = std::move(scene);
    // A build that runs already may have read sources that changed since. Another one follows it.
    buildIsOld_ = build_->busy();
    Q_EMIT stateChanged();
    // Current behaviours cost a moment; the game must never run old ones.
    if (build_->builder().hasScripts())
        build_->build();
    else
        begin();
}

void GameRunner::stop() {
    giveUp();
    if (!game_)
        return;
    Q_EMIT ending();
    game_.reset();
    Q_EMIT stateChanged();
}

void GameRunner::giveUp() {
    delete question_;
    if (std::exchange(scene_, nullptr))
        Q_EMIT stateChanged();
}

void GameRunner::buildEnded(bool ok, const QString&) {
    if (scene_ && std::exchange(buildIsOld_, false))
        return;
    if (scene_ && ok) {
        begin();
    } else if (scene_) {
        giveUp();
        Q_EMIT buildFailed();
    } else if (game_ && ok && !hasCrashed()) { // nobody is asked again, once the game runs without it
        if (const auto loaded = game_->load(build_->builder().libraryPath()); !loaded)
            Q_EMIT failed(QString::fromStdString(loaded.error().message));
    }
}

void GameRunner::begin() {
    if (question_)
        return;
    const QString library = build_->builder().libraryPath();
    if (!QFileInfo::exists(library))
        run({});
    else if (hasCrashed())
        askWhetherToTrust();
    else
        run(library);
}

bool GameRunner::hasCrashed() const {
    return ModuleStore(loadDir()).hasCrashed(ModuleStore::fingerprint(build_->builder().libraryPath()));
}

// A shipped game has no sources, and its folder is not to be written to.
QString GameRunner::loadDir() const {
    if (build_->builder().hasScripts())
        return build_->builder().loadDir();
    const QByteArray game =
        QCryptographicHash::hash(QDir(build_->root()).absolutePath().toUtf8(), QCryptographicHash::Sha1)
            .toHex();
    return app::toQString(paths::userDataDir()) + "/games/" + QString::fromLatin1(game);
}

void GameRunner::askWhetherToTrust() {
    const QString problem =
        tr("The behaviours were not loaded: the program ended the last time they were loaded, or "
           "in their first update.");
    if (session_.isUnattended()) {
        giveUp();
        Q_EMIT failed(problem);
        return;
    }
    auto* box = new QMessageBox(QMessageBox::Warning, QCoreApplication::applicationName(), problem,
                                QMessageBox::Cancel, &window_);
    QPushButton* load = box->addButton(tr("&Load Anyway"), QMessageBox::AcceptRole);
    QPushButton* without = box->addButton(tr("&Play Without Them"), QMessageBox::AcceptRole);
    box->setAttribute(Qt::WA_DeleteOnClose);
    question_ = box;
    connect(box, &QMessageBox::finished, this, [this, box, load, without] {
        question_.clear();
        if (box->clickedButton() == load) {
            run(build_->builder().libraryPath());
        } else if (box->clickedButton() == without) {
            run({});
        } else {
            giveUp();
            Q_EMIT declined();
        }
    });
    box->open();
}

void GameRunner::run(const QString& library) {
    game_ = std::make_unique<Game>(*std::exchange(scene_, nullptr), loadDir());
    if (library.isEmpty()) {
        warnOfIdle(game_->scene());
    } else if (const auto loaded = game_->load(library); !loaded) {
        game_.reset();
        Q_EMIT stateChanged();
        Q_EMIT failed(QString::fromStdString(loaded.error().message));
        return;
    }
    Q_EMIT started();
    Q_EMIT stateChanged();
}

} // namespace tarvik::editor
