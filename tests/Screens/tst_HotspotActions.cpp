#include "ScreenWindow.h"
#include "support/FakeReachability.h"
#include "support/TestImages.h"

#include "Brevanto/BrevantoAdVC.h"
#include "Brevanto/BrevantoBundle.h"
#include "Brevanto/BrevantoConstants.h"
#include "Brevanto/Utils/BrevantoHotspotView.h"
#include "Brevanto/Utils/BrevantoUtils.h"
#include "Platform/Interface/AlertController.h"
#include "Platform/Interface/Window.h"

#include <QDir>
#include <QStandardPaths>
#include <QTest>

namespace
{

QString webAddress()
{
    return QStringLiteral("http://127.0.0.1:9/page");
}

// Notes what leaves the application.
class Opener final : public Platform::Application::URLOpener
{
public:
    Opener() { Platform::Application::setURLOpener(this); }
    ~Opener() override { Platform::Application::setURLOpener(nullptr); }
    bool canOpen(const QUrl &) override { return true; }
    void open(const QUrl &url, std::function<void(bool)>) override { opened.append(url.toString()); }

    QStringList opened;
};

std::shared_ptr<BrevantoMatch> matchAt(qreal x, qreal y)
{
    auto match = std::make_shared<BrevantoMatch>();
    match->setTitle(QStringLiteral("Kettle"));
    match->setXPercent(x);
    match->setYPercent(y);
    return match;
}

std::shared_ptr<BrevantoMatch> fullMatchAt(qreal x, qreal y)
{
    auto match = matchAt(x, y);
    match->setReviewUrl(webAddress());
    match->setYouTubeVideoUrl(QStringLiteral("http://127.0.0.1:9/clip.mp4"));
    match->setAudioUrl(QStringLiteral("http://127.0.0.1:9/clip.mp3"));
    match->setPhoneNumber(QStringLiteral("+15551234"));
    match->setImages(QVariantList{QStringLiteral("http://127.0.0.1:9/a.jpg")});
    match->setBuyUrl(webAddress());
    return match;
}

QQuickItem *find(QQuickItem *root, const QString &objectName)
{
    if (root->objectName() == objectName)
        return root;
    const QList<QQuickItem *> children = root->childItems();
    for (QQuickItem *child : children) {
        if (QQuickItem *found = find(child, objectName))
            return found;
    }
    return nullptr;
}

} // namespace

class tst_HotspotActions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void offersWhatTheMatchCarries_data();
    void offersWhatTheMatchCarries();
    void opensWhatTheRowSays_data();
    void opensWhatTheRowSays();
    void callsOnlyWhatCanBeCalled_data();
    void callsOnlyWhatCanBeCalled();
    void standsInsideTheWindow_data();
    void standsInsideTheWindow();
    void goesWhenTheUserTurnsAway_data();
    void goesWhenTheUserTurnsAway();
    void countsOneTap();
    void worksByKeyboard();
    void explainsTheActions_data();
    void explainsTheActions();
    void leavesWithTheScreen_data();
    void leavesWithTheScreen();

private:
    // Opens the ad screen on these matches.
    void open(const BrevantoMatchList &matches, const QSize &window = {390, 844});
    BrevantoHotspotView *marker(int index) const
    {
        return qobject_cast<BrevantoHotspotView *>(
            m_screen->view()->viewWithTag(BrevantoAdVC::firstHotspotTag + index));
    }
    QQuickItem *item(const QString &objectName) const { return find(m_window->window()->contentItem(), objectName); }
    QQuickItem *row(int index) const { return item(QStringLiteral("row%1").arg(index)); }
    QRectF card() const
    {
        const QQuickItem *card = item(QStringLiteral("popoverCard"));
        return card ? card->mapRectToScene(card->boundingRect()) : QRectF();
    }
    QStringList rows() const;
    Platform::ViewController *presented() const { return m_screen->presentedViewController(); }
    // Whether a popover is there, at rest.
    bool isPopoverOpen() const
    {
        const QQuickItem *popover = item(QStringLiteral("popover"));
        return presented() && popover && popover->property("popup").value<QObject *>()->property("opened").toBool();
    }
    // Touches the marker and waits for its popover.
    bool openPopover(int index = 0);
    bool isDimmed() const { return m_screen->dummyPopoverView()->superview(); }

    std::unique_ptr<FakeReachability> m_network;
    std::unique_ptr<Opener> m_opener;
    std::unique_ptr<ScreenWindow> m_window;
    QPointer<Platform::NavigationController> m_stack;
    QPointer<BrevantoAdVC> m_screen;
};

