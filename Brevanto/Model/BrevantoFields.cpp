#include "Brevanto/Model/BrevantoFields.h"

#include "Platform/Foundation/ShownText.h"

#include <QLocale>

namespace BrevantoFields
{

QString text(const QVariant &field)
{
    switch (field.typeId()) {
    case QMetaType::QString:
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return field.toString();
    case QMetaType::Float:
    case QMetaType::Double:
        return QString::number(field.toDouble(), 'f', QLocale::FloatingPointShortest);
    default:
        return {};
    }
}

QString shownText(const QVariant &field)
{
    return Platform::shownText(text(field));
}

std::optional<double> number(const QVariant &field)
{
    switch (field.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Float:
    case QMetaType::Double:
        return field.toDouble();
    default:
        return {};
    }
}

QVariantList list(const QVariant &field)
{
    switch (field.typeId()) {
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return field.toList();
    default:
        return {};
    }
}

} // namespace BrevantoFields
