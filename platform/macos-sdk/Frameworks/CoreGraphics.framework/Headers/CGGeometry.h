#ifndef COREGRAPHICS_CGGEOMETRY_H
#define COREGRAPHICS_CGGEOMETRY_H

typedef double CGFloat;

typedef struct CGPoint {
  CGFloat x;
  CGFloat y;
} CGPoint;

typedef struct CGSize {
  CGFloat width;
  CGFloat height;
} CGSize;

typedef struct CGRect {
  CGPoint origin;
  CGSize size;
} CGRect;

#endif
