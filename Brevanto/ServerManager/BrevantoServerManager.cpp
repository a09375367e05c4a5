#include "Brevanto/ServerManager/BrevantoServerManager.h"

#include "Brevanto/ServerManager/ServerResponses.h"
#include "Brevanto/ServerManager/ServiceAddress.h"
#include "Platform/Foundation/DispatchQueue.h"

#include <QCoreApplication>
#include <QMutexLocker>
#include <QThreadPool>

#include <cstdlib>
#include <utility>

namespace
{

constexpr std::chrono::seconds requestTimeout{10};

// A reference that threads share.
template <typename Object>
class SharedReference
{
public:
    std::shared_ptr<Object> get()
    {
        const QMutexLocker lock(&m_mutex);
        return m_object;
    }

    void set(std::shared_ptr<Object> object)
    {
        const QMutexLocker lock(&m_mutex);
        m_object.swap(object);
        // What was there before goes after the lock.
    }

private:
    QMutex m_mutex;
    std::shared_ptr<Object> m_object;
};

// The two references are never freed, because threads may still look at them while the process ends.
SharedReference<BrevantoServerManager> &sharedManager()
{
    static auto &reference = *new SharedReference<BrevantoServerManager>;
    return reference;
}

SharedReference<Platform::DispatchQueue> &workQueue()
{
    static auto &reference = *new SharedReference<Platform::DispatchQueue>;
    return reference;
}

// The session's threads must end before the statics of Qt go. Whichever comes first calls this: the end of the
// application object or, where the host leaves through exit(), the end of the process.
void endSharedManager()
{
    sharedManager().set(nullptr);
}

// A queue waits for its blocks when it goes. The last to let go of it may be one of them, which would wait for itself.
void retire(Platform::DispatchQueue *queue)
{
    if (Platform::DispatchQueue::currentLabel() == queue->label())
        QThreadPool::globalInstance()->start([queue] { delete queue; });
    else
        delete queue;
}

std::shared_ptr<Platform::DispatchQueue> makeWorkQueue()
{
    return {
        new Platform::DispatchQueue(QStringLiteral("ServerManagerQueue"), Platform::DispatchQueue::Kind::Concurrent),
        retire};
}

QString withPathComponent(QString base, QString component)
{
    const QLatin1Char slash('/');
    while (base.endsWith(slash))
        base.chop(1);
    while (component.startsWith(slash))
        component.remove(0, 1);
    return base + slash + component;
}

QString urlString(const QuillfernServerParamsObject &params)
{
    if (!params.partialURL().isNull())
        return withPathComponent(ServiceAddress::baseURL(), params.partialURL());
    return params.separateURL();
}

QUrl parsed(const QString &urlString)
{
    // Addresses come from the service's data, where blanks and letters outside ASCII happen. Such a picture is expected
    // to load, so they are escaped instead of refused.
    return QUrl(urlString, QUrl::TolerantMode);
}

} // namespace

std::shared_ptr<BrevantoServerManager> BrevantoServerManager::sharedServerManager()
{
    if (auto manager = sharedManager().get())
        return manager;
    // Not tested again under the lock: threads that race here make one manager each, and the last one stays.
    static QMutex classLock;
    const QMutexLocker lock(&classLock);
    auto manager = create();
    sharedManager().set(manager);
    qAddPostRoutine(endSharedManager);
    static const int registration = std::atexit(endSharedManager);
    Q_UNUSED(registration);
    return manager;
}

std::shared_ptr<BrevantoServerManager> BrevantoServerManager::create()
{
    return std::make_shared<BrevantoServerManager>(Key());
}

BrevantoServerManager::BrevantoServerManager(Key)
    : m_currentSession(std::make_shared<Platform::URLSession>(m_currentSessionConfiguration))
{
    workQueue().set(makeWorkQueue());
}

BrevantoServerManager::~BrevantoServerManager() = default;

