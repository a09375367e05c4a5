#include "Brevanto/Utils/ImageScale.h"
#include "Platform/Interface/View.h"
#include "support/TestImages.h"

#include <QQuickWindow>
#include <QTest>

using namespace Qt::StringLiterals;
using Platform::Image;
using Platform::View;

class tst_ScreenShot : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsTheView()
    {
        QQuickWindow window;
        window.resize(200, 200);
        window.setColor(Qt::white);
        View view(QRectF(40, 60, 80, 60));
        view.setParentItem(window.contentItem());
        view.setBackgroundColor(QColor(0, 255, 0));
        View corner(QRectF(0, 0, 40, 30));
        view.addSubview(&corner);
        corner.setBackgroundColor(QColor(255, 0, 0));
        View cover(QRectF(100, 60, 100, 100)); // over the window's right half
        cover.setParentItem(window.contentItem());
        cover.setBackgroundColor(QColor(0, 0, 255));
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));

        const Image shot = scale::captureScreenShotOfView(&view);
        QCOMPARE(shot.size(), QSizeF(80, 60));
        QCOMPARE(shot.scale(), window.effectiveDevicePixelRatio());
        QCOMPARE(TestImages::seenIn(shot.bitmap()), u"rggg"_s);
        QVERIFY(!shot.bitmap().hasAlphaChannel());
        view.setBackgroundColor(Qt::transparent);
        QCOMPARE(TestImages::seenIn(scale::captureScreenShotOfView(&view).bitmap()), u"r---"_s);
        corner.setParentItem(nullptr);
    }

    void isTransparentWithoutWindow()
    {
        View view(QRectF(0, 0, 20, 10));
        view.setBackgroundColor(QColor(0, 255, 0));
        const Image shot = scale::captureScreenShotOfView(&view);
        QCOMPARE(shot.size(), QSizeF(20, 10));
        QCOMPARE(TestImages::seenIn(shot.bitmap()), u"----"_s);
        View empty;
        QVERIFY(scale::captureScreenShotOfView(&empty).isNull());
    }
};

QTEST_MAIN(tst_ScreenShot)
#include "tst_ScreenShot.moc"
