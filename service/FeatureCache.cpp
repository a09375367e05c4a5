#include "service/FeatureCache.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QDataStream>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QSaveFile>

namespace MatchService
{

namespace
{

constexpr quint32 fileMark = 0x42464331;
constexpr qint64 largestFile = qint64{4} * 1024 * 1024;
constexpr int longestSide = 4096;

QByteArray hash(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
}

void writeMatrix(QDataStream &stream, const cv::Mat &matrix)
{
    const cv::Mat whole = matrix.isContinuous() ? matrix : matrix.clone();
    stream << qint32(whole.rows) << qint32(whole.cols)
           << QByteArray::fromRawData(reinterpret_cast<const char *>(whole.data), qsizetype(whole.total()));
}

cv::Mat readMatrix(QDataStream &stream)
{
    qint32 rows = 0;
    qint32 columns = 0;
    QByteArray bytes;
    stream >> rows >> columns >> bytes;
    if (rows < 0 || columns < 0 || rows > longestSide || columns > longestSide
        || qsizetype(rows) * columns != bytes.size()) {
        stream.setStatus(QDataStream::ReadCorruptData);
        return {};
    }
    return cv::Mat(rows, columns, CV_8U, bytes.data()).clone();
}

QByteArray encoded(const AdFeatures &ad)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setFloatingPointPrecision(QDataStream::SinglePrecision);
    stream << qint32(ad.frame.width) << qint32(ad.frame.height) << qint32(ad.features.points.size());
    for (const FeaturePoint &point : ad.features.points)
        stream << point.x << point.y << point.size << point.angle;
    writeMatrix(stream, ad.features.descriptors);
    writeMatrix(stream, ad.thumbnail);
    return bytes;
}

std::optional<AdFeatures> decoded(const QByteArray &bytes)
{
    QDataStream stream(bytes);
    stream.setFloatingPointPrecision(QDataStream::SinglePrecision);
    AdFeatures ad;
    qint32 points = 0;
    stream >> ad.frame.width >> ad.frame.height >> points;
    for (qint32 i = 0; i < points && stream.status() == QDataStream::Ok; ++i) {
        FeaturePoint point;
        stream >> point.x >> point.y >> point.size >> point.angle;
        ad.features.points.push_back(point);
    }
    ad.features.descriptors = readMatrix(stream);
    ad.thumbnail = readMatrix(stream);
    if (stream.status() != QDataStream::Ok || ad.features.descriptors.rows != points
        || (points > 0 && ad.features.descriptors.cols != descriptorLength))
        return std::nullopt;
    return ad;
}

} // namespace

FeatureCache::FeatureCache(QString folder)
    : m_folder(std::move(folder))
{
}

QString FeatureCache::pathFor(const QByteArray &picture) const
{
    return QStringLiteral("%1/%2-%3.features")
        .arg(m_folder, QString::fromLatin1(hash(picture).toHex()))
        .arg(featuresVersion());
}

std::optional<AdFeatures> FeatureCache::find(const QByteArray &picture) const
{
    QFile file(pathFor(picture));
    if (m_folder.isEmpty() || !file.open(QIODevice::ReadOnly) || file.size() > largestFile)
        return std::nullopt;
    QDataStream stream(&file);
    quint32 mark = 0;
    QByteArray check;
    QByteArray content;
    stream >> mark >> check >> content;
    if (mark != fileMark || stream.status() != QDataStream::Ok || check != hash(content))
        return std::nullopt;
    return decoded(content);
}

void FeatureCache::store(const QByteArray &picture, const AdFeatures &features) const
{
    if (m_folder.isEmpty() || !QDir().mkpath(m_folder))
        return;
    QSaveFile file(pathFor(picture));
    if (!file.open(QIODevice::WriteOnly))
        return;
    const QByteArray content = encoded(features);
    QDataStream stream(&file);
    stream << fileMark << hash(content) << content;
    file.commit();
}

} // namespace MatchService
