#pragma once

#include <QtGlobal>

class QObject;

namespace Platform
{
class ReachabilityTarget;
}

// What a monitor gives its target to call; `info` is the monitor.
void ReachabilityCallback(Platform::ReachabilityTarget *target, quint32 flags, QObject *info);