void tst_HotspotActions::initTestCase()
{
    QStandardPaths::setTestModeEnabled(true);
    m_network = std::make_unique<FakeReachability>();
    BrevantoUtils::customizeNavBarThroughOutApp();
}

void tst_HotspotActions::init()
{
    m_opener = std::make_unique<Opener>();
}

void tst_HotspotActions::cleanup()
{
    m_window.reset();
    m_opener.reset();
}

void tst_HotspotActions::open(const BrevantoMatchList &matches, const QSize &window)
{
    kScreenWidth = window.width();
    kScreenHeight = window.height();
    m_window = std::make_unique<ScreenWindow>(window);
    auto screen = brevantoStoryboard().instantiate<BrevantoAdVC>(QStringLiteral("BrevantoAdVC"));
    m_screen = screen.get();
    screen->setMatchGroup(BrevantoMatchGroup::initWithMatches(matches, {}));
    screen->view();
    screen->backgroundImageView()->setImage(Platform::Image(TestImages::quarters(window)));
    m_stack = m_window->push(std::move(screen));
    if (!QTest::qWaitFor([this, &matches] { return marker(static_cast<int>(matches.size()) - 1) != nullptr; }))
        qFatal("The markers did not come");
}

bool tst_HotspotActions::openPopover(int index)
{
    m_window->tap(marker(index));
    return QTest::qWaitFor([this] { return isPopoverOpen(); });
}

QStringList tst_HotspotActions::rows() const
{
    QStringList titles;
    for (int index = 0; const QQuickItem *shown = row(index); ++index)
        titles.append(shown->property("text").toString());
    return titles;
}

void tst_HotspotActions::offersWhatTheMatchCarries_data()
{
    QTest::addColumn<std::shared_ptr<BrevantoMatch>>("match");
    QTest::addColumn<QStringList>("titles");
    QTest::newRow("everything") << fullMatchAt(50, 40) << QStringList{QStringLiteral("More Information"),
                                                                      QStringLiteral("Video"),
                                                                      QStringLiteral("Audio"),
                                                                      QStringLiteral("Make Call"),
                                                                      QStringLiteral("Photo Gallery"),
                                                                      QStringLiteral("Buy it now")};
    auto buy = matchAt(50, 40);
    buy->setBuyUrl(webAddress());
    buy->setReviewUrl(QString());
    buy->setGalleryDataSource({});
    buy->setAdCatalogue(QVariantList{QStringLiteral("http://127.0.0.1:9/a.jpg")});
    QTest::newRow("one, an empty text, a catalogue alone") << buy << QStringList{QStringLiteral("Buy it now")};
    auto number = matchAt(50, 40);
    number->setPhoneNumber(5551234);
    number->setAudioUrl(webAddress());
    QTest::newRow("a number for text") << number << QStringList{QStringLiteral("Audio"), QStringLiteral("Make Call")};
}

void tst_HotspotActions::offersWhatTheMatchCarries()
{
    QFETCH(std::shared_ptr<BrevantoMatch>, match);
    QFETCH(QStringList, titles);
    open({match});
    QVERIFY(openPopover());
    QCOMPARE(rows(), titles);
    QCOMPARE(card().size(), QSizeF(250, titles.size() * 50 + 16));
    QVERIFY(isDimmed());
    QVERIFY(!marker(0)->shouldAnimate());
    m_window->grab(QStringLiteral("popover-%1-rows").arg(titles.size()));
}

