#include "Model/MatchFields.h"

#include "Brevanto/Model/BrevantoCaptionedImage.h"
#include "Brevanto/Model/BrevantoCatalogueImage.h"
#include "Brevanto/Model/BrevantoFields.h"
#include "Brevanto/Model/BrevantoMatchGroup.h"
#include "Brevanto/Model/BrevantoRelatedContent.h"
#include "Platform/Foundation/KeyedArchiver.h"

#include <QCborMap>
#include <QJsonArray>

using namespace Qt::StringLiterals;

namespace
{

template <class... Records>
Platform::KeyedUnarchiver::ClassTable classTable()
{
    return {{Records().className(), [] { return std::make_shared<Records>(); }}...};
}

QJsonValue withoutNulls(const QJsonValue &value)
{
    if (value.isArray()) {
        QJsonArray entries;
        for (const auto entry : value.toArray())
            entries.append(withoutNulls(entry));
        return entries;
    }
    if (!value.isObject())
        return value;
    QJsonObject object = value.toObject();
    for (const QString &key : object.keys()) {
        if (object.value(key).isNull())
            object.remove(key);
        else
            object[key] = withoutNulls(object.value(key));
    }
    return object;
}

} // namespace

QByteArray archived(const Platform::CodablePointer &record)
{
    return Platform::KeyedArchiver::archivedData(BrevantoFields::entry(record));
}

QVariant unarchived(const QByteArray &archive)
{
    return Platform::KeyedUnarchiver::unarchive(archive,
                                                classTable<BrevantoMatchGroup, BrevantoMatch, BrevantoCaptionedImage,
                                                           BrevantoCatalogueImage, BrevantoRelatedContent>());
}

QJsonObject filledFields(const Platform::CodablePointer &record)
{
    QCborMap fields = QCborValue::fromCbor(archived(record)).toMap();
    fields.remove(0);
    return withoutNulls(fields.toJsonObject()).toObject();
}
