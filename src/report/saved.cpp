#include "saved.h"
