#include "RecordingController.h"
#include "TestWindow.h"
#include "support/ManualClock.h"

#include "Platform/Interface/NavigationController.h"

#include <QTest>

using namespace std::chrono_literals;
using Platform::ModalTransitionStyle;
using Platform::NavigationController;
using Platform::View;
using Platform::ViewController;

namespace
{

constexpr auto transition = 350ms;

QStringList calls(std::initializer_list<const char *> names)
{
    QStringList list;
    for (const char *name : names)
        list.append(QString::fromLatin1(name));
    return list;
}

} // namespace

class tst_Presentation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void callsTheScreensInOrder_data();
    void callsTheScreensInOrder();
    void laysOutOnceAtItsFinalSize();
    void moves_data();
    void moves();
    void refusesASecond();
    void refusesOutsideAWindow();
    void containedScreensShareOnePresentation();
    void dismissesEverythingAbove();
    void presentsWhileAnotherLeaves();
    void dismissalWhilePresentingCompletesThePresentation();
    void dismissalTwiceIsOne_data();
    void dismissalTwiceIsOne();
    void dismissalOnTheWayIn_data();
    void dismissalOnTheWayIn();
    void withoutAnythingToDismiss();
    void survivesTheWindow_data();
    void survivesTheWindow();

private:
    RecordingController *makeScreen(const QString &name) { return new RecordingController(name, &m_calls); }
    RecordingController *present(const QString &name, bool animated = false, ViewController *presenter = nullptr);
    QStringList takeCalls() { return std::exchange(m_calls, {}); }

    std::unique_ptr<ManualClock> m_clock;
    std::unique_ptr<TestWindow> m_window;
    QStringList m_calls;
};

void tst_Presentation::init()
{
    m_clock = std::make_unique<ManualClock>();
    m_window = std::make_unique<TestWindow>();
    m_calls.clear();
}

void tst_Presentation::cleanup()
{
    m_window.reset();
    m_clock.reset();
}

RecordingController *tst_Presentation::present(const QString &name, bool animated, ViewController *presenter)
{
    RecordingController *screen = makeScreen(name);
    (presenter ? presenter : m_window->root())->present(std::unique_ptr<ViewController>(screen), animated);
    return screen;
}

void tst_Presentation::callsTheScreensInOrder_data()
{
    QTest::addColumn<bool>("animated");
    QTest::newRow("animated") << true;
    QTest::newRow("at once") << false;
}

void tst_Presentation::callsTheScreensInOrder()
{
    QFETCH(bool, animated);
    const auto expected = [animated](QStringList list) {
        if (animated)
            list.replaceInStrings(QStringLiteral("pear"), QStringLiteral("pear*"));
        return list;
    };
    RecordingController *a = present(QStringLiteral("a"));
    takeCalls();
    const QPointer<RecordingController> b = makeScreen(QStringLiteral("b"));
    a->present(std::unique_ptr<ViewController>(b.data()), animated,
               [&] { m_calls.append(QStringLiteral("presented")); });
    if (animated) {
        QCOMPARE(takeCalls(), expected(calls({"b didLoad", "a willDisappear", "b willAppear"})));
        QVERIFY(a->isVisible());
        m_clock->advance(transition);
        QCOMPARE(takeCalls(), expected(calls({"b didAppear", "a didDisappear"})) + calls({"presented"}));
    } else {
        QCOMPARE(takeCalls(),
                 calls({"b didLoad", "a willDisappear", "b willAppear", "b didAppear", "a didDisappear", "presented"}));
    }
    QVERIFY(!a->isVisible());
    QVERIFY(b->isVisible());
    QCOMPARE(a->presentedViewController(), b);
    QCOMPARE(b->presentingViewController(), a);

    b->dismiss(animated, [&] { m_calls.append(b ? QStringLiteral("dismissed") : QStringLiteral("too late")); });
    QCOMPARE(a->presentedViewController(), nullptr);
    if (animated) {
        QCOMPARE(takeCalls(), expected(calls({"b willDisappear", "a willAppear"})));
        m_clock->advance(transition);
        QCOMPARE(takeCalls(), expected(calls({"a didAppear", "b didDisappear"})) + calls({"dismissed"}));
    } else {
        QCOMPARE(takeCalls(), calls({"b willDisappear", "a willAppear", "a didAppear", "b didDisappear", "dismissed"}));
    }
    QTRY_VERIFY(!b);
    QVERIFY(a->isVisible());
}

