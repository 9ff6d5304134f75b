#include "liming.h"
