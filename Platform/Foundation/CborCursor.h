#pragma once

#include <QByteArrayView>
#include <QtEndian>

#include <optional>

namespace Platform
{

// Walks over the CBOR items of a keyed archive without copying or trusting them: no length is believed before the bytes
// are seen to be there. Lists and texts have definite lengths in archives; the indefinite forms are taken as malformed.
class CborCursor
{
public:
    enum Major : quint8 { Unsigned, Negative, Bytes, Text, List, Map, Tag, Simple };

    struct Head {
        Major major = {};
        quint8 information = 0;
        quint64 argument = 0;

        bool isIndefinite() const { return information == 31; }
    };

    explicit CborCursor(QByteArrayView bytes)
        : m_position(bytes.begin())
        , m_end(bytes.end())
    {
    }

    bool atEnd() const { return m_position == m_end; }
    const char *position() const { return m_position; }
    quint64 remaining() const { return quint64(m_end - m_position); }

    // The first bytes of an item; false when they are malformed or missing.
    bool readHead(Head &head)
    {
        if (atEnd())
            return false;
        const auto first = quint8(*m_position++);
        head = {Major(first >> 5), quint8(first & 31), quint8(first & 31)};
        switch (head.information) {
        case 24:
            return readArgument<quint8>(head);
        case 25:
            return readArgument<quint16>(head);
        case 26:
            return readArgument<quint32>(head);
        case 27:
            return readArgument<quint64>(head);
        case 28:
        case 29:
        case 30:
            return false;
        default:
            return true;
        }
    }

    // The payload of a text whose head has been read. The item must have been checked.
    QByteArrayView take(quint64 size)
    {
        const QByteArrayView taken(m_position, qsizetype(size));
        m_position += size;
        return taken;
    }

    // Passes over one whole item of at most that nesting depth; false when it is malformed, cut off or too deep.
    bool skip(int depth)
    {
        Head head;
        do {
            if (!readHead(head))
                return false;
        } while (head.major == Tag && !head.isIndefinite());

        if (head.major == List || head.major == Map)
            return skipContainer(head, depth);
        if (head.isIndefinite())
            return false;
        return (head.major != Bytes && head.major != Text) || advance(head.argument);
    }

    // Passes over the pairs of a map whose head has been read, handing each on as its two items.
    template <typename OnPair>
    bool passMap(const Head &head, int depth, OnPair onPair)
    {
        if (depth == 0 || (!head.isIndefinite() && head.argument > remaining()))
            return false;
        for (quint64 index = 0; head.isIndefinite() ? !passBreak() : index < head.argument; ++index) {
            const char *key = m_position;
            if (!skip(depth - 1))
                return false;
            const char *value = m_position;
            if (!skip(depth - 1))
                return false;
            onPair(QByteArrayView(key, value), QByteArrayView(value, m_position));
        }
        return true;
    }

    // The payload of a checked item that is a text; nothing when it is something else.
    static std::optional<QByteArrayView> text(QByteArrayView item)
    {
        CborCursor cursor(item);
        Head head;
        if (!cursor.readHead(head) || head.major != Text)
            return {};
        return cursor.take(head.argument);
    }

    // Whether a checked item is the key under which a record's class stands.
    static bool isClassKey(QByteArrayView item) { return item.size() == 1 && item.front() == 0; }

private:
    template <typename Argument>
    bool readArgument(Head &head)
    {
        if (remaining() < sizeof(Argument))
            return false;
        head.argument = qFromBigEndian<Argument>(m_position);
        m_position += sizeof(Argument);
        return true;
    }

    bool advance(quint64 size)
    {
        if (size > remaining())
            return false;
        m_position += size;
        return true;
    }

    bool skipContainer(const Head &head, int depth)
    {
        if (head.major == Map)
            return passMap(head, depth, [](QByteArrayView, QByteArrayView) {});
        if (depth == 0 || head.isIndefinite() || head.argument > remaining())
            return false;
        for (quint64 index = 0; index < head.argument; ++index) {
            if (!skip(depth - 1))
                return false;
        }
        return true;
    }

    bool passBreak()
    {
        constexpr char breakByte = '\xff';
        if (atEnd() || *m_position != breakByte)
            return false;
        ++m_position;
        return true;
    }

    const char *m_position;
    const char *m_end;
};

} // namespace Platform
