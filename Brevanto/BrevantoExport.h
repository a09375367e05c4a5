#pragma once

#include "Platform/Foundation/Export.h"
