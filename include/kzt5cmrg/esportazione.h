#pragma once

// What the module shows outside: every symbol is hidden but those marked here.
#if defined(_WIN32)
#if defined(KZT5CMRG_COSTRUZIONE)
#define KZT5CMRG_API __declspec(dllexport)
#else
#define KZT5CMRG_API __declspec(dllimport)
#endif
#else
#define KZT5CMRG_API __attribute__((visibility("default")))
#endif
