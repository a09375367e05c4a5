#include "support/Table.h"
#include "support/WindowTest.h"

#include "Platform/Interface/NavigationController.h"

using namespace Qt::StringLiterals;
using Platform::ModalTransitionStyle;
using Platform::NavigationController;
using Platform::ViewController;

class tst_Presentation : public WindowTest
{
    Q_OBJECT

private Q_SLOTS:
    void callsTheScreensInOrder_data() { addBothRows("animated", "at once", "animated"); }
    void callsTheScreensInOrder()
    {
        QFETCH(bool, animated);
        RecordingController *a = present(u"a"_s);
        m_calls.clear();
        const QPointer<RecordingController> b = makeScreen(u"b"_s);
        a->present(std::unique_ptr<ViewController>(b.data()), animated, [&] { m_calls.append(u"presented"_s); });
        QCOMPARE(a->isVisible(), animated);
        compareCalls(u"b didLoad, a willDisappear, b willAppear | b didAppear, a didDisappear, presented"_s, animated);
        QVERIFY(!a->isVisible() && b->isVisible());
        QCOMPARE(a->presentedViewController(), b);
        QCOMPARE(b->presentingViewController(), a);

        b->dismiss(animated, [&] { m_calls.append(b ? u"dismissed"_s : u"too late"_s); });
        QCOMPARE(a->presentedViewController(), nullptr);
        compareCalls(u"b willDisappear, a willAppear | a didAppear, b didDisappear, dismissed"_s, animated);
        QTRY_VERIFY(!b);
        QVERIFY(a->isVisible());
    }

    void laysOutOnceAtItsFinalSize()
    {
        const RecordingController *screen = present(u"a"_s, true);
        QCOMPARE(screen->layouts, QList<QRectF>({QRectF(0, 0, 375, 667)}));
        m_clock->advance(transition);
        m_window->grab();
        QCOMPARE(screen->layouts.size(), 1);
        m_window->window()->resize(667, 375);
        QTRY_COMPARE(m_calls.last(), u"a rotation"_s);
        QTRY_COMPARE(screen->layouts.last(), QRectF(0, 0, 667, 375));
    }

