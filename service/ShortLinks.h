#pragma once

#include <QtCore/QHash>
#include <QtCore/QMutex>
#include <QtCore/QQueue>
#include <QtCore/QString>

namespace MatchService
{

/// Short codes for long addresses, in memory, for as long as the process runs. The same address always gets the same
/// code. When there are very many, the oldest are forgotten. Safe to use from several threads.
class ShortLinks
{
public:
    /// Nothing but an absolute http or https address of reasonable length has a code.
    static bool isAcceptable(const QString &address);

    QString codeFor(const QString &address);
    /// Null for an unknown code.
    QString addressFor(const QString &code) const;

private:
    mutable QMutex m_mutex;
    QHash<QString, QString> m_addresses;
    QQueue<QString> m_codes;
};

} // namespace MatchService
