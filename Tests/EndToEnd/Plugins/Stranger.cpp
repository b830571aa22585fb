// A library that has nothing to do with the host.
extern "C" __attribute__((visibility("default"))) int stranger_answer() {
    return 42;
}
