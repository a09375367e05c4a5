#include "Brevanto/Utils/BrevantoHotspotView.h"
#include "support/ManualClock.h"

#include <QQuickWindow>
#include <QtTest>

using namespace std::chrono_literals;

class TestHotspotView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void newMarkerIsStill();
    void geometryFollowsTheWidth();
    void fadesOutAndIn();
    void stopInFadeOut();
    void stopInFadeIn();
    void startTwiceIsOneCycle();
    void stopAndStartAtOnce();
    void destroyedWhilePulsing();
    void withoutAnimations();
    void drawnOnTheScreen();

private:
    qreal shownAlpha() const { return m_marker->shownBackgroundColor().alphaF(); }
    // Moves the time and lets what it caused happen.
    void pass(std::chrono::milliseconds duration);

    std::unique_ptr<ManualClock> m_clock;
    std::unique_ptr<QQuickWindow> m_window;
    std::unique_ptr<BrevantoHotspotView> m_marker;
};

void TestHotspotView::init()
{
    m_clock = std::make_unique<ManualClock>();
    m_window = std::make_unique<QQuickWindow>();
    m_window->setColor(Qt::blue);
    m_window->resize(200, 200);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    m_marker = std::make_unique<BrevantoHotspotView>(QRectF(20, 20, 30, 30));
    m_marker->setParentItem(m_window->contentItem());
}

void TestHotspotView::cleanup()
{
    m_marker.reset();
    m_window.reset();
    QCoreApplication::processEvents();
    m_clock.reset();
}

// An end of an animation may cause the next in the event after it.
void TestHotspotView::pass(std::chrono::milliseconds duration)
{
    m_clock->advance(duration);
    for (int i = 0; i < 4; ++i)
        QCoreApplication::processEvents();
}

void TestHotspotView::newMarkerIsStill()
{
    QCOMPARE(m_marker->shouldAnimate(), false);
    QCOMPARE(m_marker->isAnimating(), false);
    QCOMPARE(m_marker->backgroundColor(), QColor(Qt::white));
    QCOMPARE(m_marker->redCircleView()->backgroundColor(), QColor(255, 67, 71));
    pass(500ms);
    QCOMPARE(shownAlpha(), 1.0);
    QCOMPARE(m_clock->pendingCount(), 0);
}

void TestHotspotView::geometryFollowsTheWidth()
{
    const BrevantoHotspotView marker(QRectF(3, 4, 40, 40));
    QCOMPARE(marker.redCircleView()->frame(), QRectF(12, 12, 16, 16));
    QCOMPARE(marker.redCircleView()->cornerRadius(), 8.0);
    QCOMPARE(marker.cornerRadius(), 20.0);
    QCOMPARE(marker.frame(), QRectF(3, 4, 40, 40));
}

void TestHotspotView::fadesOutAndIn()
{
    m_marker->startAnimating();
    QVERIFY(m_marker->shouldAnimate() && m_marker->isAnimating());
    for (int cycle = 0; cycle < 3; ++cycle) {
        QCOMPARE(shownAlpha(), 1.0);
        pass(500ms);
        QVERIFY(shownAlpha() > 0.3 && shownAlpha() < 0.7);
        pass(499ms);
        QVERIFY(shownAlpha() < 0.05);
        pass(501ms);
        QVERIFY(shownAlpha() > 0.3 && shownAlpha() < 0.7);
        QCOMPARE(m_marker->redCircleView()->shownBackgroundColor(), QColor(255, 67, 71));
        pass(500ms);
        QVERIFY(m_marker->isAnimating());
    }
}

void TestHotspotView::stopInFadeOut()
{
    m_marker->startAnimating();
    pass(700ms);
    m_marker->stopAnimating();
    QCOMPARE(shownAlpha(), 1.0);
    QCOMPARE(m_marker->shouldAnimate(), false);
    QVERIFY2(m_marker->isAnimating(), "the cycle ends by its completions, not by the stop");
    pass(0ms);
    QCOMPARE(m_marker->isAnimating(), false);
    pass(5000ms);
    QCOMPARE(shownAlpha(), 1.0);
    QCOMPARE(m_clock->pendingCount(), 0);

    m_marker->startAnimating();
    pass(999ms);
    QVERIFY(shownAlpha() < 0.05);
}

void TestHotspotView::stopInFadeIn()
{
    m_marker->startAnimating();
    pass(1000ms);
    pass(200ms);
    m_marker->stopAnimating();
    QCOMPARE(shownAlpha(), 1.0);
    pass(5000ms);
    QCOMPARE(m_marker->isAnimating(), false);
    QCOMPARE(shownAlpha(), 1.0);
}

void TestHotspotView::startTwiceIsOneCycle()
{
    m_marker->startAnimating();
    pass(600ms);
    m_marker->startAnimating();
    QCOMPARE(shownAlpha(), 1.0);
    pass(300ms);
    QCOMPARE(shownAlpha(), 1.0);
    QCOMPARE(m_clock->pendingCount(), 1);
    // The cycle that went on ends, and the next one fades the disc again.
    pass(100ms);
    pass(999ms);
    QVERIFY(shownAlpha() < 0.05);
    QCOMPARE(m_clock->pendingCount(), 1);
    m_marker->startAnimating();
    m_marker->stopAnimating();
    pass(0ms);
    QCOMPARE(m_marker->isAnimating(), false);
}

void TestHotspotView::stopAndStartAtOnce()
{
    m_marker->startAnimating();
    pass(600ms);
    m_marker->stopAnimating();
    m_marker->startAnimating();
    QVERIFY(m_marker->shouldAnimate() && m_marker->isAnimating());
    QCOMPARE(shownAlpha(), 1.0);
    pass(0ms);
    QVERIFY(m_marker->isAnimating());
    pass(999ms);
    QVERIFY(shownAlpha() < 0.05);
    pass(1001ms);
    QCOMPARE(shownAlpha(), 1.0);
}

void TestHotspotView::destroyedWhilePulsing()
{
    m_marker->startAnimating();
    pass(600ms);
    m_marker.reset();
    pass(3000ms);
    QCOMPARE(m_clock->pendingCount(), 0);
}

void TestHotspotView::withoutAnimations()
{
    Platform::View::setAnimationsEnabled(false);
    m_marker->startAnimating();
    pass(3000ms);
    Platform::View::setAnimationsEnabled(true);
    QCOMPARE(shownAlpha(), 1.0);
    QCOMPARE(m_marker->isAnimating(), false);
}

void TestHotspotView::drawnOnTheScreen()
{
    const auto pixel = [this](int x, int y) {
        const QImage picture = m_window->grabWindow();
        return QColor(picture.pixel(QPointF(x * picture.devicePixelRatio(), y * picture.devicePixelRatio()).toPoint()));
    };
    QTRY_COMPARE(pixel(35, 23), QColor(Qt::white));
    QCOMPARE(pixel(35, 35), QColor(255, 67, 71));
    QCOMPARE(pixel(21, 21), QColor(Qt::blue)); // outside the disc, inside its frame
    m_marker->startAnimating();
    pass(1000ms);
    QTRY_COMPARE(pixel(35, 23), QColor(Qt::blue));
    QCOMPARE(pixel(35, 35), QColor(255, 67, 71));
}

QTEST_MAIN(TestHotspotView)

#include "tst_HotspotView.moc"
