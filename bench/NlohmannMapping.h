#pragma once

#include "Brevanto/Model/BrevantoMatchGroup.h"

// The mapping of an answer to match groups over the JSON library of nlohmann: the same look-ups in the same order, for
// what the made answers hold.
BrevantoMatchGroupList nlohmannGroups(const QByteArray &reply);