void tst_HotspotActions::opensWhatTheRowSays_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QByteArray>("screen");
    QTest::newRow("information") << 0 << QByteArray("BrevantoWebVC");
    QTest::newRow("video") << 1 << QByteArray("Platform::PlayerViewController");
    QTest::newRow("video on the web") << 1 << QByteArray("BrevantoWebVC");
    QTest::newRow("audio") << 2 << QByteArray("Platform::PlayerViewController");
    QTest::newRow("gallery") << 4 << QByteArray("BrevantoPhotoGalleryVC");
    QTest::newRow("shop") << 5 << QByteArray("BrevantoWebVC");
}

void tst_HotspotActions::opensWhatTheRowSays()
{
    QFETCH(int, row);
    QFETCH(QByteArray, screen);
    const auto match = fullMatchAt(50, 50);
    if (row == 1 && screen == "BrevantoWebVC")
        match->setYouTubeVideoUrl(QStringLiteral("http://127.0.0.1:9/youtube.com/clip"));
    open({match});
    QVERIFY(openPopover());
    m_window->tap(this->row(row));
    QTRY_VERIFY(presented() && !isPopoverOpen());
    const Platform::ViewController *top = Platform::Window::of(m_window->window())->topmostViewController();
    QCOMPARE(QByteArray(top->metaObject()->className()), screen);
    QTRY_VERIFY(top->isVisible());
    QTRY_VERIFY(!isDimmed());
    m_window->grab(QStringLiteral("action-%1").arg(QString::fromLatin1(QTest::currentDataTag()).replace(u' ', u'-')));
}

void tst_HotspotActions::callsOnlyWhatCanBeCalled_data()
{
    QTest::addColumn<QVariant>("number");
    QTest::addColumn<QStringList>("opened");
    QTest::newRow("plain") << QVariant(QStringLiteral("+15551234")) << QStringList{QStringLiteral("tel:+15551234")};
    QTest::newRow("a number") << QVariant(5551234) << QStringList{QStringLiteral("tel:5551234")};
    QTest::newRow("blanks") << QVariant(QStringLiteral("555 12 34")) << QStringList{QStringLiteral("tel:555 12 34")};
    QTest::newRow("another scheme") << QVariant(QStringLiteral("//host/file:///etc/passwd")) << QStringList{};
    QTest::newRow("garbage") << QVariant(QStringLiteral("%zz[:")) << QStringList{};
}

void tst_HotspotActions::callsOnlyWhatCanBeCalled()
{
    QFETCH(QVariant, number);
    auto match = matchAt(50, 50);
    match->setPhoneNumber(number);
    open({match});
    QVERIFY(openPopover());
    m_window->tap(row(0));
    QTRY_VERIFY(marker(0)->shouldAnimate());
    QTRY_VERIFY(!isDimmed());
    QCOMPARE(presented(), nullptr);
    QTEST(m_opener->opened, "opened");
}

void tst_HotspotActions::standsInsideTheWindow_data()
{
    QTest::addColumn<QSize>("window");
    QTest::addColumn<QPointF>("percent");
    const QList<QPointF> corners{{0, 0}, {100, 0}, {0, 100}, {100, 100}, {50, 50}};
    const auto add = [](const char *name, const QSize &window, const QList<QPointF> &places) {
        for (const QPointF &place : places)
            QTest::addRow("%s %d %d", name, qRound(place.x()), qRound(place.y())) << window << place;
    };
    add("portrait", {390, 844}, corners);
    add("landscape", {844, 390}, corners);
    add("small", {320, 300}, {{50, 50}, {100, 50}});
}

