#include "kd/ge/tol.h"

KdGeTol KdGeContext::gTol;
