
#include "Platform/Interface/Label.h"
#include "Platform/Interface/Storyboard.h"
#include "support/Raised.h"
#include "support/TestWindow.h"

#include <QTest>

#include <array>

using namespace Qt::StringLiterals;
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
    QString m_greeting = u"Hello"_s;
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
    static const Platform::Bundle bundle(u":/TestBundle"_s,
                                         {{u"Complete"_s, make<Screen>},
                                          {u"Broken"_s, make<Screen>},
                                          {u"NoView"_s, make<Screen>},
                                          {u"NoScene"_s, make<Screen>}});
    return bundle;
}

} // namespace

class tst_Storyboard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void loadsTheSceneWhenItIsAskedFor()
    {
        const TestWindow window;
        const auto screen = Storyboard(u"Screens"_s, bundle()).instantiate<Screen>(u"Complete"_s);
        bool hasOutlets = false;
        screen->onOutlets = [&](Screen *loading) {
            hasOutlets = loading->find<View>("deep")->tag() == 7 && loading->find<QQuickItem>("item")
                && loading->find<Platform::Label>("label")->text() == "Hello"_L1;
        };
        QVERIFY(!screen->isViewLoaded());
        QCOMPARE(screen->view()->property("controller").value<QObject *>(), screen.get());
        QVERIFY(screen->isViewLoaded() && hasOutlets);
        QCOMPARE(screen->sizeAtLoad, QSizeF(375, 667));
        QVERIFY(screen->view()->viewWithTag(8));
    }

    void raisesForWhatIsMissing()
    {
        const std::initializer_list<std::array<const char *, 3>> missing = {
            {"Nowhere", "Complete", "Nowhere"},
            {"Screens", "NoScene", "NoScene"},
            {"Screens", "Orphan", "Orphan"},
            {"Screens", "", "Screens"},
            {"Screens", "../Screens/Complete", "Complete"},
        };
        for (const auto &[storyboard, identifier, culprit] : missing) {
            const QString reason = raised([storyboard = storyboard, identifier = identifier] {
                Storyboard(QLatin1StringView(storyboard), bundle()).instantiate(QLatin1StringView(identifier));
            });
            QVERIFY2(reason.startsWith(QLatin1String("InvalidArgument: ")), identifier);
            QVERIFY2(reason.contains(QLatin1StringView(culprit)), qPrintable(reason));
        }
        const QString reason = raised([] { Storyboard(u"Screens"_s, bundle()).instantiate<Other>(u"Complete"_s); });
        QVERIFY(reason.startsWith(QLatin1String("InvalidArgument: ")));
    }

    void raisesForFaultyScenes()
    {
        const std::initializer_list<std::array<const char *, 3>> faulty = {
            {"Broken", "", "NoSuchType"},
            {"NoView", "", "NoView.qml"},
            {"Complete", "absent", "absent"},
            {"Complete", "item", "item"}, // which is no View
        };
        for (const auto &[identifier, outlet, culprit] : faulty) {
            const auto screen = Storyboard(u"Screens"_s, bundle()).instantiate<Screen>(QLatin1StringView(identifier));
            if (*outlet)
                screen->onOutlets = [outlet = outlet](Screen *loading) { loading->find<View>(outlet); };
            const QString reason = raised([&screen] { screen->view(); });
            QVERIFY2(reason.contains(QLatin1StringView(culprit)), qPrintable(reason));
        }
    }
};

QTEST_MAIN(tst_Storyboard)
#include "tst_Storyboard.moc"
