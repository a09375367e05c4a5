#pragma once

#include "Platform/Foundation/KeyedArchiver.h"
#include "Platform/Foundation/KeyedUnarchiver.h"

#include <QLatin1StringView>
#include <QVariant>

// A record's archive form: its fields and their keys, written and read in the table's order.
template <class Record>
struct BrevantoArchiveEntry {
    QLatin1StringView key;
    QVariant Record::*field;
};

template <class Record, class Table>
void encodeWithTable(const Table &table, const Record &record, Platform::KeyedArchiver &coder)
{
    for (const BrevantoArchiveEntry<Record> &entry : table)
        coder.encodeObject(record.*entry.field, entry.key);
}

template <class Record, class Table>
void initWithTable(const Table &table, Record &record, Platform::KeyedUnarchiver &coder)
{
    for (const BrevantoArchiveEntry<Record> &entry : table)
        record.*entry.field = coder.decodeObjectForKey(entry.key);
}
