// Assertions that are part of the behaviour: broken contracts end the process in every kind of build.
#ifndef ORVANE_BASE_ASSERT_H
#define ORVANE_BASE_ASSERT_H

namespace Quern {

// Prints the expression's text, file and line on standard error, then aborts.
[[noreturn]] void AssertionFailed(const char* expression, const char* file, int line);

}  // namespace Quern

#define ORVANE_ASSERT(expression) ORVANE_ASSERT_TEXT(expression, #expression)

// For a contract whose printed text differs from the code that checks it.
#define ORVANE_ASSERT_TEXT(expression, text) \
    (__builtin_expect(static_cast<bool>(expression), 1) ? void(0) : ::Quern::AssertionFailed(text, __FILE__, __LINE__))

#endif