std::shared_ptr<Platform::URLSession> BrevantoServerManager::currentSession() const
{
    const QMutexLocker lock(&m_mutex);
    return m_currentSession;
}

void BrevantoServerManager::setCurrentSession(const std::shared_ptr<Platform::URLSession> &session)
{
    auto previous = session;
    const QMutexLocker lock(&m_mutex);
    m_currentSession.swap(previous);
}

Platform::URLSession::Configuration BrevantoServerManager::currentSessionConfiguration() const
{
    const QMutexLocker lock(&m_mutex);
    return m_currentSessionConfiguration;
}

void BrevantoServerManager::setCurrentSessionConfiguration(const Platform::URLSession::Configuration &configuration)
{
    const QMutexLocker lock(&m_mutex);
    m_currentSessionConfiguration = configuration;
}

void BrevantoServerManager::requestWithParams(const ParamsObject &params)
{
    const auto manager = shared_from_this();
    if (params->apiRequestType() == BrevantoAPIRequestTypeGet && !params->cacheKey().isNull()) {
        workQueue().get()->async([weakManager = std::weak_ptr(manager), params] {
            if (const auto living = weakManager.lock())
                living->apiCallWithParams(params);
        });
        return;
    }
    workQueue().get()->async([manager, params] { manager->apiCallWithParams(params); });
}

void BrevantoServerManager::apiCallWithParams(const ParamsObject &params)
{
    workQueue().get()->async([weakManager = weak_from_this(), params] {
        if (const auto manager = weakManager.lock())
            manager->send(params);
    });
}

void BrevantoServerManager::send(const ParamsObject &params)
{
    const auto session = currentSession();
    if (!session)
        return;

    if (params->apiRequestType() == BrevantoAPIRequestTypePost) {
        session->dataTask(postRequest(*params), [params](const auto &data, const auto &, const auto &error) {
            handlePostResponse(*params, data, error);
        });
    } else if (params->apiRequestType() == BrevantoAPIRequestTypeGet) {
        session->dataTask(getRequest(*params),
                          [weakManager = weak_from_this(), params](const auto &data, const auto &, const auto &error) {
                              if (const auto manager = weakManager.lock())
                                  handleGetResponse(*manager, *params, data, error);
                          });
    }
}

Platform::URLRequest BrevantoServerManager::postRequest(const QuillfernServerParamsObject &params)
{
    Platform::URLRequest request;
    request.url = parsed(urlString(params));
    request.method = "POST";
    request.timeout = requestTimeout;
    const bool isMultipart = params.imageData() || params.fileData();
    request.headers.insert("Content-Type",
                           isMultipart ? QByteArray("multipart/form-data; boundary=") + multipartBoundary
                                       : QByteArray("application/x-www-form-urlencoded"));
    if (params.imageData()) {
        request.body = getDataToSendFromParamsDict(params.paramsDict())
            + getDataToSendForImageData(params.imageData(), QStringLiteral("image.jpg"), params);
    } else if (params.fileData()) {
        request.body = getDataToSendFromParamsDict(params.paramsDict())
            + getDataToSendForFileData(params.fileData(), QStringLiteral("log.txt"));
    } else {
        request.body = getStringFromParamsDict(params.paramsDict()).toUtf8();
    }
    return request;
}

Platform::URLRequest BrevantoServerManager::getRequest(const QuillfernServerParamsObject &params)
{
    Platform::URLRequest request;
    request.timeout = requestTimeout;
    QString address = urlString(params);
    // An empty dictionary makes no query here, although it has no form string.
    const auto &query = params.paramsDict();
    if (!address.isNull() && query && !query->isEmpty())
        address += QLatin1Char('?') + getStringFromParamsDict(query);
    request.url = parsed(address);
    return request;
}

void BrevantoServerManager::deleteOldObjectAndSaveNew(const BrevantoServerResult &, const QuillfernServerParamsObject &)
{
}
