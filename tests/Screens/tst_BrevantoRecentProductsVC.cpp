#include "ScreenWindow.h"
#include "support/FakeReachability.h"
#include "support/RawServer.h"
#include "support/TestImages.h"

#include "Brevanto/BrevantoAdVC.h"
#include "Brevanto/BrevantoBundle.h"
#include "Brevanto/BrevantoConstants.h"
#include "Brevanto/BrevantoRecentProductsVC.h"
#include "Brevanto/Model/BrevantoRecentsFileManager.h"
#include "Brevanto/ServerManager/BrevantoServerManager.h"
#include "Brevanto/Utils/BrevantoUtils.h"
#include "Platform/Foundation/DispatchQueue.h"
#include "Platform/Interface/ImageView.h"

#include <QDir>
#include <QStandardPaths>
#include <QTest>

namespace
{

// Each row has a colour of its own.
QColor colorOf(int row)
{
    return QColor::fromRgb(40 + row % 10 * 20, 40 + row / 10 % 10 * 20, 40 + row / 100 % 10 * 20);
}

int rowOf(const QColor &color)
{
    const auto digit = [](int channel) { return (channel - 40 + 10) / 20; };
    return digit(color.red()) + 10 * digit(color.green()) + 100 * digit(color.blue());
}

// Answers "/<row>" with a picture of that row's colour.
RawServer::Answer picture(const RawServer::Request &request)
{
    QImage image(60, 80, QImage::Format_RGB32);
    image.fill(colorOf(request.target.mid(1).toInt()));
    RawServer::Answer answer;
    answer.body = TestImages::png(image);
    return answer;
}

struct Tile {
    QPointer<QQuickItem> item;
    int row;
    Platform::ImageView *imageView;
};

} // namespace

class tst_BrevantoRecentProductsVC : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void laysTilesInTwoColumns_data();
    void laysTilesInTwoColumns();
    void showsNothingForAnEmptyStore_data();
    void showsNothingForAnEmptyStore();
    void groupWithoutMatchesStaysBlank();
    void tilesLookLikeCards();
    void tapOpensTheAdScreen();
    void enterOpensTheAdScreen();
    void neverShowsAnotherGroupsImage();
    void staysLightWithTenThousandGroups();
    void survivesLeavingWhileImagesAreOnTheirWay();

private:
    BrevantoMatchGroupList groups(int count) const;
    // Turned: the window had its sides exchanged when the SDK noted the screen's size.
    BrevantoRecentProductsVC *open(const QSize &window = {390, 844}, bool turned = false);
    // The tiles alive, in sight or not.
    static QList<Tile> tiles(const BrevantoRecentProductsVC *screen);
    // How many of them show a group.
    static qsizetype inUse(const BrevantoRecentProductsVC *screen);
    static bool areTilesFilled(const BrevantoRecentProductsVC *screen);

    std::unique_ptr<FakeReachability> m_network;
    std::unique_ptr<RawServer> m_server;
    std::unique_ptr<ScreenWindow> m_window;
    QPointer<Platform::NavigationController> m_stack;
};

void tst_BrevantoRecentProductsVC::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    m_network = std::make_unique<FakeReachability>();
    BrevantoUtils::customizeNavBarThroughOutApp();
}

void tst_BrevantoRecentProductsVC::init()
{
    QDir(BrevantoRecentsFileManager::getPathForRecentsInDocsFolder()).removeRecursively();
    m_server = std::make_unique<RawServer>();
    m_server->setHandler(picture);
}

void tst_BrevantoRecentProductsVC::cleanup()
{
    m_window.reset();
    m_server.reset();
}

BrevantoMatchGroupList tst_BrevantoRecentProductsVC::groups(int count) const
{
    BrevantoMatchGroupList groups;
    for (int row = 0; row < count; ++row) {
        const QString url = m_server->url(QStringLiteral("/%1").arg(row));
        auto match = std::make_shared<BrevantoMatch>();
        match->setBackgroundImageUrl(url);
        match->setTitle(QStringLiteral("Ad %1").arg(row));
        groups.append(BrevantoMatchGroup::initWithMatches({match}, url));
    }
    return groups;
}

BrevantoRecentProductsVC *tst_BrevantoRecentProductsVC::open(const QSize &window, bool turned)
{
    kScreenWidth = turned ? window.height() : window.width();
    kScreenHeight = turned ? window.width() : window.height();
    m_window = std::make_unique<ScreenWindow>(window);
    auto screen =
        brevantoStoryboard().instantiate<BrevantoRecentProductsVC>(QStringLiteral("BrevantoRecentProductsVC"));
    BrevantoRecentProductsVC *shown = screen.get();
    m_stack = m_window->push(std::move(screen));
    return shown;
}

