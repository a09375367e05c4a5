#include "RecordingController.h"
#include "TestWindow.h"
#include "support/ManualClock.h"

#include "Platform/Interface/NavigationController.h"

#include <QPainter>
#include <QTest>

using namespace std::chrono_literals;
using Platform::BarButtonItem;
using Platform::NavigationController;
using Platform::View;
using Platform::ViewController;

namespace
{

constexpr auto transition = 350ms;

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

class tst_NavigationController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void callsTheScreensInOrder_data();
    void callsTheScreensInOrder();
    void contentStandsBetweenTheBars();
    void barHiddenWhileTheNextScreenComes();
    void secondPushFinishesTheFirst();
    void pushAndPopAtOnce();
    void tapsDuringATransitionDoNothing();
    void survivesTheWindow();
    void swipeFromTheEdgeLeadsBack();
    void screenMovesOnWhileItLoads();

    void showsTitleAndButtons();
    void titleStaysBetweenTheButtons_data();
    void titleStaysBetweenTheButtons();
    void buttonsWorkByTouchAndKeyboard();
    void toolbarSpreadsItsItems();

private:
    RecordingController *makeScreen(const QString &name, const QColor &color = Qt::white);
    RecordingController *push(const QString &name, bool animated = false, const QColor &color = Qt::white);
    QStringList takeCalls() { return std::exchange(m_calls, {}); }
    void settle() { m_clock->advance(transition); }

    std::unique_ptr<ManualClock> m_clock;
    std::unique_ptr<TestWindow> m_window;
    QPointer<NavigationController> m_stack;
    RecordingController *m_first = nullptr;
    QStringList m_calls;
};

void tst_NavigationController::initTestCase()
{
    auto &look = Platform::NavigationBarAppearance::appearance();
    look.style = Platform::NavigationBarAppearance::Style::Black;
    look.translucent = false;
    look.barTintColor = Qt::black;
    look.tintColor = Qt::white;
    look.titleColor = Qt::white;
}

void tst_NavigationController::init()
{
    m_clock = std::make_unique<ManualClock>();
    m_window = std::make_unique<TestWindow>();
    m_calls.clear();
    m_first = makeScreen(QStringLiteral("a"));
    m_stack = new NavigationController(std::unique_ptr<ViewController>(m_first));
    m_window->root()->present(std::unique_ptr<ViewController>(m_stack.data()), false);
}

void tst_NavigationController::cleanup()
{
    m_window.reset();
    m_clock.reset();
}

RecordingController *tst_NavigationController::makeScreen(const QString &name, const QColor &color)
{
    auto *screen = new RecordingController(name, &m_calls);
    screen->view()->setBackgroundColor(color);
    m_calls.clear();
    return screen;
}

RecordingController *tst_NavigationController::push(const QString &name, bool animated, const QColor &color)
{
    RecordingController *screen = makeScreen(name, color);
    m_stack->pushViewController(std::unique_ptr<ViewController>(screen), animated);
    return screen;
}

void tst_NavigationController::callsTheScreensInOrder_data()
{
    QTest::addColumn<bool>("animated");
    QTest::newRow("animated") << true;
    QTest::newRow("at once") << false;
}

void tst_NavigationController::callsTheScreensInOrder()
{
    QFETCH(bool, animated);
    const QString mark = animated ? QStringLiteral("*") : QString();
    const auto named = [&](std::initializer_list<const char *> names) {
        QStringList list;
        for (const char *name : names)
            list.append(QString::fromLatin1(name) + mark);
        return list;
    };
    takeCalls();
    m_stack->popViewController(animated); // the first screen stays
    QCOMPARE(takeCalls(), QStringList());
    QCOMPARE(m_first->layouts, QList<QRectF>({QRectF(0, 44, 375, 667 - 44)}));
    const QPointer<RecordingController> b = push(QStringLiteral("b"), animated);
    QCOMPARE(m_stack->viewControllers(), (std::vector<ViewController *>{m_first, b}));
    QCOMPARE(b->navigationController(), m_stack);
    if (animated) {
        QCOMPARE(takeCalls(), named({"a willDisappear", "b willAppear"}));
        QCOMPARE(b->layouts.size(), 1);
        settle();
        QCOMPARE(takeCalls(), named({"a didDisappear", "b didAppear"}));
    } else {
        QCOMPARE(takeCalls(), named({"a willDisappear", "b willAppear", "a didDisappear", "b didAppear"}));
    }
    QCOMPARE(b->layouts, QList<QRectF>({QRectF(0, 44, 375, 667 - 44)}));
    QVERIFY(!m_first->isVisible());
    QVERIFY(!m_first->view()->isVisible());

    m_stack->popViewController(animated);
    QCOMPARE(m_stack->topViewController(), m_first);
    if (animated) {
        QCOMPARE(takeCalls(), named({"b willDisappear", "a willAppear"}));
        settle();
        QCOMPARE(takeCalls(), named({"b didDisappear", "a didAppear"}));
    } else {
        QCOMPARE(takeCalls(), named({"b willDisappear", "a willAppear", "b didDisappear", "a didAppear"}));
    }
    QTRY_VERIFY(!b);
    QVERIFY(m_first->view()->isVisible());
    QCOMPARE(m_first->view()->frame(), QRectF(0, 44, 375, 667 - 44));
}

