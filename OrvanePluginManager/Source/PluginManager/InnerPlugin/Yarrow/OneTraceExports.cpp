// The five calls as the game's script layer makes them.
#include <cstring>

#include "Base/XLog.h"
#include "Orvane/IOneTraceService.h"
#include "Orvane/OrvaneCore.h"

using Orvane::IOneTraceService;

namespace {

bool HasRoom(const char* value, int size) {
    if (value && size > 0) return true;
    ORVANE_LOG_ERROR("value == NULL || size <=0");
    return false;
}

// Copies the text and fills the rest with zeros. A null counts as an empty text.
bool Give(const char* text, char* value, int size) {
    if (!text) text = "";
    if (strlen(text) >= static_cast<size_t>(size)) return false;
    strncpy(value, text, static_cast<size_t>(size));
    return true;
}

}  // namespace

bool orvanecore_onetrace_GetTraceId(char* value, int size) {
    return HasRoom(value, size) && Give(IOneTraceService::GetInstance()->GetTraceId(), value, size);
}

bool orvanecore_onetrace_CreateContext(const char* parentContext, const char* privateType, char* value, int size) {
    return HasRoom(value, size) &&
           Give(IOneTraceService::GetInstance()->CreateContext(parentContext, privateType), value, size);
}

void orvanecore_onetrace_SpanStart(const char* context, const char* name, const char* locName, const char* rmtName) {
    IOneTraceService::GetInstance()->SpanStart(context, name, locName, rmtName);
}

void orvanecore_onetrace_SpanFlush(const char* context, const char* key, const char* value) {
    IOneTraceService::GetInstance()->SpanFlush(context, key, value);
}

void orvanecore_onetrace_SpanFinish(const char* context, const char* errCode, const char* errMsg) {
    IOneTraceService::GetInstance()->SpanFinish(context, errCode, errMsg);
}
