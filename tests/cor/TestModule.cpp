// cor/TestModule.cpp - a module for the tests of the loader.
extern "C" __attribute__((visibility("default"))) int CorTestAnswer() { return 42; }