void tst_NavigationController::contentStandsBetweenTheBars()
{
    m_stack->setToolbarHidden(false);
    QCOMPARE(m_first->view()->frame(), QRectF(0, 44, 375, 667 - 88));
    m_stack->setNavigationBarHidden(true);
    QCOMPARE(m_first->view()->frame(), QRectF(0, 0, 375, 667 - 44));
    m_window->window()->resize(667, 375);
    QTRY_COMPARE(m_first->view()->frame(), QRectF(0, 0, 667, 375 - 44));
}

void tst_NavigationController::barHiddenWhileTheNextScreenComes()
{
    m_stack->setNavigationBarHidden(true);
    struct Screen : ViewController {
        void viewWillAppear(bool) override { navigationController()->setNavigationBarHidden(false); }
        void viewDidLayoutSubviews() override { layouts.append(view()->frame()); }
        QList<QRectF> layouts;
    };
    auto *screen = new Screen;
    m_stack->pushViewController(std::unique_ptr<ViewController>(screen), true);
    QCOMPARE(screen->layouts, QList<QRectF>({QRectF(0, 44, 375, 667 - 44)}));
    settle();
    m_window->grab();
    QCOMPARE(screen->layouts.size(), 1);
    QCOMPARE(screen->view()->position(), QPointF(0, 44));
}

void tst_NavigationController::secondPushFinishesTheFirst()
{
    push(QStringLiteral("b"), true, Qt::red);
    m_clock->advance(transition / 3);
    RecordingController *c = push(QStringLiteral("c"), true, Qt::blue);
    QVERIFY(m_stack->isInTransition());
    settle();
    QCoreApplication::processEvents();
    QVERIFY(!m_stack->isInTransition());
    QVERIFY(c->isVisible());
    QCOMPARE(c->view()->position(), QPointF(0, 44));
    QCOMPARE(m_window->grab().pixelColor(100, 300), QColor(Qt::blue));
}

void tst_NavigationController::pushAndPopAtOnce()
{
    for (int round = 0; round < 5; ++round) {
        push(QStringLiteral("b"), true);
        m_clock->advance(transition / 4);
        m_stack->popViewController(true);
        m_clock->advance(transition / 4);
    }
    settle();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(m_calls.count(QStringLiteral("b didAppear*")), m_calls.count(QStringLiteral("b willDisappear*")));
    QCOMPARE(m_stack->topViewController(), m_first);
    QVERIFY(m_first->isVisible());
    QCOMPARE(m_first->view()->position(), QPointF(0, 44));
    QCOMPARE(m_first->view()->parentItem()->childItems().size(), 1);
}

