#include "support/support.h"
