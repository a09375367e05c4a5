// Requests to the match service: a line "METHOD PATH?QUERY", a line with the content type, and the body.
#include "fuzz/Require.h"

#include "service/MatchService.h"
#include "service/UploadBody.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QUrl>
#include <QUrlQuery>

#include <cstdint>

namespace
{

using namespace MatchService;

Service &service()
{
    // One small ad is enough to answer from.
    static const QTemporaryDir folder;
    static Service only = [] {
        const QDir catalogue(folder.path());
        catalogue.mkpath(QStringLiteral("ads"));
        QFile::copy(QStringLiteral(FUZZ_AD ".json"), catalogue.filePath(QStringLiteral("ads/one.json")));
        QFile::copy(QStringLiteral(FUZZ_AD ".jpg"), catalogue.filePath(QStringLiteral("ads/one.jpg")));
        return Service(Catalogue(folder.path()), FeatureCache(folder.path()));
    }();
    return only;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray input(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    const qsizetype first = input.indexOf('\n');
    const qsizetype second = first < 0 ? -1 : input.indexOf('\n', first + 1);
    if (second < 0)
        return 0;
    HttpRequest request;
    const qsizetype blank = input.left(first).indexOf(' ');
    request.method = input.left(blank < 0 ? 0 : blank);
    const QUrl url = QUrl::fromEncoded("http://127.0.0.1:8750" + input.mid(blank + 1, first - blank - 1));
    request.path = url.path(QUrl::FullyDecoded);
    for (const auto &[name, value] : QUrlQuery(url).queryItems(QUrl::FullyDecoded))
        request.arguments.insert(name, value);
    request.headers.insert("content-type", input.mid(first + 1, second - first - 1));
    request.headers.insert("range", request.headers.value("content-type"));
    request.localAuthority = "127.0.0.1:8750";
    request.body = input.mid(second + 1);
    const bool isTaken = service().takesBody(request);
    if (!isTaken)
        request.body.clear();
    const HttpResponse response = service().answer(request);
    require(response.status >= 200 && response.status < 600, "an answer has a status");
    return 0;
}
