// Clang's thread-safety attributes; empty for compilers without them. They change no code: the lint lane compiles with
// them, and fails where a guarded member is touched without its lock.
#ifndef ORVANE_SYSTEM_THREAD_THREAD_ANNOTATIONS_H
#define ORVANE_SYSTEM_THREAD_THREAD_ANNOTATIONS_H

#if defined(__clang__)
#define ORVANE_THREAD_ATTRIBUTE(x) __attribute__((x))
#else
#define ORVANE_THREAD_ATTRIBUTE(x)
#endif

// Of a class: it is a lock, or holds one for its scope.
#define ORVANE_CAPABILITY(name) ORVANE_THREAD_ATTRIBUTE(capability(name))
#define ORVANE_SCOPED_CAPABILITY ORVANE_THREAD_ATTRIBUTE(scoped_lockable)
// Of a member: it, or what it points at, is touched under that lock alone.
#define ORVANE_GUARDED_BY(mutex) ORVANE_THREAD_ATTRIBUTE(guarded_by(mutex))
#define ORVANE_PT_GUARDED_BY(mutex) ORVANE_THREAD_ATTRIBUTE(pt_guarded_by(mutex))
// Of a function: its caller holds the locks; it takes them; it lets go of them; its caller must not hold them.
#define ORVANE_REQUIRES(...) ORVANE_THREAD_ATTRIBUTE(requires_capability(__VA_ARGS__))
#define ORVANE_ACQUIRE(...) ORVANE_THREAD_ATTRIBUTE(acquire_capability(__VA_ARGS__))
#define ORVANE_RELEASE(...) ORVANE_THREAD_ATTRIBUTE(release_capability(__VA_ARGS__))
#define ORVANE_EXCLUDES(...) ORVANE_THREAD_ATTRIBUTE(locks_excluded(__VA_ARGS__))
// Of a function whose locking the analysis cannot follow, such as one that locks only if it is told to.
#define ORVANE_NO_THREAD_SAFETY_ANALYSIS ORVANE_THREAD_ATTRIBUTE(no_thread_safety_analysis)

#endif
