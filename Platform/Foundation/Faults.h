#pragma once

class QString;

// How the library raises faults.
namespace Platform
{

// Raises InvalidArgument.
[[noreturn]] void refuseArgument(const QString &reason);

// Reports a failed assertion with its place to the log and raises InternalInconsistency. A null file or function name
// is reported as "<Unknown File>" or "<Unknown Function>".
[[noreturn]] void failAssertion(const QString &message, const char *function, const char *file, int line);

} // namespace Platform
