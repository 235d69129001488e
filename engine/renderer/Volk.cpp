#define VOLK_IMPLEMENTATION
#include <volk.h>
