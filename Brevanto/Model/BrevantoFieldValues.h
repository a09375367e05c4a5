#pragma once

#include "Brevanto/BrevantoExport.h"

#include <QList>
#include <QVariant>

#include <array>

// The fields of one record, by their numbers, 0 to 63; what another number does is undefined, and nothing checks it.
// Null ones take no room: an answer or an archive of a few megabytes may hold a million records with hardly a field in
// them. For one thread at a time.
class BREVANTO_EXPORT BrevantoFieldValues
{
public:
    // An invalid QVariant is null. The reference holds until a field is set.
    const QVariant &value(int field) const;
    void setValue(int field, QVariant value);

    // Makes room for so many fields that are not null.
    void reserve(qsizetype count) { m_values.reserve(count); }

private:
    qsizetype position(int field) const;

    quint64 m_present = 0; // one bit for each field that is not null
    QList<QVariant> m_values; // of these fields, in the order of their numbers
};

// The same for a record of so few fields, 0 to count - 1, that a list of them would take more room than they do.
template <int count>
class BrevantoFewFieldValues
{
public:
    // As above: an invalid QVariant is null. The reference holds for as long as the record.
    const QVariant &value(int field) const { return m_values[std::size_t(field)]; }
    void setValue(int field, QVariant value) { m_values[std::size_t(field)] = std::move(value); }

private:
    std::array<QVariant, count> m_values;
};