    void moves_data() { addBothRows("fades", "slides", "fades"); }
    void moves()
    {
        QFETCH(bool, fades);
        RecordingController *screen = makeScreen(u"a"_s);
        screen->modalTransitionStyle =
            fades ? ModalTransitionStyle::CrossDissolve : ModalTransitionStyle::CoverVertical;
        screen->view()->setBackgroundColor(Qt::red);
        m_window->root()->present(std::unique_ptr<ViewController>(screen), true);
        const auto top = [&] { return m_window->grab().pixelColor(100, 10); };
        const auto bottom = [&] { return m_window->grab().pixelColor(100, 660); };
        const QColor host = top();
        QVERIFY(host != QColor(Qt::red));
        m_clock->advance(transition / 2);
        QTRY_VERIFY(bottom() != host);
        QCOMPARE(bottom() == QColor(Qt::red), !fades);
        QCOMPARE(top(), fades ? bottom() : host);
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

    void doesNothingWhereNothingCanBeDone()
    {
        bool isCompleted = false;
        const auto completion = [&] { isCompleted = true; };
        m_window->root()->dismiss(true, completion);
        ViewController lonely; // in no window
        lonely.view();
        lonely.dismiss(true, completion);
        QTest::ignoreMessage(QtInfoMsg, QRegularExpression(u"not presented"_s));
        lonely.present(std::make_unique<ViewController>(), false, completion);
        QCOMPARE(lonely.presentedViewController(), nullptr);

        present(u"a"_s, true);
        m_calls.clear();
        const QPointer<RecordingController> second = makeScreen(u"b"_s);
        QTest::ignoreMessage(QtInfoMsg, QRegularExpression(u"not presented"_s));
        m_window->root()->present(std::unique_ptr<ViewController>(second.data()), true, completion);
        QVERIFY(!second);
        m_clock->advance(transition);
        QCoreApplication::processEvents();
        QVERIFY(!isCompleted);
        QCOMPARE(taken(m_calls), u"a didAppear*"_s);
    }

    void containedScreensShareOnePresentation()
    {
        RecordingController *inner = makeScreen(u"inner"_s);
        const QPointer stack(new NavigationController(std::unique_ptr<ViewController>(inner)));
        m_window->root()->present(std::unique_ptr<ViewController>(stack.data()), false);
        QCOMPARE(taken(m_calls), u"inner didLoad, inner willAppear, inner didAppear"_s);
        QCOMPARE(inner->presentingViewController(), m_window->root());

        const QPointer<RecordingController> shown = present(u"a"_s, false, inner);
        QCOMPARE(stack->presentedViewController(), shown);
        QCOMPARE(inner->presentedViewController(), shown);
        QCOMPARE(shown->presentingViewController(), stack);
        QVERIFY(!inner->isVisible());
        inner->dismiss(false); // takes away what the stack presents
        QTRY_VERIFY(!shown);
        QVERIFY(inner->isVisible());

        inner->dismiss(false); // presents nothing now: the whole stack goes
        QTRY_VERIFY(!stack);
        QCOMPARE(m_window->root()->presentedViewController(), nullptr);
    }

    void dismissesEverythingAbove()
    {
        const QPointer<RecordingController> a = present(u"a"_s);
        const QPointer<RecordingController> b = present(u"b"_s, false, a);
        const QPointer<RecordingController> c = present(u"c"_s, false, b);
        m_calls.clear();
        m_window->root()->dismiss(true, [&] { m_calls.append(u"dismissed"_s); });
        QCOMPARE(m_window->root()->presentedViewController(), nullptr);
        m_clock->advance(transition);
        // Only the uppermost was on the screen.
        QCOMPARE(taken(m_calls), u"c willDisappear*, c didDisappear*, dismissed"_s);
        QTRY_VERIFY(!a && !b && !c);
        QTRY_COMPARE(m_window->window()->activeFocusItem(), m_window->hostItem());
    }

    void presentsWhileAnotherLeaves()
    {
        const QPointer<RecordingController> a = present(u"a"_s);
        m_window->root()->dismiss(true);
        const QPointer<RecordingController> b = present(u"b"_s, true);
        QVERIFY(b);
        QCOMPARE(m_window->root()->presentedViewController(), b);
        m_clock->advance(transition);
        QTRY_VERIFY(!a);
        QVERIFY(b && b->isVisible());
    }

    void dismissalTwiceIsOne_data() { addBothRows("byPresenter", "by the screen", "by its presenter"); }
    void dismissalTwiceIsOne()
    {
        QFETCH(bool, byPresenter);
        const QPointer<RecordingController> a = present(u"a"_s);
        const QPointer<RecordingController> b = present(u"b"_s, false, a);
        ViewController *caller = byPresenter ? a : b;
        QStringList completed;
        caller->dismiss(true, [&] { completed.append(u"first"_s); });
        caller->dismiss(true, [&] { completed.append(u"second"_s); });
        m_clock->advance(transition);
        QCOMPARE(completed, QStringList{u"first"_s});
        QTRY_VERIFY(!b);
        QVERIFY(a); // the second was not taken for a wish that the presenter go too
        a->dismiss(true);
        m_clock->advance(transition);
        QTRY_VERIFY(!a);
    }

    void dismissalOnTheWayIn_data()
    {
        QTest::addColumn<QString>("call"); // in which the dismissal is asked for; none: half-way
        QTest::addColumn<QString>("expected");
        const QString whole = u"b didLoad, a willDisappear*, b willAppear*, b didAppear*, a didDisappear*, presented, "
                              "b willDisappear*, a willAppear*, a didAppear*, b didDisappear*, dismissed"_s;
        QTest::newRow("viewDidLoad") << u"b didLoad"_s << u"b didLoad, presented, dismissed"_s;
        QTest::newRow("the presenter's viewWillDisappear")
            << u"a willDisappear"_s
            << u"b didLoad, a willDisappear*, a didDisappear*, presented, a willAppear*, a didAppear*, dismissed"_s;
        QTest::newRow("viewWillAppear") << u"b willAppear"_s << whole;
        QTest::newRow("viewDidLayoutSubviews") << u"b layout"_s << whole;
        QTest::newRow("viewDidAppear")
            << u"b didAppear"_s
            << u"b didLoad, a willDisappear*, b willAppear*, b didAppear*, b willDisappear*, a willAppear*, presented, "
               "a didAppear*, b didDisappear*, dismissed"_s;
        QTest::newRow("half-way") << QString() << whole;
    }
    void dismissalOnTheWayIn()
    {
        QFETCH(QString, call);
        RecordingController *a = present(u"a"_s);
        const QPointer<RecordingController> b = makeScreen(u"b"_s);
        const auto dismiss = [&] { b->dismiss(true, [&] { m_calls.append(u"dismissed"_s); }); };
        if (!call.isEmpty())
            (call.startsWith(u'a') ? a : b.data())->reactions[call.mid(2)] = dismiss;
        m_calls.clear();
        a->present(std::unique_ptr<ViewController>(b.data()), true, [&] { m_calls.append(u"presented"_s); });
        if (call.isEmpty()) {
            m_clock->advance(transition / 2);
            dismiss();
        }
        m_clock->advance(transition);
        m_clock->advance(transition);
        QTEST(taken(m_calls), "expected");
        QTRY_VERIFY(!b);
        QVERIFY(a->isVisible());
        QCOMPARE(a->presentedViewController(), nullptr);
    }

    void survivesTheWindow_data() { addBothRows("dismissing", "while presenting", "while dismissing"); }
    void survivesTheWindow()
    {
        QFETCH(bool, dismissing);
        const QPointer<RecordingController> a = present(u"a"_s);
        const QPointer<RecordingController> b = present(u"b"_s, true, a);
        m_clock->advance(transition / 2);
        bool isCompleted = false;
        if (dismissing)
            b->dismiss(true, [&] { isCompleted = true; });
        m_window->close();
        QVERIFY(!a && !b);
        m_clock->advance(transition);
        QCoreApplication::processEvents();
        QVERIFY(!isCompleted);
    }

private:
    RecordingController *makeScreen(const QString &name) { return new RecordingController(name, &m_calls); }
    RecordingController *present(const QString &name, bool animated = false, ViewController *presenter = nullptr)
    {
        RecordingController *screen = makeScreen(name);
        (presenter ? presenter : m_window->root())->present(std::unique_ptr<ViewController>(screen), animated);
        return screen;
    }
};

QTEST_MAIN(tst_Presentation)
#include "tst_Presentation.moc"
