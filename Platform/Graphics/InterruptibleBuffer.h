#pragma once

#include <QByteArray>
#include <QIODevice>

#include <algorithm>
#include <cstring>
#include <functional>

namespace Platform
{

// Bytes to read for as long as somebody wants them; then they end. How long a decoder works on a piece is bounded, but
// not how many pieces it takes: one of a megabyte may unpack to a thousand.
class InterruptibleBuffer final : public QIODevice
{
public:
    // `goesOn` is asked before each piece; an empty one stands for yes. Decoders ask for a few kilobytes at a time.
    InterruptibleBuffer(const QByteArray &bytes, const std::function<bool()> &goesOn)
        : m_bytes(bytes)
        , m_goesOn(goesOn)
    {
        open(ReadOnly | Unbuffered);
    }

    bool isInterrupted() const { return m_isInterrupted; }
    qint64 size() const override { return m_bytes.size(); }
    bool seek(qint64 position) override
    {
        if (!QIODevice::seek(position))
            return false;
        m_position = position;
        return true;
    }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        m_isInterrupted = m_isInterrupted || (m_goesOn && !m_goesOn());
        if (m_isInterrupted)
            return -1;
        const qint64 count = std::clamp<qint64>(m_bytes.size() - m_position, 0, maxSize);
        std::memcpy(data, m_bytes.constData() + m_position, std::size_t(count));
        m_position += count;
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    const QByteArray m_bytes;
    const std::function<bool()> m_goesOn;
    qint64 m_position = 0; // of the reading; pos() leaves out what was only peeked at
    bool m_isInterrupted = false;
};

} // namespace Platform
