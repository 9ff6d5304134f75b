#include "laudo.h"
