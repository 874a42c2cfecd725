/// @file
/// Marks what the shared libraries offer, and lets C read what C++ declares. Used by the public headers, so C99 and C++11.
#ifndef KV_EXPORT_H
#define KV_EXPORT_H

#if defined(_WIN32)
#if defined(KVAPPLMAN_BUILD)
#define KVAPPLMAN_API __declspec(dllexport)
#else
#define KVAPPLMAN_API
#endif
#if defined(KVPLATFORM_BUILD)
#define KVPLATFORM_API __declspec(dllexport)
#else
#define KVPLATFORM_API
#endif
#else
#define KVAPPLMAN_API __attribute__((visibility("default")))
#define KVPLATFORM_API __attribute__((visibility("default")))
#endif

/// A list of messages. C++ hands it over by reference, C by a pointer that is not null; for both it is the same call.
#ifdef __cplusplus
class KvCErrorListPool;
#define KV_REF & // NOLINT(bugprone-macro-parentheses): part of a type
#define KV_NOEXCEPT noexcept
#else
typedef struct KvCErrorListPool KvCErrorListPool;
#define KV_REF *
#define KV_NOEXCEPT
#endif

/// Lets the compiler compare a signature with its arguments, as it does for printf.
#if defined(__MINGW32__)
#define KV_PRINTF_LIKE(signature, arguments) __attribute__((format(gnu_printf, signature, arguments)))
#elif defined(__GNUC__)
#define KV_PRINTF_LIKE(signature, arguments) __attribute__((format(printf, signature, arguments)))
#else
#define KV_PRINTF_LIKE(signature, arguments)
#endif

#endif
