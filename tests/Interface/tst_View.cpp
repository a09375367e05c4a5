#include "TestWindow.h"
#include "support/ManualClock.h"

#include "Platform/Interface/Label.h"

#include <QSignalSpy>
#include <QTest>

using namespace std::chrono_literals;
using Platform::View;

class tst_View : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void movesWhatIsShown();
    void curves_data();
    void curves();
    void delays();
    void tellsWhetherItFinished_data();
    void tellsWhetherItFinished();
    void overtakingContinuesFromWhatIsShown();
    void settingOutsideLetsTheAnimationGoOn();
    void survivesAViewDestroyedAtTheEnd();
    void showsTheEndAtOnceWhenSwitchedOff();
    void restsWhileNothingMoves();

    void laysOutOncePerChange();
    void laysOutFromTheOutsideIn();
    void resizesByItsMask_data();
    void resizesByItsMask();

    void findsTags();
    void ownsItsSubviews();
    void bringsToFront();
    void castsItsShadow();
    void hidesByItsOwnWish();
    void labelShowsPlainText();

private:
    View *addView(const QRectF &frame = {10, 10, 100, 50});
    QColor pixel(const QPoint &point) { return m_window->grab().pixelColor(point); }

    std::unique_ptr<ManualClock> m_clock;
    std::unique_ptr<TestWindow> m_window;
};

void tst_View::init()
{
    m_clock = std::make_unique<ManualClock>();
    m_window = std::make_unique<TestWindow>();
}

void tst_View::cleanup()
{
    View::setAnimationsEnabled(true);
    m_window.reset();
    m_clock.reset();
}

View *tst_View::addView(const QRectF &frame)
{
    auto *view = new View(frame);
    view->setParent(m_window->window());
    view->setParentItem(m_window->window()->contentItem());
    return view;
}

void tst_View::movesWhatIsShown()
{
    View *view = addView();
    view->setBackgroundColor(Qt::white);
    view->setCornerRadius(4);
    bool isOver = false;
    View::animate(
        {.duration = 1s, .curve = Platform::AnimationCurve::Linear},
        [&] {
            view->setFrame({110, 10, 100, 150});
            view->setBackgroundColor(QColor(255, 255, 255, 0));
            view->setAlpha(0.5);
            view->setTransformScale(2);
            view->setCornerRadius(8);
        },
        [&](bool finished) { isOver = finished; });
    QCOMPARE(view->frame(), QRectF(110, 10, 100, 150));
    QCOMPARE(view->backgroundColor().alpha(), 0);
    QCOMPARE(view->alpha(), 0.5);
    QCOMPARE(view->transformScale(), 2.0);
    QCOMPARE(view->cornerRadius(), 8.0);
    QCOMPARE(view->x(), 10.0);
    QCOMPARE(view->shownBackgroundColor(), QColor(Qt::white));

    m_clock->advance(500ms);
    QTRY_COMPARE(view->x(), 60.0);
    QCOMPARE(view->height(), 100.0);
    QCOMPARE(view->opacity(), 0.75);
    QCOMPARE(view->scale(), 1.5);
    QCOMPARE(view->shownBackgroundColor().red(), 255);
    QVERIFY(qAbs(view->shownBackgroundColor().alphaF() - 0.5f) < 0.01f);
    QVERIFY(!isOver);

    m_clock->advance(500ms);
    QVERIFY(isOver);
    QCOMPARE(view->x(), 110.0);
    QCOMPARE(view->scale(), 2.0);
}

void tst_View::curves_data()
{
    using Platform::AnimationCurve;
    QTest::addColumn<AnimationCurve>("curve");
    QTest::addColumn<int>("early"); // against the middle of a straight line
    QTest::newRow("linear") << AnimationCurve::Linear << 0;
    QTest::newRow("ease in") << AnimationCurve::EaseIn << -1;
    QTest::newRow("ease out") << AnimationCurve::EaseOut << 1;
    QTest::newRow("both") << AnimationCurve::EaseInOut << -1;
}

