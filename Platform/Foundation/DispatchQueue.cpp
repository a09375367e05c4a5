#include "Platform/Foundation/DispatchQueue.h"

#include "Platform/Foundation/Handover.h"

#include <QCoreApplication>

namespace Platform
{

namespace
{

thread_local QString runningLabel;

// Outlives applications, which come and go on the one main thread; what waits for an application ends with it.
BlockReceiver &mainReceiver()
{
    static BlockReceiver &receiver = *[] {
        auto *made = new BlockReceiver;
        made->moveToThread(QCoreApplication::instance()->thread());
        return made;
    }();
    static const bool isRegistered = [] {
        qAddPostRoutine([] { QCoreApplication::removePostedEvents(&mainReceiver()); });
        return true;
    }();
    Q_UNUSED(isRegistered)
    return receiver;
}

} // namespace

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
            [](DispatchQueue *queue) { startInPool(*QThreadPool::globalInstance(), [queue] { delete queue; }); }};
}

void DispatchQueue::async(std::function<void()> block)
{
    startInPool(m_pool, [label = m_label, block = std::move(block)] {
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
    if (QCoreApplication::instance())
        mainReceiver().post(std::move(block));
}

void DispatchQueue::mainAsync(const QPointer<QObject> &owner, std::function<void()> block)
{
    mainAsync([owner, block = std::move(block)] {
        if (owner)
            block();
    });
}

} // namespace Platform
