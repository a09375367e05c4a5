#pragma once

#include "Brevanto/BrevantoExport.h"
#include "Brevanto/ServerManager/QuillfernServerParamsObject.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QMutex>
#include <QVariantList>

// Talks to the match service and the URL shortener.
//
// Calls return at once, from any thread. Their blocks run on the URL session's own thread, one after the other, never
// on the main thread, except where a call says "at once". Blocks may be empty.
//
// No block at all is called, so that a caller who waits needs a time-out of its own,
// - when an answer to getMeta() has no object, no "status" with the "code" 0, or more values than are read;
// - when the manager or its session ends first, or the manager has no session (setCurrentSession());
// - for a described call of an unknown request type, and for a GET to a separate address with a request code other than
//   those of an image, a short address and a log.
class BREVANTO_EXPORT BrevantoServerManager : public std::enable_shared_from_this<BrevantoServerManager>
{
    struct Key {
        explicit Key() = default;
    };

public:
    // How calls travel: see QuillfernServerParamsObject.
    using ParamsObject = std::shared_ptr<const QuillfernServerParamsObject>;
    // How failures do.
    using FailureBlock = QuillfernServerParamsObject::FailureBlock;

    // The shared manager, made when first asked for. Lives until the application object goes, after which there is to
    // be no call. Threads that race for the first one may each be given a manager of their own; the last one made is
    // kept.
    static std::shared_ptr<BrevantoServerManager> sharedServerManager();

    // A manager with a session of its own. Replaces the work queue of all managers.
    static std::shared_ptr<BrevantoServerManager> create();
    // What create() calls; nobody else has a key.
    explicit BrevantoServerManager(Key);
    // Ends its session, unless somebody else holds that one: see Platform::URLSession::invalidate().
    ~BrevantoServerManager();

    // The session that sends the requests of this manager. Without one (null) nothing is sent and no block is called. A
    // request under way stays with the session that it began with, and ends without its blocks when nobody holds that
    // one any more. From any thread.
    std::shared_ptr<Platform::URLSession> currentSession() const;
    void setCurrentSession(const std::shared_ptr<Platform::URLSession> &session);
    // What the manager's own session was made with. Setting another one changes no session: to have other limits, make
    // a session with it and set that. From any thread.
    Platform::URLSession::Configuration currentSessionConfiguration() const;
    void setCurrentSessionConfiguration(const Platform::URLSession::Configuration &configuration);

    // Service calls. A null QString or Platform::Image in a completion stands for "none".

    // Fetches one ad. `category` is its kind: 0, an ad, is the only one that the service has. Any other number makes a
    // request without an address, and failureBlock gets its BadURL. The completion gets null for an ad that the service
    // does not describe. An empty adId calls failureBlock with nothing, at once.
    void getMeta(const QString &adId, qint32 category,
                 const std::function<void(const std::shared_ptr<BrevantoMatch> &)> &completionBlock,
                 const FailureBlock &failureBlock);
    // Downloads an image. An empty address calls completionBlock with a null image, at once; bytes that are no image
    // call failureBlock with nothing.
    void getImage(const QString &urlString, const std::function<void(const Platform::Image &)> &completionBlock,
                  const FailureBlock &failureBlock);
    // Shortens an address. Null when the shortener declines, and, at once, for an empty address.
    void getShortenedURLFor(const QString &longUrl, const std::function<void(const QString &)> &completionBlock,
                            const FailureBlock &failureBlock);
    // Uploads the JPEG bytes of a photo and completes with the groups of matches found: an empty list when there
    // are none, never null. The bytes are sent as they are, none too. failureBlock gets nothing when the service
    // answered with a failure.
    void
    postCapturedImageData(const QByteArray &jpegData,
                          const std::function<void(const std::optional<BrevantoMatchGroupList> &)> &completionBlock,
                          const FailureBlock &failureBlock);

    // Sends a described call from the work queue, a turn of the queue later than apiCallWithParams() does.
    void requestWithParams(const ParamsObject &params);
    // Sends a described call from the work queue.
    void apiCallWithParams(const ParamsObject &params);

    // Whether a decoded answer is an object whose "status" holds the number 0 under "code".
    static bool verifyTheJSONResponse(const QJsonValue &json);
    // The object that an answer stands for; nothing for codes without one and for answers that hold none.
    static BrevantoServerResult parseObjectFromDict(const QJsonObject &json, qint32 requestCode);
    // Where an answer would be kept under its cacheKey. Keeps nothing: every call goes to the network.
    void deleteOldObjectAndSaveNew(const BrevantoServerResult &result, const QuillfernServerParamsObject &params);

    // The elements joined by "-". Raises a range error when there are none.
    static QString getCacheKeyFromArray(const QVariantList &array);
    // "getMeta" of "getMeta:Category:".
    static QString getSelectorFirstName(const QString &selectorName);

    // Request bodies.

    // Letters, digits and -._~ as they are, a space as "+", everything else as the escaped bytes of its UTF-8 form.
    static QString getPercentEscapedString(const QString &string);
    // "key=value&key=value"; empty for no dictionary. Raises a range error for an empty one.
    static QString getStringFromParamsDict(const std::optional<QVariantMap> &params);
    // The leading separator and one multipart field for each string of the dictionary; other values are left out.
    static QByteArray getDataToSendFromParamsDict(const std::optional<QVariantMap> &params);
    // The multipart part of a photo; its field has a name only for an image search.
    static QByteArray getDataToSendForImageData(const std::optional<QByteArray> &imageData, const QString &fileName,
                                                const QuillfernServerParamsObject &params);
    // The multipart part of a log.
    static QByteArray getDataToSendForFileData(const std::optional<QByteArray> &fileData, const QString &fileName);

private:
    Q_DISABLE_COPY_MOVE(BrevantoServerManager)
    void send(const ParamsObject &params);
    static Platform::URLRequest postRequest(const QuillfernServerParamsObject &params);
    static Platform::URLRequest getRequest(const QuillfernServerParamsObject &params);

    mutable QMutex m_mutex;
    Platform::URLSession::Configuration m_currentSessionConfiguration;
    std::shared_ptr<Platform::URLSession> m_currentSession;
};
