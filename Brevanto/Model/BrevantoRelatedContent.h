#pragma once

#include "Brevanto/Model/BrevantoBaseEntity.h"
#include "Platform/Foundation/Codable.h"

// A video, article, poll, ad or quiz related to a match. `language` and `section` are not archived.
class BREVANTO_EXPORT BrevantoRelatedContent : public BrevantoBaseEntity, public Platform::Codable
{
public:
    BrevantoRelatedContent() = default;
    ~BrevantoRelatedContent() override;

    const QVariant &title() const { return m_fields.value(titleField); } // headline
    void setTitle(QVariant title) { m_fields.setValue(titleField, std::move(title)); }
    const QVariant &date() const { return m_fields.value(dateField); } // date text of the match it belongs to
    void setDate(QVariant date) { m_fields.setValue(dateField, std::move(date)); }
    const QVariant &thumbnailUrl() const { return m_fields.value(thumbnailUrlField); } // address of a small picture
    void setThumbnailUrl(QVariant thumbnailUrl) { m_fields.setValue(thumbnailUrlField, std::move(thumbnailUrl)); }
    const QVariant &contentUrl() const { return m_fields.value(contentUrlField); } // address of the video or article
    void setContentUrl(QVariant contentUrl) { m_fields.setValue(contentUrlField, std::move(contentUrl)); }
    const QVariant &body() const { return m_fields.value(bodyField); } // description
    void setBody(QVariant body) { m_fields.setValue(bodyField, std::move(body)); }
    qint32 imageType() const { return m_imageType; } // kind of image; 0 unless set
    void setImageType(qint32 imageType) { m_imageType = imageType; }

    // As Platform::Codable says.
    QString className() const override;
    void encodeWithCoder(Platform::KeyedArchiver &coder) const override;
    void initWithCoder(Platform::KeyedUnarchiver &coder) override;

private:
    struct Archive;
    enum { titleField = entityFieldCount, dateField, thumbnailUrlField, contentUrlField, bodyField };

    qint32 m_imageType = 0;
};
