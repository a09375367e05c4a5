#include "service/UploadBody.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace MatchService
{

namespace
{

constexpr char formType[] = "multipart/form-data; boundary=14737809831466499882746641449";
constexpr char separator[] = "\r\n--14737809831466499882746641449\r\n";
constexpr char fieldStart[] = "Content-Disposition: form-data; name=\"";
constexpr char fileStart[] = "Content-Disposition: form-data; name=\"uploadedfile\"; filename=\"image.jpg\""
                             "Content-Type: application/octet-stream\r\n\r\n";
constexpr char nameEnd[] = "\"\r\n\r\n";
constexpr std::array fieldNames = {"username", "appName", "phoneModel", "osName"};

template <std::size_t size>
constexpr qsizetype lengthOf(const char (&)[size])
{
    return qsizetype(size) - 1;
}

UploadBody faulty(const char *reason)
{
    UploadBody upload;
    upload.fault = QString::fromUtf8(reason);
    return upload;
}

// Reads one field and leaves `place` behind the separator that follows it; an empty reason is success.
const char *readField(const QByteArray &body, qsizetype &place, QHash<QByteArray, QByteArray> &fields)
{
    const qsizetype end = body.indexOf(separator, place);
    if (end < 0)
        return "A form field has no end";
    const QByteArray field = body.mid(place, end - place);
    const qsizetype nameLength = field.indexOf(nameEnd) - lengthOf(fieldStart);
    if (!field.startsWith(fieldStart) || nameLength < 0)
        return "A form field is not well formed";
    const QByteArray name = field.mid(lengthOf(fieldStart), nameLength);
    if (std::find(fieldNames.begin(), fieldNames.end(), name) == fieldNames.end())
        return "There is an unknown form field";
    if (fields.contains(name))
        return "A form field comes twice";
    fields.insert(name, field.mid(lengthOf(fieldStart) + nameLength + lengthOf(nameEnd)));
    place = end + lengthOf(separator);
    return nullptr;
}

} // namespace

UploadBody readUploadBody(const QByteArray &contentType, const QByteArray &body)
{
    if (contentType != formType)
        return faulty("The content type is not that of an upload");
    if (body.isEmpty())
        return faulty("The body is empty");
    if (!body.startsWith(separator))
        return faulty("The body does not start with a boundary");

    UploadBody upload;
    qsizetype place = lengthOf(separator);
    while (QByteArrayView(body).sliced(place).startsWith(fieldStart)
           && !QByteArrayView(body).sliced(place).startsWith(fileStart)) {
        if (const char *reason = readField(body, place, upload.fields))
            return faulty(reason);
    }
    if (!QByteArrayView(body).sliced(place).startsWith(fileStart))
        return faulty("The photo is missing");
    if (upload.fields.size() != qsizetype(fieldNames.size()))
        return faulty("A form field is missing");
    place += lengthOf(fileStart);
    const qsizetype end = body.size() - lengthOf(separator);
    if (end < place || !body.endsWith(separator))
        return faulty("The photo has no end");
    if (end == place)
        return faulty("The photo is empty");
    upload.photo = body.mid(place, end - place);
    return upload;
}

} // namespace MatchService
