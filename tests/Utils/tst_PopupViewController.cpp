#include "support/ManualClock.h"

#include "Brevanto/Utils/BrevantoPopupViewController.h"
#include "Platform/Interface/NavigationController.h"

#include <QTest>

using namespace BrevantoPopupViewController;
using namespace Platform;
using namespace std::chrono_literals;

namespace
{

class Popup final : public ViewController
{
public:
    explicit Popup(QStringList *calls)
        : m_calls(calls)
    {
        view()->setFrame({0, 0, 200, 100});
    }
    ~Popup() override { m_calls->append(QStringLiteral("gone")); }
    void viewWillAppear(bool) override { m_calls->append(QStringLiteral("willAppear")); }
    void viewDidAppear(bool) override { m_calls->append(QStringLiteral("didAppear")); }
    void viewWillDisappear(bool) override { m_calls->append(QStringLiteral("willDisappear")); }
    void viewDidDisappear(bool) override { m_calls->append(QStringLiteral("didDisappear")); }

private:
    QStringList *m_calls;
};

QStringList calls(const char *names)
{
    return QString::fromLatin1(names).split(u' ');
}

} // namespace

class tst_PopupViewController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void comesAndGoes_data();
    void comesAndGoes();
    void replacesWhatIsShown_data();
    void replacesWhatIsShown();
    void isDismissedByAnyOfItsChain();
    void survivesItsPresenter_data();
    void survivesItsPresenter();

private:
    std::shared_ptr<Popup> makePopup() { return std::make_shared<Popup>(&m_calls); }
    QStringList takeCalls() { return std::exchange(m_calls, {}); }
    // Lets what waits for the end of an event run too.
    void pass(std::chrono::milliseconds duration)
    {
        m_clock->advance(duration);
        QCoreApplication::processEvents();
    }
    View *top() const { return m_stack->view(); }
    QQuickItem *overlay() const { return top()->viewWithTag(overlayViewTag); }

    std::unique_ptr<ManualClock> m_clock;
    std::unique_ptr<NavigationController> m_stack;
    ViewController *m_presenter = nullptr;
    QStringList m_calls;
};

void tst_PopupViewController::init()
{
    m_clock = std::make_unique<ManualClock>();
    m_stack = std::make_unique<NavigationController>(std::make_unique<ViewController>());
    m_presenter = m_stack->topViewController();
    m_stack->view()->setFrame({0, 0, 400, 800});
    m_calls.clear();
}

void tst_PopupViewController::cleanup()
{
    m_stack.reset();
    m_clock.reset();
}

void tst_PopupViewController::comesAndGoes_data()
{
    QTest::addColumn<int>("type");
    for (const int type : {1, 0, 2, -1})
        QTest::addRow("%d", type) << type;
}

void tst_PopupViewController::comesAndGoes()
{
    QFETCH(int, type);
    const bool slides = type == slideAnimation;
    const QRectF centred(100, 350, 200, 100);
    const QRectF above(100, -100, 200, 100);
    const auto popup = makePopup();
    presentPopupViewController(m_presenter, popup, type);
    const QPointer<View> background(zovra_popupBackgroundView(m_presenter));
    QVERIFY(background);
    QCOMPARE(overlay()->parentItem(), top());
    QCOMPARE(overlay()->size(), QSizeF(400, 800));
    QCOMPARE(QPointF(popup->view()->position()), (slides ? above : centred).topLeft());
    QCOMPARE(popup->view()->opacity(), slides ? 1.0 : 0.0);
    QCOMPARE(takeCalls(), calls("willAppear"));
    pass(500ms);
    QCOMPARE(popup->view()->frame(), centred);
    QCOMPARE(popup->view()->opacity(), 1.0);
    QCOMPARE(background->opacity(), slides ? 0.0 : 0.5);
    QCOMPARE(takeCalls(), calls("didAppear"));

    QQuickItem *const shown = overlay();
    presentPopupViewController(m_presenter, popup, type);
    QCOMPARE(overlay(), shown);
    QCOMPARE(takeCalls(), QStringList());
    top()->setFrame({0, 0, 800, 400});
    QCOMPARE(popup->view()->frame(), QRectF(300, 150, 200, 100));
    QCOMPARE(overlay()->size(), QSizeF(800, 400));

    dismissPopupViewControllerWithanimationType(m_presenter, type);
    dismissPopupViewControllerWithanimationType(m_presenter, type);
    QCOMPARE(takeCalls(), calls("willDisappear"));
    pass(499ms);
    QVERIFY(overlay());
    QCOMPARE(takeCalls(), QStringList());
    pass(1ms);
    QVERIFY(!overlay());
    QVERIFY(!popup->view()->parentItem());
    QCOMPARE(takeCalls(), calls("didDisappear"));
    QCOMPARE(zovra_popupBackgroundView(m_presenter), nullptr);
    QCOMPARE(zovra_popupViewController(m_presenter), popup.get());

    dismissPopupViewControllerWithanimationType(m_presenter, type);
    pass(500ms);
    QCOMPARE(takeCalls(), calls("willDisappear didDisappear"));
}

void tst_PopupViewController::replacesWhatIsShown_data()
{
    QTest::addColumn<bool>("leaving");
    QTest::newRow("coming") << false;
    QTest::newRow("leaving") << true;
}

void tst_PopupViewController::replacesWhatIsShown()
{
    QFETCH(bool, leaving);
    presentPopupViewController(m_presenter, makePopup(), 1);
    if (leaving) {
        pass(500ms);
        dismissPopupViewControllerWithanimationType(m_presenter, 1);
    }
    pass(250ms);
    const QStringList soFar = calls(leaving ? "willAppear didAppear willDisappear" : "willAppear");
    QCOMPARE(takeCalls(), soFar);
    const auto second = makePopup();
    presentPopupViewController(m_presenter, second, 1);
    // Not before the call returns, which may come from one of its buttons.
    QCOMPARE(takeCalls(), calls(leaving ? "didDisappear willAppear" : "willDisappear didDisappear willAppear"));
    pass(500ms);
    QCOMPARE(takeCalls(), calls("didAppear gone"));
    QCOMPARE(top()->viewWithTag(popupViewTag), second->view());
    QVERIFY(zovra_popupBackgroundView(m_presenter));
}

void tst_PopupViewController::isDismissedByAnyOfItsChain()
{
    presentPopupViewController(m_presenter, makePopup(), 1);
    pass(500ms);
    dismissPopupViewControllerWithanimationType(m_stack.get(), 1);
    pass(500ms);
    QVERIFY(!overlay());
    QVERIFY(!zovra_popupBackgroundView(m_presenter));
}

void tst_PopupViewController::survivesItsPresenter_data()
{
    QTest::addColumn<bool>("leaving");
    QTest::newRow("coming") << false;
    QTest::newRow("leaving") << true;
}

void tst_PopupViewController::survivesItsPresenter()
{
    QFETCH(bool, leaving);
    auto presenter = std::make_unique<ViewController>();
    const QPointer<ViewController> guard(presenter.get());
    m_stack->pushViewController(std::move(presenter), false);
    presentPopupViewController(guard, makePopup(), 1);
    pass(250ms);
    if (leaving)
        dismissPopupViewControllerWithanimationType(guard, 1);
    m_stack->popViewController(false);
    QTRY_VERIFY(!guard);
    QVERIFY(!overlay());
    QCOMPARE(takeCalls().last(), QStringLiteral("gone"));
    pass(500ms);
    QCOMPARE(takeCalls(), QStringList());
}

QTEST_MAIN(tst_PopupViewController)
#include "tst_PopupViewController.moc"
