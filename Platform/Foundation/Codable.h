#pragma once

#include "Platform/Foundation/Export.h"

#include <QString>

#include <memory>

namespace Platform
{

class KeyedArchiver;
class KeyedUnarchiver;

// A record that a keyed archive can hold. Records have identity and are shared: inside a QVariant they travel as
// CodablePointer. For one thread at a time, as is its archiving.
class BREVANTO_EXPORT Codable
{
public:
    Codable() = default;
    virtual ~Codable();

    // The name that the archive keeps and the reader finds the class by.
    virtual QString className() const = 0;

    // Writes each field under its key. The archiver guards the call as one sequence: an exception ends it, its
    // description goes to the log, and what was written stays. Coders are the library's own.
    virtual void encodeWithCoder(KeyedArchiver &coder) const = 0;
    // Reads the fields back into a newly made record. Guarded alike: the record stays as far as it came.
    virtual void initWithCoder(KeyedUnarchiver &coder) = 0;

private:
    Q_DISABLE_COPY_MOVE(Codable)
};

// How records are shared.
using CodablePointer = std::shared_ptr<Codable>;

} // namespace Platform

// Lets a QVariant hold the pointer itself, where it would otherwise hold memory with a copy in it: archives and answers
// have lists of many records.
Q_DECLARE_TYPEINFO(Platform::CodablePointer, Q_RELOCATABLE_TYPE);
