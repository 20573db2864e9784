#ifndef VYXCORE_CMDLINE_H
#define VYXCORE_CMDLINE_H

#include "vyxexport.h"

#endif
