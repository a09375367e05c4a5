#include "ScreenWindow.h"
#include "support/FakeReachability.h"
#include "support/RawServer.h"
#include "support/TestImages.h"

#include "Brevanto/BrevantoAdVC.h"
#include "Brevanto/BrevantoBundle.h"
#include "Brevanto/BrevantoConstants.h"
#include "Brevanto/Model/BrevantoRecentsFileManager.h"
#include "Brevanto/Utils/BrevantoHotspotView.h"
#include "Brevanto/Utils/BrevantoReachabilityManager.h"
#include "Brevanto/Utils/BrevantoUtils.h"
#include "Platform/Interface/AlertController.h"
#include "Platform/Interface/Window.h"

#include <QAccessible>
#include <QDir>
#include <QStandardPaths>
#include <QTest>

namespace
{

std::shared_ptr<BrevantoMatch> match(const QString &imageUrl, const QVariant &x = {}, const QVariant &y = {},
                                     const QVariant &title = QStringLiteral("Kettle"))
{
    auto match = std::make_shared<BrevantoMatch>();
    match->setBackgroundImageUrl(imageUrl);
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

class tst_BrevantoAdVC : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void placesMarkersOverTheImage_data();
    void placesMarkersOverTheImage();
    void setsUpOnce();
    void keepsTheGroupWhenTheImageFails_data();
    void keepsTheGroupWhenTheImageFails();
    void placesMarkersWithoutNewImage();
    void showsAnyTitle_data();
    void showsAnyTitle();
    void startsAndStopsMarkers();
    void holdsTwoHundredMatches();
    void tapMakesTheMatchActive();
    void tapOfflineDrawsTheEyeToTheBanner();
    void markersWorkByKeyboard();
    void backLeavesTheScreen();
    void survivesLeavingWhileTheImageIsOnItsWay();

private:
    QString imageUrl() const { return m_server->url(QStringLiteral("/ad.jpg")); }
    void serveImage(const QSize &size);
    // Opens the ad screen on these matches.
    BrevantoAdVC *open(const BrevantoMatchList &matches);
    // The same, and waits for the markers.
    BrevantoAdVC *openWithMarkers(const BrevantoMatchList &matches);

    bool isSomethingShownInTheMiddle();

    std::unique_ptr<FakeReachability> m_network;
    std::unique_ptr<RawServer> m_server;
    std::unique_ptr<ScreenWindow> m_window;
    QPointer<Platform::NavigationController> m_stack;
};

void tst_BrevantoAdVC::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    m_network = std::make_unique<FakeReachability>();
    BrevantoUtils::customizeNavBarThroughOutApp();
}

void tst_BrevantoAdVC::init()
{
    QDir(BrevantoRecentsFileManager::getPathForRecentsInDocsFolder()).removeRecursively();
    kScreenWidth = 390;
    kScreenHeight = 844;
    m_server = std::make_unique<RawServer>();
    m_window = std::make_unique<ScreenWindow>();
}

void tst_BrevantoAdVC::cleanup()
{
    m_network->setOnline();
    m_window.reset();
    m_server.reset();
}

void tst_BrevantoAdVC::serveImage(const QSize &size)
{
    RawServer::Answer answer;
    answer.headers = {{"Content-Type", "image/jpeg"}};
    answer.body = TestImages::jpeg(TestImages::quarters(size));
    m_server->setAnswer(answer);
}

BrevantoAdVC *tst_BrevantoAdVC::open(const BrevantoMatchList &matches)
{
    auto screen = brevantoStoryboard().instantiate<BrevantoAdVC>(QStringLiteral("BrevantoAdVC"));
    BrevantoAdVC *shown = screen.get();
    shown->setMatchGroup(BrevantoMatchGroup::initWithMatches(matches, imageUrl()));
    m_stack = m_window->push(std::move(screen));
    return shown;
}

