// A library that is no package: it lacks the entry.
extern "C" void Unregistered() {}
