#pragma once

#include <QString>

namespace Platform
{

// The host application's persistent settings (QSettings under the application's own organisation and name).
class UserDefaults
{
public:
    // False when nothing is stored under the key.
    static bool boolForKey(const QString &key);
    static void setBool(bool value, const QString &key);
    // Writes pending changes at once.
    static void synchronize();
};

} // namespace Platform
