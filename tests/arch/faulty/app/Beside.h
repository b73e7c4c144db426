#include "Outer.h"