void tst_NavigationController::tapsDuringATransitionDoNothing()
{
    int taps = 0;
    m_first->navigationItem()->setLeftBarButtonItems({button(QStringLiteral("<"), [&] { ++taps; })});
    const QPointer<RecordingController> b = push(QStringLiteral("b"), true);
    b->navigationItem()->setLeftBarButtonItems({button(QStringLiteral("<"), [&] {
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

void tst_NavigationController::survivesTheWindow()
{
    const QPointer<RecordingController> b = push(QStringLiteral("b"));
    m_stack->popViewController(true);
    m_clock->advance(transition / 2);
    m_window->close();
    QVERIFY(!m_stack);
    settle();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!b);
}

void tst_NavigationController::swipeFromTheEdgeLeadsBack()
{
    const QPointer<RecordingController> b = push(QStringLiteral("b"));
    const QPointer<RecordingController> c = push(QStringLiteral("c"));
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

void tst_NavigationController::screenMovesOnWhileItLoads()
{
    auto *first = new RecordingController(QStringLiteral("first"), &m_calls);
    auto *second = new RecordingController(QStringLiteral("second"), &m_calls);
    auto *stack = new NavigationController(std::unique_ptr<ViewController>(first));
    first->reactions[QStringLiteral("didLoad")] = [&] {
        for (int i = 0; i < 8; ++i)
            stack->pushViewController(std::make_unique<ViewController>(), false);
        for (int i = 0; i < 8; ++i)
            stack->popViewController(false);
        stack->pushViewController(std::unique_ptr<ViewController>(second), false);
    };
    takeCalls();
    m_stack->present(std::unique_ptr<ViewController>(stack), false);
    QCOMPARE(m_calls.filter(QStringLiteral("ond ")).join(u','),
             QStringLiteral("second didLoad,second willAppear,second didAppear"));
    stack->popViewController(false);
    QTRY_VERIFY(first->isVisible() && first->view()->isVisible());
}

void tst_NavigationController::showsTitleAndButtons()
{
    RecordingController *b = push(QStringLiteral("b"));
    b->navigationItem()->setTitle(QStringLiteral("Kettle & Co. <b>"));
    b->navigationItem()->setLeftBarButtonItems({BarButtonItem::fixedSpace(-6), button(QStringLiteral("<"))});
    b->navigationItem()->setRightBarButtonItems({button(QStringLiteral("?"))});
    m_stack->setNavigationBarShadow({.color = Qt::black, .opacity = 0.3, .offset = {0, 2}});
    const QQuickItem *title = m_window->find(QStringLiteral("navigationBarTitle"));
    QVERIFY(title);
    QCOMPARE(title->property("text").toString(), QStringLiteral("Kettle & Co. <b>"));
    const QQuickItem *left = m_window->find(QStringLiteral("leftBarButtonItems"));
    // The second of the two: six points further out than the margin.
    QCOMPARE(left->mapToScene({0, 0}).x() - 6, left->childItems().at(1)->mapToScene({0, 0}).x());
    QTRY_VERIFY(m_window->grab().pixelColor(m_window->window()->width() / 2, 5) == QColor(Qt::black));
    QTest::qWait(100); // the glyphs are decoded on another thread
    const QImage shot = m_window->grab(QStringLiteral("navigation-bar"));
    QVERIFY(shot.pixelColor(10, 45) != shot.pixelColor(10, 60));
}

void tst_NavigationController::titleStaysBetweenTheButtons_data()
{
    QTest::addColumn<int>("length");
    QTest::newRow("empty") << 0;
    QTest::newRow("short") << 8;
    QTest::newRow("wide") << 40;
    QTest::newRow("endless") << 2000;
}

void tst_NavigationController::titleStaysBetweenTheButtons()
{
    QFETCH(int, length);
    m_first->navigationItem()->setLeftBarButtonItems({button(QStringLiteral("<"))});
    m_first->navigationItem()->setTitle(QString(length, u'W'));
    const QQuickItem *title = m_window->find(QStringLiteral("navigationBarTitle"));
    const QQuickItem *left = m_window->find(QStringLiteral("leftBarButtonItems"));
    const QRectF place = title->mapRectToScene(title->boundingRect());
    QVERIFY(place.left() >= left->mapRectToScene(left->boundingRect()).right());
    QVERIFY(place.right() <= 375);
    QCOMPARE(place.center().x(), 375 / 2.0);
    m_window->grab(QStringLiteral("navigation-title-%1").arg(length));
}

void tst_NavigationController::buttonsWorkByTouchAndKeyboard()
{
    int activated = 0;
    m_first->navigationItem()->setLeftBarButtonItems({button(QStringLiteral("<"))});
    m_first->navigationItem()->setRightBarButtonItems({button(QStringLiteral("?"), [&] { ++activated; })});
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
    m_window->grab(QStringLiteral("navigation-bar-focus"));
    BarButtonItem disabled = button(QStringLiteral("?"), [&] { ++activated; });
    disabled.enabled = false;
    m_first->navigationItem()->setRightBarButtonItems({disabled});
    m_window->tap(QPointF(375 - 34, 22));
    QCOMPARE(activated, 3);
}

void tst_NavigationController::toolbarSpreadsItsItems()
{
    int activated = -1;
    QList<BarButtonItem> items;
    for (int index = 0; index < 3; ++index) {
        if (index > 0)
            items.append(BarButtonItem::flexibleSpace());
        items.append(button(QString::number(index), [&activated, index] { activated = index; }));
    }
    m_stack->setToolbarStyle(Platform::NavigationBarAppearance::Style::Black);
    m_stack->setToolbarHidden(false);
    m_first->setToolbarItems(items);
    const QList<qreal> centres{12 + 22, 375 / 2.0, 375 - 12 - 22};
    for (int index = 0; index < 3; ++index) {
        m_window->tap(QPointF(centres.at(index), 667 - 22));
        QCOMPARE(activated, index);
    }
    QTest::qWait(100);
    m_window->grab(QStringLiteral("toolbar"));
}

QTEST_MAIN(tst_NavigationController)
#include "tst_NavigationController.moc"
