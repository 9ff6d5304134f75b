#include "formulas.h"