void tst_HotspotActions::standsInsideTheWindow()
{
    QFETCH(QSize, window);
    QFETCH(QPointF, percent);
    open({fullMatchAt(percent.x(), percent.y())}, window);
    QVERIFY(openPopover());
    const auto check = [this] {
        const QRectF allowed = QRectF(QPointF(), m_window->window()->size()).adjusted(9, 9, -9, -9);
        return allowed.contains(card()) && card().height() >= 100;
    };
    QVERIFY(check());
    m_window->grab(QStringLiteral("popover-%1").arg(QString::fromLatin1(QTest::currentDataTag()).replace(u' ', u'-')));
    // The marker stays where it was put; in the turned window it may lie outside.
    m_window->window()->resize(window.transposed());
    QTRY_COMPARE(m_screen->dummyPopoverView()->frame().size(), QSizeF(window.transposed()));
    QTRY_VERIFY(check());
    // All rows can be reached.
    QTest::keyClick(m_window->window(), Qt::Key_End);
    for (int index = 0; index < 6; ++index)
        QTest::keyClick(m_window->window(), Qt::Key_Down);
    QTRY_VERIFY(row(5));
    QTRY_VERIFY(card().contains(row(5)->mapRectToScene(row(5)->boundingRect()).center()));
}

void tst_HotspotActions::goesWhenTheUserTurnsAway_data()
{
    QTest::addColumn<bool>("byKey");
    QTest::newRow("tap outside") << false;
    QTest::newRow("back") << true;
}

void tst_HotspotActions::goesWhenTheUserTurnsAway()
{
    QFETCH(bool, byKey);
    open({fullMatchAt(50, 20), fullMatchAt(50, 95)});
    QVERIFY(openPopover());
    // Neither the bubble's margin nor what lies under the popover takes the tap.
    m_window->tap(card().topLeft() + QPointF(125, 4));
    QVERIFY(presented());
    if (byKey)
        QTest::keyClick(m_window->window(), Qt::Key_Escape);
    else
        m_window->tap(marker(1));
    QCOMPARE(presented(), nullptr);
    QTRY_VERIFY(marker(0)->shouldAnimate());
    QTRY_VERIFY(!isDimmed());
    QVERIFY(m_opener->opened.isEmpty());
    QVERIFY(openPopover(1));
    QVERIFY(isDimmed());
}

void tst_HotspotActions::countsOneTap()
{
    BrevantoMatchList matches;
    for (int i = 0; i < 200; ++i)
        matches.append(fullMatchAt((i % 10) * 10 + 5, (i / 10) * 5 + 2));
    open(matches);
    m_window->tap(marker(55));
    m_window->tap(marker(57));
    m_window->tap(marker(55));
    QTRY_VERIFY(isPopoverOpen());
    QCOMPARE(m_screen->activeMatchObject(), matches.at(55));
    const QPointF call = row(3)->mapToScene(row(3)->boundingRect().center());
    m_window->tap(call);
    m_window->tap(call);
    QTRY_COMPARE(m_opener->opened, QStringList{QStringLiteral("tel:+15551234")});
    QTRY_VERIFY(!isDimmed());
    QVERIFY(m_screen->isVisible());
    QCOMPARE(presented(), nullptr);
    QCOMPARE(m_opener->opened.size(), 1);
}

void tst_HotspotActions::worksByKeyboard()
{
    auto match = matchAt(50, 50);
    match->setPhoneNumber(QStringLiteral("+15551234"));
    open({match});
    const auto isMarkerFocused = [this] {
        const QQuickItem *focused = m_window->window()->activeFocusItem();
        return focused && focused->parentItem() == marker(0);
    };
    for (int i = 0; i < 10 && !isMarkerFocused(); ++i)
        QTest::keyClick(m_window->window(), Qt::Key_Tab);
    QVERIFY(isMarkerFocused());
    m_window->grab(QStringLiteral("marker-focus"));
    QTest::keyClick(m_window->window(), Qt::Key_Return);
    QTRY_VERIFY(isPopoverOpen());
    QTest::keyClick(m_window->window(), Qt::Key_Down);
    m_window->grab(QStringLiteral("popover-current-row"));
    QTest::keyClick(m_window->window(), Qt::Key_Return);
    QTRY_COMPARE(m_opener->opened, QStringList{QStringLiteral("tel:+15551234")});
    QTRY_VERIFY(isMarkerFocused());
}

