// Marks the classes that the module hands to its host. Whoever builds the module's objects defines
// KESTOVA_VOXA_SUPPORT_BUILD.
#pragma once

#if !defined(_WIN32)
#define KESTOVA_VOXA_SUPPORT_API __attribute__((visibility("default")))
#elif defined(KESTOVA_VOXA_SUPPORT_BUILD)
#define KESTOVA_VOXA_SUPPORT_API __declspec(dllexport)
#else
#define KESTOVA_VOXA_SUPPORT_API __declspec(dllimport)
#endif
