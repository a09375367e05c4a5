#include "support/Table.h"
#include "support/WindowTest.h"

#include "Platform/Interface/NavigationController.h"

#include <QPainter>

using namespace Qt::StringLiterals;
using Platform::BarButtonItem;
using Platform::NavigationController;
using Platform::View;
using Platform::ViewController;

namespace
{

Platform::Image glyph(const QString &letter)
{
    QImage bitmap(70, 70, QImage::Format_ARGB32_Premultiplied);
    bitmap.fill(Qt::transparent);
    QPainter painter(&bitmap);
    painter.setPen(Qt::white);
    QFont font;
    font.setPixelSize(56);
    painter.setFont(font);
    painter.drawText(bitmap.rect(), Qt::AlignCenter, letter);
    return Platform::Image(bitmap, 2.0);
}

BarButtonItem button(const QString &letter, std::function<void()> action = {})
{
    BarButtonItem item;
    item.picture = glyph(letter);
    item.size = {35, 35};
    item.accessibleName = letter;
    item.action = std::move(action);
    return item;
}

} // namespace

class tst_NavigationController : public WindowTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        auto &look = Platform::NavigationBarAppearance::appearance();
        look.style = Platform::NavigationBarAppearance::Style::Black;
        look.translucent = false;
        look.barTintColor = Qt::black;
        look.tintColor = Qt::white;
        look.titleColor = Qt::white;
    }

    void init()
    {
        WindowTest::init();
        m_first = makeScreen(u"a"_s);
        m_stack = new NavigationController(std::unique_ptr<ViewController>(m_first));
        m_window->root()->present(std::unique_ptr<ViewController>(m_stack.data()), false);
    }

    void callsTheScreensInOrder_data() { addBothRows("animated", "at once", "animated"); }
    void callsTheScreensInOrder()
    {
        QFETCH(bool, animated);
        const QRectF place(0, 44, 375, 667 - 44);
        m_calls.clear();
        m_stack->popViewController(animated); // the first screen stays
        QCOMPARE(taken(m_calls), QString());
        QCOMPARE(m_first->layouts, QList{place});
        const QPointer<RecordingController> b = push(u"b"_s, animated);
        QCOMPARE(m_stack->viewControllers(), (std::vector<ViewController *>{m_first, b}));
        QCOMPARE(b->navigationController(), m_stack);
        compareCalls(u"a willDisappear, b willAppear | a didDisappear, b didAppear"_s, animated);
        QCOMPARE(b->layouts, QList{place});
        QVERIFY(!m_first->isVisible() && !m_first->view()->isVisible());

        m_stack->popViewController(animated);
        QCOMPARE(m_stack->topViewController(), m_first);
        compareCalls(u"b willDisappear, a willAppear | b didDisappear, a didAppear"_s, animated);
        QTRY_VERIFY(!b);
        QVERIFY(m_first->view()->isVisible());
        QCOMPARE(m_first->view()->frame(), place);
    }

    void contentStandsBetweenTheBars()
    {
        int activated = -1;
        QList<BarButtonItem> items;
        for (int index = 0; index < 3; ++index) {
            if (index > 0)
                items.append(BarButtonItem::flexibleSpace());
            items.append(button(QString::number(index), [&activated, index] { activated = index; }));
        }
        m_first->setToolbarItems(items);
        m_stack->setToolbarStyle(Platform::NavigationBarAppearance::Style::Black);
        m_stack->setToolbarHidden(false);
        QCOMPARE(m_first->view()->frame(), QRectF(0, 44, 375, 667 - 88));
        // The toolbar's items spread from edge to edge.
        const QList<qreal> centres{12 + 22, 375 / 2.0, 375 - 12 - 22};
        for (int index = 0; index < 3; ++index) {
            m_window->tap(QPointF(centres.at(index), 667 - 22));
            QCOMPARE(activated, index);
        }
        m_stack->setNavigationBarHidden(true);
        QCOMPARE(m_first->view()->frame(), QRectF(0, 0, 375, 667 - 44));
        m_window->window()->resize(667, 375);
        QTRY_COMPARE(m_first->view()->frame(), QRectF(0, 0, 667, 375 - 44));
    }

    void survivesTheWindow()
    {
        const QPointer<RecordingController> b = push(u"b"_s);
        m_stack->popViewController(true);
        m_clock->advance(transition / 2);
        m_window->close();
        QVERIFY(!m_stack);
        settle();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QVERIFY(!b);
    }

    void barHiddenWhileTheNextScreenComes()
    {
        m_stack->setNavigationBarHidden(true);
        RecordingController *screen = makeScreen(u"b"_s);
        screen->reactions[u"willAppear"_s] = [&] { m_stack->setNavigationBarHidden(false); };
        m_stack->pushViewController(std::unique_ptr<ViewController>(screen), true);
        QCOMPARE(screen->layouts, QList<QRectF>({QRectF(0, 44, 375, 667 - 44)}));
        settle();
        m_window->grab();
        QCOMPARE(screen->layouts.size(), 1);
        QCOMPARE(screen->view()->position(), QPointF(0, 44));
    }

    void secondPushFinishesTheFirst()
    {
        push(u"b"_s, true, Qt::red);
        m_clock->advance(transition / 3);
        RecordingController *c = push(u"c"_s, true, Qt::blue);
        settle();
        QCoreApplication::processEvents();
        QVERIFY(!m_stack->isInTransition() && c->isVisible());
        QCOMPARE(c->view()->position(), QPointF(0, 44));
        QCOMPARE(m_window->grab().pixelColor(100, 300), QColor(Qt::blue));
    }

    void pushAndPopAtOnce()
    {
        for (int round = 0; round < 5; ++round) {
            push(u"b"_s, true);
            m_clock->advance(transition / 4);
            m_stack->popViewController(true);
            m_clock->advance(transition / 4);
        }
        settle();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(m_calls.count(u"b didAppear*"_s), m_calls.count(u"b willDisappear*"_s));
        QCOMPARE(m_stack->topViewController(), m_first);
        QVERIFY(m_first->isVisible());
        QCOMPARE(m_first->view()->position(), QPointF(0, 44));
        QCOMPARE(m_first->view()->parentItem()->childItems().size(), 1);
    }

    void tapsDuringATransitionDoNothing()
    {
        int taps = 0;
        m_first->navigationItem()->setLeftBarButtonItems({button(u"<"_s, [&] { ++taps; })});
        const QPointer<RecordingController> b = push(u"b"_s, true);
        b->navigationItem()->setLeftBarButtonItems({button(u"<"_s, [&] {
            ++taps;
            m_stack->popViewController(true);
        })});
        m_window->tap(QPointF(34, 22));
        QTest::keyClick(m_window->window(), Qt::Key_Escape);
        QCOMPARE(taps, 0);
        QCOMPARE(m_stack->topViewController(), b);
        settle();
        m_window->tap(QPointF(34, 22));
        m_window->tap(QPointF(34, 22));
        QCOMPARE(taps, 1);
        settle();
        QTRY_VERIFY(!b);
        QCOMPARE(m_stack->topViewController(), m_first);
    }

    void swipeFromTheEdgeLeadsBack()
    {
        const QPointer<RecordingController> b = push(u"b"_s);
        const QPointer<RecordingController> c = push(u"c"_s);
        const std::unique_ptr<QPointingDevice> finger(QTest::createTouchDevice());
        QQuickWindow *window = m_window->window();
        const auto swipe = [&](const std::function<void()> &meanwhile = {}) {
            QTest::touchEvent(window, finger.get()).press(0, {4, 300});
            for (int x = 14; x < 200; x += 10)
                QTest::touchEvent(window, finger.get()).move(0, {x, 300});
            if (meanwhile)
                meanwhile();
            QTest::touchEvent(window, finger.get()).release(0, {200, 300});
            settle();
        };
        swipe();
        QCOMPARE(m_stack->topViewController(), c); // does not allow it
        c->allowsInteractivePop = b->allowsInteractivePop = true;
        swipe([&] { m_stack->popViewController(true); });
        QTRY_VERIFY(!c);
        QCOMPARE(m_stack->topViewController(), b); // one step, not two
        swipe();
        QTRY_VERIFY(!b);
    }

    void screenMovesOnWhileItLoads()
    {
        auto *first = new RecordingController(u"first"_s, &m_calls);
        auto *second = new RecordingController(u"second"_s, &m_calls);
        auto *stack = new NavigationController(std::unique_ptr<ViewController>(first));
        first->reactions[u"didLoad"_s] = [&] {
            for (int i = 0; i < 8; ++i)
                stack->pushViewController(std::make_unique<ViewController>(), false);
            for (int i = 0; i < 8; ++i)
                stack->popViewController(false);
            stack->pushViewController(std::unique_ptr<ViewController>(second), false);
        };
        m_calls.clear();
        m_stack->present(std::unique_ptr<ViewController>(stack), false);
        QCOMPARE(m_calls.filter(u"ond "_s).join(u','), u"second didLoad,second willAppear,second didAppear"_s);
        stack->popViewController(false);
        QTRY_VERIFY(first->isVisible() && first->view()->isVisible());
    }

    void showsTitleAndButtons()
    {
        RecordingController *b = push(u"b"_s);
        b->navigationItem()->setTitle(u"Kettle & Co. <b>"_s);
        b->navigationItem()->setLeftBarButtonItems({BarButtonItem::fixedSpace(-6), button(u"<"_s)});
        b->navigationItem()->setRightBarButtonItems({button(u"?"_s)});
        m_stack->setNavigationBarShadow({.color = Qt::black, .opacity = 0.3, .offset = {0, 2}});
        const QQuickItem *title = m_window->find(u"navigationBarTitle"_s);
        QVERIFY(title);
        QCOMPARE(title->property("text").toString(), u"Kettle & Co. <b>"_s);
        const QQuickItem *left = m_window->find(u"leftBarButtonItems"_s);
        // The second of the two: six points further out than the margin.
        QCOMPARE(left->mapToScene({0, 0}).x() - 6, left->childItems().at(1)->mapToScene({0, 0}).x());
        QTRY_VERIFY(m_window->grab().pixelColor(m_window->window()->width() / 2, 5) == QColor(Qt::black));
        // The glyphs are decoded on another thread.
        const auto isDrawn = [](const QImage &shot) { return shot.pixelColor(10, 45) != shot.pixelColor(10, 60); };
        QTRY_VERIFY(isDrawn(m_window->grab()));
    }

    void titleStaysBetweenTheButtons()
    {
        m_first->navigationItem()->setLeftBarButtonItems({button(u"<"_s)});
        const QQuickItem *title = m_window->find(u"navigationBarTitle"_s);
        const QQuickItem *left = m_window->find(u"leftBarButtonItems"_s);
        for (const int length : {0, 8, 40, 2000}) {
            m_first->navigationItem()->setTitle(QString(length, u'W'));
            const QRectF place = title->mapRectToScene(title->boundingRect());
            QVERIFY(place.left() >= left->mapRectToScene(left->boundingRect()).right());
            QVERIFY(place.right() <= 375);
            QCOMPARE(place.center().x(), 375 / 2.0);
        }
    }

    void buttonsWorkByTouchAndKeyboard()
    {
        int activated = 0;
        m_first->navigationItem()->setLeftBarButtonItems({button(u"<"_s)});
        m_first->navigationItem()->setRightBarButtonItems({button(u"?"_s, [&] { ++activated; })});
        // A finger beside the picture still meets the button.
        m_window->tap(QPointF(375 - 12 - 43, 1));
        QCOMPARE(activated, 1);
        const auto isOnTheRight = [&] {
            const QQuickItem *item = m_window->window()->activeFocusItem();
            return item->inherits("QQuickAbstractButton") && item->mapToScene({0, 0}).x() > 187;
        };
        QTest::keyClick(m_window->window(), Qt::Key_Tab);
        QTRY_VERIFY(!isOnTheRight());
        QTest::keyClick(m_window->window(), Qt::Key_Tab);
        QTRY_VERIFY(isOnTheRight());
        QTest::keyClick(m_window->window(), Qt::Key_Space);
        QTest::keyClick(m_window->window(), Qt::Key_Return);
        QCOMPARE(activated, 3);
        BarButtonItem disabled = button(u"?"_s, [&] { ++activated; });
        disabled.enabled = false;
        m_first->navigationItem()->setRightBarButtonItems({disabled});
        m_window->tap(QPointF(375 - 34, 22));
        QCOMPARE(activated, 3);
    }

private:
    RecordingController *makeScreen(const QString &name, const QColor &color = Qt::white)
    {
        auto *screen = new RecordingController(name, &m_calls);
        screen->view()->setBackgroundColor(color);
        m_calls.clear();
        return screen;
    }

    RecordingController *push(const QString &name, bool animated = false, const QColor &color = Qt::white)
    {
        RecordingController *screen = makeScreen(name, color);
        m_stack->pushViewController(std::unique_ptr<ViewController>(screen), animated);
        return screen;
    }

    void settle() { m_clock->advance(transition); }

    QPointer<NavigationController> m_stack;
    RecordingController *m_first = nullptr;
};

QTEST_MAIN(tst_NavigationController)
#include "tst_NavigationController.moc"
