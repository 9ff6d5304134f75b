#include "grains.h"
