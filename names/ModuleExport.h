// Marks what the module hands to its host: the type (its table of operations and its type
// information) and the members that are called by name. Whoever builds the module's objects defines
// KESTOVA_VOXA_SUPPORT_BUILD.
#pragma once

#if !defined(_WIN32)
#define KESTOVA_VOXA_SUPPORT_API __attribute__((visibility("default")))
#elif defined(KESTOVA_VOXA_SUPPORT_BUILD)
#define KESTOVA_VOXA_SUPPORT_API __declspec(dllexport)
#else
#define KESTOVA_VOXA_SUPPORT_API __declspec(dllimport)
#endif
#define KESTOVA_VOXA_SUPPORT_TYPE KESTOVA_VOXA_SUPPORT_API
