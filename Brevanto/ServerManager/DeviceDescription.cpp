#include "Brevanto/ServerManager/DeviceDescription.h"

#include <QSysInfo>

#ifdef Q_OS_ANDROID
#include <QJniObject>
#endif

namespace DeviceDescription
{

QString model()
{
#if defined(Q_OS_ANDROID)
    return QJniObject::getStaticObjectField<jstring>("android/os/Build", "MODEL").toString();
#elif defined(Q_OS_IOS)
    return QStringLiteral("Phone");
#else
    return QStringLiteral("Desktop");
#endif
}

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
