#ifndef COREGRAPHICS_COREGRAPHICS_H
#define COREGRAPHICS_COREGRAPHICS_H

#include <CoreGraphics/CGGeometry.h>
#include <CoreGraphics/CGWindowLevel.h>

#endif
