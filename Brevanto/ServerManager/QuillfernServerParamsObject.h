#pragma once

#include "Brevanto/Model/BrevantoMatchGroup.h"
#include "Platform/Graphics/Image.h"
#include "Platform/Network/URLSession.h"

#include <QByteArray>
#include <QString>
#include <QVariantMap>

#include <functional>
#include <memory>
#include <optional>
#include <variant>

class BrevantoMatch;

// HTTP method of a call. A description may hold any other number: nothing is sent then.
enum BrevantoAPIRequestType : qint32 {
    BrevantoAPIRequestTypeGet = 0, // paramsDict is the query
    BrevantoAPIRequestTypePost = 1, // paramsDict is in the body
};

// Kind of a call, which decides how its answer is read. Other numbers are possible and have no decoding.
enum BrevantoAPIRequestCode : qint32 {
    BrevantoAPIRequestCodeAdMeta = 0, // one ad: a BrevantoMatch
    BrevantoAPIRequestCodeImage = 1, // a picture: a Platform::Image
    BrevantoAPIRequestCodeShortURL = 2, // a short address: a QString
    BrevantoAPIRequestCodeLogUpload = 3, // nothing
    BrevantoAPIRequestCodeImageSearch = 4, // what a photo shows: a BrevantoMatchGroupList
};

// What an answer was decoded to; std::monostate stands for "nothing".
using BrevantoServerResult =
    std::variant<std::monostate, std::shared_ptr<BrevantoMatch>, Platform::Image, QString, BrevantoMatchGroupList>;

// Describes one call to the service. A fresh object has every value null, absent or zero. It is made, filled and handed
// to BrevantoServerManager in one go and not changed afterwards: threads of the manager read it until the answer is
// handled.
class QuillfernServerParamsObject
{
public:
    // What the request code says the answer is, once it has been accepted.
    using CompletionBlock = std::function<void(const BrevantoServerResult &result)>;
    // The transport's error, or nothing when a body came that was not acceptable.
    using FailureBlock = std::function<void(const std::optional<Platform::URLError> &error)>;

    // Path below the service's base URL; null when the request does not go to the service.
    QString partialURL() const { return m_partialURL; }
    void setPartialURL(const QString &partialURL) { m_partialURL = partialURL; }

    // Absolute address, used when partialURL is null.
    QString separateURL() const { return m_separateURL; }
    void setSeparateURL(const QString &separateURL) { m_separateURL = separateURL; }

    // Query of a GET, body of a POST. Values are escaped already. Sent in the order of their keys. Leave it absent
    // rather than empty: a POST without image or file cannot be made from an empty one, which is a fault.
    const std::optional<QVariantMap> &paramsDict() const { return m_paramsDict; }
    void setParamsDict(const std::optional<QVariantMap> &paramsDict) { m_paramsDict = paramsDict; }

    // JPEG bytes to upload.
    const std::optional<QByteArray> &imageData() const { return m_imageData; }
    void setImageData(const std::optional<QByteArray> &imageData) { m_imageData = imageData; }

    // Bytes of a text log to upload, used when there is no imageData.
    const std::optional<QByteArray> &fileData() const { return m_fileData; }
    void setFileData(const std::optional<QByteArray> &fileData) { m_fileData = fileData; }

    // Key under which the answer could be cached; null for none.
    QString cacheKey() const { return m_cacheKey; }
    void setCacheKey(const QString &cacheKey) { m_cacheKey = cacheKey; }

    // How long a cached answer would stay valid, in seconds.
    double cacheExpiryTime() const { return m_cacheExpiryTime; }
    void setCacheExpiryTime(double cacheExpiryTime) { m_cacheExpiryTime = cacheExpiryTime; }

    // One of BrevantoAPIRequestType, or any other number.
    qint32 apiRequestType() const { return m_apiRequestType; }
    void setApiRequestType(qint32 apiRequestType) { m_apiRequestType = apiRequestType; }

    // One of BrevantoAPIRequestCode, or any other number.
    qint32 apiRequestCode() const { return m_apiRequestCode; }
    void setApiRequestCode(qint32 apiRequestCode) { m_apiRequestCode = apiRequestCode; }

    // What is told the answer, on the URL session's thread. May be empty.
    const CompletionBlock &completionBlock() const { return m_completionBlock; }
    void setCompletionBlock(CompletionBlock completionBlock) { m_completionBlock = std::move(completionBlock); }
    // What is told that there is none, on the URL session's thread. May be empty.
    const FailureBlock &failureBlock() const { return m_failureBlock; }
    void setFailureBlock(FailureBlock failureBlock) { m_failureBlock = std::move(failureBlock); }

private:
    QString m_partialURL;
    QString m_separateURL;
    std::optional<QVariantMap> m_paramsDict;
    std::optional<QByteArray> m_imageData;
    std::optional<QByteArray> m_fileData;
    QString m_cacheKey;
    double m_cacheExpiryTime = 0;
    qint32 m_apiRequestType = 0;
    qint32 m_apiRequestCode = 0;
    CompletionBlock m_completionBlock;
    FailureBlock m_failureBlock;
};
