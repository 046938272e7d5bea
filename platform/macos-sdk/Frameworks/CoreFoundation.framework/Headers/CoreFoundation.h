#ifndef COREFOUNDATION_COREFOUNDATION_H
#define COREFOUNDATION_COREFOUNDATION_H

#include <CoreFoundation/CFBase.h>
#include <CoreFoundation/CFBundle.h>

#endif
