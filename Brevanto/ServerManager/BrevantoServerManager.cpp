#include "Brevanto/ServerManager/BrevantoServerManager.h"

#include "Brevanto/ServerManager/ServerResponses.h"
#include "Platform/Foundation/DispatchQueue.h"

#include <QCoreApplication>
#include <QMutexLocker>

#include <cstdlib>
#include <utility>

namespace
{

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

// The session's threads must end before the statics of Qt go, whoever holds on to the manager or the session. Whichever
// comes first calls this: the end of the application object or, where the host leaves through exit(), the end of the
// process.
void endSharedManager()
{
    const auto manager = sharedManager().get();
    if (const auto session = manager ? manager->currentSession() : nullptr)
        session->invalidate();
    sharedManager().set(nullptr);
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
    [[maybe_unused]] static const int registration = std::atexit(endSharedManager);
    return manager;
}

std::shared_ptr<BrevantoServerManager> BrevantoServerManager::create()
{
    return std::make_shared<BrevantoServerManager>(Key());
}

BrevantoServerManager::BrevantoServerManager(Key)
    : m_currentSession(std::make_shared<Platform::URLSession>(m_currentSessionConfiguration))
{
    workQueue().set(Platform::DispatchQueue::makeShared(QStringLiteral("ServerManagerQueue"),
                                                        Platform::DispatchQueue::Kind::Concurrent));
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

void BrevantoServerManager::deleteOldObjectAndSaveNew(const BrevantoServerResult &, const QuillfernServerParamsObject &)
{
}
