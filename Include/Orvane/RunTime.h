/// \file RunTime.h
/// The process's table of run-time classes (liborvaneruntime.so).
///
/// Libraries of one process that do not link to each other meet here: one registers a class under a name, another looks
/// the name up, makes an instance and sends it selectors. A class has two method tables, one for its instances and one
/// for the class itself, and a set of protocol names. Names, selectors and protocols are compared byte by byte.
///
/// Selectors are written with a colon for each argument ("addObserver:", "application:openURL:options:"), and a method
/// receives its arguments as an array with one entry for each colon.
///
/// Thread rule: every function may be called from any thread; the table has one lock, which is never held while a
/// method runs. Nothing here is ever removed: a class lives for the process.
///
/// C99 and C++11. Every function takes null for a class, object, name or selector and then gives the neutral value
/// stated.
#ifndef ORVANE_RUNTIME_H
#define ORVANE_RUNTIME_H

#include <stddef.h>
#include <stdint.h>

#if defined(__GNUC__)
#define ORVANE_RUNTIME_API __attribute__((visibility("default")))
#define ORVANE_RUNTIME_PRINTF(text, first) __attribute__((format(printf, text, first)))
#else
#define ORVANE_RUNTIME_API
#define ORVANE_RUNTIME_PRINTF(text, first)
#endif

/// Marks the functions that a header brings along: of these C++ keeps one copy, and C one for each source file.
#ifdef __cplusplus
#define ORVANE_RUNTIME_INLINE inline
#else
#define ORVANE_RUNTIME_INLINE static inline
#endif

#ifdef __cplusplus
extern "C" {
#endif

/// A class of the table; opaque.
typedef struct orvane_class orvane_class;

/// An instance. It may be created by orvane_object_create or be a member or a static of its maker, with `isa` set.
typedef struct orvane_object {
    orvane_class* isa;  ///< its class
    void* data;         ///< what the methods of the class keep with the instance; the run time never looks at it
} orvane_object;

/// A method's code. `self` is the instance, or null in a class method; `selector` is the selector under which it was
/// reached; `arguments` has one entry for each colon of that selector and is null where there is none. A bool, a mask
/// or another integer is returned as a pointer of that value.
typedef void* (*orvane_implementation)(orvane_object* self, const char* selector, void* const* arguments);

/// Makes a class that cannot be found by name yet. Owned by the run time. Null for a null or empty name.
ORVANE_RUNTIME_API orvane_class* orvane_class_allocate(const char* name);
/// Enters the class under its name. False (0) if the name is taken already.
ORVANE_RUNTIME_API int orvane_class_register(orvane_class* cls);
/// The registered class of that name, or null.
ORVANE_RUNTIME_API orvane_class* orvane_class_lookup(const char* name);
/// The class's name, valid for the process; null for a null class.
ORVANE_RUNTIME_API const char* orvane_class_name(const orvane_class* cls);

/// Adds an instance method. False (0) if the class has one under that selector already: nothing is replaced.
ORVANE_RUNTIME_API int orvane_class_add_method(orvane_class* cls, const char* selector, orvane_implementation code);
/// Adds a method of the class itself, by the same rule.
ORVANE_RUNTIME_API int orvane_class_add_class_method(orvane_class* cls, const char* selector,
                                                     orvane_implementation code);
/// The instance method's code, or null.
ORVANE_RUNTIME_API orvane_implementation orvane_class_get_method(const orvane_class* cls, const char* selector);
/// The class method's code, or null. Not null means that the class itself responds to the selector.
ORVANE_RUNTIME_API orvane_implementation orvane_class_get_class_method(const orvane_class* cls, const char* selector);
/// Exchanges the code of two instance methods in one step. False (0), and nothing changed, if either is missing.
ORVANE_RUNTIME_API int orvane_class_exchange_methods(orvane_class* cls, const char* first, const char* second);

/// Declares that instances of the class follow a protocol. False (0) if it was declared before.
ORVANE_RUNTIME_API int orvane_class_add_protocol(orvane_class* cls, const char* protocol);
/// Whether the protocol was declared. 0 for any null.
ORVANE_RUNTIME_API int orvane_class_conforms(const orvane_class* cls, const char* protocol);

/// Sends a selector to the class itself. Null if it has no such method.
ORVANE_RUNTIME_API void* orvane_class_perform(const orvane_class* cls, const char* selector, void* const* arguments);

/// Makes an instance with null `data`; then, if the class has an instance method "init", performs it. The caller owns
/// the result and gives it back to orvane_object_release. Null for a null class.
ORVANE_RUNTIME_API orvane_object* orvane_object_create(orvane_class* cls);
/// Performs "dealloc" if the class has it, then frees the instance. Only for what orvane_object_create made.
ORVANE_RUNTIME_API void orvane_object_release(orvane_object* object);
/// Whether the object's class has an instance method under the selector. 0 for any null.
ORVANE_RUNTIME_API int orvane_object_responds(const orvane_object* object, const char* selector);
/// Sends a selector to an instance. Null if it does not respond.
ORVANE_RUNTIME_API void* orvane_object_perform(orvane_object* object, const char* selector, void* const* arguments);

/// The platform's console call: writes one line, made of the local time, the process id and the text, to standard
/// error with a single `write`. A newline at the text's end is not doubled. The text may have any length.
ORVANE_RUNTIME_API void orvane_console_write(const char* text, size_t length);
/// The same, formatted as printf does.
ORVANE_RUNTIME_API void orvane_console_log(const char* format, ...) ORVANE_RUNTIME_PRINTF(1, 2);

#ifdef __cplusplus
}
#endif

/* What is sent and what comes back are void pointers; these say what they stand for, in either language. */

/// An argument that the method only reads.
ORVANE_RUNTIME_INLINE void* orvane_argument(const void* value) {
#ifdef __cplusplus
    return const_cast<void*>(value);
#else
    return (void*)value;
#endif
}

/// A result that is an instance.
ORVANE_RUNTIME_INLINE orvane_object* orvane_result_object(void* result) {
#ifdef __cplusplus
    return static_cast<orvane_object*>(result);
#else
    return result;
#endif
}

/// A result that is a number; 0 for null.
ORVANE_RUNTIME_INLINE int orvane_result_int(void* result) {
#ifdef __cplusplus
    return static_cast<int>(reinterpret_cast<intptr_t>(result));
#else
    return (int)(intptr_t)result;
#endif
}

#endif
