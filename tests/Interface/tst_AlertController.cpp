#include "TestWindow.h"

#include "Platform/Interface/AlertController.h"

#include <QAccessible>
#include <QTest>

using Platform::AlertAction;
using Platform::AlertActionStyle;
using Platform::AlertController;
using Platform::View;

class tst_AlertController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void looks_data();
    void looks();
    void handlerRunsWhenTheAlertIsGone_data();
    void handlerRunsWhenTheAlertIsGone();
    void onlyTheFirstChoiceCounts();
    void escape_data();
    void escape();
    void keepsTheHostOut();
    void worksByKeyboard();
    void choosingWhileItOpens();
    void isTakenAwayByItsPresenter();
    void survivesTheWindow();

private:
    // Presents an alert with these buttons and waits until it stands.
    AlertController *present(const QList<AlertAction> &actions,
                             const QString &title = QStringLiteral("Camera Disabled"),
                             const QString &message = QStringLiteral("Enable in Settings"), bool animated = false);
    QQuickItem *button(int index) const { return m_window->find(QStringLiteral("alertButton%1").arg(index)); }
    AlertAction action(const QString &title, AlertActionStyle style = AlertActionStyle::Default)
    {
        return {title, style, [this, title] { m_chosen.append(title); }};
    }

    std::unique_ptr<TestWindow> m_window;
    QStringList m_chosen;
};

void tst_AlertController::init()
{
    m_window = std::make_unique<TestWindow>();
    m_chosen.clear();
}

void tst_AlertController::cleanup()
{
    m_window.reset();
}

AlertController *tst_AlertController::present(const QList<AlertAction> &actions, const QString &title,
                                              const QString &message, bool animated)
{
    auto *alert = new AlertController(title, message);
    for (const AlertAction &item : actions)
        alert->addAction(item);
    bool isPresented = false;
    m_window->root()->present(std::unique_ptr<Platform::ViewController>(alert), animated, [&] { isPresented = true; });
    if (!QTest::qWaitFor([&] { return isPresented; }))
        qCritical("The alert did not open");
    return alert;
}

void tst_AlertController::looks_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("message");
    QTest::addColumn<QStringList>("buttons");
    QTest::addColumn<bool>("sideBySide");
    const QString title = QStringLiteral("Camera Disabled");
    const QString message = QStringLiteral("Enable in Settings");
    const QString none;
    const auto list = [](const char *titles) { return QString::fromLatin1(titles).split(u'|'); };
    QTest::newRow("one") << title << message << list("OK") << false;
    QTest::newRow("two") << title << message << list("Cancel|Settings") << true;
    QTest::newRow("two long") << "Getting response might take more time" << none
                              << list("Capture Again|Wait until it is there") << false;
    QTest::newRow("three") << title << message << list("Open|Delete|Cancel") << false;
    QTest::newRow("message only") << none << "Do you want to Open in Safari ?" << list("Cancel|Open") << true;
    QTest::newRow("long") << QStringLiteral("Wednesday ").repeated(100) << QStringLiteral("word ").repeated(400)
                          << list("OK") << false;
    QTest::newRow("markup") << "<h1>Ten < twenty</h1>"
                            << "a & b" << list("<b>OK</b>") << false;
}

void tst_AlertController::looks()
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
    QVERIFY(QTest::qWaitForWindowExposed(m_window->window()));
    m_window->grab(QStringLiteral("alert-%1").arg(QString::fromLatin1(QTest::currentDataTag())));

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
    QCOMPARE(m_window->find(QStringLiteral("alertTitle")) != nullptr, !title.isEmpty());
    QCOMPARE(m_window->find(QStringLiteral("alertMessage")) != nullptr, !message.isEmpty());
}

void tst_AlertController::handlerRunsWhenTheAlertIsGone_data()
{
    QTest::addColumn<bool>("hasHandler");
    QTest::newRow("handler") << true;
    QTest::newRow("none") << false;
}

void tst_AlertController::handlerRunsWhenTheAlertIsGone()
{
    QFETCH(bool, hasHandler);
    QPointer<AlertController> alert;
    bool wasGone = false;
    bool mayPresentAgain = false;
    AlertAction ok{QStringLiteral("OK"), AlertActionStyle::Default, {}};
    if (hasHandler) {
        ok.handler = [&] {
            wasGone = alert && !alert->isVisible();
            mayPresentAgain = !m_window->root()->presentedViewController();
        };
    }
    alert = present({ok}, QStringLiteral("Title"), {}, true);
    m_window->tap(button(0));
    QTRY_VERIFY(!alert);
    QCOMPARE(wasGone, hasHandler);
    QCOMPARE(mayPresentAgain, hasHandler);
}

