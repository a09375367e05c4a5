#include "support/Table.h"

#include "Brevanto/HotspotPlacement.h"

#include <QTest>

#include <limits>

using HotspotPlacement::aspectFitRect;
using HotspotPlacement::markerCenter;

namespace
{
constexpr float missing = std::numeric_limits<float>::lowest();

std::optional<float> percent(float value)
{
    return value == missing ? std::nullopt : std::optional(value);
}
} // namespace

class tst_HotspotPlacement : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fitsTheImage_data()
    {
        addColumns<QSizeF, QSizeF, QRectF>("image", "view", "expected");

        QTest::newRow("wide image fills the width")
            << QSizeF(1000, 500) << QSizeF(320, 568) << QRectF(0, 204, 320, 160);
        QTest::newRow("tall image fills the height")
            << QSizeF(500, 1000) << QSizeF(400, 400) << QRectF(100, 0, 200, 400);
        QTest::newRow("equal ratios") << QSizeF(200, 100) << QSizeF(400, 200) << QRectF(0, 0, 400, 200);
        QTest::newRow("single precision")
            << QSizeF(1000, 503) << QSizeF(320, 568)
            << QRectF(0, (568.f - 320.f / 1000.f * 503.f) * 0.5f, 320, 320.f / 1000.f * 503.f);
        QTest::newRow("small image is enlarged") << QSizeF(2, 1) << QSizeF(300, 300) << QRectF(0, 75, 300, 150);
        QTest::newRow("no image") << QSizeF(0, 0) << QSizeF(320, 568) << QRectF();
        QTest::newRow("no height") << QSizeF(10, 0) << QSizeF(320, 568) << QRectF();
        QTest::newRow("view without a size") << QSizeF(10, 10) << QSizeF(0, 568) << QRectF();
    }
    void fitsTheImage()
    {
        QFETCH(QSizeF, image);
        QFETCH(QSizeF, view);
        QFETCH(QRectF, expected);
        const QRectF rect = aspectFitRect(image, view);
        QCOMPARE(rect, expected);
        // Nothing finer than single precision may slip in.
        QCOMPARE(rect.y(), static_cast<qreal>(static_cast<float>(rect.y())));
        QCOMPARE(rect.height(), static_cast<qreal>(static_cast<float>(rect.height())));
    }

    void placesTheMarker_data()
    {
        addColumns<QRectF, float, float, int, QPointF>("image", "x", "y", "index", "expected");

        const QRectF wide(0, 204, 320, 160);
        QTest::newRow("middle") << wide << 50.f << 50.f << 0 << QPointF(160, 284);
        QTest::newRow("index is no part of a named point") << wide << 50.f << 50.f << 7 << QPointF(160, 284);
        QTest::newRow("upper left corner") << wide << 0.f << 0.f << 0 << QPointF(15, 219);
        QTest::newRow("lower right corner") << wide << 100.f << 100.f << 0 << QPointF(305, 349);
        QTest::newRow("outside") << wide << -40.f << 250.f << 0 << QPointF(15, 349);
        QTest::newRow("fraction dropped before the clamp")
            << aspectFitRect({1000, 503}, {320, 568}) << 50.f << 33.f << 0 << QPointF(160, 256);
        QTest::newRow("fraction dropped toward zero")
            << QRectF(-50, -50, 100, 100) << 49.5f << 49.5f << 0 << QPointF(0, 0);
        QTest::newRow("clamp to a fractional edge")
            << QRectF(0.25, 203.75, 100, 100) << 0.f << 0.f << 0 << QPointF(15.25, 218.75);
        QTest::newRow("image narrower than a marker")
            << QRectF(100, 0, 20, 400) << 90.f << 50.f << 0 << QPointF(115, 200);
        QTest::newRow("image lower than a marker") << QRectF(0, 100, 400, 10) << 50.f << 0.f << 0 << QPointF(200, 115);

        const QRectF tall(0, 0, 300, 400);
        QTest::newRow("diagonal, first") << tall << missing << missing << 0 << QPointF(90, 200);
        QTest::newRow("diagonal, second") << tall << missing << missing << 1 << QPointF(120, 240);
        QTest::newRow("diagonal, third") << tall << missing << missing << 2 << QPointF(150, 280);
        QTest::newRow("diagonal without an x") << tall << missing << 80.f << 1 << QPointF(120, 240);
        QTest::newRow("diagonal without a y") << tall << 80.f << missing << 1 << QPointF(120, 240);
        QTest::newRow("diagonal ends in the corner") << tall << missing << missing << 199 << QPointF(285, 385);
        // 99.9 -> 99, then 99 + 33.3 -> 132; dropped once at the end it would be 133.
        QTest::newRow("diagonal drops fractions twice")
            << QRectF(0, 0, 333, 333) << missing << missing << 1 << QPointF(132, 199);
    }
    void placesTheMarker()
    {
        QFETCH(QRectF, image);
        QFETCH(float, x);
        QFETCH(float, y);
        QFETCH(int, index);
        QTEST(markerCenter(image, percent(x), percent(y), index), "expected");
    }

    void survivesAnyNumber()
    {
        using Limits = std::numeric_limits<float>;
        const QRectF image(10, 20, 300, 400);
        const QRectF room = image.adjusted(15, 15, -15, -15);
        for (const float value : {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(), Limits::max(), 1e30f}) {
            const QPointF center = markerCenter(image, value, value, 0);
            QVERIFY2(center.x() >= room.left() && center.x() <= room.right(), QByteArray::number(value));
            QVERIFY2(center.y() >= room.top() && center.y() <= room.bottom(), QByteArray::number(value));
        }
    }
};

QTEST_APPLESS_MAIN(tst_HotspotPlacement)
#include "tst_HotspotPlacement.moc"
