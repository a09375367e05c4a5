
#include "Platform/Interface/AlertController.h"
#include "support/Table.h"
#include "support/TestWindow.h"

#include <QAccessible>
#include <QTest>

using namespace Qt::StringLiterals;
using Platform::AlertAction;
using Platform::AlertActionStyle;
using Platform::AlertController;

class tst_AlertController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_window = std::make_unique<TestWindow>();
        m_chosen.clear();
    }

    void cleanup() { m_window.reset(); }

    void looks_data()
    {
        addColumns<QString, QString, QStringList, bool>("title", "message", "buttons", "sideBySide");
        const QString title = u"Camera Disabled"_s;
        const QString message = u"Enable in Settings"_s;
        const QString none;
        const auto list = [](const char *titles) { return QString::fromLatin1(titles).split(u'|'); };
        QTest::newRow("one") << title << message << list("OK") << false;
        QTest::newRow("two") << title << message << list("Cancel|Settings") << true;
        QTest::newRow("two long") << "Getting response might take more time" << none
                                  << list("Capture Again|Wait until it is there") << false;
        QTest::newRow("three") << title << message << list("Open|Delete|Cancel") << false;
        QTest::newRow("message only") << none << "Do you want to Open in Safari ?" << list("Cancel|Open") << true;
        QTest::newRow("long") << u"Wednesday "_s.repeated(100) << u"word "_s.repeated(400) << list("OK") << false;
        QTest::newRow("markup") << "<h1>Ten < twenty</h1>"
                                << "a & b" << list("<b>OK</b>") << false;
    }
    void looks()
    {
        QFETCH(QString, title);
        QFETCH(QString, message);
        QFETCH(QStringList, buttons);
        QFETCH(bool, sideBySide);
        QList<AlertAction> actions;
        for (const QString &text : std::as_const(buttons)) {
            actions.append(action(text,
                                  text == QLatin1String("Cancel")       ? AlertActionStyle::Cancel
                                      : text == QLatin1String("Delete") ? AlertActionStyle::Destructive
                                                                        : AlertActionStyle::Default));
        }
        const AlertController *alert = present(actions, title, message);
        QVERIFY(alert->isVisible());
        m_window->grab(); // lays the buttons out

        QRectF previous;
        for (int index = 0; index < buttons.size(); ++index) {
            const QQuickItem *item = button(index);
            QVERIFY(item);
            const QRectF place = item->mapRectToScene(item->boundingRect());
            QVERIFY(QRectF(0, 0, 375, 667).contains(place));
            QVERIFY(place.height() >= 44);
            QCOMPARE(place.width(), sideBySide ? 135.0 : 270.0);
            if (index > 0)
                QVERIFY(sideBySide ? place.left() >= previous.right() : place.top() >= previous.bottom());
            previous = place;
            QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(const_cast<QQuickItem *>(item));
            QVERIFY(accessible);
            QCOMPARE(accessible->role(), QAccessible::Button);
            QCOMPARE(accessible->text(QAccessible::Name), buttons.at(index));
        }
        QCOMPARE(m_window->find(u"alertTitle"_s) != nullptr, !title.isEmpty());
        QCOMPARE(m_window->find(u"alertMessage"_s) != nullptr, !message.isEmpty());
    }

    void onlyTheFirstChoiceCountsOnceTheAlertIsGone()
    {
        QPointer<AlertController> alert;
        QStringList chosen;
        const auto first = [&] {
            const bool mayPresentAgain = !m_window->root()->presentedViewController();
            chosen.append(alert && !alert->isVisible() && mayPresentAgain ? u"gone"_s : u"too early"_s);
        };
        alert = present({{u"One"_s, AlertActionStyle::Default, first}, action(u"Two"_s)}, u"Title"_s, {}, true);
        alert->choose(7);
        alert->choose(-1);
        m_window->tap(button(0));
        if (const QQuickItem *second = button(1))
            m_window->tap(second);
        alert->choose(1);
        QTRY_VERIFY(!alert);
        QCOMPARE(chosen, QStringList{u"gone"_s});
        QCOMPARE(m_chosen, QStringList());
    }

    void escape_data()
    {
        QTest::addColumn<QString>("buttons"); // each by its style, d: default, c: cancel
        QTest::addColumn<int>("chosen"); // -1: none, the alert stays
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("the only button") << u"d"_s << 0 << Qt::Key_Escape;
        QTest::newRow("cancel last") << u"dc"_s << 1 << Qt::Key_Back;
        QTest::newRow("cancel first") << u"cd"_s << 0 << Qt::Key_Escape;
        QTest::newRow("no cancel") << u"dd"_s << -1 << Qt::Key_Escape;
    }
    void escape()
    {
        QFETCH(QString, buttons);
        QFETCH(int, chosen);
        QFETCH(Qt::Key, key);
        QList<AlertAction> actions;
        for (const QChar button : buttons) {
            actions.append(action(QString::number(actions.size()),
                                  button == u'c' ? AlertActionStyle::Cancel : AlertActionStyle::Default));
        }
        const QPointer<AlertController> alert = present(actions);
        QTest::keyClick(m_window->window(), key);
        if (chosen < 0) {
            QCoreApplication::processEvents();
            QVERIFY(alert && alert->isVisible());
            return;
        }
        QTRY_VERIFY(!alert);
        QCOMPARE(m_chosen, QStringList{QString::number(chosen)});
        QCOMPARE(m_window->hostEvents(), 0);
    }

    void keepsTheHostOut()
    {
        const QPointer<AlertController> alert = present({action(u"OK"_s)});
        m_window->tap(QPointF(5, 5));
        QTest::mouseClick(m_window->window(), Qt::LeftButton, {}, QPoint(5, 660));
        QTest::keyClick(m_window->window(), Qt::Key_A);
        QCOMPARE(m_window->hostEvents(), 0);
        QVERIFY(alert && alert->isVisible());
        QVERIFY(m_chosen.isEmpty());
        alert->choose(0);
        QTRY_VERIFY(!alert);
        m_window->tap(QPointF(5, 5));
        QVERIFY(m_window->hostEvents() > 0);
        QTRY_COMPARE(m_window->window()->activeFocusItem(), m_window->hostItem());
    }

    void choosingWhileItOpens()
    {
        const QPointer<AlertController> alert(new AlertController(u"Title"_s, QString()));
        alert->addAction(action(u"OK"_s));
        m_window->root()->present(std::unique_ptr<Platform::ViewController>(alert.data()), true);
        alert->choose(0);
        QTRY_VERIFY(!alert);
        QCOMPARE(m_chosen, QStringList{u"OK"_s});
    }

    void isTakenAwayByItsPresenter()
    {
        const QPointer<AlertController> alert = present({action(u"OK"_s)}, u"Title"_s, {}, true);
        bool isDismissed = false;
        m_window->root()->dismiss(true, [&] { isDismissed = true; });
        alert->choose(0); // too late
        const AlertAction noAction{u"Next"_s, AlertActionStyle::Default, {}};
        const QPointer<AlertController> next = present({noAction}, u"Next"_s, {}, true);
        QTRY_VERIFY(!alert);
        QVERIFY(isDismissed);
        QVERIFY(m_chosen.isEmpty());
        QVERIFY(next && next->isVisible());
        m_window->tap(button(0));
        QTRY_VERIFY(!next);
    }

    void survivesTheWindow()
    {
        const QPointer<AlertController> alert = present({action(u"OK"_s)}, u"Title"_s, {}, true);
        alert->choose(0);
        m_window->close();
        QVERIFY(!alert);
        QCoreApplication::processEvents();
        QVERIFY(m_chosen.isEmpty());
    }

private:
    // Presents an alert with these buttons and waits until it stands.
    AlertController *present(const QList<AlertAction> &actions, const QString &title = u"Camera Disabled"_s,
                             const QString &message = u"Enable in Settings"_s, bool animated = false)
    {
        auto *alert = new AlertController(title, message);
        for (const AlertAction &item : actions)
            alert->addAction(item);
        bool isPresented = false;
        m_window->root()->present(std::unique_ptr<Platform::ViewController>(alert), animated,
                                  [&] { isPresented = true; });
        if (!QTest::qWaitFor([&] { return isPresented; }))
            qCritical("The alert did not open");
        return alert;
    }

    QQuickItem *button(int index) const { return m_window->find(u"alertButton%1"_s.arg(index)); }
    AlertAction action(const QString &title, AlertActionStyle style = AlertActionStyle::Default)
    {
        return {title, style, [this, title] { m_chosen.append(title); }};
    }

    std::unique_ptr<TestWindow> m_window;
    QStringList m_chosen;
};

QTEST_MAIN(tst_AlertController)
#include "tst_AlertController.moc"
