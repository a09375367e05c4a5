#pragma once

#include "Platform/Foundation/Codable.h"

#include <QByteArrayView>
#include <QHash>
#include <QLatin1StringView>
#include <QVariant>

#include <functional>
#include <optional>
#include <vector>

namespace Platform
{

class CborCursor;

// Reads what KeyedArchiver wrote. Safe on any input: the whole structure is checked before anything is made of it.
//
// Integers come back as qint64 (quint64 above its range), the others as double, bool, QString, QDateTime (UTC),
// QVariantList, QVariantMap and CodablePointer. A null inside a list or a map comes back as nullptr, as it does from
// JSON.
class KeyedUnarchiver
{
public:
    using ClassTable = QHash<QString, std::function<CodablePointer()>>;

    // The root of the archive; invalid when the data cannot be decoded or the root is null. Records of classes that the
    // table does not know are left out of lists and null elsewhere; keys that a record does not ask for are passed
    // over.
    static QVariant unarchive(QByteArrayView data, const ClassTable &classes);

    // The entries of an archive whose root is a list; nothing when the data cannot be decoded or the root is no list.
    // Entries that cannot be read are left out, as records of unknown classes are.
    static std::optional<QVariantList> unarchiveList(QByteArrayView data, const ClassTable &classes);

    // For Codable::initWithCoder: the field under that key; invalid when it is null or missing. Throws Exception
    // (InvalidArgument) for a value of a kind that no archive holds.
    QVariant decodeObjectForKey(QLatin1StringView key);

private:
    struct Entry {
        QByteArrayView key; // UTF-8
        QByteArrayView value; // one item
    };
    using Entries = std::vector<Entry>;

    // What the records of one archive share.
    struct Archive {
        const ClassTable &classes;
        bool hasReportedUnknownClass = false;
    };

    KeyedUnarchiver(Archive &archive, Entries entries);

    QVariant readField(QByteArrayView item) const;
    QVariant read(CborCursor &cursor) const;
    QVariant readList(CborCursor &cursor, quint64 size) const;
    QVariant readMap(const Entries &entries) const;
    QVariant readRecord(const QString &className, Entries entries) const;

    Archive &m_archive;
    Entries m_entries; // of the record being read
    std::size_t m_expected = 0; // where the next field should be: records are read in about the order of writing
};

} // namespace Platform
