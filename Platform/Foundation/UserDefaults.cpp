#include "Platform/Foundation/UserDefaults.h"

#include <QSettings>

namespace Platform
{

bool UserDefaults::boolForKey(const QString &key)
{
    return QSettings().value(key, false).toBool();
}

void UserDefaults::setBool(bool value, const QString &key)
{
    QSettings().setValue(key, value);
}

void UserDefaults::synchronize()
{
    QSettings().sync();
}

} // namespace Platform
