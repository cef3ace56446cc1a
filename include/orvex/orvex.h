#pragma once

/// Everything that an add-on needs: the library's exports and the host's names.

#include "kd/ap.h"
#include "kd/db.h"
#include "kd/ed.h"
#include "kd/ge.h"
#include "kd/gi.h"
#include "kd/rx.h"

#include "orvex/colors.h"
#include "orvex/coordinates.h"
#include "orvex/dim_override.h"
#include "orvex/dim_styles.h"
#include "orvex/layers.h"
#include "orvex/linetypes.h"
#include "orvex/objects.h"
#include "orvex/pick_copies.h"
#include "orvex/picking.h"
#include "orvex/planar.h"
#include "orvex/savers.h"
#include "orvex/shell.h"
#include "orvex/strings.h"
#include "orvex/subentities.h"
#include "orvex/system_variables.h"
#include "orvex/text_styles.h"
#include "orvex/view_tolerances.h"
#include "orvex/viewports.h"
