#pragma once

#include "Brevanto/BrevantoExport.h"

#include <QList>
#include <QVariant>

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