QList<Tile> tst_BrevantoRecentProductsVC::tiles(const BrevantoRecentProductsVC *screen)
{
    QList<Tile> found;
    const QQuickItem *content = screen->recentCollectionView()->property("contentItem").value<QQuickItem *>();
    const QList<QQuickItem *> rows = content->childItems();
    for (const QQuickItem *row : rows) {
        const QList<QQuickItem *> items = row->childItems();
        for (QQuickItem *item : items) {
            auto *imageView = qobject_cast<Platform::ImageView *>(
                Platform::View::viewWithTag(item, BrevantoRecentProductsVC::imageViewTag));
            if (imageView)
                found.append({item, item->property("row").toInt(), imageView});
        }
    }
    return found;
}

qsizetype tst_BrevantoRecentProductsVC::inUse(const BrevantoRecentProductsVC *screen)
{
    const QList<Tile> all = tiles(screen);
    return std::count_if(all.begin(), all.end(), [](const Tile &tile) { return tile.row >= 0; });
}

bool tst_BrevantoRecentProductsVC::areTilesFilled(const BrevantoRecentProductsVC *screen)
{
    const QList<Tile> all = tiles(screen);
    return !all.isEmpty() && std::all_of(all.begin(), all.end(), [](const Tile &tile) {
        return tile.row < 0 || !tile.imageView->image().isNull();
    });
}

void tst_BrevantoRecentProductsVC::laysTilesInTwoColumns_data()
{
    QTest::addColumn<QSize>("window");
    QTest::addColumn<QSizeF>("tile");
    QTest::addColumn<bool>("turned");
    QTest::newRow("320 points wide") << QSize(320, 568) << QSizeF(145, 210) << false;
    QTest::newRow("375 points wide") << QSize(375, 667) << QSizeF(172.5, 210) << false;
    QTest::newRow("393 points wide") << QSize(393, 852) << QSizeF(181.5, 210) << false;
    QTest::newRow("turned since the start") << QSize(360, 700) << QSizeF(165, 210) << true;
}

void tst_BrevantoRecentProductsVC::laysTilesInTwoColumns()
{
    QFETCH(QSize, window);
    QFETCH(QSizeF, tile);
    QFETCH(bool, turned);
    BrevantoRecentsFileManager::saveMatchGroupsToFileManager(groups(9));
    const BrevantoRecentProductsVC *screen = open(window, turned);
    QTRY_VERIFY(areTilesFilled(screen));
    for (const Tile &shown : tiles(screen)) {
        if (shown.row < 0)
            continue;
        const QRectF place = shown.item->mapRectToItem(screen->recentCollectionView(), {QPointF(), shown.item->size()});
        const QPointF origin(10 + (shown.row % 2) * (tile.width() + 10), 10 + (shown.row / 2) * 220.0);
        QCOMPARE(place, QRectF(origin, tile));
        QCOMPARE(shown.imageView->frame(), QRectF(3, 3, tile.width() - 6, tile.height() - 6));
    }
    m_window->grab(QStringLiteral("recents-%1").arg(window.width()));
}

void tst_BrevantoRecentProductsVC::showsNothingForAnEmptyStore_data()
{
    QTest::addColumn<bool>("isSaved");
    QTest::newRow("no file") << false;
    QTest::newRow("empty list") << true;
}

void tst_BrevantoRecentProductsVC::showsNothingForAnEmptyStore()
{
    QFETCH(bool, isSaved);
    if (isSaved)
        BrevantoRecentsFileManager::saveMatchGroupsToFileManager({});
    const BrevantoRecentProductsVC *screen = open();
    QCOMPARE(screen->navigationController()->isNavigationBarHidden(), false);
    QCOMPARE(screen->numberOfItemsInSection(), 0);
    QVERIFY(screen->recentCollectionView());
    QVERIFY(tiles(screen).isEmpty());
    m_window->grab(QStringLiteral("recents-empty"));
}

