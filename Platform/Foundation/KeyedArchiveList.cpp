#include "Platform/Foundation/KeyedArchiveList.h"

#include "Platform/Foundation/CborCursor.h"
#include "Platform/Foundation/KeyedArchiver.h"

#include <QCborStreamWriter>
#include <QIODevice>

namespace Platform
{

namespace
{

constexpr int elementDepth = KeyedArchiver::maximumDepth - 1;

// Passes over one element and notes its text under `key`; the first one counts.
bool passElement(CborCursor &cursor, QByteArrayView key, KeyedArchiveList::Element &element)
{
    const char *begin = cursor.position();
    CborCursor start = cursor;
    CborCursor::Head head;
    if (!cursor.readHead(head))
        return false;
    if (head.major != CborCursor::Map) {
        cursor = start;
        if (!cursor.skip(elementDepth))
            return false;
    } else {
        bool found = false;
        const bool passed = cursor.passMap(head, elementDepth, [&](QByteArrayView name, QByteArrayView value) {
            if (found || CborCursor::text(name) != key)
                return;
            found = true;
            element.text = CborCursor::text(value);
        });
        if (!passed)
            return false;
    }
    element.bytes = QByteArrayView(begin, cursor.position());
    return true;
}

} // namespace

std::optional<std::vector<KeyedArchiveList::Element>> KeyedArchiveList::elements(QByteArrayView archive,
                                                                                 QLatin1StringView key)
{
    CborCursor cursor(archive);
    CborCursor::Head head;
    if (!cursor.readHead(head) || head.major != CborCursor::List || head.isIndefinite())
        return {};
    std::vector<Element> elements;
    for (quint64 index = 0; index < head.argument; ++index) {
        Element element;
        if (!passElement(cursor, QByteArrayView(key.data(), key.size()), element))
            return {};
        elements.push_back(element);
    }
    if (!cursor.atEnd())
        return {};
    return elements;
}

bool KeyedArchiveList::write(const std::vector<Element> &elements, QIODevice &device)
{
    QByteArray head;
    {
        QCborStreamWriter writer(&head);
        writer.startArray(elements.size());
    }
    if (device.write(head) != head.size())
        return false;

    // Elements that lie side by side already go out in one piece.
    for (auto element = elements.begin(); element != elements.end();) {
        QByteArrayView piece = element->bytes;
        for (++element; element != elements.end() && element->bytes.begin() == piece.end(); ++element)
            piece = QByteArrayView(piece.begin(), element->bytes.end());
        if (device.write(piece.data(), piece.size()) != piece.size())
            return false;
    }
    return true;
}

} // namespace Platform
