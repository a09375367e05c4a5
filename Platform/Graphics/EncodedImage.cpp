#include "Platform/Graphics/EncodedImage.h"

#include <QSet>
#include <QtEndian>

#include <algorithm>
#include <array>

namespace Platform
{

namespace
{

// The format that the first bytes are a sign of; empty when there is none.
QByteArray rasterFormat(const QByteArray &data)
{
    if (data.startsWith("\xff\xd8\xff"))
        return "jpeg";
    if (data.startsWith("\x89PNG\r\n\x1a\n"))
        return "png";
    if (data.startsWith("GIF8"))
        return "gif";
    if (data.startsWith("RIFF") && data.size() > 12 && QByteArrayView(data).sliced(8).startsWith("WEBP"))
        return "webp";
    if (data.startsWith("BM"))
        return "bmp";
    return {};
}

// Parts of other bytes in their order; no copy where that is all of them.
class Excerpt
{
public:
    explicit Excerpt(const QByteArray &source)
        : m_source(source)
    {
    }

    void add(qsizetype from, qsizetype to)
    {
        if (from != m_end)
            flush();
        if (m_begin == m_end)
            m_begin = from;
        m_end = to;
    }
    QByteArray taken()
    {
        if (m_begin == 0 && m_end == m_source.size())
            return m_source;
        flush();
        return m_taken;
    }

private:
    void flush()
    {
        m_taken.append(QByteArrayView(m_source).sliced(m_begin, m_end - m_begin));
        m_begin = m_end = 0;
    }

    QByteArray m_source;
    QByteArray m_taken;
    qsizetype m_begin = 0; // of the part that is not yet taken
    qsizetype m_end = 0;
};

EncodedImage fromPng(const QByteArray &data)
{
    constexpr qsizetype signatureSize = 8;
    constexpr qsizetype frameSize = 12; // length, name and checksum of a chunk
    static constexpr std::array<QByteArrayView, 5> kept{"IHDR", "PLTE", "tRNS", "IDAT", "IEND"};
    Excerpt excerpt(data);
    excerpt.add(0, signatureSize);
    for (qsizetype at = signatureSize; data.size() - at >= frameSize;) {
        const QByteArrayView name = QByteArrayView(data).sliced(at + 4, 4);
        const qsizetype room = data.size() - at;
        // The last one may be cut off.
        const qsizetype size = std::min(frameSize + qsizetype(qFromBigEndian<quint32>(data.constData() + at)), room);
        if (std::find(kept.begin(), kept.end(), name) != kept.end())
            excerpt.add(at, at + size);
        if (name == kept.back())
            break;
        at += size;
    }
    return {.format = "png", .bytes = excerpt.taken()};
}

// Walks the segments of a JPEG as decoders do.
class JpegWalk
{
public:
    explicit JpegWalk(const QByteArray &data)
        : m_data(data)
    {
    }

    EncodedImage run()
    {
        forEachSegment([this](uchar code, qsizetype at, qsizetype) {
            look(code, at);
            m_leftOutCount += isKept(code, at) ? 0 : 1;
        });
        if (m_scanCount > mostScans)
            return {};
        return {.format = "jpeg",
                .bytes = m_leftOutCount <= fewLeftOut ? m_data : keptSegments(),
                .isReadWhole = m_isReadWhole};
    }

private:
    static constexpr qsizetype startSize = 2;
    static constexpr uchar endOfImage = 0xd9;
    static constexpr uchar startOfScan = 0xda;
    // Each takes as long as the image is large, and a few bytes. Encoders make about ten.
    static constexpr int mostScans = 64;
    // Decoders skip so many in no time, and a camera's photo has some: a copy of it would cost more.
    static constexpr int fewLeftOut = 256;

    uchar byte(qsizetype at) const { return at < m_data.size() ? uchar(m_data.at(at)) : 0; }

    // Where the next marker is that is no part of a scan's data; -1 when there is none.
    qsizetype marker(qsizetype at) const
    {
        while ((at = m_data.indexOf('\xff', at)) >= 0 && at + 1 < m_data.size()) {
            const uchar code = byte(at + 1);
            const bool isOfScan = code == 0 || code == 1 || (code >= 0xd0 && code <= 0xd7);
            if (!isOfScan && code != 0xff)
                return at;
            ++at;
        }
        return -1;
    }

    // Calls back with each segment's code, its place, and its end: of a scan, where its data end.
    template <typename Callback>
    void forEachSegment(Callback callback) const
    {
        for (qsizetype at = marker(startSize); at >= 0; at = marker(at)) {
            const uchar code = byte(at + 1);
            if (code == endOfImage) {
                callback(code, at, at + 2);
                return;
            }
            // Cut off within a segment.
            if (m_data.size() - at < 4)
                return;
            const qsizetype size = 2 + qsizetype(qFromBigEndian<quint16>(m_data.constData() + at + 2));
            qsizetype end = std::min(at + size, m_data.size());
            if (code == startOfScan) {
                const qsizetype next = marker(end);
                end = next < 0 ? m_data.size() : next;
            }
            callback(code, at, end);
            at = end;
        }
    }

    void look(uchar code, qsizetype at)
    {
        const bool isFrame = code >= 0xc0 && code <= 0xcf && code != 0xc4 && code != 0xc8 && code != 0xcc;
        if (isFrame) {
            const bool isSequential = code == 0xc0 || code == 0xc1 || code == 0xc9;
            m_componentCount = byte(at + 9);
            m_isReadWhole = m_isReadWhole || !isSequential;
        }
        if (code == startOfScan) {
            ++m_scanCount;
            m_isReadWhole = m_isReadWhole || byte(at + 4) < m_componentCount;
        }
    }

    // The tables, the frame and the scans; of what applications add, how the colours are meant and which side is up.
    bool isKept(uchar code, qsizetype at)
    {
        const bool isApplications = (code & 0xf0) == 0xe0;
        if (!isApplications)
            return code != 0xfe && code < 0xf0;
        const QByteArrayView payload = QByteArrayView(m_data).sliced(std::min(at + 4, m_data.size()));
        static constexpr std::array known{std::pair{uchar(0xe0), "JFIF"}, std::pair{uchar(0xe1), "Exif"},
                                          std::pair{uchar(0xee), "Adobe"}};
        const bool isKnown = std::any_of(known.begin(), known.end(), [code, payload](const auto &one) {
            return code == one.first && payload.startsWith(one.second);
        });
        if (!isKnown || m_seen.contains(code))
            return false;
        m_seen.insert(code);
        return true;
    }

    QByteArray keptSegments()
    {
        m_seen.clear();
        Excerpt excerpt(m_data);
        excerpt.add(0, startSize);
        forEachSegment([this, &excerpt](uchar code, qsizetype at, qsizetype end) {
            if (isKept(code, at))
                excerpt.add(at, end);
        });
        return excerpt.taken();
    }

    const QByteArray m_data;
    QSet<uchar> m_seen;
    int m_leftOutCount = 0;
    int m_scanCount = 0;
    int m_componentCount = 0;
    bool m_isReadWhole = false;
};

} // namespace

EncodedImage EncodedImage::from(const QByteArray &data)
{
    const QByteArray format = rasterFormat(data);
    if (format == "png")
        return fromPng(data);
    if (format == "jpeg")
        return JpegWalk(data).run();
    return {.format = format, .bytes = data};
}

} // namespace Platform
