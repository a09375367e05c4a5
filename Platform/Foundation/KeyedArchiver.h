#pragma once

#include "Platform/Foundation/Codable.h"

#include <QByteArray>
#include <QCborStreamWriter>
#include <QLatin1StringView>
#include <QVariant>

#include <limits>

namespace Platform
{

// Writes values and records as one CBOR item. A record is a map: its class name under the integer key 0, which no JSON
// object can use, and its fields under their text keys. Lists have definite lengths.
//
// What can be written: null, bool, integers, floating-point numbers, text, QDateTime (as an instant, in milliseconds),
// QVariantList, QStringList, QVariantMap and records (CodablePointer), nested at most `maximumDepth` deep. An invalid
// QVariant, a null QString and a null QDateTime are null.
class KeyedArchiver
{
public:
    // How deep an archive may nest; what reads archives refuses more.
    static constexpr int maximumDepth = 128;

    // The archive of `root`. A root that cannot be written gives null. Empty, given up on as soon as that is known, for
    // an archive of more than `sizeLimit` bytes: what is shared in memory is written out as often as it is named.
    static QByteArray archivedData(const QVariant &root, qsizetype sizeLimit = std::numeric_limits<qsizetype>::max());

    // For Codable::encodeWithCoder: writes one field. Throws Exception (InvalidArgument), with nothing written, for a
    // value that cannot be written; a record inside the value guards itself.
    void encodeObject(const QVariant &object, QLatin1StringView key);

private:
    explicit KeyedArchiver(qsizetype sizeLimit);

    void write(const QVariant &value);
    void writeRecord(const Codable &record);

    QByteArray m_data;
    QCborStreamWriter m_writer{&m_data};
    const qsizetype m_sizeLimit;
    int m_depth = 0;
};

} // namespace Platform
