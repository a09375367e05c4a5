#include "Brevanto/Model/BrevantoBaseEntity.h"

#include <QJsonValue>

BrevantoBaseEntity::~BrevantoBaseEntity() = default;

bool BrevantoBaseEntity::isValid(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::Undefined:
    case QJsonValue::Null:
        return false;
    case QJsonValue::String:
        return !value.toString().isEmpty();
    default:
        return true;
    }
}
