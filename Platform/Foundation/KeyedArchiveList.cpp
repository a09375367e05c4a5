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

// What the elements are asked for; both in UTF-8.
struct Question {
    QByteArray className;
    QByteArrayView key;
};

// Passes over a record and gives the text that was asked for. As a reader takes it, the last class counts, and the
// first entry under a key.
bool passRecord(CborCursor &cursor, const CborCursor::Head &head, const Question &question,
                std::optional<QByteArrayView> &text)
{
    bool isOfClass = false;
    bool isFound = false;
    const bool passed = cursor.passMap(head, elementDepth, [&](QByteArrayView key, QByteArrayView value) {
        const auto valueText = CborCursor::text(value);
        if (valueText && CborCursor::isClassKey(key))
            isOfClass = *valueText == question.className;
        if (!isFound && CborCursor::text(key) == question.key) {
            isFound = true;
            text = valueText;
        }
    });
    if (!isOfClass)
        text.reset();
    return passed;
}

bool passElement(CborCursor &cursor, const Question &question, KeyedArchiveList::Element &element)
{
    const char *begin = cursor.position();
    CborCursor inside = cursor;
    CborCursor::Head head;
    bool passed = inside.readHead(head);
    if (head.major == CborCursor::Map) {
        passed = passed && passRecord(inside, head, question, element.text);
        cursor = inside;
    } else {
        passed = passed && cursor.skip(elementDepth);
    }
    element.bytes = QByteArrayView(begin, cursor.position());
    return passed;
}

} // namespace

std::optional<std::vector<KeyedArchiveList::Element>>
KeyedArchiveList::elements(QByteArrayView archive, const QString &className, QLatin1StringView key)
{
    const Question question{className.toUtf8(), QByteArrayView(key.data(), key.size())};
    CborCursor cursor(archive);
    CborCursor::Head head;
    if (!cursor.readHead(head) || head.major != CborCursor::List || head.isIndefinite())
        return {};
    std::vector<Element> elements;
    for (quint64 index = 0; index < head.argument; ++index) {
        Element element;
        if (!passElement(cursor, question, element))
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
