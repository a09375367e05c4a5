#pragma once

#include "support/FakeCamera.h"