void tst_View::curves()
{
    QFETCH(Platform::AnimationCurve, curve);
    QFETCH(int, early);
    View *view = addView({0, 0, 10, 10});
    View::animate({.duration = 1s, .curve = curve}, [&] { view->setFrame({400, 0, 10, 10}); });
    m_clock->advance(250ms);
    QTRY_VERIFY(view->x() > 0);
    QCOMPARE(view->x() < 99 ? -1 : view->x() > 101 ? 1 : 0, early);
}

void tst_View::delays()
{
    View *view = addView();
    bool isOver = false;
    View::animate(
        {.duration = 1s, .delay = 1s}, [&] { view->setAlpha(0); }, [&](bool) { isOver = true; });
    m_clock->advance(999ms);
    QCoreApplication::processEvents();
    QCOMPARE(view->opacity(), 1.0);
    m_clock->advance(1s);
    QVERIFY(!isOver);
    m_clock->advance(1ms);
    QVERIFY(isOver);
}

void tst_View::tellsWhetherItFinished_data()
{
    QTest::addColumn<QString>("end");
    QTest::addColumn<bool>("finished");
    QTest::newRow("its time") << "time" << true;
    QTest::newRow("nothing to move") << "nothing" << true;
    QTest::newRow("no duration") << "immediate" << true;
    QTest::newRow("animations removed") << "removed" << false;
    QTest::newRow("overtaken") << "overtaken" << false;
    QTest::newRow("view destroyed") << "destroyed" << false;
}

void tst_View::tellsWhetherItFinished()
{
    QFETCH(QString, end);
    QFETCH(bool, finished);
    View *view = addView();
    QList<bool> told;
    const auto completion = [&](bool isFinished) { told.append(isFinished); };
    const auto duration = end == QLatin1String("immediate") ? 0ms : 1000ms;
    View::animate(
        {.duration = duration}, [&] { view->setAlpha(end == QLatin1String("nothing") ? 1 : 0); }, completion);
    if (end == QLatin1String("time"))
        m_clock->advance(1s);
    else if (end == QLatin1String("removed"))
        view->removeAllAnimations();
    else if (end == QLatin1String("overtaken"))
        View::animate({.duration = 1s}, [&] { view->setAlpha(0.5); });
    else if (end == QLatin1String("destroyed"))
        delete view;
    if (end == QLatin1String("removed"))
        QCOMPARE(view->opacity(), 0.0);
    if (end != QLatin1String("time"))
        QVERIFY2(told.isEmpty(), "A completion runs later, never inside the call");
    QTRY_COMPARE(told, QList<bool>{finished});
    m_clock->advance(2s);
    QCoreApplication::processEvents();
    QCOMPARE(told.size(), 1);
}

void tst_View::overtakingContinuesFromWhatIsShown()
{
    View *view = addView({0, 0, 10, 10});
    const auto moveTo = [&](qreal x) {
        View::animate({.duration = 1s, .curve = Platform::AnimationCurve::Linear}, [&] {
            view->setFrame({x, 0, 10, 10});
        });
    };
    moveTo(100);
    m_clock->advance(500ms);
    moveTo(0);
    QCOMPARE(view->frame().x(), 0.0);
    m_clock->advance(500ms);
    QTRY_COMPARE(view->x(), 25.0);
}

void tst_View::settingOutsideLetsTheAnimationGoOn()
{
    View *view = addView();
    QList<bool> told;
    View::animate(
        {.duration = 1s}, [&] { view->setAlpha(0); }, [&](bool finished) { told.append(finished); });
    m_clock->advance(400ms);
    view->setAlpha(1);
    QCOMPARE(view->opacity(), 1.0);
    m_clock->advance(599ms);
    QCoreApplication::processEvents();
    QCOMPARE(view->opacity(), 1.0);
    QVERIFY(told.isEmpty());
    m_clock->advance(1ms);
    QCOMPARE(told, QList<bool>{true});
    QCOMPARE(view->opacity(), 1.0);
}