void tst_BrevantoRecentProductsVC::groupWithoutMatchesStaysBlank()
{
    BrevantoMatchGroupList saved = groups(3);
    saved[1]->setListOfMatches({});
    BrevantoRecentsFileManager::saveMatchGroupsToFileManager(saved);
    const BrevantoRecentProductsVC *screen = open();
    QTRY_COMPARE(m_server->requestCount(), 2);
    const auto filled = [screen] {
        QList<int> rows;
        for (const Tile &tile : tiles(screen)) {
            if (!tile.imageView->image().isNull())
                rows.append(tile.row);
        }
        std::sort(rows.begin(), rows.end());
        return rows;
    };
    QTRY_COMPARE(filled(), QList<int>({0, 2}));
    QCOMPARE(inUse(screen), 3);
    QCOMPARE(m_server->requestCount(), 2);
}

void tst_BrevantoRecentProductsVC::tilesLookLikeCards()
{
    BrevantoRecentsFileManager::saveMatchGroupsToFileManager(groups(2));
    const BrevantoRecentProductsVC *screen = open();
    QTRY_VERIFY(areTilesFilled(screen));
    const QQuickItem *tile = tiles(screen).constFirst().item;
    const int row = tiles(screen).constFirst().row;
    // The picture is decoded off the main thread, so that it may come a few frames later.
    const QPoint middle = tile->mapToScene({tile->width() / 2, tile->height() / 2}).toPoint();
    QTRY_COMPARE(m_window->grab().pixelColor(middle), colorOf(row));
    const QImage shot = m_window->grab();
    const auto pixel = [&](qreal x, qreal y) { return shot.pixelColor(tile->mapToScene({x, y}).toPoint()); };
    QCOMPARE(pixel(tile->width() / 2, 1), QColor(Qt::white));
    const int ground = pixel(tile->width() / 2, tile->height() + 6).lightness();
    QVERIFY(pixel(tile->width() / 2, tile->height()).lightness() < ground - 20);
    QVERIFY(pixel(tile->width() / 2, -2).lightness() > pixel(tile->width() / 2, tile->height()).lightness());
}

void tst_BrevantoRecentProductsVC::tapOpensTheAdScreen()
{
    BrevantoRecentsFileManager::saveMatchGroupsToFileManager(groups(40));
    const BrevantoRecentProductsVC *screen = open();
    QTRY_VERIFY(areTilesFilled(screen));
    const QQuickItem *grid = screen->recentCollectionView();
    // On a machine that is busy a finger may come to rest before it lets go.
    const auto isFlung = [&] {
        m_window->fling({195, 700}, {195, 300});
        return grid->property("moving").toBool();
    };
    QTRY_VERIFY(isFlung());
    m_window->tap(QPointF(100, 400)); // stops the grid, and no more
    QTRY_VERIFY(!grid->property("moving").toBool());
    QVERIFY(grid->property("contentY").toReal() > 100);
    QCOMPARE(m_stack->topViewController(), screen);
    m_window->fling({195, 200}, {195, 840});
    QTRY_VERIFY(!grid->property("moving").toBool());

    // Two fingers open one screen.
    const auto middleOf = [screen](int row) {
        const QList<Tile> all = tiles(screen);
        const auto tile = std::find_if(all.begin(), all.end(), [row](const Tile &each) { return each.row == row; });
        return tile->item->mapToScene(tile->item->boundingRect().center()).toPoint();
    };
    const QPoint first = middleOf(3);
    const QPoint second = middleOf(0);
    QQuickWindow *window = m_window->window();
    QPointingDevice *fingers = m_window->finger();
    QTest::touchEvent(window, fingers).press(0, first, window).press(1, second, window);
    QTest::touchEvent(window, fingers).release(0, first, window).stationary(1);
    QTest::touchEvent(window, fingers).release(1, second, window);
    QCOMPARE(m_stack->viewControllers().size(), std::size_t(3));
    QTRY_VERIFY(qobject_cast<BrevantoAdVC *>(m_stack->topViewController()));
    const auto *ad = qobject_cast<BrevantoAdVC *>(m_stack->topViewController());
    QCOMPARE(ad->matchGroup(), screen->listOfMatchGroups().at(3));
    // Opened again, it is the latest; the screen keeps the list that it read.
    QTRY_COMPARE(BrevantoRecentsFileManager::retrieveAllSavedGroupedMatchesInFileManager()->constFirst()->adImageUrl(),
                 m_server->url(QStringLiteral("/3")));
    QCOMPARE(screen->listOfMatchGroups().constFirst()->adImageUrl(), m_server->url(QStringLiteral("/0")));
}

