#pragma once

#include "Platform/Foundation/Export.h"

#include <QString>

#include <exception>

// The types of the phone platform that the SDK takes and returns.
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

    // The kind that it was made with.
    Name name() const { return m_name; }
    // The sentence that it was made with.
    QString reason() const { return m_reason; }
    // Both as UTF-8.
    const char *what() const noexcept override;

private:
    Name m_name;
    QString m_reason;
    QByteArray m_what;
};

} // namespace Platform
