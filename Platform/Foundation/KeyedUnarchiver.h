#pragma once

#include "Platform/Foundation/Codable.h"

#include <QByteArrayView>
#include <QHash>
#include <QLatin1StringView>
#include <QVariant>

#include <functional>
#include <vector>

namespace Platform
{

class CborCursor;

// Reads what KeyedArchiver wrote. Safe on any input: the whole structure is checked before anything is made of it.
//
// Integers come back as qint64 (quint64 above its range), the others as double, bool, QString, QDateTime (UTC),
// QVariantList, QVariantMap and CodablePointer.
class KeyedUnarchiver
{
public:
    using ClassTable = QHash<QString, std::function<CodablePointer()>>;

    // The root of the archive; invalid when the data cannot be decoded or the root is null. Records of classes that the
    // table does not know are left out of lists and null elsewhere; keys that a record does not ask for are passed
    // over.
    static QVariant unarchive(QByteArrayView data, const ClassTable &classes);

    // For Codable::initWithCoder: the field under that key; invalid when it is null or missing. Throws Exception
    // (InvalidArgument) for a value of a kind that no archive holds.
    QVariant decodeObjectForKey(QLatin1StringView key);

private:
    struct Entry {
        QByteArrayView key;
        QByteArrayView value;
    };

    explicit KeyedUnarchiver(const ClassTable &classes);

    QVariant read(CborCursor &cursor);
    QVariant readList(CborCursor &cursor);
    QVariant readMap(CborCursor &cursor);
    CodablePointer readRecord(const QString &className, std::vector<Entry> entries);

    const ClassTable &m_classes;
    std::vector<Entry> m_entries; // of the record being read
    std::size_t m_next = 0; // where the next field is expected, as records are read in about the order of writing
};

} // namespace Platform
