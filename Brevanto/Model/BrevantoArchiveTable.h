#pragma once

#include "Brevanto/Model/BrevantoFieldValues.h"
#include "Platform/Foundation/KeyedArchiver.h"
#include "Platform/Foundation/KeyedUnarchiver.h"

#include <QLatin1StringView>

// A record's archive form: the keys of its fields, written and read in the table's order.
struct BrevantoArchiveEntry {
    QLatin1StringView key;
    int field;
};

template <class Table, class FieldValues>
void encodeWithTable(const Table &table, const FieldValues &fields, Platform::KeyedArchiver &coder)
{
    for (const BrevantoArchiveEntry &entry : table)
        coder.encodeObject(fields.value(entry.field), entry.key);
}

template <class Table, class FieldValues>
void initWithTable(const Table &table, FieldValues &fields, Platform::KeyedUnarchiver &coder)
{
    for (const BrevantoArchiveEntry &entry : table)
        fields.setValue(entry.field, coder.decodeObjectForKey(entry.key));
}
