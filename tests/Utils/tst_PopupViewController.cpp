#include "support/ManualClock.h"
#include "support/RecordingController.h"
#include "support/Table.h"

#include "Brevanto/Utils/BrevantoPopupViewController.h"
#include "Platform/Interface/NavigationController.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace BrevantoPopupViewController;
using namespace Platform;
using namespace std::chrono_literals;

class tst_PopupViewController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_clock = std::make_unique<ManualClock>();
        m_stack = std::make_unique<NavigationController>(std::make_unique<ViewController>());
        m_presenter = m_stack->topViewController();
        m_stack->view()->setFrame({0, 0, 400, 800});
        m_calls.clear();
    }

    void cleanup()
    {
        m_stack.reset();
        m_clock.reset();
    }

    void comesAndGoes_data()
    {
        QTest::addColumn<int>("type");
        for (const int type : {1, 0, 2, -1})
            QTest::addRow("%d", type) << type;
    }
    void comesAndGoes()
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
        QCOMPARE(taken(m_calls), u"popup willAppear"_s);
        m_clock->pass(500ms);
        QCOMPARE(popup->view()->frame(), centred);
        QCOMPARE(popup->view()->opacity(), 1.0);
        QCOMPARE(background->opacity(), slides ? 0.0 : 0.5);
        QCOMPARE(taken(m_calls), u"popup didAppear"_s);

        QQuickItem *const shown = overlay();
        presentPopupViewController(m_presenter, popup, type);
        QCOMPARE(overlay(), shown);
        QCOMPARE(taken(m_calls), QString());
        top()->setFrame({0, 0, 800, 400});
        QCOMPARE(popup->view()->frame(), QRectF(300, 150, 200, 100));
        QCOMPARE(overlay()->size(), QSizeF(800, 400));

        dismissPopupViewControllerWithanimationType(m_presenter, type);
        dismissPopupViewControllerWithanimationType(m_presenter, type);
        QCOMPARE(taken(m_calls), u"popup willDisappear"_s);
        m_clock->pass(499ms);
        QVERIFY(overlay());
        QCOMPARE(taken(m_calls), QString());
        m_clock->pass(1ms);
        QVERIFY(!overlay());
        QVERIFY(!popup->view()->parentItem());
        QCOMPARE(taken(m_calls), u"popup didDisappear"_s);
        QCOMPARE(zovra_popupBackgroundView(m_presenter), nullptr);
        QCOMPARE(zovra_popupViewController(m_presenter), popup.get());

        dismissPopupViewControllerWithanimationType(m_presenter, type);
        m_clock->pass(500ms);
        QCOMPARE(taken(m_calls), u"popup willDisappear, popup didDisappear"_s);
    }

    void replacesWhatIsShown_data() { addBothRows("leaving", "coming", "leaving"); }
    void replacesWhatIsShown()
    {
        QFETCH(bool, leaving);
        presentPopupViewController(m_presenter, makePopup(), 1);
        if (leaving) {
            m_clock->pass(500ms);
            dismissPopupViewControllerWithanimationType(m_presenter, 1);
        }
        m_clock->pass(250ms);
        QCOMPARE(m_calls.size(), leaving ? 3 : 1);
        const auto second = makePopup();
        presentPopupViewController(m_presenter, second, 1);
        // Not gone before the call returns, which may come from one of its buttons.
        QCOMPARE(taken(m_calls),
                 u"%1popup didDisappear, popup willAppear"_s.arg(leaving ? u""_s : u"popup willDisappear, "_s));
        m_clock->pass(500ms);
        QCOMPARE(taken(m_calls), u"popup didAppear, gone"_s);
        QCOMPARE(top()->viewWithTag(popupViewTag), second->view());
        QVERIFY(zovra_popupBackgroundView(m_presenter));
        dismissPopupViewControllerWithanimationType(m_stack.get(), 1); // by any of its chain
        m_clock->pass(500ms);
        QVERIFY(!overlay() && !zovra_popupBackgroundView(m_presenter));
    }

    void survivesItsPresenter_data() { addBothRows("leaving", "coming", "leaving"); }
    void survivesItsPresenter()
    {
        QFETCH(bool, leaving);
        auto presenter = std::make_unique<ViewController>();
        const QPointer<ViewController> guard(presenter.get());
        m_stack->pushViewController(std::move(presenter), false);
        presentPopupViewController(guard, makePopup(), 1);
        m_clock->pass(250ms);
        if (leaving)
            dismissPopupViewControllerWithanimationType(guard, 1);
        m_stack->popViewController(false);
        QTRY_VERIFY(!guard);
        QVERIFY(!overlay());
        QVERIFY(taken(m_calls).endsWith(u"gone"_s));
        m_clock->pass(500ms);
        QCOMPARE(taken(m_calls), QString());
    }

private:
    std::shared_ptr<RecordingController> makePopup()
    {
        const auto popup = std::make_shared<RecordingController>(u"popup"_s, &m_calls);
        popup->view()->setFrame({0, 0, 200, 100});
        connect(popup.get(), &QObject::destroyed, this, [this] { m_calls.append(u"gone"_s); });
        m_calls.clear();
        return popup;
    }
    View *top() const { return m_stack->view(); }
    QQuickItem *overlay() const { return top()->viewWithTag(overlayViewTag); }

    std::unique_ptr<ManualClock> m_clock;
    std::unique_ptr<NavigationController> m_stack;
    ViewController *m_presenter = nullptr;
    QStringList m_calls;
};

QTEST_MAIN(tst_PopupViewController)
#include "tst_PopupViewController.moc"
