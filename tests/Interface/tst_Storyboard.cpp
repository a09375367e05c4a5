#include "TestWindow.h"

#include "Platform/Interface/Label.h"
#include "Platform/Interface/Storyboard.h"

#include <QTest>

using Platform::Exception;
using Platform::Storyboard;
using Platform::View;
using Platform::ViewController;

namespace
{

// Asks for the outlets that the test names.
class Screen : public ViewController
{
    Q_OBJECT
    Q_PROPERTY(QString greeting READ greeting NOTIFY greetingChanged)

public:
    ~Screen() override { Q_EMIT greetingChanged(); }

    QString greeting() const { return m_greeting; }
    void connectOutlets() override
    {
        if (onOutlets)
            onOutlets(this);
    }
    void viewDidLoad() override { sizeAtLoad = view()->frame().size(); }
    template <typename T>
    T *find(const char *name)
    {
        return outlet<T>(QString::fromLatin1(name));
    }

    std::function<void(Screen *)> onOutlets;
    QSizeF sizeAtLoad;

Q_SIGNALS:
    void greetingChanged();

private:
    QString m_greeting = QStringLiteral("Hello");
};

class Other : public ViewController
{
    Q_OBJECT
};

template <typename Controller>
std::unique_ptr<QObject> make()
{
    return std::make_unique<Controller>();
}

const Platform::Bundle &bundle()
{
    static const Platform::Bundle bundle(QStringLiteral(":/TestBundle"),
                                         {{QStringLiteral("Complete"), make<Screen>},
                                          {QStringLiteral("Broken"), make<Screen>},
                                          {QStringLiteral("NoView"), make<Screen>},
                                          {QStringLiteral("NoScene"), make<Screen>}});
    return bundle;
}

// What it raises, as "name: reason"; empty when it raises nothing.
QString raised(const std::function<void()> &block)
{
    try {
        block();
    } catch (const Exception &exception) {
        const bool isArgument = exception.name() == Exception::Name::InvalidArgument;
        return (isArgument ? QStringLiteral("argument: ") : QStringLiteral("other: ")) + exception.reason();
    }
    return {};
}

} // namespace

class tst_Storyboard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void loadsTheSceneWhenItIsAskedFor();
    void givesOutlets();
    void raisesForWhatIsMissing_data();
    void raisesForWhatIsMissing();
    void raisesForFaultyScenes_data();
    void raisesForFaultyScenes();
};

void tst_Storyboard::loadsTheSceneWhenItIsAskedFor()
{
    const TestWindow window;
    const auto screen = Storyboard(QStringLiteral("Screens"), bundle()).instantiate<Screen>(QStringLiteral("Complete"));
    QVERIFY(!screen->isViewLoaded());
    QCOMPARE(screen->view()->property("controller").value<QObject *>(), screen.get());
    QVERIFY(screen->isViewLoaded());
    QCOMPARE(screen->sizeAtLoad, QSizeF(375, 667));
    QVERIFY(screen->view()->viewWithTag(8));
}

void tst_Storyboard::givesOutlets()
{
    const auto screen = Storyboard(QStringLiteral("Screens"), bundle()).instantiate<Screen>(QStringLiteral("Complete"));
    bool isComplete = false;
    screen->onOutlets = [&](Screen *loading) {
        isComplete = loading->find<View>("deep")->tag() == 7 && loading->find<QQuickItem>("item")
            && loading->find<Platform::Label>("label")->text() == QLatin1String("Hello");
    };
    screen->view();
    QVERIFY(isComplete);
}

void tst_Storyboard::raisesForWhatIsMissing_data()
{
    QTest::addColumn<QString>("storyboard");
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<QString>("culprit");
    QTest::newRow("storyboard") << "Nowhere"
                                << "Complete"
                                << "Nowhere";
    QTest::newRow("scene") << "Screens"
                           << "NoScene"
                           << "NoScene";
    QTest::newRow("controller") << "Screens"
                                << "Orphan"
                                << "Orphan";
    QTest::newRow("identifier") << "Screens"
                                << ""
                                << "Screens";
    QTest::newRow("path") << "Screens"
                          << "../Screens/Complete"
                          << "Complete";
}

void tst_Storyboard::raisesForWhatIsMissing()
{
    QFETCH(QString, storyboard);
    QFETCH(QString, identifier);
    QFETCH(QString, culprit);
    const QString reason = raised([&] { Storyboard(storyboard, bundle()).instantiate(identifier); });
    QVERIFY2(reason.startsWith(QLatin1String("argument: ")) && reason.contains(culprit), qPrintable(reason));
}

void tst_Storyboard::raisesForFaultyScenes_data()
{
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<QString>("outlet");
    QTest::addColumn<QString>("culprit");
    QTest::newRow("errors") << "Broken"
                            << ""
                            << "NoSuchType";
    QTest::newRow("no view") << "NoView"
                             << ""
                             << "NoView.qml";
    QTest::newRow("missing outlet") << "Complete"
                                    << "absent"
                                    << "absent";
    QTest::newRow("outlet of another class") << "Complete"
                                             << "item"
                                             << "item";
}

void tst_Storyboard::raisesForFaultyScenes()
{
    QFETCH(QString, identifier);
    QFETCH(QString, outlet);
    QFETCH(QString, culprit);
    const auto screen = Storyboard(QStringLiteral("Screens"), bundle()).instantiate<Screen>(identifier);
    if (!outlet.isEmpty())
        screen->onOutlets = [&](Screen *loading) { loading->find<View>(outlet.toLatin1().constData()); };
    const QString reason = raised([&] { screen->view(); });
    QVERIFY2(reason.contains(culprit), qPrintable(reason));
    QVERIFY(raised([] {
                Storyboard(QStringLiteral("Screens"), bundle()).instantiate<Other>(QStringLiteral("Complete"));
            }).startsWith(QLatin1String("argument: ")));
}

QTEST_MAIN(tst_Storyboard)
#include "tst_Storyboard.moc"
