#pragma once

#include "Brevanto/Model/BrevantoMatch.h"
#include "Platform/Foundation/KeyedUnarchiver.h"

#include <QJsonObject>

QByteArray archived(const Platform::CodablePointer &record);
QVariant unarchived(const QByteArray &archive);

// The fields that are not null, under their archive keys, as JSON; records inside lists with their class name under
// "0".
QJsonObject filledFields(const Platform::CodablePointer &record);
