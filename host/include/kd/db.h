#pragma once

/// The drawing database: every class and operation of it that the host offers.

#include "kd/db/block_record.h"
#include "kd/db/blocks.h"
#include "kd/db/color.h"
#include "kd/db/curves.h"
#include "kd/db/database.h"
#include "kd/db/dictionary.h"
#include "kd/db/dimension.h"
#include "kd/db/ellipse.h"
#include "kd/db/entity.h"
#include "kd/db/faces.h"
#include "kd/db/ids.h"
#include "kd/db/kept_entities.h"
#include "kd/db/layout.h"
#include "kd/db/object.h"
#include "kd/db/region.h"
#include "kd/db/spline.h"
#include "kd/db/tables.h"
#include "kd/db/text.h"
#include "kd/db/transaction.h"
#include "kd/db/unbounded_lines.h"
