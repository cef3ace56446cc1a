#pragma once

#include "kd/db/ids.h"
#include "kd/own/sound_variant.h"

#include <string>

/// The value of a dimension variable: integer or flag, real, text or reference.
using KdDbDimensionValue = korra::SoundVariant<int, double, std::wstring, KdDbObjectId>;
