#include "service/StaticFiles.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>

#include <fcntl.h>
#include <sys/stat.h>

namespace MatchService
{

namespace
{

QByteArray contentType(const QString &path)
{
    static const QHash<QString, QByteArray> types = {
        {QStringLiteral("jpg"), "image/jpeg"},
        {QStringLiteral("jpeg"), "image/jpeg"},
        {QStringLiteral("png"), "image/png"},
        {QStringLiteral("svg"), "image/svg+xml"},
        {QStringLiteral("webm"), "video/webm"},
        {QStringLiteral("mp4"), "video/mp4"},
        {QStringLiteral("wav"), "audio/wav"},
        {QStringLiteral("ogg"), "audio/ogg"},
        {QStringLiteral("mp3"), "audio/mpeg"},
        {QStringLiteral("html"), "text/html; charset=utf-8"},
        {QStringLiteral("css"), "text/css; charset=utf-8"},
    };
    return types.value(QFileInfo(path).suffix().toLower());
}

struct Range {
    quint64 first = 0;
    quint64 length = 0;
};

enum class RangeKind { Whole, Part, Unsatisfiable };

// A header that is not understood asks for nothing; several ranges are answered with the whole file, which is allowed.
RangeKind readRange(const QByteArray &header, quint64 size, Range &range)
{
    static const QRegularExpression form(QStringLiteral("^bytes=\\s*([0-9]*)\\s*-\\s*([0-9]*)\\s*$"));
    range = {0, size};
    const auto match = form.match(QString::fromLatin1(header));
    const QString first = match.captured(1);
    const QString last = match.captured(2);
    if (!match.hasMatch() || (first.isEmpty() && last.isEmpty()))
        return RangeKind::Whole;

    bool firstFits = true;
    bool lastFits = true;
    const quint64 from = first.isEmpty() ? 0 : first.toULongLong(&firstFits);
    const quint64 to = last.isEmpty() ? 0 : last.toULongLong(&lastFits);
    if (first.isEmpty()) {
        const quint64 length = lastFits ? std::min(to, size) : size;
        if (length == 0)
            return RangeKind::Unsatisfiable;
        range = {size - length, length};
        return RangeKind::Part;
    }
    if (!firstFits || from >= size)
        return RangeKind::Unsatisfiable;
    if (!last.isEmpty() && lastFits && to < from)
        return RangeKind::Whole;
    const quint64 end = last.isEmpty() || !lastFits ? size - 1 : std::min(to, size - 1);
    range = {from, end - from + 1};
    return RangeKind::Part;
}

} // namespace

StaticFiles::StaticFiles(const QString &folder)
    : m_folder(QFileInfo(folder).canonicalFilePath())
{
}

QString StaticFiles::resolved(const QString &path) const
{
    if (path.contains(QChar::Null) || path.contains(QLatin1Char('\\')))
        return {};
    for (const QString &step : path.split(QLatin1Char('/'))) {
        if (step.startsWith(QLatin1Char('.')))
            return {};
    }
    // Links are followed first, so that one that leads out of the folder is seen to.
    const QString file = QFileInfo(m_folder + path).canonicalFilePath();
    return file.startsWith(m_folder + QLatin1Char('/')) ? file : QString();
}

std::optional<HttpResponse> StaticFiles::answer(const HttpRequest &request) const
{
    const QString path = resolved(request.path);
    const QByteArray type = contentType(path);
    if (path.isEmpty() || type.isEmpty())
        return std::nullopt;
    FileDescriptor file(::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    struct stat status = {};
    if (file.get() < 0 || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;

    const auto size = quint64(status.st_size);
    const QByteArray tag =
        '"' + QByteArray::number(size, 36) + '-' + QByteArray::number(qint64(status.st_mtime), 36) + '"';
    Range range{0, size};
    RangeKind kind = RangeKind::Whole;
    if (request.headers.contains("range") && request.headers.value("if-range", tag) == tag)
        kind = readRange(request.headers.value("range"), size, range);

    HttpResponse response;
    response.headers = {
        {"Content-Type", type}, {"Accept-Ranges", "bytes"}, {"ETag", tag}, {"X-Content-Type-Options", "nosniff"}};
    if (kind == RangeKind::Unsatisfiable) {
        response.status = 416;
        response.headers.append({"Content-Range", "bytes */" + QByteArray::number(size)});
        return response;
    }
    if (kind == RangeKind::Part) {
        response.status = 206;
        response.headers.append({"Content-Range",
                                 "bytes " + QByteArray::number(range.first) + '-'
                                     + QByteArray::number(range.first + range.length - 1) + '/'
                                     + QByteArray::number(size)});
    }
    response.file = FileSlice{std::move(file), range.first, range.length};
    return response;
}

} // namespace MatchService
