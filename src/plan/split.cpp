#include "split.h"
