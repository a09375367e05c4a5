#include "Platform/Foundation/KeyedUnarchiver.h"

#include "Platform/Foundation/CborCursor.h"
#include "Platform/Foundation/Faults.h"
#include "Platform/Foundation/KeyedArchiver.h"
#include "Platform/Foundation/Log.h"

#include <QDateTime>
#include <QFloat16>

#include <bit>
#include <utility>

namespace Platform
{

namespace
{

QString decodedText(QByteArrayView utf8)
{
    if (!utf8.isValidUtf8())
        refuseArgument(QStringLiteral("archived text is not UTF-8"));
    // An empty text is not null.
    return utf8.isEmpty() ? QLatin1StringView("") : QString::fromUtf8(utf8);
}

QVariant decodedNegative(quint64 argument)
{
    if (argument > quint64(std::numeric_limits<qint64>::max()))
        return -1.0 - double(argument);
    return -1 - qint64(argument);
}

QVariant decodedUnsigned(quint64 argument)
{
    if (argument > quint64(std::numeric_limits<qint64>::max()))
        return argument;
    return qint64(argument);
}

QVariant decodedSimple(const CborCursor::Head &head)
{
    switch (head.information) {
    case 20:
        return false;
    case 21:
        return true;
    case 22:
    case 23:
        return QVariant::fromValue(nullptr);
    case 25:
        return double(std::bit_cast<qfloat16>(quint16(head.argument)));
    case 26:
        return double(std::bit_cast<float>(quint32(head.argument)));
    case 27:
        return std::bit_cast<double>(head.argument);
    default:
        refuseArgument(QStringLiteral("archived simple value of unknown meaning"));
    }
}

QVariant decodedInstant(CborCursor &cursor, quint64 tag)
{
    CborCursor::Head head;
    if (tag != 0 || !cursor.readHead(head) || head.major != CborCursor::Text)
        refuseArgument(QStringLiteral("archived value with an unknown tag"));
    const QDateTime instant = QDateTime::fromString(decodedText(cursor.take(head.argument)), Qt::ISODateWithMs);
    if (!instant.isValid())
        refuseArgument(QStringLiteral("archived date is none"));
    return instant.toUTC();
}

bool isWellFormed(QByteArrayView data)
{
    CborCursor structure(data);
    return structure.skip(KeyedArchiver::maximumDepth) && structure.atEnd();
}

// What is safe to log of a text from a file.
QString shortened(const QString &text)
{
    return text.left(40).simplified();
}

bool isUnknownRecord(const QVariant &value)
{
    return value.metaType() == QMetaType::fromType<CodablePointer>() && !value.value<CodablePointer>();
}

} // namespace

KeyedUnarchiver::KeyedUnarchiver(Archive &archive, Entries entries)
    : m_archive(archive)
    , m_entries(std::move(entries))
{
}

QVariant KeyedUnarchiver::unarchive(QByteArrayView data, const ClassTable &classes)
{
    if (!isWellFormed(data))
        return {};
    Archive archive{classes};
    try {
        return KeyedUnarchiver(archive, {}).readField(data);
    } catch (const std::exception &exception) {
        log(QString::fromUtf8(exception.what()));
        return {};
    }
}

std::optional<QVariantList> KeyedUnarchiver::unarchiveList(QByteArrayView data, const ClassTable &classes)
{
    CborCursor cursor(data);
    CborCursor::Head head;
    if (!isWellFormed(data) || !cursor.readHead(head) || head.major != CborCursor::List)
        return {};
    Archive archive{classes};
    const KeyedUnarchiver reader(archive, {});
    QVariantList list;
    for (quint64 index = 0; index < head.argument; ++index) {
        CborCursor next = cursor;
        next.skip(KeyedArchiver::maximumDepth);
        try {
            QVariant entry = reader.read(cursor);
            if (!isUnknownRecord(entry))
                list.append(std::move(entry));
        } catch (const std::exception &exception) {
            log(QString::fromUtf8(exception.what()));
        }
        cursor = next;
    }
    return list;
}

QVariant KeyedUnarchiver::decodeObjectForKey(QLatin1StringView key)
{
    for (std::size_t step = 0; step < m_entries.size(); ++step) {
        const std::size_t index = (m_expected + step) % m_entries.size();
        if (m_entries[index].key != QByteArrayView(key.data(), key.size()))
            continue;
        m_expected = index + 1;
        return readField(m_entries[index].value);
    }
    return {};
}

QVariant KeyedUnarchiver::readField(QByteArrayView item) const
{
    CborCursor cursor(item);
    QVariant value = read(cursor);
    if (value.typeId() == QMetaType::Nullptr || isUnknownRecord(value))
        return {};
    return value;
}

// The structure has been checked: heads and lengths can be trusted from here on, what they mean cannot.
QVariant KeyedUnarchiver::read(CborCursor &cursor) const
{
    CborCursor::Head head;
    cursor.readHead(head);
    switch (head.major) {
    case CborCursor::Unsigned:
        return decodedUnsigned(head.argument);
    case CborCursor::Negative:
        return decodedNegative(head.argument);
    case CborCursor::Text:
        return decodedText(cursor.take(head.argument));
    case CborCursor::List:
        return readList(cursor, head.argument);
    case CborCursor::Tag:
        return decodedInstant(cursor, head.argument);
    case CborCursor::Simple:
        return decodedSimple(head);
    case CborCursor::Bytes:
        refuseArgument(QStringLiteral("archived bytes"));
    case CborCursor::Map:
        break;
    }

    Entries entries;
    QString className;
    cursor.passMap(head, KeyedArchiver::maximumDepth, [&](QByteArrayView key, QByteArrayView value) {
        if (const auto text = CborCursor::text(key))
            entries.push_back({*text, value});
        else if (const auto name = CborCursor::text(value); name && CborCursor::isClassKey(key))
            className = decodedText(*name);
    });
    return className.isNull() ? readMap(entries) : readRecord(className, std::move(entries));
}

QVariant KeyedUnarchiver::readList(CborCursor &cursor, quint64 size) const
{
    QVariantList list;
    list.reserve(qsizetype(size));
    for (quint64 index = 0; index < size; ++index) {
        QVariant entry = read(cursor);
        if (!isUnknownRecord(entry))
            list.append(std::move(entry));
    }
    return list;
}

QVariant KeyedUnarchiver::readMap(const Entries &entries) const
{
    QVariantMap map;
    for (const Entry &entry : entries) {
        CborCursor cursor(entry.value);
        map.insert(decodedText(entry.key), read(cursor));
    }
    return map;
}

QVariant KeyedUnarchiver::readRecord(const QString &className, Entries entries) const
{
    const auto make = m_archive.classes.constFind(className);
    if (make == m_archive.classes.cend()) {
        if (!std::exchange(m_archive.hasReportedUnknownClass, true))
            log(QStringLiteral("archived records of unknown classes left out, such as %1").arg(shortened(className)));
        return QVariant::fromValue(CodablePointer());
    }
    const CodablePointer record = (*make)();
    KeyedUnarchiver coder(m_archive, std::move(entries));
    try {
        record->initWithCoder(coder);
    } catch (const std::exception &exception) {
        log(QString::fromUtf8(exception.what()));
    }
    return QVariant::fromValue(record);
}

} // namespace Platform