BrevantoAdVC *tst_BrevantoAdVC::openWithMarkers(const BrevantoMatchList &matches)
{
    BrevantoAdVC *screen = open(matches);
    if (!QTest::qWaitFor([&] { return markerCount(screen) == matches.size(); }, 10000))
        qCritical("The markers did not come");
    if (!QTest::qWaitFor([&] { return screen->backgroundImageView()->isShowingImage(); }, 10000))
        qCritical("The image did not come");
    return screen;
}

bool tst_BrevantoAdVC::isSomethingShownInTheMiddle()
{
    const QImage shot = m_window->grab();
    const QImage middle = shot.copy(shot.width() / 2 - 25, shot.height() / 2 - 25, 50, 72);
    for (int y = 0; y < middle.height(); ++y) {
        for (int x = 0; x < middle.width(); ++x) {
            if (middle.pixelColor(x, y).lightness() > 100)
                return true;
        }
    }
    return false;
}

void tst_BrevantoAdVC::placesMarkersOverTheImage_data()
{
    QTest::addColumn<QSize>("image");
    QTest::newRow("portrait") << QSize(600, 800);
    QTest::newRow("landscape") << QSize(1000, 500);
    QTest::newRow("tower") << QSize(200, 2000);
}

void tst_BrevantoAdVC::placesMarkersOverTheImage()
{
    QFETCH(QSize, image);
    serveImage(image);
    BrevantoAdVC *screen = openWithMarkers({match(imageUrl(), 50, 50), match(imageUrl(), 0, 0),
                                            match(imageUrl(), 100, 100), match(imageUrl(), 80.5, 20.0),
                                            match(imageUrl(), 90, {}), match(imageUrl(), QStringLiteral("10"), 10)});
    const QSizeF room = screen->backgroundImageView()->frame().size();
    const QSizeF shown = QSizeF(image).scaled(room, Qt::KeepAspectRatio);
    const QRectF area(QPointF((room.width() - shown.width()) / 2, (room.height() - shown.height()) / 2), shown);
    const auto point = [&](qreal x, qreal y) { return area.topLeft() + QPointF(x * area.width(), y * area.height()); };
    const QPointF inset(15, 15);
    const QPointF expected[] = {point(0.5, 0.5),   area.topLeft() + inset, area.bottomRight() - inset,
                                point(0.805, 0.2), point(0.7, 0.9),        point(0.8, 1)};
    for (int i = 0; i < 6; ++i) {
        const BrevantoHotspotView *view = marker(screen, i);
        QVERIFY(view);
        QCOMPARE(view->frame().size(), QSizeF(30, 30));
        const QRectF allowed = area.adjusted(15, 15, -15, -15);
        const QPointF held(std::clamp(expected[i].x(), allowed.left(), allowed.right()),
                           std::clamp(expected[i].y(), allowed.top(), allowed.bottom()));
        // Dropped fractions move a marker by less than two points towards the upper left.
        const QPointF distance = held - view->center();
        QVERIFY2(distance.x() > -0.01 && distance.x() < 2, qPrintable(QString::number(distance.x())));
        QVERIFY2(distance.y() > -0.01 && distance.y() < 2, qPrintable(QString::number(distance.y())));
        QVERIFY(view->isAnimating());
    }

    const QImage shot = m_window->grab(QStringLiteral("ad-%1").arg(QLatin1StringView(QTest::currentDataTag())));
    const qreal scale = m_window->window()->effectiveDevicePixelRatio();
    const auto pixel = [&](const QPointF &inView) {
        return shot.pixelColor((screen->backgroundImageView()->mapToScene(inView) * scale).toPoint());
    };
    QCOMPARE(pixel(marker(screen, 0)->center()), QColor(255, 67, 71));
    // The image lies where the markers take it to be: its lower left quarter is blue.
    QVERIFY(pixel(point(0.2, 0.7)).blue() > 200);
    QVERIFY(pixel(point(0.2, 0.7)).red() < 60);
}

