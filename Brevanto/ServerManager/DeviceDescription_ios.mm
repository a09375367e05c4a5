#include "Brevanto/ServerManager/DeviceDescription.h"

#import <UIKit/UIKit.h>

QString DeviceDescription::model()
{
    return QString::fromNSString(UIDevice.currentDevice.model);
}
