#ifndef VYXCORE_SYSTEM_H
#define VYXCORE_SYSTEM_H

#include "vyxexport.h"

#endif
