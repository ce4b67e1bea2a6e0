// Fixture for the dependency check's own test: this file must be reported.
#include <xcb/xcb.h>
