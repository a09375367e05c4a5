#include "service/tools/drawing/Ads.h"
#include "service/tools/drawing/Brush.h"
#include "service/tools/drawing/Products.h"

namespace Drawing
{

namespace
{

QImage plate(const char *top, const char *bottom)
{
    QImage picture(720, 960, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.fillRect(picture.rect(), downwards(picture.rect(), colour(top), colour(bottom)));
    painter.fillRect(QRectF(0, 720, 720, 240),
                     downwards({0, 720, 1, 240}, QColor(255, 255, 255, 70), QColor(0, 0, 0, 40)));
    return picture;
}

template <typename Paint>
QImage finished(QImage picture, Paint paint)
{
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    paint(painter);
    painter.end();
    addGrain(picture, 3, 12);
    return picture;
}

QImage bottlePicture(const char *drink, const char *top, const char *bottom)
{
    return finished(plate(top, bottom), [drink](QPainter &painter) {
        addRays(painter, {360, 480}, 700, 16, QColor(255, 255, 255, 46));
        addGroundShadow(painter, {360, 856}, 420, 64);
        paintBottle(painter, {232, 190, 256, 666}, colour(drink), colour("#fff4dc"));
        paintCitrusSlice(painter, {150, 800}, 84, colour(drink));
        paintCitrusSlice(painter, {590, 820}, 66, colour(drink).lighter(112));
    });
}

QImage watchPicture(const char *dial)
{
    return finished(plate("#d8dee3", "#8795a1"), [dial](QPainter &painter) {
        addGroundShadow(painter, {380, 500}, 560, 860, 0.5);
        paintWatch(painter, {100, 64, 520, 832}, colour(dial), colour("#c2c8cc"));
    });
}

QImage bicyclePicture(const char *frame, const char *top, const char *bottom)
{
    return finished(plate(top, bottom), [frame](QPainter &painter) {
        addGroundShadow(painter, {360, 706}, 660, 44);
        paintBicycle(painter, {30, 290, 660, 409}, colour(frame), colour("#1a1a1f"));
    });
}

QImage headphonesPicture(const char *shell, const char *top, const char *bottom)
{
    return finished(plate(top, bottom), [shell](QPainter &painter) {
        addGroundShadow(painter, {360, 800}, 560, 60);
        paintHeadphones(painter, {90, 210, 540, 594}, colour(shell), colour("#2a2d34"));
    });
}

QImage bootSole()
{
    return finished(plate("#efe3cf", "#b08968"), [](QPainter &painter) {
        addGroundShadow(painter, {360, 748}, 640, 60);
        paintBoot(painter, {50, 250, 620, 500}, colour("#3f5e4a"), colour("#211d1b"));
    });
}

QImage bootSand()
{
    return finished(plate("#f6ead8", "#d4a373"), [](QPainter &painter) {
        addGroundShadow(painter, {360, 748}, 640, 60);
        paintBoot(painter, {50, 250, 620, 500}, colour("#a65628"), colour("#26211f"));
    });
}

QImage blockTower()
{
    return finished(plate("#caf0f8", "#90e0ef"), [](QPainter &painter) {
        addGroundShadow(painter, {360, 800}, 420, 110);
        const char *colours[] = {"#ffbe0b", "#fb5607", "#ff006e", "#8338ec", "#06d6a0"};
        for (int level = 0; level < 6; ++level)
            paintBlock(painter, {360, 640 - level * 100.0}, 104, colour(colours[level % 5]));
    });
}

QImage blockGate()
{
    return finished(plate("#fff3b0", "#ffd6a5"), [](QPainter &painter) {
        addGroundShadow(painter, {360, 760}, 600, 160);
        const char *colours[] = {"#3a86ff", "#06d6a0", "#ff006e"};
        for (int column = 0; column < 4; ++column) {
            for (int level = 0; level < (column % 3 ? 1 : 4); ++level)
                paintBlock(painter, {230 + column * 82.0, 520 + column * 47.0 - level * 95}, 95,
                           colour(colours[(column + level) % 3]));
        }
    });
}

QImage flaconPicture(const char *scent)
{
    return finished(plate("#fdf0ed", "#e5b9a8"), [scent](QPainter &painter) {
        addGroundShadow(painter, {360, 838}, 440, 56);
        paintFlacon(painter, {160, 320, 400, 520}, colour(scent));
    });
}

QImage plantPicture(const char *green, int leaves)
{
    return finished(plate("#f1f5ec", "#c7d9bd"), [green, leaves](QPainter &painter) {
        addGroundShadow(painter, {360, 868}, 360, 44);
        const int middle = leaves / 2;
        for (int i = 0; i < leaves; ++i) {
            paintLeaf(painter, {360, 700}, 300 + (i % 3) * 70, (i - middle) * 150.0 / leaves,
                      colour(green).lighter(90 + (i % 4) * 12));
        }
        painter.setBrush(across({250, 0, 220, 1}, colour("#faf3e3"), colour("#bda98a")));
        painter.drawPolygon(QPolygonF({QPointF(245, 680), QPointF(475, 680), QPointF(440, 866), QPointF(280, 866)}));
    });
}

QImage bowlPicture(const char *glaze)
{
    return finished(plate("#f2e2c4", "#c98d5a"), [glaze](QPainter &painter) {
        paintBowl(painter, {360, 480}, 300, colour(glaze));
    });
}

QImage recipeCard()
{
    QImage picture(900, 1200, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(picture.rect(), colour("#fffdf4"));
    painter.fillRect(QRectF(0, 0, 900, 190), colour("#6a994e"));
    write(painter, {60, 50, 780, 110}, "Pear and ginger cake", {serif(60, true), Qt::white, Qt::AlignLeft, 0});
    painter.setPen(QPen(colour("#cfd8dc"), 2));
    for (int i = 0; i < 19; ++i)
        painter.drawLine(50, 270 + i * 48, 850, 270 + i * 48);
    write(painter, {60, 232, 780, 900},
          "250 g flour and a pinch of salt\n180 g butter, soft\n3 eggs\n4 ripe pears, in slices\na thumb of ginger, "
          "grated\n\n"
          "Cream the butter with the sugar, add the eggs one by one, then flour and ginger. Lay the pears on top. "
          "Fifty minutes at "
          "medium heat, until a needle comes out clean. Keeps for three days, if nobody knows about it.",
          {sans(37), colour("#37474f"), Qt::AlignLeft, 0});
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour("#a7c957"));
    painter.drawEllipse(QPointF(730, 1060), 80, 96);
    painter.drawEllipse(QPointF(730, 970), 44, 66);
    return picture;
}

QImage cityMap()
{
    QImage picture(900, 1100, QImage::Format_RGB32);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(picture.rect(), colour("#eef0e6"));
    QRandomGenerator random(77);
    for (int i = 0; i < 90; ++i) {
        painter.fillRect(
            QRectF(random.bounded(900), random.bounded(1100), 30 + random.bounded(90), 30 + random.bounded(90)),
            colour(i % 4 ? "#d9d4c5" : "#b7d3a8"));
    }
    for (int i = 0; i < 26; ++i) {
        painter.setPen(QPen(i % 5 ? Qt::white : colour("#f6c453"), i % 5 ? 11 : 20));
        const double at = random.bounded(1000.0);
        i % 2 ? painter.drawLine(QPointF(at, 0), QPointF(at + random.bounded(320.0) - 160, 1100))
              : painter.drawLine(QPointF(0, at), QPointF(900, at + random.bounded(320.0) - 160));
    }
    QPainterPath river(QPointF(-20, 240));
    river.cubicTo(300, 520, 420, 160, 560, 560);
    river.cubicTo(640, 800, 800, 700, 930, 900);
    painter.strokePath(river, QPen(colour("#8ecae6"), 54));
    for (int i = 0; i < 14; ++i) {
        write(painter, {random.bounded(760.0), random.bounded(1060.0), 200, 30},
              i % 2 ? "Harbour Lane" : "Old Mill Street",
              {sans(19, QFont::Medium), colour("#495057"), Qt::AlignLeft, 0});
    }
    return picture;
}

} // namespace

const std::vector<Picture> &adPictures()
{
    static const std::vector<Picture> pictures = {
        {"ads/zumbaro.jpg", &zumbaroAd},   {"ads/mirukko.jpg", &mirukkoAd},   {"ads/fernowick.jpg", &fernowickAd},
        {"ads/velkesta.jpg", &velkestaAd}, {"ads/tarnfell.jpg", &tarnfellAd}, {"ads/klozzo.jpg", &klozzoAd},
        {"ads/humlo.jpg", &humloAd},       {"ads/ostrelle.jpg", &ostrelleAd}, {"ads/nattlund.jpg", &nattlundAd},
        {"ads/orvandel.jpg", &orvandelAd},
    };
    return pictures;
}

const std::vector<Picture> &galleryPictures()
{
    static const std::vector<Picture> pictures = {
        {"images/zumbaro-orange.jpg", [] { return bottlePicture("#ff8a1e", "#fff1c9", "#ffc15e"); }},
        {"images/zumbaro-berry.jpg", [] { return bottlePicture("#c2185b", "#fde4ee", "#f3a6c3"); }},
        {"images/zumbaro-lime.jpg", [] { return bottlePicture("#7cb518", "#f3fbdf", "#cfe89a"); }},
        {"images/orvandel-sea.jpg", [] { return watchPicture("#1d4e68"); }},
        {"images/orvandel-ember.jpg", [] { return watchPicture("#8c2f1b"); }},
        {"images/orvandel-ash.jpg", [] { return watchPicture("#4b4f52"); }},
        {"images/velkesta-mint.jpg", [] { return bicyclePicture("#18c29c", "#e8f7f3", "#a8dccd"); }},
        {"images/velkesta-rust.jpg", [] { return bicyclePicture("#c8553d", "#fbeae4", "#e7b7a5"); }},
        {"images/velkesta-night.jpg", [] { return bicyclePicture("#31356e", "#e5e6f4", "#a9adda"); }},
        {"images/humlo-clay.jpg", [] { return headphonesPicture("#e76f51", "#fdeee9", "#edb8a7"); }},
        {"images/humlo-moss.jpg", [] { return headphonesPicture("#6b8f5e", "#eef5ea", "#bdd2b4"); }},
        {"images/humlo-midnight.jpg", [] { return headphonesPicture("#34466b", "#e9edf6", "#aab8d8"); }},
        {"images/tarnfell-moss.jpg", &bootSole},
        {"images/tarnfell-sand.jpg", &bootSand},
        {"images/klozzo-tower.jpg", &blockTower},
        {"images/klozzo-gate.jpg", &blockGate},
        {"images/ostrelle-amber.jpg", [] { return flaconPicture("#e8985e"); }},
        {"images/ostrelle-rose.jpg", [] { return flaconPicture("#d98aa0"); }},
        {"images/fernowick-fern.jpg", [] { return plantPicture("#2d6a4f", 13); }},
        {"images/fernowick-olive.jpg", [] { return plantPicture("#7a8450", 9); }},
        {"images/mirukko-shoyu.jpg", [] { return bowlPicture("#17324d"); }},
        {"images/mirukko-miso.jpg", [] { return bowlPicture("#6a2c1f"); }},
    };
    return pictures;
}

const std::vector<Picture> &strangePictures()
{
    static const std::vector<Picture> pictures = {{"recipe", &recipeCard}, {"map", &cityMap}};
    return pictures;
}

} // namespace Drawing
