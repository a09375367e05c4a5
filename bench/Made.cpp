#include "Made.h"

#include "Brevanto/ServerManager/ServerResponses.h"
#include "support/TestImages.h"

#include <QColorSpace>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <random>

using namespace Qt::StringLiterals;

namespace
{

QString address(QStringView kind, int number, QStringView suffix)
{
    return u"https://ads.example/catalogue/%1/%2%3"_s.arg(kind).arg(number).arg(suffix);
}

QJsonArray captionedImages(int number)
{
    QJsonArray images;
    for (int index = 0; index < 3; ++index)
        images.append(
            QJsonObject{{u"url"_s, address(u"images", 3 * number + index, u".jpg")},
                        {u"caption"_s, u"Picture %1: sweet, with a little bite at the end."_s.arg(index + 1)}});
    return images;
}

QJsonObject match(int number, int matchesPerImage)
{
    return {
        {u"id"_s, u"ad-%1"_s.arg(number)},
        {u"title"_s, u"Orange juice, number %1"_s.arg(number)},
        {u"description"_s, u"Eleven oranges in every bottle, pressed, chilled and capped within the hour."_s},
        {u"date"_s, u"2026-05-04"_s},
        {u"author"_s, QJsonArray{u"Studio Kelp"_s, u"Mara Oskar"_s}},
        {u"category"_s, u"Drinks"_s},
        {u"source"_s, u"Zumbaro"_s},
        {u"language"_s, u"en"_s},
        {u"section"_s, u"Groceries"_s},
        {u"tag"_s, u"juice"_s},
        {u"theme"_s, u"F4711F"_s},
        {u"app_img"_s, address(u"ads", number / matchesPerImage, u".jpg")},
        {u"xPercent"_s, number % 100},
        {u"yPercent"_s, 0.5 + (number * 7) % 99},
        {u"ad_reviews_url"_s, address(u"pages", number, u".html")},
        {u"vid_urls"_s, address(u"media", number, u".webm")},
        {u"ph_number"_s, u"+15550100101"_s},
        {u"imageGalleryCaption"_s, captionedImages(number)},
        {u"commerce_url"_s, address(u"shop", number, u".html")},
        {u"share_url"_s, address(u"pages", number, u".html?share=1")},
        {u"thumbUrl"_s, address(u"images", number, u"-small.jpg")},
    };
}

} // namespace

QByteArray Made::photo(const QSize &stored, int exifOrientation)
{
    QImage picture = QImage(QStringLiteral(BENCH_PHOTO)).convertToFormat(QImage::Format_RGB32);
    if ((picture.width() < picture.height()) != (stored.width() < stored.height()))
        picture = picture.transformed(QTransform().rotate(90));
    picture = picture.scaled(stored, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    std::minstd_rand random(1);
    std::uniform_int_distribution noise(-4, 4);
    for (int y = 0; y < picture.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(picture.scanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            const int grain = noise(random);
            const auto grained = [grain](int value) { return qBound(0, value + grain, 255); };
            line[x] = qRgb(grained(qRed(line[x])), grained(qGreen(line[x])), grained(qBlue(line[x])));
        }
    }
    picture.setColorSpace(QColorSpace::DisplayP3); // as phones do
    return TestImages::jpeg(picture, exifOrientation);
}

QByteArray Made::reply(int matches, int matchesPerImage)
{
    QJsonArray list;
    for (int number = 0; number < matches; ++number)
        list.append(match(number, matchesPerImage));
    const QJsonObject envelope{{u"status"_s, QJsonObject{{u"code"_s, 0}, {u"message"_s, u"Success"_s}}},
                               {u"matches"_s, list}};
    return QJsonDocument(envelope).toJson(QJsonDocument::Compact);
}

void Made::handleReply(const QByteArray &reply, const std::function<void(const BrevantoMatchGroupList &)> &completed)
{
    QuillfernServerParamsObject call;
    call.setApiRequestCode(BrevantoAPIRequestCodeImageSearch);
    call.setCompletionBlock(
        [&completed](const BrevantoServerResult &result) { completed(std::get<BrevantoMatchGroupList>(result)); });
    handlePostResponse(call, reply, {});
}

BrevantoMatchGroupList Made::groups(const QByteArray &reply)
{
    BrevantoMatchGroupList groups;
    handleReply(reply, [&groups](const BrevantoMatchGroupList &completed) { groups = completed; });
    return groups;
}
