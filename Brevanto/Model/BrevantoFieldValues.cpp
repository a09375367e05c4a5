#include "Brevanto/Model/BrevantoFieldValues.h"

#include <bit>

namespace
{

quint64 bit(int field)
{
    return quint64(1) << field;
}

} // namespace

const QVariant &BrevantoFieldValues::value(int field) const
{
    static const QVariant null;
    return m_present & bit(field) ? m_values.at(position(field)) : null;
}

void BrevantoFieldValues::setValue(int field, QVariant value)
{
    const bool isPresent = m_present & bit(field);
    if (isPresent && value.isValid()) {
        m_values[position(field)] = std::move(value);
    } else if (value.isValid()) {
        m_values.insert(position(field), std::move(value));
        m_present |= bit(field);
    } else if (isPresent) {
        m_values.removeAt(position(field));
        m_present &= ~bit(field);
    }
}

qsizetype BrevantoFieldValues::position(int field) const
{
    return std::popcount(m_present & (bit(field) - 1));
}
