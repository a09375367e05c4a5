#include "Brevanto/ServerManager/DeviceDescription.h"

#include <QSysInfo>

#ifdef Q_OS_ANDROID
#include <QJniObject>
#endif

namespace DeviceDescription
{

#ifndef Q_OS_IOS
QString model()
{
#ifdef Q_OS_ANDROID
    return QJniObject::getStaticObjectField<jstring>("android/os/Build", "MODEL").toString();
#else
    return QStringLiteral("Desktop");
#endif
}
#endif

QString systemName()
{
#if defined(Q_OS_ANDROID)
    return QStringLiteral("Android");
#elif defined(Q_OS_IOS)
    return QStringLiteral("iOS");
#else
    return QSysInfo::productType();
#endif
}

QString systemVersion()
{
    return QSysInfo::productVersion();
}

} // namespace DeviceDescription
