#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

// What the window's button does: everything a host application needs of the SDK is in this one call.
class Host : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    Q_INVOKABLE void showCameraScreen();
};
