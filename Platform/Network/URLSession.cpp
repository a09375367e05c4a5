#include "Platform/Network/URLSession.h"

#include "Platform/Foundation/Handover.h"
#include "Platform/Network/URLSessionTask.h"

#include <QMutexLocker>
#include <QThread>
#include <QThreadPool>

namespace Platform
{

class URLSession::Worker final : public BlockReceiver
{
public:
    explicit Worker(const Configuration &configuration)
        : m_configuration(configuration)
    {
    }
    // The replies of the tasks belong to their carrier.
    ~Worker() override { qDeleteAll(tasks()); }

    void start(const URLRequest &request, Completion completion)
    {
        if (m_isClosed)
            return;
        if (!m_carrier || m_carrier->isSuspect())
            m_carrier = std::make_shared<URLCarrier>();
        auto *task = new URLSessionTask(request, std::move(completion), m_configuration, m_carrier, this);
        task->start();
    }

    void close()
    {
        m_isClosed = true;
        for (URLSessionTask *task : tasks())
            task->cancel();
    }

private:
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
