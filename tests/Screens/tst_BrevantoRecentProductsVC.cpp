#include "Brevanto/BrevantoConstants.h"
#include "ScreenTest.h"
#include "support/Table.h"
#include "support/TestImages.h"

#include "Brevanto/BrevantoAdVC.h"
#include "Brevanto/BrevantoRecentProductsVC.h"
#include "Brevanto/Model/BrevantoRecentsFileManager.h"
#include "Platform/Interface/ImageView.h"

#include <QAccessible>
#include <QTest>

using namespace Qt::StringLiterals;

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

class tst_BrevantoRecentProductsVC : public ScreenTest
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        ScreenTest::init();
        m_server->setHandler(picture);
    }

    void laysTilesInTwoColumns_data()
    {
        addColumns<QSize, QSizeF, bool>("window", "tile", "turned");
        addColumns<int, QSizeF>("columns", "turnedTile"); // once the window has turned
        QTest::newRow("320 points wide") << QSize(320, 568) << QSizeF(145, 210) << false << 3 << QSizeF(145, 210);
        QTest::newRow("393 points wide") << QSize(393, 852) << QSizeF(181.5, 210) << false << 4 << QSizeF(181.5, 210);
        QTest::newRow("turned since the start") << QSize(360, 700) << QSizeF(165, 210) << true << 2 << QSizeF(335, 210);
    }
    void laysTilesInTwoColumns()
    {
        QFETCH(QSize, window);
        QFETCH(QSizeF, tile);
        QFETCH(bool, turned);
        QFETCH(QSizeF, turnedTile);
        QFETCH(int, columns);
        BrevantoRecentsFileManager::saveMatchGroupsToFileManager(groups(9));
        open(window, turned);
        QTRY_VERIFY(areTilesFilled());
        QCOMPARE(misplaced(2, tile), QString());
        m_window->window()->resize(window.transposed());
        QTRY_COMPARE(grid()->size(), m_screen->view()->size());
        QTRY_VERIFY(areTilesFilled());
        QTRY_COMPARE(misplaced(columns, turnedTile), QString());
        QVERIFY(inUse() >= columns);
    }

    void showsNothingForAnEmptyStore_data() { addBothRows("isSaved", "no file", "empty list"); }
    void showsNothingForAnEmptyStore()
    {
        QFETCH(bool, isSaved);
        if (isSaved)
            BrevantoRecentsFileManager::saveMatchGroupsToFileManager({});
        open();
        QVERIFY(!m_stack->isNavigationBarHidden());
        QVERIFY(m_screen->recentCollectionView() && tiles().isEmpty());
    }

    void groupWithoutMatchesStaysBlank()
    {
        BrevantoMatchGroupList saved = groups(3);
        saved[1]->setListOfMatches({});
        saved[2]->listOfMatches().constFirst()->setTitle(QString());
        openOn(saved, false);
        const auto filled = [this] {
            QSet<int> rows;
            for (const Tile &tile : tiles()) {
                if (!tile.imageView->image().isNull())
                    rows.insert(tile.row);
            }
            return rows;
        };
        QTRY_COMPARE(filled(), QSet<int>({0, 2}));
        QCOMPARE(inUse(), 3);
        QStringList spoken;
        for (const Tile &tile : tiles())
            spoken.append(QAccessible::queryAccessibleInterface(tile.item)->text(QAccessible::Name));
        QCOMPARE(spoken.first(3), QStringList({u"Kettle 0"_s, u"Ad 2"_s, u"Ad 3"_s}));
        QCOMPARE(m_server->requestCount(), 2);
    }

    void tilesLookLikeCards()
    {
        openOn(groups(2));
        const QQuickItem *tile = tiles().constFirst().item;
        const int row = tiles().constFirst().row;
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

    void tapOpensTheAdScreen()
    {
        openOn(groups(40));
        // On a machine that is busy a finger may come to rest before it lets go.
        const auto isFlung = [&] {
            m_window->fling({195, 700}, {195, 300});
            return isMoving();
        };
        QTRY_VERIFY(isFlung());
        m_window->tap(QPointF(100, 400)); // stops the grid, and no more
        QTRY_VERIFY(!isMoving());
        QVERIFY(grid()->property("contentY").toReal() > 100);
        QCOMPARE(m_stack->topViewController(), m_screen);
        m_window->fling({195, 200}, {195, 840});
        QTRY_VERIFY(!isMoving());

        // Two fingers open one screen.
        const auto middleOf = [this](int row) {
            const QList<Tile> all = tiles();
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
        QTRY_VERIFY(ad());
        QCOMPARE(ad()->matchGroup(), m_screen->listOfMatchGroups().at(3));
        // Opened again, it is the latest; the screen keeps the list that it read.
        QTRY_COMPARE(
            BrevantoRecentsFileManager::retrieveAllSavedGroupedMatchesInFileManager()->constFirst()->adImageUrl(),
            m_server->url(u"/3"_s));
        QCOMPARE(m_screen->listOfMatchGroups().constFirst()->adImageUrl(), m_server->url(u"/0"_s));
    }

    void neverShowsAnotherGroupsImage()
    {
        // The first tiles' images come only once those tiles show other groups, whose images came long before.
        m_server->setHandler([](const RawServer::Request &request) {
            RawServer::Answer answer = picture(request);
            if (request.target.mid(1).toInt() < 4)
                answer.stage = RawServer::Stage::Nothing;
            return answer;
        });
        openOn(groups(500), false);
        QTRY_VERIFY(m_server->requestCount() >= 4);
        QList<Tile> waiting = tiles();
        waiting.removeIf([](const Tile &tile) { return tile.row >= 4; });
        const auto isReused = [&waiting](const Tile &now) {
            return now.row >= 4 && std::any_of(waiting.begin(), waiting.end(), [&now](const Tile &tile) {
                       return tile.item == now.item;
                   });
        };
        QList<Tile> shown;
        do {
            m_window->fling({195, 780}, {195, 180});
            QTRY_VERIFY(!isMoving());
            shown = tiles();
        } while (std::none_of(shown.begin(), shown.end(), isReused));
        QTRY_VERIFY(areTilesFilled());

        m_server->setHandler(picture);
        m_server->resume();
        QVERIFY(settle(*m_server));
        for (const Tile &tile : tiles()) {
            if (tile.row >= 0)
                QCOMPARE(rowOf(tile.imageView->image().bitmap().pixelColor(5, 5)), tile.row);
            else
                QVERIFY(tile.imageView->image().isNull());
        }
    }

    void staysLightWithTenThousandGroups()
    {
        openOn(groups(10000));
        for (int stroke = 0; stroke < 4; ++stroke) {
            m_window->fling({195, 780}, {195, 180});
            QTRY_VERIFY(!isMoving());
        }
        // Two screens of four rows and a broken one, two tiles each.
        QVERIFY2(inUse() <= 20, qPrintable(QString::number(inUse())));
        for (const Tile &tile : tiles()) {
            if (tile.row < 0)
                QVERIFY(tile.imageView->image().isNull());
        }
    }

    void closesAtAnyStage_data()
    {
        addColumns<RawServer::Stage, bool>("stage", "isMoving");
        QTest::newRow("no answer") << RawServer::Stage::Nothing << false;
        QTest::newRow("head") << RawServer::Stage::Head << false;
        QTest::newRow("half images") << RawServer::Stage::HalfBody << false;
        QTest::newRow("the grid moves") << RawServer::Stage::Everything << true;
    }
    void closesAtAnyStage()
    {
        QFETCH(RawServer::Stage, stage);
        m_server->setHandler([stage](const RawServer::Request &request) {
            RawServer::Answer answer = picture(request);
            answer.stage = stage;
            return answer;
        });
        openOn(groups(40), stage == RawServer::Stage::Everything);
        QTRY_VERIFY(m_server->requestCount() > 0);
        const auto isUnderWay = [this] {
            QFETCH(bool, isMoving);
            if (isMoving)
                m_window->fling({195, 700}, {195, 300});
            return isMoving == this->isMoving();
        };
        QTRY_VERIFY(isUnderWay());
        m_screen->navBarBackButtonAction();
        QTRY_VERIFY(!m_screen);
        m_server->setHandler(picture);
        m_server->resume();
        QVERIFY(settle(*m_server));
        QCOMPARE(m_stack->viewControllers().size(), std::size_t(1));
    }

private:
    BrevantoMatchGroupList groups(int count) const
    {
        BrevantoMatchGroupList groups;
        for (int row = 0; row < count; ++row) {
            const QString url = m_server->url(u"/%1"_s.arg(row));
            auto match = std::make_shared<BrevantoMatch>();
            match->setBackgroundImageUrl(url);
            match->setTitle(u"Kettle %1"_s.arg(row));
            groups.append(BrevantoMatchGroup::initWithMatches({match}, url));
        }
        return groups;
    }

    // Opens the screen on these groups and waits for the tiles in sight, unless the server gives no images.
    void openOn(const BrevantoMatchGroupList &groups, bool isServed = true)
    {
        BrevantoRecentsFileManager::saveMatchGroupsToFileManager(groups);
        open();
        if (isServed && !QTest::qWaitFor([this] { return areTilesFilled(); }))
            qCritical("The images did not come");
    }
    // Turned: the window had its sides exchanged when the SDK noted the screen's size.
    void open(const QSize &window = {390, 844}, bool turned = false)
    {
        openWindow(window);
        if (turned)
            std::swap(kScreenWidth, kScreenHeight);
        auto screen = makeScreen<BrevantoRecentProductsVC>();
        m_screen = screen.get();
        m_stack = m_window->push(std::move(screen));
    }

    QList<Tile> tiles() const
    {
        QList<Tile> found;
        const QList<QQuickItem *> rows = grid()->property("contentItem").value<QQuickItem *>()->childItems();
        for (const QQuickItem *row : rows) {
            for (QQuickItem *item : row->childItems()) {
                QQuickItem *imageView = Platform::View::viewWithTag(item, BrevantoRecentProductsVC::imageViewTag);
                if (imageView)
                    found.append({item, item->property("row").toInt(), qobject_cast<Platform::ImageView *>(imageView)});
            }
        }
        return found;
    }

    BrevantoAdVC *ad() const { return qobject_cast<BrevantoAdVC *>(m_stack->topViewController()); }
    QQuickItem *grid() const { return m_screen->recentCollectionView(); }
    bool isMoving() const { return grid()->property("moving").toBool(); }

    // The tiles in use that stand elsewhere than in that grid.
    QString misplaced(int columns, const QSizeF &size) const
    {
        QString found;
        for (const Tile &tile : tiles()) {
            if (tile.row < 0)
                continue;
            const QPointF origin(10 + tile.row % columns * (size.width() + 10), 10 + tile.row / columns * 220.0);
            const QRectF place = tile.item->mapRectToItem(grid(), {QPointF(), tile.item->size()})
                                     .translated(0, grid()->property("contentY").toReal() + 10);
            if (place != QRectF(origin, size) || tile.imageView->frame() != QRectF({}, size).adjusted(3, 3, -3, -3))
                QDebug(&found) << tile.row << place << tile.imageView->frame();
        }
        return found;
    }

    // How many of them show a group.
    qsizetype inUse() const
    {
        const QList<Tile> all = tiles();
        return std::count_if(all.begin(), all.end(), [](const Tile &tile) { return tile.row >= 0; });
    }

    bool areTilesFilled() const
    {
        const QList<Tile> all = tiles();
        return !all.isEmpty() && std::all_of(all.begin(), all.end(), [](const Tile &tile) {
            return tile.row < 0 || !tile.imageView->image().isNull();
        });
    }

    QPointer<BrevantoRecentProductsVC> m_screen;
};

QTEST_MAIN(tst_BrevantoRecentProductsVC)
#include "tst_BrevantoRecentProductsVC.moc"
