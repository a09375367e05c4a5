#include "Platform/Capture/CaptureAuthorization.h"

#include "Platform/Foundation/DispatchQueue.h"

#include <QCoreApplication>

#if QT_VERSION >= QT_VERSION_CHECK(6, 5, 0) && QT_CONFIG(permissions)
#include <QPermissions>
#define PLATFORM_HAS_PERMISSIONS
#endif
#ifdef Q_OS_IOS
#include "Platform/Capture/CaptureAuthorizationRestriction.h"
#endif

namespace Platform
{

namespace
{

#ifdef PLATFORM_HAS_PERMISSIONS

class SystemAuthorization final : public CaptureAuthorization
{
public:
    CaptureAuthorizationStatus status() const override
    {
        return translated(qApp->checkPermission(QCameraPermission()));
    }

    void request(std::function<void(bool)> completion) override
    {
        qApp->requestPermission(QCameraPermission(), qApp,
                                [completion = std::move(completion)](const QPermission &permission) {
                                    completion(permission.status() == Qt::PermissionStatus::Granted);
                                });
    }

private:
    static CaptureAuthorizationStatus translated(Qt::PermissionStatus status)
    {
        switch (status) {
        case Qt::PermissionStatus::Undetermined:
            return CaptureAuthorizationStatus::NotDetermined;
        case Qt::PermissionStatus::Granted:
            return CaptureAuthorizationStatus::Authorized;
        case Qt::PermissionStatus::Denied:
            break;
        }
#ifdef Q_OS_IOS
        if (isCaptureRestricted())
            return CaptureAuthorizationStatus::Restricted;
#endif
        return CaptureAuthorizationStatus::Denied;
    }
};

#else

// A Qt without permission objects leaves the asking to the system, which a desktop does not do.
class SystemAuthorization final : public CaptureAuthorization
{
public:
    CaptureAuthorizationStatus status() const override { return CaptureAuthorizationStatus::Authorized; }

    void request(std::function<void(bool)> completion) override
    {
        DispatchQueue::mainAsync([completion = std::move(completion)] { completion(true); });
    }
};

#endif

CaptureAuthorization *replacement = nullptr;

} // namespace

CaptureAuthorization &CaptureAuthorization::current()
{
    static SystemAuthorization system;
    return replacement ? *replacement : system;
}

void CaptureAuthorization::setCurrent(CaptureAuthorization *authorization)
{
    replacement = authorization;
}

} // namespace Platform
