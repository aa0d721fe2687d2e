#pragma once

// Packages that tests make with the real aapt; the headset makes its first apps with the same code.
#include "../../headset/sample_package.h"
