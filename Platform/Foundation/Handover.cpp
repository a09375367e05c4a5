#include "Platform/Foundation/Handover.h"

#include <QCoreApplication>
#include <QThreadPool>

#include <memory>
#include <mutex>

namespace Platform
{

namespace
{

class Parcel
{
public:
    explicit Parcel(std::function<void()> block)
    {
        const std::lock_guard lock(m_mutex);
        m_block = std::move(block);
    }
    // Where nobody took it, it ends under the mutex, too.
    ~Parcel() { take(); }

    std::function<void()> take()
    {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_block, nullptr);
    }

private:
    std::mutex m_mutex;
    std::function<void()> m_block;
};

class BlockEvent final : public QEvent
{
public:
    explicit BlockEvent(std::function<void()> block)
        : QEvent(eventType())
        , parcel(std::move(block))
    {
    }

    static QEvent::Type eventType()
    {
        static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
        return type;
    }

    Parcel parcel;
};

} // namespace

void startInPool(QThreadPool &pool, std::function<void()> block)
{
    auto *parcel = new Parcel(std::move(block));
    pool.start([parcel] {
        const std::function<void()> taken = parcel->take();
        delete parcel;
        taken();
    });
}

void BlockReceiver::post(std::function<void()> block)
{
    QCoreApplication::postEvent(this, new BlockEvent(std::move(block)));
}

bool BlockReceiver::event(QEvent *event)
{
    if (event->type() != BlockEvent::eventType())
        return QObject::event(event);
    static_cast<BlockEvent *>(event)->parcel.take()();
    return true;
}

} // namespace Platform