void tst_HotspotActions::explainsTheActions_data()
{
    QTest::addColumn<QString>("touched");
    QTest::newRow("a row") << QStringLiteral("row2");
    QTest::newRow("the arrow") << QStringLiteral("arrowButton");
    QTest::newRow("the bar beside the arrow") << QStringLiteral("topView");
    QTest::newRow("the area around") << QStringLiteral("transparentView");
    QTest::newRow("back") << QString();
}

void tst_HotspotActions::explainsTheActions()
{
    QFETCH(QString, touched);
    open({fullMatchAt(50, 97)});
    m_screen->navigationItem()->activateRight(0);
    QTRY_VERIFY(row(0) && row(0)->mapToScene({}).y() >= 52);
    QTRY_COMPARE(m_screen->dummyPopoverView()->shownBackgroundColor().alpha(), 102);
    QCOMPARE(rows().size(), 6);
    QCOMPARE(rows().constFirst(), QStringLiteral("Get more information on the product"));
    QCOMPARE(rows().constLast(), QStringLiteral("Buy the product right now"));
    QCOMPARE(item(QStringLiteral("dataTableView"))->height(), 352.0);
    QVERIFY(marker(0)->shouldAnimate());
    m_window->grab(QStringLiteral("sheet"));
    // Turned and back.
    m_window->window()->resize(844, 390);
    QTRY_COMPARE(item(QStringLiteral("topView"))->mapRectToScene({0, 0, 844, 44}), QRectF(0, 0, 844, 44));
    QTRY_COMPARE(item(QStringLiteral("topView"))->width(), 844.0);
    m_window->grab(QStringLiteral("sheet-landscape"));
    m_window->window()->resize(390, 844);
    QTRY_COMPARE(item(QStringLiteral("topView"))->width(), 390.0);

    // In the area around lies the marker.
    if (touched.isEmpty())
        QTest::keyClick(m_window->window(), Qt::Key_Escape);
    else if (touched == QStringLiteral("transparentView"))
        m_window->tap(marker(0));
    else if (touched == QStringLiteral("topView"))
        m_window->tap(QPointF(40, 40));
    else
        m_window->tap(item(touched));
    QTRY_VERIFY(!item(QStringLiteral("topView")));
    QTRY_VERIFY(!isDimmed());
    QCOMPARE(m_screen->activeMatchObject(), nullptr);
    QCOMPARE(m_stack->topViewController(), m_screen);
    m_screen->navigationItem()->activateRight(0);
    QTRY_VERIFY(row(0) && row(0)->mapToScene({}).y() >= 52);
}

void tst_HotspotActions::leavesWithTheScreen_data()
{
    QTest::addColumn<bool>("sheet");
    QTest::addColumn<bool>("animated");
    QTest::newRow("popover") << false << true;
    QTest::newRow("popover at once") << false << false;
    QTest::newRow("sheet") << true << true;
    QTest::newRow("sheet at once") << true << false;
}

void tst_HotspotActions::leavesWithTheScreen()
{
    QFETCH(bool, sheet);
    QFETCH(bool, animated);
    open({fullMatchAt(50, 50)});
    if (sheet) {
        m_screen->navigationItem()->activateRight(0);
        QTRY_VERIFY(row(0));
    } else {
        m_window->tap(marker(0));
        QTRY_VERIFY(presented());
    }
    // In the midst of the appearance.
    m_stack->popViewController(animated);
    QTRY_VERIFY(!m_screen);
    QTRY_VERIFY(!row(0));
    QTRY_COMPARE(m_stack->presentedViewController(), nullptr);
    QCOMPARE(m_stack->viewControllers().size(), std::size_t(1));
}

QTEST_MAIN(tst_HotspotActions)
#include "tst_HotspotActions.moc"
