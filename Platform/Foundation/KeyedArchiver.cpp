#include "Platform/Foundation/KeyedArchiver.h"

#include "Platform/Foundation/Faults.h"
#include "Platform/Foundation/Log.h"

#include <QDateTime>

namespace Platform
{

namespace
{

// Ends an archive that grows beyond its limit. No std::exception, which would end one record alone.
struct TooLarge {
};

// Archives hold instants as their text in UTC, which has years of four digits alone.
QString instantText(const QDateTime &instant)
{
    return instant.toUTC().toString(Qt::ISODateWithMs);
}

// Everything is checked before its first byte is written, so that an exception leaves no half of a value behind.
// Records are checked when their turn comes: they guard themselves.
void requireWritable(const QVariant &value, int depth)
{
    const auto requireRoom = [depth] {
        if (depth == KeyedArchiver::maximumDepth)
            refuseArgument(QStringLiteral("value nested too deep for an archive"));
    };

    switch (value.typeId()) {
    case QMetaType::UnknownType:
    case QMetaType::Nullptr:
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Float:
    case QMetaType::Double:
    case QMetaType::QString:
        return;
    case QMetaType::QStringList:
        requireRoom();
        return;
    case QMetaType::QDateTime:
        if (const QDateTime instant = value.toDateTime(); !instant.isNull() && instantText(instant).isEmpty())
            refuseArgument(QStringLiteral("date that cannot be archived"));
        return;
    case QMetaType::QVariantList: {
        requireRoom();
        const auto &list = *static_cast<const QVariantList *>(value.constData());
        for (const QVariant &entry : list)
            requireWritable(entry, depth + 1);
        return;
    }
    case QMetaType::QVariantMap: {
        requireRoom();
        const auto &map = *static_cast<const QVariantMap *>(value.constData());
        for (const QVariant &entry : map)
            requireWritable(entry, depth + 1);
        return;
    }
    default:
        break;
    }

    if (value.metaType() != QMetaType::fromType<CodablePointer>())
        refuseArgument(QStringLiteral("value of type %1 cannot be archived").arg(QLatin1StringView(value.typeName())));
    requireRoom();
}

} // namespace

KeyedArchiver::KeyedArchiver(qsizetype sizeLimit)
    : m_sizeLimit(sizeLimit)
{
}

QByteArray KeyedArchiver::archivedData(const QVariant &root, qsizetype sizeLimit)
{
    KeyedArchiver archiver(sizeLimit);
    try {
        requireWritable(root, 0);
        archiver.write(root);
    } catch (const TooLarge &) {
        return {};
    } catch (const std::exception &exception) {
        log(QString::fromUtf8(exception.what()));
        archiver.m_writer.appendNull();
    }
    return archiver.m_data.size() > sizeLimit ? QByteArray() : archiver.m_data;
}

void KeyedArchiver::encodeObject(const QVariant &object, QLatin1StringView key)
{
    requireWritable(object, m_depth);
    m_writer.append(key);
    write(object);
}

void KeyedArchiver::write(const QVariant &value)
{
    if (m_data.size() > m_sizeLimit)
        throw TooLarge();
    switch (value.typeId()) {
    case QMetaType::UnknownType:
    case QMetaType::Nullptr:
        m_writer.appendNull();
        return;
    case QMetaType::Bool:
        m_writer.append(value.toBool());
        return;
    case QMetaType::Int:
    case QMetaType::LongLong:
        m_writer.append(value.toLongLong());
        return;
    case QMetaType::UInt:
    case QMetaType::ULongLong:
        m_writer.append(value.toULongLong());
        return;
    case QMetaType::Float:
    case QMetaType::Double:
        m_writer.append(value.toDouble());
        return;
    case QMetaType::QString: {
        const QString text = value.toString();
        text.isNull() ? m_writer.appendNull() : m_writer.append(QStringView(text));
        return;
    }
    case QMetaType::QDateTime: {
        const QDateTime instant = value.toDateTime();
        if (instant.isNull()) {
            m_writer.appendNull();
            return;
        }
        m_writer.append(QCborKnownTags::DateTimeString);
        m_writer.append(QStringView(instantText(instant)));
        return;
    }
    case QMetaType::QStringList:
    case QMetaType::QVariantList: {
        const QVariantList list = value.toList();
        ++m_depth;
        m_writer.startArray(quint64(list.size()));
        for (const QVariant &entry : list)
            write(entry);
        m_writer.endArray();
        --m_depth;
        return;
    }
    case QMetaType::QVariantMap: {
        const QVariantMap map = value.toMap();
        ++m_depth;
        m_writer.startMap(quint64(map.size()));
        for (auto entry = map.cbegin(); entry != map.cend(); ++entry) {
            m_writer.append(QStringView(entry.key()));
            write(entry.value());
        }
        m_writer.endMap();
        --m_depth;
        return;
    }
    default:
        break;
    }

    if (const auto record = value.value<CodablePointer>())
        writeRecord(*record);
    else
        m_writer.appendNull();
}

void KeyedArchiver::writeRecord(const Codable &record)
{
    // How many fields come is known only once the record is done, so the map's length stays open.
    m_writer.startMap();
    m_writer.append(0);
    m_writer.append(QStringView(record.className()));
    ++m_depth;
    try {
        record.encodeWithCoder(*this);
    } catch (const std::exception &exception) {
        log(QString::fromUtf8(exception.what()));
    }
    --m_depth;
    m_writer.endMap();
}

} // namespace Platform
