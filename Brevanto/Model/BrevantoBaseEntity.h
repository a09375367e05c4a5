#pragma once

#include "Brevanto/Model/BrevantoFieldValues.h"

class QJsonValue;

// Base of the content records.
//
// In all records a field is one nullable value that is kept as the service sent it: text, number, bool, date, list
// (QVariantList) or object (QVariantMap); an invalid QVariant is null, which every field is at first. The readers in
// BrevantoFields.h give a field as what a caller wants to show. Records are for one thread at a time.
class BREVANTO_EXPORT BrevantoBaseEntity
{
public:
    BrevantoBaseEntity() = default;
    virtual ~BrevantoBaseEntity();

    // Whether a decoded JSON value is there: neither undefined (absent) nor null nor the empty string. White space is
    // not trimmed; 0, false, empty lists and empty objects are valid.
    static bool isValid(const QJsonValue &value);

    const QVariant &source() const { return m_fields.value(sourceField); } // name of the publishing source
    void setSource(QVariant source) { m_fields.setValue(sourceField, std::move(source)); }
    const QVariant &language() const { return m_fields.value(languageField); } // language of the content
    void setLanguage(QVariant language) { m_fields.setValue(languageField, std::move(language)); }
    const QVariant &section() const { return m_fields.value(sectionField); } // department of the content
    void setSection(QVariant section) { m_fields.setValue(sectionField, std::move(section)); }

protected:
    // Numbers of the fields that all content records have; a record's own follow them.
    enum { sourceField, languageField, sectionField, entityFieldCount };

    // The values of all fields, those of derived records included.
    BrevantoFieldValues m_fields;

private:
    Q_DISABLE_COPY_MOVE(BrevantoBaseEntity)
};