void tst_View::survivesAViewDestroyedAtTheEnd()
{
    QPointer<View> first = addView();
    QPointer<View> second = addView();
    for (const QPointer<View> &view : {first, second})
        connect(view, &View::backgroundColorChanged, this, [&, view] { delete (view == first ? second : first); });
    View::animate({.duration = 1s}, [&] {
        first->setBackgroundColor(Qt::red);
        second->setBackgroundColor(Qt::red);
    });
    m_clock->advance(1s);
    QVERIFY(!first != !second);
}

void tst_View::showsTheEndAtOnceWhenSwitchedOff()
{
    View::setAnimationsEnabled(false);
    View *view = addView();
    bool isOver = false;
    View::animate(
        {.duration = 1s}, [&] { view->setAlpha(0); }, [&](bool finished) { isOver = finished; });
    QCOMPARE(view->opacity(), 0.0);
    QVERIFY(!isOver);
    QTRY_VERIFY(isOver);
}

void tst_View::restsWhileNothingMoves()
{
    View *view = addView();
    view->setBackgroundColor(Qt::red);
    View::animate({.duration = 1s}, [&] { view->setAlpha(0.5); });
    QSignalSpy frames(m_window->window(), &QQuickWindow::frameSwapped);
    QTRY_VERIFY(!frames.isEmpty());
    m_clock->advance(1s);
    // Frames that are on their way still come.
    QTRY_VERIFY([&] {
        frames.clear();
        QTest::qWait(100);
        return frames.isEmpty();
    }());
}

void tst_View::laysOutOncePerChange()
{
    auto *view = new View;
    view->setParent(m_window->window());
    QSignalSpy layouts(view, &View::didLayoutSubviews);
    view->setFrame({0, 0, 100, 100});
    QCoreApplication::processEvents();
    QCOMPARE(layouts.size(), 0); // in no window yet
    view->setParentItem(m_window->window()->contentItem());
    QTRY_COMPARE(layouts.size(), 1);
    view->setFrame({0, 0, 110, 100});
    view->setFrame({0, 0, 120, 100});
    view->layoutIfNeeded();
    view->layoutIfNeeded();
    QCOMPARE(layouts.size(), 2);
    view->setFrame({50, 0, 120, 100});
    m_window->grab();
    QCOMPARE(layouts.size(), 2); // moved, not resized
}

void tst_View::laysOutFromTheOutsideIn()
{
    View *view = addView();
    auto *inner = new View(QRectF(0, 0, 20, 20));
    view->addSubview(inner);
    QStringList order;
    connect(view, &View::didLayoutSubviews, this, [&] { order.append(QStringLiteral("outer")); });
    connect(inner, &View::didLayoutSubviews, this, [&] {
        order.append(QStringLiteral("inner"));
        view->layoutIfNeeded(); // asks for nothing that is not due
    });
    view->layoutIfNeeded();
    QCOMPARE(order, QStringList({QStringLiteral("outer"), QStringLiteral("inner")}));
}

void tst_View::resizesByItsMask_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<QRectF>("expected");
    QTest::newRow("none") << 0 << QRectF(10, 10, 20, 20);
    QTest::newRow("margins") << 45 << QRectF(20, 20, 20, 20);
    QTest::newRow("size") << 18 << QRectF(10, 10, 70, 70);
    QTest::newRow("bottom right") << (View::FlexibleLeftMargin | View::FlexibleTopMargin) << QRectF(60, 60, 20, 20);
}

void tst_View::resizesByItsMask()
{
    QFETCH(int, mask);
    QFETCH(QRectF, expected);
    View *view = addView({0, 0, 100, 100});
    auto *inner = new View(QRectF(10, 10, 20, 20));
    inner->setAutoresizingMask(mask);
    view->addSubview(inner);
    view->setFrame({0, 0, 150, 150});
    // The margins before are 10 and 70 points: they share the difference in that proportion.
    if (mask == 45)
        expected.moveTopLeft(QPointF(10 + 50.0 / 8, 10 + 50.0 / 8));
    QCOMPARE(inner->frame(), expected);
}

