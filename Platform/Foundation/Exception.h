#pragma once

#include "Platform/Foundation/Export.h"

#include <QString>

#include <exception>

namespace Platform
{

// A programming or packaging fault, as the platform raises it. Not used for results: those travel through blocks.
class BREVANTO_EXPORT Exception : public std::exception
{
public:
    // The kinds of faults.
    enum class Name { InternalInconsistency, InvalidArgument, Range };

    // `reason` says in a sentence what is wrong.
    Exception(Name name, const QString &reason);

    // What it was made with; what() gives both as UTF-8.
    Name name() const { return m_name; }
    QString reason() const { return m_reason; }
    const char *what() const noexcept override;

private:
    Name m_name;
    QString m_reason;
    QByteArray m_what;
};

// Raises InvalidArgument.
[[noreturn]] void refuseArgument(const QString &reason);

// Reports a failed assertion with its place to the log and raises InternalInconsistency. A null file or function name
// is reported as "<Unknown File>" or "<Unknown Function>".
[[noreturn]] void failAssertion(const QString &message, const char *function, const char *file, int line);

} // namespace Platform