void tst_Presentation::laysOutOnceAtItsFinalSize()
{
    const RecordingController *screen = present(QStringLiteral("a"), true);
    QCOMPARE(screen->layouts, QList<QRectF>({QRectF(0, 0, 375, 667)}));
    m_clock->advance(transition);
    m_window->grab();
    QCOMPARE(screen->layouts.size(), 1);
    m_window->window()->resize(667, 375);
    QTRY_COMPARE(m_calls.last(), QStringLiteral("a rotation"));
    QTRY_COMPARE(screen->layouts.last(), QRectF(0, 0, 667, 375));
}

void tst_Presentation::moves_data()
{
    QTest::addColumn<ModalTransitionStyle>("style");
    QTest::newRow("slides") << ModalTransitionStyle::CoverVertical;
    QTest::newRow("fades") << ModalTransitionStyle::CrossDissolve;
}

void tst_Presentation::moves()
{
    QFETCH(ModalTransitionStyle, style);
    RecordingController *screen = makeScreen(QStringLiteral("a"));
    screen->modalTransitionStyle = style;
    screen->view()->setBackgroundColor(Qt::red);
    m_window->root()->present(std::unique_ptr<ViewController>(screen), true);
    const auto top = [&] { return m_window->grab().pixelColor(100, 10); };
    const auto bottom = [&] { return m_window->grab().pixelColor(100, 660); };
    const QColor host = top();
    QVERIFY(host != QColor(Qt::red));
    m_clock->advance(transition / 2);
    if (style == ModalTransitionStyle::CoverVertical) {
        QTRY_COMPARE(bottom(), QColor(Qt::red));
        QCOMPARE(top(), host);
    } else {
        QTRY_VERIFY(bottom() != host);
        QVERIFY(bottom() != QColor(Qt::red));
        QCOMPARE(top(), bottom());
    }
    m_window->tap(QPointF(100, 10));
    m_clock->advance(transition / 2);
    QTRY_COMPARE(top(), QColor(Qt::red));
    screen->dismiss(true);
    m_clock->advance(transition / 2);
    m_window->tap(QPointF(100, 10));
    QCOMPARE(m_window->hostEvents(), 0);
    m_window->window()->resize(400, 900);
    QTRY_COMPARE(m_window->root()->view()->height(), 900.0);
    QCOMPARE(m_window->grab().pixelColor(100, 890), host); // not where the window had ended before
    m_clock->advance(transition / 2);
    QTRY_COMPARE(bottom(), host);
}

void tst_Presentation::refusesASecond()
{
    present(QStringLiteral("a"), true);
    takeCalls();
    const QPointer<RecordingController> second = makeScreen(QStringLiteral("b"));
    bool isCompleted = false;
    QTest::ignoreMessage(QtInfoMsg, QRegularExpression(QStringLiteral("not presented")));
    m_window->root()->present(std::unique_ptr<ViewController>(second.data()), true, [&] { isCompleted = true; });
    QVERIFY(!second);
    m_clock->advance(transition);
    QVERIFY(!isCompleted);
    QCOMPARE(takeCalls(), calls({"a didAppear*"}));
}

void tst_Presentation::refusesOutsideAWindow()
{
    ViewController lonely;
    lonely.view();
    QTest::ignoreMessage(QtInfoMsg, QRegularExpression(QStringLiteral("not presented")));
    lonely.present(std::make_unique<ViewController>(), false);
    QCOMPARE(lonely.presentedViewController(), nullptr);
}