void tst_AlertController::onlyTheFirstChoiceCounts()
{
    const QPointer<AlertController> alert =
        present({action(QStringLiteral("One")), action(QStringLiteral("Two"))}, QStringLiteral("Title"), {}, true);
    alert->choose(7);
    alert->choose(-1);
    m_window->tap(button(0));
    if (const QQuickItem *second = button(1))
        m_window->tap(second);
    alert->choose(1);
    QTRY_VERIFY(!alert);
    QCOMPARE(m_chosen, QStringList{QStringLiteral("One")});
}

void tst_AlertController::escape_data()
{
    QTest::addColumn<QList<int>>("styles");
    QTest::addColumn<int>("chosen"); // -1: none, the alert stays
    QTest::addColumn<int>("key");
    QTest::newRow("the only button") << QList<int>{0} << 0 << static_cast<int>(Qt::Key_Escape);
    QTest::newRow("cancel last") << QList<int>{0, 1} << 1 << static_cast<int>(Qt::Key_Back);
    QTest::newRow("cancel first") << QList<int>{1, 0} << 0 << static_cast<int>(Qt::Key_Escape);
    QTest::newRow("no cancel") << QList<int>{0, 0} << -1 << static_cast<int>(Qt::Key_Escape);
}

void tst_AlertController::escape()
{
    QFETCH(QList<int>, styles);
    QFETCH(int, chosen);
    QFETCH(int, key);
    QList<AlertAction> actions;
    for (int index = 0; index < styles.size(); ++index)
        actions.append(action(QString::number(index), static_cast<AlertActionStyle>(styles.at(index))));
    const QPointer<AlertController> alert = present(actions);
    QTest::keyClick(m_window->window(), static_cast<Qt::Key>(key));
    if (chosen < 0) {
        QCoreApplication::processEvents();
        QVERIFY(alert && alert->isVisible());
        return;
    }
    QTRY_VERIFY(!alert);
    QCOMPARE(m_chosen, QStringList{QString::number(chosen)});
    QCOMPARE(m_window->hostEvents(), 0);
}

void tst_AlertController::keepsTheHostOut()
{
    const QPointer<AlertController> alert = present({action(QStringLiteral("OK"))});
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

void tst_AlertController::worksByKeyboard()
{
    const QPointer<AlertController> alert =
        present({action(QStringLiteral("Cancel"), AlertActionStyle::Cancel), action(QStringLiteral("Settings"))});
    QTRY_COMPARE(m_window->window()->activeFocusItem(), button(0));
    QTest::keyClick(m_window->window(), Qt::Key_Tab);
    QTRY_COMPARE(m_window->window()->activeFocusItem(), button(1));
    m_window->grab(QStringLiteral("alert-focus"));
    QTest::keyClick(m_window->window(), Qt::Key_Return);
    QTRY_VERIFY(!alert);
    QCOMPARE(m_chosen, QStringList{QStringLiteral("Settings")});
}

void tst_AlertController::choosingWhileItOpens()
{
    const QPointer<AlertController> alert(new AlertController(QStringLiteral("Title"), QString()));
    alert->addAction(action(QStringLiteral("OK")));
    m_window->root()->present(std::unique_ptr<Platform::ViewController>(alert.data()), true);
    alert->choose(0);
    QTRY_VERIFY(!alert);
    QCOMPARE(m_chosen, QStringList{QStringLiteral("OK")});
}

void tst_AlertController::isTakenAwayByItsPresenter()
{
    const QPointer<AlertController> alert = present({action(QStringLiteral("OK"))}, QStringLiteral("Title"), {}, true);
    bool isDismissed = false;
    m_window->root()->dismiss(true, [&] { isDismissed = true; });
    alert->choose(0); // too late
    const QPointer<AlertController> next = present({action(QStringLiteral("Next"))}, QStringLiteral("Next"), {}, true);
    QTRY_VERIFY(!alert);
    QVERIFY(isDismissed);
    QVERIFY(m_chosen.isEmpty());
    QVERIFY(next && next->isVisible());
}

void tst_AlertController::survivesTheWindow()
{
    const QPointer<AlertController> alert = present({action(QStringLiteral("OK"))}, QStringLiteral("Title"), {}, true);
    alert->choose(0);
    m_window->close();
    QVERIFY(!alert);
    QCoreApplication::processEvents();
    QVERIFY(m_chosen.isEmpty());
}

QTEST_MAIN(tst_AlertController)
#include "tst_AlertController.moc"
