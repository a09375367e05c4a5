#include "service/MatchService.h"

#include "service/GreyImage.h"
#include "service/UploadBody.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QSemaphore>
#include <QtCore/QThread>
#include <QtCore/QUrl>

#include <arpa/inet.h>

#include <cstdio>
#include <stdexcept>

namespace MatchService
{

namespace
{

HttpResponse json(int status, const QJsonObject &object)
{
    HttpResponse response;
    response.status = status;
    response.headers = {{"Content-Type", "application/json; charset=utf-8"}, {"Cache-Control", "no-store"}};
    response.body = QJsonDocument(object).toJson(QJsonDocument::Compact);
    return response;
}

QJsonObject statusBlock(int code, const QString &message)
{
    return {{QStringLiteral("code"), code}, {QStringLiteral("message"), message}};
}

HttpResponse success(const QString &message, const QString &key, const QJsonValue &value)
{
    return json(200, {{QStringLiteral("status"), statusBlock(0, message)}, {key, value}});
}

bool isLoopback(const QByteArray &host)
{
    in_addr four = {};
    in6_addr six = {};
    if (inet_pton(AF_INET, host.constData(), &four) == 1)
        return (ntohl(four.s_addr) >> 24) == 127;
    return host == "localhost" || (inet_pton(AF_INET6, host.constData(), &six) == 1 && IN6_IS_ADDR_LOOPBACK(&six));
}

// The address under which the client knows the service. A Host header is believed only where it cannot lead elsewhere.
QString baseOf(const HttpRequest &request)
{
    QString claimed = QStringLiteral("http://%1/").arg(QString::fromUtf8(request.headers.value("host")));
    const QUrl url(claimed, QUrl::StrictMode);
    const bool isPlain = url.isValid() && url.path() == QStringLiteral("/") && url.userInfo().isEmpty()
        && !url.hasQuery() && !url.hasFragment();
    if (isPlain && isLoopback(url.host().toLatin1()))
        return claimed;
    return QStringLiteral("http://%1/").arg(QString::fromLatin1(request.localAuthority));
}

// A bare slash in front of a path does not make it another one.
QString routeOf(const HttpRequest &request)
{
    QString path = request.path;
    while (path.startsWith(QStringLiteral("//")))
        path.remove(0, 1);
    return path;
}

std::vector<AdFeatures> featuresOf(const Catalogue &catalogue, const FeatureCache &cache)
{
    std::vector<AdFeatures> features;
    for (const CatalogueAd &ad : catalogue.ads()) {
        QFile file(catalogue.folder() + QLatin1Char('/') + ad.image);
        if (!file.open(QIODevice::ReadOnly))
            throw std::runtime_error((file.fileName() + QStringLiteral(": ") + file.errorString()).toStdString());
        const QByteArray picture = file.readAll();
        auto known = cache.find(picture);
        if (!known) {
            const GreyImage image = readGreyImage(picture);
            if (!image.fault.isNull())
                throw std::runtime_error((file.fileName() + QStringLiteral(": ") + image.fault).toStdString());
            known = featuresOfAd(image.pixels);
            cache.store(picture, *known);
        }
        features.push_back(std::move(*known));
    }
    return features;
}

} // namespace

Service::Service(Catalogue catalogue, const FeatureCache &cache)
    : m_catalogue(std::move(catalogue))
    , m_recognizer(featuresOf(m_catalogue, cache))
    , m_files(m_catalogue.folder())
    , m_cores(std::make_unique<QSemaphore>(std::max(1, QThread::idealThreadCount())))
{
}

Service::~Service() = default;

bool Service::takesBody(const HttpRequest &request) const
{
    return request.method == "POST" && routeOf(request) == QStringLiteral("/image/upload");
}

HttpResponse Service::answer(const HttpRequest &request)
{
    const QString route = routeOf(request);
    if (takesBody(request))
        return upload(request);
    if (request.method != "GET" && request.method != "HEAD")
        return refusal(405, QStringLiteral("There is nothing here for this method"));
    if (route == QStringLiteral("/image/upload"))
        return refusal(405, QStringLiteral("A photo is posted"));
    if (route == QStringLiteral("/ads/getAd"))
        return adData(request);
    if (route == QStringLiteral("/v3/shorten"))
        return shorten(request);
    if (route.startsWith(QStringLiteral("/s/")))
        return redirect(request);
    if (auto file = m_files.answer(request))
        return std::move(*file);
    return refusal(404, QStringLiteral("There is nothing at this address"));
}

HttpResponse Service::refusal(int status, const QString &reason) const
{
    return json(status, {{QStringLiteral("status"), statusBlock(status, reason)}});
}

HttpResponse Service::upload(const HttpRequest &request)
{
    QElapsedTimer timer;
    timer.start();
    // Before the photo is copied out of the body, so that those who wait hold it once.
    m_cores->acquire();
    const QSemaphoreReleaser turn(m_cores.get());
    const UploadBody body = readUploadBody(request.headers.value("content-type"), request.body);
    if (!body.fault.isNull())
        return refusal(400, body.fault);
    const GreyImage photo = readPhoto(body.photo);
    if (!photo.fault.isNull())
        return refusal(400, photo.fault);
    const auto found = m_recognizer.recognize(photo.pixels);
    if (!found) {
        std::fprintf(stderr, "%d x %d photo: nothing recognised, %lld ms\n", photo.pixels.cols, photo.pixels.rows,
                     static_cast<long long>(timer.elapsed()));
        return success(QStringLiteral("Success"), QStringLiteral("matches"), QJsonArray());
    }
    std::fprintf(stderr, "%d x %d photo: %s, %d features agree, likeness %.2f, %lld ms\n", photo.pixels.cols,
                 photo.pixels.rows, qPrintable(m_catalogue.ads()[found->ad].name), found->inliers, found->correlation,
                 static_cast<long long>(timer.elapsed()));
    return success(QStringLiteral("Success"), QStringLiteral("matches"),
                   m_catalogue.matches(found->ad, baseOf(request)));
}

HttpResponse Service::adData(const HttpRequest &request) const
{
    const auto record = m_catalogue.match(request.arguments.value(QStringLiteral("ad_id")), baseOf(request));
    if (!record)
        return refusal(404, QStringLiteral("There is no such ad"));
    return success(QStringLiteral("Ad data"), QStringLiteral("data"), *record);
}

HttpResponse Service::shorten(const HttpRequest &request)
{
    const auto answer = [](int code, const QString &text, const QJsonValue &data) {
        return json(200,
                    {{QStringLiteral("status_code"), code},
                     {QStringLiteral("status_txt"), text},
                     {QStringLiteral("data"), data}});
    };
    const QString address = request.arguments.value(QStringLiteral("longUrl"));
    if (request.arguments.value(QStringLiteral("access_token")).isEmpty())
        return answer(500, QStringLiteral("MISSING_ARG_ACCESS_TOKEN"), QJsonArray());
    if (address.isEmpty())
        return answer(500, QStringLiteral("MISSING_ARG_URI"), QJsonArray());
    if (!ShortLinks::isAcceptable(address))
        return answer(500, QStringLiteral("INVALID_URI"), QJsonArray());
    const QString code = m_links.codeFor(address);
    return answer(200, QStringLiteral("OK"),
                  QJsonObject{{QStringLiteral("long_url"), address},
                              {QStringLiteral("url"), baseOf(request) + QStringLiteral("s/") + code},
                              {QStringLiteral("hash"), code},
                              {QStringLiteral("global_hash"), code},
                              {QStringLiteral("new_hash"), 0}});
}

HttpResponse Service::redirect(const HttpRequest &request) const
{
    const QString address = m_links.addressFor(routeOf(request).mid(3));
    if (address.isNull())
        return refusal(404, QStringLiteral("There is no such short link"));
    HttpResponse response;
    response.status = 302;
    response.headers = {{"Location", QUrl(address).toEncoded()}};
    return response;
}

} // namespace MatchService
