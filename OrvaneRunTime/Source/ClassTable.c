#define _POSIX_C_SOURCE 200809L

#include <pthread.h>
#include <stdlib.h>
#include <string.h>

#include "Orvane/RunTime.h"

// Classes, methods and protocols are few and never removed: plain lists under one lock serve, and keep every pointer
// that was handed out valid for the process.

typedef struct method {
    struct method* next;
    char* selector;
    orvane_implementation code;
} method;

typedef struct protocol {
    struct protocol* next;
    char* name;
} protocol;

struct orvane_class {
    orvane_class* next;
    char* name;
    int registered;  // until it is 1 no look-up finds the class, so nobody meets one that lacks a part of its methods
    method* instance_methods;
    method* class_methods;
    protocol* protocols;
};

static pthread_mutex_t g_lock = PTHREAD_MUTEX_INITIALIZER;
static orvane_class* g_classes;  // every allocated class, registered or not; guarded by g_lock

static method* find_method(method* list, const char* selector) {
    for (; list; list = list->next)
        if (strcmp(list->selector, selector) == 0) return list;
    return NULL;
}

static orvane_class* find_class(const char* name) {
    for (orvane_class* cls = g_classes; cls; cls = cls->next)
        if (cls->registered && strcmp(cls->name, name) == 0) return cls;
    return NULL;
}

static protocol* find_protocol(protocol* list, const char* name) {
    for (; list; list = list->next)
        if (strcmp(list->name, name) == 0) return list;
    return NULL;
}

// The memory is made before the lock is taken, so that the lock is held for a few pointers only; a selector that turns
// out to be there gives it back.
static int add_method(orvane_class* cls, method** list, const char* selector, orvane_implementation code) {
    if (!cls || !selector || !code) return 0;
    method* added = calloc(1, sizeof *added);
    char* copy = strdup(selector);
    if (!added || !copy) {
        free(added);
        free(copy);
        return 0;
    }
    added->selector = copy;
    added->code = code;

    pthread_mutex_lock(&g_lock);
    const int is_new = find_method(*list, selector) == NULL;
    if (is_new) {
        added->next = *list;
        *list = added;
    }
    pthread_mutex_unlock(&g_lock);

    if (!is_new) {
        free(copy);
        free(added);
    }
    return is_new;
}

static orvane_implementation get_code(method* const* list, const char* selector) {
    pthread_mutex_lock(&g_lock);
    const method* found = find_method(*list, selector);
    const orvane_implementation code = found ? found->code : NULL;
    pthread_mutex_unlock(&g_lock);
    return code;
}

orvane_class* orvane_class_allocate(const char* name) {
    if (!name || !*name) return NULL;
    orvane_class* cls = calloc(1, sizeof *cls);
    char* copy = strdup(name);
    if (!cls || !copy) {
        free(cls);
        free(copy);
        return NULL;
    }
    cls->name = copy;
    pthread_mutex_lock(&g_lock);
    cls->next = g_classes;
    g_classes = cls;
    pthread_mutex_unlock(&g_lock);
    return cls;
}

int orvane_class_register(orvane_class* cls) {
    if (!cls) return 0;
    pthread_mutex_lock(&g_lock);
    const int is_free = find_class(cls->name) == NULL;
    if (is_free) cls->registered = 1;
    pthread_mutex_unlock(&g_lock);
    return is_free;
}

orvane_class* orvane_class_lookup(const char* name) {
    if (!name) return NULL;
    pthread_mutex_lock(&g_lock);
    orvane_class* cls = find_class(name);
    pthread_mutex_unlock(&g_lock);
    return cls;
}

const char* orvane_class_name(const orvane_class* cls) {
    return cls ? cls->name : NULL;
}

int orvane_class_add_method(orvane_class* cls, const char* selector, orvane_implementation code) {
    return add_method(cls, cls ? &cls->instance_methods : NULL, selector, code);
}

int orvane_class_add_class_method(orvane_class* cls, const char* selector, orvane_implementation code) {
    return add_method(cls, cls ? &cls->class_methods : NULL, selector, code);
}

orvane_implementation orvane_class_get_method(const orvane_class* cls, const char* selector) {
    return cls && selector ? get_code(&cls->instance_methods, selector) : NULL;
}

orvane_implementation orvane_class_get_class_method(const orvane_class* cls, const char* selector) {
    return cls && selector ? get_code(&cls->class_methods, selector) : NULL;
}

int orvane_class_exchange_methods(orvane_class* cls, const char* first, const char* second) {
    if (!cls || !first || !second) return 0;
    pthread_mutex_lock(&g_lock);
    method* a = find_method(cls->instance_methods, first);
    method* b = find_method(cls->instance_methods, second);
    if (a && b) {
        const orvane_implementation code = a->code;
        a->code = b->code;
        b->code = code;
    }
    pthread_mutex_unlock(&g_lock);
    return a && b;
}

int orvane_class_add_protocol(orvane_class* cls, const char* name) {
    if (!cls || !name) return 0;
    protocol* added = calloc(1, sizeof *added);
    char* copy = strdup(name);
    int is_new = 0;
    if (added && copy) {
        added->name = copy;
        pthread_mutex_lock(&g_lock);
        is_new = find_protocol(cls->protocols, name) == NULL;
        if (is_new) {
            added->next = cls->protocols;
            cls->protocols = added;
        }
        pthread_mutex_unlock(&g_lock);
    }
    if (!is_new) {
        free(copy);
        free(added);
    }
    return is_new;
}

int orvane_class_conforms(const orvane_class* cls, const char* name) {
    if (!cls || !name) return 0;
    pthread_mutex_lock(&g_lock);
    const int conforms = find_protocol(cls->protocols, name) != NULL;
    pthread_mutex_unlock(&g_lock);
    return conforms;
}

// A method runs without the lock, since it may use the table itself.
void* orvane_class_perform(const orvane_class* cls, const char* selector, void* const* arguments) {
    const orvane_implementation code = orvane_class_get_class_method(cls, selector);
    return code ? code(NULL, selector, arguments) : NULL;
}

orvane_object* orvane_object_create(orvane_class* cls) {
    if (!cls) return NULL;
    orvane_object* object = calloc(1, sizeof *object);
    if (!object) return NULL;
    object->isa = cls;
    orvane_object_perform(object, "init", NULL);
    return object;
}

void orvane_object_release(orvane_object* object) {
    if (!object) return;
    orvane_object_perform(object, "dealloc", NULL);
    free(object);
}

int orvane_object_responds(const orvane_object* object, const char* selector) {
    return object && orvane_class_get_method(object->isa, selector) != NULL;
}

void* orvane_object_perform(orvane_object* object, const char* selector, void* const* arguments) {
    const orvane_implementation code = object ? orvane_class_get_method(object->isa, selector) : NULL;
    return code ? code(object, selector, arguments) : NULL;
}
