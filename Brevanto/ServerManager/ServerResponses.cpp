#include "Brevanto/ServerManager/ServerResponses.h"

#include "Platform/Foundation/Log.h"

#include <QJsonDocument>

#include <cmath>
#include <numeric>
#include <string_view>

namespace
{

// What is a byte or two in an answer may be a hundred as a record. An answer of the greatest size that is made of
// matches, as services send them, stays below this.
constexpr int mostValues = 500'000;

// Lists come as texts with commas too, which may be escaped.
int escapedCommas(std::string_view data)
{
    constexpr std::string_view escape = "\\u002";
    int count = 0;
    for (auto at = data.find(escape); at != data.npos; at = data.find(escape, at + escape.size())) {
        const auto rest = data.substr(at + escape.size());
        count += rest.starts_with('c') || rest.starts_with('C');
    }
    return count;
}

// A comma or an opening bracket stands before each value. Compilers make far better loops of an int that counts bytes
// than of std::count_if's long one.
bool hasTooManyValues(const QByteArray &data)
{
    const auto counted = [](int count, char byte) { return count + (byte == ',' || byte == '[' || byte == '{'); };
    return std::accumulate(data.begin(), data.end(), escapedCommas({data.data(), size_t(data.size())}), counted)
        > mostValues;
}

// Undefined for bytes that do not decode or hold too much, and for a list or a lone value, of which no answer that is
// accepted consists.
QJsonValue decoded(const QByteArray &data)
{
    if (hasTooManyValues(data))
        return QJsonValue::Undefined;
    const QJsonDocument document = QJsonDocument::fromJson(data);
    return document.isObject() ? QJsonValue(document.object()) : QJsonValue(QJsonValue::Undefined);
}

// Without its fraction; of a text, the number it spells.
double integerValue(const QJsonValue &value)
{
    return std::trunc(value.isString() ? value.toString().toDouble() : value.toDouble());
}

void logFailure(const std::optional<Platform::URLError> &error)
{
    Platform::log(QStringLiteral("A request failed: %1")
                      .arg(error ? error->description : QStringLiteral("its answer is not accepted")));
}

void complete(const QuillfernServerParamsObject &params, const BrevantoServerResult &result)
{
    if (params.completionBlock())
        params.completionBlock()(result);
}

void fail(const QuillfernServerParamsObject &params, const std::optional<Platform::URLError> &error)
{
    logFailure(error);
    if (params.failureBlock())
        params.failureBlock()(error);
}

void handleServiceAnswer(BrevantoServerManager &manager, const QuillfernServerParamsObject &params,
                         const QByteArray &data)
{
    const QJsonValue json = decoded(data);
    if (!BrevantoServerManager::verifyTheJSONResponse(json)) {
        logFailure(std::nullopt);
        return;
    }
    const auto result = BrevantoServerManager::parseObjectFromDict(json.toObject(), params.apiRequestCode());
    manager.deleteOldObjectAndSaveNew(result, params);
    complete(params, result);
}

void handleImage(BrevantoServerManager &manager, const QuillfernServerParamsObject &params, const QByteArray &data)
{
    const Platform::Image image = Platform::Image::withData(data);
    if (image.isNull()) {
        fail(params, std::nullopt);
        return;
    }
    manager.deleteOldObjectAndSaveNew(image, params);
    complete(params, image);
}

void handleShortURL(const QuillfernServerParamsObject &params, const QByteArray &data)
{
    const QJsonObject json = decoded(data).toObject();
    if (integerValue(json[QLatin1String("status_code")]) == 200)
        complete(params, BrevantoServerManager::parseObjectFromDict(json, BrevantoAPIRequestCodeShortURL));
    else
        complete(params, {});
}

void handleSeparateAnswer(BrevantoServerManager &manager, const QuillfernServerParamsObject &params,
                          const QByteArray &data)
{
    switch (params.apiRequestCode()) {
    case BrevantoAPIRequestCodeImage:
        handleImage(manager, params, data);
        break;
    case BrevantoAPIRequestCodeShortURL:
        handleShortURL(params, data);
        break;
    case BrevantoAPIRequestCodeLogUpload:
        complete(params, {});
        break;
    default:
        break;
    }
}

} // namespace

bool BrevantoServerManager::verifyTheJSONResponse(const QJsonValue &json)
{
    const QJsonValue code = json[QLatin1String("status")][QLatin1String("code")];
    return code.isDouble() && integerValue(code) == 0;
}

void handleGetResponse(BrevantoServerManager &manager, const QuillfernServerParamsObject &params,
                       const std::optional<QByteArray> &data, const std::optional<Platform::URLError> &error)
{
    if (data && !params.partialURL().isNull() && !error)
        handleServiceAnswer(manager, params, *data);
    else if (data && !params.separateURL().isNull() && !error)
        handleSeparateAnswer(manager, params, *data);
    else if (error)
        fail(params, error);
}

void handlePostResponse(const QuillfernServerParamsObject &params, const std::optional<QByteArray> &data,
                        const std::optional<Platform::URLError> &error)
{
    if (!data) {
        if (error)
            fail(params, error);
        return;
    }
    const QJsonValue json = decoded(*data);
    if (BrevantoServerManager::verifyTheJSONResponse(json))
        complete(params, BrevantoServerManager::parseObjectFromDict(json.toObject(), params.apiRequestCode()));
    else
        fail(params, std::nullopt);
}
