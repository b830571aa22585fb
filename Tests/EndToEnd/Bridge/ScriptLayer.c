/* What a game's script layer does: it sets the ten callbacks, creates objects by name and id, is answered, and removes
 * the objects. usage: bridge-script-layer LIBRARY_OF_NATIVE_HALVES */
#include <dlfcn.h>
#include <inttypes.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "Orvane/OrvaneCore.h"

/* The calls since the last look, one a line. */
static char received[2048];

static void Note(const char* format, ...) {
    const size_t used = strlen(received);
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(received + used, sizeof received - used, format, arguments);
    va_end(arguments);
}

/* Bytes as hexadecimal digits, in memory that the next call but one takes again. */
static const char* Hex(const char* bytes, int length) {
    static char texts[2][64];
    static int turn = 0;
    char* const text = texts[turn = !turn];
    text[0] = '\0';
    for (int i = 0; i < length && i < 30; ++i)
        sprintf(text + 2 * i, "%02x", (unsigned char)bytes[i]);
    return text;
}

static void OnMessage(uint64_t id, const char* method, const char* message) {
    Note("%" PRIx64 " %s %s\n", id, method, message);
}
static void OnStruct(uint64_t id, const char* method, void* data) {
    Note("%" PRIx64 " %s %.1f\n", id, method, *(double*)data);
}
static void OnResult(uint64_t id, const char* method, int result) {
    Note("%" PRIx64 " %s %d\n", id, method, result);
}
static void OnResultStruct(uint64_t id, const char* method, const char* result, int length) {
    Note("%" PRIx64 " %s %s\n", id, method, Hex(result, length));
}
static void OnBuffer(uint64_t id, const char* method, const char* buffer, int length) {
    Note("%" PRIx64 " %s %s\n", id, method, Hex(buffer, length));
}
static void OnResultBuffer(uint64_t id, const char* method, int result, const char* buffer, int length) {
    Note("%" PRIx64 " %s %d %s\n", id, method, result, Hex(buffer, length));
}
static void OnResultStructBuffer(uint64_t id, const char* method, const char* result, int resultLength,
                                 const char* buffer, int length) {
    Note("%" PRIx64 " %s %s %s\n", id, method, Hex(result, resultLength), Hex(buffer, length));
}
static void OnVoidMethod(uint64_t id, int method) {
    Note("%" PRIx64 " %d\n", id, method);
}
static void OnVoidMethodParam(uint64_t id, int method, const char* parameter) {
    Note("%" PRIx64 " %d %s\n", id, method, parameter);
}
static void OnVoidMethodBuffer(uint64_t id, int method, const char* buffer, int length) {
    Note("%" PRIx64 " %d %s\n", id, method, Hex(buffer, length));
}

static void SetCallbacks(void) {
    setArborSendMessageCallback(OnMessage);
    setArborSendStructCallback(OnStruct);
    setArborSendResultCallback(OnResult);
    setArborSendResultStructCallback(OnResultStruct);
    setArborSendBufferCallback(OnBuffer);
    setArborSendResultBufferCallback(OnResultBuffer);
    setArborSendResultStructBufferCallback(OnResultStructBuffer);
    setArborSendVoidMethodCallback(OnVoidMethod);
    setArborSendVoidMethodParamCallback(OnVoidMethodParam);
    setArborSendVoidMethodBufferCallback(OnVoidMethodBuffer);
}

static void Require(int condition, const char* what) {
    if (condition) return;
    fprintf(stderr, "failed: %s\nreceived:\n%s", what, received);
    exit(1);
}
#define REQUIRE(condition) Require(condition, #condition)

static void RequireReceived(const char* wanted) {
    Require(strcmp(received, wanted) == 0, wanted);
    received[0] = '\0';
}

int main(int argc, char** argv) {
    void* const library = argc == 2 ? dlopen(argv[1], RTLD_NOW) : NULL;
    void* const symbol = library ? dlsym(library, "echo_answer") : NULL;
    int (*answer)(uint64_t objectId) = NULL;
    memcpy(&answer, &symbol, sizeof answer);
    REQUIRE(answer != NULL);

    const uint64_t kFirst = 0xFEDCBA9876543210u, kSecond = 2;
    REQUIRE(!answer(kFirst));
    REQUIRE(!CreatePlatformObject("Nobody", kFirst));
    REQUIRE(CreatePlatformObject("Echo", kFirst));
    REQUIRE(answer(kFirst));
    RequireReceived("");

    SetCallbacks();
    REQUIRE(addPlatformObject(kSecond, "Echo"));
    REQUIRE(answer(kFirst));
    RequireReceived(
        "fedcba9876543210 message text\n"
        "fedcba9876543210 struct 2.5\n"
        "fedcba9876543210 result -7\n"
        "fedcba9876543210 resultStruct 610062\n"
        "fedcba9876543210 buffer 6100\n"
        "fedcba9876543210 resultBuffer 8 610062\n"
        "fedcba9876543210 resultStructBuffer 61 610062\n"
        "fedcba9876543210 10\n"
        "fedcba9876543210 11 parameter\n"
        "fedcba9876543210 12 610062\n");
    REQUIRE(quern_arbor_object_get_len(kFirst) == 0);
    REQUIRE(quern_arbor_object_read_buffer(kFirst, NULL, 0) == 0);

    removePlatformObject(kFirst);
    RequireReceived("fedcba9876543210 -1\n");
    REQUIRE(!answer(kFirst));
    setArborSendVoidMethodCallback(NULL);
    removePlatformObject(kSecond);
    RequireReceived("");
    return 0;
}
