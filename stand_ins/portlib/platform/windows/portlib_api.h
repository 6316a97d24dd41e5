#pragma once
#ifdef PORTLIB_BUILDING
#define PORTLIB_API __declspec(dllexport)
#else
#define PORTLIB_API __declspec(dllimport)
#endif