void tst_Presentation::containedScreensShareOnePresentation()
{
    RecordingController *inner = makeScreen(QStringLiteral("inner"));
    auto *stack = new NavigationController(std::unique_ptr<ViewController>(inner));
    m_window->root()->present(std::unique_ptr<ViewController>(stack), false);
    QCOMPARE(m_calls, calls({"inner didLoad", "inner willAppear", "inner didAppear"}));
    QCOMPARE(inner->presentingViewController(), m_window->root());

    const QPointer<RecordingController> shown = present(QStringLiteral("a"), false, inner);
    QCOMPARE(stack->presentedViewController(), shown);
    QCOMPARE(inner->presentedViewController(), shown);
    QCOMPARE(shown->presentingViewController(), stack);
    QVERIFY(!inner->isVisible());
    inner->dismiss(false); // takes away what the stack presents
    QTRY_VERIFY(!shown);
    QVERIFY(inner->isVisible());

    const QPointer<NavigationController> guard(stack);
    inner->dismiss(false); // presents nothing now: the whole stack goes
    QTRY_VERIFY(!guard);
    QCOMPARE(m_window->root()->presentedViewController(), nullptr);
}

void tst_Presentation::dismissesEverythingAbove()
{
    const QPointer<RecordingController> a = present(QStringLiteral("a"));
    const QPointer<RecordingController> b = present(QStringLiteral("b"), false, a);
    const QPointer<RecordingController> c = present(QStringLiteral("c"), false, b);
    takeCalls();
    m_window->root()->dismiss(true, [&] { m_calls.append(QStringLiteral("dismissed")); });
    QCOMPARE(m_window->root()->presentedViewController(), nullptr);
    m_clock->advance(transition);
    // Only the uppermost was on the screen.
    QCOMPARE(takeCalls(), calls({"c willDisappear*", "c didDisappear*", "dismissed"}));
    QTRY_VERIFY(!a && !b && !c);
    QTRY_COMPARE(m_window->window()->activeFocusItem(), m_window->hostItem());
}

void tst_Presentation::presentsWhileAnotherLeaves()
{
    const QPointer<RecordingController> a = present(QStringLiteral("a"));
    m_window->root()->dismiss(true);
    const QPointer<RecordingController> b = present(QStringLiteral("b"), true);
    QVERIFY(b);
    QCOMPARE(m_window->root()->presentedViewController(), b);
    m_clock->advance(transition);
    QTRY_VERIFY(!a);
    QVERIFY(b);
    QVERIFY(b->isVisible());
}

void tst_Presentation::dismissalWhilePresentingCompletesThePresentation()
{
    const QPointer<RecordingController> a = makeScreen(QStringLiteral("a"));
    m_window->root()->present(std::unique_ptr<ViewController>(a.data()), true,
                              [&] { m_calls.append(QStringLiteral("presented")); });
    m_clock->advance(transition / 2);
    takeCalls();
    a->dismiss(true, [&] { m_calls.append(QStringLiteral("dismissed")); });
    QCOMPARE(takeCalls(), calls({"a didAppear*", "presented", "a willDisappear*"}));
    m_clock->advance(transition);
    QCoreApplication::processEvents();
    QCOMPARE(takeCalls(), calls({"a didDisappear*", "dismissed"}));
    QTRY_VERIFY(!a);
}

void tst_Presentation::dismissalTwiceIsOne_data()
{
    QTest::addColumn<bool>("byPresenter");
    QTest::newRow("by the screen") << false;
    QTest::newRow("by its presenter") << true;
}

void tst_Presentation::dismissalTwiceIsOne()
{
    QFETCH(bool, byPresenter);
    const QPointer<RecordingController> a = present(QStringLiteral("a"));
    const QPointer<RecordingController> b = present(QStringLiteral("b"), false, a);
    takeCalls();
    ViewController *caller = byPresenter ? a : b;
    bool isSecondCompleted = false;
    caller->dismiss(true, [&] { m_calls.append(QStringLiteral("dismissed")); });
    caller->dismiss(true, [&] { isSecondCompleted = true; });
    m_clock->advance(transition);
    QCOMPARE(takeCalls().count(QStringLiteral("dismissed")), 1);
    QVERIFY(!isSecondCompleted);
    QTRY_VERIFY(!b);
    QVERIFY(a); // the second was not taken for a wish that the presenter go too
    a->dismiss(true);
    m_clock->advance(transition);
    QTRY_VERIFY(!a);
}