void tst_View::findsTags()
{
    View *root = addView();
    auto *box = new QQuickItem;
    root->addSubview(box);
    auto *deep = new View(box);
    deep->setTag(10203040);
    auto *other = new QQuickItem(box);
    other->setProperty("tag", 5);
    QCOMPARE(root->viewWithTag(10203040), deep);
    QCOMPARE(root->viewWithTag(5), other);
    QCOMPARE(root->viewWithTag(6), nullptr);
    QCOMPARE(root->viewWithTag(0), root);
    deep->removeFromSuperview();
    QCOMPARE(root->viewWithTag(10203040), nullptr);
    delete deep;
}

void tst_View::ownsItsSubviews()
{
    Platform::ViewController controller;
    QObject owner;
    QPointer<View> free = new View;
    QPointer<View> owned = new View;
    owned->setParent(&owner);
    const QPointer<View> ofController = controller.view();
    auto *parent = new View;
    for (View *view : {free.data(), owned.data(), ofController.data()})
        parent->addSubview(view);
    delete parent;
    QVERIFY(!free);
    QVERIFY(owned);
    QVERIFY(ofController);
    QCOMPARE(ofController->superview(), nullptr);
}

void tst_View::bringsToFront()
{
    View *root = addView({0, 0, 50, 50});
    auto *red = new View(QRectF(0, 0, 50, 50));
    red->setBackgroundColor(Qt::red);
    auto *blue = new View(QRectF(0, 0, 50, 50));
    blue->setBackgroundColor(Qt::blue);
    root->addSubview(red);
    root->addSubview(blue);
    QCOMPARE(pixel({25, 25}), QColor(Qt::blue));
    blue->setZ(3);
    root->bringSubviewToFront(red);
    QCOMPARE(pixel({25, 25}), QColor(Qt::red));
    root->addSubview(blue);
    QCOMPARE(pixel({25, 25}), QColor(Qt::blue));
    blue->setCornerRadius(25);
    QCOMPARE(pixel({25, 25}), QColor(Qt::blue));
    QCOMPARE(pixel({1, 1}), QColor(Qt::red));
}

void tst_View::castsItsShadow()
{
    View *view = addView({100, 100, 150, 100});
    view->setBackgroundColor(Qt::white);
    view->setCornerRadius(8);
    view->setShadow({.color = Qt::black, .opacity = 0.5, .offset = {5, 5}, .radius = 5});
    const QColor host = m_window->window()->color();
    QTRY_VERIFY(pixel({252, 150}) != host); // right of the view
    const QImage shot = m_window->grab(QStringLiteral("shadow"));
    QVERIFY(shot.pixelColor(175, 202).lightness() < host.lightness());
    QVERIFY(shot.pixelColor(175, 205).lightness() <= shot.pixelColor(175, 209).lightness());
    QCOMPARE(shot.pixelColor(175, 220), host);
    QCOMPARE(shot.pixelColor(90, 150), host);
    QCOMPARE(shot.pixelColor(175, 150), QColor(Qt::white));
    view->setShadow({});
    QTRY_COMPARE(pixel({252, 150}), host);
}

void tst_View::hidesByItsOwnWish()
{
    View *root = addView();
    auto *inner = new View;
    root->addSubview(inner);
    root->setHidden(true);
    QVERIFY(!inner->isHidden());
    inner->setHidden(true);
    root->setHidden(false);
    QVERIFY(inner->isHidden());
    QVERIFY(!inner->isVisible());
    inner->setHidden(false);
    QVERIFY(inner->isVisible());
}

void tst_View::labelShowsPlainText()
{
    Platform::Label label(QRectF(0, 0, 300, 30));
    label.setText(QStringLiteral("<b>5 < 6</b>"));
    label.setNumberOfLines(0);
    const QList<QQuickItem *> children = label.childItems();
    QCOMPARE(children.size(), 1);
    QCOMPARE(children.first()->property("text").toString(), QStringLiteral("<b>5 < 6</b>"));
    QCOMPARE(children.first()->property("textFormat").toInt(), static_cast<int>(Qt::PlainText));
}

QTEST_MAIN(tst_View)
#include "tst_View.moc"
