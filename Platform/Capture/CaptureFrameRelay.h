#pragma once

#include <QPointer>
#include <QVideoFrame>
#include <QVideoSink>

#include <memory>
#include <mutex>
#include <vector>

namespace Platform
{

// Hands frames, as they come from any thread, to previews on the main thread. Frames never queue: while the main thread
// is busy a newer frame takes the place of the one that waits. Closed, it lets nothing through, and previews keep what
// they show.
class CaptureFrameRelay : public std::enable_shared_from_this<CaptureFrameRelay>
{
public:
    // Any thread. Once close has returned, no frame is shown that has not been shown by then.
    void setOpen(bool open);
    void push(const QVideoFrame &frame);

    // Main thread. A new sink gets the last frame shown at once.
    void addSink(QVideoSink *sink);

private:
    void show();

    std::mutex m_mutex;
    bool m_isOpen = false;
    bool m_isScheduled = false;
    QVideoFrame m_waiting;

    // Main thread only.
    QVideoFrame m_shown;
    std::vector<QPointer<QVideoSink>> m_sinks;
};

} // namespace Platform
