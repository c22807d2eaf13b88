#include "kem.h"
int KemFileName(char*, int) { return 1; }
