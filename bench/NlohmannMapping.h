#pragma once

#include "Brevanto/Model/BrevantoMatchGroup.h"

#include <functional>

// The mapping of an answer to match groups over the JSON library of nlohmann: the same look-ups in the same order, for
// what the made answers hold.
void nlohmannGroups(const QByteArray &reply, const std::function<void(const BrevantoMatchGroupList &)> &completed);
