#include "service/ShortLinks.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QUrl>

#include <algorithm>

namespace MatchService
{

namespace
{

constexpr int codeLength = 10;
constexpr int longestAddress = 4096;
constexpr int mostLinks = 10000;

} // namespace

bool ShortLinks::isAcceptable(const QString &address)
{
    const bool hasControls = std::any_of(address.begin(), address.end(),
                                         [](QChar letter) { return letter.category() == QChar::Other_Control; });
    const QUrl url(address);
    return address.size() <= longestAddress && !hasControls && url.isValid() && !url.host().isEmpty()
        && (url.scheme() == QStringLiteral("http") || url.scheme() == QStringLiteral("https"));
}

QString ShortLinks::codeFor(const QString &address)
{
    const QByteArray digest = QCryptographicHash::hash(address.toUtf8(), QCryptographicHash::Sha256);
    QString code = QString::fromLatin1(digest.toHex().left(codeLength));
    const QMutexLocker lock(&m_mutex);
    if (!m_addresses.contains(code))
        m_codes.enqueue(code);
    m_addresses.insert(code, address);
    if (m_codes.size() > mostLinks)
        m_addresses.remove(m_codes.dequeue());
    return code;
}

QString ShortLinks::addressFor(const QString &code) const
{
    const QMutexLocker lock(&m_mutex);
    return m_addresses.value(code);
}

} // namespace MatchService
