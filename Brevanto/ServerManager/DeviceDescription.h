#pragma once

#include <QString>

// What an upload tells the service about the device. Holds nothing that identifies the device or its user.
namespace DeviceDescription
{

// Model name where the system gives one, else the kind of device.
QString model();

QString systemName();

QString systemVersion();

} // namespace DeviceDescription
