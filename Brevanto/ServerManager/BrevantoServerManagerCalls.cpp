#include "Brevanto/ServerManager/BrevantoServerManager.h"

#include "Brevanto/ServerManager/DeviceDescription.h"
#include "Brevanto/ServerManager/ServiceAddress.h"
#include "Platform/Foundation/Bundle.h"

namespace
{

// The dynamic block for a typed one: a result of another kind, or none, arrives as `Argument()`.
template <typename Result, typename Argument = Result>
QuillfernServerParamsObject::CompletionBlock dynamic(const std::function<void(const Argument &)> &block)
{
    if (!block)
        return nullptr;
    return [block](const BrevantoServerResult &result) {
        const auto *value = std::get_if<Result>(&result);
        block(value ? Argument(*value) : Argument());
    };
}

} // namespace

void BrevantoServerManager::getMeta(const QString &adId, qint32 category,
                                    const std::function<void(const std::shared_ptr<BrevantoMatch> &)> &completionBlock,
                                    const FailureBlock &failureBlock)
{
    if (adId.isEmpty()) {
        if (failureBlock)
            failureBlock(std::nullopt);
        return;
    }
    const auto params = std::make_shared<QuillfernServerParamsObject>();
    if (category == 0) {
        params->setPartialURL(QStringLiteral("ads/getAd"));
        params->setParamsDict(QVariantMap{{QStringLiteral("ad_id"), getPercentEscapedString(adId)}});
    }
    const QString name = getSelectorFirstName(QStringLiteral("getMeta:Category:WithCompletionBlock:andFailureBlock:"));
    params->setCacheKey(getCacheKeyFromArray({name, adId}));
    params->setCacheExpiryTime(86400.0);
    params->setApiRequestType(BrevantoAPIRequestTypeGet);
    params->setApiRequestCode(BrevantoAPIRequestCodeAdMeta);
    params->setCompletionBlock(dynamic<std::shared_ptr<BrevantoMatch>>(completionBlock));
    params->setFailureBlock(failureBlock);
    requestWithParams(params);
}

void BrevantoServerManager::getImage(const QString &urlString,
                                     const std::function<void(const Platform::Image &)> &completionBlock,
                                     const FailureBlock &failureBlock)
{
    if (urlString.isEmpty()) {
        if (completionBlock)
            completionBlock(Platform::Image());
        return;
    }
    const auto params = std::make_shared<QuillfernServerParamsObject>();
    params->setSeparateURL(urlString);
    const QString name = getSelectorFirstName(QStringLiteral("getImage:withCompletionBlock:andFailureBlock:"));
    params->setCacheKey(getCacheKeyFromArray({name, urlString}));
    params->setCacheExpiryTime(604800.0);
    params->setApiRequestType(BrevantoAPIRequestTypeGet);
    params->setApiRequestCode(BrevantoAPIRequestCodeImage);
    params->setCompletionBlock(dynamic<Platform::Image>(completionBlock));
    params->setFailureBlock(failureBlock);
    requestWithParams(params);
}

void BrevantoServerManager::getShortenedURLFor(const QString &longUrl,
                                               const std::function<void(const QString &)> &completionBlock,
                                               const FailureBlock &failureBlock)
{
    if (longUrl.isEmpty()) {
        if (completionBlock)
            completionBlock(QString());
        return;
    }
    const auto params = std::make_shared<QuillfernServerParamsObject>();
    params->setSeparateURL(
        QStringLiteral("%1?access_token=%2&longUrl=%3")
            .arg(ServiceAddress::shortenURL(), ServiceAddress::shortenerToken(), getPercentEscapedString(longUrl)));
    params->setApiRequestType(BrevantoAPIRequestTypeGet);
    params->setApiRequestCode(BrevantoAPIRequestCodeShortURL);
    params->setCompletionBlock(dynamic<QString>(completionBlock));
    params->setFailureBlock(failureBlock);
    apiCallWithParams(params);
}

void BrevantoServerManager::postCapturedImageData(
    const QByteArray &jpegData,
    const std::function<void(const std::optional<BrevantoMatchGroupList> &)> &completionBlock,
    const FailureBlock &failureBlock)
{
    const auto params = std::make_shared<QuillfernServerParamsObject>();
    params->setPartialURL(QStringLiteral("image/upload"));
    const QString version = Platform::Bundle::mainBundleShortVersion();
    const QString appName = QStringLiteral("Brevanto-") + (version.isEmpty() ? QStringLiteral("(null)") : version);
    const QString osName = DeviceDescription::systemName() + QLatin1String("- ") + DeviceDescription::systemVersion();
    params->setParamsDict(QVariantMap{
        {QStringLiteral("username"), getPercentEscapedString(QStringLiteral("dummy"))},
        {QStringLiteral("appName"), getPercentEscapedString(appName)},
        {QStringLiteral("phoneModel"), getPercentEscapedString(DeviceDescription::model())},
        {QStringLiteral("osName"), osName},
    });
    params->setImageData(jpegData);
    params->setApiRequestType(BrevantoAPIRequestTypePost);
    params->setApiRequestCode(BrevantoAPIRequestCodeImageSearch);
    params->setCompletionBlock(dynamic<BrevantoMatchGroupList, std::optional<BrevantoMatchGroupList>>(completionBlock));
    params->setFailureBlock(failureBlock);
    apiCallWithParams(params);
}
