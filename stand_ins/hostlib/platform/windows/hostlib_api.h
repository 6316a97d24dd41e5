#pragma once
#ifdef HOSTLIB_BUILDING
#define HOSTLIB_API __declspec(dllexport)
#else
#define HOSTLIB_API __declspec(dllimport)
#endif
