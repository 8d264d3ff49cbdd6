#pragma once

/// Marks what the XMLBuilder library exports; all its other symbols are hidden.
#if defined(VANTOR_STATIC)
#define VANTOR_XMLBUILDER_EXPORT
#elif defined(_WIN32)
#if defined(VANTOR_XMLBUILDER_EXPORTS)
#define VANTOR_XMLBUILDER_EXPORT __declspec(dllexport)
#else
#define VANTOR_XMLBUILDER_EXPORT __declspec(dllimport)
#endif
#else
#define VANTOR_XMLBUILDER_EXPORT __attribute__((visibility("default")))
#endif

/// `std::auto_ptr` is part of the interface; it is deprecated since C++11, and MSVC hides it from C++17 on unless
/// `_HAS_AUTO_PTR_ETC` is 1.
#if defined(_MSC_VER)
#define VANTOR_AUTO_PTR_BEGIN __pragma(warning(push)) __pragma(warning(disable : 4996))
#define VANTOR_AUTO_PTR_END __pragma(warning(pop))
#else
#define VANTOR_AUTO_PTR_BEGIN \
  _Pragma("GCC diagnostic push") _Pragma("GCC diagnostic ignored \"-Wdeprecated-declarations\"")
#define VANTOR_AUTO_PTR_END _Pragma("GCC diagnostic pop")
#endif
