#include "Brevanto/Utils/BrevantoHotspotView.h"
#include "support/ManualClock.h"
#include "support/Table.h"

#include <QQuickWindow>
#include <QtTest>

using namespace std::chrono_literals;

class TestHotspotView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_clock = std::make_unique<ManualClock>();
        m_window = std::make_unique<QQuickWindow>();
        m_window->setColor(Qt::blue);
        m_window->resize(200, 200);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        m_marker = std::make_unique<BrevantoHotspotView>(QRectF(20, 20, 40, 40));
        m_marker->setParentItem(m_window->contentItem());
    }

    void cleanup()
    {
        m_marker.reset();
        m_window.reset();
        QCoreApplication::processEvents();
        m_clock.reset();
    }

    void fadesOutAndIn()
    {
        const auto pixel = [this](int x, int y) {
            const QImage picture = m_window->grabWindow();
            return picture.pixelColor((QPointF(x, y) * picture.devicePixelRatio()).toPoint());
        };
        const QColor red(255, 67, 71);
        QVERIFY(!m_marker->shouldAnimate() && !m_marker->isAnimating());
        m_clock->pass(500ms);
        QCOMPARE(m_clock->pendingCount(), 0);
        QTRY_COMPARE(pixel(40, 23), QColor(Qt::white));
        QCOMPARE(pixel(40, 30), QColor(Qt::white)); // the dot is 16 points wide in a disc of any width
        QCOMPARE(pixel(40, 34), red);
        QCOMPARE(pixel(22, 22), QColor(Qt::blue)); // outside the disc, inside its frame

        m_marker->startAnimating();
        QVERIFY(m_marker->shouldAnimate() && m_marker->isAnimating());
        for (int cycle = 0; cycle < 3; ++cycle) {
            QCOMPARE(shownAlpha(), 1.0);
            m_clock->pass(500ms);
            QVERIFY(shownAlpha() > 0.3 && shownAlpha() < 0.7);
            m_clock->pass(499ms);
            QVERIFY(shownAlpha() < 0.05);
            m_clock->pass(1ms);
            QTRY_COMPARE(pixel(40, 23), QColor(Qt::blue));
            QCOMPARE(pixel(40, 40), red);
            m_clock->pass(500ms);
            QVERIFY(shownAlpha() > 0.3 && shownAlpha() < 0.7);
            m_clock->pass(500ms);
            QVERIFY(m_marker->isAnimating());
        }
        m_marker.reset();
        m_clock->pass(3000ms);
        QCOMPARE(m_clock->pendingCount(), 0);
    }

    void stops_data() { addBothRows("fadesIn", "fading out", "fading in"); }
    void stops()
    {
        QFETCH(bool, fadesIn);
        m_marker->startAnimating();
        if (fadesIn)
            m_clock->pass(1000ms);
        m_clock->pass(700ms);
        m_marker->stopAnimating();
        QCOMPARE(shownAlpha(), 1.0);
        QCOMPARE(m_marker->shouldAnimate(), false);
        QVERIFY2(m_marker->isAnimating(), "the cycle ends by its completions, not by the stop");
        m_clock->pass(0ms);
        QCOMPARE(m_marker->isAnimating(), false);
        m_clock->pass(5000ms);
        QCOMPARE(shownAlpha(), 1.0);
        QCOMPARE(m_clock->pendingCount(), 0);
        m_marker->startAnimating();
        m_clock->pass(999ms);
        QVERIFY(shownAlpha() < 0.05);
    }

    void withoutAnimations()
    {
        Platform::View::setAnimationsEnabled(false);
        m_marker->startAnimating();
        m_clock->pass(3000ms);
        Platform::View::setAnimationsEnabled(true);
        QCOMPARE(shownAlpha(), 1.0);
        QCOMPARE(m_marker->isAnimating(), false);
    }

    void startsAgainInTheMidst_data() { addBothRows("stopsBefore", "started twice", "stopped and started at once"); }
    void startsAgainInTheMidst()
    {
        QFETCH(bool, stopsBefore);
        m_marker->startAnimating();
        m_clock->pass(600ms);
        if (stopsBefore)
            m_marker->stopAnimating();
        m_marker->startAnimating();
        QVERIFY(m_marker->shouldAnimate() && m_marker->isAnimating());
        QCOMPARE(shownAlpha(), 1.0);
        // Started twice, the cycle goes on to its end, unseen; after a stop the next one begins at once.
        m_clock->pass(stopsBefore ? 0ms : 400ms);
        QCOMPARE(shownAlpha(), 1.0);
        QVERIFY(m_marker->isAnimating());
        m_clock->pass(999ms);
        QVERIFY(shownAlpha() < 0.05);
        QCOMPARE(m_clock->pendingCount(), 1); // one cycle, not two
        m_marker->stopAnimating();
        m_clock->pass(0ms);
        QCOMPARE(m_marker->isAnimating(), false);
    }

private:
    qreal shownAlpha() const { return m_marker->shownBackgroundColor().alphaF(); }
    std::unique_ptr<ManualClock> m_clock;
    std::unique_ptr<QQuickWindow> m_window;
    std::unique_ptr<BrevantoHotspotView> m_marker;
};

QTEST_MAIN(TestHotspotView)

#include "tst_HotspotView.moc"
