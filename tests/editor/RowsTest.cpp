// x
#include <gtest/gtest.h>
