/// \file kem/export.h
/// What the shared library exports. Define KEM_STATIC where it is linked statically.
#ifndef KEM_EXPORT_H
#define KEM_EXPORT_H

#if defined(KEM_STATIC)
#define KEM_API
#elif defined(_WIN32) && defined(kem_EXPORTS)
#define KEM_API __declspec(dllexport)
#elif defined(_WIN32)
#define KEM_API __declspec(dllimport)
#else
#define KEM_API __attribute__((visibility("default")))
#endif

#endif
