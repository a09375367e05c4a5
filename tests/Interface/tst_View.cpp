#include "support/Table.h"
#include "support/WindowTest.h"

#include "Platform/Interface/Label.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Platform::View;

class tst_View : public WindowTest
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        View::setAnimationsEnabled(true);
        WindowTest::cleanup();
    }

    void movesWhatIsShown()
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
        // The end is told at once, and shown later.
        QCOMPARE(view->frame(), QRectF(110, 10, 100, 150));
        QCOMPARE(view->transformScale(), 2.0);
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

    void curves()
    {
        using Platform::AnimationCurve;
        const std::tuple<AnimationCurve, qreal, qreal> shares[] = {{AnimationCurve::Linear, 24.9, 25.1},
                                                                   {AnimationCurve::EaseIn, 1, 20},
                                                                   {AnimationCurve::EaseOut, 30, 60},
                                                                   {AnimationCurve::EaseInOut, 1, 20}};
        for (const auto &[curve, least, most] : shares) {
            View *view = addView({0, 0, 10, 10});
            View::animate({.duration = 1s, .curve = curve}, [&] { view->setFrame({100, 0, 10, 10}); });
            m_clock->advance(250ms);
            QTRY_VERIFY(view->x() > least && view->x() < most);
        }
    }

    void overtakingContinuesFromWhatIsShown()
    {
        View *view = addView({0, 0, 10, 10});
        for (const qreal x : {100, 0}) {
            View::animate({.duration = 1s, .curve = Platform::AnimationCurve::Linear}, [&] {
                view->setFrame({x, 0, 10, 10});
            });
            QCOMPARE(view->frame().x(), x);
            m_clock->advance(500ms);
        }
        QTRY_COMPARE(view->x(), 25.0);
    }

    void settingOutsideLetsTheAnimationGoOn()
    {
        View *view = addView();
        QList<bool> told;
        View::animate(
            {.duration = 1s}, [&] { view->setAlpha(0); }, [&](bool finished) { told.append(finished); });
        m_clock->advance(400ms);
        view->setAlpha(1);
        m_clock->advance(599ms);
        QCoreApplication::processEvents();
        QCOMPARE(view->opacity(), 1.0);
        QVERIFY(told.isEmpty());
        m_clock->advance(1ms);
        QCOMPARE(told, QList<bool>{true});
        QCOMPARE(view->opacity(), 1.0);
    }

    void survivesAViewDestroyedAtTheEnd()
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

    void tellsWhetherItFinished_data()
    {
        addColumns<QString, bool>("end", "finished");
        for (const char *end : {"its time", "a delay", "nothing to move", "no duration", "animations switched off"})
            QTest::newRow(end) << QString::fromLatin1(end) << true;
        for (const char *end : {"animations removed", "overtaken", "view destroyed"})
            QTest::newRow(end) << QString::fromLatin1(end) << false;
    }
    void tellsWhetherItFinished()
    {
        QFETCH(QString, end);
        QFETCH(bool, finished);
        View *view = addView();
        QList<bool> told;
        const bool isDelayed = end == "a delay"_L1;
        View::setAnimationsEnabled(end != "animations switched off"_L1);
        View::animate(
            {.duration = end == "no duration"_L1 ? 0ms : 1000ms, .delay = isDelayed ? 1000ms : 0ms},
            [&] { view->setAlpha(end == "nothing to move"_L1 ? 1 : 0); },
            [&](bool isFinished) { told.append(isFinished); });
        if (isDelayed) {
            m_clock->advance(999ms);
            const int reads = m_clock->readCount();
            QTRY_VERIFY(m_clock->readCount() > reads + 3); // each frame asks for the time
            QCOMPARE(view->opacity(), 1.0);
            m_clock->advance(1s);
            QVERIFY(told.isEmpty());
            m_clock->advance(1ms);
        } else if (end == "its time"_L1) {
            m_clock->advance(1s);
        } else {
            if (end == "animations removed"_L1)
                view->removeAllAnimations();
            else if (end == "overtaken"_L1)
                View::animate({.duration = 1s}, [&] { view->setAlpha(0.5); });
            if (end.startsWith("animations"_L1))
                QCOMPARE(view->opacity(), 0.0);
            if (end == "view destroyed"_L1)
                delete view;
            QVERIFY2(told.isEmpty(), "A completion runs later, never inside the call");
        }
        QTRY_COMPARE(told, QList<bool>{finished});
        m_clock->advance(2s);
        QCoreApplication::processEvents();
        QCOMPARE(told.size(), 1);
    }

    void restsWhileNothingMoves()
    {
        View *view = addView();
        view->setBackgroundColor(Qt::red);
        View::animate({.duration = 1s}, [&] { view->setAlpha(0.5); });
        int frames = 0;
        const QObject counter; // on this thread; the signal comes on the renderer's
        connect(m_window->window(), &QQuickWindow::frameSwapped, &counter, [&] { ++frames; });
        QTRY_VERIFY(frames > 0);
        m_clock->advance(1s);
        // Frames that are on their way still come.
        QTRY_VERIFY([&] {
            frames = 0;
            QTest::qWait(100);
            return frames == 0;
        }());
    }

    void laysOutOncePerChange()
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

    void laysOutFromTheOutsideIn()
    {
        View *view = addView();
        auto *inner = new View(QRectF(0, 0, 20, 20));
        view->addSubview(inner);
        QString order;
        connect(view, &View::didLayoutSubviews, this, [&] { order += u"outer "_s; });
        connect(inner, &View::didLayoutSubviews, this, [&] {
            order += u"inner "_s;
            view->layoutIfNeeded(); // asks for nothing that is not due
        });
        view->layoutIfNeeded();
        QCOMPARE(order, u"outer inner "_s);
    }

    void resizesByItsMask()
    {
        const qreal shared = 10 + 50.0 / 8; // the margins of 10 and 70 points share the difference in that proportion
        const std::pair<int, QRectF> masks[] = {{0, {10, 10, 20, 20}},
                                                {45, {shared, shared, 20, 20}}, // all margins
                                                {18, {10, 10, 70, 70}}, // the size
                                                {View::FlexibleLeftMargin | View::FlexibleTopMargin, {60, 60, 20, 20}}};
        for (const auto &[mask, expected] : masks) {
            View *view = addView({0, 0, 100, 100});
            auto *inner = new View(QRectF(10, 10, 20, 20));
            inner->setAutoresizingMask(mask);
            view->addSubview(inner);
            view->setFrame({0, 0, 150, 150});
            QCOMPARE(inner->frame(), expected);
        }
    }

    void ownsItsSubviews()
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
        QVERIFY(!free && owned && ofController);
        QCOMPARE(ofController->superview(), nullptr);
    }

    void findsTags()
    {
        View *root = addView();
        auto *box = new QQuickItem;
        root->addSubview(box);
        auto *deep = new View(box);
        deep->setTag(10203040);
        QCOMPARE(root->viewWithTag(10203040), deep);
        QCOMPARE(root->viewWithTag(6), nullptr);
        QCOMPARE(root->viewWithTag(0), root);
        deep->removeFromSuperview();
        QCOMPARE(root->viewWithTag(10203040), nullptr);
        delete deep;
    }

    void hidesByItsOwnWish()
    {
        View *root = addView();
        auto *inner = new View;
        root->addSubview(inner);
        root->setHidden(true);
        QVERIFY(!inner->isHidden());
        inner->setHidden(true);
        root->setHidden(false);
        QVERIFY(inner->isHidden() && !inner->isVisible());
        inner->setHidden(false);
        QVERIFY(inner->isVisible());
    }

    void bringsToFront()
    {
        View *root = addView({0, 0, 50, 50});
        auto *red = new View(QRectF(0, 0, 50, 50));
        red->setBackgroundColor(Qt::red);
        auto *blue = new View(QRectF(0, 0, 50, 50));
        blue->setBackgroundColor(Qt::blue);
        root->addSubview(red);
        root->addSubview(blue);
        blue->setZ(3);
        root->bringSubviewToFront(red);
        QCOMPARE(pixel({25, 25}), QColor(Qt::red));
        root->addSubview(blue);
        blue->setCornerRadius(25);
        QCOMPARE(pixel({25, 25}), QColor(Qt::blue));
        QCOMPARE(pixel({1, 1}), QColor(Qt::red));
    }

    void labelShowsPlainText()
    {
        Platform::Label label(QRectF(0, 0, 300, 30));
        label.setText(u"<b>5 < 6</b>"_s);
        const QList<QQuickItem *> children = label.childItems();
        QCOMPARE(children.size(), 1);
        QCOMPARE(children.first()->property("text").toString(), u"<b>5 < 6</b>"_s);
        QCOMPARE(children.first()->property("textFormat").toInt(), static_cast<int>(Qt::PlainText));
    }

    void castsItsShadow()
    {
        View *view = addView({100, 100, 150, 100});
        view->setBackgroundColor(Qt::white);
        view->setCornerRadius(8);
        view->setShadow({.color = Qt::black, .opacity = 0.5, .offset = {5, 5}, .radius = 5});
        const QColor host = m_window->window()->color();
        QTRY_VERIFY(pixel({252, 150}) != host); // right of the view
        const QImage shot = m_window->grab();
        QVERIFY(shot.pixelColor(175, 202).lightness() < host.lightness());
        QVERIFY(shot.pixelColor(175, 205).lightness() <= shot.pixelColor(175, 209).lightness());
        QCOMPARE(shot.pixelColor(175, 220), host);
        QCOMPARE(shot.pixelColor(90, 150), host);
        QCOMPARE(shot.pixelColor(175, 150), QColor(Qt::white));
        view->setShadow({});
        QTRY_COMPARE(pixel({252, 150}), host);
    }

private:
    View *addView(const QRectF &frame = {10, 10, 100, 50})
    {
        auto *view = new View(frame);
        view->setParent(m_window->window());
        view->setParentItem(m_window->window()->contentItem());
        return view;
    }

    QColor pixel(const QPoint &point) { return m_window->grab().pixelColor(point); }
};

QTEST_MAIN(tst_View)
#include "tst_View.moc"
