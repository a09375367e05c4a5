#include "Brevanto/ServerManager/BrevantoServerManager.h"

#include <QJsonArray>

namespace
{

BrevantoServerResult metaMatch(const QJsonObject &json)
{
    const QString message = json[QLatin1String("status")][QLatin1String("message")].toString();
    if (message != QLatin1String("Success") && message != QLatin1String("Poll data")
        && message != QLatin1String("Ad data"))
        return {};
    const QJsonValue data = json[QLatin1String("data")];
    if (data.isUndefined())
        return {};
    const auto matches = BrevantoMatch::populateMatchesUsingArray(QJsonArray{data});
    if (!matches || matches->isEmpty())
        return {};
    return matches->first();
}

BrevantoServerResult shortURL(const QJsonObject &json)
{
    if (json[QLatin1String("status_txt")].toString() != QLatin1String("OK"))
        return {};
    const QString url = json[QLatin1String("data")][QLatin1String("url")].toString();
    if (url.isEmpty())
        return {};
    return url;
}

BrevantoServerResult matchGroups(const QJsonObject &json)
{
    const auto matches = BrevantoMatch::populateMatchesUsingArray(json[QLatin1String("matches")]);
    return BrevantoMatchGroup::groupMatchesByAdImageUrl(matches.value_or(BrevantoMatchList()));
}

} // namespace

BrevantoServerResult BrevantoServerManager::parseObjectFromDict(const QJsonObject &json, qint32 requestCode)
{
    switch (requestCode) {
    case BrevantoAPIRequestCodeAdMeta:
        return metaMatch(json);
    case BrevantoAPIRequestCodeShortURL:
        return shortURL(json);
    case BrevantoAPIRequestCodeImageSearch:
        return matchGroups(json);
    default:
        return {};
    }
}
