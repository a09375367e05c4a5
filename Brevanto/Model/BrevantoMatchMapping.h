#pragma once

class BrevantoMatch;
class BrevantoMatchObject;

// Fills a new match from the service's JSON object, as far as its values can be used.
void populateMatch(BrevantoMatch &match, const BrevantoMatchObject &object);
