#pragma once

#include "Brevanto/BrevantoExport.h"
#include "Platform/Foundation/Codable.h"

#include <QVariant>

#include <memory>
#include <optional>

// Readers of record fields, for those who show them. From any thread, while nobody changes the record.
namespace BrevantoFields
{

// The field as text: text as it is, a number in decimal digits, a bool as "true" or "false"; a null QString for null
// and for what has no text (lists, objects, dates).
BREVANTO_EXPORT QString text(const QVariant &field);

// The same for those who put it before the user: of an endless text only the first 1000 letters.
BREVANTO_EXPORT QString shownText(const QVariant &field);

// The field as a number; nothing for null and for every other kind, text that looks like a number included.
BREVANTO_EXPORT std::optional<double> number(const QVariant &field);

// The entries of a list field; none for null and for every other kind.
BREVANTO_EXPORT QVariantList list(const QVariant &field);

// A list's entry as a record of that class; null when it is something else.
template <class Record>
std::shared_ptr<Record> record(const QVariant &entry)
{
    return std::dynamic_pointer_cast<Record>(entry.value<Platform::CodablePointer>());
}

// A record as a list's entry.
inline QVariant entry(const Platform::CodablePointer &record)
{
    return QVariant::fromValue(record);
}

} // namespace BrevantoFields
