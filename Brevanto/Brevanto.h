#pragma once

// All that a host application needs of the SDK.
#include "Brevanto/BrevantoClient.h"
#include "Brevanto/BrevantoConstants.h"
#include "Brevanto/BrevantoShownScreen.h"
#include "Brevanto/BrevantoVersion.h"
#include "Brevanto/Model/BrevantoCaptionedImage.h"
#include "Brevanto/Model/BrevantoCatalogueImage.h"
#include "Brevanto/Model/BrevantoFields.h"
#include "Brevanto/Model/BrevantoRecentsFileManager.h"
#include "Brevanto/Model/BrevantoRelatedContent.h"
#include "Brevanto/Reachability/BrevantoReachability.h"
#include "Brevanto/ServerManager/BrevantoServerManager.h"
#include "Brevanto/Utils/ImageResizeAndCrop.h"
#include "Brevanto/Utils/ImageScale.h"
#include "Platform/Foundation/Exception.h"
#include "Platform/Foundation/NotificationCenter.h"
