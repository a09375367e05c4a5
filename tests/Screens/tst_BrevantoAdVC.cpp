#include "ScreenTest.h"
#include "support/Table.h"
#include "support/TestImages.h"

#include "Brevanto/BrevantoAdVC.h"
#include "Brevanto/Model/BrevantoRecentsFileManager.h"
#include "Brevanto/Utils/BrevantoHotspotView.h"
#include "Brevanto/Utils/BrevantoReachabilityManager.h"
#include "Platform/Interface/AlertController.h"

#include <QAccessible>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

std::shared_ptr<BrevantoMatch> match(const QVariant &x, const QVariant &y, const QVariant &title = u"Kettle"_s)
{
    auto match = std::make_shared<BrevantoMatch>();
    match->setTitle(title);
    match->setXPercent(x);
    match->setYPercent(y);
    return match;
}

BrevantoHotspotView *marker(BrevantoAdVC *screen, int index)
{
    return qobject_cast<BrevantoHotspotView *>(screen->view()->viewWithTag(BrevantoAdVC::firstHotspotTag + index));
}

int markerCount(BrevantoAdVC *screen)
{
    int count = 0;
    const QList<QQuickItem *> subviews = screen->backgroundImageView()->childItems();
    for (QQuickItem *subview : subviews)
        count += qobject_cast<BrevantoHotspotView *>(subview) ? 1 : 0;
    return count;
}

} // namespace

