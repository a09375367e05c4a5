#pragma once

#include "Brevanto/Model/BrevantoMatch.h"

#include <QJsonObject>

#include <functional>
#include <vector>

// A field of a match as tests address it.
struct MatchField {
    const char *archiveKey;
    const char *name;
    std::function<QVariant(const BrevantoMatch &)> value;
    std::function<void(BrevantoMatch &, const QVariant &)> setValue;
};

// All archived fields of a match, in the order of writing.
const std::vector<MatchField> &matchFields();

// The fields that are not null, by name; records inside lists as objects that hold their class name under "class" and
// their fields, dates as text.
QJsonObject filledFields(const BrevantoMatch &match);

// The same for one value.
QJsonValue described(const QVariant &value);
