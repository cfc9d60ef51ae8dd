#pragma once

// Annotations for clang's static thread-safety analysis (-Wthread-safety); other compilers see nothing.

#if defined(__clang__)
#define ZR_THREAD_ANNOTATION(x) __attribute__((x))
#else
#define ZR_THREAD_ANNOTATION(x)
#endif

/// A class that is a lock, and a guard class that holds one for its scope.
#define ZR_CAPABILITY(name) ZR_THREAD_ANNOTATION(capability(name))
#define ZR_SCOPED_CAPABILITY ZR_THREAD_ANNOTATION(scoped_lockable)

/// Data that may be touched only with the lock held.
#define ZR_GUARDED_BY(lock) ZR_THREAD_ANNOTATION(guarded_by(lock))
#define ZR_PT_GUARDED_BY(lock) ZR_THREAD_ANNOTATION(pt_guarded_by(lock))

/// What a function needs held, must not find held, takes and gives back.
#define ZR_REQUIRES(...) ZR_THREAD_ANNOTATION(requires_capability(__VA_ARGS__))
#define ZR_REQUIRES_SHARED(...) ZR_THREAD_ANNOTATION(requires_shared_capability(__VA_ARGS__))
#define ZR_EXCLUDES(...) ZR_THREAD_ANNOTATION(locks_excluded(__VA_ARGS__))
#define ZR_ACQUIRE(...) ZR_THREAD_ANNOTATION(acquire_capability(__VA_ARGS__))
#define ZR_ACQUIRE_SHARED(...) ZR_THREAD_ANNOTATION(acquire_shared_capability(__VA_ARGS__))
#define ZR_TRY_ACQUIRE(...) ZR_THREAD_ANNOTATION(try_acquire_capability(__VA_ARGS__))
#define ZR_RELEASE(...) ZR_THREAD_ANNOTATION(release_capability(__VA_ARGS__))
#define ZR_RELEASE_SHARED(...) ZR_THREAD_ANNOTATION(release_shared_capability(__VA_ARGS__))
#define ZR_RELEASE_GENERIC(...) ZR_THREAD_ANNOTATION(release_generic_capability(__VA_ARGS__))
#define ZR_RETURN_CAPABILITY(lock) ZR_THREAD_ANNOTATION(lock_returned(lock))

/// For code whose locking the analysis cannot follow.
#define ZR_NO_THREAD_SAFETY_ANALYSIS ZR_THREAD_ANNOTATION(no_thread_safety_analysis)