void tst_BrevantoRecentProductsVC::enterOpensTheAdScreen()
{
    BrevantoRecentsFileManager::saveMatchGroupsToFileManager(groups(5));
    const BrevantoRecentProductsVC *screen = open();
    QTRY_VERIFY(areTilesFilled(screen));
    for (int i = 0; i < 5 && !screen->recentCollectionView()->hasActiveFocus(); ++i)
        QTest::keyClick(m_window->window(), Qt::Key_Tab);
    QTest::keyClick(m_window->window(), Qt::Key_Right);
    QTest::keyClick(m_window->window(), Qt::Key_Right);
    m_window->grab(QStringLiteral("recents-focus"));
    QTest::keyClick(m_window->window(), Qt::Key_Return);
    QTRY_VERIFY(qobject_cast<BrevantoAdVC *>(m_stack->topViewController()));
    QCOMPARE(qobject_cast<BrevantoAdVC *>(m_stack->topViewController())->matchGroup(),
             screen->listOfMatchGroups().at(1));
}

void tst_BrevantoRecentProductsVC::neverShowsAnotherGroupsImage()
{
    // The first tiles' images come only once those tiles show other groups, whose images came long before.
    m_server->setHandler([](const RawServer::Request &request) {
        RawServer::Answer answer = picture(request);
        if (request.target.mid(1).toInt() < 4)
            answer.stage = RawServer::Stage::Nothing;
        return answer;
    });
    BrevantoRecentsFileManager::saveMatchGroupsToFileManager(groups(500));
    const BrevantoRecentProductsVC *screen = open();
    QTRY_VERIFY(m_server->requestCount() >= 4);
    QList<Tile> waiting = tiles(screen);
    waiting.removeIf([](const Tile &tile) { return tile.row >= 4; });
    const auto isReused = [&waiting](const Tile &now) {
        return now.row >= 4
            && std::any_of(waiting.begin(), waiting.end(), [&now](const Tile &tile) { return tile.item == now.item; });
    };
    QList<Tile> shown;
    do {
        m_window->fling({195, 780}, {195, 180});
        QTRY_VERIFY(!screen->recentCollectionView()->property("moving").toBool());
        shown = tiles(screen);
    } while (std::none_of(shown.begin(), shown.end(), isReused));
    QTRY_VERIFY(areTilesFilled(screen));

    m_server->resume();
    bool isAnswered = false;
    BrevantoServerManager::sharedServerManager()->getImage(
        m_server->url(QStringLiteral("/9")),
        [&](const Platform::Image &) { Platform::DispatchQueue::mainAsync(this, [&] { isAnswered = true; }); }, {});
    QTRY_VERIFY(isAnswered);
    for (const Tile &tile : tiles(screen)) {
        if (tile.row >= 0)
            QCOMPARE(rowOf(tile.imageView->image().bitmap().pixelColor(5, 5)), tile.row);
        else
            QVERIFY(tile.imageView->image().isNull());
    }
    m_window->grab(QStringLiteral("recents-flung"));
}

void tst_BrevantoRecentProductsVC::staysLightWithTenThousandGroups()
{
    BrevantoRecentsFileManager::saveMatchGroupsToFileManager(groups(10000));
    const BrevantoRecentProductsVC *screen = open();
    QTRY_VERIFY(areTilesFilled(screen));
    QQuickItem *grid = screen->recentCollectionView();
    for (int stroke = 0; stroke < 4; ++stroke) {
        m_window->fling({195, 780}, {195, 180});
        QTRY_VERIFY(!grid->property("moving").toBool());
    }
    // Two screens of four rows and a broken one, two tiles each.
    QVERIFY2(inUse(screen) <= 20, qPrintable(QString::number(inUse(screen))));
    for (const Tile &tile : tiles(screen)) {
        if (tile.row < 0)
            QVERIFY(tile.imageView->image().isNull());
    }
}

void tst_BrevantoRecentProductsVC::survivesLeavingWhileImagesAreOnTheirWay()
{
    m_server->setAnswer(RawServer::Answer::stall());
    BrevantoRecentsFileManager::saveMatchGroupsToFileManager(groups(4));
    const QPointer<BrevantoRecentProductsVC> screen(open());
    QTRY_VERIFY(m_server->requestCount() > 0);
    screen->navBarBackButtonAction();
    QTRY_VERIFY(!screen);
    m_server->setHandler(picture);
    m_server->resume();
    QCOMPARE(m_stack->viewControllers().size(), std::size_t(1));
}

QTEST_MAIN(tst_BrevantoRecentProductsVC)
#include "tst_BrevantoRecentProductsVC.moc"
