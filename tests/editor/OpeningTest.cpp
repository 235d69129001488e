#include "Background.hpp"
#include "BuildPanel.hpp"
#include "DeadFolder.hpp"
#include "Hub.hpp"
#include "MainWindow.hpp"
#include "OpeningBar.hpp"
#include "ProjectInspector.hpp"
#include "Pump.hpp"
#include "RedBoxProject.hpp"
#include "SceneViewClient.hpp"
#include "Session.hpp"

#include <gtest/gtest.h>

#include <QAction>
#include <QFileDialog>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QTest>
#include <QUrl>

#include <chrono>
#include <optional>

namespace tarvik::editor {
namespace {

using namespace std::chrono_literals;
using test::pumpUntil;

// The whole window, with recent projects: that of the test, the newest, and one that opens.
class OpeningTest : public testing::Test {
protected:
    void start(const std::filesystem::path& recent, const std::filesystem::path& opened = {}) {
        qputenv("XDG_DATA_HOME", (home_ / "data").c_str());
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope,
                           QString::fromStdString(home_ / "settings"));
        test::makeRedBoxProject(home_ / "alive");
        app::AppOptions options;
        options.projectDir = QString::fromStdString(opened);
        QElapsedTimer sinceStart;
        sinceStart.start();
        session_.emplace(options, sinceStart);
        session_->context().registry.put({recent, "Recent", 2});
        session_->context().registry.put({home_ / "alive", "Alive", 1});
        window_.emplace(*session_);
        window_->start();
        ASSERT_TRUE(pumpUntil([&] { return window_->isActiveWindow(); }));
    }
    void press(Qt::Key key) { QTest::keyClick(window_->windowHandle(), key); }
    [[nodiscard]] bool isWaiting() const { return window_->findChild<OpeningBar*>()->isVisible(); }
    [[nodiscard]] bool isOpen() const { return window_->windowTitle().startsWith("Test"); }
    void takeAllAnswers() {
        ASSERT_TRUE(finishBackground(20s));
        QCoreApplication::processEvents();
    }

    const test::TemporaryFolder home_;
    std::optional<Session> session_;
    std::optional<MainWindow> window_;
};

TEST_F(OpeningTest, ItsKeyBringsAPanelToTheFrontThatIsBehindAnother) {
    start(home_ / "alive", home_ / "alive");
    ASSERT_TRUE(pumpUntil([&] { return isOpen(); }));
    const auto isSeen = [&] {
        return !window_->findChild<BuildPanel*>()->visibleRegion().isEmpty();
    };
    for (const bool seen : {false, true, false}) {
        EXPECT_TRUE(pumpUntil([&] { return isSeen() == seen; }));
        QTest::keyClick(window_->windowHandle(), Qt::Key_3, Qt::ControlModifier);
    }
}

TEST_F(OpeningTest, TheUserGoesOnWhileADeadFolderIsAwaited) {
    test::DeadFolder dead;
    if (!dead.isThere())
        GTEST_SKIP() << "mounting is not allowed here";
    start(dead / "recent", dead / "opened");
    ASSERT_TRUE(pumpUntil([&] { return isWaiting(); }));
    window_->findChild<OpeningBar*>()->findChild<QPushButton*>()->click();
    EXPECT_FALSE(isWaiting());

    press(Qt::Key_Return);
    EXPECT_TRUE(pumpUntil([&] { return isWaiting(); }));
    press(Qt::Key_End);
    press(Qt::Key_Return);
    EXPECT_TRUE(pumpUntil([&] { return isOpen(); }));
    EXPECT_FALSE(isWaiting());

    dead.giveUp();
    takeAllAnswers();
    EXPECT_TRUE(isOpen());
    EXPECT_EQ(window_->findChild<QMessageBox*>(), nullptr) << "nobody waits for that folder";
}

TEST_F(OpeningTest, AnAnswerWaitsUntilTheDialogIsClosed) {
    start(home_ / "alive");
    for (QAction* action : window_->findChildren<QAction*>()) {
        if (action->menuRole() == QAction::AboutRole)
            action->trigger();
    }
    auto* box = window_->findChild<QMessageBox*>();
    Q_EMIT window_->findChild<Hub*>()->projectChosen({home_ / "alive", "Alive", 1});
    takeAllAnswers();
    EXPECT_FALSE(isOpen());
    box->accept();
    EXPECT_TRUE(pumpUntil([&] { return isOpen(); }));
}

TEST_F(OpeningTest, AProjectThatIsGoneIsAskedForHoweverDeadTheFoldersAre) {
    const test::DeadFolder dead; // where mounting is not allowed, the folder is only empty
    start(home_ / "gone");
    const QUrl lastVisited = QUrl::fromLocalFile(QString::fromStdString(dead / "of another program"));
    QSettings shared(QSettings::UserScope, "QtProject");
    shared.setValue("FileDialog/lastVisited", lastVisited);
    QSettings().setValue("preferences/projectsDirectory", QString::fromStdString(dead / "projects"));
    press(Qt::Key_Return);
    ASSERT_TRUE(pumpUntil([&] { return window_->findChild<QFileDialog*>() != nullptr; }));
    delete window_->findChild<QFileDialog*>();
    EXPECT_EQ(shared.value("FileDialog/lastVisited"), lastVisited) << "it is theirs";
}

TEST(DragTest, IsAcceptedOnceTheDiskHasAnsweredAndDropsWhatItSaid) {
    const test::TemporaryFolder folder;
    test::makeRedBoxProject(folder / "project");
    const QList<QUrl> urls{QUrl::fromLocalFile(QString::fromStdString(folder / "project"))};
    SceneViewClient client({});
    QString dropped;
    QObject::connect(&client, &SceneViewClient::projectDropped, &client,
                     [&](const QString& root) { dropped = root; });
    EXPECT_TRUE(pumpUntil([&] { return client.canDrop(urls); }));
    client.dropped(urls, {});
    EXPECT_EQ(dropped, urls.front().toLocalFile());
}

TEST(ProjectInspectorTest, LooksPastMoreDeadFoldersThanThereAreThreads) {
    const test::DeadFolder dead;
    if (!dead.isThere())
        GTEST_SKIP() << "mounting is not allowed here";
    const test::TemporaryFolder alive;
    ProjectInspector inspector;
    bool answered = false;
    QObject::connect(&inspector, &ProjectInspector::inspected, &inspector,
                     [&](const std::filesystem::path& folder) { answered = folder == alive.path(); });
    for (int i = 0; i < 100; ++i) {
        inspector.inspect(dead / std::to_string(i), {});
        if (i == 10)
            inspector.inspect(alive.path(), {}); // later ones go before it
    }
    EXPECT_TRUE(pumpUntil([&] { return answered; }));
}

} // namespace
} // namespace tarvik::editor
