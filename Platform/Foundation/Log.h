#pragma once

#include <QString>

namespace Platform
{

// Writes one message to the system log, always on: info level of the category "brevanto". From any thread.
void log(const QString &message);

} // namespace Platform
