#include "ScreenTest.h"
#include "support/FakeOpener.h"
#include "support/Table.h"
#include "support/TestImages.h"

#include "Brevanto/BrevantoAdVC.h"
#include "Brevanto/Utils/BrevantoHotspotView.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{

const QString webAddress = u"http://127.0.0.1:9/page"_s;

std::shared_ptr<BrevantoMatch> matchAt(qreal x, qreal y)
{
    auto match = std::make_shared<BrevantoMatch>();
    match->setTitle(u"Kettle"_s);
    match->setXPercent(x);
    match->setYPercent(y);
    return match;
}

std::shared_ptr<BrevantoMatch> fullMatchAt(qreal x, qreal y)
{
    auto match = matchAt(x, y);
    match->setReviewUrl(webAddress);
    match->setYouTubeVideoUrl(u"http://127.0.0.1:9/clip.mp4"_s);
    match->setAudioUrl(u"http://127.0.0.1:9/clip.mp3"_s);
    match->setPhoneNumber(u"+15551234"_s);
    match->setImages(QVariantList{u"http://127.0.0.1:9/a.jpg"_s});
    match->setBuyUrl(webAddress);
    return match;
}

} // namespace

class tst_HotspotActions : public ScreenTest
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        ScreenTest::init();
        m_opener.emplace();
    }

    void offersWhatTheMatchCarries_data()
    {
        addColumns<std::shared_ptr<BrevantoMatch>, QStringList>("match", "options"); // icon and title
        using Setter = void (BrevantoMatch::*)(QVariant);
        const auto alone = [](const QString &option, Setter set, const QVariant &value) {
            const auto match = matchAt(50, 40);
            (match.get()->*set)(value);
            QTest::newRow(qPrintable(option + u" alone"_s)) << match << QStringList(option);
            return option;
        };
        const QStringList all = {
            alone(u"ic_info More Information"_s, &BrevantoMatch::setReviewUrl, webAddress),
            alone(u"ic_video Video"_s, &BrevantoMatch::setYouTubeVideoUrl, webAddress),
            alone(u"ic_audio Audio"_s, &BrevantoMatch::setAudioUrl, webAddress),
            alone(u"ic_call Make Call"_s, &BrevantoMatch::setPhoneNumber, 5551234),
            alone(u"ic_gallery Photo Gallery"_s, &BrevantoMatch::setImages, QVariantList{webAddress}),
            alone(u"ic_buy Buy it now"_s, &BrevantoMatch::setBuyUrl, webAddress)};
        QTest::newRow("all") << fullMatchAt(50, 40) << all;
        const auto nothing = matchAt(50, 40);
        nothing->setReviewUrl(QString());
        nothing->setGalleryDataSource({});
        nothing->setAdCatalogue(QVariantList{webAddress});
        QTest::newRow("an empty text, a catalogue alone") << nothing << QStringList();
    }
    void offersWhatTheMatchCarries()
    {
        QFETCH(std::shared_ptr<BrevantoMatch>, match);
        QFETCH(QStringList, options);
        open({match});
        m_window->tap(marker(0));
        QTRY_VERIFY(presented() && (options.isEmpty() || isPopoverOpen()));
        QCOMPARE(isPopoverOpen() ? rows() : QStringList(), options);
        QCOMPARE(marker(0)->shouldAnimate(), options.isEmpty());
        QCOMPARE(isDimmed(), !options.isEmpty());
        if (!options.isEmpty())
            QCOMPARE(card().size(), QSizeF(250, options.size() * 50 + 16));
    }

    // The other actions are taken by the tour of the host application.
    void opensAVideoOfTheWebInTheViewer()
    {
        const auto match = fullMatchAt(50, 50);
        match->setYouTubeVideoUrl(u"http://127.0.0.1:9/youtube.com/clip"_s);
        open({match});
        QVERIFY(openPopover());
        m_window->tap(row(1));
        QTRY_VERIFY(presented() && !isPopoverOpen());
        QVERIFY(m_window->platform()->topmostViewController()->inherits("BrevantoWebVC"));
        QTRY_VERIFY(!isDimmed());
    }

    void callsOnlyWhatCanBeCalled_data()
    {
        addColumns<QVariant, QString>("number", "opened");
        QTest::newRow("plain") << QVariant(u"+15551234"_s) << u"tel:+15551234"_s;
        QTest::newRow("a number") << QVariant(5551234) << u"tel:5551234"_s;
        QTest::newRow("letters") << QVariant(u"1-800-FLOWERS"_s) << u"tel:1-800-FLOWERS"_s;
        QTest::newRow("letters alone") << QVariant(u"call me"_s) << QString();
        QTest::newRow("blanks") << QVariant(u"555 12 34"_s) << u"tel:555 12 34"_s;
        QTest::newRow("another scheme") << QVariant(u"//host/file:///etc/passwd"_s) << QString();
        QTest::newRow("forwards calls") << QVariant(u"**21*900123#"_s) << QString();
        QTest::newRow("forwards calls, encoded") << QVariant(u"%2A%2A21%2a900123%23"_s) << QString();
        QTest::newRow("encoded twice") << QVariant(u"900123%252321"_s) << QString();
        QTest::newRow("hides the caller") << QVariant(u"*31900123"_s) << QString();
        QTest::newRow("in a query") << QVariant(u"900123?%2321"_s) << QString();
        QTest::newRow("garbage") << QVariant(u"%zz[:"_s) << QString();
    }
    void callsOnlyWhatCanBeCalled()
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
        QTEST(m_opener->opened.value(0), "opened");
    }

    void standsInsideTheWindow_data()
    {
        addColumns<QSize, QPointF>("window", "percent");
        const QList<QPointF> corners{{0, 0}, {100, 0}, {0, 100}, {100, 100}, {50, 50}};
        const auto add = [](const char *name, const QSize &window, const QList<QPointF> &places) {
            for (const QPointF &place : places)
                QTest::addRow("%s %d %d", name, qRound(place.x()), qRound(place.y())) << window << place;
        };
        add("portrait", {390, 844}, corners);
        add("landscape", {844, 390}, corners);
        add("small", {320, 300}, {{50, 50}, {100, 50}});
    }
    void standsInsideTheWindow()
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
        // The arrow's tip is at the marker's edge, or as near as the card's round corner lets it; without an arrow the
        // popover covers the marker.
        const auto *popover = presented()->popoverPresentationController();
        const QPointF middle = marker(0)->mapToScene(marker(0)->boundingRect().center());
        if (popover->arrowVector().isNull())
            QVERIFY(card().contains(middle));
        else
            QVERIFY(QLineF(popover->arrowTip(), middle).length() < marker(0)->width() / 2 + 5);
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

    void goesWhenTheUserTurnsAway_data() { addBothRows("byKey", "tap outside", "back"); }
    void goesWhenTheUserTurnsAway()
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

    void countsOneTap()
    {
        BrevantoMatchList matches;
        for (int i = 0; i < 200; ++i)
            matches.append(fullMatchAt((i % 10) * 10 + 5, (i / 10) * 5 + 2));
        open(matches);
        delete marker(3); // all others are stopped and started without it
        // All at once: once the popover is open, a tap beside it closes it.
        tapAtOnce({marker(55), marker(57), marker(55)});
        QTRY_VERIFY(isPopoverOpen());
        QCOMPARE(m_screen->activeMatchObject(), matches.at(55));
        tapAtOnce({row(3), row(3)});
        QTRY_COMPARE(m_opener->opened, QStringList{u"tel:+15551234"_s});
        QTRY_VERIFY(!isDimmed());
        QVERIFY(m_screen->isVisible());
        QCOMPARE(presented(), nullptr);
        QCOMPARE(m_opener->opened.size(), 1);
    }

    void explainsTheActions_data()
    {
        QTest::addColumn<QString>("touched"); // to leave; the marker lies in the area around
        for (const char *touched : {"row2", "arrowButton", "topView", "transparentView", "back"})
            QTest::newRow(touched) << QString::fromLatin1(touched);
    }
    void explainsTheActions()
    {
        QFETCH(QString, touched);
        open({fullMatchAt(50, 97)});
        m_screen->navigationItem()->activateRight(0);
        QTRY_VERIFY(row(0) && row(0)->mapToScene({}).y() >= 52);
        QTRY_COMPARE(m_screen->dummyPopoverView()->shownBackgroundColor().alpha(), 102);
        QCOMPARE(rows().size(), 6);
        QCOMPARE(rows().constFirst(), u"ic_info Get more information on the product"_s);
        QCOMPARE(rows().constLast(), u"ic_buy Buy the product right now"_s);
        QCOMPARE(item(u"dataTableView"_s)->height(), 352.0);
        QVERIFY(marker(0)->shouldAnimate());
        // Turned and back.
        m_window->window()->resize(844, 390);
        QTRY_COMPARE(item(u"topView"_s)->mapRectToScene({0, 0, 844, 44}), QRectF(0, 0, 844, 44));
        QTRY_COMPARE(item(u"topView"_s)->width(), 844.0);
        m_window->window()->resize(390, 844);
        QTRY_COMPARE(item(u"topView"_s)->width(), 390.0);

        if (touched == u"back"_s)
            QTest::keyClick(m_window->window(), Qt::Key_Escape);
        else if (touched == u"transparentView"_s)
            m_window->tap(marker(0));
        else if (touched == u"topView"_s)
            m_window->tap(QPointF(40, 40)); // beside the arrow
        else
            m_window->tap(item(touched));
        QTRY_VERIFY(!item(u"topView"_s));
        QTRY_VERIFY(!isDimmed());
        QCOMPARE(m_screen->activeMatchObject(), nullptr);
        QCOMPARE(m_stack->topViewController(), m_screen);
        m_screen->navigationItem()->activateRight(0);
        QTRY_VERIFY(row(0) && row(0)->mapToScene({}).y() >= 52);
    }

    void leavesWithTheScreen_data()
    {
        addColumns<bool, bool>("sheet", "animated");
        for (const char *row : {"popover", "popover, animated", "sheet", "sheet, animated"})
            QTest::newRow(row) << (*row == 's') << QLatin1StringView(row).endsWith("animated"_L1);
    }
    void leavesWithTheScreen()
    {
        QFETCH(bool, sheet);
        QFETCH(bool, animated);
        open({fullMatchAt(50, 50)});
        if (sheet)
            m_screen->navigationItem()->activateRight(0);
        else
            m_window->tap(marker(0));
        QTRY_VERIFY(sheet ? row(0) != nullptr : presented() != nullptr);
        // In the midst of the appearance.
        m_stack->popViewController(animated);
        QTRY_VERIFY(!m_screen);
        QTRY_VERIFY(!row(0));
        QTRY_COMPARE(m_stack->presentedViewController(), nullptr);
        QCOMPARE(m_stack->viewControllers().size(), std::size_t(1));
    }

