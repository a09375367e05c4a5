#include "Platform/Network/URLSession.h"

#include "Platform/Foundation/Handover.h"
#include "Platform/Network/URLSessionTask.h"

#include <QMutexLocker>
#include <QNetworkProxyFactory>
#include <QThread>
#include <QThreadPool>

#include <algorithm>

namespace Platform
{

namespace
{

// Has plain connections buffered. From others Qt reads the head of an answer, and the length of a chunk, in one go for
// as long as bytes come, and its thread does nothing else meanwhile, not even end the request. It buffers all
// connections but those whose proxy is said to be none; with the default one each asks the application again, and hears
// the same.
class BufferedConnections final : public QNetworkProxyFactory
{
public:
    QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery &query) override
    {
        QList<QNetworkProxy> proxies = proxyForQuery(query);
        std::ranges::replace(proxies, QNetworkProxy::NoProxy, QNetworkProxy::DefaultProxy, &QNetworkProxy::type);
        return proxies;
    }
};

} // namespace

class URLSession::Worker final : public BlockReceiver
{
public:
    explicit Worker(const Configuration &configuration)
        : m_configuration(configuration)
    {
    }
    // Ends what still runs; the replies of the tasks need their carrier.
    ~Worker() override { qDeleteAll(tasks()); }

    void start(const URLRequest &request, Completion completion)
    {
        if (m_isClosed)
            return;
        dropSpentCarrier();
        if (!m_carrier) {
            m_carrier = std::make_shared<URLCarrier>();
            m_carrier->manager.setProxyFactory(new BufferedConnections);
        }
        auto *task = new URLSessionTask(request, std::move(completion), m_configuration, m_carrier, this);
        connect(task, &QObject::destroyed, this, &Worker::dropSpentCarrier);
        task->start();
    }

    void close()
    {
        m_isClosed = true;
        for (URLSessionTask *task : tasks())
            task->cancel();
    }

private:
    void dropSpentCarrier()
    {
        if (m_carrier && m_carrier->isSpent)
            m_carrier.reset();
    }

    QList<URLSessionTask *> tasks() const
    {
        QList<URLSessionTask *> result; // there are no other children
        for (QObject *child : children())
            result.append(static_cast<URLSessionTask *>(child));
        return result;
    }

    const Configuration m_configuration;
    std::shared_ptr<URLCarrier> m_carrier; // of the next task
    bool m_isClosed = false;
};

URLSession::URLSession(const Configuration &configuration)
    : m_thread(std::make_unique<QThread>())
    , m_worker(new Worker(configuration))
{
    m_thread->setObjectName(QStringLiteral("URLSession"));
    m_worker->moveToThread(m_thread.get());
    QObject::connect(m_thread.get(), &QThread::finished, m_worker, &QObject::deleteLater);
    m_thread->start();
}

URLSession::~URLSession()
{
    invalidate();
}

void URLSession::invalidate()
{
    std::unique_ptr<QThread> thread;
    {
        const QMutexLocker lock(&m_mutex);
        thread = std::move(m_thread);
    }
    if (!thread)
        return;
    const bool isInCompletion = QThread::currentThread() == thread.get();
    if (isInCompletion)
        m_worker->close();
    thread->quit();
    if (!isInCompletion) {
        thread->wait();
        return;
    }
    // The thread cannot wait for itself: somebody else does.
    startInPool(*QThreadPool::globalInstance(),
                [thread = std::shared_ptr<QThread>(std::move(thread))] { thread->wait(); });
}

void URLSession::dataTask(const URLRequest &request, Completion completion)
{
    const QMutexLocker lock(&m_mutex);
    if (!m_thread)
        return;
    m_worker->post(
        [worker = m_worker, request, completion = std::move(completion)] { worker->start(request, completion); });
}

} // namespace Platform