class tst_BrevantoAdVC : public ScreenTest
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        ScreenTest::init();
        serveImage({600, 800});
        openWindow();
    }

    void placesMarkersOverTheImage_data()
    {
        QTest::addColumn<QSize>("image");
        QTest::newRow("portrait") << QSize(600, 800);
        QTest::newRow("landscape") << QSize(1000, 500);
        QTest::newRow("tower") << QSize(200, 2000);
    }
    void placesMarkersOverTheImage()
    {
        QFETCH(QSize, image);
        serveImage(image);
        BrevantoAdVC *screen =
            openWithMarkers({match(50, 50, 42), match(0, 0), match(80.5, 20.0), match(90, {}), match(u"10"_s, 10)});
        QCOMPARE(screen->navigationItem()->title(), u"42"_s); // the first match's, whatever its kind
        const QSizeF room = screen->backgroundImageView()->frame().size();
        const QSizeF shown = QSizeF(image).scaled(room, Qt::KeepAspectRatio);
        const QRectF area(QPointF((room.width() - shown.width()) / 2, (room.height() - shown.height()) / 2), shown);
        const auto point = [&](qreal x, qreal y) {
            return area.topLeft() + QPointF(x * shown.width(), y * shown.height());
        };
        // Where a match's own place cannot be used, its number gives one.
        const QPointF expected[] = {point(0.5, 0.5), area.topLeft(), point(0.805, 0.2), point(0.6, 0.8),
                                    point(0.7, 0.9)};
        const QRectF allowed = area.adjusted(15, 15, -15, -15);
        for (int i = 0; i < 5; ++i) {
            const BrevantoHotspotView *view = marker(screen, i);
            QVERIFY(view && view->isAnimating());
            // Dropped fractions move a marker by less than two points towards the upper left.
            const QPointF distance(std::clamp(expected[i].x(), allowed.left(), allowed.right()) - view->center().x(),
                                   std::clamp(expected[i].y(), allowed.top(), allowed.bottom()) - view->center().y());
            QVERIFY2(distance.x() > -0.01 && distance.x() < 2, qPrintable(QString::number(distance.x())));
            QVERIFY2(distance.y() > -0.01 && distance.y() < 2, qPrintable(QString::number(distance.y())));
        }

        const QImage shot = m_window->grab();
        const qreal scale = m_window->window()->effectiveDevicePixelRatio();
        const auto pixel = [&](const QPointF &inView) {
            return shot.pixelColor((screen->backgroundImageView()->mapToScene(inView) * scale).toPoint());
        };
        QCOMPARE(pixel(marker(screen, 0)->center()), QColor(255, 67, 71));
        // The image lies where the markers take it to be: its lower left quarter is blue.
        QVERIFY(pixel(point(0.2, 0.7)).blue() > 200 && pixel(point(0.2, 0.7)).red() < 60);
    }

    void setsUpOnce()
    {
        serveImage({1000, 500});
        BrevantoAdVC *screen = openWithMarkers({match(50, 50)});
        const QPointF center = marker(screen, 0)->center();
        const qint64 passes = screen->layoutCount();
        m_window->window()->resize(700, 390);
        QTRY_COMPARE(screen->view()->frame().width(), 700.0);
        QTRY_VERIFY(screen->layoutCount() > passes);
        m_window->window()->resize(390, 844);
        QTRY_COMPARE(screen->view()->frame().width(), 390.0);
        QTRY_VERIFY(screen->layoutCount() > passes + 1);
        QCOMPARE(m_server->requestCount(), 1);
        QCOMPARE(markerCount(screen), 1);
        QCOMPARE(marker(screen, 0)->center(), center);
        QCOMPARE(screen->dummyPopoverView()->frame(), screen->view()->bounds());
        QVERIFY(!screen->dummyPopoverView()->superview());
    }

    void keepsTheGroupWhenTheImageFails_data() { addBothRows("answers", "no answer", "no image"); }
    void keepsTheGroupWhenTheImageFails()
    {
        QFETCH(bool, answers);
        m_server->setAnswer({.body = "no image",
                             .stage = answers ? RawServer::Stage::Everything : RawServer::Stage::Nothing,
                             .then = RawServer::Then::Close});
        BrevantoAdVC *screen = open({match(50, 50)});
        QVERIFY(screen->isImageLoading());
        const auto saved = BrevantoRecentsFileManager::retrieveAllSavedGroupedMatchesInFileManager();
        QVERIFY(saved);
        QCOMPARE(saved->size(), 1);
        QCOMPARE(saved->constFirst()->adImageUrl(), imageUrl());
        QTRY_VERIFY(!screen->isImageLoading());
        QTRY_VERIFY(!isSomethingShownInTheMiddle());
        QCOMPARE(markerCount(screen), 0);
        QVERIFY(screen->backgroundImageView()->image().isNull());
        QCOMPARE(screen->presentedViewController(), nullptr);
    }

    void placesMarkersWithoutNewImage()
    {
        auto screen = makeScreen({match(50, 50)});
        BrevantoAdVC *shown = screen.get();
        shown->matchGroup()->listOfMatches().constFirst()->setBackgroundImageUrl({});
        shown->view();
        shown->backgroundImageView()->setImage(Platform::Image(TestImages::quarters({100, 100})));
        m_window->push(std::move(screen));
        QTRY_COMPARE(markerCount(shown), 1);
        QCOMPARE(m_server->requestCount(), 0);
    }

    void tapMakesTheMatchActive()
    {
        const BrevantoMatchList matches = {match(30, 30), match(70, 70)};
        BrevantoAdVC *screen = openWithMarkers(matches);
        const QPointF second = marker(screen, 1)->mapToScene({15, 15});

        m_window->tap(second + QPointF(40, 0));
        QCoreApplication::processEvents();
        QCOMPARE(screen->activeMatchObject(), nullptr);

        // A finger is broader than a marker.
        m_window->tap(second + QPointF(20, 20));
        QTRY_COMPARE(screen->activeMatchObject(), matches.at(1));
        const auto *alert = qobject_cast<Platform::AlertController *>(screen->presentedViewController());
        QVERIFY(alert);
        QCOMPARE(alert->title(), u"Brevanto"_s);
        QCOMPARE(alert->message(), u"Hotspot data not available."_s);
        QCOMPARE(alert->actions().size(), std::size_t(1));
        QCOMPARE(alert->actions().front().title, u"OK"_s);
        QVERIFY(marker(screen, 1)->shouldAnimate());
        QTRY_VERIFY(alert->isVisible());
    }

    void tapOfflineDrawsTheEyeToTheBanner()
    {
        const BrevantoMatchList matches = {match(30, 30)};
        BrevantoAdVC *screen = openWithMarkers(matches);
        m_network->setOffline();
        const BrevantoReachabilityManager *manager = BrevantoReachabilityManager::instance();
        QTRY_COMPARE(manager->noNetworkView()->superview(), screen->view());
        m_window->tap(marker(screen, 0));
        QTRY_COMPARE(screen->activeMatchObject(), matches.at(0));
        QCOMPARE(manager->noNetworkLabel()->transformScale(), 1.5);
        m_network->setOnline();
        QTRY_COMPARE(manager->noNetworkView()->superview(), nullptr);
    }

    void backLeavesTheScreen()
    {
        const QPointer<BrevantoAdVC> screen(openWithMarkers({match(50, 50)}));
        QVERIFY(!m_stack->isNavigationBarHidden());
        screen->navigationItem()->activateLeft(1);
        QTRY_VERIFY(!screen);
        QCOMPARE(m_stack->viewControllers().size(), std::size_t(1));
        m_network->setOffline();
        QCOMPARE(BrevantoReachabilityManager::instance()->noNetworkView()->superview(), nullptr);
    }

    void staysLightWhateverComes()
    {
        BrevantoMatchList matches;
        for (int i = 0; i < 100'000; ++i)
            matches.append(match(i % 100, i / 100 % 100));
        matches.constFirst()->setTitle(u'x' + u"🫖"_s.repeated(512 * 1024));
        matches.at(BrevantoAdVC::mostMarkers - 1)->setReviewUrl(imageUrl());
        matches.at(1)->setTitle(matches.constFirst()->title());
        const QPointer<BrevantoAdVC> screen(openWithMarkers(matches));
        QVERIFY2(screen->view()->findChildren<QQuickItem *>().size() < 3000,
                 qPrintable(QString::number(screen->view()->findChildren<QQuickItem *>().size())));
        // No half of a character ends it.
        const QString title = u'x' + u"🫖"_s.repeated(499);
        QCOMPARE(screen->navigationItem()->title(), title);
        QVERIFY(m_window->find([&title](QQuickItem *item) {
            const QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(item);
            return spoken && spoken->role() == QAccessible::Button && spoken->text(QAccessible::Name) == title;
        }));
        m_window->tap(marker(screen, BrevantoAdVC::mostMarkers - 1)); // lies uppermost
        QTRY_COMPARE(screen->activeMatchObject(), matches.at(BrevantoAdVC::mostMarkers - 1));
        QTRY_VERIFY(screen->presentedViewController());
        const auto goBack = [&] {
            QTest::keyClick(m_window->window(), Qt::Key_Escape);
            return !screen;
        };
        QTRY_VERIFY(goBack());
    }

    void survivesLeavingWhileTheImageIsOnItsWay_data()
    {
        QTest::addColumn<RawServer::Stage>("stage");
        QTest::newRow("no answer") << RawServer::Stage::Nothing;
        QTest::newRow("head") << RawServer::Stage::Head;
        QTest::newRow("half an image") << RawServer::Stage::HalfBody;
    }
    void survivesLeavingWhileTheImageIsOnItsWay()
    {
        QFETCH(RawServer::Stage, stage);
        RawServer::Answer answer = RawServer::Answer::stall(stage);
        answer.body = TestImages::png(TestImages::quarters({60, 80}));
        m_server->setAnswer(answer);
        const QPointer<BrevantoAdVC> screen(open({match(50, 50)}));
        QTRY_COMPARE(m_server->requestCount(), 1);
        QTRY_VERIFY(isSomethingShownInTheMiddle());
        m_stack->popViewController(false);
        QTRY_VERIFY(!screen);
        m_server->resume();
        // A second screen's image comes after the first one's.
        serveImage({60, 80});
        auto next = makeScreen({match(50, 50)});
        BrevantoAdVC *shown = next.get();
        m_stack->pushViewController(std::move(next), false);
        QTRY_COMPARE(markerCount(shown), 1);
    }

private:
    QString imageUrl() const { return m_server->url(u"/ad.jpg"_s); }
    void serveImage(const QSize &size) { m_server->setAnswer({.body = TestImages::jpeg(TestImages::quarters(size))}); }

    std::unique_ptr<BrevantoAdVC> makeScreen(const BrevantoMatchList &matches) const
    {
        for (const auto &match : matches)
            match->setBackgroundImageUrl(imageUrl());
        auto screen = ScreenTest::makeScreen<BrevantoAdVC>();
        screen->setMatchGroup(BrevantoMatchGroup::initWithMatches(matches, imageUrl()));
        return screen;
    }
    // Opens the ad screen on these matches.
    BrevantoAdVC *open(const BrevantoMatchList &matches)
    {
        auto screen = makeScreen(matches);
        BrevantoAdVC *shown = screen.get();
        m_stack = m_window->push(std::move(screen));
        return shown;
    }

    // The same, and waits for the markers.
    BrevantoAdVC *openWithMarkers(const BrevantoMatchList &matches)
    {
        BrevantoAdVC *screen = open(matches);
        if (!QTest::qWaitFor(
                [&] { return markerCount(screen) == qMin(matches.size(), qsizetype(BrevantoAdVC::mostMarkers)); },
                10000))
            qCritical("The markers did not come");
        if (!QTest::qWaitFor([&] { return screen->backgroundImageView()->isShowingImage(); }, 10000))
            qCritical("The image did not come");
        return screen;
    }

    bool isSomethingShownInTheMiddle()
    {
        const QImage shot = m_window->grab().convertToFormat(QImage::Format_Grayscale8);
        for (int y = shot.height() / 2 - 25; y < shot.height() / 2 + 47; ++y) {
            const uchar *middle = shot.constScanLine(y) + shot.width() / 2 - 25;
            if (*std::max_element(middle, middle + 50) > 100)
                return true;
        }
        return false;
    }
};

QTEST_MAIN(tst_BrevantoAdVC)
#include "tst_BrevantoAdVC.moc"