private:
    // Opens the ad screen on these matches.
    void open(const BrevantoMatchList &matches, const QSize &window = {390, 844})
    {
        openWindow(window);
        auto screen = makeScreen<BrevantoAdVC>();
        m_screen = screen.get();
        screen->setMatchGroup(BrevantoMatchGroup::initWithMatches(matches, {}));
        screen->view();
        screen->backgroundImageView()->setImage(Platform::Image(TestImages::quarters(window)));
        m_stack = m_window->push(std::move(screen));
        if (!QTest::qWaitFor([this, &matches] { return marker(static_cast<int>(matches.size()) - 1) != nullptr; }))
            qFatal("The markers did not come");
    }

    BrevantoHotspotView *marker(int index) const
    {
        return qobject_cast<BrevantoHotspotView *>(
            m_screen->view()->viewWithTag(BrevantoAdVC::firstHotspotTag + index));
    }
    QQuickItem *item(const QString &objectName) const { return m_window->find(objectName); }
    QQuickItem *row(int index) const { return item(u"row%1"_s.arg(index)); }
    QRectF card() const
    {
        const QQuickItem *card = item(u"popoverCard"_s);
        return card ? card->mapRectToScene(card->boundingRect()) : QRectF();
    }

    // Icon and title of each.
    QStringList rows() const
    {
        QStringList shown;
        for (int index = 0; const QQuickItem *each = row(index); ++index) {
            const auto *icon = each->property("iconImageView").value<QQuickItem *>();
            shown.append(icon->property("source").toUrl().fileName().section(u'.', 0, 0) + u' '
                         + each->property("text").toString());
        }
        return shown;
    }

    Platform::ViewController *presented() const { return m_screen->presentedViewController(); }
    // Whether a popover is there, at rest.
    bool isPopoverOpen() const
    {
        const QQuickItem *popover = item(u"popover"_s);
        return presented() && popover && popover->property("popup").value<QObject *>()->property("opened").toBool();
    }
    // Touches the marker and waits for its popover.
    bool openPopover(int index = 0)
    {
        m_window->tap(marker(index));
        return QTest::qWaitFor([this] { return isPopoverOpen(); });
    }

    // Touches one after the other while nothing else goes on.
    void tapAtOnce(const QList<QQuickItem *> &items)
    {
        QList<QPoint> places;
        for (const QQuickItem *item : items)
            places.append(item->mapToScene(item->boundingRect().center()).toPoint());
        for (const QPoint &place : places) {
            QTest::touchEvent(m_window->window(), m_window->finger(), false).press(0, place).commit(false);
            QTest::touchEvent(m_window->window(), m_window->finger(), false).release(0, place).commit(false);
        }
    }

    bool isDimmed() const { return m_screen->dummyPopoverView()->superview(); }

    std::optional<FakeOpener> m_opener;
    QPointer<BrevantoAdVC> m_screen;
};

QTEST_MAIN(tst_HotspotActions)
#include "tst_HotspotActions.moc"
