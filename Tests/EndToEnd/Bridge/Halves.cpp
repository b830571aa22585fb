// Native halves of the script class "Echo", as a sibling library has them.
#include "Orvane/PlatformObject.h"

namespace {

class Request : public Quern::CPlatformObject {
public:
    ~Request() override { SendUnityMethod(-1); }
};

class Response : public Quern::CPlatformObject {};

template <typename Half>
class Factory : public IPlatformObjectFactory {
public:
    Quern::IPlatformObject* Create() override { return new Half; }
};

Factory<Request> g_requests;
Factory<Response> g_responses;

const bool g_registered = gs_OrvaneRegisterPlatformClass("Echo.REQ", &g_requests) &&
                          gs_OrvaneRegisterPlatformClass("Echo.RESP", &g_responses);

}  // namespace

// What the script layer calls to have the object answer, in every way there is. 0 if there is no such object.
extern "C" ORVANE_EXPORT int echo_answer(uint64_t objectId) {
    Quern::IPlatformBridge* const bridge = g_registered ? gs_GetOrvanePlatformBridge() : nullptr;
    Quern::CPlatformObject* const half = bridge ? bridge->GetRespManager()->GetPlatformObject(objectId) : nullptr;
    if (!half) return 0;
    const char bytes[] = {'a', '\0', 'b'};
    double number = 2.5;
    half->SendUnityMessage("message", "text");
    half->SendUnityStruct("struct", &number);
    half->SendUnityResult("result", -7);
    half->SendUnityResult("resultStruct", bytes, 3);
    half->SendUnityBuffer("buffer", bytes, 2);
    half->SendUnityBuffer("resultBuffer", 8, bytes, 3);
    half->SendUnityBuffer("resultStructBuffer", bytes, 1, bytes, 3);
    half->SendUnityMethod(10);
    half->SendUnityMethod(11, "parameter");
    half->SendUnityMethod(12, bytes, 3);
    return 1;
}
