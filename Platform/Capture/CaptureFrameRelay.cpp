#include "Platform/Capture/CaptureFrameRelay.h"

#include "Platform/Foundation/DispatchQueue.h"

#include <utility>

namespace Platform
{

void CaptureFrameRelay::setOpen(bool open)
{
    const std::lock_guard lock(m_mutex);
    m_isOpen = open;
    m_waiting = {};
}

void CaptureFrameRelay::push(const QVideoFrame &frame)
{
    const std::lock_guard lock(m_mutex);
    if (!m_isOpen || !frame.isValid())
        return;
    m_waiting = frame;
    if (std::exchange(m_isScheduled, true))
        return;
    DispatchQueue::mainAsync([relay = weak_from_this()] {
        if (const auto living = relay.lock())
            living->show();
    });
}

void CaptureFrameRelay::addSink(QVideoSink *sink)
{
    m_sinks.emplace_back(sink);
    if (m_shown.isValid())
        sink->setVideoFrame(m_shown);
}

void CaptureFrameRelay::show()
{
    // Held while showing, so that whoever closes the relay waits for a frame that is on its way.
    const std::lock_guard lock(m_mutex);
    m_isScheduled = false;
    if (!m_waiting.isValid())
        return;
    m_shown = std::exchange(m_waiting, {});
    std::erase_if(m_sinks, [](const QPointer<QVideoSink> &sink) { return !sink; });
    const std::vector<QPointer<QVideoSink>> sinks = m_sinks;
    for (const QPointer<QVideoSink> &sink : sinks) {
        if (sink)
            sink->setVideoFrame(m_shown);
    }
}

} // namespace Platform
