#pragma once

// The host's geometry: values, matrices, planes and curves.

#include "kd/ge/angle.h"
#include "kd/ge/circ_arc2d.h"
#include "kd/ge/circ_arc3d.h"
#include "kd/ge/composite_curve3d.h"
#include "kd/ge/curve2d.h"
#include "kd/ge/curve3d.h"
#include "kd/ge/curve_curve_int3d.h"
#include "kd/ge/extents3d.h"
#include "kd/ge/linear3d.h"
#include "kd/ge/matrix3d.h"
#include "kd/ge/plane.h"
#include "kd/ge/point2d.h"
#include "kd/ge/point3d.h"
#include "kd/ge/scale3d.h"
#include "kd/ge/tol.h"
#include "kd/ge/vector3d.h"