void tst_BrevantoAdVC::setsUpOnce()
{
    serveImage({1000, 500});
    BrevantoAdVC *screen = openWithMarkers({match(imageUrl(), 50, 50)});
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

void tst_BrevantoAdVC::keepsTheGroupWhenTheImageFails_data()
{
    QTest::addColumn<RawServer::Answer>("answer");
    RawServer::Answer text;
    text.body = "no image";
    QTest::newRow("no image") << text;
    RawServer::Answer cut;
    cut.body = "cut";
    cut.stage = RawServer::Stage::Nothing;
    cut.then = RawServer::Then::Close;
    QTest::newRow("no answer") << cut;
}

void tst_BrevantoAdVC::keepsTheGroupWhenTheImageFails()
{
    QFETCH(RawServer::Answer, answer);
    m_server->setAnswer(answer);
    BrevantoAdVC *screen = open({match(imageUrl(), 50, 50)});
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

void tst_BrevantoAdVC::placesMarkersWithoutNewImage()
{
    auto screen = brevantoStoryboard().instantiate<BrevantoAdVC>(QStringLiteral("BrevantoAdVC"));
    BrevantoAdVC *shown = screen.get();
    shown->setMatchGroup(BrevantoMatchGroup::initWithMatches({match({}, 50, 50)}, imageUrl()));
    shown->view();
    shown->backgroundImageView()->setImage(Platform::Image(TestImages::quarters({100, 100})));
    m_window->push(std::move(screen));
    QTRY_COMPARE(markerCount(shown), 1);
    QCOMPARE(m_server->requestCount(), 0);
}

void tst_BrevantoAdVC::showsAnyTitle_data()
{
    QTest::addColumn<QVariant>("title");
    QTest::addColumn<QString>("expected");
    QTest::newRow("null") << QVariant() << QString();
    QTest::newRow("number") << QVariant(42) << QStringLiteral("42");
    QTest::newRow("list") << QVariant(QVariantList{1, 2}) << QString();
    const QString longTitle = QStringLiteral("Kettle ").repeated(286);
    QTest::newRow("two thousand characters") << QVariant(longTitle) << longTitle;
}

void tst_BrevantoAdVC::showsAnyTitle()
{
    QFETCH(QVariant, title);
    serveImage({600, 800});
    BrevantoAdVC *screen = openWithMarkers({match(imageUrl(), 30, 30, title)});
    QTEST(screen->navigationItem()->title(), "expected");
    m_window->grab(QStringLiteral("title-%1").arg(QLatin1StringView(QTest::currentDataTag())));
}

void tst_BrevantoAdVC::startsAndStopsMarkers()
{
    serveImage({600, 800});
    BrevantoAdVC *screen = openWithMarkers({match(imageUrl(), 20, 20), match(imageUrl(), 80, 80)});
    delete marker(screen, 0);
    screen->stopOrStartAnimateHotspotView(false);
    QVERIFY(!marker(screen, 1)->shouldAnimate());
    QTRY_VERIFY(!marker(screen, 1)->isAnimating());
    screen->popoverPresentationControllerDidDismissPopover(nullptr);
    QVERIFY(marker(screen, 1)->isAnimating());
}

void tst_BrevantoAdVC::holdsTwoHundredMatches()
{
    serveImage({600, 800});
    BrevantoMatchList matches;
    for (int i = 0; i < 200; ++i)
        matches.append(match(imageUrl(), (i % 10) * 10 + 5, (i / 10) * 5 + 2));
    BrevantoAdVC *screen = openWithMarkers(matches);
    QVERIFY(marker(screen, 199));
    m_window->grab(QStringLiteral("ad-200"));
    m_window->tap(marker(screen, 199));
    QTRY_COMPARE(screen->activeMatchObject(), matches.at(199));
}

void tst_BrevantoAdVC::tapMakesTheMatchActive()
{
    serveImage({600, 800});
    const BrevantoMatchList matches = {match(imageUrl(), 30, 30), match(imageUrl(), 70, 70)};
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
    QCOMPARE(alert->title(), QStringLiteral("Brevanto"));
    QCOMPARE(alert->message(), QStringLiteral("Hotspot data not available."));
    QCOMPARE(alert->actions().size(), std::size_t(1));
    QCOMPARE(alert->actions().front().title, QStringLiteral("OK"));
    QVERIFY(marker(screen, 1)->shouldAnimate());
    QTRY_VERIFY(alert->isVisible());
    m_window->grab(QStringLiteral("ad-no-data"));
}

void tst_BrevantoAdVC::tapOfflineDrawsTheEyeToTheBanner()
{
    serveImage({600, 800});
    const BrevantoMatchList matches = {match(imageUrl(), 30, 30)};
    BrevantoAdVC *screen = openWithMarkers(matches);
    m_network->setOffline();
    const BrevantoReachabilityManager *manager = BrevantoReachabilityManager::instance();
    QTRY_COMPARE(manager->noNetworkView()->superview(), screen->view());
    m_window->tap(marker(screen, 0));
    QTRY_COMPARE(screen->activeMatchObject(), matches.at(0));
    QCOMPARE(manager->noNetworkLabel()->transformScale(), 1.5);
    m_window->grab(QStringLiteral("ad-offline"));
    m_network->setOnline();
    QTRY_COMPARE(manager->noNetworkView()->superview(), nullptr);
}

void tst_BrevantoAdVC::markersWorkByKeyboard()
{
    serveImage({600, 800});
    const BrevantoMatchList matches = {match(imageUrl(), 30, 30), match(imageUrl(), 70, 70, QStringLiteral("Teapot"))};
    BrevantoAdVC *screen = openWithMarkers(matches);
    const auto isFocused = [&] {
        const QQuickItem *focused = m_window->window()->activeFocusItem();
        return focused && focused->parentItem() == marker(screen, 1);
    };
    for (int i = 0; i < 10 && !isFocused(); ++i)
        QTest::keyClick(m_window->window(), Qt::Key_Tab);
    QVERIFY(isFocused());
    const QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(m_window->window()->activeFocusItem());
    QVERIFY(spoken);
    QCOMPARE(spoken->role(), QAccessible::Button);
    QCOMPARE(spoken->text(QAccessible::Name), QStringLiteral("Teapot"));
    m_window->grab(QStringLiteral("ad-focus"));
    QTest::keyClick(m_window->window(), Qt::Key_Space);
    QTRY_COMPARE(screen->activeMatchObject(), matches.at(1));
}

void tst_BrevantoAdVC::backLeavesTheScreen()
{
    serveImage({600, 800});
    const QPointer<BrevantoAdVC> screen(openWithMarkers({match(imageUrl(), 50, 50)}));
    QVERIFY(!m_stack->isNavigationBarHidden());
    screen->navigationItem()->activateLeft(1);
    QTRY_VERIFY(!screen);
    QCOMPARE(m_stack->viewControllers().size(), std::size_t(1));
    m_network->setOffline();
    QCOMPARE(BrevantoReachabilityManager::instance()->noNetworkView()->superview(), nullptr);
}

void tst_BrevantoAdVC::survivesLeavingWhileTheImageIsOnItsWay()
{
    RawServer::Answer answer = RawServer::Answer::stall();
    answer.body = TestImages::png(TestImages::quarters({60, 80}));
    m_server->setAnswer(answer);
    const QPointer<BrevantoAdVC> screen(open({match(imageUrl(), 50, 50)}));
    QTRY_COMPARE(m_server->requestCount(), 1);
    QTRY_VERIFY(isSomethingShownInTheMiddle());
    m_window->grab(QStringLiteral("ad-loading"));
    m_stack->popViewController(false);
    QTRY_VERIFY(!screen);
    m_server->resume();
    // A second screen's image comes after the first one's.
    serveImage({60, 80});
    auto next = brevantoStoryboard().instantiate<BrevantoAdVC>(QStringLiteral("BrevantoAdVC"));
    BrevantoAdVC *shown = next.get();
    shown->setMatchGroup(BrevantoMatchGroup::initWithMatches({match(imageUrl(), 50, 50)}, imageUrl()));
    m_stack->pushViewController(std::move(next), false);
    QTRY_COMPARE(markerCount(shown), 1);
}

Q_DECLARE_METATYPE(RawServer::Answer)

QTEST_MAIN(tst_BrevantoAdVC)
#include "tst_BrevantoAdVC.moc"
