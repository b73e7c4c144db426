#include "app/Outer.h"
