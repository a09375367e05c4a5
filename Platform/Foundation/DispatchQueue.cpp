#include "Platform/Foundation/DispatchQueue.h"

#include <QCoreApplication>

namespace Platform
{

namespace
{

thread_local QString runningLabel;

}

DispatchQueue::DispatchQueue(const QString &label, Kind kind)
    : m_label(label)
{
    m_pool.setObjectName(label);
    if (kind == Kind::Serial)
        m_pool.setMaxThreadCount(1);
}

DispatchQueue::~DispatchQueue()
{
    m_pool.waitForDone();
}

std::shared_ptr<DispatchQueue> DispatchQueue::makeShared(const QString &label, Kind kind)
{
    // Its end waits for its blocks, and the last to let go of it may be one of them: somebody else ends it.
    return {new DispatchQueue(label, kind),
            [](DispatchQueue *queue) { QThreadPool::globalInstance()->start([queue] { delete queue; }); }};
}

void DispatchQueue::async(std::function<void()> block)
{
    m_pool.start([label = m_label, block = std::move(block)] {
        runningLabel = label;
        block();
        runningLabel.clear();
    });
}

QString DispatchQueue::currentLabel()
{
    return runningLabel;
}

void DispatchQueue::mainAsync(std::function<void()> block)
{
    if (QCoreApplication *application = QCoreApplication::instance())
        QMetaObject::invokeMethod(application, std::move(block), Qt::QueuedConnection);
}

void DispatchQueue::mainAsync(const QPointer<QObject> &owner, std::function<void()> block)
{
    mainAsync([owner, block = std::move(block)] {
        if (owner)
            block();
    });
}

} // namespace Platform