void tst_Presentation::dismissalOnTheWayIn_data()
{
    QTest::addColumn<bool>("inPresenter");
    QTest::addColumn<QString>("call");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("viewDidLoad") << false << QStringLiteral("didLoad")
                                 << calls({"b didLoad", "presented", "dismissed"});
    QTest::newRow("the presenter's viewWillDisappear")
        << true << QStringLiteral("willDisappear")
        << calls({"b didLoad", "a willDisappear*", "a didDisappear*", "presented", "a willAppear*", "a didAppear*",
                  "dismissed"});
    const QStringList whole =
        calls({"b didLoad", "a willDisappear*", "b willAppear*", "b didAppear*", "a didDisappear*", "presented",
               "b willDisappear*", "a willAppear*", "a didAppear*", "b didDisappear*", "dismissed"});
    QTest::newRow("viewWillAppear") << false << QStringLiteral("willAppear") << whole;
    QTest::newRow("viewDidLayoutSubviews") << false << QStringLiteral("layout") << whole;
    QTest::newRow("viewDidAppear") << false << QStringLiteral("didAppear")
                                   << calls({"b didLoad", "a willDisappear*", "b willAppear*", "b didAppear*",
                                             "b willDisappear*", "a willAppear*", "presented", "a didAppear*",
                                             "b didDisappear*", "dismissed"});
}

void tst_Presentation::dismissalOnTheWayIn()
{
    QFETCH(bool, inPresenter);
    QFETCH(QString, call);
    QFETCH(QStringList, expected);
    RecordingController *a = present(QStringLiteral("a"));
    const QPointer<RecordingController> b = makeScreen(QStringLiteral("b"));
    (inPresenter ? a : b.data())->reactions[call] = [&] {
        b->dismiss(true, [&] { m_calls.append(QStringLiteral("dismissed")); });
    };
    takeCalls();
    a->present(std::unique_ptr<ViewController>(b.data()), true, [&] { m_calls.append(QStringLiteral("presented")); });
    m_clock->advance(transition);
    m_clock->advance(transition);
    QCOMPARE(takeCalls(), expected);
    QTRY_VERIFY(!b);
    QVERIFY(a->isVisible());
    QCOMPARE(a->presentedViewController(), nullptr);
}

void tst_Presentation::withoutAnythingToDismiss()
{
    bool isCompleted = false;
    m_window->root()->dismiss(true, [&] { isCompleted = true; });
    ViewController lonely;
    lonely.dismiss(true, [&] { isCompleted = true; });
    m_clock->advance(transition);
    QCoreApplication::processEvents();
    QVERIFY(!isCompleted);
}

void tst_Presentation::survivesTheWindow_data()
{
    QTest::addColumn<bool>("dismissing");
    QTest::newRow("while presenting") << false;
    QTest::newRow("while dismissing") << true;
}

void tst_Presentation::survivesTheWindow()
{
    QFETCH(bool, dismissing);
    const QPointer<RecordingController> a = present(QStringLiteral("a"));
    const QPointer<RecordingController> b = present(QStringLiteral("b"), true, a);
    m_clock->advance(transition / 2);
    bool isCompleted = false;
    if (dismissing)
        b->dismiss(true, [&] { isCompleted = true; });
    m_window->close();
    QVERIFY(!a);
    QVERIFY(!b);
    m_clock->advance(transition);
    QCoreApplication::processEvents();
    QVERIFY(!isCompleted);
}

QTEST_MAIN(tst_Presentation)
#include "tst_Presentation.moc"
