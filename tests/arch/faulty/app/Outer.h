#include "app/in/Inner.h"
#include <tests/Test.h>
