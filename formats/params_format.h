#ifndef QUORVANE_FORMATS_PARAMS_FORMAT_H
#define QUORVANE_FORMATS_PARAMS_FORMAT_H

// The params file beside an installer's executable: properties that may be changed without signing
// the archives again.
//
//   file  = *byte marker count *( name value )
//   count = field of decimal text      (number of pairs)
//   name  = field                      (limit DEFAULT_FIELD_LIMIT)
//   value = field                      (limit PARAM_VALUE_LIMIT)

// The read limit of a value in bytes.
constexpr int PARAM_VALUE_LIMIT = 200000;

// Length of the marker in bytes, and the marker.
constexpr int PARAMS_MARKER_SIZE = 64;
extern const unsigned char paramsMarker[PARAMS_MARKER_SIZE];

#endif
