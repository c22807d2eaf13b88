#define DOCTEST_CONFIG_IMPLEMENT  // with a main of its own, as the header is precompiled without one
#include <doctest/doctest.h>

int main(int count, char** arguments) { return doctest::Context(count, arguments).run(); }
