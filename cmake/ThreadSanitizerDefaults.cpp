// What ThreadSanitizer takes as its options in a program whose threads a library makes that was built without it.
extern "C" __attribute__((visibility("default"))) const char* __tsan_default_options();

const char* __tsan_default_options() {
    return "ignore_noninstrumented_modules=1";
}
