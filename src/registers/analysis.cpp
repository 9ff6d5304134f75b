#include "analysis.h"
