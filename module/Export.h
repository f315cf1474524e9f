// Marks the classes that the module exports, once per class. This header includes nothing, because
// the rooms below the module include it.
#pragma once

#if !defined(_WIN32)
#define KESTOVA_VOXA_SUPPORT_API __attribute__((visibility("default")))
#elif defined(KESTOVA_VOXA_SUPPORT_BUILD)  // while the objects of the module are compiled
#define KESTOVA_VOXA_SUPPORT_API __declspec(dllexport)
#else
#define KESTOVA_VOXA_SUPPORT_API __declspec(dllimport)
#endif
